// The stage page: the scene the studio sent, drawn by the player's renderer inside a zoomable view
// with rulers, the selection and its handles, the breakpoint ruler, and the editing tools. It
// answers the canvas object's signals, applies the studio's records, and sends finished gestures
// back as commands. It changes no model: what it shows after a gesture comes from the records.

import type { CanvasBridge } from './bridge';
import { BreakpointBars, HORIZONTAL } from './breakpoints';
import { commandJson, intParam, boolParam, record, selectionRecord } from './commands';
import type { Point, StageRecord, StageTool, StageHost } from './contracts';
import type { ElementView } from '../player/elementview';
import { measure } from './geometry';
import type { GestureHost } from './gestures';
import { TOOL_CONTAINER, TOOL_ROTATE, TOOL_SCALE, TOOL_TRANSLATE } from './gestures';
import { StageInput } from './input';
import { LiveOverride } from './live';
import { isPickable, outermost, stageSnapTargets } from './picking';
import { COMMAND_FINISHED, parseRecord, RecordApplier, type RecordHost } from './records';
import { StageRenderer } from './render';
import { loadFonts, type PageElements } from './pagedom';
import { drawRuler } from './rulers';
import { readSceneData, type SceneData, shownLayout } from './scenedata';
import { type Frame, type OverlayPicture, SelectionView } from './selectionview';
import { type SnapTargets, snapPoint } from './snap';
import { number } from './signals';
import { TimelineData } from './timelinedata';
import { createToolHost, type ToolHostPage } from './toolhost';
import { createTextEditTool } from './tools/index';
import { Viewport } from './viewport';

/** How long an override waits for the studio's answer before the element goes back by itself. */
const ANSWER_TIMEOUT_MS = 2000;
/** A command whose closing record never comes is finished after this. */
const COMMAND_IDLE_MS = 400;
/** Snap distance on screen. */
const SNAP_PIXELS = 6;

export class StagePage implements RecordHost, ToolHostPage, GestureHost {
    readonly viewport: Viewport;
    readonly selection = new Set<number>();
    readonly overlay: HTMLElement;
    readonly input: StageInput;
    readonly toolHost: StageHost;

    private bridge_: CanvasBridge | null = null;
    private data_: SceneData | null = null;
    private renderer_: StageRenderer | null = null;
    private timeline_: TimelineData | null = null;
    private readonly applier_: RecordApplier;
    private readonly selectionView_: SelectionView;
    private readonly bars_: BreakpointBars;

    private snapEnabled_ = true;
    private rulersVisible_ = true;
    private containerHandler_ = false;
    private transformTools_ = 0;
    /** A click on the selected text element opens its text edit. */
    editTextOnSingleClick = false;
    private stageView_ = 0;
    private time_ = 0;
    private playing_ = false;
    private altDown_ = false;

    private tool_: StageTool | null = null;
    private pending_: LiveOverride[] = [];
    private pendingTimer_ = 0;
    private refreshWanted_ = false;
    private commandTimer_ = 0;
    private reportHandle_ = 0;
    private reportZoom_ = false;
    private fontLinks_: HTMLLinkElement[] = [];
    /** Extra drawing of the present gesture: rubber band and snap guides. */
    private extra_: Partial<OverlayPicture> = {};
    private hover_: ElementView | null = null;

    constructor(readonly el: PageElements) {
        const page = this;
        this.overlay = el.toolLayer;
        this.viewport = new Viewport(el.viewport, el.world, {
            viewChanged: (byUser, zoom) => this.viewChanged_(byUser, zoom),
        });
        this.applier_ = new RecordApplier(this);
        this.selectionView_ = new SelectionView(el.overlay, (p) => this.viewport.toClient(p));
        this.bars_ = new BreakpointBars([el.barH, el.barV], {
            get origin() {
                return page.viewport.origin;
            },
            get zoom() {
                return page.viewport.zoom;
            },
            state: () => this.data_?.breakpoints ?? null,
            move: (direction, id, value) => {
                this.submit(
                    [record(91, [intParam(direction), intParam(id), intParam(value)])],
                    'Update Breakpoint',
                    false,
                );
                // The marker stays where it was dropped until the studio's answer, or goes back without one.
                window.setTimeout(() => this.redraw(), ANSWER_TIMEOUT_MS);
            },
            show: (direction, id) => this.showRange_(direction, id),
            menu: (direction, value, pos) => {
                this.notify('setEditingBreakpoint', [direction, value, pos]);
                this.notify('onShowContextMenu', []);
            },
        });
        this.toolHost = createToolHost(this);
        this.input = new StageInput(this);
        const observer = new ResizeObserver(() => {
            this.viewport.resized();
        });
        observer.observe(el.viewport);
        window.addEventListener('keydown', (e) => this.trackAlt_(e), true);
        window.addEventListener('keyup', (e) => this.trackAlt_(e), true);
        this.setStatus('connecting');
    }

