// Moving, resizing and turning the selection with the pointer and the arrow keys. While the pointer
// is down the stage shows the change over the elements' own values; on release the change goes to
// the studio as one command of geometry records, and the override stays until the studio's
// records have come back.

import type { Point, Rect, StageRecord } from './contracts';
import { Prop, Unit } from '../player/contracts';
import type { ElementView } from '../player/elementview';
import { geometryRecord } from './commands';
import {
    type ElementGeometry,
    measure,
    parentSize,
    placeForCentre,
    positionValues,
    type PropertyValues,
    rotatePoint,
    shownTransform,
    sizeValues,
    storedUnits,
    type StoredUnits,
    toParentVector,
    turned,
    unionOf,
} from './geometry';
import { LiveOverride, showPosition } from './live';
import type { StageRenderer } from './render';
import { framePoint, type Frame, HANDLE_AT, type HandleName } from './selectionview';
import { NO_SNAP, type SnapResult, type SnapTargets, snapBox, snapPoint } from './snap';

/** Transform tool bits: translate, scale, rotate; 8 is the container tool. */
export const TOOL_TRANSLATE = 1;
export const TOOL_SCALE = 2;
export const TOOL_ROTATE = 4;
export const TOOL_CONTAINER = 8;

const MIN_SIZE = 1;
const ROTATE_STEP = 15;

/** One element taking part in a gesture, as it was when the gesture started. */
interface Part {
    readonly view: ElementView;
    readonly g: ElementGeometry;
    readonly units: StoredUnits;
    readonly aspectLocked: boolean;
    readonly rotation: number;
    readonly scaleX: number;
    readonly scaleY: number;
    readonly tx: number;
    readonly ty: number;
    readonly centre: Point;
}

export interface GestureHost {
    readonly renderer: StageRenderer;
    readonly transformTools: number;
    /** Snap targets of the stage without the given elements (and their children), or null when snapping is off. */
    snapTargets(excluded: readonly ElementView[], e: { altKey: boolean }): SnapTargets | null;
    /** Snap tolerance in stage pixels. */
    readonly tolerance: number;
}

export interface GestureResult {
    readonly records: StageRecord[];
    readonly text: string;
    readonly live: LiveOverride;
}

function partOf(renderer: StageRenderer, view: ElementView): Part {
    const g = measure(view);
    const element = renderer.elementOf(view);
    const t = shownTransform(view);
    return {
        view,
        g,
        units: storedUnits(element),
        aspectLocked: element?.['aspectRatioLocked'] === true,
        rotation: t.rotation,
        scaleX: t.scaleX,
        scaleY: t.scaleY,
        tx: t.tx,
        ty: t.ty,
        centre: { x: g.box.x + g.box.w / 2, y: g.box.y + g.box.h / 2 },
    };
}

function changed(a: number, b: number): boolean {
    return Math.abs(a - b) > 1e-6;
}

/** Of [property, new value, present value] rows, the properties whose value changes. */
function changedValues(...rows: [number, number, number][]): PropertyValues {
    return rows.filter(([, next, now]) => changed(next, now)).map(([prop, next]) => [prop, next]);
}

/** The values of a new place and size that differ from the part's present ones. */
function placeValues(part: Part, left: number, top: number, w: number, h: number): PropertyValues {
    const before = positionValues(part.view, part.units, part.g.left, part.g.top, part.g.w, part.g.h);
    const after = positionValues(part.view, part.units, left, top, w, h);
    return after.filter(([, value], i) => changed(value, before[i]![1]));
}

/** Common base of the pointer gestures on the selection. */
abstract class SelectionGesture {
    readonly live = new LiveOverride();
    protected readonly parts: Part[];
    guides: SnapResult = NO_SNAP;

    constructor(
        protected readonly host: GestureHost,
        views: readonly ElementView[],
    ) {
        this.parts = views.map((view) => partOf(host.renderer, view));
    }

    get views(): ElementView[] {
        return this.parts.map((part) => part.view);
    }

    /** Bounds of all parts on the stage as the gesture started. */
    protected bounds(): Rect {
        return unionOf(this.parts.map((part) => part.g.bounds));
    }

    protected showPlace(part: Part, left: number, top: number, w: number, h: number): void {
        const parent = parentSize(part.view);
        showPosition(this.live, part.view, part.units.coord, left, top, w, h, parent.w, parent.h);
    }

    abstract update(p: Point, e: { shiftKey: boolean; altKey: boolean }): void;
    abstract finish(): GestureResult | null;

    cancel(): void {
        this.live.restore();
    }
}

/** Moving the selection by a stage vector, by position or, with the translate tool, by translation. */
export class MoveGesture extends SelectionGesture {
    private delta_: Point = { x: 0, y: 0 };
    private readonly targets_: SnapTargets | null;

    constructor(
        host: GestureHost,
        views: readonly ElementView[],
        private readonly start_: Point,
        e: { altKey: boolean },
    ) {
        super(host, views);
        this.targets_ = host.snapTargets(views, e);
    }

    private get byTranslate_(): boolean {
        return (this.host.transformTools & TOOL_TRANSLATE) !== 0;
    }

