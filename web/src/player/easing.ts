// Easing curves exactly as the studio's model computes them. The model eases every key segment
// with Qt's QEasingCurve (Robert Penner's equations with Qt's defaults: amplitude 1, period 0.3,
// overshoot 1.70158), so the player repeats Qt's arithmetic operation by operation, in the same
// order and with the same constants (single-precision ones included), to land on the same doubles.
// Only the transcendental functions can differ: the browser's sin, cos, pow and asin are not
// guaranteed to round like the C library's.
//
// The two spline types carry the control points that the model gives every segment of that type.

/** QEasingCurve::Type numbers as the data script's "es" and transition easings carry them. */
export const enum Easing {
    Linear = 0,
    InQuad, OutQuad, InOutQuad, OutInQuad,
    InCubic, OutCubic, InOutCubic, OutInCubic,
    InQuart, OutQuart, InOutQuart, OutInQuart,
    InQuint, OutQuint, InOutQuint, OutInQuint,
    InSine, OutSine, InOutSine, OutInSine,
    InExpo, OutExpo, InOutExpo, OutInExpo,
    InCirc, OutCirc, InOutCirc, OutInCirc,
    InElastic, OutElastic, InOutElastic, OutInElastic,
    InBack, OutBack, InOutBack, OutInBack,
    InBounce, OutBounce, InOutBounce, OutInBounce,
    InCurve, OutCurve, SineCurve, CosineCurve,
    BezierSpline, TCBSpline,
    /** One past the last type a segment can hold. */
    Count,
}

/** A type number from the data, or Linear for anything the model would not have stored. */
export function normalizeEasing(type: unknown): number {
    return typeof type === 'number' && type >= 0 && type < Easing.Count && Math.floor(type) === type
        ? type
        : Easing.Linear;
}

const PI = Math.PI;
const PI_2 = PI / 2;
const TWO_PI = 2 * PI;
// Qt's Back in-out scales the overshoot by a float literal, not by the double 1.525.
const BACK_IN_OUT_SCALE = Math.fround(1.525);
const OVERSHOOT = 1.70158;
const AMPLITUDE = 1.0;
const PERIOD = 0.3;

function outQuad(t: number): number {
    return -t * (t - 2);
}

function outCubic(t: number): number {
    t -= 1.0;
    return t * t * t + 1;
}

function outQuart(t: number): number {
    t -= 1.0;
    return -(t * t * t * t - 1);
}

function outQuint(t: number): number {
    t -= 1.0;
    return t * t * t * t * t + 1;
}

function inSine(t: number): number {
    return t === 1.0 ? 1.0 : -Math.cos(t * PI_2) + 1.0;
}

function outSine(t: number): number {
    return Math.sin(t * PI_2);
}

function inExpo(t: number): number {
    return t === 0 || t === 1.0 ? t : Math.pow(2.0, 10 * (t - 1)) - 0.001;
}

function outExpo(t: number): number {
    return t === 1.0 ? 1.0 : 1.001 * (-Math.pow(2.0, -10 * t) + 1);
}

function inCirc(t: number): number {
    return -(Math.sqrt(1 - t * t) - 1);
}

function outCirc(t: number): number {
    t -= 1.0;
    return Math.sqrt(1 - t * t);
}

function inElasticHelper(t: number, b: number, c: number, d: number, a: number, p: number): number {
    if (t === 0) {
        return b;
    }
    let tAdj = t / d;
    if (tAdj === 1) {
        return b + c;
    }
    let s: number;
    if (a < Math.abs(c)) {
        a = c;
        s = p / 4.0;
    } else {
        s = (p / TWO_PI) * Math.asin(c / a);
    }
    tAdj -= 1.0;
    return -(a * Math.pow(2.0, 10 * tAdj) * Math.sin(((tAdj * d - s) * TWO_PI) / p)) + b;
}

function outElasticHelper(t: number, c: number, a: number, p: number): number {
    if (t === 0) {
        return 0;
    }
    if (t === 1) {
        return c;
    }
    let s: number;
    if (a < c) {
        a = c;
        s = p / 4.0;
    } else {
        s = (p / TWO_PI) * Math.asin(c / a);
    }
    return a * Math.pow(2.0, -10 * t) * Math.sin(((t - s) * TWO_PI) / p) + c;
}

