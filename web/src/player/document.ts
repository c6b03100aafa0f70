// An opened document: the stage in its container, the shown scene, the responsive layout, the one
// animation frame loop, and everything actions and user functions drive. A symbol instance opens
// the symbol's data as a document of its own inside the instance's box; it shares the frame loop,
// the resources and the functions of the document at the top.

import type {
    ActionHost,
    ActionScope,
    DocumentApi,
    MediaApi,
    TimelineApi,
} from './contracts';
import { Prop } from './contracts';
import { type ElementView, Group } from './elementview';
import {
    type Breakpoints,
    centeringOfAlign,
    type Centering,
    chooseLayout,
    placeStage,
    readBreakpoints,
    type StagePlace,
} from './layout';
import { arr, cssNum, int, isObj, isSafeUrl, num, type Obj, resourceUrl, str } from './read';
import { bindSafely, fireSafely, ShownScene, type SceneOwner, type SymbolInstance } from './scene';
import { readTransition, SceneTransition, type TransitionPlan } from './transition';

export type UserFunction = (doc: DocumentApi, e: unknown) => unknown;

/** What a document and the symbols inside it share: the files and the functions of the export. */
export interface Shared {
    readonly resources: Map<number, readonly unknown[]>;
    readonly resourceFolder: string;
    readonly functions: Map<number, UserFunction>;
    /** Turns a resource's file into its URL; without it, the file is a name in the resource folder. */
    readonly url_?: (file: string) => string;
}

export interface DocumentOptions {
    readonly paused: boolean;
    readonly center: Centering;
    readonly autofit: boolean;
}

/** Reads the resource list and the functions of a data script. */
export function readShared(data: Obj, folderOverride: string | null): Shared {
    const resources = new Map<number, readonly unknown[]>();
    for (const entry of arr(data['resources'])) {
        if (Array.isArray(entry) && typeof entry[0] === 'number') {
            resources.set(entry[0], entry);
        }
    }
    const functions = new Map<number, UserFunction>();
    for (const entry of arr(data['f'])) {
        if (Array.isArray(entry) && typeof entry[0] === 'number' && typeof entry[2] === 'function') {
            functions.set(entry[0], entry[2] as UserFunction);
        }
    }
    return {
        resources,
        resourceFolder: folderOverride !== null ? folderOverride : str(data['resourceFolder'], ''),
        functions,
    };
}

// Event numbers the document raises itself.
const CREATE = 20;
const READY = 21;
const DESTROY = 22;
const SCENE_ACTIVATE = 50;
const SCENE_DEACTIVATE = 51;
const TIMELINE_COMPLETE = 153;

const NEXT_SCENE = -2;
const PREVIOUS_SCENE = -3;
const LAST_SCENE = -4;
const FIRST_SCENE = -5;

/** Symbols inside symbols: deeper than this is a symbol that contains itself. */
const MAX_SYMBOL_DEPTH = 8;

export interface DocumentInit {
    readonly container: HTMLElement;
    readonly containerId: string;
    /** The symbol: "scenes", "b", "e", and for a document "w" and "h". */
    readonly data: Obj;
    readonly shared: Shared;
    readonly options: DocumentOptions;
    /** Key of the document's own listeners: "e", or "pe" for a preloader. */
    readonly eventsKey?: string;
    readonly parent?: PlayerDocument;
    /** The symbol instance element that holds a nested document. */
    readonly symbolView?: ElementView;
}

export class PlayerDocument implements ActionHost, SceneOwner, SymbolInstance {
    readonly api: DocumentApi;
    readonly host: ActionHost = this;
    readonly containerId: string;
    readonly container: HTMLElement;
    readonly stage: HTMLElement;
    readonly parent: PlayerDocument | null;
    readonly root: PlayerDocument;
    readonly paused: boolean;
    readonly events: unknown;
    private readonly data_: Obj;
    private readonly scenes_: Obj[];
    private readonly shared_: Shared;
    private readonly breakpoints_: Breakpoints;
    private readonly center_: Centering;
    private readonly autofit_: boolean;
    private readonly symbolView_: ElementView | null;
    private readonly scope_: ActionScope;
    private readonly depth_: number;

