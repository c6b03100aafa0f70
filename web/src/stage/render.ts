// The stage's picture of one scene, drawn by the player's own renderer: the same element views,
// kinds, shapes, text and timelines as an export, built from the stage form of the scene (current
// layout only) and held still. Nothing plays by itself, no listener is bound and no preloader
// shows; the page drives the shown timeline and changes single elements as records arrive.

import { applyBlock } from '../player/blocks';
import type { ActionHost, ActionScope, DocumentApi, MediaApi, TimelineApi } from '../player/contracts';
import { PlayerDocument, type Shared } from '../player/document';
import { type ElementView, Group, Kind } from '../player/elementview';
import { buildView } from '../player/kinds';
import { centeringOfAlign } from '../player/layout';
import { arr, int, isObj, isSafeUrl, type Obj } from '../player/read';
import { type SceneOwner, ShownScene, type SymbolInstance } from '../player/scene';
import { TimelineRuntime } from '../player/timeline';
import { sanitizeTextBlock } from './sanitize';
import { eachElement, type ElementData } from './scenedata';

/** Widgets run their own scripts, but in an origin of their own: never with the stage's. */
export const WIDGET_SANDBOX = 'allow-scripts allow-forms allow-popups allow-modals';

/** A resource's address as the studio gives it to the stage: file, web or relative URLs only. */
function stageUrl(file: string): string {
    return file !== '' && isSafeUrl(file) ? file : '';
}

/** Cleans what the renderer would put into the DOM as HTML, for an element and its children. */
export function prepareElement(element: ElementData): void {
    sanitizeTextBlock(element['txt']);
    eachElement(element, (child) => sanitizeTextBlock(child['txt']));
}

export class StageRenderer implements SceneOwner, ActionHost {
    readonly host: ActionHost = this;
    readonly paused = true;
    readonly widgetSandbox_ = WIDGET_SANDBOX;
    readonly scene: ShownScene;
    readonly api: DocumentApi = this;
    readonly containerId = 'vetra-stage';
    readonly sceneIndex = 0;
    readonly sceneCount = 1;

    private readonly queue_: ElementView[] = [];
    private frameHandle_ = 0;
    private destroyed_ = false;
    private readonly shared_: Shared;
    /** Parent of the documents opened inside symbol instances; it shares their frame loop. */
    private readonly symbolRoot_: PlayerDocument;
    private readonly box_ = { width: 0, height: 0 };

    constructor(
        stageBox: HTMLElement,
        readonly data: ElementData,
        private readonly resources_: Map<number, unknown[]>,
        layout: readonly [number, number],
        private readonly size_: () => { width: number; height: number },
        /** Runs after each animation frame has been written. */
        private readonly onFrame_: () => void,
    ) {
        this.shared_ = {
            resources: resources_ as Map<number, readonly unknown[]>,
            resourceFolder: '',
            functions: new Map(),
            url_: stageUrl,
        };
        this.symbolRoot_ = new PlayerDocument({
            container: stageBox.ownerDocument.createElement('div'),
            containerId: this.containerId,
            data: { scenes: [] },
            shared: this.shared_,
            options: { paused: true, center: 'none', autofit: false },
        });
        prepareElement(data);
        this.scene = new ShownScene(this, 0, data, stageBox, layout);
        for (const view of this.scene.order) {
            this.decorate(view);
        }
        this.flushNow();
    }

    get layout(): readonly [number, number] {
        return this.scene.layout;
    }

    destroy(): void {
        if (this.destroyed_) {
            return;
        }
        this.destroyed_ = true;
        this.scene.destroy();
        this.symbolRoot_.destroy();
        if (this.frameHandle_ !== 0) {
            window.cancelAnimationFrame(this.frameHandle_);
            this.frameHandle_ = 0;
        }
    }

    // Elements

    view(id: number): ElementView | null {
        return this.scene.views.get(id) ?? null;
    }

    elementOf(view: ElementView): ElementData | null {
        return (this.scene.elements_.get(view) as ElementData | undefined) ?? null;
    }

    /** Marks the box with its id and shows the edit flags that the player knows nothing of. */
    decorate(view: ElementView): void {
        if (view.kind === Kind.Scene) {
            view.node.setAttribute('data-vt-scene', String(int(this.data['id'], 0)));
            return;
        }
        const element = this.elementOf(view);
        view.node.setAttribute('data-vt-id', String(view.id));
        if (element && element['visible'] === false) {
            view.node.setAttribute('data-vt-hidden', '');
        } else {
            view.node.removeAttribute('data-vt-hidden');
        }
    }

