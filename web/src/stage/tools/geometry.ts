// Plane geometry of the stage tools: cubic Bezier spans (evaluation, de Casteljau split, nearest
// point, tight bounds), the frame of a rotated element box, and the smoothing of drawn strokes.
// Pure functions on plain numbers, so the unit tests run them without a browser.

import type { Point, Rect } from '../contracts';

/** One cubic span: from p0 with the handles p1 and p2 to p3. */
export interface Cubic {
    readonly p0: Point;
    readonly p1: Point;
    readonly p2: Point;
    readonly p3: Point;
}

export interface Bounds {
    minX: number;
    minY: number;
    maxX: number;
    maxY: number;
}

export function distance(a: Point, b: Point): number {
    return Math.hypot(a.x - b.x, a.y - b.y);
}

function lerp(a: Point, b: Point, t: number): Point {
    return { x: a.x + (b.x - a.x) * t, y: a.y + (b.y - a.y) * t };
}

export function cubicPoint(c: Cubic, t: number): Point {
    const s = 1 - t;
    const a = s * s * s;
    const b = 3 * s * s * t;
    const d = 3 * s * t * t;
    const e = t * t * t;
    return {
        x: a * c.p0.x + b * c.p1.x + d * c.p2.x + e * c.p3.x,
        y: a * c.p0.y + b * c.p1.y + d * c.p2.y + e * c.p3.y,
    };
}

/** Cuts a span at t into two spans that together trace exactly the same curve. */
export function splitCubic(c: Cubic, t: number): [Cubic, Cubic] {
    const a = lerp(c.p0, c.p1, t);
    const b = lerp(c.p1, c.p2, t);
    const d = lerp(c.p2, c.p3, t);
    const e = lerp(a, b, t);
    const f = lerp(b, d, t);
    const m = lerp(e, f, t);
    return [
        { p0: c.p0, p1: a, p2: e, p3: m },
        { p0: m, p1: f, p2: d, p3: c.p3 },
    ];
}

export interface Nearest {
    /** Parameter of the nearest point, 0 to 1. */
    readonly t: number;
    readonly point: Point;
    readonly distance: number;
}

/**
 * The point of the span nearest to p. A coarse walk finds the closest sample, and a shrinking
 * search around it refines the parameter; a cubic can have several local minima, and the walk is
 * fine enough that the refined one is the global one for the spans a stage draws.
 */
export function nearestOnCubic(c: Cubic, p: Point): Nearest {
    const samples = 64;
    let bestT = 0;
    let bestD = Infinity;
    for (let i = 0; i <= samples; ++i) {
        const t = i / samples;
        const d = distance(cubicPoint(c, t), p);
        if (d < bestD) {
            bestD = d;
            bestT = t;
        }
    }
    let step = 1 / samples;
    while (step > 1e-7) {
        let moved = false;
        for (const t of [bestT - step, bestT + step]) {
            if (t < 0 || t > 1) {
                continue;
            }
            const d = distance(cubicPoint(c, t), p);
            if (d < bestD) {
                bestD = d;
                bestT = t;
                moved = true;
            }
        }
        if (!moved) {
            step /= 2;
        }
    }
    return { t: bestT, point: cubicPoint(c, bestT), distance: bestD };
}

function extendAxis(range: [number, number], p0: number, p1: number, p2: number, p3: number): void {
    const take = (t: number) => {
        if (t > 0 && t < 1) {
            const s = 1 - t;
            const v = s * s * s * p0 + 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t * p3;
            range[0] = Math.min(range[0], v);
            range[1] = Math.max(range[1], v);
        }
    };
    range[0] = Math.min(range[0], p0, p3);
    range[1] = Math.max(range[1], p0, p3);
    // Turning points: roots of the derivative, which divided by 3 is a t² + b t + c.
    const a = -p0 + 3 * p1 - 3 * p2 + p3;
    const b = 2 * (p0 - 2 * p1 + p2);
    const k = p1 - p0;
    if (Math.abs(a) < 1e-12) {
        if (Math.abs(b) > 1e-12) {
            take(-k / b);
        }
        return;
    }
    const disc = b * b - 4 * a * k;
    if (disc >= 0) {
        const root = Math.sqrt(disc);
        take((-b + root) / (2 * a));
        take((-b - root) / (2 * a));
    }
}

/** Tight bounds of the spans: the curve itself, not its handles. Null for no span. */
export function cubicsBounds(spans: readonly Cubic[]): Bounds | null {
    if (spans.length === 0) {
        return null;
    }
    const xs: [number, number] = [Infinity, -Infinity];
    const ys: [number, number] = [Infinity, -Infinity];
    for (const c of spans) {
        extendAxis(xs, c.p0.x, c.p1.x, c.p2.x, c.p3.x);
        extendAxis(ys, c.p0.y, c.p1.y, c.p2.y, c.p3.y);
    }
    return { minX: xs[0], minY: ys[0], maxX: xs[1], maxY: ys[1] };
}

/**
 * The placement of an element's box on the stage: the box in stage pixels and its rotation about
 * the box centre, clockwise in degrees. Local points are pixels from the box's top left corner.
 */
export class BoxFrame {
    readonly box: Rect;
    readonly rotation: number;
    private readonly cos_: number;
    private readonly sin_: number;