function inOutElastic(t: number, a: number, p: number): number {
    if (t === 0) {
        return 0.0;
    }
    t *= 2.0;
    if (t === 2) {
        return 1.0;
    }
    let s: number;
    if (a < 1.0) {
        a = 1.0;
        s = p / 4.0;
    } else {
        s = (p / TWO_PI) * Math.asin(1.0 / a);
    }
    if (t < 1) {
        return -0.5 * (a * Math.pow(2.0, 10 * (t - 1)) * Math.sin(((t - 1 - s) * TWO_PI) / p));
    }
    return a * Math.pow(2.0, -10 * (t - 1)) * Math.sin(((t - 1 - s) * TWO_PI) / p) * 0.5 + 1.0;
}

function inBack(t: number, s: number): number {
    return t * t * ((s + 1) * t - s);
}

function outBack(t: number, s: number): number {
    t -= 1.0;
    return t * t * ((s + 1) * t + s) + 1;
}

function inOutBack(t: number, s: number): number {
    t *= 2.0;
    if (t < 1) {
        s *= BACK_IN_OUT_SCALE;
        return 0.5 * (t * t * ((s + 1) * t - s));
    }
    t -= 2;
    s *= BACK_IN_OUT_SCALE;
    return 0.5 * (t * t * ((s + 1) * t + s) + 2);
}

function outBounceHelper(t: number, c: number, a: number): number {
    if (t === 1.0) {
        return c;
    }
    if (t < 4 / 11.0) {
        return c * (7.5625 * t * t);
    } else if (t < 8 / 11.0) {
        t -= 6 / 11.0;
        return -a * (1 - (7.5625 * t * t + 0.75)) + c;
    } else if (t < 10 / 11.0) {
        t -= 9 / 11.0;
        return -a * (1 - (7.5625 * t * t + 0.9375)) + c;
    }
    t -= 21 / 22.0;
    return -a * (1 - (7.5625 * t * t + 0.984375)) + c;
}

function inBounce(t: number, a: number): number {
    return 1.0 - outBounceHelper(1.0 - t, 1.0, a);
}

function sinProgress(value: number): number {
    return Math.sin(value * PI - PI_2) / 2 + 0.5;
}

// Qt's qMin and qMax, whose argument order decides which side wins for equal values.
function smoothBeginEndMixFactor(value: number): number {
    const low = 1 - value * 2 + 0.3;
    const raised = low < 0.0 ? 0.0 : low;
    return raised < 1.0 ? raised : 1.0;
}

// Spline easing: cubic segments from (0, 0) to (1, 1), solved for the parameter at a given x with
// Qt's Cardano solution and its approximations, so that the result follows Qt's to the bit.
interface SplineSegment {
    readonly p0x: number; readonly p0y: number;
    readonly p1x: number; readonly p1y: number;
    readonly p2x: number; readonly p2y: number;
    readonly p3x: number; readonly p3y: number;
}

interface Spline {
    readonly segments: readonly SplineSegment[];
    readonly intervals: Float64Array;
}

/** Control points c1, c2, end of each cubic after (0, 0), as QEasingCurve stores them. */
function buildSpline(points: readonly number[]): Spline {
    const count = Math.floor(points.length / 6);
    const at = (i: number, axis: number): number => points[i * 2 + axis]!;
    const segments: SplineSegment[] = [];
    const intervals = new Float64Array(count);
    for (let i = 0; i < count; ++i) {
        intervals[i] = at(i * 3 + 2, 0);
        // The first cubic starts at the origin, every other one at the end of the one before.
        segments.push({
            p0x: i === 0 ? 0.0 : at(i * 3 - 1, 0), p0y: i === 0 ? 0.0 : at(i * 3 - 1, 1),
            p1x: at(i * 3, 0), p1y: at(i * 3, 1),
            p2x: at(i * 3 + 1, 0), p2y: at(i * 3 + 1, 1),
            p3x: at(i * 3 + 2, 0), p3y: at(i * 3 + 2, 1),
        });
    }
    return { segments, intervals };
}

interface TcbPoint {
    readonly x: number;
    readonly y: number;
    readonly t: number;
    readonly c: number;
    readonly b: number;
}