    /** Takes the element object's present keys again, as after a record changed them. */
    reapply(view: ElementView): void {
        const element = this.elementOf(view);
        if (!element) {
            return;
        }
        sanitizeTextBlock(element['txt']);
        applyBlock(view, element, this.scene.buildContext_());
        view.markDirty_(Group.All);
        this.decorate(view);
    }

    /** Builds the view of a new element object (already in the data tree) at `index` of its parent's children. */
    insert(element: ElementData, parent: ElementView, index: number): ElementView {
        prepareElement(element);
        const ctx = this.scene.buildContext_();
        const before = this.nodeBefore_(parent, index);
        const view = buildView(ctx, element, parent, parent.node);
        // buildView appends: put the view where the index says, in the DOM and in the child list.
        const siblings = parent.children;
        siblings.splice(siblings.indexOf(view), 1);
        siblings.splice(Math.max(0, Math.min(index, siblings.length)), 0, view);
        if (before) {
            parent.node.insertBefore(view.node, before);
        }
        for (const added of this.subtree_(view)) {
            this.decorate(added);
            const instance = this.scene.symbols.get(added.id);
            if (instance && added.kind === Kind.Symbol) {
                instance.open();
            }
        }
        this.rebindTimelines();
        return view;
    }

    /** Drops the view of an element and its children from the stage. */
    remove(view: ElementView): void {
        const parent = view.parent;
        if (!parent) {
            return;
        }
        const scene = this.scene;
        for (const gone of this.subtree_(view)) {
            scene.elements_.delete(gone);
            if (scene.views.get(gone.id) === gone) {
                scene.views.delete(gone.id);
            }
            const at = scene.order.indexOf(gone);
            if (at >= 0) {
                scene.order.splice(at, 1);
            }
            const media = scene.media.get(gone.id);
            if (media && gone.kind !== Kind.Symbol) {
                media.destroy();
                scene.media.delete(gone.id);
            }
            const instance = scene.symbols.get(gone.id);
            if (instance && gone.kind === Kind.Symbol) {
                instance.destroy();
                scene.symbols.delete(gone.id);
                const listed = scene.symbolList_.indexOf(instance);
                if (listed >= 0) {
                    scene.symbolList_.splice(listed, 1);
                }
            }
        }
        const siblings = parent.children;
        const at = siblings.indexOf(view);
        if (at >= 0) {
            siblings.splice(at, 1);
        }
        view.node.remove();
        this.rebindTimelines();
    }

    /** Moves a view to `index` among its parent's children (z order). */
    reorder(view: ElementView, index: number): void {
        const parent = view.parent;
        if (!parent) {
            return;
        }
        const siblings = parent.children;
        siblings.splice(siblings.indexOf(view), 1);
        const before = this.nodeBefore_(parent, index);
        siblings.splice(Math.max(0, Math.min(index, siblings.length)), 0, view);
        parent.node.insertBefore(view.node, before);
    }

    /** The node of the child now at `index`, before which a child put at `index` goes. */
    private nodeBefore_(parent: ElementView, index: number): Node | null {
        const child = index >= 0 ? parent.children[index] : undefined;
        return child ? child.node : null;
    }

    private subtree_(view: ElementView): ElementView[] {
        const all: ElementView[] = [view];
        for (let i = 0; i < all.length; ++i) {
            all.push(...all[i]!.children);
        }
        return all;
    }

    /** Every element view in tree order, parents first, the scene left out. */
    elementViews(): ElementView[] {
        const all: ElementView[] = [];
        const walk = (view: ElementView): void => {
            for (const child of view.children) {
                all.push(child);
                walk(child);
            }
        };
        walk(this.scene.view);
        return all;
    }

    // Timelines

    /** The timeline the stage shows: the scene data carries only the current one. */
    timelineRuntime(): TimelineRuntime | null {
        const entry = this.scene.timelines[0];
        return entry ? entry.runtime : null;
    }

    /**
     * Replaces the shown timeline by one built from `data` (its entries changed), at the same time.
     * The old one gives its values back first, so properties it no longer animates show their own.
     */
    replaceTimeline(data: Obj, time: number): TimelineRuntime | null {
        const scene = this.scene;
        const old = scene.timelines[0];
        if (old) {
            old.runtime.clearAnimated();
        }
        let runtime: TimelineRuntime;
        try {
            runtime = new TimelineRuntime(data, scene);
        } catch (error) {
            console.error('vtcanvas: a timeline could not be read', error);
            if (old) {
                scene.timelines.splice(0, 1);
            }
            return null;
        }
        runtime.setLayout(scene.layout[0], scene.layout[1]);
        const entry = { runtime, data, scope: { host: this.host, elementId: null, timeline: runtime } };
        if (old) {
            scene.timelines[0] = entry;
        } else {
            scene.timelines.push(entry);
        }
        runtime.seek(time);
        this.flushNow();
        return runtime;
    }

