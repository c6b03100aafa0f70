// Pointer, wheel and keys on the stage view: selection by click and rubber band, the drags of the
// selection and its handles, panning, zooming, nudging with the arrow keys, and the context menu.
// A running tool sees the pointer first.

import type { Point } from './contracts';
import { type ElementView, Kind } from '../player/elementview';
import { MoveGesture, ResizeGesture, RotateGesture } from './gestures';
import type { StagePage } from './page';
import { childWithin, elementAt, elementsIn, isPickable, outermost, selectable } from './picking';
import { handleCursor, type HandleName, type HitName } from './selectionview';

/** Movement before a press becomes a drag, in screen pixels. */
const DRAG_THRESHOLD = 3;
/** Arrow key presses closer together than this are one move. */
const NUDGE_IDLE_MS = 350;
const WHEEL_ZOOM_RATE = 0.0025;

type Gesture = MoveGesture | ResizeGesture | RotateGesture;

type State =
    | { readonly kind: 'idle' }
    | { readonly kind: 'tool'; readonly pointerId: number }
    | {
          readonly kind: 'press';
          readonly pointerId: number;
          readonly client: Point;
          readonly stage: Point;
          readonly target: ElementView;
          /** What a click without drag does on release. */
          readonly onClick: 'toggle' | 'solo' | 'none';
      }
    | { readonly kind: 'gesture'; readonly pointerId: number; readonly gesture: Gesture }
    | { readonly kind: 'band'; readonly pointerId: number; readonly start: Point; readonly base: readonly number[] }
    | { readonly kind: 'pan'; readonly pointerId: number; last: Point }
    | {
          readonly kind: 'container';
          readonly pointerId: number;
          readonly handle: HitName;
          readonly start: Point;
          readonly w0: number;
          readonly h0: number;
          w: number;
          h: number;
      };

const IDLE: State = { kind: 'idle' };

function editableTarget(target: EventTarget | null): boolean {
    const el = target instanceof Element ? target : null;
    return !!el && el.closest('input, textarea, select, [contenteditable=""], [contenteditable="true"]') !== null;
}

export class StageInput {
    private state_: State = IDLE;
    private spaceDown_ = false;
    private hoverFrame_ = 0;
    private lastMove_: PointerEvent | null = null;
    private nudge_: { gesture: MoveGesture; dx: number; dy: number; timer: number } | null = null;

    constructor(private readonly page_: StagePage) {
        const viewport = page_.el.viewport;
        viewport.addEventListener('pointerdown', (e) => this.pointerDown_(e));
        viewport.addEventListener('pointermove', (e) => this.pointerMove_(e));
        viewport.addEventListener('pointerup', (e) => this.pointerUp_(e));
        viewport.addEventListener('pointercancel', () => this.cancel());
        viewport.addEventListener('pointerleave', () => this.page_.setHover(null));
        viewport.addEventListener('dblclick', (e) => this.doubleClick_(e));
        viewport.addEventListener('contextmenu', (e) => this.contextMenu_(e));
        viewport.addEventListener('wheel', (e) => this.wheel_(e), { passive: false });
        window.addEventListener('keydown', (e) => this.keyDown_(e));
        window.addEventListener('keyup', (e) => this.keyUp_(e));
        window.addEventListener('blur', () => {
            this.spaceDown_ = false;
            this.updateCursor_(null);
        });
    }

    get busy(): boolean {
        return this.state_.kind !== 'idle' || this.nudge_ !== null;
    }

    /** Drops what the pointer or the keys are doing, putting everything back. */
    cancel(): void {
        const state = this.state_;
        this.state_ = IDLE;
        if (state.kind === 'gesture') {
            state.gesture.cancel();
        } else if (state.kind === 'container') {
            this.showContainer_(state.w0, state.h0);
        }
        if (this.nudge_) {
            window.clearTimeout(this.nudge_.timer);
            this.nudge_.gesture.cancel();
            this.nudge_ = null;
        }
        this.release_(state);
        if (this.page_.hasScene) {
            this.page_.renderer.flushNow();
        }
        this.page_.setExtra({});
    }

    private release_(state: State): void {
        if ('pointerId' in state && this.page_.el.viewport.hasPointerCapture(state.pointerId)) {
            this.page_.el.viewport.releasePointerCapture(state.pointerId);
        }
    }

    private capture_(e: PointerEvent): void {
        this.page_.el.viewport.setPointerCapture(e.pointerId);
    }

    // Pointer