    // Connection

    attach(bridge: CanvasBridge | null): void {
        this.bridge_?.detach();
        this.bridge_ = bridge;
        if (bridge) {
            this.setStatus(this.data_ ? null : 'waiting');
            bridge.call('sendSceneDataToJS');
        }
    }

    /** Shows a state over an empty stage: connecting, waiting, offline or no scene; null hides it. */
    setStatus(state: string | null): void {
        const status = this.el.status;
        if (state === null) {
            status.hidden = true;
            this.el.root.removeAttribute('data-state');
        } else {
            status.hidden = false;
            this.el.root.setAttribute('data-state', state);
        }
    }

    notify(slot: string, args: unknown[]): void {
        this.bridge_?.call(slot, ...args);
    }

    // What other parts read

    get data(): SceneData {
        if (!this.data_) {
            throw new Error('no scene');
        }
        return this.data_;
    }

    get renderer(): StageRenderer {
        if (!this.renderer_) {
            throw new Error('no scene');
        }
        return this.renderer_;
    }

    get hasScene(): boolean {
        return this.renderer_ !== null;
    }

    get timeline(): TimelineData | null {
        return this.timeline_;
    }

    get transformTools(): number {
        return this.transformTools_;
    }

    get tolerance(): number {
        return SNAP_PIXELS / this.viewport.zoom;
    }

    get tool(): StageTool | null {
        return this.tool_;
    }

    get stageView(): number {
        return this.stageView_;
    }

    zoom(): number {
        return this.viewport.zoom;
    }

    toStage(clientX: number, clientY: number): Point {
        return this.viewport.toStage(clientX, clientY);
    }

    toClient(p: Point): Point {
        return this.viewport.toClient(p);
    }

    time(): number {
        return this.time_;
    }

    layout(): readonly [number, number] {
        return this.data_ ? shownLayout(this.data_.breakpoints) : [0, 0];
    }

    responsive(): boolean {
        return this.data_?.breakpoints.responsive ?? false;
    }

    containerSize(): { w: number; h: number } {
        return { w: this.data_?.containerW ?? 800, h: this.data_?.containerH ?? 600 };
    }

    get containerHandlesShown(): boolean {
        return this.hasScene && (this.containerHandler_ || (this.transformTools_ & TOOL_CONTAINER) !== 0);
    }

    snapping(e: { altKey: boolean }): boolean {
        return this.snapEnabled_ && !e.altKey;
    }

    snapTargets(excluded: readonly ElementView[], e: { altKey: boolean }): SnapTargets | null {
        if (!this.snapping(e) || !this.renderer_) {
            return null;
        }
        const size = this.containerSize();
        return stageSnapTargets(this.renderer_, excluded, size.w, size.h);
    }

    snap(p: Point, ignore: readonly number[]): Point {
        const renderer = this.renderer_;
        if (!renderer) {
            return p;
        }
        const views = ignore.map((id) => renderer.view(id)).filter((v): v is ElementView => v !== null);
        const targets = this.snapTargets(views, { altKey: this.altDown_ });
        if (!targets) {
            return p;
        }
        const s = snapPoint(p, targets, this.tolerance);
        return { x: p.x + s.dx, y: p.y + s.dy };
    }

    private trackAlt_(e: KeyboardEvent): void {
        this.altDown_ = e.altKey;
    }

    // Commands