    /** Looks the elements of every timeline up again after views came or went. */
    rebindTimelines(): void {
        for (const entry of this.scene.timelines) {
            try {
                entry.runtime.rebind();
            } catch (error) {
                console.error('vtcanvas: a timeline could not follow the elements', error);
            }
        }
    }

    // SceneOwner and the frame loop

    queueFlush(view: ElementView): void {
        this.queue_.push(view);
        this.wake();
    }

    sceneBox(): { readonly width: number; readonly height: number } {
        const size = this.size_();
        this.box_.width = size.width;
        this.box_.height = size.height;
        return this.box_;
    }

    sceneResized(): void {
        // The stage keeps the container's size; the scene draws inside it.
    }

    wake(): void {
        if (this.frameHandle_ === 0 && !this.destroyed_) {
            this.frameHandle_ = window.requestAnimationFrame((now) => this.frame_(now));
        }
    }

    private frame_(now: number): void {
        this.frameHandle_ = 0;
        if (this.destroyed_) {
            return;
        }
        let more = false;
        try {
            more = this.scene.tick(now);
        } catch (error) {
            console.error('vtcanvas: a frame failed', error);
        }
        this.flushNow();
        this.onFrame_();
        if (more) {
            this.wake();
        }
    }

    /** Writes every pending change to the DOM now. */
    flushNow(): void {
        // Flushing a view can queue its children: they come behind it in the same pass.
        for (let i = 0; i < this.queue_.length; ++i) {
            this.queue_[i]!.flush();
        }
        this.queue_.length = 0;
    }

    timelineEvent(): void {
        // No listener runs on the stage.
    }

    // Resources

    private resource_(id: number): unknown[] | null {
        return this.resources_.get(id) ?? null;
    }

    imageUrl_(resourceId: number): string {
        const entry = this.resource_(resourceId);
        return entry && entry[1] === 0 && typeof entry[3] === 'string' ? stageUrl(entry[3]) : '';
    }

    fileUrl_(resourceId: number): string {
        const entry = this.resource_(resourceId);
        return entry && (entry[1] === 0 || entry[1] === 7 || entry[1] === 8) && typeof entry[3] === 'string'
            ? stageUrl(entry[3])
            : '';
    }

    mediaUrls_(resourceId: number): string[] {
        const entry = this.resource_(resourceId);
        if (!entry || (entry[1] !== 1 && entry[1] !== 2)) {
            return [];
        }
        return arr(entry[3])
            .map((file) => (typeof file === 'string' ? stageUrl(file) : ''))
            .filter((url) => url !== '');
    }

    widgetUrl_(url: string): string {
        const prefix = 'resource://';
        if (url.startsWith(prefix)) {
            const name = url.slice(prefix.length);
            for (const entry of this.resources_.values()) {
                if (entry[2] === name && typeof entry[3] === 'string') {
                    return stageUrl(entry[3]);
                }
            }
            return '';
        }
        return stageUrl(url);
    }

    openSymbol_(view: ElementView, element: Obj): SymbolInstance | null {
        const entry = this.resource_(int(element['rs'], -1));
        const data = entry && entry[1] === 3 && isObj(entry[3]) ? entry[3] : null;
        if (!data || this.destroyed_) {
            return null;
        }
        for (const scene of arr(data['scenes'])) {
            if (isObj(scene)) {
                prepareElement(scene as ElementData);
            }
        }
        const nested = new PlayerDocument({
            container: view.node,
            containerId: this.containerId,
            data,
            shared: this.shared_,
            options: { paused: true, center: centeringOfAlign(int(data['align'], 0)), autofit: data['af'] === true },
            parent: this.symbolRoot_,
            symbolView: view,
        });
        view.hooks_ = { resized_: () => nested.relayout_() };
        return nested;
    }

    // ActionHost: nothing of the project's interactivity runs on the stage.

    timeline(): TimelineApi | null {
        return this.timelineRuntime();
    }

    goToScene(): void {}

    elementNode(id: number): HTMLElement | null {
        return this.view(id)?.node ?? null;
    }

    seek(): void {}

    play(): void {}

    pause(): void {}

    media(): MediaApi | null {
        return null;
    }

    symbol(_elementId: number, _from: ActionScope): DocumentApi | null {
        return null;
    }

    setElementVisible(): void {}

    setElementText(): void {}

    muteAll(): void {}

    userFunction(): null {
        return null;
    }
}