    private scene_: ShownScene | null = null;
    private transition_: SceneTransition | null = null;
    private started_ = false;
    private opened_ = false;
    private destroyed_ = false;
    private switching_ = false;
    private pendingJump_: [number, TransitionPlan] | null = null;
    private unbindEvents_: () => void = () => undefined;

    private currentLayout_: [number, number] = [0, 0];
    private boxW_ = 0;
    private boxH_ = 0;
    /** A container with no height of its own takes the stage's. */
    private autoHeight_ = false;
    private readonly place_: StagePlace = { left: 0, top: 0, scale: 1 };
    private readonly box_ = { width: 0, height: 0 };
    private readonly stageCss_: { [name: string]: string } = {};
    private observer_: ResizeObserver | null = null;
    private readonly onWindowResize_ = (): void => this.relayout_();

    // The frame loop and the flush queue live in the document at the top.
    private frameHandle_ = 0;
    private readonly onFrame_ = (now: number): void => this.frame_(now);
    private readonly queue_: (ElementView | null)[] = [];
    private queueLength_ = 0;
    private flushing_ = false;

    constructor(init: DocumentInit) {
        this.container = init.container;
        this.containerId = init.containerId;
        this.data_ = init.data;
        this.shared_ = init.shared;
        this.parent = init.parent || null;
        this.root = this.parent ? this.parent.root : this;
        this.depth_ = this.parent ? this.parent.depth_ + 1 : 0;
        this.symbolView_ = init.symbolView || null;
        this.paused = init.options.paused;
        this.center_ = init.options.center;
        this.autofit_ = init.options.autofit;
        this.events = init.data[init.eventsKey || 'e'];
        this.breakpoints_ = readBreakpoints(init.data['b']);
        this.scenes_ = arr(init.data['scenes']).filter(isObj);
        this.scope_ = { host: this, elementId: null, timeline: null };

        const doc = this.container.ownerDocument;
        this.stage = doc.createElement('div');
        this.stage.className = 'vetra-stage';
        const style = this.stage.style;
        style.position = 'absolute';
        style.overflow = 'hidden';
        style.transformOrigin = '0 0';
        style.left = '0';
        style.top = '0';

        this.api = this.createApi_();
    }

    private createApi_(): DocumentApi {
        const self = this;
        return {
            get containerId(): string {
                return self.containerId;
            },
            get sceneIndex(): number {
                return self.sceneIndex;
            },
            get sceneCount(): number {
                return self.sceneCount;
            },
            get layout(): readonly [number, number] {
                return self.layout;
            },
            timeline: (idOrName) => self.timeline(idOrName),
            goToScene: (target, byId, transition) => self.goToScene(target, byId, transition),
            elementNode: (id) => self.elementNode(id),
            seek: (ms, timeline) => self.seek(ms, timeline),
            play: (timeline, speed) => self.play(timeline, speed),
            pause: (timeline) => self.pause(timeline),
        };
    }

    // Opening and closing

    /** Shows the first scene. A document at the top starts playing it; a symbol waits for `start`. */
    open(): void {
        if (this.opened_ || this.destroyed_) {
            return;
        }
        // The box of a symbol gets its size when the scene around it is written.
        this.flushNow_();
        this.opened_ = true;
        if (!this.parent) {
            const win = this.container.ownerDocument.defaultView;
            if (win && win.getComputedStyle(this.container).position === 'static') {
                this.container.style.position = 'relative';
            }
            this.autoHeight_ = this.container.clientHeight === 0;
        }
        this.container.appendChild(this.stage);
        this.measure_();
        this.currentLayout_ = chooseLayout(this.breakpoints_, this.boxW_, this.layoutHeight_());
        this.unbindEvents_ = bindSafely(this, this.scope_, this.container, this.events);
        fireSafely(this, this.scope_, this.events, CREATE);
        if (this.scenes_.length > 0) {
            this.showScene_(0, readTransition(this.scenes_[0]!['st']));
        }
        if (!this.parent) {
            this.observeResize_();
            this.start();
        }
        fireSafely(this, this.scope_, this.events, READY);
    }

