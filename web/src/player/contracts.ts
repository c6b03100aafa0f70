// The seams between the player's parts. The renderer (document, scenes, element views, layouts)
// implements the target and document interfaces; the animation engine (timelines, keyframe
// entries, easing, motion paths, playbacks) and the interactivity (events, actions, functions)
// only talk to them through what is declared here, so each part can change on its own.
//
// Everything in the exported data script is untrusted in the sense that a hand-edited or
// damaged project can carry odd values: readers check types and fall back, they never throw.

/** Units of a scalar animated value, as the entry's value string or the property's kind says. */
export const enum Unit {
    None = 0,
    Px = 1,
    Percent = 2,
    Deg = 3,
}

/**
 * Animatable properties by their export key (the "p" of an animation entry). The numbers are the
 * player's own dense indexes, used to address preallocated slots without string lookups per frame.
 */
export const enum Prop {
    Left, Right, Top, Bottom, Width, Height,
    Location, // "pos": [x, y] along a motion path
    ScaleX, ScaleY, ScaleZ, SkewX, SkewY, RotateX, RotateY, RotateZ,
    OriginX, OriginY, OriginZ, TranslateX, TranslateY, TranslateZ,
    Opacity, Display,
    BorderWidth, BorderColor, BackgroundColor, GradientAngle, GradientOriginX, GradientOriginY,
    TextColor, HighlightColor, FontSize, LetterSpace, WordSpace, LineHeight, TextIndent,
    ImageX, ImageY, ImageWidth, ImageHeight, Volume,
    TopLeftRadius, TopRightRadius, BottomLeftRadius, BottomRightRadius,
    ClipRectTop, ClipRectRight, ClipRectBottom, ClipRectLeft, ClipOvalVertex, ClipOvalCoVertex, ClipCircleRadius,
    ShadowBlur, ShadowAngle, ShadowDistance, ShadowColor,
    FilterInvert, FilterHue, FilterContrast, FilterBrightness, FilterSaturate, FilterSepia, FilterGrayscale, FilterBlur,
    PerspectiveOriginX, PerspectiveOriginY, PerspectiveOriginZ,
    Count,
}

/** Export key to Prop; keys not in the table are not animatable and their entries are skipped. */
export const PROP_BY_KEY: { readonly [key: string]: Prop } = {
    lt: Prop.Left, rt: Prop.Right, tp: Prop.Top, b: Prop.Bottom, w: Prop.Width, h: Prop.Height,
    pos: Prop.Location,
    sX: Prop.ScaleX, sY: Prop.ScaleY, sZ: Prop.ScaleZ, skX: Prop.SkewX, skY: Prop.SkewY,
    rX: Prop.RotateX, rY: Prop.RotateY, rZ: Prop.RotateZ,
    toX: Prop.OriginX, toY: Prop.OriginY, toZ: Prop.OriginZ,
    tX: Prop.TranslateX, tY: Prop.TranslateY, tZ: Prop.TranslateZ,
    o: Prop.Opacity, d: Prop.Display,
    lw: Prop.BorderWidth, lc: Prop.BorderColor, fc: Prop.BackgroundColor,
    ga: Prop.GradientAngle, gX: Prop.GradientOriginX, gY: Prop.GradientOriginY,
    tc: Prop.TextColor, thc: Prop.HighlightColor, fz: Prop.FontSize, ls: Prop.LetterSpace,
    ws: Prop.WordSpace, lh: Prop.LineHeight, ti: Prop.TextIndent,
    iX: Prop.ImageX, iY: Prop.ImageY, iW: Prop.ImageWidth, iH: Prop.ImageHeight, vol: Prop.Volume,
    tlr: Prop.TopLeftRadius, trr: Prop.TopRightRadius, blr: Prop.BottomLeftRadius, brr: Prop.BottomRightRadius,
    crt: Prop.ClipRectTop, crr: Prop.ClipRectRight, crb: Prop.ClipRectBottom, crl: Prop.ClipRectLeft,
    cov: Prop.ClipOvalVertex, coc: Prop.ClipOvalCoVertex, ccr: Prop.ClipCircleRadius,
    shr: Prop.ShadowBlur, sha: Prop.ShadowAngle, shd: Prop.ShadowDistance, shc: Prop.ShadowColor,
    fif: Prop.FilterInvert, fhf: Prop.FilterHue, fcf: Prop.FilterContrast, frf: Prop.FilterBrightness,
    fsf: Prop.FilterSaturate, fpf: Prop.FilterSepia, fgf: Prop.FilterGrayscale, fbf: Prop.FilterBlur,
    psoX: Prop.PerspectiveOriginX, psoY: Prop.PerspectiveOriginY, psoZ: Prop.PerspectiveOriginZ,
};

/**
 * One element (or the scene, id 0 in animation entries) as the animation engine sees it.
 * Implemented by the renderer's element view. Writes only record the value and mark the element
 * dirty; the document flushes dirty views to the DOM once per frame (`flush`), so a frame that
 * touches the same property twice costs one style write. None of these may allocate.
 *
 * Scalar values arrive in the unit of their entry: px and deg as numbers, "%" as the number
 * before the sign (so 50 for "50%"), and the plain-number properties (scale, opacity, origin
 * ratios of scale-like ids, gradient origins, line height, volume) as the exported number, which
 * is the model's value times 100.
 */
