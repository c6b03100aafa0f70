// Freeform outlines and the heads at the ends of freeform lines.
//
// A point of the exported path is [x, y, x1, y1, x2, y2] with an optional seventh item 1 on the
// first point that marks the path as open: the anchor, the handle towards the previous anchor and
// the handle towards the next one. The numbers are whatever space the stage drew in, so the path is
// fitted to the element: the tight bounds of the curve fill the w × h box. The outline therefore
// follows the element when a layout or an animation resizes it, and a path in element pixels,
// which is what the stage keeps, comes out unchanged at the size it was drawn.

import { PathWriter, clamp, finiteOr } from './shapes-path';

/** More points than the studio keeps in one path: such a list is damaged, and nothing is drawn. */
const MAX_POINTS = 5000;
// Below this a bounds side is taken as flat: a straight horizontal or vertical line.
const FLAT = 1e-6;

/** One span of the fitted outline: a cubic from (x0, y0) to (x3, y3). */
interface Span {
    x0: number;
    y0: number;
    x1: number;
    y1: number;
    x2: number;
    y2: number;
    x3: number;
    y3: number;
}

interface Outline {
    readonly spans: Span[];
    readonly closed: boolean;
}

interface Anchor {
    readonly x: number;
    readonly y: number;
    readonly inX: number;
    readonly inY: number;
    readonly outX: number;
    readonly outY: number;
}

function readAnchors(points: unknown): { anchors: Anchor[]; open: boolean } {
    const anchors: Anchor[] = [];
    let open = false;
    if (!Array.isArray(points) || points.length > MAX_POINTS) {
        return { anchors, open };
    }
    for (const item of points) {
        if (!Array.isArray(item)) {
            continue;
        }
        const x = finiteOr(item[0], 0);
        const y = finiteOr(item[1], 0);
        // A damaged handle lies on its anchor: the corner stays sharp instead of pulling to 0, 0.
        anchors.push({
            x,
            y,
            inX: finiteOr(item[2], x),
            inY: finiteOr(item[3], y),
            outX: finiteOr(item[4], x),
            outY: finiteOr(item[5], y),
        });
        if (anchors.length === 1) {
            open = item[6] === 1;
        }
    }
    return { anchors, open };
}

function endsMeet(anchors: readonly Anchor[]): boolean {
    const first = anchors[0] as Anchor;
    const last = anchors[anchors.length - 1] as Anchor;
    return Math.abs(first.x - last.x) <= 1e-12 && Math.abs(first.y - last.y) <= 1e-12;
}

/** Widens [range[0], range[1]] to hold one coordinate of a cubic, turning points included. */
function extendByCubic(range: number[], p0: number, p1: number, p2: number, p3: number): void {
    const take = (t: number) => {
        if (t > 0 && t < 1) {
            const s = 1 - t;
            const value = s * s * s * p0 + 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t * p3;
            range[0] = Math.min(range[0] as number, value);
            range[1] = Math.max(range[1] as number, value);
        }
    };
    range[0] = Math.min(range[0] as number, p0, p3);
    range[1] = Math.max(range[1] as number, p0, p3);
    // The derivative divided by 3 is a t² + b t + c.
    const a = -p0 + 3 * p1 - 3 * p2 + p3;
    const b = 2 * (p0 - 2 * p1 + p2);
    const c = p1 - p0;
    if (Math.abs(a) < 1e-12) {
        if (Math.abs(b) > 1e-12) {
            take(-c / b);
        }
        return;
    }
    const disc = b * b - 4 * a * c;
    if (disc >= 0) {
        const root = Math.sqrt(disc);
        take((-b + root) / (2 * a));
        take((-b - root) / (2 * a));
    }
}

