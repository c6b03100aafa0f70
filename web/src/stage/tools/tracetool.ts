// Drawing the freeforms that have no box to drag out:
//   curve            each click adds a point of a smooth curve through all of them;
//   freeform shape   each click adds a corner, a drag adds a freehand stretch;
//   scribble         one freehand stroke, from press to release.
// A click on the first point closes the outline and inserts it; a double click or Enter inserts
// it open (a scribble inserts on release, closed when it ends on its start). Backspace takes the
// last point back, Escape leaves with nothing inserted.

import { ElementKind, type Point, type StageHost, type StageTool } from '../contracts';
import { distance, simplifyStroke, smoothHandles } from './geometry';
import { type Anchor, EditPath } from './editpath';
import { FEEDBACK, OverlayLayer, polyline } from './overlay';
import { insertRecord, intParam, pathParam } from './records';
import { CURVE_TYPE, SCRIBBLE_TYPE } from './shapekinds';

/** Client pixels within which a click lands on the first point, or two clicks are one place. */
const CLOSE_RADIUS = 8;
const DOUBLE_CLICK_MS = 400;
const DRAG_THRESHOLD = 3;
/** How far, in client pixels, a smoothed stroke may stray from what the hand drew. */
const STROKE_TOLERANCE = 1.5;

interface TracePoint {
    readonly p: Point;
    /** Smooth points get handles along the curve, corners none. */
    readonly smooth: boolean;
}

export class TraceDrawTool implements StageTool {
    readonly name = 'draw';
    private readonly host_: StageHost;
    private readonly type_: number;
    private readonly layer_: OverlayLayer;
    private points_: TracePoint[] = [];
    /** The freehand stroke of the present press, in stage pixels. */
    private stroke_: Point[] | null = null;
    private pressClient_: Point | null = null;
    private hover_: Point | null = null;
    private lastClick_: { time: number; x: number; y: number } | null = null;
    private done_ = false;

    constructor(host: StageHost, type: number) {
        this.host_ = host;
        this.type_ = type;
        this.layer_ = new OverlayLayer(host, 'vetra-draw-preview');
    }

    pointerDown(e: PointerEvent): boolean {
        if (this.done_) {
            return false;
        }
        if (e.button !== 0) {
            this.finish_(false, false);
            return true;
        }
        const now = e.timeStamp || Date.now();
        const last = this.lastClick_;
        const isDouble =
            last !== null && now - last.time < DOUBLE_CLICK_MS && Math.hypot(e.clientX - last.x, e.clientY - last.y) < CLOSE_RADIUS;
        this.lastClick_ = { time: now, x: e.clientX, y: e.clientY };
        if (this.type_ !== SCRIBBLE_TYPE) {
            if (this.nearFirst_(e.clientX, e.clientY)) {
                this.finish_(true, true);
                return true;
            }
            if (isDouble && this.points_.length >= 2) {
                this.finish_(true, false);
                return true;
            }
        }
        const raw = this.host_.toStage(e.clientX, e.clientY);
        this.pressClient_ = { x: e.clientX, y: e.clientY };
        if (this.type_ === SCRIBBLE_TYPE) {
            this.stroke_ = [raw];
        } else {
            this.points_.push({ p: this.host_.snap(raw), smooth: this.type_ === CURVE_TYPE });
            this.stroke_ = this.type_ === CURVE_TYPE ? null : [raw];
        }
        this.hover_ = raw;
        this.redraw_();
        return true;
    }

    pointerMove(e: PointerEvent): void {
        if (this.done_) {
            return;
        }
        const p = this.host_.toStage(e.clientX, e.clientY);
        this.hover_ = p;
        if (this.stroke_ && this.pressClient_ && e.buttons & 1) {
            this.stroke_.push(p);
        }
        this.redraw_();
    }

    pointerUp(e: PointerEvent): void {
        if (this.done_ || !this.pressClient_) {
            return;
        }
        const stroke = this.stroke_;
        const dragged = Math.hypot(e.clientX - this.pressClient_.x, e.clientY - this.pressClient_.y) >= DRAG_THRESHOLD;
        this.pressClient_ = null;
        this.stroke_ = null;
        if (!stroke || !dragged) {
            this.redraw_();
            return;
        }
        stroke.push(this.host_.toStage(e.clientX, e.clientY));
        const zoom = this.host_.zoom() > 0 ? this.host_.zoom() : 1;
        const kept = simplifyStroke(stroke, STROKE_TOLERANCE / zoom);
        if (this.type_ === SCRIBBLE_TYPE) {
            this.points_ = kept.map((p) => ({ p, smooth: true }));
            const end = this.host_.toClient(kept[kept.length - 1] as Point);
            const start = this.host_.toClient(kept[0] as Point);
            this.finish_(true, kept.length > 2 && distance(start, end) < CLOSE_RADIUS);
            return;
        }
        // A drag in a freeform shape: the pressed corner is already there, the rest follows the hand.
        for (const p of kept.slice(1)) {
            this.points_.push({ p, smooth: true });
        }
        this.redraw_();
    }

