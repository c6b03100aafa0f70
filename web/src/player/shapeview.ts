// Autoshapes and freeforms: the outline is an SVG path in the element's pixels, filled and stroked
// with the element's background and border, so that a gradient or a dashed border follows the
// outline and not the box.

import { Prop } from './contracts';
import { type ElementView, Kind, type KindHooks } from './elementview';
import { arr, cssColor, cssNum, int, num, type Obj } from './read';
import * as shapes from './shapes';
import { applyText } from './textfont';

const SVG_NS = 'http://www.w3.org/2000/svg';
const FIRST_LINE_TYPE = 590;
const LAST_LINE_TYPE = 592;

let nextPaintId = 1;

/** A rectangle or an ellipse for the case where no outline comes back for a shape. */
function fallbackPath(type: number, w: number, h: number): string {
    if (type === 21) {
        const radii = cssNum(w / 2) + ' ' + cssNum(h / 2);
        const middle = cssNum(h / 2);
        return `M0 ${middle}A${radii} 0 1 0 ${cssNum(w)} ${middle}A${radii} 0 1 0 0 ${middle}Z`;
    }
    return `M0 0H${cssNum(w)}V${cssNum(h)}H0Z`;
}

/** Outline and arrow heads of a shape in a w × h box, drawn with a line of `lineWidth`. */
function outlineOf(kind: number, s: readonly unknown[], w: number, h: number, lineWidth: number): [string, string] {
    const type = int(s[0], 11);
    let line = '';
    let heads = '';
    try {
        if (kind === Kind.Freeform) {
            const drawn = shapes.arrowMarkers(s, w, h, lineWidth);
            line = drawn.line;
            heads = drawn.heads;
        } else {
            const adjustments: number[] = [];
            for (const value of arr(s[1])) {
                adjustments.push(num(value, NaN));
            }
            line = shapes.autoShapePath(type, adjustments, w, h);
        }
    } catch {
        line = '';
        heads = '';
    }
    if (typeof line !== 'string' || line === '') {
        line = kind === Kind.Freeform ? '' : fallbackPath(type, w, h);
    }
    return [line, typeof heads === 'string' ? heads : ''];
}

function svg<K extends keyof SVGElementTagNameMap>(doc: Document, name: K): SVGElementTagNameMap[K] {
    return doc.createElementNS(SVG_NS, name);
}

export class ShapeView implements KindHooks {
    private readonly svg_: SVGSVGElement;
    private readonly defs_: SVGDefsElement;
    private readonly path_: SVGPathElement;
    private readonly heads_: SVGPathElement;
    /** The line width the outline was made for: arrow heads grow with it. */
    private shapedWidth_ = -1;
    private readonly paintId_: string;
    private s_: readonly unknown[] = [];
    private gradient_: SVGLinearGradientElement | SVGRadialGradientElement | null = null;
    private pattern_: SVGPatternElement | null = null;
    private stopsOf_: readonly number[][] | null = null;
    private readonly attrs_: { [name: string]: string } = {};

    constructor(view: ElementView) {
        const doc = view.node.ownerDocument;
        this.svg_ = svg(doc, 'svg');
        this.svg_.setAttribute('aria-hidden', 'true');
        this.defs_ = svg(doc, 'defs');
        this.path_ = svg(doc, 'path');
        this.heads_ = svg(doc, 'path');
        this.heads_.setAttribute('stroke', 'none');
        this.svg_.appendChild(this.defs_);
        this.svg_.appendChild(this.path_);
        this.svg_.appendChild(this.heads_);
        view.node.insertBefore(this.svg_, view.node.firstChild);
        this.paintId_ = 'vetra-paint-' + nextPaintId++;
    }

    get isLine(): boolean {
        const type = int(this.s_[0], 0);
        return type >= FIRST_LINE_TYPE && type <= LAST_LINE_TYPE;
    }

    /** The SVG path element, for tests and for the arrow heads. */
    get outline(): SVGPathElement {
        return this.path_;
    }

    applyBlock(view: ElementView, block: Obj): void {
        this.s_ = arr(block['s']);
        applyText(view, block['txt']);
        this.reshape_(view);
    }

    resized_(view: ElementView): void {
        this.reshape_(view);
    }

    private attr_(element: Element, key: string, name: string, value: string): void {
        if (this.attrs_[key] !== value) {
            this.attrs_[key] = value;
            element.setAttribute(name, value);
        }
    }

