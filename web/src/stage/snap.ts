// Snapping of dragged boxes and points to the edges and centres of other elements and of the
// stage. Distances are in stage pixels; the caller turns its screen tolerance into them.

import type { Point, Rect } from './contracts';

export interface SnapTargets {
    readonly xs: readonly number[];
    readonly ys: readonly number[];
}

/** Lines a box or point snapped to, for drawing guides. */
export interface SnapResult {
    readonly dx: number;
    readonly dy: number;
    readonly guideX: number | null;
    readonly guideY: number | null;
}

export const NO_SNAP: SnapResult = { dx: 0, dy: 0, guideX: null, guideY: null };

/** Left, centre and right (top, middle, bottom) of every box and of the stage. */
export function snapTargets(boxes: readonly Rect[], stageW: number, stageH: number): SnapTargets {
    const xs = [0, stageW / 2, stageW];
    const ys = [0, stageH / 2, stageH];
    for (const b of boxes) {
        xs.push(b.x, b.x + b.w / 2, b.x + b.w);
        ys.push(b.y, b.y + b.h / 2, b.y + b.h);
    }
    return { xs, ys };
}

/** The nearest target within `tolerance` of any of `values`: how far to move, and the target. */
function nearest(values: readonly number[], targets: readonly number[], tolerance: number): [number, number | null] {
    let best = tolerance;
    let move = 0;
    let line: number | null = null;
    for (const value of values) {
        for (const target of targets) {
            const d = Math.abs(target - value);
            if (d <= best && (line === null || d < best)) {
                best = d;
                move = target - value;
                line = target;
            }
        }
    }
    return [move, line];
}

/** How far to move a box so that one of its edges or its centre meets a target on each axis. */
export function snapBox(box: Rect, targets: SnapTargets, tolerance: number): SnapResult {
    const [dx, guideX] = nearest([box.x, box.x + box.w / 2, box.x + box.w], targets.xs, tolerance);
    const [dy, guideY] = nearest([box.y, box.y + box.h / 2, box.y + box.h], targets.ys, tolerance);
    return { dx, dy, guideX, guideY };
}

export function snapPoint(p: Point, targets: SnapTargets, tolerance: number): SnapResult {
    const [dx, guideX] = nearest([p.x], targets.xs, tolerance);
    const [dy, guideY] = nearest([p.y], targets.ys, tolerance);
    return { dx, dy, guideX, guideY };
}