    destroy(): void {
        if (this.destroyed_) {
            return;
        }
        fireSafely(this, this.scope_, this.events, DESTROY);
        this.destroyed_ = true;
        if (this.transition_) {
            this.transition_.finish();
        }
        if (this.scene_) {
            this.scene_.destroy();
            this.scene_ = null;
        }
        this.unbindEvents_();
        if (this.observer_) {
            this.observer_.disconnect();
            this.observer_ = null;
        }
        const win = this.container.ownerDocument.defaultView;
        if (win) {
            win.removeEventListener('resize', this.onWindowResize_);
            if (this.frameHandle_ !== 0) {
                win.cancelAnimationFrame(this.frameHandle_);
                this.frameHandle_ = 0;
            }
        }
        if (this.stage.parentNode) {
            this.stage.parentNode.removeChild(this.stage);
        }
    }

    /** Starts the shown scene once its transition is over. */
    start(): void {
        if (this.started_ || this.destroyed_) {
            return;
        }
        this.started_ = true;
        if (this.scene_ && !this.transition_) {
            this.scene_.start();
        }
    }

    private observeResize_(): void {
        const win = this.container.ownerDocument.defaultView;
        if (!win) {
            return;
        }
        const Observer = (win as Window & { ResizeObserver?: typeof ResizeObserver }).ResizeObserver;
        if (typeof Observer === 'function') {
            this.observer_ = new Observer(() => this.relayout_());
            this.observer_.observe(this.container);
        } else {
            win.addEventListener('resize', this.onWindowResize_);
        }
    }

    // Layout

    private measure_(): void {
        if (this.symbolView_) {
            this.boxW_ = this.symbolView_.pxW;
            this.boxH_ = this.symbolView_.pxH_;
        } else {
            this.boxW_ = this.container.clientWidth;
            this.boxH_ = this.autoHeight_ ? 0 : this.container.clientHeight;
        }
    }

    /** The height that picks the vertical layout: none for a container that grows with the stage. */
    private layoutHeight_(): number {
        return this.autoHeight_ ? 0 : this.boxH_;
    }

    /** The container changed size: maybe another layout, and the stage placed anew. */
    relayout_(): void {
        if (this.destroyed_ || !this.opened_) {
            return;
        }
        this.measure_();
        const layout = chooseLayout(this.breakpoints_, this.boxW_, this.layoutHeight_());
        if (layout[0] !== this.currentLayout_[0] || layout[1] !== this.currentLayout_[1]) {
            this.currentLayout_ = layout;
            if (this.scene_) {
                this.scene_.applyLayout(layout);
            }
        }
        if (this.scene_) {
            this.scene_.view.markDirty_(Group.Pos);
        }
        this.flushNow_();
        this.placeStage_();
    }

    private stageSize_(): [number, number] {
        const view = this.scene_ ? this.scene_.view : null;
        const w = view && view.pxW > 0 ? view.pxW : num(this.data_['w'], this.boxW_);
        const h = view && view.pxH_ > 0 ? view.pxH_ : num(this.data_['h'], this.boxH_);
        return [w, h];
    }

    private stageCssSet_(name: string, text: string): void {
        if (this.stageCss_[name] !== text) {
            this.stageCss_[name] = text;
            this.stage.style.setProperty(name, text);
        }
    }