    keyDown(e: KeyboardEvent): boolean {
        if (this.done_) {
            return false;
        }
        switch (e.key) {
            case 'Escape':
                this.finish_(false, false);
                return true;
            case 'Enter':
                this.finish_(true, false);
                return true;
            case 'Backspace':
            case 'Delete':
                this.points_.pop();
                this.redraw_();
                return true;
            default:
                return false;
        }
    }

    refresh(): void {
        this.redraw_();
    }

    cancel(): void {
        this.done_ = true;
        this.layer_.remove();
    }

    private nearFirst_(clientX: number, clientY: number): boolean {
        const first = this.points_[0];
        if (!first || this.points_.length < 3) {
            return false;
        }
        const c = this.host_.toClient(first.p);
        return Math.hypot(c.x - clientX, c.y - clientY) < CLOSE_RADIUS;
    }

    /** The outline of the points so far, in stage pixels. */
    private path_(points: readonly TracePoint[], closed: boolean): EditPath {
        const handles = smoothHandles(
            points.map((t) => t.p),
            closed,
        );
        const anchors: Anchor[] = points.map((t, i) => {
            const h = handles[i] as { before: Point; after: Point };
            return t.smooth
                ? { x: t.p.x, y: t.p.y, inX: h.before.x, inY: h.before.y, outX: h.after.x, outY: h.after.y }
                : { x: t.p.x, y: t.p.y, inX: t.p.x, inY: t.p.y, outX: t.p.x, outY: t.p.y };
        });
        return new EditPath(anchors, closed);
    }

    private redraw_(): void {
        this.layer_.clear();
        if (this.done_) {
            return;
        }
        const style = { fill: 'none', stroke: FEEDBACK.stroke, 'stroke-width': 1.5 };
        const points = this.points_.slice();
        if (this.stroke_ && this.stroke_.length > 1) {
            this.layer_.add('path', { ...style, d: polyline(this.stroke_.map((p) => this.layer_.fromStage(p)), false) });
        }
        if (points.length >= 2) {
            const path = this.path_(points, false);
            let d = '';
            for (const span of path.segments()) {
                const [a, b, c, e] = [span.p0, span.p1, span.p2, span.p3].map((p) => this.layer_.fromStage(p)) as Point[];
                d += (d === '' ? `M${a!.x} ${a!.y}` : '') + `C${b!.x} ${b!.y} ${c!.x} ${c!.y} ${e!.x} ${e!.y}`;
            }
            this.layer_.add('path', { ...style, d });
        }
        const last = points[points.length - 1];
        if (last && this.hover_ && !this.stroke_) {
            const a = this.layer_.fromStage(last.p);
            const b = this.layer_.fromStage(this.hover_);
            this.layer_.add('line', { ...style, 'stroke-dasharray': '4 3', x1: a.x, y1: a.y, x2: b.x, y2: b.y });
        }
        points.forEach((t, i) => {
            const c = this.layer_.fromStage(t.p);
            const size = i === 0 ? FEEDBACK.anchorSize + 1 : FEEDBACK.anchorSize - 1;
            this.layer_.add('rect', {
                x: c.x - size,
                y: c.y - size,
                width: 2 * size,
                height: 2 * size,
                fill: i === 0 ? FEEDBACK.handleFill : FEEDBACK.stroke,
                stroke: FEEDBACK.stroke,
            });
        });
    }

    private finish_(insert: boolean, closed: boolean): void {
        if (this.done_) {
            return;
        }
        this.done_ = true;
        this.layer_.remove();
        if (insert && this.points_.length >= 2) {
            const path = this.path_(this.points_, closed);
            const b = path.bounds();
            if (b && (b.maxX - b.minX > 0 || b.maxY - b.minY > 0)) {
                path.translate(-b.minX, -b.minY);
                const box = { x: b.minX, y: b.minY, w: b.maxX - b.minX, h: b.maxY - b.minY };
                const record = insertRecord(ElementKind.Freeform, box, [intParam(this.type_), pathParam(path.toExport())]);
                this.host_.submit([record], 'Insert Freeform');
            }
        }
        this.host_.endTool(this);
    }
}