    /** Sends one gesture as one command. */
    submit(records: StageRecord[], text: string, runOnly: boolean): void {
        const data = this.data_;
        if (!data || records.length === 0) {
            return;
        }
        const [h, v] = [data.breakpoints.hCurrent, data.breakpoints.vCurrent];
        const json = commandJson(
            {
                sceneId: data.sceneId,
                symbolResourceId: data.symbolResourceId,
                responsive: data.breakpoints.responsive,
                hLayoutId: h,
                vLayoutId: v,
            },
            records,
            text,
        );
        this.notify('submitCommandFromJS', [json, runOnly]);
    }

    /** Keeps a gesture's override until the studio's records are in (or none came). */
    awaitAnswer(live: LiveOverride): void {
        if (live.empty) {
            return;
        }
        this.pending_.push(live);
        window.clearTimeout(this.pendingTimer_);
        this.pendingTimer_ = window.setTimeout(() => this.dropPending_(true), ANSWER_TIMEOUT_MS);
    }

    private dropPending_(redraw: boolean): void {
        window.clearTimeout(this.pendingTimer_);
        const pending = this.pending_;
        this.pending_ = [];
        for (let i = pending.length - 1; i >= 0; --i) {
            pending[i]!.restore();
        }
        if (redraw && pending.length > 0) {
            this.renderer_?.flushNow();
            this.redraw();
        }
    }

    /** Makes `ids` the selection: the studio hears of the change as selection records, without an undo step. */
    select(ids: readonly number[]): void {
        if (!this.renderer_) {
            return;
        }
        const next = new Set(ids);
        const records: StageRecord[] = [];
        for (const id of this.selection) {
            if (!next.has(id)) {
                records.push(selectionRecord(id, false));
            }
        }
        for (const id of next) {
            if (!this.selection.has(id)) {
                records.push(selectionRecord(id, true));
            }
        }
        if (records.length === 0) {
            return;
        }
        // The studio does not echo a command of the stage's own: the stage shows it at once.
        this.selection.clear();
        for (const id of next) {
            this.selection.add(id);
        }
        this.submit(records, 'Select', true);
        this.redraw();
        this.tool_?.refresh();
    }

    private showRange_(direction: number, id: number): void {
        const state = this.data_?.breakpoints;
        if (!state) {
            return;
        }
        const h = direction === HORIZONTAL ? id : state.hCurrent;
        const v = direction === HORIZONTAL ? state.vCurrent : id;
        if (state.responsive && h === state.hCurrent && v === state.vCurrent) {
            return;
        }
        this.submit([record(92, [intParam(h), intParam(v), boolParam(true)])], 'Change Breakpoint', true);
    }

    /** The container was dragged to a new size: a breakpoint of its own, or the stage size. */
    resizeContainer(w: number, h: number): void {
        const data = this.data_;
        if (!data) {
            return;
        }
        const state = data.breakpoints;
        const records: StageRecord[] = [];
        if (Math.round(w) !== data.containerW) {
            if (state.responsive && state.hCurrent !== 0) {
                this.notify('setCurrentBreakpoint', [0, Math.round(w)]);
            } else {
                records.push(record(59, [intParam(w)]));
            }
        }
        if (Math.round(h) !== data.containerH) {
            if (state.responsive && state.vCurrent !== 0) {
                this.notify('setCurrentBreakpoint', [1, Math.round(h)]);
            } else {
                records.push(record(60, [intParam(h)]));
            }
        }
        this.submit(records, 'Resize Container', true);
    }

    // Records

    requestRefresh(reason: string): void {
        if (!this.refreshWanted_) {
            console.info(`vtcanvas: a fresh scene is needed (${reason})`);
        }
        this.refreshWanted_ = true;
    }

    containerChanged(): void {
        if (!this.data_) {
            return;
        }
        this.applyContainer_();
    }

    resourcesChanged(): void {
        this.loadFonts_();
    }

    dataChangedToJS(json: unknown): void {
        if (!this.renderer_) {
            return;
        }
        let cmd = -1;
        try {
            const parsed = parseRecord(json);
            cmd = parsed.cmd;
            this.applier_.apply(parsed);
        } catch (error) {
            console.error('vtcanvas: a record could not be applied', error, json);
            this.requestRefresh('a record could not be applied');
        }
        window.clearTimeout(this.commandTimer_);
        if (cmd === COMMAND_FINISHED) {
            this.finishCommand_();
        } else {
            this.commandTimer_ = window.setTimeout(() => this.finishCommand_(), COMMAND_IDLE_MS);
        }
    }

