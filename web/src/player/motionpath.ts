// Travel along a motion path as the studio's model places it. The model flattens each cubic span
// between two anchors into a polyline (about one point per four pixels of control polygon), joins
// the spans of one move into a QPainterPath of straight lines, and places the element at the eased
// progress by path length with QPainterPath::pointAtPercent; the direction of travel comes from
// angleAtPercent. Both are repeated here with Qt's arithmetic: the fuzzy merging of coincident
// points, the cumulative lengths, and the straight line taken as a cubic with thirds as handles.
//
// Rows are the export's anchor rows, [x, y, c1x, c1y, c2x, c2y]: the anchor, its handle towards
// the previous anchor and its handle towards the next one, relative to the element's own place.

/** The most interior points a span gets, however long its handles claim to be. */
const MAX_SEGMENTS_PER_SPAN = 1000;

const HYPOT_SCALE = Math.pow(2, -600);
const HYPOT_LARGE = Math.pow(2, 511);
const HYPOT_TINY = Math.pow(2, -511);
const HYPOT_EPS = Math.pow(2, -54);

// The GNU C library's hypot for ax >= ay >= 0 in range: the rounded root, corrected once by the
// residual expanded without fused multiply-adds.
function hypotKernel(ax: number, ay: number): number {
    let h = Math.sqrt(ax * ax + ay * ay);
    let t1: number;
    let t2: number;
    if (h <= 2.0 * ay) {
        const delta = h - ay;
        t1 = ax * (2.0 * delta - ax);
        t2 = (delta - 2.0 * (ax - ay)) * delta;
    } else {
        const delta = h - ax;
        t1 = 2.0 * delta * (ax - 2.0 * ay);
        t2 = (4.0 * delta - ay) * ay + delta * delta;
    }
    h -= (t1 + t2) / (2.0 * h);
    return h;
}

/**
 * std::hypot as the C library computes it, which is what QLineF::length is built on. The
 * browser's Math.hypot and a plain square root of the sum each differ from it in the last bit
 * for about one length in ten.
 */
export function hypot(x: number, y: number): number {
    if (!isFinite(x) || !isFinite(y)) {
        return Math.abs(x) === Infinity || Math.abs(y) === Infinity ? Infinity : NaN;
    }
    const a = Math.abs(x);
    const b = Math.abs(y);
    const ax = a < b ? b : a;
    const ay = a < b ? a : b;
    if (ax > HYPOT_LARGE) {
        if (ay <= ax * HYPOT_EPS) {
            return ax + ay;
        }
        return hypotKernel(ax * HYPOT_SCALE, ay * HYPOT_SCALE) / HYPOT_SCALE;
    }
    if (ay < HYPOT_TINY) {
        if (ax >= ay / HYPOT_EPS) {
            return ax + ay;
        }
        return hypotKernel(ax / HYPOT_SCALE, ay / HYPOT_SCALE) * HYPOT_SCALE;
    }
    if (ay <= ax * HYPOT_EPS) {
        return ax + ay;
    }
    return hypotKernel(ax, ay);
}

/** QLineF::length. */
function lineLength(x1: number, y1: number, x2: number, y2: number): number {
    return hypot(x2 - x1, y2 - y1);
}

// Qt's qFuzzyCompare and qFuzzyIsNull for doubles, as QPointF's equality uses them.
function fuzzyEqual(a: number, b: number): boolean {
    if (a === 0 || b === 0) {
        return Math.abs(a - b) <= 0.000000000001;
    }
    return Math.abs(a - b) * 1000000000000 <= Math.min(Math.abs(a), Math.abs(b));
}

/**
 * Appends to `out` (as x, y pairs) the flattened span from anchor A to anchor B: A itself, the
 * interior points by forward differences, and B exactly. (ax, ay) and (a2x, a2y) are A and its
 * outgoing handle, (b1x, b1y) and (bx, by) B's incoming handle and B.
 */