    update(p: Point, e: { shiftKey: boolean; altKey: boolean }): void {
        let dx = p.x - this.start_.x;
        let dy = p.y - this.start_.y;
        if (e.shiftKey) {
            // Along one axis only.
            if (Math.abs(dx) > Math.abs(dy)) {
                dy = 0;
            } else {
                dx = 0;
            }
        }
        this.guides = NO_SNAP;
        if (this.targets_ && !e.altKey) {
            const b = this.bounds();
            const snap = snapBox({ x: b.x + dx, y: b.y + dy, w: b.w, h: b.h }, this.targets_, this.host.tolerance);
            dx += e.shiftKey && dx === 0 ? 0 : snap.dx;
            dy += e.shiftKey && dy === 0 ? 0 : snap.dy;
            this.guides = snap;
        }
        this.moveBy(dx, dy);
    }

    /** Shows the parts moved by a stage vector from where they started. */
    moveBy(dx: number, dy: number): void {
        this.delta_ = { x: dx, y: dy };
        for (const part of this.parts) {
            const d = toParentVector(part.g, dx, dy);
            if (this.byTranslate_) {
                this.live.set(part.view, Prop.TranslateX, part.tx + d.x, Unit.Px);
                this.live.set(part.view, Prop.TranslateY, part.ty + d.y, Unit.Px);
            } else {
                this.showPlace(part, part.g.left + d.x, part.g.top + d.y, part.g.w, part.g.h);
            }
        }
    }

    get delta(): Point {
        return this.delta_;
    }

    finish(): GestureResult | null {
        const records: StageRecord[] = [];
        for (const part of this.parts) {
            const d = toParentVector(part.g, this.delta_.x, this.delta_.y);
            let values: PropertyValues;
            if (this.byTranslate_) {
                values = changedValues([84, part.tx + d.x, part.tx], [85, part.ty + d.y, part.ty]);
            } else {
                values = placeValues(part, part.g.left + d.x, part.g.top + d.y, part.g.w, part.g.h);
            }
            if (values.length > 0) {
                records.push(geometryRecord(part.view.id, values));
            }
        }
        return records.length > 0 ? { records, text: 'Move', live: this.live } : null;
    }
}

/** Resizing by one of the eight handles: the box, or with the scale tool the scale. */
export class ResizeGesture extends SelectionGesture {
    private readonly frame_: Frame;
    private readonly targets_: SnapTargets | null;
    private result_: Map<Part, { left: number; top: number; w: number; h: number; sx: number; sy: number }> = new Map();

    constructor(
        host: GestureHost,
        views: readonly ElementView[],
        frame: Frame,
        private readonly handle_: HandleName,
        e: { altKey: boolean },
    ) {
        super(host, views);
        this.frame_ = frame;
        this.targets_ = host.snapTargets(views, e);
    }

    private get byScale_(): boolean {
        return (this.host.transformTools & TOOL_SCALE) !== 0;
    }

    update(p: Point, e: { shiftKey: boolean; altKey: boolean }): void {
        const frame = this.frame_;
        const [hx, hy] = HANDLE_AT[this.handle_];
        const upright = Math.abs(frame.rotation % 360) < 1e-6;
        this.guides = NO_SNAP;
        if (this.targets_ && !e.altKey && upright) {
            const snap = snapPoint(p, this.targets_, this.host.tolerance);
            p = { x: p.x + (hx !== 0 ? snap.dx : 0), y: p.y + (hy !== 0 ? snap.dy : 0) };
            this.guides = {
                dx: 0,
                dy: 0,
                guideX: hx !== 0 ? snap.guideX : null,
                guideY: hy !== 0 ? snap.guideY : null,
            };
        }
        const b0 = frame.box;
        const centre0 = { x: b0.x + b0.w / 2, y: b0.y + b0.h / 2 };
        // The pointer in the frame's own axes, from its centre.
        const q = rotatePoint(p, centre0, -frame.rotation);
        const qx = q.x - centre0.x;
        const qy = q.y - centre0.y;
        const ax = (-hx * b0.w) / 2;
        const ay = (-hy * b0.h) / 2;
        let w = hx !== 0 ? Math.max(MIN_SIZE, (qx - ax) * hx) : b0.w;
        let h = hy !== 0 ? Math.max(MIN_SIZE, (qy - ay) * hy) : b0.h;
        const keepRatio = e.shiftKey || (this.parts.length === 1 && this.parts[0]!.aspectLocked);
        if (keepRatio && b0.w > 0 && b0.h > 0) {
            const ratio = b0.w / b0.h;
            if (hx !== 0 && hy !== 0) {
                const s = Math.max(w / b0.w, h / b0.h);
                w = b0.w * s;
                h = b0.h * s;
            } else if (hx !== 0) {
                h = w / ratio;
            } else {
                w = h * ratio;
            }
        }
        // The corner or edge opposite the handle stays where it is.
        const cx = hx !== 0 ? ax + (hx * w) / 2 : 0;
        const cy = hy !== 0 ? ay + (hy * h) / 2 : 0;
        const centre = rotatePoint({ x: centre0.x + cx, y: centre0.y + cy }, centre0, frame.rotation);
        const fx = b0.w > 0 ? w / b0.w : 1;
        const fy = b0.h > 0 ? h / b0.h : 1;
        const anchor = framePoint(frame, -hx, -hy);
        this.result_ = new Map();
        for (const part of this.parts) {
            // One element follows the frame; several keep their places relative to it.
            const partCentre =
                this.parts.length === 1
                    ? centre
                    : { x: anchor.x + (part.centre.x - anchor.x) * fx, y: anchor.y + (part.centre.y - anchor.y) * fy };
            this.resizePart_(part, partCentre, fx, fy);
        }
    }