/** Reads the points and fits them to the box; null when there is nothing to draw. */
function fitOutline(points: unknown, w: number, h: number): Outline | null {
    if (!isFinite(w) || !isFinite(h) || w < 0 || h < 0) {
        return null;
    }
    const { anchors, open } = readAnchors(points);
    if (anchors.length < 2) {
        return null;
    }
    // A path whose ends meet is closed whatever its flag says, and needs no closing side of its own;
    // otherwise the flag marks it open.
    const meet = endsMeet(anchors);
    const closed = meet || !open;
    const raw: Span[] = [];
    const count = closed && !meet ? anchors.length : anchors.length - 1;
    for (let i = 0; i < count; ++i) {
        const a = anchors[i] as Anchor;
        const b = anchors[(i + 1) % anchors.length] as Anchor;
        raw.push({ x0: a.x, y0: a.y, x1: a.outX, y1: a.outY, x2: b.inX, y2: b.inY, x3: b.x, y3: b.y });
    }
    const xs = [Infinity, -Infinity];
    const ys = [Infinity, -Infinity];
    for (const s of raw) {
        extendByCubic(xs, s.x0, s.x1, s.x2, s.x3);
        extendByCubic(ys, s.y0, s.y1, s.y2, s.y3);
    }
    const fit = (range: number[], size: number) => {
        const low = range[0] as number;
        const extent = (range[1] as number) - low;
        // A flat side cannot be stretched: it sits in the middle of the box.
        return extent > FLAT ? (v: number) => ((v - low) * size) / extent : (v: number) => size / 2 + (v - low);
    };
    const fx = fit(xs, w);
    const fy = fit(ys, h);
    const spans = raw.map((s) => ({
        x0: fx(s.x0),
        y0: fy(s.y0),
        x1: fx(s.x1),
        y1: fy(s.y1),
        x2: fx(s.x2),
        y2: fy(s.y2),
        x3: fx(s.x3),
        y3: fy(s.y3),
    }));
    return { spans, closed };
}

function isStraight(s: Span): boolean {
    const near = (a: number, b: number) => Math.abs(a - b) < 1e-9;
    return near(s.x1, s.x0) && near(s.y1, s.y0) && near(s.x2, s.x3) && near(s.y2, s.y3);
}

function writeOutline(spans: readonly Span[], closed: boolean): string {
    const first = spans[0];
    if (!first) {
        return '';
    }
    const out = new PathWriter();
    out.move_(first.x0, first.y0);
    for (let i = 0; i < spans.length; ++i) {
        const s = spans[i] as Span;
        if (closed && i > 0 && i === spans.length - 1 && isStraight(s)) {
            break; // "Z" draws the last straight side.
        }
        if (isStraight(s)) {
            out.line_(s.x3, s.y3);
        } else {
            out.cubic_(s.x1, s.y1, s.x2, s.y2, s.x3, s.y3);
        }
    }
    if (closed) {
        out.close_();
    }
    return out.toString();
}

/**
 * SVG path data of a freeform from its exported points, fitted to a w × h box; closed with "Z"
 * when the path is closed. Fewer than two usable points, or a size that is not a finite number of
 * at least 0, give an empty path.
 */
export function freeformPath(points: readonly unknown[], w: number, h: number): string {
    const outline = fitOutline(points, w, h);
    return outline ? writeOutline(outline.spans, outline.closed) : '';
}

// ---------------------------------------------------------------------------------------------
// Arrow heads

export const enum ArrowType {
    None = 0,
    Arrow = 1,
    Open = 2,
    Stealth = 3,
    Diamond = 4,
    Oval = 5,
}

export interface ArrowEnds {
    readonly endType: ArrowType;
    /** 1 to 9. */
    readonly endSize: number;
    readonly startType: ArrowType;
    readonly startSize: number;
}

const DEFAULT_ARROW_SIZE = 4;

function wholeIn(value: unknown, low: number, high: number): value is number {
    return typeof value === 'number' && value >= low && value <= high && Math.floor(value) === value;
}

function readType(value: unknown): ArrowType {
    return wholeIn(value, 1, 5) ? value : ArrowType.None;
}

function readSize(value: unknown): number {
    return wholeIn(value, 1, 9) ? value : DEFAULT_ARROW_SIZE;
}

/**
 * The arrow ends of a freeform's "s" array: [type, points, end type, end size, start type,
 * start size], the last four present only when an end has a head. An unknown head type is none.
 */
export function readArrowEnds(shape: unknown): ArrowEnds {
    const s: readonly unknown[] = Array.isArray(shape) ? shape : [];
    return {
        endType: readType(s[2]),
        endSize: readSize(s[3]),
        startType: readType(s[4]),
        startSize: readSize(s[5]),
    };
}

