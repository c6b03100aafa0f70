// The seams of the stage page. The stage (channel, scene view, selection, transform handles,
// rulers, zoom) implements StageHost; the editing tools (drawing of shapes, point editing of
// freeforms, the breakpoint ruler, text editing) implement StageTool and only talk to the stage
// through what is declared here, so either side can change on its own.
//
// The page keeps no model of its own beyond what it shows: every finished gesture becomes a list
// of records sent to the studio in one call, and the stage changes when the studio's records come
// back. A tool may show live feedback in the overlay while the pointer is down, nothing more.

export interface Point {
    x: number;
    y: number;
}

/** A rectangle in stage pixels (the scene's own coordinates, before zoom and scroll). */
export interface Rect {
    x: number;
    y: number;
    w: number;
    h: number;
}

/** Parameter type codes of the records, as the studio numbers them. */
export const enum ParamType {
    Int = 1,
    Double = 2,
    Point = 3,
    Bool = 4,
    String = 5,
    Object = 7,
    Array = 8,
    Element = 11,
    Scene = 12,
    Path = 29,
    IntList = 33,
}

/** One parameter of a record: {"type": code, "value": ...}; some types carry no value. */
export interface ParamEntry {
    type: number;
    value?: unknown;
}

/** One record as the studio's JSON writes and reads it. */
export interface StageRecord {
    cmd: number;
    isUndoCmd?: boolean;
    params?: ParamEntry[];
}

/** Element kinds, as the studio numbers them. */
export const enum ElementKind {
    Image = 0,
    Audio = 1,
    Video = 2,
    Widget = 3,
    Text = 4,
    Div = 5,
    Group = 6,
    Symbol = 7,
    Scene = 8,
    Shape = 9,
    Freeform = 11,
}

/** A freeform anchor in the export form: x, y, first control x, y, second control x, y, and an optional seventh item 1 on the first anchor of a closed path's start. */
export type PathAnchor = number[];

/** What a tool may know of an element shown on the stage. */
export interface StageElement {
    readonly id: number;
    readonly kind: number;
    /** Autoshape type of shapes and freeforms, 0 for other kinds. */
    readonly autoshapeType: number;
    /** The element's box on the stage. */
    readonly node: HTMLElement;
    /** Box in stage pixels, as laid out at the shown time (without its rotation). */
    box(): Rect;
    /** Rotation about the box centre in degrees, clockwise. */
    rotation(): number;
    /** A freeform's anchors in its own box coordinates (pixels from the box's top left), else null. */
    path(): PathAnchor[] | null;
    /** Whether a freeform's path is closed. */
    closed(): boolean;
    /** The element's data as the last scene or record gave it (read only). */
    data(): { readonly [key: string]: unknown };
}

/** The stage as the tools see it. */
export interface StageHost {
    /** Layer above the stage for a tool's own feedback and handles; positioned in client pixels over the stage view. A tool removes what it added when it ends. */
    readonly overlay: HTMLElement;
    /** Client (viewport) pixels to stage pixels, zoom and scroll applied. */
    toStage(clientX: number, clientY: number): Point;
    /** Stage pixels to client pixels. */
    toClient(p: Point): Point;
    zoom(): number;
    /** Snaps a stage point to guides, element edges and the grid when snapping is on; `ignore` lists element ids not to snap to. */
    snap(p: Point, ignore?: readonly number[]): Point;
    element(id: number): StageElement | null;
    selectedIds(): readonly number[];
    /** Current playhead time of the shown timeline in ms. */
    time(): number;
    /** The layout the stage shows, [horizontal id, vertical id], and whether the project is in responsive mode. */
    layout(): readonly [number, number];
    responsive(): boolean;
    /** Sends one finished gesture to the studio as one command. `runOnly` runs it without an undo entry. */
    submit(records: StageRecord[], text: string, runOnly?: boolean): void;
    /** The tool is finished (or cancelled): the stage goes back to selection. */
    endTool(tool: StageTool): void;
    /** Calls a slot of the studio's canvas object by name (setEditingText, onTextFormatChanged, editTextInnerHTML...). */
    notify(slot: string, ...args: unknown[]): void;
}

/** A mode of the stage that takes the pointer: drawing, point editing, text editing, breakpoints. */
export interface StageTool {
    readonly name: string;
    /** True when the tool used the event; the stage then does not select or drag. */
    pointerDown(e: PointerEvent): boolean;
    pointerMove(e: PointerEvent): void;
    pointerUp(e: PointerEvent): void;
    /** True when the tool used the key (Escape, Delete, Enter...). */
    keyDown(e: KeyboardEvent): boolean;
    /** The stage was rebuilt or its data changed: redraw handles from the StageHost's present state. */
    refresh(): void;
    /** Leave without submitting anything, removing all feedback. */
    cancel(): void;
}

/** Shapes the drawing tool makes: the studio's insertRectangle, insertRoundedRect, insertEllipse and insertShape(type). */
export type DrawShape =
    | { readonly kind: 'rectangle' }
    | { readonly kind: 'roundedRect' }
    | { readonly kind: 'ellipse' }
    | { readonly kind: 'autoshape'; readonly type: number };

/** Point editing of one freeform; the studio's openPath and straightSegment signals land here. */
export interface PointEditTool extends StageTool {
    readonly elementId: number;
    /** Opens the path at the selected anchor when `open`, else closes it. */
    openPath(open: boolean): void;
    /** Makes the selected segment straight. */
    straightSegment(): void;
}

/** The open text edit of one text-bearing element. */
export interface TextEditTool extends StageTool {
    readonly elementId: number;
    /** Ends the edit; unless `immediately`, what was typed is submitted first. */
    stop(immediately: boolean): void;
    /** Runs an editor command (bold, fontSize, foreColor...) on the selection of the edit. */
    execCommand(name: string, value: string): void;
    /** The edited inner HTML as it stands. */
    innerHtml(): string;
    /** The format at the caret, as the JSON object the studio's onTextFormatChanged reads. */
    currentFormat(): { [key: string]: unknown };
}

/** The factories the tools module (tools/index.ts) exports, which the stage calls. */
export interface ToolFactories {
    createDrawTool(host: StageHost, shape: DrawShape): StageTool;
    /** Null when the element is no freeform or is a line. */
    createPointEditTool(host: StageHost, elementId: number): PointEditTool | null;
    /** Null when the element carries no editable text. */
    createTextEditTool(host: StageHost, elementId: number): TextEditTool | null;
}
