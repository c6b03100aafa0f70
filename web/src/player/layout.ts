// Responsive layouts: which layout a container size selects, what an element's block looks like in
// that layout, and where the stage sits in its container.

import { arr, int, isObj, num, type Obj } from './read';

/** Breakpoints of one direction as (id, value) pairs, ascending by value. */
export interface Breakpoints {
    readonly h: readonly (readonly [number, number])[];
    readonly v: readonly (readonly [number, number])[];
}

function readPairs(raw: unknown): (readonly [number, number])[] {
    const pairs: (readonly [number, number])[] = [];
    for (const item of arr(raw)) {
        // A pair of anything but two numbers is damaged: it is skipped, as the studio does.
        if (Array.isArray(item) && item.length === 2 && typeof item[0] === 'number' && typeof item[1] === 'number') {
            pairs.push([int(item[0], 0), num(item[1], 0)]);
        }
    }
    // The file keeps the studio's order, which is not always sorted after an edit.
    return pairs.sort((a, b) => a[1] - b[1]);
}

export function readBreakpoints(raw: unknown): Breakpoints {
    const b = isObj(raw) ? raw : {};
    return { h: readPairs(b['h']), v: readPairs(b['v']) };
}

/** The id of the range holding `size`: the last breakpoint whose value is not above it, else 0. */
function rangeId(pairs: readonly (readonly [number, number])[], size: number): number {
    for (let i = pairs.length - 1; i >= 0; --i) {
        const pair = pairs[i];
        if (pair && pair[1] <= size) {
            return pair[0];
        }
    }
    return 0;
}

export function chooseLayout(bp: Breakpoints, width: number, height: number): [number, number] {
    return [rangeId(bp.h, width), rangeId(bp.v, height)];
}

function findLayoutEntry(rp: readonly unknown[], h: number, v: number): Obj | null {
    for (const entry of rp) {
        if (Array.isArray(entry) && entry[0] === h && entry[1] === v && isObj(entry[2])) {
            return entry[2];
        }
    }
    return null;
}

/**
 * The block of an element in layout (h, v). The base entry of "rp" is complete; any other entry
 * holds only what that layout overrides, and its "or" names groups that the layout turns off,
 * which then read as their defaults. Without "rp" the element's own keys are its only block.
 */
export function layoutBlock(element: Obj, h: number, v: number): Obj {
    const rp = arr(element['rp']);
    const base = findLayoutEntry(rp, 0, 0) || element;
    if (h === 0 && v === 0) {
        return base;
    }
    const override = findLayoutEntry(rp, h, v);
    if (!override) {
        return base;
    }
    const merged: { [key: string]: unknown } = {};
    for (const key of Object.keys(base)) {
        merged[key] = base[key];
    }
    for (const key of Object.keys(override)) {
        if (key !== 'or') {
            merged[key] = override[key];
        }
    }
    for (const dropped of arr(override['or'])) {
        if (typeof dropped === 'string' && !Object.prototype.hasOwnProperty.call(override, dropped)) {
            delete merged[dropped];
        }
    }
    return merged;
}

export type Centering = 'none' | 'horizontal' | 'vertical' | 'both';

export function readCentering(raw: unknown): Centering {
    return raw === 'horizontal' || raw === 'vertical' || raw === 'both' ? raw : 'none';
}

/** The centring a symbol's alignment flags ask for (Qt::AlignHCenter 4, Qt::AlignVCenter 128). */
export function centeringOfAlign(align: number): Centering {
    const horizontal = (align & 4) !== 0;
    const vertical = (align & 128) !== 0;
    return horizontal && vertical ? 'both' : horizontal ? 'horizontal' : vertical ? 'vertical' : 'none';
}

export interface StagePlace {
    left: number;
    top: number;
    scale: number;
}

/**
 * Where a stage of `stageW` by `stageH` goes in a container of `boxW` by `boxH`. Autofit scales
 * the whole stage into the box keeping its proportions; a box without height (a container that
 * takes its height from its content) fits by width alone. A stage larger than its box is not
 * centred off the left or top edge: its top-left corner stays visible.
 */
export function placeStage(
    boxW: number,
    boxH: number,
    stageW: number,
    stageH: number,
    centering: Centering,
    autofit: boolean,
    out: StagePlace,
): StagePlace {
    let scale = 1;
    if (autofit && stageW > 0 && stageH > 0 && boxW > 0) {
        scale = boxH > 0 ? Math.min(boxW / stageW, boxH / stageH) : boxW / stageW;
    }
    const horizontal = centering === 'horizontal' || centering === 'both';
    const vertical = centering === 'vertical' || centering === 'both';
    out.scale = scale;
    out.left = horizontal ? Math.max(0, (boxW - stageW * scale) / 2) : 0;
    out.top = vertical && boxH > 0 ? Math.max(0, (boxH - stageH * scale) / 2) : 0;
    return out;
}
