// Where an element is on the stage, read back from what the renderer wrote, and the model values
// (position, size, scale, rotation in the element's own units) that put it somewhere else.
//
// An element's box goes to the stage through its parent chain: each box sits at its used left/top
// inside the parent's padding box and is transformed about its transform origin. The stage keeps
// no geometry of its own; everything here is measured from the DOM, so it holds at any time of
// the timeline and for any coordinate type or unit.

import type { Point, Rect } from './contracts';
import { Prop } from '../player/contracts';
import { type ElementView, isShapeKind, Kind } from '../player/elementview';
import { arr, type Length, LengthUnit, readLength } from '../player/read';
import type { ElementData } from './scenedata';

export interface ElementGeometry {
    /** Element box (border box, own pixels) to stage pixels. */
    readonly matrix: DOMMatrix;
    /** Parent's content coordinates to stage pixels. */
    readonly parentMatrix: DOMMatrix;
    /** Border box size in the element's own pixels. */
    readonly w: number;
    readonly h: number;
    /** Used left and top inside the parent's padding box. */
    readonly left: number;
    readonly top: number;
    readonly border: number;
    /** The element's own transform (about its origin) and the origin in its own pixels. */
    readonly transform: DOMMatrix;
    readonly originX: number;
    readonly originY: number;
    /** Corners on the stage: top left, top right, bottom right, bottom left. */
    readonly corners: readonly [Point, Point, Point, Point];
    /** The box on the stage without its rotation, about the same centre. */
    readonly box: Rect;
    /** Clockwise rotation on the stage in degrees. */
    readonly rotation: number;
    /** Axis-aligned bounds of the corners. */
    readonly bounds: Rect;
}

function px(text: string): number {
    const value = parseFloat(text);
    return isFinite(value) ? value : 0;
}

function transformOf(style: CSSStyleDeclaration): DOMMatrix {
    const text = style.transform;
    if (!text || text === 'none') {
        return new DOMMatrix();
    }
    try {
        return new DOMMatrix(text);
    } catch {
        return new DOMMatrix();
    }
}

/** Content coordinates of a view (inside its border) to stage pixels; the scene is the identity. */
export function contentMatrix(view: ElementView): DOMMatrix {
    if (view.kind === Kind.Scene || !view.parent) {
        return new DOMMatrix();
    }
    const g = measure(view);
    return g.matrix.translate(g.border, g.border);
}

/** Measures a view of the stage. */
export function measure(view: ElementView): ElementGeometry {
    const node = view.node;
    const style = getComputedStyle(node);
    const border = isShapeKind(view.kind) ? 0 : px(style.borderLeftWidth);
    const w = px(style.width) + 2 * border;
    const h = px(style.height) + 2 * border;
    const left = px(style.left);
    const top = px(style.top);
    const origin = style.transformOrigin.split(' ');
    const originX = px(origin[0] ?? '0');
    const originY = px(origin[1] ?? '0');
    const transform = transformOf(style);
    const parentMatrix = view.parent ? contentMatrix(view.parent) : new DOMMatrix();
    const matrix = parentMatrix
        .translate(left + originX, top + originY)
        .multiply(transform)
        .translate(-originX, -originY);
    const map = (x: number, y: number): Point => {
        const p = matrix.transformPoint(new DOMPoint(x, y));
        return { x: p.x, y: p.y };
    };
    const corners: [Point, Point, Point, Point] = [map(0, 0), map(w, 0), map(w, h), map(0, h)];
    return {
        matrix,
        parentMatrix,
        w,
        h,
        left,
        top,
        border,
        transform,
        originX,
        originY,
        corners,
        ...boxOfCorners(corners),
        bounds: boundsOf(corners),
    };
}