    private placeStage_(): void {
        const [w, h] = this.stageSize_();
        const place = placeStage(this.boxW_, this.autoHeight_ ? 0 : this.boxH_, w, h, this.center_, this.autofit_, this.place_);
        this.stageCssSet_('left', cssNum(place.left) + 'px');
        this.stageCssSet_('top', cssNum(place.top) + 'px');
        this.stageCssSet_('width', cssNum(w) + 'px');
        this.stageCssSet_('height', cssNum(h) + 'px');
        this.stageCssSet_('transform', place.scale === 1 ? 'none' : 'scale(' + cssNum(place.scale) + ')');
        if (this.autoHeight_) {
            this.container.style.height = cssNum(h * place.scale) + 'px';
        }
    }

    // ViewOwner

    queueFlush(view: ElementView): void {
        const root = this.root;
        root.queue_[root.queueLength_++] = view;
        root.requestFrame_();
    }

    sceneBox(): { readonly width: number; readonly height: number } {
        // Percent sizes of a scene in a box without size refer to the document's own size.
        const box = this.box_;
        box.width = this.boxW_ > 0 ? this.boxW_ : num(this.data_['w'], 0);
        box.height = this.boxH_ > 0 ? this.boxH_ : num(this.data_['h'], 0);
        return box;
    }

    sceneResized(view: ElementView): void {
        if (this.scene_ && view === this.scene_.view) {
            this.placeStage_();
        }
    }

    // The frame loop

    wake(): void {
        this.root.requestFrame_();
    }

    private requestFrame_(): void {
        if (this.frameHandle_ !== 0 || this.destroyed_) {
            return;
        }
        const win = this.container.ownerDocument.defaultView;
        if (win) {
            this.frameHandle_ = win.requestAnimationFrame(this.onFrame_);
        }
    }

    private frame_(now: number): void {
        this.frameHandle_ = 0;
        const more = this.tick(now);
        this.flushQueue_();
        if (more) {
            this.requestFrame_();
        }
    }

    /** Advances what plays, symbols inside included; answers whether more frames are needed. */
    tick(now: number): boolean {
        let more = false;
        if (this.scene_) {
            more = this.scene_.tick(now);
        }
        if (this.transition_ && this.transition_.tick(now)) {
            more = true;
        }
        return more;
    }

    private flushQueue_(): void {
        if (this.flushing_) {
            return;
        }
        this.flushing_ = true;
        try {
            // Flushing a view can queue others (children of a resized box): they come after it.
            for (let i = 0; i < this.queueLength_; ++i) {
                const view = this.queue_[i];
                this.queue_[i] = null;
                if (view) {
                    view.flush();
                }
            }
        } finally {
            this.queueLength_ = 0;
            this.flushing_ = false;
        }
    }

    /** Writes every pending change now, before the browser paints. */
    flushNow_(): void {
        this.root.flushQueue_();
    }

    // Scenes

    get sceneIndex(): number {
        return this.scene_ ? this.scene_.index : -1;
    }

    get sceneCount(): number {
        return this.scenes_.length;
    }

    get layout(): readonly [number, number] {
        return [this.currentLayout_[0], this.currentLayout_[1]];
    }

    goToScene(target: number, byId?: boolean, transition?: readonly number[]): void {
        if (this.destroyed_ || typeof target !== 'number' || !isFinite(target)) {
            return;
        }
        const count = this.scenes_.length;
        const current = this.sceneIndex;
        let index = -1;
        if (target >= 0 && byId) {
            index = this.scenes_.findIndex((scene) => scene['id'] === target);
        } else if (target >= 0) {
            index = Math.trunc(target) < count ? Math.trunc(target) : -1;
        } else if (target === NEXT_SCENE) {
            index = current + 1 < count ? current + 1 : -1;
        } else if (target === PREVIOUS_SCENE) {
            index = current - 1;
        } else if (target === LAST_SCENE) {
            index = count - 1;
        } else if (target === FIRST_SCENE) {
            index = count > 0 ? 0 : -1;
        }
        if (index < 0) {
            return;
        }
        const plan = transition ? readTransition(transition) : readTransition(this.scenes_[index]!['st']);
        this.showScene_(index, plan);
    }