    private lineWidth_(view: ElementView): number {
        return view.borderStyle_ > 0 && view.borderStyle_ <= 3 ? Math.max(0, view.value(Prop.BorderWidth)) : 0;
    }

    private reshape_(view: ElementView): void {
        const w = view.pxW;
        const h = view.pxH_;
        const width = this.lineWidth_(view);
        this.shapedWidth_ = width;
        const [line, heads] = outlineOf(view.kind, this.s_, w, h, width);
        this.attr_(this.svg_, 'viewBox', 'viewBox', '0 0 ' + cssNum(w) + ' ' + cssNum(h));
        this.attr_(this.path_, 'd', 'd', line);
        this.attr_(this.heads_, 'heads', 'd', heads);
    }

    paintShape_(view: ElementView): void {
        if (view.kind === Kind.Freeform && this.lineWidth_(view) !== this.shapedWidth_) {
            this.reshape_(view);
        }
        this.paintFill_(view);
        this.paintStroke_(view);
    }

    private paintStroke_(view: ElementView): void {
        const style = view.borderStyle_;
        const width = Math.max(0, view.value(Prop.BorderWidth));
        if (style <= 0 || style > 3 || width === 0) {
            this.attr_(this.path_, 'stroke', 'stroke', 'none');
            this.attr_(this.heads_, 'heads-fill', 'fill', 'none');
            return;
        }
        const color = view.cssColorOf_(Prop.BorderColor);
        this.attr_(this.path_, 'stroke', 'stroke', color);
        this.attr_(this.heads_, 'heads-fill', 'fill', color);
        this.attr_(this.path_, 'stroke-width', 'stroke-width', cssNum(width));
        const dash =
            style === 2
                ? cssNum(width) + ' ' + cssNum(width)
                : style === 3
                  ? cssNum(width * 3) + ' ' + cssNum(width * 2)
                  : 'none';
        this.attr_(this.path_, 'stroke-dasharray', 'stroke-dasharray', dash);
    }

    private paintFill_(view: ElementView): void {
        const fill = view.fill;
        if (this.isLine) {
            this.attr_(this.path_, 'fill', 'fill', 'none');
            return;
        }
        switch (fill.style) {
            case 1:
                this.attr_(this.path_, 'fill', 'fill', view.cssColorOf_(Prop.BackgroundColor));
                break;
            case 2:
                this.paintGradient_(view);
                this.attr_(this.path_, 'fill', 'fill', 'url(#' + this.paintId_ + ')');
                break;
            case 3:
                this.paintPattern_(view);
                this.attr_(this.path_, 'fill', 'fill', fill.imageUrl_ ? 'url(#' + this.paintId_ + ')' : 'none');
                break;
            default:
                this.attr_(this.path_, 'fill', 'fill', 'none');
                break;
        }
    }

    private paintGradient_(view: ElementView): void {
        const fill = view.fill;
        const doc = view.node.ownerDocument;
        const wanted = fill.linear_ ? 'linearGradient' : 'radialGradient';
        if (!this.gradient_ || this.gradient_.tagName !== wanted) {
            this.clearDefs_();
            this.gradient_ = svg(doc, fill.linear_ ? 'linearGradient' : 'radialGradient');
            this.gradient_.id = this.paintId_;
            this.gradient_.setAttribute('gradientUnits', 'userSpaceOnUse');
            this.defs_.appendChild(this.gradient_);
            this.stopsOf_ = null;
        }
        // The layout replaces the list as a whole, so the same list means the same stops.
        if (fill.stops_ !== this.stopsOf_) {
            this.stopsOf_ = fill.stops_;
            while (this.gradient_.firstChild) {
                this.gradient_.removeChild(this.gradient_.firstChild);
            }
            for (const stop of fill.stops_) {
                const element = svg(doc, 'stop');
                element.setAttribute('offset', cssNum(stop[0]! / 100));
                element.setAttribute('stop-color', cssColor(stop[1]!, stop[2]!, stop[3]!, stop[4]!));
                this.gradient_.appendChild(element);
            }
        }
        const w = view.pxW;
        const h = view.pxH_;
        if (fill.linear_) {
            // The gradient line of CSS: through the centre, long enough to reach the far corners.
            const angle = (view.value(Prop.GradientAngle) * Math.PI) / 180;
            const dx = Math.sin(angle);
            const dy = -Math.cos(angle);
            const half = (Math.abs(w * dx) + Math.abs(h * dy)) / 2;
            this.gradient_.setAttribute('x1', cssNum(w / 2 - dx * half));
            this.gradient_.setAttribute('y1', cssNum(h / 2 - dy * half));
            this.gradient_.setAttribute('x2', cssNum(w / 2 + dx * half));
            this.gradient_.setAttribute('y2', cssNum(h / 2 + dy * half));
            return;
        }
        const ox = (view.value(Prop.GradientOriginX) / 100) * w;
        const oy = (view.value(Prop.GradientOriginY) / 100) * h;
        const [rx, ry] = radialRadii(fill.radialShape_, fill.radialSize_, ox, oy, w, h);
        const r = Math.max(rx, 1e-6);
        this.gradient_.setAttribute('cx', cssNum(ox));
        this.gradient_.setAttribute('cy', cssNum(oy));
        this.gradient_.setAttribute('r', cssNum(r));
        this.gradient_.setAttribute(
            'gradientTransform',
            'translate(' +
                cssNum(ox) +
                ' ' +
                cssNum(oy) +
                ') scale(1 ' +
                cssNum(ry / r) +
                ') translate(' +
                cssNum(-ox) +
                ' ' +
                cssNum(-oy) +
                ')',
        );
    }

