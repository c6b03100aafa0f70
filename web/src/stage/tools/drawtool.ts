// Drawing a shape by dragging out its box: rectangles, rounded rectangles, ellipses, the parametric
// shapes, and the three lines, which are dragged from one end to the other. Shift keeps the box
// square (a line at multiples of 45 degrees), Alt grows it from the point pressed. A click without
// a drag makes a shape of the default size there. The release inserts the element in one command
// and ends the tool; Escape ends it with nothing inserted.

import type { DrawShape, Point, Rect, StageHost, StageTool } from '../contracts';
import { snapAngle } from './geometry';
import { FEEDBACK, OverlayLayer } from './overlay';
import { insertRecord } from './records';
import { type BoxShapeKind, boxShapeKind, dragBox, isLineType } from './shapekinds';

/** Side of a shape made by a click, in stage pixels. */
export const DEFAULT_SIZE = 100;
/** A press that moves less than this, in client pixels, is a click. */
const DRAG_THRESHOLD = 3;

export class BoxDrawTool implements StageTool {
    readonly name = 'draw';
    private readonly host_: StageHost;
    private readonly kind_: BoxShapeKind;
    private readonly line_: boolean;
    private readonly layer_: OverlayLayer;
    private start_: Point | null = null;
    private end_: Point | null = null;
    private pressClient_: Point = { x: 0, y: 0 };
    private dragging_ = false;
    private shift_ = false;
    private alt_ = false;
    private done_ = false;

    constructor(host: StageHost, shape: DrawShape) {
        this.host_ = host;
        this.kind_ = boxShapeKind(shape);
        this.line_ = shape.kind === 'autoshape' && isLineType(shape.type);
        this.layer_ = new OverlayLayer(host, 'vetra-draw-preview');
    }

    pointerDown(e: PointerEvent): boolean {
        if (this.done_) {
            return false;
        }
        if (e.button !== 0) {
            // Any other button leaves the tool, as Escape does.
            this.finish_(false);
            return true;
        }
        this.start_ = this.host_.snap(this.host_.toStage(e.clientX, e.clientY));
        this.end_ = this.start_;
        this.pressClient_ = { x: e.clientX, y: e.clientY };
        this.dragging_ = false;
        this.readModifiers_(e);
        this.redraw_();
        return true;
    }

    pointerMove(e: PointerEvent): void {
        if (!this.start_ || this.done_) {
            return;
        }
        if (!this.dragging_ && Math.hypot(e.clientX - this.pressClient_.x, e.clientY - this.pressClient_.y) >= DRAG_THRESHOLD) {
            this.dragging_ = true;
        }
        this.end_ = this.host_.snap(this.host_.toStage(e.clientX, e.clientY));
        this.readModifiers_(e);
        this.redraw_();
    }

    pointerUp(e: PointerEvent): void {
        if (!this.start_ || this.done_) {
            return;
        }
        this.pointerMove(e);
        this.finish_(true);
    }

    keyDown(e: KeyboardEvent): boolean {
        if (this.done_) {
            return false;
        }
        if (e.key === 'Escape') {
            this.finish_(false);
            return true;
        }
        if (e.key === 'Shift' || e.key === 'Alt') {
            this.readModifiers_(e);
            this.redraw_();
            return true;
        }
        return false;
    }

    refresh(): void {
        this.redraw_();
    }

    cancel(): void {
        this.done_ = true;
        this.layer_.remove();
    }

    private readModifiers_(e: PointerEvent | KeyboardEvent): void {
        this.shift_ = e.shiftKey;
        this.alt_ = e.altKey;
    }