export interface AnimTarget {
    setNumber(prop: Prop, value: number, unit: Unit): void;
    setColor(prop: Prop, r: number, g: number, b: number, a: number): void;
    /** Motion path place relative to the element's own position; angle in degrees clockwise, NaN when the element does not turn along its path. */
    setLocation(x: number, y: number, angle: number): void;
    /** Forgets an animated value so the layout's own value shows again (layout switch, timeline reset). */
    clearAnimated(prop: Prop): void;
    /** Writes what changed since the last flush. Called by the document once per frame. */
    flush(): void;
}

/** A media element or symbol instance that playback entries ("p": "pb") drive. */
export interface PlaybackTarget {
    /** kind: the entry's action kind (Start, Play, Play From, Pause, Pause At of its family); position in ms of the media or symbol; speed 1 = normal, negative = backward; NaN for pauses. */
    playback(kind: number, position: number, speed: number): void;
}

/** What a timeline needs from the document that owns it. */
export interface TimelineHost {
    animTarget(elementId: number): AnimTarget | null;
    playbackTarget(elementId: number): PlaybackTarget | null;
    /** Runs the player arrays of a trigger's listeners (each [action, ...params]) in the timeline's scene. */
    runActions(actions: readonly unknown[][], timeline: TimelineApi): void;
    /** A timeline event (150 Update ... 156 Seek) happened; the host runs the listeners of the timeline's "e". */
    timelineEvent(event: number, timeline: TimelineApi): void;
    /** Asks for the document's animation frame loop to run (it stops itself when nothing plays). */
    wake(): void;
}

/** Public face of one running timeline, used by actions, the document API and tests. */
export interface TimelineApi {
    readonly id: number;
    readonly name: string;
    readonly duration: number;
    /** Current time in ms. */
    readonly time: number;
    readonly playing: boolean;
    /** Signed speed, 1 = normal forward. */
    readonly speed: number;
    labelTime(label: string): number | undefined;
    /** Plays from the current time (or from `from` ms / a label), at `speed` when given. */
    play(speed?: number, from?: number | string): void;
    /** Restarts from the start (or the end when playing backward). */
    start(speed?: number): void;
    pause(at?: number | string): void;
    toggle(): void;
    seek(to: number | string): void;
}

/** Public face of one opened document: what actions, user functions and tests drive. */
export interface DocumentApi {
    readonly containerId: string;
    /** Index from 0 of the shown scene. */
    readonly sceneIndex: number;
    readonly sceneCount: number;
    /** The chosen layout, [horizontal id, vertical id]. */
    readonly layout: readonly [number, number];
    /** Timeline of the shown scene by id, name, or -1 / undefined for the scene's main (first) timeline. */
    timeline(idOrName?: number | string): TimelineApi | null;
    /** Goes to a scene by index from 0, id (when `byId`), or a special target -2 next, -3 previous, -4 last, -5 first; transition [type, duration, easing?, direction?] overrides the scene's own. */
    goToScene(target: number, byId?: boolean, transition?: readonly number[]): void;
    /** The DOM node of an element of the shown scene, by element id. */
    elementNode(id: number): HTMLElement | null;
    seek(ms: number | string, timeline?: number | string): void;
    play(timeline?: number | string, speed?: number): void;
    pause(timeline?: number | string): void;
}

/** A media element as actions drive it (audio or video element of the shown scene). */
export interface MediaApi {
    readonly node: HTMLMediaElement;
    /** Plays from `from` ms (or the current position) at `rate`; negative rates play backward by stepping. */
    play(rate?: number, from?: number): void;
    start(rate?: number): void;
    pause(at?: number): void;
    toggle(): void;
    seek(ms: number): void;
    mute(on?: boolean): void;
    toggleMute(): void;
    /** 0 to 100. */
    setVolume(percent: number): void;
    fullScreen(): void;
}

/**
 * What event listeners and actions need beyond the public document API. Implemented by the
 * renderer's document; the interactivity part receives it and never reaches into the DOM
 * structure on its own beyond `elementNode`.
 */
export interface ActionHost extends DocumentApi {
    media(elementId: number): MediaApi | null;
    /** A symbol instance of the shown scene (-1 current symbol, -2 parent symbol, -3 the document). */
    symbol(elementId: number, from: ActionScope): DocumentApi | null;
    setElementVisible(elementId: number, visible: 'show' | 'hide' | 'toggle'): void;
    setElementText(elementId: number, html: string): void;
    muteAll(): void;
    /** The document's function with this id from the data script's "f", or null. */
    userFunction(id: number): ((doc: DocumentApi, e: unknown) => unknown) | null;
    /** The public object handed to user functions as `doc`. */
    readonly api: DocumentApi;
}

/** Where a listener lives, for targets that are relative (current symbol, main timeline). */
export interface ActionScope {
    readonly host: ActionHost;
    /** The element that owns the listener, or null for scene, timeline and document listeners. */
    readonly elementId: number | null;
    readonly timeline: TimelineApi | null;
}