    private pointerDown_(e: PointerEvent): void {
        const page = this.page_;
        if (!page.hasScene || this.state_.kind !== 'idle') {
            return;
        }
        const stage = page.toStage(e.clientX, e.clientY);
        if (e.button === 1 || (e.button === 0 && this.spaceDown_)) {
            e.preventDefault();
            this.state_ = { kind: 'pan', pointerId: e.pointerId, last: { x: e.clientX, y: e.clientY } };
            this.capture_(e);
            this.updateCursor_('grabbing');
            return;
        }
        const tool = page.tool;
        if (tool && e.button === 0) {
            let used = false;
            try {
                used = tool.pointerDown(e);
            } catch (error) {
                console.error('vtcanvas: the tool failed', error);
            }
            if (used) {
                // The tool decides about the browser's own handling (a caret in edited text needs it).
                this.state_ = { kind: 'tool', pointerId: e.pointerId };
                if (!editableTarget(e.target)) {
                    this.capture_(e);
                }
                return;
            }
        }
        if (e.button !== 0 || page.stageView !== 0) {
            return;
        }
        e.preventDefault();
        const handle = page.tool ? null : page.selectionView.hit(e.clientX, e.clientY);
        if (handle) {
            this.startHandle_(e, handle, stage);
            return;
        }
        const renderer = page.renderer;
        const hit = elementAt(renderer, stage);
        if (!hit) {
            page.notify('setFocusedItemId', [-1]);
            const additive = e.shiftKey || e.ctrlKey || e.metaKey;
            const base = additive ? [...page.selection] : [];
            if (!additive) {
                page.select([]);
            }
            this.state_ = { kind: 'band', pointerId: e.pointerId, start: stage, base };
            this.capture_(e);
            return;
        }
        const target = selectable(hit, page.selection);
        page.notify('setFocusedItemId', [target.id]);
        let onClick: 'toggle' | 'solo' | 'none' = 'none';
        if (e.shiftKey || e.ctrlKey || e.metaKey) {
            if (page.selection.has(target.id)) {
                onClick = 'toggle';
            } else {
                page.select([...page.selection, target.id]);
            }
        } else if (!page.selection.has(target.id)) {
            page.select([target.id]);
        } else if (page.selection.size > 1) {
            onClick = 'solo';
        }
        this.state_ = {
            kind: 'press',
            pointerId: e.pointerId,
            client: { x: e.clientX, y: e.clientY },
            stage,
            target,
            onClick,
        };
        this.capture_(e);
    }

    private startHandle_(e: PointerEvent, handle: HitName, stage: Point): void {
        const page = this.page_;
        if (handle === 'container-e' || handle === 'container-s' || handle === 'container-se') {
            const size = page.containerSize();
            this.state_ = {
                kind: 'container',
                pointerId: e.pointerId,
                handle,
                start: stage,
                w0: size.w,
                h0: size.h,
                w: size.w,
                h: size.h,
            };
            this.capture_(e);
            return;
        }
        const frame = page.selectionView.frame;
        const views = this.movable_();
        if (!frame || views.length === 0) {
            return;
        }
        page.pauseForEdit();
        const gesture =
            handle === 'rotate'
                ? new RotateGesture(page, views, frame, stage)
                : new ResizeGesture(page, views, frame, handle as HandleName, e);
        this.state_ = { kind: 'gesture', pointerId: e.pointerId, gesture };
        this.capture_(e);
    }

    /** The selected elements that a drag moves: the outermost ones that show and are not locked. */
    private movable_(): ElementView[] {
        const page = this.page_;
        return outermost(page.renderer, page.selection).filter((view) => isPickable(page.renderer, view));
    }

    private pointerMove_(e: PointerEvent): void {
        const page = this.page_;
        const state = this.state_;
        if (!page.hasScene) {
            return;
        }
        switch (state.kind) {
            case 'idle':
                // A tool that draws point by point shows where the next point goes between clicks.
                if (page.tool) {
                    page.tool.pointerMove(e);
                    return;
                }
                this.lastMove_ = e;
                if (this.hoverFrame_ === 0) {
                    this.hoverFrame_ = window.requestAnimationFrame(() => this.hover_());
                }
                return;
            case 'tool':
                if (e.pointerId === state.pointerId) {
                    page.tool?.pointerMove(e);
                }
                return;
            case 'pan':
                page.viewport.scrollBy(state.last.x - e.clientX, state.last.y - e.clientY);
                state.last = { x: e.clientX, y: e.clientY };
                return;
            case 'press': {
                if (Math.hypot(e.clientX - state.client.x, e.clientY - state.client.y) < DRAG_THRESHOLD) {
                    return;
                }
                const views = this.movable_();
                if (views.length === 0) {
                    this.state_ = IDLE;
                    return;
                }
                page.pauseForEdit();
                const gesture = new MoveGesture(page, views, state.stage, e);
                this.state_ = { kind: 'gesture', pointerId: state.pointerId, gesture };
                this.updateGesture_(gesture, e);
                return;
            }
            case 'gesture':
                this.updateGesture_(state.gesture, e);
                return;
            case 'band': {
                const p = page.toStage(e.clientX, e.clientY);
                const band = {
                    x: Math.min(p.x, state.start.x),
                    y: Math.min(p.y, state.start.y),
                    w: Math.abs(p.x - state.start.x),
                    h: Math.abs(p.y - state.start.y),
                };
                page.setExtra({ band });
                return;
            }
            case 'container': {
                const p = page.toStage(e.clientX, e.clientY);
                const horizontal = state.handle !== 'container-s';
                const vertical = state.handle !== 'container-e';
                state.w = horizontal ? Math.max(20, Math.round(state.w0 + p.x - state.start.x)) : state.w0;
                state.h = vertical ? Math.max(20, Math.round(state.h0 + p.y - state.start.y)) : state.h0;
                this.showContainer_(state.w, state.h);
                return;
            }
        }
    }

