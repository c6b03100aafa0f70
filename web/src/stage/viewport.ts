// Zoom and scroll of the stage view. The stage's origin sits at `origin` (pixels of the viewport
// element) and is drawn `zoom` times its size. The studio keeps the same state in its own terms:
// the scene offset is where the origin sits before any scrolling (the stage centred), and the
// scroll is how far the view has moved from there, so that (p - offset + scroll) / zoom maps a
// view point to the stage.

import type { Point } from './contracts';

export const MIN_ZOOM = 0.1;
export const MAX_ZOOM = 4;
/** Room kept around a stage that is fitted to the view. */
const FIT_MARGIN = 40;
/** How much of the stage stays in view however far it is scrolled. */
const KEEP_VISIBLE = 60;

export function clampZoom(zoom: number): number {
    return isFinite(zoom) ? Math.min(MAX_ZOOM, Math.max(MIN_ZOOM, zoom)) : 1;
}

export interface ViewportListener {
    /** Zoom, origin or fit changed; `byUser` when the page itself (not the studio) changed it. */
    viewChanged(byUser: boolean, zoomChanged: boolean): void;
}

export class Viewport {
    zoom = 1;
    fit = false;
    private originX_ = 0;
    private originY_ = 0;
    private stageW_ = 800;
    private stageH_ = 600;
    private placed_ = false;
    /** The author has zoomed or scrolled: a resized view no longer centres the stage by itself. */
    private moved_ = false;

    constructor(
        /** The element the stage is seen through; its box is the view. */
        readonly element: HTMLElement,
        /** Carries the stage; takes the zoom and scroll as its transform. */
        private readonly world_: HTMLElement,
        private readonly listener_: ViewportListener,
    ) {}

    /** The view's box in client pixels. */
    rect(): DOMRect {
        return this.element.getBoundingClientRect();
    }

    get origin(): Point {
        return { x: this.originX_, y: this.originY_ };
    }

    /** Client pixels to stage pixels. */
    toStage(clientX: number, clientY: number): Point {
        const r = this.rect();
        return { x: (clientX - r.left - this.originX_) / this.zoom, y: (clientY - r.top - this.originY_) / this.zoom };
    }

    /** Stage pixels to client pixels. */
    toClient(p: Point): Point {
        const r = this.rect();
        return { x: r.left + this.originX_ + p.x * this.zoom, y: r.top + this.originY_ + p.y * this.zoom };
    }

    /** Where the origin sits with the stage centred at this zoom (the studio's scene offset), in view pixels. */
    centredOrigin(): Point {
        const r = this.rect();
        return {
            x: Math.round(Math.max(FIT_MARGIN, (r.width - this.stageW_ * this.zoom) / 2)),
            y: Math.round(Math.max(FIT_MARGIN, (r.height - this.stageH_ * this.zoom) / 2)),
        };
    }

    /** Scroll from the centred place, in view pixels. */
    scroll(): Point {
        const centred = this.centredOrigin();
        return { x: centred.x - this.originX_, y: centred.y - this.originY_ };
    }

    /** A new stage size: the first one centres the stage; later ones keep the origin. */
    setStageSize(w: number, h: number): void {
        this.stageW_ = w;
        this.stageH_ = h;
        if (this.fit) {
            this.fitNow_(false);
        } else if (!this.placed_) {
            this.placed_ = true;
            this.centre(false);
        } else {
            this.clampOrigin_();
            this.apply_(false, false);
        }
    }

    centre(byUser: boolean): void {
        const centred = this.centredOrigin();
        this.originX_ = centred.x;
        this.originY_ = centred.y;
        this.apply_(byUser, false);
    }

    /** Zooms about a point of the view (client pixels), by default its centre. */
    setZoom(zoom: number, byUser: boolean, clientX?: number, clientY?: number): void {
        const next = clampZoom(zoom);
        const r = this.rect();
        const ax = clientX !== undefined ? clientX - r.left : r.width / 2;
        const ay = clientY !== undefined ? clientY - r.top : r.height / 2;
        const changed = next !== this.zoom;
        this.moved_ = this.moved_ || byUser;
        this.originX_ = ax - ((ax - this.originX_) * next) / this.zoom;
        this.originY_ = ay - ((ay - this.originY_) * next) / this.zoom;
        this.zoom = next;
        if (byUser) {
            this.fit = false;
        }
        this.clampOrigin_();
        this.apply_(byUser, changed);
    }

    scrollBy(dx: number, dy: number): void {
        if (dx === 0 && dy === 0) {
            return;
        }
        this.moved_ = true;
        this.originX_ -= dx;
        this.originY_ -= dy;
        this.clampOrigin_();
        this.apply_(true, false);
    }

    setFit(fit: boolean, byUser: boolean): void {
        this.fit = fit;
        if (fit) {
            this.fitNow_(byUser);
        } else {
            this.apply_(byUser, false);
        }
    }

    /** The view changed size: a fitted stage is fitted again, a centred one stays centred. */
    resized(): void {
        if (this.fit) {
            this.fitNow_(false);
        } else if (!this.moved_) {
            this.centre(false);
        } else {
            this.clampOrigin_();
            this.apply_(false, false);
        }
    }

    private fitNow_(byUser: boolean): void {
        const r = this.rect();
        const zoom = clampZoom(
            Math.min((r.width - 2 * FIT_MARGIN) / this.stageW_, (r.height - 2 * FIT_MARGIN) / this.stageH_),
        );
        const changed = zoom !== this.zoom;
        this.zoom = zoom;
        this.placed_ = true;
        const centred = this.centredOrigin();
        this.originX_ =
            (r.width - this.stageW_ * zoom) / 2 > FIT_MARGIN ? (r.width - this.stageW_ * zoom) / 2 : centred.x;
        this.originY_ =
            (r.height - this.stageH_ * zoom) / 2 > FIT_MARGIN ? (r.height - this.stageH_ * zoom) / 2 : centred.y;
        this.apply_(byUser, changed);
    }

    private clampOrigin_(): void {
        const r = this.rect();
        const w = this.stageW_ * this.zoom;
        const h = this.stageH_ * this.zoom;
        this.originX_ = Math.min(r.width - KEEP_VISIBLE, Math.max(KEEP_VISIBLE - w, this.originX_));
        this.originY_ = Math.min(r.height - KEEP_VISIBLE, Math.max(KEEP_VISIBLE - h, this.originY_));
    }

    private apply_(byUser: boolean, zoomChanged: boolean): void {
        // Whole pixels keep the stage's edges and text sharp.
        this.originX_ = Math.round(this.originX_);
        this.originY_ = Math.round(this.originY_);
        this.world_.style.transform = `translate(${this.originX_}px, ${this.originY_}px) scale(${this.zoom})`;
        this.listener_.viewChanged(byUser, zoomChanged);
    }
}