/**
 * Length and width of a head in line widths. The nine sizes are three widths times three lengths:
 * size 1 is narrow and short, size 9 wide and long.
 */
export function arrowHeadExtent(size: number): { length: number; width: number } {
    const steps = [2, 3, 5];
    const index = clamp(Math.round(size), 1, 9) - 1;
    return { length: steps[index % 3] as number, width: steps[Math.floor(index / 3)] as number };
}

function pointAt(s: Span, t: number): [number, number] {
    const u = 1 - t;
    const a = u * u * u;
    const b = 3 * u * u * t;
    const c = 3 * u * t * t;
    const d = t * t * t;
    return [a * s.x0 + b * s.x1 + c * s.x2 + d * s.x3, a * s.y0 + b * s.y1 + c * s.y2 + d * s.y3];
}

/** The span between parameters t0 and t1, by two de Casteljau cuts. */
function subSpan(s: Span, t0: number, t1: number): Span {
    const cut = (p: Span, t: number): Span => {
        // Keeps the part from t to 1.
        const lerp = (a: number, b: number) => a + (b - a) * t;
        const ax = lerp(p.x0, p.x1), ay = lerp(p.y0, p.y1);
        const bx = lerp(p.x1, p.x2), by = lerp(p.y1, p.y2);
        const cx = lerp(p.x2, p.x3), cy = lerp(p.y2, p.y3);
        const dx = lerp(ax, bx), dy = lerp(ay, by);
        const ex = lerp(bx, cx), ey = lerp(by, cy);
        return { x0: lerp(dx, ex), y0: lerp(dy, ey), x1: ex, y1: ey, x2: cx, y2: cy, x3: p.x3, y3: p.y3 };
    };
    // Turned round twice, a copy: the straight-line fix below must not touch the caller's span.
    let part = t0 > 0 ? cut(s, t0) : reversed(reversed(s));
    if (t1 < 1) {
        const rest = (t1 - t0) / (1 - t0);
        part = reversed(cut(reversed(part), 1 - rest));
    }
    if (isStraight(s)) {
        // A straight piece stays a plain line in the output.
        part.x1 = part.x0;
        part.y1 = part.y0;
        part.x2 = part.x3;
        part.y2 = part.y3;
    }
    return part;
}

/**
 * The parameter nearest the end t = 1 at which the span is `distance` away from its end in a
 * straight line; 0 when no point of the span is that far.
 */
function parameterAtDistanceFromEnd(s: Span, distance: number): number {
    const away = (t: number) => {
        const [x, y] = pointAt(s, t);
        return Math.hypot(x - s.x3, y - s.y3);
    };
    const steps = 32;
    let inside = 1;
    for (let i = 1; i <= steps; ++i) {
        const t = 1 - i / steps;
        if (away(t) >= distance) {
            let outside = t;
            for (let j = 0; j < 24; ++j) {
                const mid = (inside + outside) / 2;
                if (away(mid) >= distance) {
                    outside = mid;
                } else {
                    inside = mid;
                }
            }
            return (inside + outside) / 2;
        }
        inside = t;
    }
    return 0;
}

function reversed(s: Span): Span {
    return { x0: s.x3, y0: s.y3, x1: s.x2, y1: s.y2, x2: s.x1, y2: s.y1, x3: s.x0, y3: s.y0 };
}

/**
 * Draws one head with its tip at the end of the span, pointing along the span's last stretch, and
 * tells how far back from the tip the line may stop and stay hidden under the head; null when the
 * span has no direction.
 */
