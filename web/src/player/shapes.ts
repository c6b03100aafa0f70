// Shapes of the player: the outlines of parametric shapes and freeforms as SVG path data, drawn in
// the element's own box (0, 0 at its top left corner, w × h). Nothing here touches the DOM, so the
// stage can draw with the same code, and every function takes untrusted data and never throws.
//
//   autoShapePath(type: number, adjustments: readonly number[], w: number, h: number): string
//       Outline of a parametric shape; the adjustment table is in shapes-auto.ts.
//   defaultAdjustments(type: number): number[]
//   resolveAdjustments(type: number, adjustments: unknown): number[]
//       The values a new shape starts with, and the values an outline really uses.
//   freeformPath(points: readonly unknown[], w: number, h: number): string
//       Outline of a freeform from its exported points, fitted to the box (see shapes-freeform.ts).
//   arrowMarkers(shape: readonly unknown[], w: number, h: number, lineWidth: number): ArrowedLine
//       A freeform with arrow heads, from its whole "s" array: `line` is its outline shortened
//       under the heads, to be stroked as usual; `heads` is path data to fill with the line's
//       colour. Plain path data rather than SVG markers, so heads keep the colour of the line
//       in every browser and sit with their tips exactly on the ends of the line.
//   readArrowEnds(shape: unknown): ArrowEnds
//   shapeSvg(kindData: unknown, w: number, h: number, stroke: string, lineWidth: number, fill: string): string
//       A whole <svg> for an element's "s" array (or an object holding it as "s"): the outline
//       with the given fill and stroke, plus the heads of a freeform line. The SVG fits the
//       element's box and lets the stroke overflow it, since a shape's border adds nothing to its
//       box. '' when there is nothing to draw.
//
// Sizes change while layouts switch and animations run; the renderer calls these again with the
// new size and writes the path only when the string differs.

import { autoShapePath } from './shapes-auto';
import { arrowMarkers } from './shapes-freeform';
import { finiteOr, formatNumber } from './shapes-path';

export { autoShapePath, defaultAdjustments, isAutoShapeType, resolveAdjustments } from './shapes-auto';
export { ArrowType, arrowHeadExtent, arrowMarkers, freeformPath, readArrowEnds } from './shapes-freeform';
export type { ArrowEnds, ArrowedLine } from './shapes-freeform';

/** Whether an "s" array describes a freeform: by its number, or by a points list in place of adjustments. */
export function isFreeformShape(shape: readonly unknown[]): boolean {
    const type = shape[0];
    if (typeof type === 'number' && type >= 590 && type <= 595) {
        return true;
    }
    const second = shape[1];
    return Array.isArray(second) && Array.isArray(second[0]);
}

function attribute(value: string): string {
    return value.replace(/&/g, '&amp;').replace(/"/g, '&quot;').replace(/</g, '&lt;').replace(/>/g, '&gt;');
}

function shapeArray(kindData: unknown): readonly unknown[] | null {
    if (Array.isArray(kindData)) {
        return kindData;
    }
    if (typeof kindData === 'object' && kindData !== null) {
        const s = (kindData as { s?: unknown }).s;
        return Array.isArray(s) ? s : null;
    }
    return null;
}

export function shapeSvg(
    kindData: unknown,
    w: number,
    h: number,
    stroke: string,
    lineWidth: number,
    fill: string,
): string {
    const shape = shapeArray(kindData);
    if (!shape || !isFinite(w) || !isFinite(h) || w < 0 || h < 0) {
        return '';
    }
    const width = finiteOr(lineWidth, 0) > 0 && stroke !== '' && stroke !== 'none' ? lineWidth : 0;
    let outline: string;
    let heads = '';
    if (isFreeformShape(shape)) {
        const drawn = arrowMarkers(shape, w, h, width);
        outline = drawn.line;
        heads = drawn.heads;
    } else {
        const adjustments = Array.isArray(shape[1]) ? (shape[1] as readonly number[]) : [];
        outline = autoShapePath(finiteOr(shape[0], 0), adjustments, w, h);
    }
    if (outline === '' && heads === '') {
        return '';
    }
    const strokeText = width > 0 ? attribute(stroke) : 'none';
    let svg =
        '<svg xmlns="http://www.w3.org/2000/svg" width="' + formatNumber(w) + '" height="' + formatNumber(h) +
        '" overflow="visible">' +
        '<path class="vetra-shape-outline" d="' + outline + '" fill="' + attribute(fill === '' ? 'none' : fill) +
        '" stroke="' + strokeText + '" stroke-width="' + formatNumber(width) + '"/>';
    if (heads !== '') {
        svg += '<path class="vetra-shape-heads" d="' + heads + '" fill="' + strokeText + '" stroke="none"/>';
    }
    return svg + '</svg>';
}