/** Qt's conversion of tension-continuity-bias points into Bezier control points. */
function tcbToBezier(tcb: readonly TcbPoint[]): number[] {
    const out: number[] = [];
    const count = tcb.length;
    for (let i = 1; i < count; i++) {
        const prev = tcb[i - 1]!;
        const cur = tcb[i]!;
        const t0 = prev.t;
        const c0c = prev.c;
        let b0 = -1;
        const t1 = cur.t;
        const c1c = cur.c;
        let b1 = 1;
        let cmx = 0;
        let cmy = 0;
        let c4x = 0;
        let c4y = 0;
        if (i > 1) {
            cmx = tcb[i - 2]!.x;
            cmy = tcb[i - 2]!.y;
            b0 = prev.b;
        }
        if (i < count - 1) {
            c4x = tcb[i + 1]!.x;
            c4y = tcb[i + 1]!.y;
            b1 = cur.b;
        }
        const dx0 = 0.5 * (1 - t0) * ((1 + b0) * (1 + c0c) * (prev.x - cmx) + (1 - b0) * (1 - c0c) * (cur.x - prev.x));
        const dy0 = 0.5 * (1 - t0) * ((1 + b0) * (1 + c0c) * (prev.y - cmy) + (1 - b0) * (1 - c0c) * (cur.y - prev.y));
        const dx1 = 0.5 * (1 - t1) * ((1 + b1) * (1 - c1c) * (cur.x - prev.x) + (1 - b1) * (1 + c1c) * (c4x - cur.x));
        const dy1 = 0.5 * (1 - t1) * ((1 + b1) * (1 - c1c) * (cur.y - prev.y) + (1 - b1) * (1 + c1c) * (c4y - cur.y));
        out.push((3 * prev.x + dx0) / 3, (3 * prev.y + dy0) / 3);
        out.push((3 * cur.x - dx1) / 3, (3 * cur.y - dy1) / 3);
        out.push(cur.x, cur.y);
    }
    return out;
}

const BEZIER_SPLINE = buildSpline([0.4, 0.1, 0.6, 0.9, 1.0, 1.0]);
const TCB_SPLINE = buildSpline(
    tcbToBezier([
        { x: 0.0, y: 0.0, t: 0.0, c: 0.0, b: 0.0 },
        { x: 0.3, y: 0.4, t: 0.2, c: 1.0, b: -0.2 },
        { x: 0.7, y: 0.6, t: -0.2, c: 1.0, b: 0.2 },
        { x: 1.0, y: 1.0, t: 0.0, c: 0.0, b: 0.0 },
    ]),
);

// The high word of a double, for Qt's bit-level first guess of a cube root.
const cbrtBuffer = new DataView(new ArrayBuffer(8));

function fastCbrt(d: number): number {
    cbrtBuffer.setFloat64(0, d);
    const hx = cbrtBuffer.getUint32(0);
    cbrtBuffer.setFloat64(0, 0.0);
    cbrtBuffer.setUint32(0, (Math.floor(hx / 3) + 715094163) >>> 0);
    return cbrtBuffer.getFloat64(0);
}

function cbrt(d: number): number {
    let sign = 1;
    if (d < 0) {
        sign = -1;
    }
    d = d * sign;
    let t = fastCbrt(d);
    // One step of Halley's method, as Qt takes it.
    const tCubic = t * t * t;
    const f = tCubic + tCubic + d;
    if (f !== 0.0) {
        t = (t * (tCubic + d + d)) / f;
    }
    return t * sign;
}

function inRange(f: number): boolean {
    return f >= -0.01 && f <= 1.01;
}

function singleRealSolutionForCubic(a: number, b: number, c: number): number {
    if (c < 0.000001 && c > -0.000001) {
        return 0;
    }
    const aBy3 = a / 3.0;
    const aCubic = a * a * a;
    const p = b - a * aBy3;
    const q = (2.0 * aCubic) / 27.0 - (a * b) / 3.0 + c;
    const qSquared = q * q;
    const pCubic = p * p * p;
    const D = 0.25 * qSquared + pCubic / 27.0;
    if (D >= 0) {
        const dSqrt = Math.sqrt(D);
        const u = cbrt(-q * 0.5 + dSqrt);
        const v = cbrt(-q * 0.5 - dSqrt);
        const t1 = u + v - aBy3;
        if (inRange(t1)) {
            return t1;
        }
        return -1 * u - aBy3;
    }
    // Three real roots: Qt approximates cos(acos(x) / 3) and its shifted forms by polynomials.
    const pMinusSqrt = Math.sqrt(-p);
    const f = Math.sqrt(4.0 / 3.0) * pMinusSqrt;
    const sqrtP = (-3.0 * Math.sqrt(3.0)) / (pMinusSqrt * p);
    const g = -q * 0.5 * sqrtP;
    const gSquared = g * g;
    const plusOneSqrt = Math.sqrt(1.0 + g);
    const oneMinusSqrt = Math.sqrt(1.0 - g);
    const s1 = 0.463614 - 0.0347815 * g + 0.00218245 * gSquared + 0.402421 * plusOneSqrt;
    const s3 = 0.463614 + 0.402421 * oneMinusSqrt + 0.0347815 * g + 0.00218245 * gSquared;
    const s2 = -0.401644 * oneMinusSqrt - 0.0686804 * g + 0.401644 * plusOneSqrt;
    const t1 = -1 * f * s2 - aBy3;
    if (inRange(t1)) {
        return t1;
    }
    const t2 = f * s1 - aBy3;
    if (inRange(t2)) {
        return t2;
    }
    return -1 * f * s3 - aBy3;
}

