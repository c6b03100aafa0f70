// Outlines of the parametric shapes. Each shape number has a list of adjustment values with a
// default and a range; the stage sends the same values, so this table is what they mean:
//
//   ss = the smaller side of the box, w and h its width and height.
//
//   11 Rectangle, 22 Diamond, 21 Oval, 56 Heart, 34 Right Triangle, 35 Data, 69 Offpage Connector,
//   71 Display, 72 Card, 74 Stored Data, 41/42/44 regular polygons: none.
//   12 Rounded Rect              [corner radius × ss = 0.1667, 0..0.5]
//   33 Triangle                  [apex x × w = 0.5, 0..1]
//   20 Cross                     [arm inset × ss = 0.25, 0..0.5]
//   53 Plaque                    [corner cut radius × ss = 0.1667, 0..0.5]
//   61 Trapezoid                 [top inset × ss = 0.25, at most half the width]
//   57 Moon                      [thickness × w = 0.5, 0..1]
//   75 Wave                      [wave height × h = 0.125, 0..0.2]
//   13 Rectangle Callout,
//   19 Oval Callout              [tip x × w = 0.3, tip y × h = 1.25], from the top left corner
//   14 Rounded Rect Callout      [tip x, tip y as above, corner radius × ss = 0.1667]
//   15/16/17/18 Right/Left/Up/Down Arrow, 25 Left Right, 26 Up Down, 31 Notched Right
//                                [shaft thickness × the side across the arrow = 0.5, 0..1,
//                                 head length × ss = 0.5]
//   27/29/30/28 Right/Left/Up/Down Arrow Callout
//                                [shaft thickness × ss = 0.25, head width × ss = 0.5,
//                                 head length × ss = 0.25, box length × the side along the arrow = 0.65]
//   32 Chevron, 73 Pentagon      [point depth × ss = 0.5]
//   81/82/83/85/89/101 Stars     [inner radius / outer radius = 0.25, 0.382, 0.577, 0.75, 0.75, 0.75]
//
// Lengths that would leave the box or cross the shape's own parts are cut back to fit, so any
// value in range still gives a drawable outline.

import { PathWriter, clamp, finiteOr } from './shapes-path';

/** Default, lowest and highest value of one adjustment. */
type Adjustment = readonly [number, number, number];

type Outline = (out: PathWriter, w: number, h: number, a: readonly number[]) => void;

interface ShapeKind {
    readonly adjustments: readonly Adjustment[];
    readonly outline: Outline;
}

// Ranges for lengths measured on the smaller side: the shape cuts them back to its real room.
const LONG = 1000;
// Callout tips may sit well outside the box, but not so far that the numbers stop meaning anything.
const TIP_RANGE = 50;

const enum Heading {
    Right,
    Left,
    Down,
    Up,
}

/**
 * A polygon drawn in a frame where u runs along the heading (0 at the tail, `along` at the tip)
 * and v across it, so one description serves the four directions of an arrow.
 */
function headedPolygon(out: PathWriter, w: number, h: number, heading: Heading, uv: readonly number[]): void {
    const along = heading === Heading.Right || heading === Heading.Left ? w : h;
    const points: number[] = [];
    for (let i = 0; i + 1 < uv.length; i += 2) {
        const u = uv[i] as number;
        const v = uv[i + 1] as number;
        switch (heading) {
            case Heading.Right:
                points.push(u, v);
                break;
            case Heading.Left:
                points.push(along - u, v);
                break;
            case Heading.Down:
                points.push(v, u);
                break;
            case Heading.Up:
                points.push(v, along - u);
                break;
        }
    }
    out.polygon_(points);
}

function sides(w: number, h: number, heading: Heading): [number, number] {
    return heading === Heading.Right || heading === Heading.Left ? [w, h] : [h, w];
}

function blockArrow(heading: Heading): Outline {
    return (out, w, h, a) => {
        const [along, across] = sides(w, h, heading);
        const c = across / 2;
        const half = (clamp(a[0] as number, 0, 1) * across) / 2;
        const head = Math.min((a[1] as number) * Math.min(w, h), along);
        const neck = along - head;
        headedPolygon(out, w, h, heading, [
            0, c - half, neck, c - half, neck, 0, along, c, neck, across, neck, c + half, 0, c + half,
        ]);
    };
}

