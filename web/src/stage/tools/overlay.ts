// A tool's own drawing in the stage overlay: one SVG that the tool redraws as a whole on every
// change. Coordinates are client pixels relative to the overlay, so feedback stays sharp at any
// zoom; what lies on the stage is mapped through the host first.

import type { Point, StageHost } from '../contracts';

const SVG_NS = 'http://www.w3.org/2000/svg';

export type SvgAttributes = { readonly [name: string]: string | number };

export class OverlayLayer {
    private readonly host_: StageHost;
    readonly svg: SVGSVGElement;
    private origin_: Point = { x: 0, y: 0 };

    constructor(host: StageHost, className: string) {
        this.host_ = host;
        const doc = host.overlay.ownerDocument;
        this.svg = doc.createElementNS(SVG_NS, 'svg');
        this.svg.setAttribute('class', className);
        // A point-sized SVG that draws past its edges: it never covers the stage or takes the pointer.
        const style = this.svg.style;
        style.position = 'absolute';
        style.left = '0';
        style.top = '0';
        style.width = '1px';
        style.height = '1px';
        style.overflow = 'visible';
        style.pointerEvents = 'none';
        this.svg.setAttribute('overflow', 'visible');
        host.overlay.appendChild(this.svg);
    }

    /** Empties the drawing and notes where the overlay sits, for the mappings of this redraw. */
    clear(): void {
        while (this.svg.lastChild) {
            this.svg.removeChild(this.svg.lastChild);
        }
        const r = this.host_.overlay.getBoundingClientRect();
        this.origin_ = { x: r.left, y: r.top };
    }

    /** Stage pixels to this layer's pixels. */
    fromStage(p: Point): Point {
        const c = this.host_.toClient(p);
        return { x: c.x - this.origin_.x, y: c.y - this.origin_.y };
    }

    add<K extends keyof SVGElementTagNameMap>(name: K, attributes: SvgAttributes): SVGElementTagNameMap[K] {
        const element = this.svg.ownerDocument.createElementNS(SVG_NS, name);
        for (const key of Object.keys(attributes)) {
            element.setAttribute(key, String(attributes[key]));
        }
        this.svg.appendChild(element);
        return element;
    }

    remove(): void {
        this.svg.remove();
    }
}

/** Colours and sizes of the tools' feedback, in client pixels. */
export const FEEDBACK = {
    stroke: '#2f7de1',
    fill: 'rgba(47, 125, 225, 0.12)',
    handleFill: '#ffffff',
    selectedFill: '#2f7de1',
    /** Half the side of an anchor's square. */
    anchorSize: 4,
    /** Radius of a handle's dot. */
    handleRadius: 3.5,
    /** How near the pointer must come to a handle or a line to take it. */
    hitRadius: 6,
} as const;

/** SVG path data from points already in layer pixels. */
export function polyline(points: readonly Point[], closed: boolean): string {
    let d = '';
    points.forEach((p, i) => {
        d += (i === 0 ? 'M' : 'L') + p.x.toFixed(2) + ' ' + p.y.toFixed(2);
    });
    return closed && points.length > 0 ? d + 'Z' : d;
}
