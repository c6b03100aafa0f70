// One shown scene: its frame on the stage, the views of its elements, its timelines, media and
// symbol instances, and the listeners bound to them. A scene is built when it is entered and
// thrown away when it is left, so entering it again starts it afresh.

import { applyBlock } from './blocks';
import type {
    ActionHost,
    ActionScope,
    AnimTarget,
    DocumentApi,
    PlaybackTarget,
    TimelineApi,
    TimelineHost,
} from './contracts';
import { ElementView, Kind, type ViewOwner } from './elementview';
import { bindEvents, fireEvent, runActions } from './events';
import { buildView, type BuildContext } from './kinds';
import { layoutBlock } from './layout';
import { MediaController } from './media';
import { arr, bool, isObj, type Obj } from './read';
import { TimelineRuntime } from './timeline';
import { createFrame } from './transition';

/** Binds listeners; a table the interactivity cannot read costs its listeners, not the scene. */
export function bindSafely(host: ActionHost, scope: ActionScope, node: EventTarget, groups: unknown): () => void {
    if (groups === undefined) {
        return () => undefined;
    }
    try {
        return bindEvents(host, scope, node, groups);
    } catch {
        return () => undefined;
    }
}

/** Runs the listeners of an event the player raises; failures stay inside them. */
export function fireSafely(host: ActionHost, scope: ActionScope, groups: unknown, eventNo: number, detail?: unknown): void {
    if (groups === undefined) {
        return;
    }
    try {
        fireEvent(host, scope, groups, eventNo, detail);
    } catch {
        // The page goes on without that listener.
    }
}

/** A symbol opened inside a symbol instance element. */
export interface SymbolInstance extends PlaybackTarget {
    readonly api: DocumentApi;
    /** Shows the symbol's first scene, once the scene around it is built. */
    open(): void;
    /** The element's box changed size. */
    relayout_(): void;
    tick(now: number): boolean;
    /** The scene holding it became the shown one (after its transition). */
    start(): void;
    muteAll(): void;
    destroy(): void;
}

/** What a scene needs from its document. */
export interface SceneOwner extends ViewOwner {
    readonly host: ActionHost;
    readonly paused: boolean;
    imageUrl_(resourceId: number): string;
    fileUrl_(resourceId: number): string;
    mediaUrls_(resourceId: number): string[];
    widgetUrl_(url: string): string;
    /** Sandbox flags for widget frames, when the host asks for them. */
    readonly widgetSandbox_?: string;
    openSymbol_(view: ElementView, element: Obj): SymbolInstance | null;
    /** A timeline of this scene fired an event; the owner also decides on auto-advance. */
    timelineEvent(scene: ShownScene, event: number, timeline: TimelineApi, groups: unknown): void;
    wake(): void;
}

interface TimelineEntry {
    readonly runtime: TimelineRuntime;
    readonly data: Obj;
    readonly scope: ActionScope;
}

export class ShownScene implements TimelineHost {
    readonly frame: HTMLElement;
    readonly view: ElementView;
    readonly views = new Map<number, ElementView>();
    /** Every view of the scene in tree order, the scene first. */
    readonly order: ElementView[] = [];
    readonly timelines: TimelineEntry[] = [];
    readonly media = new Map<number, MediaController>();
    readonly symbols = new Map<number, SymbolInstance>();
    /** Open symbol instances; also read by an editing host that adds or drops elements. */
    readonly symbolList_: SymbolInstance[] = [];
    readonly autoAdvance_: boolean;
    /** The element object each view shows; also read by an editing host that changes them. */
    readonly elements_ = new Map<ElementView, Obj>();
    private readonly autoplayMedia_: MediaController[] = [];
    private timelinesHandedOut_ = false;
    private unbinders_: (() => void)[] = [];
    private destroyed_ = false;
    layout: readonly [number, number];