function writeHead(out: PathWriter, s: Span, type: ArrowType, size: number, lineWidth: number): number | null {
    const extent = arrowHeadExtent(size);
    const unit = Math.max(lineWidth, 1);
    const length = extent.length * unit;
    const width = extent.width * unit;
    // Aim along the chord over the head's length: on a curved end this follows what the eye sees.
    const [bx, by] = pointAt(s, parameterAtDistanceFromEnd(s, length));
    let dx = s.x3 - bx;
    let dy = s.y3 - by;
    let norm = Math.hypot(dx, dy);
    if (norm < 1e-9) {
        return null;
    }
    dx /= norm;
    dy /= norm;
    // Local frame: u forward along the line, v to its left.
    const at = (u: number, v: number): [number, number] => [s.x3 + u * dx - v * dy, s.y3 + u * dy + v * dx];
    const polygon = (uv: readonly number[]) => {
        const points: number[] = [];
        for (let i = 0; i + 1 < uv.length; i += 2) {
            points.push(...at(uv[i] as number, uv[i + 1] as number));
        }
        out.polygon_(points);
    };
    const half = width / 2;
    switch (type) {
        case ArrowType.Diamond:
            polygon([length / 2, 0, 0, half, -length / 2, 0, 0, -half]);
            return 0;
        case ArrowType.Oval: {
            const rotation = (Math.atan2(dy, dx) * 180) / Math.PI;
            const front = at(length / 2, 0);
            const back = at(-length / 2, 0);
            out.move_(front[0], front[1]);
            out.arc_(length / 2, half, rotation, false, true, back[0], back[1]);
            out.arc_(length / 2, half, rotation, false, true, front[0], front[1]);
            out.close_();
            return 0;
        }
        case ArrowType.Stealth:
            polygon([0, 0, -length, half, -0.6 * length, 0, -length, -half]);
            return length / 2;
        case ArrowType.Open: {
            // A V as thick as the line; the line stops where its corners are inside the V's arms.
            norm = Math.hypot(length, half);
            const sin = half / norm;
            const tan = half / length;
            const inner = lineWidth / sin;
            if (inner < length * 0.9) {
                const ox = (-half * lineWidth) / norm;
                const oy = (-length * lineWidth) / norm;
                polygon([
                    0, 0, -length, half, -length + ox, half + oy, -inner, 0, -length + ox, -half - oy, -length, -half,
                ]);
                return lineWidth / 2 / tan + inner / 2;
            }
            // Too slim a head to be hollow at this line width.
            polygon([0, 0, -length, half, -length, -half]);
            return length / 2;
        }
        default:
            polygon([0, 0, -length, half, -length, -half]);
            return length / 2;
    }
}

export interface ArrowedLine {
    /** The freeform's path, shortened under the heads so its square ends never show past a tip. */
    readonly line: string;
    /** Path data of the heads, to be filled with the line's colour and not stroked; '' for none. */
    readonly heads: string;
}

/**
 * What draws a freeform with arrow heads. `shape` is the element's whole "s" array; w × h its box;
 * `lineWidth` the border width in pixels. Heads go only on open paths with a visible line; without
 * them `line` is the plain `freeformPath`.
 */
export function arrowMarkers(shape: readonly unknown[], w: number, h: number, lineWidth: number): ArrowedLine {
    const outline = fitOutline(Array.isArray(shape) ? shape[1] : undefined, w, h);
    if (!outline) {
        return { line: '', heads: '' };
    }
    const ends = readArrowEnds(shape);
    const spans = outline.spans;
    if (outline.closed || !(lineWidth > 0) || !isFinite(lineWidth) ||
        (ends.endType === ArrowType.None && ends.startType === ArrowType.None)) {
        return { line: writeOutline(spans, outline.closed), heads: '' };
    }
    const out = new PathWriter();
    const lastIndex = spans.length - 1;
    let endCut = 1;
    let startCut = 0;
    if (ends.endType !== ArrowType.None) {
        const last = spans[lastIndex] as Span;
        const setBack = writeHead(out, last, ends.endType, ends.endSize, lineWidth);
        if (setBack !== null && setBack > 0) {
            endCut = parameterAtDistanceFromEnd(last, setBack);
        }
    }
    if (ends.startType !== ArrowType.None) {
        const first = reversed(spans[0] as Span);
        const setBack = writeHead(out, first, ends.startType, ends.startSize, lineWidth);
        if (setBack !== null && setBack > 0) {
            startCut = 1 - parameterAtDistanceFromEnd(first, setBack);
        }
    }
    const trimmed = spans.slice();
    if (lastIndex === 0) {
        trimmed[0] = subSpan(trimmed[0] as Span, startCut, Math.max(startCut, endCut));
    } else {
        trimmed[lastIndex] = subSpan(trimmed[lastIndex] as Span, 0, endCut);
        trimmed[0] = subSpan(trimmed[0] as Span, startCut, 1);
    }
    return { line: writeOutline(trimmed, false), heads: out.toString() };
}