function almostZero(value: number): boolean {
    return value > -1e-3 && value < 1e-3;
}

function findTForX(s: SplineSegment, x: number): number {
    const factorT3 = s.p3x - s.p0x + 3 * s.p1x - 3 * s.p2x;
    const factorT2 = 3 * s.p0x - 6 * s.p1x + 3 * s.p2x;
    const factorT1 = -3 * s.p0x + 3 * s.p1x;
    const factorT0 = s.p0x - x;
    if (almostZero(factorT3)) {
        if (almostZero(factorT2)) {
            if (almostZero(factorT1)) {
                return 0.0;
            }
            return -factorT0 / factorT1;
        }
        const discriminant = factorT1 * factorT1 - 4.0 * factorT2 * factorT0;
        if (discriminant < 0.0) {
            return 0.0;
        }
        if (discriminant === 0.0) {
            return -factorT1 / (2.0 * factorT2);
        }
        const solution1 = (-factorT1 + Math.sqrt(discriminant)) / (2.0 * factorT2);
        if (solution1 >= 0.0 && solution1 <= 1.0) {
            return solution1;
        }
        const solution2 = (-factorT1 - Math.sqrt(discriminant)) / (2.0 * factorT2);
        if (solution2 >= 0.0 && solution2 <= 1.0) {
            return solution2;
        }
        return 0.0;
    }
    return singleRealSolutionForCubic(factorT2 / factorT3, factorT1 / factorT3, factorT0 / factorT3);
}

function splineValue(spline: Spline, x: number): number {
    // The endpoints are not always met exactly by the solution, so Qt answers them directly.
    if (!(x > 0)) {
        return 0;
    }
    if (!(x < 1)) {
        return 1;
    }
    const segments = spline.segments;
    const count = segments.length;
    let index = 0;
    while (index < count && !(x <= spline.intervals[index]!)) {
        ++index;
    }
    // Past the last interval Qt reads the next slot of a preallocated list; a valid spline ends
    // at 1, so the loop above always stops before that.
    const seg = segments[index < count ? index : count - 1]!;
    const t = findTForX(seg, x);
    const s = 1 - t;
    const sSquared = s * s;
    const tSquared = t * t;
    const sCubic = sSquared * s;
    const tCubic = tSquared * t;
    return sCubic * seg.p0y + 3 * sSquared * t * seg.p1y + 3 * s * tSquared * seg.p2y + tCubic * seg.p3y;
}

// The In and Out curves of the families whose Out-In is made of them the usual way, by family
// number (type - 1) / 4: Quad, Cubic, Quart, Quint, Sine, Expo, Circ, Elastic (none), Back.
const BACK_FAMILY = 8;
const IN_CURVES: readonly (((t: number) => number) | undefined)[] = [
    (t) => t * t,
    (t) => t * t * t,
    (t) => t * t * t * t,
    (t) => t * t * t * t * t,
    inSine,
    inExpo,
    inCirc,
    undefined,
    (t) => inBack(t, OVERSHOOT),
];
const OUT_CURVES: readonly (((t: number) => number) | undefined)[] = [
    outQuad,
    outCubic,
    outQuart,
    outQuint,
    outSine,
    outExpo,
    outCirc,
    undefined,
    (t) => outBack(t, OVERSHOOT),
];

/**
 * The eased progress of `type` at `progress`, like QEasingCurve::valueForProgress of the curve
 * the model builds for that type. Progress is clamped to 0..1 first (NaN counts as 0); unknown
 * types ease linearly.
 */