    constructor(
        private readonly owner_: SceneOwner,
        readonly index: number,
        readonly data: Obj,
        stage: HTMLElement,
        layout: readonly [number, number],
    ) {
        this.layout = layout;
        this.autoAdvance_ = bool(data['aa'], true);
        const doc = stage.ownerDocument;
        this.frame = createFrame(doc);
        const node = doc.createElement('div');
        this.view = new ElementView(0, Kind.Scene, node, null, owner_);
        this.view.baseClass_ = 'vetra-scene';
        node.className = 'vetra-scene';
        if (data['t3d'] === true) {
            node.style.transformStyle = 'preserve-3d';
        }
        this.frame.appendChild(node);
        this.order.push(this.view);
        this.elements_.set(this.view, data);

        const ctx = this.buildContext_();
        applyBlock(this.view, layoutBlock(data, layout[0], layout[1]), ctx);
        for (const child of arr(data['elems'])) {
            if (isObj(child)) {
                buildView(ctx, child, this.view, node);
            }
        }
        if (data['t3d'] === true) {
            // Children of groups share the scene's 3D space instead of being flattened into them.
            for (const view of this.order) {
                if (view.kind === Kind.Group) {
                    view.node.style.transformStyle = 'preserve-3d';
                }
            }
        }
        stage.appendChild(this.frame);
        for (const instance of this.symbolList_) {
            instance.open();
        }
        this.createTimelines_();
    }

    /** What building views needs; also used by an editing host to build an added element. */
    buildContext_(): BuildContext {
        const owner = this.owner_;
        const scene = this;
        return {
            owner_: owner,
            register_: (view, element) => {
                scene.order.push(view);
                scene.elements_.set(view, element);
                if (view.id >= 0 && !scene.views.has(view.id)) {
                    scene.views.set(view.id, view);
                }
            },
            layout: this.layout,
            imageUrl_: (id) => owner.imageUrl_(id),
            fileUrl_: (id) => owner.fileUrl_(id),
            mediaUrls_: (id) => owner.mediaUrls_(id),
            widgetUrl_: (url) => owner.widgetUrl_(url),
            widgetSandbox_: owner.widgetSandbox_,
            addMedia_: (view, element) => {
                const controller = new MediaController(view);
                if (view.id >= 0) {
                    scene.media.set(view.id, controller);
                }
                if (element['ap'] === true) {
                    scene.autoplayMedia_.push(controller);
                }
            },
            addSymbol_: (view, element) => {
                const instance = owner.openSymbol_(view, element);
                if (instance) {
                    scene.symbolList_.push(instance);
                    if (view.id >= 0) {
                        scene.symbols.set(view.id, instance);
                    }
                }
            },
        };
    }

    private createTimelines_(): void {
        for (const data of arr(this.data['timelines'])) {
            if (!isObj(data)) {
                continue;
            }
            try {
                const runtime = new TimelineRuntime(data, this);
                runtime.setLayout(this.layout[0], this.layout[1]);
                this.timelines.push({ runtime, data, scope: { host: this.owner_.host, elementId: null, timeline: runtime } });
            } catch {
                // A timeline that cannot be read is left out; the scene still shows.
            }
        }
    }

    /** Shows the look of layout (h, v): every view takes its block, every timeline its animations. */
    applyLayout(layout: readonly [number, number]): void {
        this.layout = layout;
        const ctx = this.buildContext_();
        for (const view of this.order) {
            const element = view === this.view ? this.data : this.elementOf_(view);
            if (element) {
                applyBlock(view, layoutBlock(element, layout[0], layout[1]), ctx);
            }
        }
        for (const entry of this.timelines) {
            try {
                entry.runtime.setLayout(layout[0], layout[1]);
            } catch {
                // The timeline keeps its old layout.
            }
        }
        this.owner_.wake();
    }

    private elementOf_(view: ElementView): Obj | null {
        return this.elements_.get(view) || null;
    }

    /** Binds the listeners of the scene and of its elements. */
    bindListeners(): void {
        const host = this.owner_.host;
        const sceneScope: ActionScope = { host, elementId: null, timeline: null };
        this.unbinders_.push(bindSafely(host, sceneScope, this.view.node, this.data['e']));
        for (const [view, element] of this.elements_) {
            if (view !== this.view && element['e'] !== undefined) {
                this.unbinders_.push(bindSafely(host, { host, elementId: view.id, timeline: null }, view.node, element['e']));
            }
        }
    }

    /** Runs the scene's own listeners of a player event (scene activation). */
    fire(eventNo: number): void {
        fireSafely(this.owner_.host, { host: this.owner_.host, elementId: null, timeline: null }, this.data['e'], eventNo);
    }