/** The unrotated box and rotation that a quadrilateral of corners (tl, tr, br, bl) describes. */
export function boxOfCorners(c: readonly [Point, Point, Point, Point]): { box: Rect; rotation: number } {
    const cx = (c[0].x + c[1].x + c[2].x + c[3].x) / 4;
    const cy = (c[0].y + c[1].y + c[2].y + c[3].y) / 4;
    const w = Math.hypot(c[1].x - c[0].x, c[1].y - c[0].y);
    const h = Math.hypot(c[3].x - c[0].x, c[3].y - c[0].y);
    const rotation = w > 1e-9 ? (Math.atan2(c[1].y - c[0].y, c[1].x - c[0].x) * 180) / Math.PI : 0;
    return { box: { x: cx - w / 2, y: cy - h / 2, w, h }, rotation };
}

export function boundsOf(points: readonly Point[]): Rect {
    let minX = Infinity;
    let minY = Infinity;
    let maxX = -Infinity;
    let maxY = -Infinity;
    for (const p of points) {
        minX = Math.min(minX, p.x);
        minY = Math.min(minY, p.y);
        maxX = Math.max(maxX, p.x);
        maxY = Math.max(maxY, p.y);
    }
    return isFinite(minX) ? { x: minX, y: minY, w: maxX - minX, h: maxY - minY } : { x: 0, y: 0, w: 0, h: 0 };
}

export function unionOf(rects: readonly Rect[]): Rect {
    const points: Point[] = [];
    for (const r of rects) {
        points.push({ x: r.x, y: r.y }, { x: r.x + r.w, y: r.y + r.h });
    }
    return boundsOf(points);
}

/** Whether a stage point lies in the quadrilateral (convex, in either winding). */
export function insideQuad(p: Point, c: readonly Point[]): boolean {
    let sign = 0;
    for (let i = 0; i < c.length; ++i) {
        const a = c[i]!;
        const b = c[(i + 1) % c.length]!;
        const cross = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
        if (Math.abs(cross) < 1e-9) {
            continue;
        }
        const s = cross > 0 ? 1 : -1;
        if (sign === 0) {
            sign = s;
        } else if (s !== sign) {
            return false;
        }
    }
    return true;
}

export function rectsMeet(a: Rect, b: Rect): boolean {
    return a.x <= b.x + b.w && b.x <= a.x + a.w && a.y <= b.y + b.h && b.y <= a.y + a.h;
}

export function rotatePoint(p: Point, centre: Point, degrees: number): Point {
    const r = (degrees * Math.PI) / 180;
    const cos = Math.cos(r);
    const sin = Math.sin(r);
    const dx = p.x - centre.x;
    const dy = p.y - centre.y;
    return { x: centre.x + dx * cos - dy * sin, y: centre.y + dx * sin + dy * cos };
}

/** A stage vector as a vector of the parent's content coordinates. */
export function toParentVector(g: ElementGeometry, dx: number, dy: number): Point {
    const inverse = g.parentMatrix.inverse();
    const a = inverse.transformPoint(new DOMPoint(0, 0));
    const b = inverse.transformPoint(new DOMPoint(dx, dy));
    return { x: b.x - a.x, y: b.y - a.y };
}

/**
 * The used left and top that put the centre of a box of w × h (own pixels, with `transform`
 * about the given origin ratios) at a stage point. The translate of the transform counts, as it
 * moves the box too.
 */
export function placeForCentre(g: ElementGeometry, centre: Point, w: number, h: number, transform: DOMMatrix): Point {
    const ratioX = g.w > 0 ? g.originX / g.w : 0.5;
    const ratioY = g.h > 0 ? g.originY / g.h : 0.5;
    const ox = ratioX * w;
    const oy = ratioY * h;
    const inParent = g.parentMatrix.inverse().transformPoint(new DOMPoint(centre.x, centre.y));
    // centre = left + origin + transform(half size - origin)
    const moved = transform.transformPoint(new DOMPoint(w / 2 - ox, h / 2 - oy));
    return { x: inParent.x - ox - moved.x, y: inParent.y - oy - moved.y };
}