function doubleArrow(heading: Heading): Outline {
    return (out, w, h, a) => {
        const [along, across] = sides(w, h, heading);
        const c = across / 2;
        const half = (clamp(a[0] as number, 0, 1) * across) / 2;
        const head = Math.min((a[1] as number) * Math.min(w, h), along / 2);
        headedPolygon(out, w, h, heading, [
            0, c, head, 0, head, c - half, along - head, c - half, along - head, 0, along, c,
            along - head, across, along - head, c + half, head, c + half, head, across,
        ]);
    };
}

const notchedArrow: Outline = (out, w, h, a) => {
    const c = h / 2;
    const half = (clamp(a[0] as number, 0, 1) * h) / 2;
    const head = Math.min((a[1] as number) * Math.min(w, h), w);
    const neck = w - head;
    // The notch follows the slope of the head, so tail and tip look alike.
    const notch = c > 0 ? Math.min((half * head) / c, neck) : 0;
    out.polygon_([0, c - half, neck, c - half, neck, 0, w, c, neck, h, neck, c + half, 0, c + half, notch, c]);
};

function arrowCallout(heading: Heading): Outline {
    return (out, w, h, a) => {
        const [along, across] = sides(w, h, heading);
        const ss = Math.min(w, h);
        const c = across / 2;
        const headHalf = Math.min((a[1] as number) * ss, across) / 2;
        const shaftHalf = Math.min(((a[0] as number) * ss) / 2, headHalf);
        const head = Math.min((a[2] as number) * ss, along);
        const box = Math.min(clamp(a[3] as number, 0, 1) * along, along - head);
        const neck = along - head;
        headedPolygon(out, w, h, heading, [
            0, 0, box, 0, box, c - shaftHalf, neck, c - shaftHalf, neck, c - headHalf, along, c,
            neck, c + headHalf, neck, c + shaftHalf, box, c + shaftHalf, box, across, 0, across,
        ]);
    };
}

/**
 * Points on an ellipse through the unit circle, shifted and stretched so that the outer points
 * touch all four sides of the box, as a regular figure drawn into a box is expected to.
 */
function fittedPolygon(out: PathWriter, w: number, h: number, corners: number, startDeg: number, inner: number): void {
    const unit: number[] = [];
    const step = (2 * Math.PI) / corners;
    const start = (startDeg * Math.PI) / 180;
    let left = Infinity;
    let right = -Infinity;
    let top = Infinity;
    let bottom = -Infinity;
    for (let i = 0; i < corners; ++i) {
        const angle = start + i * step;
        const x = Math.cos(angle);
        const y = Math.sin(angle);
        left = Math.min(left, x);
        right = Math.max(right, x);
        top = Math.min(top, y);
        bottom = Math.max(bottom, y);
        unit.push(x, y);
        if (inner >= 0) {
            unit.push(inner * Math.cos(angle + step / 2), inner * Math.sin(angle + step / 2));
        }
    }
    const sx = w / (right - left);
    const sy = h / (bottom - top);
    const points: number[] = [];
    for (let i = 0; i + 1 < unit.length; i += 2) {
        points.push(((unit[i] as number) - left) * sx, ((unit[i + 1] as number) - top) * sy);
    }
    out.polygon_(points);
}

function polygonShape(corners: number, startDeg: number): ShapeKind {
    return { adjustments: [], outline: (out, w, h) => fittedPolygon(out, w, h, corners, startDeg, -1) };
}

function starShape(points: number, inner: number): ShapeKind {
    return {
        adjustments: [[inner, 0, 1]],
        outline: (out, w, h, a) => fittedPolygon(out, w, h, points, -90, a[0] as number),
    };
}

/** Start and end of a callout's wedge on a side of this length, on the half nearer the tip. */
function wedgeBase(length: number, tip: number, radius: number): [number, number] {
    const nearStart = tip < length / 2;
    const a = clamp(length * (nearStart ? 1 / 6 : 2 / 3), radius, length - radius);
    const b = clamp(length * (nearStart ? 1 / 3 : 5 / 6), radius, length - radius);
    return [a, b];
}

const enum Side {
    None,
    Top,
    Right,
    Bottom,
    Left,
}

/** The side a callout's wedge leaves from: the one the tip lies beyond, none for a tip inside. */
function wedgeSide(w: number, h: number, tx: number, ty: number): Side {
    if (tx >= 0 && tx <= w && ty >= 0 && ty <= h) {
        return Side.None;
    }
    const dx = tx - w / 2;
    const dy = ty - h / 2;
    if (Math.abs(dy) * w >= Math.abs(dx) * h) {
        return dy < 0 ? Side.Top : Side.Bottom;
    }
    return dx < 0 ? Side.Left : Side.Right;
}