    /** The scene is now the shown one: its main timeline, media and symbols start unless paused. */
    start(): void {
        if (this.destroyed_) {
            return;
        }
        for (const instance of this.symbolList_) {
            instance.start();
        }
        if (this.owner_.paused) {
            return;
        }
        const main = this.timelines[0];
        // A script (an action, a handler, the page) that took hold of a timeline during the
        // entrance transition has decided what plays; autoplay must not restart it.
        if (main && !this.timelinesHandedOut_) {
            try {
                main.runtime.play();
            } catch {
                // Nothing plays; the scene stays at its first frame.
            }
        }
        for (const controller of this.autoplayMedia_) {
            controller.play(1);
        }
        this.owner_.wake();
    }

    tick(now: number): boolean {
        // Indexed loops: this runs every frame and must not make iterators.
        let more = false;
        const timelines = this.timelines;
        for (let i = 0; i < timelines.length; ++i) {
            try {
                if (timelines[i]!.runtime.tick(now)) {
                    more = true;
                }
            } catch {
                // A failing timeline stops asking for frames.
            }
        }
        const symbols = this.symbolList_;
        for (let i = 0; i < symbols.length; ++i) {
            if (symbols[i]!.tick(now)) {
                more = true;
            }
        }
        return more;
    }

    timeline(idOrName?: number | string): TimelineApi | null {
        this.timelinesHandedOut_ = true;
        if (idOrName === undefined || idOrName === -1) {
            const main = this.timelines[0];
            return main ? main.runtime : null;
        }
        for (const entry of this.timelines) {
            if (typeof idOrName === 'number' ? entry.runtime.id === idOrName : entry.runtime.name === idOrName) {
                return entry.runtime;
            }
        }
        return null;
    }

    muteAll(): void {
        for (const controller of this.media.values()) {
            controller.mute(true);
        }
        for (const instance of this.symbolList_) {
            instance.muteAll();
        }
    }

    /** Pauses what plays, so that a scene on its way out stays still. */
    stop(): void {
        for (const entry of this.timelines) {
            try {
                entry.runtime.pause();
            } catch {
                // Nothing more to stop.
            }
        }
        for (const controller of this.media.values()) {
            controller.destroy();
        }
    }

    destroy(): void {
        if (this.destroyed_) {
            return;
        }
        this.destroyed_ = true;
        this.stop();
        for (const unbind of this.unbinders_) {
            unbind();
        }
        this.unbinders_ = [];
        for (const instance of this.symbolList_) {
            instance.destroy();
        }
        this.symbols.clear();
        this.symbolList_.length = 0;
        if (this.frame.parentNode) {
            this.frame.parentNode.removeChild(this.frame);
        }
    }

    // TimelineHost

    animTarget(elementId: number): AnimTarget | null {
        return elementId === 0 ? this.view : this.views.get(elementId) || null;
    }

    playbackTarget(elementId: number): PlaybackTarget | null {
        return this.media.get(elementId) || this.symbols.get(elementId) || null;
    }

    runActions(actions: readonly unknown[][], timeline: TimelineApi): void {
        const entry = this.entryOf_(timeline);
        const host = this.owner_.host;
        try {
            runActions(host, entry ? entry.scope : { host, elementId: null, timeline }, actions);
        } catch {
            // Actions that fail leave the timeline running.
        }
    }

    timelineEvent(event: number, timeline: TimelineApi): void {
        const entry = this.entryOf_(timeline);
        this.owner_.timelineEvent(this, event, timeline, entry ? entry.data['e'] : undefined);
    }

    wake(): void {
        this.owner_.wake();
    }

    isMainTimeline_(timeline: TimelineApi): boolean {
        const main = this.timelines[0];
        return !!main && main.runtime === timeline;
    }

    private entryOf_(timeline: TimelineApi): TimelineEntry | null {
        // Indexed: every frame asks, through the Update event.
        const timelines = this.timelines;
        for (let i = 0; i < timelines.length; ++i) {
            if (timelines[i]!.runtime === timeline) {
                return timelines[i]!;
            }
        }
        return null;
    }
}