    private updateGesture_(gesture: Gesture, e: PointerEvent): void {
        const page = this.page_;
        gesture.update(page.toStage(e.clientX, e.clientY), e);
        page.renderer.flushNow();
        page.setExtra({ guideX: gesture.guides.guideX, guideY: gesture.guides.guideY });
    }

    private pointerUp_(e: PointerEvent): void {
        const page = this.page_;
        const state = this.state_;
        if (state.kind === 'idle' || !('pointerId' in state) || e.pointerId !== state.pointerId) {
            return;
        }
        this.state_ = IDLE;
        this.release_(state);
        switch (state.kind) {
            case 'tool':
                page.tool?.pointerUp(e);
                break;
            case 'pan':
                this.updateCursor_(this.spaceDown_ ? 'grab' : null);
                break;
            case 'press':
                if (state.onClick === 'toggle') {
                    page.select([...page.selection].filter((id) => id !== state.target.id));
                } else if (state.onClick === 'solo') {
                    page.select([state.target.id]);
                } else if (
                    page.editTextOnSingleClick &&
                    page.selection.size === 1 &&
                    page.selection.has(state.target.id)
                ) {
                    page.editText(state.target.id);
                }
                break;
            case 'gesture':
                this.finishGesture_(state.gesture);
                break;
            case 'band': {
                const p = page.toStage(e.clientX, e.clientY);
                const band = {
                    x: Math.min(p.x, state.start.x),
                    y: Math.min(p.y, state.start.y),
                    w: Math.abs(p.x - state.start.x),
                    h: Math.abs(p.y - state.start.y),
                };
                page.setExtra({});
                if (band.w > 0 || band.h > 0) {
                    const ids = new Set(state.base);
                    for (const view of elementsIn(page.renderer, band)) {
                        ids.add(view.id);
                    }
                    page.select([...ids]);
                }
                break;
            }
            case 'container':
                this.showContainer_(state.w0, state.h0);
                page.resizeContainer(state.w, state.h);
                break;
        }
    }

    private finishGesture_(gesture: Gesture): void {
        const page = this.page_;
        page.setExtra({});
        const result = gesture.finish();
        if (result) {
            page.submit(result.records, result.text, false);
            page.awaitAnswer(result.live);
        } else {
            gesture.cancel();
            page.renderer.flushNow();
            page.redraw();
        }
    }

    /** Shows the stage at a size while its container handles are dragged. */
    private showContainer_(w: number, h: number): void {
        const stage = this.page_.el.stage;
        stage.style.width = w + 'px';
        stage.style.height = h + 'px';
        this.page_.setExtra({});
    }

    private hover_(): void {
        this.hoverFrame_ = 0;
        const page = this.page_;
        const e = this.lastMove_;
        if (!e || !page.hasScene || this.state_.kind !== 'idle') {
            return;
        }
        const handle = page.tool ? null : page.selectionView.hit(e.clientX, e.clientY);
        if (handle) {
            page.setHover(null);
            const frame = page.selectionView.frame;
            this.updateCursor_(
                handle === 'rotate'
                    ? 'alias'
                    : handle === 'container-e'
                      ? 'ew-resize'
                      : handle === 'container-s'
                        ? 'ns-resize'
                        : handle === 'container-se'
                          ? 'nwse-resize'
                          : handleCursor(handle, frame?.rotation ?? 0),
            );
            return;
        }
        if (page.tool) {
            this.updateCursor_(null);
            return;
        }
        const hit = elementAt(page.renderer, page.toStage(e.clientX, e.clientY));
        const target = hit ? selectable(hit, page.selection) : null;
        page.setHover(target);
        this.updateCursor_(this.spaceDown_ ? 'grab' : target ? 'move' : null);
    }

    private updateCursor_(cursor: string | null): void {
        const glass = this.page_.el.glass;
        if (cursor) {
            glass.style.cursor = cursor;
        } else {
            glass.style.removeProperty('cursor');
        }
    }