/** Rectangle with optional round corners and an optional wedge towards (tx, ty), clockwise. */
function calloutRect(out: PathWriter, w: number, h: number, radius: number, tx: number, ty: number, wedge: boolean) {
    const r = clamp(radius, 0, Math.min(w, h) / 2);
    const side = wedge ? wedgeSide(w, h, tx, ty) : Side.None;
    const corner = (x: number, y: number) => {
        if (r > 0) {
            out.arc_(r, r, 0, false, true, x, y);
        }
    };
    out.move_(r, 0);
    if (side === Side.Top) {
        const [a, b] = wedgeBase(w, tx, r);
        out.line_(a, 0);
        out.line_(tx, ty);
        out.line_(b, 0);
    }
    out.line_(w - r, 0);
    corner(w, r);
    if (side === Side.Right) {
        const [a, b] = wedgeBase(h, ty, r);
        out.line_(w, a);
        out.line_(tx, ty);
        out.line_(w, b);
    }
    out.line_(w, h - r);
    corner(w - r, h);
    if (side === Side.Bottom) {
        const [a, b] = wedgeBase(w, tx, r);
        out.line_(b, h);
        out.line_(tx, ty);
        out.line_(a, h);
    }
    out.line_(r, h);
    corner(0, h - r);
    if (side === Side.Left) {
        const [a, b] = wedgeBase(h, ty, r);
        out.line_(0, b);
        out.line_(tx, ty);
        out.line_(0, a);
    }
    out.line_(0, r);
    corner(r, 0);
    out.close_();
}

const tipX: Adjustment = [0.3, -TIP_RANGE, TIP_RANGE];
const tipY: Adjustment = [1.25, -TIP_RANGE, TIP_RANGE];
const cornerRadius: Adjustment = [0.1667, 0, 0.5];
const shaft: Adjustment = [0.5, 0, 1];
const headLength: Adjustment = [0.5, 0, LONG];
const calloutArrow: readonly Adjustment[] = [
    [0.25, 0, LONG],
    [0.5, 0, LONG],
    [0.25, 0, LONG],
    [0.65, 0, 1],
];
const pointDepth: Adjustment = [0.5, 0, LONG];

const oval: Outline = (out, w, h) => {
    const rx = w / 2;
    const ry = h / 2;
    out.move_(0, ry);
    out.arc_(rx, ry, 0, false, true, w, ry);
    out.arc_(rx, ry, 0, false, true, 0, ry);
    out.close_();
};

const ovalCallout: Outline = (out, w, h, a) => {
    const rx = w / 2;
    const ry = h / 2;
    const tx = (a[0] as number) * w;
    const ty = (a[1] as number) * h;
    const nx = rx > 0 ? (tx - rx) / rx : 0;
    const ny = ry > 0 ? (ty - ry) / ry : 0;
    if (rx <= 0 || ry <= 0 || nx * nx + ny * ny <= 1) {
        oval(out, w, h, a);
        return;
    }
    // The wedge leaves the ellipse across twenty degrees around the direction of the tip.
    const angle = Math.atan2(ny, nx);
    const spread = Math.PI / 18;
    out.move_(rx + rx * Math.cos(angle + spread), ry + ry * Math.sin(angle + spread));
    out.line_(tx, ty);
    out.line_(rx + rx * Math.cos(angle - spread), ry + ry * Math.sin(angle - spread));
    out.arc_(rx, ry, 0, true, false, rx + rx * Math.cos(angle + spread), ry + ry * Math.sin(angle + spread));
    out.close_();
};

const heart: Outline = (out, w, h) => {
    const c = w / 2;
    // Handles placed so that the lobes just touch the sides and the top of the box.
    const outer = w * 1.012563;
    const inner = (w * 10) / 48;
    const top = -0.361664 * h;
    out.move_(c, h / 4);
    out.cubic_(c + inner, top, c + outer, h / 4, c, h);
    out.cubic_(c - outer, h / 4, c - inner, top, c, h / 4);
    out.close_();
};

