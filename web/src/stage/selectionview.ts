// The stage's own drawing over the scene: selection outlines, the transform frame with its eight
// square handles and the rotation handle, the hover outline, the rubber band, snap guides and the
// container handles. One SVG in client pixels, redrawn whole; lines sit on half pixels so that a
// 1 px line stays one pixel wide at any zoom.

import type { Point, Rect } from './contracts';
import { rotatePoint } from './geometry';

const SVG_NS = 'http://www.w3.org/2000/svg';
export const HANDLE_SIZE = 7;
/** Distance of the rotation handle above the frame, in screen pixels. */
export const ROTATE_DISTANCE = 22;
const HIT = 6;

export type HandleName = 'nw' | 'n' | 'ne' | 'e' | 'se' | 's' | 'sw' | 'w';
export type HitName = HandleName | 'rotate' | 'container-e' | 'container-s' | 'container-se';

/** Unit position of each handle in the frame: -1 left or top, 1 right or bottom. */
export const HANDLE_AT: { readonly [name in HandleName]: readonly [number, number] } = {
    nw: [-1, -1],
    n: [0, -1],
    ne: [1, -1],
    e: [1, 0],
    se: [1, 1],
    s: [0, 1],
    sw: [-1, 1],
    w: [-1, 0],
};

const CURSORS: { readonly [name in HandleName]: string } = {
    nw: 'nwse-resize',
    se: 'nwse-resize',
    ne: 'nesw-resize',
    sw: 'nesw-resize',
    n: 'ns-resize',
    s: 'ns-resize',
    e: 'ew-resize',
    w: 'ew-resize',
};

/** The cursor of a handle on a frame turned by `rotation` degrees. */
export function handleCursor(name: HandleName, rotation: number): string {
    const order: HandleName[] = ['n', 'ne', 'e', 'se', 's', 'sw', 'w', 'nw'];
    const steps = Math.round((((rotation % 360) + 360) % 360) / 45);
    return CURSORS[order[(order.indexOf(name) + steps) % 8]!];
}

/** The transform frame: one element's turned box, or the bounds of several. */
export interface Frame {
    readonly box: Rect;
    readonly rotation: number;
    readonly resize: boolean;
    readonly rotate: boolean;
}

export function framePoint(frame: Frame, ux: number, uy: number): Point {
    const b = frame.box;
    const centre = { x: b.x + b.w / 2, y: b.y + b.h / 2 };
    return rotatePoint({ x: centre.x + (ux * b.w) / 2, y: centre.y + (uy * b.h) / 2 }, centre, frame.rotation);
}

export interface OverlayPicture {
    readonly outlines: readonly (readonly Point[])[];
    readonly frame: Frame | null;
    readonly hover: readonly Point[] | null;
    readonly band: Rect | null;
    readonly guideX: number | null;
    readonly guideY: number | null;
    /** The stage's size when its container handles show. */
    readonly container: { w: number; h: number } | null;
}

function el<K extends keyof SVGElementTagNameMap>(
    doc: Document,
    name: K,
    attrs: { [key: string]: string | number },
): SVGElementTagNameMap[K] {
    const node = doc.createElementNS(SVG_NS, name);
    for (const key of Object.keys(attrs)) {
        node.setAttribute(key, String(attrs[key]));
    }
    return node;
}

function half(v: number): number {
    return Math.round(v) + 0.5;
}

export class SelectionView {
    readonly svg: SVGSVGElement;
    private handles_: { name: HitName; at: Point }[] = [];
    private frame_: Frame | null = null;

    constructor(
        layer: HTMLElement,
        /** Stage pixels to client pixels, and the zoom. */
        private readonly toClient_: (p: Point) => Point,
    ) {
        this.svg = el(layer.ownerDocument, 'svg', { class: 'vt-selection' });
        layer.appendChild(this.svg);
    }

    get frame(): Frame | null {
        return this.frame_;
    }