    private showScene_(index: number, plan: TransitionPlan): void {
        const data = this.scenes_[index];
        if (!data || this.destroyed_) {
            return;
        }
        if (this.switching_) {
            // A listener of the scene change asked for another one: it follows this one.
            this.pendingJump_ = [index, plan];
            return;
        }
        this.switching_ = true;
        try {
            if (this.transition_) {
                this.transition_.finish();
            }
            const old = this.scene_;
            const scene = new ShownScene(this, index, data, this.stage, this.currentLayout_);
            if (old) {
                // Listeners of the scene being left still see it as the shown one.
                old.stop();
                old.fire(SCENE_DEACTIVATE);
                fireSafely(this, this.scope_, this.events, SCENE_DEACTIVATE);
            }
            this.scene_ = scene;
            scene.view.markDirty_(Group.Pos);
            this.flushNow_();
            this.placeStage_();
            scene.bindListeners();
            scene.fire(SCENE_ACTIVATE);
            fireSafely(this, this.scope_, this.events, SCENE_ACTIVATE);

            const done = (): void => {
                this.transition_ = null;
                if (old) {
                    old.destroy();
                }
                if (!this.destroyed_ && this.scene_ === scene && this.started_) {
                    scene.start();
                }
            };
            if (plan.type !== 0 && plan.duration > 0) {
                const [w, h] = this.stageSize_();
                this.transition_ = new SceneTransition(old ? old.frame : null, scene.frame, plan, w, h, done);
                this.wake();
            } else {
                done();
            }
        } finally {
            this.switching_ = false;
        }
        const pending = this.pendingJump_;
        if (pending) {
            this.pendingJump_ = null;
            this.showScene_(pending[0], pending[1]);
        }
    }

    timelineEvent(scene: ShownScene, event: number, timeline: TimelineApi, groups: unknown): void {
        // Update comes every frame: a timeline without listeners costs no scope object.
        if (groups !== undefined) {
            fireSafely(this, { host: this, elementId: null, timeline }, groups, event);
        }
        if (
            event === TIMELINE_COMPLETE &&
            scene === this.scene_ &&
            scene.autoAdvance_ &&
            scene.isMainTimeline_(timeline) &&
            timeline.speed >= 0 &&
            scene.index + 1 < this.scenes_.length
        ) {
            this.goToScene(NEXT_SCENE);
        }
    }

    // Timelines

    timeline(idOrName?: number | string): TimelineApi | null {
        return this.scene_ ? this.scene_.timeline(idOrName) : null;
    }

    seek(ms: number | string, timeline?: number | string): void {
        const found = this.timeline(timeline);
        if (found) {
            found.seek(ms);
            this.wake();
        }
    }

    play(timeline?: number | string, speed?: number): void {
        const found = this.timeline(timeline);
        if (found) {
            found.play(speed);
            this.wake();
        }
    }

    pause(timeline?: number | string): void {
        const found = this.timeline(timeline);
        if (found) {
            found.pause();
            this.wake();
        }
    }

    /** A symbol driven by a playback entry of its instance: its main timeline follows. */
    playback(kind: number, position: number, speed: number): void {
        const main = this.timeline(-1);
        if (!main) {
            return;
        }
        switch (kind % 20) {
            case 0:
            case 1:
            case 2:
                main.play(isFinite(speed) && speed !== 0 ? speed : 1, isFinite(position) ? position : undefined);
                break;
            case 3:
            case 4:
                main.pause(isFinite(position) ? position : undefined);
                break;
            default:
                break;
        }
        this.wake();
    }

    // ActionHost

    elementNode(id: number): HTMLElement | null {
        const view = this.scene_ ? this.scene_.views.get(id) : undefined;
        return view ? view.node : null;
    }

    media(elementId: number): MediaApi | null {
        return (this.scene_ && this.scene_.media.get(elementId)) || null;
    }