const plaque: Outline = (out, w, h, a) => {
    const d = clamp((a[0] as number) * Math.min(w, h), 0, Math.min(w, h) / 2);
    if (d <= 0) {
        out.polygon_([0, 0, w, 0, w, h, 0, h]);
        return;
    }
    // Each corner is a quarter circle bitten out around the corner point.
    out.move_(0, d);
    out.arc_(d, d, 0, false, false, d, 0);
    out.line_(w - d, 0);
    out.arc_(d, d, 0, false, false, w, d);
    out.line_(w, h - d);
    out.arc_(d, d, 0, false, false, w - d, h);
    out.line_(d, h);
    out.arc_(d, d, 0, false, false, 0, h - d);
    out.close_();
};

const moon: Outline = (out, w, h, a) => {
    const ry = h / 2;
    const innerRx = w - clamp(a[0] as number, 0, 1) * w;
    out.move_(w, 0);
    out.arc_(w, ry, 0, false, false, w, h);
    out.arc_(innerRx, ry, 0, false, true, w, 0);
    out.close_();
};

const display: Outline = (out, w, h) => {
    out.move_(0, h / 2);
    out.line_(w / 6, 0);
    out.line_((5 * w) / 6, 0);
    out.arc_(w / 6, h / 2, 0, false, true, (5 * w) / 6, h);
    out.line_(w / 6, h);
    out.close_();
};

const storedData: Outline = (out, w, h) => {
    out.move_(w / 6, 0);
    out.line_(w, 0);
    out.arc_(w / 6, h / 2, 0, false, false, w, h);
    out.line_(w / 6, h);
    out.arc_(w / 6, h / 2, 0, false, true, w / 6, 0);
    out.close_();
};

const wave: Outline = (out, w, h, a) => {
    const y = clamp(a[0] as number, 0, 0.2) * h;
    // Handles this far out make the crest and trough reach about 0 and 2y.
    const k = (y * 10) / 3;
    out.move_(0, y);
    out.cubic_(w / 3, y - k, (2 * w) / 3, y + k, w, y);
    out.line_(w, h - y);
    out.cubic_((2 * w) / 3, h - y + k, w / 3, h - y - k, 0, h - y);
    out.close_();
};