    private finishCommand_(): void {
        window.clearTimeout(this.commandTimer_);
        const renderer = this.renderer_;
        if (!renderer) {
            return;
        }
        this.dropPending_(false);
        const changes = this.applier_.takeChanges();
        for (const id of changes.touched) {
            const view = id === 0 ? renderer.scene.view : renderer.view(id);
            if (view) {
                try {
                    renderer.reapply(view);
                } catch (error) {
                    console.error(`vtcanvas: element ${id} could not be redrawn`, error);
                }
            }
        }
        const timeline = this.timeline_;
        if (timeline && timeline.dirty) {
            timeline.dirty = false;
            renderer.replaceTimeline(timeline.toData(), this.time_);
            if (this.playing_) {
                renderer.timelineRuntime()?.play(1, this.time_);
                renderer.wake();
            }
        }
        renderer.flushNow();
        this.redraw();
        this.tool_?.refresh();
        if (this.refreshWanted_) {
            this.refreshWanted_ = false;
            this.notify('sendSceneDataToJS', []);
        }
    }

    // The scene

    /** Builds the stage from the studio's scene data; without a scene the stage is empty. */
    currentSceneChanged(hasScene: boolean, text: unknown): void {
        this.input.cancel();
        this.bars_.cancel();
        this.dropPending_(false);
        window.clearTimeout(this.commandTimer_);
        this.applier_.takeChanges();
        this.refreshWanted_ = false;
        this.hover_ = null;
        this.renderer_?.destroy();
        this.renderer_ = null;
        this.timeline_ = null;
        this.selection.clear();
        this.playing_ = false;
        if (!hasScene || typeof text !== 'string' || text === '') {
            this.data_ = null;
            this.setStatus('empty');
            this.redraw();
            this.endCurrentTool();
            return;
        }
        let data: SceneData;
        try {
            data = readSceneData(text);
        } catch (error) {
            console.error('vtcanvas: the scene could not be read', error);
            this.data_ = null;
            this.setStatus('broken');
            this.redraw();
            return;
        }
        this.data_ = data;
        this.containerHandler_ = data.showContainerHandler;
        this.transformTools_ = data.transformTools;
        this.el.projectCss.textContent = data.outputCss;
        this.loadFonts_();
        this.applyContainer_();
        try {
            this.renderer_ = new StageRenderer(
                this.el.stage,
                data.scene,
                data.resources,
                shownLayout(data.breakpoints),
                () => {
                    const size = this.containerSize();
                    return { width: size.w, height: size.h };
                },
                () => this.afterFrame_(),
            );
        } catch (error) {
            console.error('vtcanvas: the scene could not be drawn', error);
            this.setStatus('broken');
            return;
        }
        const timelines = Array.isArray(data.scene['timelines']) ? data.scene['timelines'] : [];
        this.timeline_ = new TimelineData(timelines[0]);
        this.time_ = Math.max(0, number(data.scene['currentTime'], 0));
        try {
            this.renderer_.timelineRuntime()?.seek(this.time_);
        } catch (error) {
            console.error('vtcanvas: the timeline could not be shown', error);
        }
        this.renderer_.flushNow();
        for (const view of this.renderer_.elementViews()) {
            if (this.renderer_.elementOf(view)?.['selected'] === true) {
                this.selection.add(view.id);
            }
        }
        this.setStatus(null);
        this.redraw();
        this.tool_?.refresh();
    }

    private applyContainer_(): void {
        const data = this.data_;
        if (!data) {
            return;
        }
        this.el.stage.style.width = data.containerW + 'px';
        this.el.stage.style.height = data.containerH + 'px';
        this.viewport.setStageSize(data.containerW, data.containerH);
        this.renderer_?.scene.view.markDirty_(1);
        this.renderer_?.flushNow();
        this.redraw();
    }

    private loadFonts_(): void {
        this.fontLinks_ = loadFonts(document, this.data_?.resources ?? null, this.fontLinks_);
    }