    constructor(box: Rect, rotation: number) {
        this.box = { x: box.x, y: box.y, w: box.w, h: box.h };
        this.rotation = isFinite(rotation) ? rotation : 0;
        const radians = (this.rotation * Math.PI) / 180;
        this.cos_ = Math.cos(radians);
        this.sin_ = Math.sin(radians);
    }

    toStage(p: Point): Point {
        const cx = this.box.w / 2;
        const cy = this.box.h / 2;
        const dx = p.x - cx;
        const dy = p.y - cy;
        // Screen y points down, so a clockwise turn is the usual rotation matrix.
        return {
            x: this.box.x + cx + dx * this.cos_ - dy * this.sin_,
            y: this.box.y + cy + dx * this.sin_ + dy * this.cos_,
        };
    }

    toLocal(p: Point): Point {
        const cx = this.box.w / 2;
        const cy = this.box.h / 2;
        const dx = p.x - this.box.x - cx;
        const dy = p.y - this.box.y - cy;
        return { x: cx + dx * this.cos_ + dy * this.sin_, y: cy - dx * this.sin_ + dy * this.cos_ };
    }

    /** A stage offset as an offset in local pixels (the inverse rotation alone). */
    vectorToLocal(v: Point): Point {
        return { x: v.x * this.cos_ + v.y * this.sin_, y: -v.x * this.sin_ + v.y * this.cos_ };
    }

    /**
     * The frame of the same rotation whose box is the local rectangle `r` of this one: points
     * keep their place on the stage when their local coordinates are shifted by -r.x, -r.y.
     */
    reframed(r: Rect): BoxFrame {
        const centre = this.toStage({ x: r.x + r.w / 2, y: r.y + r.h / 2 });
        return new BoxFrame({ x: centre.x - r.w / 2, y: centre.y - r.h / 2, w: r.w, h: r.h }, this.rotation);
    }
}

/** Fewer points along a drawn stroke, none farther than `tolerance` from it (Ramer–Douglas–Peucker). */
export function simplifyStroke(points: readonly Point[], tolerance: number): Point[] {
    if (points.length < 3) {
        return points.slice();
    }
    const keep = new Uint8Array(points.length);
    keep[0] = 1;
    keep[points.length - 1] = 1;
    const stack: [number, number][] = [[0, points.length - 1]];
    while (stack.length > 0) {
        const [first, last] = stack.pop() as [number, number];
        const a = points[first] as Point;
        const b = points[last] as Point;
        const length = distance(a, b);
        let farthest = -1;
        let farthestD = tolerance;
        for (let i = first + 1; i < last; ++i) {
            const p = points[i] as Point;
            const d =
                length < 1e-9
                    ? distance(p, a)
                    : Math.abs((b.x - a.x) * (a.y - p.y) - (a.x - p.x) * (b.y - a.y)) / length;
            if (d > farthestD) {
                farthestD = d;
                farthest = i;
            }
        }
        if (farthest > 0) {
            keep[farthest] = 1;
            stack.push([first, farthest], [farthest, last]);
        }
    }
    return points.filter((_, i) => keep[i] === 1);
}

/**
 * Handles that make a smooth curve through the points (Catmull-Rom, a third of the chord of the
 * neighbours). The ends of an open list get their handles on the point itself; a closed list wraps.
 * Returns for each point its handle towards the previous point and towards the next one.
 */
export function smoothHandles(points: readonly Point[], closed: boolean): { before: Point; after: Point }[] {
    const n = points.length;
    return points.map((p, i) => {
        const hasPrev = closed || i > 0;
        const hasNext = closed || i < n - 1;
        if (n < 3 || !hasPrev || !hasNext) {
            return { before: { x: p.x, y: p.y }, after: { x: p.x, y: p.y } };
        }
        const prev = points[(i - 1 + n) % n] as Point;
        const next = points[(i + 1) % n] as Point;
        const tx = (next.x - prev.x) / 2;
        const ty = (next.y - prev.y) / 2;
        // Scale each side by its own chord, so a short span next to a long one does not loop.
        const total = distance(prev, p) + distance(p, next);
        const k = total > 1e-9 ? 1 / 3 : 0;
        const before = total > 1e-9 ? (2 * distance(prev, p)) / total : 1;
        const after = total > 1e-9 ? (2 * distance(p, next)) / total : 1;
        return {
            before: { x: p.x - tx * k * before, y: p.y - ty * k * before },
            after: { x: p.x + tx * k * after, y: p.y + ty * k * after },
        };
    });
}

/** The end of a segment from `from` to `to` turned to the nearest multiple of 45 degrees. */
export function snapAngle(from: Point, to: Point): Point {
    const dx = to.x - from.x;
    const dy = to.y - from.y;
    if (Math.hypot(dx, dy) < 1e-9) {
        return { x: to.x, y: to.y };
    }
    const step = Math.PI / 4;
    const angle = Math.round(Math.atan2(dy, dx) / step) * step;
    // The pointer projected onto the chosen direction: a nearly level line keeps its length along x.
    const reach = Math.max(0, dx * Math.cos(angle) + dy * Math.sin(angle));
    return { x: from.x + Math.cos(angle) * reach, y: from.y + Math.sin(angle) * reach };
}