    symbol(elementId: number, from: ActionScope): DocumentApi | null {
        const owner = from && from.host instanceof PlayerDocument ? from.host : this;
        switch (elementId) {
            case -1:
                return owner.api;
            case -2:
                return owner.parent ? owner.parent.api : null;
            case -3:
                return this.root.api;
            default: {
                const instance = this.scene_ ? this.scene_.symbols.get(elementId) : undefined;
                return instance ? instance.api : null;
            }
        }
    }

    setElementVisible(elementId: number, visible: 'show' | 'hide' | 'toggle'): void {
        const view = this.scene_ ? this.scene_.views.get(elementId) : undefined;
        if (!view) {
            return;
        }
        const shown = view.value(Prop.Display) !== 0;
        const next = visible === 'show' ? 1 : visible === 'hide' ? 0 : shown ? 0 : 1;
        view.base[Prop.Display] = next;
        view.shownByAction_ = next;
        view.clearAnimated(Prop.Display);
        view.markDirty_(Group.Display);
        this.flushNow_();
    }

    setElementText(elementId: number, html: string): void {
        const view = this.scene_ ? this.scene_.views.get(elementId) : undefined;
        if (view && view.textContent) {
            view.textContent.innerHTML = typeof html === 'string' ? html : '';
            view.textReplaced_ = true;
        }
    }

    muteAll(): void {
        if (this.scene_) {
            this.scene_.muteAll();
        }
    }

    userFunction(id: number): UserFunction | null {
        return this.shared_.functions.get(id) || null;
    }

    // SceneOwner: resources

    private resource_(id: number): readonly unknown[] | null {
        return this.shared_.resources.get(id) || null;
    }

    private urlOf_(file: unknown): string {
        if (typeof file !== 'string') {
            return '';
        }
        const url = this.shared_.url_;
        return url ? url(file) : resourceUrl(this.shared_.resourceFolder, file);
    }

    imageUrl_(resourceId: number): string {
        const entry = this.resource_(resourceId);
        return entry && entry[1] === 0 ? this.urlOf_(entry[3]) : '';
    }

    fileUrl_(resourceId: number): string {
        const entry = this.resource_(resourceId);
        return entry && (entry[1] === 0 || entry[1] === 7 || entry[1] === 8) ? this.urlOf_(entry[3]) : '';
    }

    mediaUrls_(resourceId: number): string[] {
        const entry = this.resource_(resourceId);
        if (!entry || (entry[1] !== 1 && entry[1] !== 2)) {
            return [];
        }
        const urls: string[] = [];
        for (const file of arr(entry[3])) {
            const url = this.urlOf_(file);
            if (url !== '') {
                urls.push(url);
            }
        }
        return urls;
    }

    widgetUrl_(url: string): string {
        const prefix = 'resource://';
        if (url.slice(0, prefix.length) === prefix) {
            const name = url.slice(prefix.length);
            for (const entry of this.shared_.resources.values()) {
                if (entry[3] === name) {
                    return this.urlOf_(name);
                }
            }
            return '';
        }
        return url !== '' && isSafeUrl(url) ? url : '';
    }

    openSymbol_(view: ElementView, element: Obj): SymbolInstance | null {
        const entry = this.resource_(int(element['rs'], -1));
        const data = entry && entry[1] === 3 && isObj(entry[3]) ? entry[3] : null;
        if (!data || this.depth_ >= MAX_SYMBOL_DEPTH || this.destroyed_) {
            return null;
        }
        const nested = new PlayerDocument({
            container: view.node,
            containerId: this.containerId,
            data,
            shared: this.shared_,
            options: {
                paused: this.paused || element['ap'] !== true,
                center: centeringOfAlign(int(data['align'], 0)),
                autofit: data['af'] === true,
            },
            parent: this,
            symbolView: view,
        });
        view.hooks_ = { resized_: () => nested.relayout_() };
        return nested;
    }
}