const SHAPES = new Map<number, ShapeKind>([
    [11, { adjustments: [], outline: (out, w, h) => out.polygon_([0, 0, w, 0, w, h, 0, h]) }],
    [
        12,
        {
            adjustments: [cornerRadius],
            outline: (out, w, h, a) => calloutRect(out, w, h, (a[0] as number) * Math.min(w, h), 0, 0, false),
        },
    ],
    [33, { adjustments: [[0.5, 0, 1]], outline: (out, w, h, a) => out.polygon_([(a[0] as number) * w, 0, w, h, 0, h]) }],
    [22, { adjustments: [], outline: (out, w, h) => out.polygon_([w / 2, 0, w, h / 2, w / 2, h, 0, h / 2]) }],
    [21, { adjustments: [], outline: oval }],
    [56, { adjustments: [], outline: heart }],
    [
        20,
        {
            adjustments: [[0.25, 0, 0.5]],
            outline: (out, w, h, a) => {
                const d = (a[0] as number) * Math.min(w, h);
                out.polygon_([
                    d, 0, w - d, 0, w - d, d, w, d, w, h - d, w - d, h - d,
                    w - d, h, d, h, d, h - d, 0, h - d, 0, d, d, d,
                ]);
            },
        },
    ],
    [53, { adjustments: [[0.1667, 0, 0.5]], outline: plaque }],
    [
        61,
        {
            adjustments: [[0.25, 0, LONG]],
            outline: (out, w, h, a) => {
                const d = Math.min((a[0] as number) * Math.min(w, h), w / 2);
                out.polygon_([d, 0, w - d, 0, w, h, 0, h]);
            },
        },
    ],
    [57, { adjustments: [[0.5, 0, 1]], outline: moon }],
    [41, polygonShape(5, -90)],
    [42, polygonShape(6, 0)],
    [44, polygonShape(8, 22.5)],
    [34, { adjustments: [], outline: (out, w, h) => out.polygon_([0, 0, w, h, 0, h]) }],
    [35, { adjustments: [], outline: (out, w, h) => out.polygon_([w / 5, 0, w, 0, (4 * w) / 5, h, 0, h]) }],
    [69, { adjustments: [], outline: (out, w, h) => out.polygon_([0, 0, w, 0, w, 0.8 * h, w / 2, h, 0, 0.8 * h]) }],
    [71, { adjustments: [], outline: display }],
    [72, { adjustments: [], outline: (out, w, h) => out.polygon_([w / 5, 0, w, 0, w, h, 0, h, 0, h / 5]) }],
    [74, { adjustments: [], outline: storedData }],
    [75, { adjustments: [[0.125, 0, 0.2]], outline: wave }],
    [
        73,
        {
            adjustments: [pointDepth],
            outline: (out, w, h, a) => {
                const d = Math.min((a[0] as number) * Math.min(w, h), w);
                out.polygon_([0, 0, w - d, 0, w, h / 2, w - d, h, 0, h]);
            },
        },
    ],
    [
        13,
        {
            adjustments: [tipX, tipY],
            outline: (out, w, h, a) => calloutRect(out, w, h, 0, (a[0] as number) * w, (a[1] as number) * h, true),
        },
    ],
    [
        14,
        {
            adjustments: [tipX, tipY, cornerRadius],
            outline: (out, w, h, a) => {
                const radius = (a[2] as number) * Math.min(w, h);
                calloutRect(out, w, h, radius, (a[0] as number) * w, (a[1] as number) * h, true);
            },
        },
    ],
    [19, { adjustments: [tipX, tipY], outline: ovalCallout }],
    [15, { adjustments: [shaft, headLength], outline: blockArrow(Heading.Right) }],
    [16, { adjustments: [shaft, headLength], outline: blockArrow(Heading.Left) }],
    [17, { adjustments: [shaft, headLength], outline: blockArrow(Heading.Up) }],
    [18, { adjustments: [shaft, headLength], outline: blockArrow(Heading.Down) }],
    [26, { adjustments: [shaft, headLength], outline: doubleArrow(Heading.Down) }],
    [25, { adjustments: [shaft, headLength], outline: doubleArrow(Heading.Right) }],
    [31, { adjustments: [shaft, headLength], outline: notchedArrow }],
    [29, { adjustments: calloutArrow, outline: arrowCallout(Heading.Left) }],
    [27, { adjustments: calloutArrow, outline: arrowCallout(Heading.Right) }],
    [30, { adjustments: calloutArrow, outline: arrowCallout(Heading.Up) }],
    [28, { adjustments: calloutArrow, outline: arrowCallout(Heading.Down) }],
    [
        32,
        {
            adjustments: [pointDepth],
            outline: (out, w, h, a) => {
                // Deeper than half the width, the notch would pass the point.
                const d = Math.min((a[0] as number) * Math.min(w, h), w / 2);
                out.polygon_([0, 0, w - d, 0, w, h / 2, w - d, h, 0, h, d, h / 2]);
            },
        },
    ],
    [81, starShape(4, 0.25)],
    [82, starShape(5, 0.382)],
    [83, starShape(6, 0.577)],
    [85, starShape(8, 0.75)],
    [89, starShape(12, 0.75)],
    [101, starShape(24, 0.75)],
]);

/** Whether the number is one of the parametric shapes drawn here. */
export function isAutoShapeType(type: number): boolean {
    return SHAPES.has(type);
}

/** The adjustment values a new shape of this number starts with; empty for an unknown number. */
export function defaultAdjustments(type: number): number[] {
    const kind = SHAPES.get(type);
    return kind ? kind.adjustments.map((adjustment) => adjustment[0]) : [];
}

/**
 * The values the outline uses: each one given as a finite number is held to its range, the others
 * take their default. Extra values, as a newer stage might send, are ignored.
 */
export function resolveAdjustments(type: number, adjustments: unknown): number[] {
    const kind = SHAPES.get(type);
    if (!kind) {
        return [];
    }
    const given: readonly unknown[] = Array.isArray(adjustments) ? adjustments : [];
    return kind.adjustments.map(([fallback, low, high], i) => clamp(finiteOr(given[i], fallback), low, high));
}

/**
 * SVG path data of a parametric shape's outline in a w × h box. A number outside the table is
 * drawn as a rectangle, so an element saved by a newer stage still shows its fill and border;
 * freeform numbers (590 to 595) have no outline here, their points are their outline. A size that
 * is not a finite number of at least 0 gives an empty path.
 */
export function autoShapePath(type: number, adjustments: readonly number[], w: number, h: number): string {
    if (!isFinite(w) || !isFinite(h) || w < 0 || h < 0 || (type >= 590 && type <= 595)) {
        return '';
    }
    const out = new PathWriter();
    const kind = SHAPES.get(type);
    if (kind) {
        kind.outline(out, w, h, resolveAdjustments(type, adjustments));
    } else {
        out.polygon_([0, 0, w, 0, w, h, 0, h]);
    }
    return out.toString();
}