export function easingValue(type: number, progress: number): number {
    // qBound(0, progress, 1) with Qt's comparison order.
    const upper = 1 < progress ? 1 : progress;
    const t = 0 < upper ? upper : 0;
    const family = (type - 1) >> 2;
    const inCurve = type >= Easing.InQuad && type <= Easing.OutInBack ? IN_CURVES[family] : undefined;
    if (inCurve) {
        // The Back formulas miss their ends by an ulp, so Qt answers the ends directly.
        if (family === BACK_FAMILY && !(t > 0 && t < 1)) {
            return t > 0 ? 1 : 0;
        }
        const outCurve = OUT_CURVES[family]!;
        switch ((type - 1) & 3) {
            case 0:
                return inCurve(t);
            case 1:
                return outCurve(t);
            case 3:
                // Out-In: the Out curve on the first half, the In curve on the second.
                return t < 0.5 ? outCurve(2 * t) / 2 : inCurve(2 * t - 1) / 2 + 0.5;
        }
    }
    switch (type) {
        case Easing.InOutQuad: {
            const u = t * 2.0;
            if (u < 1) {
                return (u * u) / 2;
            }
            const v = u - 1;
            return -0.5 * (v * (v - 2) - 1);
        }
        case Easing.InOutCubic: {
            let u = t * 2.0;
            if (u < 1) {
                return 0.5 * u * u * u;
            }
            u -= 2.0;
            return 0.5 * (u * u * u + 2);
        }
        case Easing.InOutQuart: {
            let u = t * 2;
            if (u < 1) {
                return 0.5 * u * u * u * u;
            }
            u -= 2.0;
            return -0.5 * (u * u * u * u - 2);
        }
        case Easing.InOutQuint: {
            let u = t * 2.0;
            if (u < 1) {
                return 0.5 * u * u * u * u * u;
            }
            u -= 2.0;
            return 0.5 * (u * u * u * u * u + 2);
        }
        case Easing.InOutSine:
            return -0.5 * (Math.cos(PI * t) - 1);
        case Easing.InOutExpo: {
            if (t === 0.0) {
                return 0.0;
            }
            if (t === 1.0) {
                return 1.0;
            }
            const u = t * 2.0;
            if (u < 1) {
                return 0.5 * Math.pow(2.0, 10 * (u - 1)) - 0.0005;
            }
            return 0.5 * 1.0005 * (-Math.pow(2.0, -10 * (u - 1)) + 2);
        }
        case Easing.InOutCirc: {
            let u = t * 2.0;
            if (u < 1) {
                return -0.5 * (Math.sqrt(1 - u * u) - 1);
            }
            u -= 2.0;
            return 0.5 * (Math.sqrt(1 - u * u) + 1);
        }
        case Easing.InElastic:
            return inElasticHelper(t, 0, 1, 1, AMPLITUDE, PERIOD);
        case Easing.OutElastic:
            return outElasticHelper(t, 1, AMPLITUDE, PERIOD);
        case Easing.InOutElastic:
            return inOutElastic(t, AMPLITUDE, PERIOD);
        case Easing.OutInElastic:
            if (t < 0.5) {
                return outElasticHelper(t * 2, 0.5, AMPLITUDE, PERIOD);
            }
            return inElasticHelper(2 * t - 1.0, 0.5, 0.5, 1.0, AMPLITUDE, PERIOD);
        case Easing.InOutBack:
            return inOutBack(t, OVERSHOOT);
        case Easing.InBounce:
            return inBounce(t, AMPLITUDE);
        case Easing.OutBounce:
            return outBounceHelper(t, 1, AMPLITUDE);
        case Easing.InOutBounce:
            if (t < 0.5) {
                return inBounce(2 * t, AMPLITUDE) / 2;
            }
            return t === 1.0 ? 1.0 : outBounceHelper(2 * t - 1, 1, AMPLITUDE) / 2 + 0.5;
        case Easing.OutInBounce:
            if (t < 0.5) {
                return outBounceHelper(t * 2, 0.5, AMPLITUDE);
            }
            return 1.0 - outBounceHelper(2.0 - 2 * t, 0.5, AMPLITUDE);
        case Easing.InCurve: {
            const mix = smoothBeginEndMixFactor(t);
            return sinProgress(t) * mix + t * (1 - mix);
        }
        case Easing.OutCurve: {
            const mix = smoothBeginEndMixFactor(1 - t);
            return sinProgress(t) * mix + t * (1 - mix);
        }
        case Easing.SineCurve:
            return (Math.sin(t * PI * 2 - PI_2) + 1) / 2;
        case Easing.CosineCurve:
            return (Math.cos(t * PI * 2 - PI_2) + 1) / 2;
        case Easing.BezierSpline:
            return splineValue(BEZIER_SPLINE, t);
        case Easing.TCBSpline:
            return splineValue(TCB_SPLINE, t);
        default:
            return t;
    }
}