    private afterFrame_(): void {
        const runtime = this.renderer_?.timelineRuntime();
        if (runtime) {
            this.time_ = runtime.time;
            if (this.playing_ && !runtime.playing) {
                this.playing_ = false;
            }
        }
        if (this.selection.size > 0 || this.hover_) {
            this.redraw();
        }
    }

    // Drawing of the stage's own layers

    /** The transform frame of the selection, or null when nothing selected can be transformed. */
    frame(): Frame | null {
        const renderer = this.renderer_;
        if (!renderer || this.selection.size === 0 || this.stageView_ !== 0) {
            return null;
        }
        const views = outermost(renderer, this.selection).filter((view) => isPickable(renderer, view));
        if (views.length === 0) {
            return null;
        }
        const tools = this.transformTools_ & (TOOL_TRANSLATE | TOOL_SCALE | TOOL_ROTATE);
        const resize = tools === 0 || (tools & TOOL_SCALE) !== 0;
        const rotate = tools === 0 || (tools & TOOL_ROTATE) !== 0;
        if (views.length === 1) {
            const g = measure(views[0]!);
            return { box: g.box, rotation: g.rotation, resize, rotate };
        }
        const points = views.flatMap((view) => measure(view).corners);
        const xs = points.map((p) => p.x);
        const ys = points.map((p) => p.y);
        const box = {
            x: Math.min(...xs),
            y: Math.min(...ys),
            w: Math.max(...xs) - Math.min(...xs),
            h: Math.max(...ys) - Math.min(...ys),
        };
        return { box, rotation: 0, resize, rotate };
    }

    setExtra(extra: Partial<OverlayPicture>): void {
        this.extra_ = extra;
        this.redraw();
    }

    setHover(view: ElementView | null): void {
        if (view !== this.hover_) {
            this.hover_ = view;
            this.redraw();
        }
    }

    redraw(): void {
        const renderer = this.renderer_;
        const outlines: (readonly Point[])[] = [];
        let marked: { x: [number, number]; y: [number, number] } | null = null;
        if (renderer) {
            for (const id of this.selection) {
                const view = renderer.view(id);
                if (view && view.node.getClientRects().length > 0) {
                    const g = measure(view);
                    outlines.push(g.corners);
                    const b = g.bounds;
                    marked = marked
                        ? {
                              x: [Math.min(marked.x[0], b.x), Math.max(marked.x[1], b.x + b.w)],
                              y: [Math.min(marked.y[0], b.y), Math.max(marked.y[1], b.y + b.h)],
                          }
                        : { x: [b.x, b.x + b.w], y: [b.y, b.y + b.h] };
                }
            }
        }
        const hover =
            this.hover_ && renderer && !this.selection.has(this.hover_.id) && this.hover_.node.isConnected
                ? measure(this.hover_).corners
                : null;
        const toolBusy = this.tool_ !== null;
        this.selectionView_.draw({
            outlines,
            frame: toolBusy ? null : this.frame(),
            hover: toolBusy ? null : hover,
            band: this.extra_.band ?? null,
            guideX: this.extra_.guideX ?? null,
            guideY: this.extra_.guideY ?? null,
            container: this.containerHandlesShown && !toolBusy ? this.containerSize() : null,
        });
        this.el.root.toggleAttribute('data-no-rulers', !this.rulersVisible_);
        if (this.rulersVisible_) {
            const view = { origin: this.viewport.origin, zoom: this.viewport.zoom, marked };
            drawRuler(this.el.rulerTop, true, view, 0);
            drawRuler(this.el.rulerLeft, false, view, 0);
            this.bars_.render();
        }
    }

    get selectionView(): SelectionView {
        return this.selectionView_;
    }

    private viewChanged_(byUser: boolean, zoomChanged: boolean): void {
        this.redraw();
        this.tool_?.refresh();
        // Where the stage is always goes to the studio (it maps its context menu with it); the
        // zoom only when the author changed it here, since setting it pauses the document.
        this.reportZoom_ = this.reportZoom_ || (byUser && zoomChanged);
        if (this.reportHandle_ === 0) {
            this.reportHandle_ = window.requestAnimationFrame(() => this.report_());
        }
    }