    private resizePart_(part: Part, centre: Point, fx: number, fy: number): void {
        const g = part.g;
        if (this.byScale_) {
            const transform = g.transform.scale(fx, fy);
            const place = placeForCentre(g, centre, g.w, g.h, transform);
            const sx = part.scaleX * fx;
            const sy = part.scaleY * fy;
            this.live.set(part.view, Prop.ScaleX, sx, Unit.None);
            this.live.set(part.view, Prop.ScaleY, sy, Unit.None);
            this.showPlace(part, place.x, place.y, g.w, g.h);
            this.result_.set(part, { left: place.x, top: place.y, w: g.w, h: g.h, sx, sy });
            return;
        }
        const w = Math.max(MIN_SIZE + 2 * g.border, g.w * fx);
        const h = Math.max(MIN_SIZE + 2 * g.border, g.h * fy);
        const place = placeForCentre(g, centre, w, h, g.transform);
        this.live.set(part.view, Prop.Width, w - 2 * g.border, Unit.Px);
        this.live.set(part.view, Prop.Height, h - 2 * g.border, Unit.Px);
        this.showPlace(part, place.x, place.y, w, h);
        this.result_.set(part, { left: place.x, top: place.y, w, h, sx: part.scaleX, sy: part.scaleY });
    }

    finish(): GestureResult | null {
        const records: StageRecord[] = [];
        for (const part of this.parts) {
            const r = this.result_.get(part);
            if (!r) {
                continue;
            }
            let values: PropertyValues;
            if (this.byScale_) {
                values = changedValues([7, r.sx, part.scaleX], [8, r.sy, part.scaleY]);
            } else {
                const before = sizeValues(
                    part.view,
                    part.units,
                    part.g.w - 2 * part.g.border,
                    part.g.h - 2 * part.g.border,
                );
                const after = sizeValues(part.view, part.units, r.w - 2 * part.g.border, r.h - 2 * part.g.border);
                values = after.filter(([, v], i) => changed(v, before[i]![1]));
            }
            values.push(...placeValues(part, r.left, r.top, r.w, r.h));
            if (values.length > 0) {
                records.push(geometryRecord(part.view.id, values));
            }
        }
        return records.length > 0 ? { records, text: 'Resize', live: this.live } : null;
    }
}

/** Turning the selection about the frame's centre by the rotation handle; shift turns in 15° steps. */
export class RotateGesture extends SelectionGesture {
    private readonly centre_: Point;
    private readonly startAngle_: number;
    private turn_ = 0;

    constructor(host: GestureHost, views: readonly ElementView[], frame: Frame, start: Point) {
        super(host, views);
        const b = frame.box;
        this.centre_ = { x: b.x + b.w / 2, y: b.y + b.h / 2 };
        this.startAngle_ = Math.atan2(start.y - this.centre_.y, start.x - this.centre_.x);
    }

    update(p: Point, e: { shiftKey: boolean }): void {
        let turn = ((Math.atan2(p.y - this.centre_.y, p.x - this.centre_.x) - this.startAngle_) * 180) / Math.PI;
        if (e.shiftKey) {
            if (this.parts.length === 1) {
                const from = this.parts[0]!.rotation;
                turn = Math.round((from + turn) / ROTATE_STEP) * ROTATE_STEP - from;
            } else {
                turn = Math.round(turn / ROTATE_STEP) * ROTATE_STEP;
            }
        }
        this.turn_ = turn;
        for (const part of this.parts) {
            const place = this.placeOf_(part);
            this.live.set(part.view, Prop.RotateZ, part.rotation + turn, Unit.Deg);
            this.showPlace(part, place.x, place.y, part.g.w, part.g.h);
        }
    }

    private placeOf_(part: Part): Point {
        const centre = rotatePoint(part.centre, this.centre_, this.turn_);
        return placeForCentre(part.g, centre, part.g.w, part.g.h, turned(part.g.transform, this.turn_));
    }

    finish(): GestureResult | null {
        if (!changed(this.turn_, 0)) {
            return null;
        }
        const records = this.parts.map((part) => {
            const place = this.placeOf_(part);
            const values: PropertyValues = [[11, part.rotation + this.turn_]];
            values.push(...placeValues(part, place.x, place.y, part.g.w, part.g.h));
            return geometryRecord(part.view.id, values);
        });
        return { records, text: 'Rotate', live: this.live };
    }
}