    private doubleClick_(e: MouseEvent): void {
        const page = this.page_;
        if (!page.hasScene || page.tool || page.stageView !== 0) {
            return;
        }
        const hit = elementAt(page.renderer, page.toStage(e.clientX, e.clientY));
        if (!hit) {
            return;
        }
        const target = selectable(hit, page.selection);
        if (target !== hit) {
            // Into the group (or any element holding others): its child under the pointer.
            const child = childWithin(target, hit);
            if (child) {
                page.select([child.id]);
            }
            return;
        }
        if (target.kind === Kind.Symbol) {
            page.notify('editSymbol', [target.id]);
            return;
        }
        page.pauseForEdit();
        page.editText(target.id);
    }

    private contextMenu_(e: MouseEvent): void {
        e.preventDefault();
        const page = this.page_;
        if (!page.hasScene) {
            return;
        }
        if (page.tool) {
            // The studio's menu for point editing or text; the tool keeps the pointer.
            page.notify('onShowContextMenu', []);
            return;
        }
        const hit = elementAt(page.renderer, page.toStage(e.clientX, e.clientY));
        const target = hit ? selectable(hit, page.selection) : null;
        if (target && !page.selection.has(target.id)) {
            page.select([target.id]);
        }
        page.notify('setFocusedItemId', [target ? target.id : -1]);
        page.notify('onShowContextMenu', []);
    }

    private wheel_(e: WheelEvent): void {
        const page = this.page_;
        e.preventDefault();
        const scale = e.deltaMode === 1 ? 16 : e.deltaMode === 2 ? 400 : 1;
        if (e.ctrlKey || e.metaKey) {
            const factor = Math.exp(-e.deltaY * scale * WHEEL_ZOOM_RATE);
            page.viewport.setZoom(page.viewport.zoom * factor, true, e.clientX, e.clientY);
            return;
        }
        const dx = e.shiftKey && e.deltaX === 0 ? e.deltaY : e.deltaX;
        const dy = e.shiftKey && e.deltaX === 0 ? 0 : e.deltaY;
        page.viewport.scrollBy(dx * scale, dy * scale);
    }

    // Keys

    private keyDown_(e: KeyboardEvent): void {
        const page = this.page_;
        const tool = page.tool;
        if (tool) {
            let used = false;
            try {
                used = tool.keyDown(e);
            } catch (error) {
                console.error('vtcanvas: the tool failed', error);
            }
            if (used) {
                return;
            }
        }
        if (editableTarget(e.target) || !page.hasScene) {
            return;
        }
        if (e.key === 'Escape') {
            if (this.busy) {
                e.preventDefault();
                this.cancel();
            }
            return;
        }
        if (e.key === ' ' || e.code === 'Space') {
            e.preventDefault();
            if (!this.spaceDown_) {
                this.spaceDown_ = true;
                this.updateCursor_('grab');
            }
            return;
        }
        const step = e.shiftKey ? 10 : 1;
        const arrows: { [key: string]: [number, number] } = {
            ArrowLeft: [-step, 0],
            ArrowRight: [step, 0],
            ArrowUp: [0, -step],
            ArrowDown: [0, step],
        };
        const arrow = arrows[e.key];
        if (arrow && !tool && this.state_.kind === 'idle' && page.selection.size > 0) {
            e.preventDefault();
            this.nudgeBy_(arrow[0], arrow[1]);
        }
    }

    private keyUp_(e: KeyboardEvent): void {
        if (e.key === ' ' || e.code === 'Space') {
            this.spaceDown_ = false;
            if (this.state_.kind !== 'pan') {
                this.updateCursor_(null);
            }
        }
    }

    /** Moves the selection by whole stage pixels; presses in quick succession make one command. */
    private nudgeBy_(dx: number, dy: number): void {
        const page = this.page_;
        if (!this.nudge_) {
            const views = this.movable_();
            if (views.length === 0) {
                return;
            }
            page.pauseForEdit();
            this.nudge_ = {
                gesture: new MoveGesture(page, views, { x: 0, y: 0 }, { altKey: true }),
                dx: 0,
                dy: 0,
                timer: 0,
            };
        }
        const nudge = this.nudge_;
        nudge.dx += dx;
        nudge.dy += dy;
        nudge.gesture.moveBy(nudge.dx, nudge.dy);
        page.renderer.flushNow();
        page.redraw();
        window.clearTimeout(nudge.timer);
        nudge.timer = window.setTimeout(() => {
            if (this.nudge_ === nudge) {
                this.nudge_ = null;
                this.finishGesture_(nudge.gesture);
            }
        }, NUDGE_IDLE_MS);
    }
}
