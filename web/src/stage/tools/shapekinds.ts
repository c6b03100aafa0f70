// What each shape of the drawing tool becomes: the element kind and its insertion parameters, the
// outline shown while it is drawn, and the name of the undo step. Outlines of the parametric
// shapes come from the player, so the preview is what the stage will show.

import { type DrawShape, ElementKind, type ParamEntry, type PathAnchor, type Rect } from '../contracts';
import { autoShapePath, defaultAdjustments } from '../../player/shapes-auto';
import { PathWriter } from '../../player/shapes-path';
import { DivShape, doubleParam, intParam, pathParam } from './records';

export const FIRST_LINE_TYPE = 590;
export const LAST_LINE_TYPE = 592;
export const CURVE_TYPE = 593;
export const FREEFORM_SHAPE_TYPE = 594;
export const SCRIBBLE_TYPE = 595;

/** Corner radius the studio gives a new rounded rectangle, in pixels. */
const ROUNDED_RADIUS = 25;

export function isLineType(type: number): boolean {
    return type >= FIRST_LINE_TYPE && type <= LAST_LINE_TYPE;
}

/** Freeforms drawn point by point or by hand rather than by dragging out a box. */
export function isTracedType(type: number): boolean {
    return type >= CURVE_TYPE && type <= SCRIBBLE_TYPE;
}

/** How a box-drawn shape is inserted. */
export interface BoxShapeKind {
    readonly kind: ElementKind;
    readonly divShape?: DivShape;
    /** The undo text. */
    readonly text: string;
    /** Parameters after the element; `linePath` only for lines. */
    params(linePath: readonly PathAnchor[]): ParamEntry[];
    /** Outline of the shape in a w × h box, as SVG path data. */
    outline(w: number, h: number): string;
}

function rectOutline(w: number, h: number, radius: number): string {
    const out = new PathWriter();
    const r = Math.max(0, Math.min(radius, w / 2, h / 2));
    if (r <= 0) {
        out.polygon_([0, 0, w, 0, w, h, 0, h]);
        return out.toString();
    }
    out.move_(r, 0);
    out.line_(w - r, 0);
    out.arc_(r, r, 0, false, true, w, r);
    out.line_(w, h - r);
    out.arc_(r, r, 0, false, true, w - r, h);
    out.line_(r, h);
    out.arc_(r, r, 0, false, true, 0, h - r);
    out.line_(0, r);
    out.arc_(r, r, 0, false, true, r, 0);
    out.close_();
    return out.toString();
}

function ellipseOutline(w: number, h: number): string {
    const out = new PathWriter();
    out.move_(0, h / 2);
    out.arc_(w / 2, h / 2, 0, false, true, w, h / 2);
    out.arc_(w / 2, h / 2, 0, false, true, 0, h / 2);
    out.close_();
    return out.toString();
}

export function boxShapeKind(shape: DrawShape): BoxShapeKind {
    switch (shape.kind) {
        case 'rectangle':
            return { kind: ElementKind.Div, text: 'Insert Rectangle', params: () => [], outline: (w, h) => rectOutline(w, h, 0) };
        case 'roundedRect':
            return {
                kind: ElementKind.Div,
                divShape: DivShape.RoundedRect,
                text: 'Insert Rounded Rect',
                params: () => [],
                outline: (w, h) => rectOutline(w, h, ROUNDED_RADIUS),
            };
        case 'ellipse':
            return {
                kind: ElementKind.Div,
                divShape: DivShape.Ellipse,
                text: 'Insert Ellipse',
                params: () => [],
                outline: ellipseOutline,
            };
        case 'autoshape': {
            const type = shape.type;
            if (isLineType(type)) {
                return {
                    kind: ElementKind.Freeform,
                    text: 'Insert Freeform',
                    params: (linePath) => [intParam(type), pathParam(linePath)],
                    outline: () => '',
                };
            }
            const adjustments = defaultAdjustments(type);
            return {
                kind: ElementKind.Shape,
                text: 'Insert Shape',
                params: () => [intParam(type), intParam(adjustments.length), ...adjustments.map(doubleParam)],
                outline: (w, h) => autoShapePath(type, adjustments, w, h),
            };
        }
    }
}

/** The box of a drag from `start` to `end`; `square` keeps the sides equal, `fromCentre` grows it both ways. */
export function dragBox(start: { x: number; y: number }, end: { x: number; y: number }, square: boolean, fromCentre: boolean): Rect {
    let dx = end.x - start.x;
    let dy = end.y - start.y;
    if (square) {
        const side = Math.max(Math.abs(dx), Math.abs(dy));
        dx = (dx < 0 ? -1 : 1) * side;
        dy = (dy < 0 ? -1 : 1) * side;
    }
    if (fromCentre) {
        return { x: start.x - Math.abs(dx), y: start.y - Math.abs(dy), w: 2 * Math.abs(dx), h: 2 * Math.abs(dy) };
    }
    return { x: Math.min(start.x, start.x + dx), y: Math.min(start.y, start.y + dy), w: Math.abs(dx), h: Math.abs(dy) };
}
