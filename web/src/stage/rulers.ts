// The rulers along the top and the left of the view: stage pixels at the present zoom, a labelled
// tick at a round number of pixels that leaves room for its label, finer ticks between, and the
// extent of the selection marked.

import type { Point } from './contracts';

export const RULER_SIZE = 20;

const STEPS = [1, 2, 5, 10, 20, 25, 50, 100, 200, 250, 500, 1000, 2000, 2500, 5000, 10000];
/** Least distance on screen between two labelled ticks. */
const LABEL_ROOM = 56;

/** The stage distance between labelled ticks at a zoom, and how many finer ticks divide it. */
export function rulerStep(zoom: number): { major: number; divisions: number } {
    const major = STEPS.find((step) => step * zoom >= LABEL_ROOM) ?? STEPS[STEPS.length - 1]!;
    const text = String(major);
    const divisions = text.startsWith('25') ? 5 : text.startsWith('2') ? 4 : text.startsWith('5') ? 5 : 10;
    return { major, divisions };
}

export interface RulerView {
    /** Stage origin in view pixels and the zoom. */
    readonly origin: Point;
    readonly zoom: number;
    /** Stage extent of the selection along each axis, or null. */
    readonly marked: { x: [number, number]; y: [number, number] } | null;
}

const BACKGROUND = '#2a2b2e';
const EDGE = '#3d3f44';
const TICK = '#70747c';
const LABEL = '#a9adb5';
const MARK = 'rgba(56, 132, 255, 0.35)';

function prepare(canvas: HTMLCanvasElement): CanvasRenderingContext2D | null {
    const ratio = window.devicePixelRatio || 1;
    const w = canvas.clientWidth;
    const h = canvas.clientHeight;
    if (canvas.width !== Math.round(w * ratio) || canvas.height !== Math.round(h * ratio)) {
        canvas.width = Math.round(w * ratio);
        canvas.height = Math.round(h * ratio);
    }
    const ctx = canvas.getContext('2d');
    if (!ctx) {
        return null;
    }
    ctx.setTransform(ratio, 0, 0, ratio, 0, 0);
    ctx.fillStyle = BACKGROUND;
    ctx.fillRect(0, 0, w, h);
    ctx.font = '9px system-ui, "Segoe UI", sans-serif';
    return ctx;
}

/**
 * Draws one ruler. `horizontal` runs along the top; the other along the left, its labels turned.
 * `offset` is where the view starts inside the canvas (the ruler's corner).
 */
export function drawRuler(canvas: HTMLCanvasElement, horizontal: boolean, view: RulerView, offset: number): void {
    const ctx = prepare(canvas);
    if (!ctx) {
        return;
    }
    const length = horizontal ? canvas.clientWidth : canvas.clientHeight;
    const thickness = horizontal ? canvas.clientHeight : canvas.clientWidth;
    const origin = (horizontal ? view.origin.x : view.origin.y) + offset;
    const zoom = view.zoom;

    const marked = view.marked ? (horizontal ? view.marked.x : view.marked.y) : null;
    if (marked) {
        ctx.fillStyle = MARK;
        const a = origin + marked[0] * zoom;
        const b = origin + marked[1] * zoom;
        if (horizontal) {
            ctx.fillRect(a, 0, Math.max(1, b - a), thickness);
        } else {
            ctx.fillRect(0, a, thickness, Math.max(1, b - a));
        }
    }

    const { major, divisions } = rulerStep(zoom);
    const minor = major / divisions;
    const first = Math.floor((offset - origin) / zoom / minor) * minor;
    const last = (length - origin) / zoom;
    ctx.strokeStyle = TICK;
    ctx.lineWidth = 1;
    ctx.beginPath();
    for (let value = first, i = Math.round(first / minor); value <= last + minor; value += minor, ++i) {
        const at = Math.round(origin + value * zoom) + 0.5;
        if (at < offset) {
            continue;
        }
        const isMajor = i % divisions === 0;
        const isHalf = !isMajor && divisions % 2 === 0 && i % (divisions / 2) === 0;
        const tick = isMajor ? thickness : isHalf ? thickness * 0.45 : thickness * 0.25;
        if (horizontal) {
            ctx.moveTo(at, thickness);
            ctx.lineTo(at, thickness - tick);
        } else {
            ctx.moveTo(thickness, at);
            ctx.lineTo(thickness - tick, at);
        }
    }
    ctx.stroke();

    ctx.fillStyle = LABEL;
    ctx.textBaseline = 'top';
    const firstMajor = Math.floor(first / major) * major;
    for (let value = firstMajor; value <= last + major; value += major) {
        const at = Math.round(origin + value * zoom);
        if (at < offset - 2) {
            continue;
        }
        const text = String(Math.round(value));
        if (horizontal) {
            ctx.fillText(text, at + 3, 2);
        } else {
            ctx.save();
            ctx.translate(2, at - 3);
            ctx.rotate(-Math.PI / 2);
            ctx.fillText(text, 0, 0);
            ctx.restore();
        }
    }

    ctx.fillStyle = EDGE;
    if (horizontal) {
        ctx.fillRect(0, thickness - 1, length, 1);
    } else {
        ctx.fillRect(thickness - 1, 0, 1, length);
    }
}