    /** The line's two ends in stage pixels, or null when nothing is pressed. */
    private lineEnds_(): [Point, Point] | null {
        const start = this.start_;
        if (!start) {
            return null;
        }
        let end = this.dragging_ && this.end_ ? this.end_ : { x: start.x + DEFAULT_SIZE, y: start.y };
        if (this.dragging_ && this.shift_) {
            end = snapAngle(start, end);
        }
        if (this.alt_) {
            // The pressed point is the middle of the line.
            const half = this.dragging_ ? { x: end.x - start.x, y: end.y - start.y } : { x: DEFAULT_SIZE / 2, y: 0 };
            return [
                { x: start.x - half.x, y: start.y - half.y },
                { x: start.x + half.x, y: start.y + half.y },
            ];
        }
        return [start, end];
    }

    private box_(): Rect | null {
        const start = this.start_;
        if (!start) {
            return null;
        }
        if (this.line_) {
            const ends = this.lineEnds_() as [Point, Point];
            const x = Math.min(ends[0].x, ends[1].x);
            const y = Math.min(ends[0].y, ends[1].y);
            return { x, y, w: Math.abs(ends[1].x - ends[0].x), h: Math.abs(ends[1].y - ends[0].y) };
        }
        if (!this.dragging_) {
            const half = DEFAULT_SIZE / 2;
            return this.alt_
                ? { x: start.x - half, y: start.y - half, w: DEFAULT_SIZE, h: DEFAULT_SIZE }
                : { x: start.x, y: start.y, w: DEFAULT_SIZE, h: DEFAULT_SIZE };
        }
        const box = dragBox(start, this.end_ ?? start, this.shift_, this.alt_);
        // A drag along one axis still makes something that can be seen and grabbed.
        box.w = Math.max(1, box.w);
        box.h = Math.max(1, box.h);
        return box;
    }

    private redraw_(): void {
        this.layer_.clear();
        const box = this.box_();
        if (!box || this.done_) {
            return;
        }
        const zoom = this.host_.zoom();
        const common = {
            fill: FEEDBACK.fill,
            stroke: FEEDBACK.stroke,
            'stroke-width': 1,
            'stroke-dasharray': '4 3',
            'vector-effect': 'non-scaling-stroke',
        };
        if (this.line_) {
            const [a, b] = (this.lineEnds_() as [Point, Point]).map((p) => this.layer_.fromStage(p)) as [Point, Point];
            this.layer_.add('line', { ...common, x1: a.x, y1: a.y, x2: b.x, y2: b.y, 'stroke-dasharray': 'none', 'stroke-width': 2 });
        } else {
            const origin = this.layer_.fromStage({ x: box.x, y: box.y });
            this.layer_.add('path', {
                ...common,
                d: this.kind_.outline(box.w, box.h),
                transform: `translate(${origin.x} ${origin.y}) scale(${zoom})`,
            });
        }
        const corner = this.layer_.fromStage({ x: box.x + box.w, y: box.y + box.h });
        const label = this.layer_.add('text', {
            x: corner.x + 8,
            y: corner.y + 16,
            fill: FEEDBACK.stroke,
            'font-family': 'sans-serif',
            'font-size': 11,
        });
        label.textContent = `${Math.round(box.w)} × ${Math.round(box.h)}`;
    }

    private finish_(insert: boolean): void {
        if (this.done_) {
            return;
        }
        const box = this.box_();
        this.done_ = true;
        this.layer_.remove();
        if (insert && box) {
            let linePath: number[][] = [];
            if (this.line_) {
                const [a, b] = this.lineEnds_() as [Point, Point];
                const local = (p: Point) => [Math.round((p.x - box.x) * 1000) / 1000, Math.round((p.y - box.y) * 1000) / 1000];
                const [ax, ay] = local(a) as [number, number];
                const [bx, by] = local(b) as [number, number];
                // Handles on the anchors: straight; the seventh item marks the path as open.
                linePath = [
                    [ax, ay, ax, ay, ax, ay, 1],
                    [bx, by, bx, by, bx, by],
                ];
            }
            this.host_.submit([insertRecord(this.kind_.kind, box, this.kind_.params(linePath), this.kind_.divShape)], this.kind_.text);
        }
        this.host_.endTool(this);
    }
}