    draw(picture: OverlayPicture): void {
        const svg = this.svg;
        const doc = svg.ownerDocument;
        while (svg.lastChild) {
            svg.removeChild(svg.lastChild);
        }
        const r = svg.getBoundingClientRect();
        const local = (p: Point): Point => {
            const c = this.toClient_(p);
            return { x: c.x - r.left, y: c.y - r.top };
        };
        const polygon = (points: readonly Point[], className: string): void => {
            const mapped = points.map(local);
            // An upright box is drawn on pixel centres; a turned one as it falls.
            const upright = mapped.length === 4 && Math.abs(mapped[0]!.y - mapped[1]!.y) < 0.01;
            const text = mapped.map((p) => (upright ? `${half(p.x)},${half(p.y)}` : `${p.x},${p.y}`)).join(' ');
            svg.appendChild(el(doc, 'polygon', { points: text, class: className }));
        };
        this.handles_ = [];
        this.frame_ = picture.frame;

        if (picture.hover) {
            polygon(picture.hover, 'vt-hover');
        }
        for (const outline of picture.outlines) {
            polygon(outline, 'vt-outline');
        }
        const frame = picture.frame;
        if (frame) {
            const corners = [
                framePoint(frame, -1, -1),
                framePoint(frame, 1, -1),
                framePoint(frame, 1, 1),
                framePoint(frame, -1, 1),
            ];
            if (picture.outlines.length !== 1) {
                polygon(corners, 'vt-frame');
            }
            if (frame.rotate) {
                const top = local(framePoint(frame, 0, -1));
                const angle = (frame.rotation * Math.PI) / 180;
                const knob = {
                    x: top.x + Math.sin(angle) * ROTATE_DISTANCE,
                    y: top.y - Math.cos(angle) * ROTATE_DISTANCE,
                };
                svg.appendChild(
                    el(doc, 'line', { x1: top.x, y1: top.y, x2: knob.x, y2: knob.y, class: 'vt-rotate-stem' }),
                );
                svg.appendChild(el(doc, 'circle', { cx: knob.x, cy: knob.y, r: 4.5, class: 'vt-rotate-handle' }));
                this.handles_.push({ name: 'rotate', at: { x: knob.x + r.left, y: knob.y + r.top } });
            }
            if (frame.resize) {
                for (const name of Object.keys(HANDLE_AT) as HandleName[]) {
                    const [ux, uy] = HANDLE_AT[name];
                    const p = local(framePoint(frame, ux, uy));
                    const x = Math.round(p.x - HANDLE_SIZE / 2) + 0.5;
                    const y = Math.round(p.y - HANDLE_SIZE / 2) + 0.5;
                    svg.appendChild(
                        el(doc, 'rect', {
                            x,
                            y,
                            width: HANDLE_SIZE - 1,
                            height: HANDLE_SIZE - 1,
                            class: 'vt-handle',
                            'data-handle': name,
                        }),
                    );
                    this.handles_.push({ name, at: { x: p.x + r.left, y: p.y + r.top } });
                }
            }
        }
        if (picture.container) {
            const { w, h } = picture.container;
            const handles: [HitName, Point][] = [
                ['container-e', { x: w, y: h / 2 }],
                ['container-s', { x: w / 2, y: h }],
                ['container-se', { x: w, y: h }],
            ];
            for (const [name, at] of handles) {
                const p = local(at);
                svg.appendChild(
                    el(doc, 'rect', {
                        x: Math.round(p.x) - 4.5,
                        y: Math.round(p.y) - 4.5,
                        width: 9,
                        height: 9,
                        class: 'vt-container-handle',
                    }),
                );
                this.handles_.push({ name, at: { x: p.x + r.left, y: p.y + r.top } });
            }
        }
        if (picture.band) {
            const a = local({ x: picture.band.x, y: picture.band.y });
            const b = local({ x: picture.band.x + picture.band.w, y: picture.band.y + picture.band.h });
            svg.appendChild(
                el(doc, 'rect', {
                    x: half(Math.min(a.x, b.x)),
                    y: half(Math.min(a.y, b.y)),
                    width: Math.round(Math.abs(b.x - a.x)),
                    height: Math.round(Math.abs(b.y - a.y)),
                    class: 'vt-band',
                }),
            );
        }
        if (picture.guideX !== null) {
            const x = half(local({ x: picture.guideX, y: 0 }).x);
            svg.appendChild(el(doc, 'line', { x1: x, y1: 0, x2: x, y2: r.height, class: 'vt-guide' }));
        }
        if (picture.guideY !== null) {
            const y = half(local({ x: 0, y: picture.guideY }).y);
            svg.appendChild(el(doc, 'line', { x1: 0, y1: y, x2: r.width, y2: y, class: 'vt-guide' }));
        }
    }

    /** The handle under a client point, if any; the rotation handle and container handles included. */
    hit(clientX: number, clientY: number): HitName | null {
        let best: HitName | null = null;
        let bestDistance = HIT;
        for (const handle of this.handles_) {
            const d = Math.max(Math.abs(handle.at.x - clientX), Math.abs(handle.at.y - clientY));
            if (d <= bestDistance) {
                bestDistance = d;
                best = handle.name;
            }
        }
        return best;
    }
}