    /** Tells the studio the zoom and where the stage is, once per frame at most. */
    private report_(): void {
        this.reportHandle_ = 0;
        const r = this.viewport.rect();
        const centred = this.viewport.centredOrigin();
        const scroll = this.viewport.scroll();
        if (this.reportZoom_) {
            this.reportZoom_ = false;
            this.notify('setZoomFactor', [this.viewport.zoom]);
            if (!this.viewport.fit) {
                this.notify('setFitToViewport', [false]);
            }
        }
        this.notify('setSceneOffset', [r.left + centred.x, r.top + centred.y]);
        this.notify('setScrollValue', [scroll.x, scroll.y]);
    }

    // Signals: playback

    /** Plays the shown timeline from `ts` ms, as the studio does. */
    play(ts: number): void {
        const runtime = this.renderer_?.timelineRuntime();
        if (!runtime) {
            return;
        }
        this.input.cancel();
        this.time_ = Math.max(0, ts);
        this.playing_ = true;
        runtime.play(1, this.time_);
        this.renderer_!.wake();
    }

    pause(ts: number): void {
        this.stopPlaying_(ts);
    }

    private stopPlaying_(at: number): void {
        this.playing_ = false;
        const runtime = this.renderer_?.timelineRuntime();
        if (!runtime) {
            return;
        }
        this.time_ = Math.max(0, at);
        runtime.pause(this.time_);
        this.renderer_!.flushNow();
        this.redraw();
        this.tool_?.refresh();
    }

    /** The author took hold of something while the timeline played: both the stage and the studio stop. */
    pauseForEdit(): void {
        if (this.playing_) {
            this.notify('pauseTimeline', []);
            this.stopPlaying_(this.renderer_?.timelineRuntime()?.time ?? this.time_);
        }
    }

    setCurrentTime(time: number): void {
        const runtime = this.renderer_?.timelineRuntime();
        this.time_ = Math.max(0, time);
        if (!runtime) {
            return;
        }
        if (this.playing_) {
            runtime.play(1, this.time_);
        } else {
            runtime.seek(this.time_);
        }
        this.renderer_!.flushNow();
        this.redraw();
        this.tool_?.refresh();
    }

    finishAllTask(): void {
        this.input.cancel();
        this.bars_.cancel();
        if (this.playing_) {
            this.stopPlaying_(this.renderer_?.timelineRuntime()?.time ?? this.time_);
        }
        this.notify('onAllTaskFinished', []);
    }

    // Settings the studio changes

    setSnapEnabled(on: boolean): void {
        this.snapEnabled_ = on;
    }

    setRulersVisible(show: boolean): void {
        this.rulersVisible_ = show;
        this.redraw();
        this.viewport.resized();
    }

    setContainerHandler(show: boolean): void {
        this.containerHandler_ = show;
        this.redraw();
    }

    setTransformTools(tools: number): void {
        this.transformTools_ = tools;
        this.redraw();
    }

    setStageView(mode: number): void {
        this.stageView_ = mode === 1 || mode === 2 ? mode : 0;
        this.el.root.setAttribute('data-stage-view', ['front', 'top', 'side'][this.stageView_]!);
        this.redraw();
    }

    // Tools

    startTool(tool: StageTool | null): void {
        this.endCurrentTool();
        this.tool_ = tool;
        if (tool) {
            this.el.root.setAttribute('data-tool', tool.name);
        }
        this.redraw();
    }

    /** Ends the running tool without anything submitted. */
    endCurrentTool(): void {
        const tool = this.tool_;
        if (tool) {
            this.tool_ = null;
            try {
                tool.cancel();
            } catch (error) {
                console.error('vtcanvas: a tool did not end cleanly', error);
            }
            this.el.root.removeAttribute('data-tool');
            this.redraw();
        }
    }

    endTool(tool: StageTool): void {
        if (this.tool_ === tool) {
            this.tool_ = null;
            this.el.root.removeAttribute('data-tool');
            this.redraw();
        }
    }

    /** Opens the text edit of an element; false when it carries no editable text. */
    editText(id: number): boolean {
        if (!this.hasScene) {
            return false;
        }
        const tool = createTextEditTool(this.toolHost, id);
        if (!tool) {
            return false;
        }
        this.startTool(tool);
        return true;
    }
}