export function flattenSpan(
    ax: number, ay: number, a2x: number, a2y: number,
    b1x: number, b1y: number, bx: number, by: number,
    out: number[],
): void {
    const polygon = lineLength(ax, ay, a2x, a2y) + lineLength(a2x, a2y, b1x, b1y) + lineLength(b1x, b1y, bx, by);
    // Rounding halves away from zero; the length is never negative.
    const rounded = Math.round(polygon * 0.25);
    const segments = isFinite(rounded) ? Math.min(rounded, MAX_SEGMENTS_PER_SPAN) : 0;
    out.push(ax, ay);
    if (segments > 0) {
        // P0 + t A + t^2 B + t^3 C, stepped by differences.
        const cAx = (a2x - ax) * 3.0;
        const cAy = (a2y - ay) * 3.0;
        const cBx = (ax - a2x * 2.0 + b1x) * 3.0;
        const cBy = (ay - a2y * 2.0 + b1y) * 3.0;
        const cCx = (a2x - b1x) * 3.0 - ax + bx;
        const cCy = (a2y - b1y) * 3.0 - ay + by;
        const step = 1.0 / (segments + 1);
        const step2 = step * step;
        const step3 = step2 * step;
        let d1x = cAx * step + cBx * step2 + cCx * step3;
        let d1y = cAy * step + cBy * step2 + cCy * step3;
        let d2x = cBx * (2.0 * step2) + cCx * (6.0 * step3);
        let d2y = cBy * (2.0 * step2) + cCy * (6.0 * step3);
        const d3x = cCx * (6.0 * step3);
        const d3y = cCy * (6.0 * step3);
        let x = ax;
        let y = ay;
        for (let i = 0; i < segments; ++i) {
            x += d1x;
            y += d1y;
            d1x += d2x;
            d1y += d2y;
            d2x += d3x;
            d2y += d3y;
            out.push(x, y);
        }
    }
    out.push(bx, by);
}

/**
 * A path of straight lines, built once, placed many times without allocating. Points equal to
 * their predecessor within Qt's fuzzy comparison are dropped, as QPainterPath::lineTo does.
 */
export class Polyline {
    private readonly m_xs: Float64Array;
    private readonly m_ys: Float64Array;
    /** Length of the path up to and including each point's incoming line; 0 for the first. */
    private readonly m_cumulative: Float64Array;
    private readonly m_count: number;

    /** `points` as x, y pairs; the first is where the path starts. At least one point. */
    constructor(points: readonly number[]) {
        const capacity = Math.max(1, points.length >> 1);
        const xs = new Float64Array(capacity);
        const ys = new Float64Array(capacity);
        let count = 0;
        for (let i = 0; i + 1 < points.length; i += 2) {
            const x = points[i]!;
            const y = points[i + 1]!;
            if (!isFinite(x) || !isFinite(y)) {
                continue;
            }
            if (count > 0 && fuzzyEqual(x, xs[count - 1]!) && fuzzyEqual(y, ys[count - 1]!)) {
                continue;
            }
            xs[count] = x;
            ys[count] = y;
            ++count;
        }
        if (count === 0) {
            count = 1;
        }
        this.m_xs = xs;
        this.m_ys = ys;
        this.m_count = count;
        const cumulative = new Float64Array(count);
        let length = 0;
        for (let i = 1; i < count; ++i) {
            length += lineLength(xs[i - 1]!, ys[i - 1]!, xs[i]!, ys[i]!);
            cumulative[i] = length;
        }
        this.m_cumulative = cumulative;
    }

    get length(): number {
        return this.m_cumulative[this.m_count - 1]!;
    }