/** The element's transform with its rotation about the screen turned by `degrees` more. */
export function turned(transform: DOMMatrix, degrees: number): DOMMatrix {
    const t = new DOMMatrix([transform.a, transform.b, transform.c, transform.d, 0, 0]);
    const turnedLinear = new DOMMatrix().rotate(degrees).multiply(t);
    turnedLinear.e = transform.e;
    turnedLinear.f = transform.f;
    return turnedLinear;
}

// Model values

const scratch: Length = { value: 0, unit: LengthUnit.Px };

/** The stored units of the element's position and size, from its "r". */
export interface StoredUnits {
    readonly x: LengthUnit;
    readonly y: LengthUnit;
    readonly w: LengthUnit;
    readonly h: LengthUnit;
    readonly coord: number;
}

export function storedUnits(element: ElementData | null): StoredUnits {
    const r = arr(element ? element['r'] : undefined);
    const unit = (raw: unknown, fallback: number): LengthUnit => readLength(raw, fallback, LengthUnit.Px, scratch).unit;
    const coord = typeof r[4] === 'number' && r[4] >= 0 && r[4] <= 3 ? Math.trunc(r[4]) : 0;
    return { x: unit(r[0], 0), y: unit(r[1], 0), w: unit(r[2], 100), h: unit(r[3], 50), coord };
}

/** Content size of the parent (the scene's size for top-level elements). */
export function parentSize(view: ElementView): { w: number; h: number } {
    const parent = view.parent;
    return parent ? { w: parent.pxW, h: parent.pxH_ } : { w: 0, h: 0 };
}

/** Property number and value pairs of a 1000 record. */
export type PropertyValues = [number, number][];

/**
 * The model's position values for a box whose border box is `w` × `h` with used left and top at
 * `left`, `top`: property 0 and 2, counted from the sides the coordinate type names, in percent
 * of the parent for percent units.
 */
export function positionValues(
    view: ElementView,
    units: StoredUnits,
    left: number,
    top: number,
    w: number,
    h: number,
): PropertyValues {
    const parent = parentSize(view);
    const fromLeft = units.coord === 0 || units.coord === 3;
    const fromTop = units.coord === 0 || units.coord === 1;
    let x = fromLeft ? left : parent.w - left - w;
    let y = fromTop ? top : parent.h - top - h;
    if (units.x === LengthUnit.Percent) {
        x = parent.w > 0 ? (x / parent.w) * 100 : 0;
    }
    if (units.y === LengthUnit.Percent) {
        y = parent.h > 0 ? (y / parent.h) * 100 : 0;
    }
    return [
        [0, x],
        [2, y],
    ];
}

/** The model's size values for content of `w` × `h` pixels: pixels, percent of the parent, or ratio to the other side. */
export function sizeValues(view: ElementView, units: StoredUnits, w: number, h: number): PropertyValues {
    const parent = parentSize(view);
    const value = (px: number, unit: LengthUnit, parentPx: number, other: number): number => {
        if (unit === LengthUnit.Percent) {
            return parentPx > 0 ? (px / parentPx) * 100 : 0;
        }
        if (unit === LengthUnit.Aspect) {
            return other > 0 ? (px / other) * 100 : 100;
        }
        return px;
    };
    return [
        [4, value(w, units.w, parent.w, h)],
        [5, value(h, units.h, parent.h, w)],
    ];
}

/** Current values of the animatable parts the stage edits, as the view shows them. */
export function shownTransform(view: ElementView): {
    rotation: number;
    scaleX: number;
    scaleY: number;
    tx: number;
    ty: number;
} {
    return {
        rotation: view.value(Prop.RotateZ),
        scaleX: view.value(Prop.ScaleX),
        scaleY: view.value(Prop.ScaleY),
        tx: view.value(Prop.TranslateX),
        ty: view.value(Prop.TranslateY),
    };
}