    private paintPattern_(view: ElementView): void {
        const fill = view.fill;
        const doc = view.node.ownerDocument;
        if (!this.pattern_) {
            this.clearDefs_();
            this.pattern_ = svg(doc, 'pattern');
            this.pattern_.id = this.paintId_;
            this.pattern_.setAttribute('patternUnits', 'userSpaceOnUse');
            this.pattern_.appendChild(svg(doc, 'image'));
            this.defs_.appendChild(this.pattern_);
        }
        const image = this.pattern_.firstChild as SVGImageElement;
        const w = view.pxW;
        const h = view.pxH_;
        const iw = fill.imageW_ > 0 ? fill.imageW_ : w;
        const ih = fill.imageH_ > 0 ? fill.imageH_ : h;
        const tile = fill.imageFit_ === 3;
        const center = fill.imageFit_ === 1;
        this.pattern_.setAttribute('width', cssNum(tile ? iw : w));
        this.pattern_.setAttribute('height', cssNum(tile ? ih : h));
        image.setAttribute('href', fill.imageUrl_);
        image.setAttribute('x', cssNum(center ? (w - iw) / 2 : 0));
        image.setAttribute('y', cssNum(center ? (h - ih) / 2 : 0));
        image.setAttribute('width', cssNum(tile || center ? iw : w));
        image.setAttribute('height', cssNum(tile || center ? ih : h));
        image.setAttribute(
            'preserveAspectRatio',
            fill.imageFit_ === 2 ? 'xMidYMid meet' : fill.imageFit_ === 4 ? 'xMidYMid slice' : 'none',
        );
    }

    private clearDefs_(): void {
        if (this.gradient_) {
            this.defs_.removeChild(this.gradient_);
            this.gradient_ = null;
        }
        if (this.pattern_) {
            this.defs_.removeChild(this.pattern_);
            this.pattern_ = null;
        }
    }
}

/** Radii of a CSS radial gradient's ending shape: shape 0 circle, 1 ellipse; size 0 to 3. */
export function radialRadii(shape: number, size: number, ox: number, oy: number, w: number, h: number): [number, number] {
    const left = Math.abs(ox);
    const right = Math.abs(w - ox);
    const top = Math.abs(oy);
    const bottom = Math.abs(h - oy);
    const closeX = Math.min(left, right);
    const farX = Math.max(left, right);
    const closeY = Math.min(top, bottom);
    const farY = Math.max(top, bottom);
    if (shape === 0) {
        switch (size) {
            case 0:
                return [Math.min(closeX, closeY), Math.min(closeX, closeY)];
            case 1:
                return [Math.max(farX, farY), Math.max(farX, farY)];
            case 2: {
                const r = Math.hypot(closeX, closeY);
                return [r, r];
            }
            default: {
                const r = Math.hypot(farX, farY);
                return [r, r];
            }
        }
    }
    switch (size) {
        case 0:
            return [closeX, closeY];
        case 1:
            return [farX, farY];
        case 2:
            return [closeX * Math.SQRT2, closeY * Math.SQRT2];
        default:
            return [farX * Math.SQRT2, farY * Math.SQRT2];
    }
}