    /** The line that QPainterPath picks for percent t: the first whose end lies at t or beyond. */
    private lineAt_(t: number): number {
        const last = this.m_count - 1;
        const total = this.m_cumulative[last]!;
        let low = 1;
        let high = last;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (this.m_cumulative[middle]! / total >= t) {
                high = middle;
            } else {
                low = middle + 1;
            }
        }
        return low;
    }

    /**
     * QPainterPath::pointAtPercent for t in 0..1: writes x and y into out[offset], out[offset + 1].
     * A path of one point gives that point.
     */
    pointAtPercent(t: number, out: Float64Array, offset: number): void {
        if (this.m_count === 1) {
            out[offset] = this.m_xs[0]!;
            out[offset + 1] = this.m_ys[0]!;
            return;
        }
        const i = this.lineAt_(t);
        const start = this.m_cumulative[i - 1]!;
        const lineLen = lineLength(this.m_xs[i - 1]!, this.m_ys[i - 1]!, this.m_xs[i]!, this.m_ys[i]!);
        let realT = (this.length * t - start) / lineLen;
        // qBound(0, realT, 1), NaN included.
        realT = 1 < realT ? 1 : realT;
        realT = 0 < realT ? realT : 0;
        out[offset] = lineBezierAt(this.m_xs[i - 1]!, this.m_xs[i]!, realT);
        out[offset + 1] = lineBezierAt(this.m_ys[i - 1]!, this.m_ys[i]!, realT);
    }

    /** QPainterPath::angleAtPercent for t in 0..1: degrees counter-clockwise, 0 up to 360. */
    angleAtPercent(t: number): number {
        if (this.m_count === 1) {
            return 0;
        }
        const i = this.lineAt_(t);
        const start = this.m_cumulative[i - 1]!;
        const lineLen = lineLength(this.m_xs[i - 1]!, this.m_ys[i - 1]!, this.m_xs[i]!, this.m_ys[i]!);
        const realT = (this.length * t - start) / lineLen;
        const m1 = lineBezierSlope(this.m_xs[i - 1]!, this.m_xs[i]!, realT);
        const m2 = lineBezierSlope(this.m_ys[i - 1]!, this.m_ys[i]!, realT);
        return lineAngle(m1, m2);
    }
}

// A straight line as QPainterPath hands it to QBezier: the ends with handles at the thirds.
function lineBezierAt(a: number, e: number, t: number): number {
    const delta = e - a;
    const x2 = a + delta / 3;
    const x3 = a + (delta * 2) / 3;
    const mT = 1 - t;
    let p = a * mT + x2 * t;
    let q = x2 * mT + x3 * t;
    const r = x3 * mT + e * t;
    p = p * mT + q * t;
    q = q * mT + r * t;
    return p * mT + q * t;
}

function lineBezierSlope(a: number, e: number, t: number): number {
    const delta = e - a;
    const b = a + delta / 3;
    const c = a + (delta * 2) / 3;
    return 3 * t * t * (e - 3 * c + 3 * b - a) + 6 * t * (c - 2 * b + a) + 3 * (b - a);
}

const TWO_PI = 2 * Math.PI;

/** QLineF(0, 0, dx, dy).angle(): counter-clockwise with y growing downwards, in [0, 360). */
function lineAngle(dx: number, dy: number): number {
    const theta = (Math.atan2(-dy, dx) * 360.0) / TWO_PI;
    const normalized = theta < 0 ? theta + 360 : theta;
    return fuzzyEqual(normalized, 360) ? 0 : normalized;
}

/**
 * The turn of an element that travels in direction `angle` (angleAtPercent's degrees), as the
 * model reports it: clockwise, in -180 (exclusive) to 180.
 */
export function orientationOf(angle: number): number {
    // IEEE remainder of -angle by 360; angle lies in 0..360, so one correction suffices.
    let turned = -angle;
    if (turned < -180) {
        turned += 360;
    } else if (turned > 180) {
        turned -= 360;
    }
    return turned === -180 ? 180 : turned + 0;
}

/**
 * The points of one move's travel as the model adds them to its path: the first anchor, then
 * every flattened span in turn, then the last anchor again (x, y pairs, duplicates included).
 */
export function travelPoints(rows: readonly (readonly number[])[]): number[] {
    const points: number[] = [];
    if (rows.length === 0) {
        return points;
    }
    const first = rows[0]!;
    points.push(first[0]!, first[1]!);
    for (let i = 0; i + 1 < rows.length; ++i) {
        const a = rows[i]!;
        const b = rows[i + 1]!;
        flattenSpan(a[0]!, a[1]!, a[4]!, a[5]!, b[2]!, b[3]!, b[0]!, b[1]!, points);
    }
    const last = rows[rows.length - 1]!;
    points.push(last[0]!, last[1]!);
    return points;
}

/** The travel of one move through its anchor rows, or null without rows. */
export function buildTravel(rows: readonly (readonly number[])[]): Polyline | null {
    return rows.length === 0 ? null : new Polyline(travelPoints(rows));
}
