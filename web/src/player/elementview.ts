// One element (or a scene) on the page as the animation engine sees it. Values live in numeric
// slots by `Prop`: the layout's base value and, beside it, the animated value while a timeline
// drives the property. Writes only record the value and mark a group of style properties dirty;
// `flush` turns each dirty group into its style text once, and writes a style property only when
// that text differs from what was written last.

import { type AnimTarget, Prop, Unit } from './contracts';
import { clamp, cssColor, cssLength, cssNum, LengthUnit } from './read';

/** Style groups; one property change redoes the text of its group only. */
export const enum Group {
    Pos = 1,
    Transform = 2,
    Opacity = 4,
    Display = 8,
    Border = 16,
    Background = 32,
    Text = 64,
    Image = 128,
    Volume = 256,
    Corner = 512,
    Clip = 1024,
    Shadow = 2048,
    Filter = 4096,
    Perspective = 8192,
    /** Apart from Transform: the origin rarely moves while rotation and scale change every frame. */
    Origin = 16384,
    All = 32767,
}

const GROUP_OF: Uint16Array = (() => {
    const groups = new Uint16Array(Prop.Count);
    const put = (group: Group, ...props: Prop[]): void => {
        for (const prop of props) {
            groups[prop] = group;
        }
    };
    put(Group.Pos, Prop.Left, Prop.Right, Prop.Top, Prop.Bottom, Prop.Width, Prop.Height);
    put(
        Group.Transform,
        Prop.Location,
        Prop.ScaleX,
        Prop.ScaleY,
        Prop.ScaleZ,
        Prop.SkewX,
        Prop.SkewY,
        Prop.RotateX,
        Prop.RotateY,
        Prop.RotateZ,
        Prop.TranslateX,
        Prop.TranslateY,
        Prop.TranslateZ,
    );
    put(Group.Origin, Prop.OriginX, Prop.OriginY, Prop.OriginZ);
    put(Group.Opacity, Prop.Opacity);
    put(Group.Display, Prop.Display);
    put(Group.Border, Prop.BorderWidth, Prop.BorderColor);
    put(Group.Background, Prop.BackgroundColor, Prop.GradientAngle, Prop.GradientOriginX, Prop.GradientOriginY);
    put(
        Group.Text,
        Prop.TextColor,
        Prop.HighlightColor,
        Prop.FontSize,
        Prop.LetterSpace,
        Prop.WordSpace,
        Prop.LineHeight,
        Prop.TextIndent,
    );
    put(Group.Image, Prop.ImageX, Prop.ImageY, Prop.ImageWidth, Prop.ImageHeight);
    put(Group.Volume, Prop.Volume);
    put(Group.Corner, Prop.TopLeftRadius, Prop.TopRightRadius, Prop.BottomLeftRadius, Prop.BottomRightRadius);
    put(
        Group.Clip,
        Prop.ClipRectTop,
        Prop.ClipRectRight,
        Prop.ClipRectBottom,
        Prop.ClipRectLeft,
        Prop.ClipOvalVertex,
        Prop.ClipOvalCoVertex,
        Prop.ClipCircleRadius,
    );
    put(Group.Shadow, Prop.ShadowBlur, Prop.ShadowAngle, Prop.ShadowDistance, Prop.ShadowColor);
    put(
        Group.Filter,
        Prop.FilterInvert,
        Prop.FilterHue,
        Prop.FilterContrast,
        Prop.FilterBrightness,
        Prop.FilterSaturate,
        Prop.FilterSepia,
        Prop.FilterGrayscale,
        Prop.FilterBlur,
    );
    put(Group.Perspective, Prop.PerspectiveOriginX, Prop.PerspectiveOriginY, Prop.PerspectiveOriginZ);
    return groups;
})();

const BORDER_STYLES: readonly string[] = ['none', 'solid', 'dotted', 'dashed'];
const OVERFLOWS: readonly string[] = ['visible', 'hidden', 'scroll', 'auto'];

/** Element kinds, as the data script numbers them. */
export const enum Kind {
    Image = 0,
    Audio = 1,
    Video = 2,
    Widget = 3,
    Text = 4,
    Div = 5,
    Group = 6,
    Symbol = 7,
    Scene = 8,
    Shape = 9,
    Freeform = 11,
}

export function isShapeKind(kind: number): boolean {
    return kind === Kind.Shape || kind === Kind.Freeform;
}

/** What a view needs from the document that owns it. */
export interface ViewOwner {
    /** Puts the view in the queue of views to flush and makes sure a frame comes. */
    queueFlush(view: ElementView): void;
    /** The content size of the box that holds the scene (the stage's container). */
    sceneBox(): { readonly width: number; readonly height: number };
    /** The scene view's own size changed: the stage follows it. */
    sceneResized(view: ElementView): void;
}

/** Background as the layout sets it; only the colour, angle and origin animate. */
export interface Fill {
    style: number;
    linear_: boolean;
    /** Gradient stops as [position, r, g, b, a] rows, positions in percent. */
    stops_: number[][];
    radialShape_: number;
    radialSize_: number;
    imageUrl_: string;
    imageFit_: number;
    imageW_: number;
    imageH_: number;
}

/** Hooks of the element kinds that draw more than a box (shapes, symbols, media). */
export interface KindHooks {
    /** The content size in pixels changed. */
    resized_?(view: ElementView): void;
    /** The border, fill or shadow of a shape changed: they are drawn in its outline. */
    paintShape_?(view: ElementView): void;
    /** The layout changed: the kind's own keys of the block (text, outline) apply. */
    applyBlock?(view: ElementView, block: { readonly [key: string]: unknown }): void;
}

export class ElementView implements AnimTarget {
    readonly base = new Float64Array(Prop.Count);
    readonly baseUnit_ = new Uint8Array(Prop.Count);
    readonly anim_ = new Float64Array(Prop.Count);
    readonly animUnit_ = new Uint8Array(Prop.Count);
    readonly animated_ = new Uint8Array(Prop.Count);
    readonly baseColor_ = new Float64Array(Prop.Count * 4);
    readonly animColor_ = new Float64Array(Prop.Count * 4);

    locX_ = 0;
    locY_ = 0;
    locAngle_ = NaN;
    hasLocation_ = false;

    /** Layout settings that do not animate. */
    coord_ = 0;
    borderStyle_ = 0;
    shadowOn_ = false;
    clipStyle_ = 0;
    overflow = 0;
    readonly fill: Fill = {
        style: 0,
        linear_: true,
        stops_: [],
        radialShape_: 1,
        radialSize_: 3,
        imageUrl_: '',
        imageFit_: 0,
        imageW_: 0,
        imageH_: 0,
    };

    /** Content size in pixels, as last flushed. */
    pxW = 0;
    pxH_ = 0;

    dirty_ = 0;
    queued_ = false;
    /** Class names the player gives the box, before the layout's own. */
    baseClass_ = '';
    /** An action replaced the text: layout switches keep it. */
    textReplaced_ = false;
    /** An action showed (1) or hid (0) the element, which layout switches keep; -1 when none did. */
    shownByAction_ = -1;

    readonly children: ElementView[] = [];
    /** The layer that holds a text's lines, for kinds with text. */
    textLayer_: HTMLElement | null = null;
    textContent: HTMLElement | null = null;
    /** The image of an image element, placed inside the box. */
    imageLayer_: HTMLElement | null = null;
    media: HTMLMediaElement | null = null;
    hooks_: KindHooks | null = null;

    private readonly written_: { [name: string]: string } = {};
    /** Last texts of the two properties that change every frame of most animations. */
    private transformText_: string | undefined = undefined;
    private opacityText_: string | undefined = undefined;
    private readonly style_: CSSStyleDeclaration;

    constructor(
        readonly id: number,
        readonly kind: number,
        readonly node: HTMLElement,
        readonly parent: ElementView | null,
        readonly owner_: ViewOwner,
    ) {
        this.style_ = node.style;
        if (parent) {
            parent.children.push(this);
        }
    }

    get isScene_(): boolean {
        return this.kind === Kind.Scene;
    }

    get isShape_(): boolean {
        return isShapeKind(this.kind);
    }

    // AnimTarget

    setNumber(prop: Prop, value: number, unit: Unit): void {
        if (!(prop >= 0 && prop < Prop.Count) || !isFinite(value)) {
            return;
        }
        // No check for an unchanged value: tracks only pass changes on, and the flush compares the
        // text it writes anyway.
        this.anim_[prop] = value;
        this.animUnit_[prop] = unit;
        this.animated_[prop] = 1;
        this.markDirty_(GROUP_OF[prop]!);
    }

    setColor(prop: Prop, r: number, g: number, b: number, a: number): void {
        if (!(prop >= 0 && prop < Prop.Count)) {
            return;
        }
        const i = prop * 4;
        const c = this.animColor_;
        if (this.animated_[prop] === 1 && c[i] === r && c[i + 1] === g && c[i + 2] === b && c[i + 3] === a) {
            return;
        }
        c[i] = r;
        c[i + 1] = g;
        c[i + 2] = b;
        c[i + 3] = a;
        this.animated_[prop] = 1;
        this.markDirty_(GROUP_OF[prop]!);
    }

    setLocation(x: number, y: number, angle: number): void {
        if (this.hasLocation_ && this.locX_ === x && this.locY_ === y && Object.is(this.locAngle_, angle)) {
            return;
        }
        this.locX_ = isFinite(x) ? x : 0;
        this.locY_ = isFinite(y) ? y : 0;
        this.locAngle_ = angle;
        this.hasLocation_ = true;
        this.markDirty_(Group.Transform);
    }

    clearAnimated(prop: Prop): void {
        if (prop === Prop.Location) {
            if (this.hasLocation_) {
                this.hasLocation_ = false;
                this.markDirty_(Group.Transform);
            }
            return;
        }
        if (prop >= 0 && prop < Prop.Count && this.animated_[prop] === 1) {
            this.animated_[prop] = 0;
            this.markDirty_(GROUP_OF[prop]!);
        }
    }

    markDirty_(groups: number): void {
        this.dirty_ |= groups;
        if (!this.queued_ && groups !== 0) {
            this.queued_ = true;
            this.owner_.queueFlush(this);
        }
    }

    /** Current value of a property: the animated one while a timeline drives it. */
    value(prop: Prop): number {
        return this.animated_[prop] === 1 ? this.anim_[prop]! : this.base[prop]!;
    }

    unit(prop: Prop): number {
        return this.animated_[prop] === 1 ? this.animUnit_[prop]! : this.baseUnit_[prop]!;
    }

    color(prop: Prop, channel: number): number {
        const i = prop * 4 + channel;
        return this.animated_[prop] === 1 ? this.animColor_[i]! : this.baseColor_[i]!;
    }

    cssColorOf_(prop: Prop): string {
        return cssColor(this.color(prop, 0), this.color(prop, 1), this.color(prop, 2), this.color(prop, 3));
    }

    /** A length property as CSS text: pixels unless its unit says percent. */
    lengthOf_(prop: Prop): string {
        return cssLength(this.value(prop), this.unit(prop) === Unit.Percent ? LengthUnit.Percent : LengthUnit.Px);
    }

    /**
     * Writes one style property unless it already holds that text. A first value that is the
     * property's initial one is not written at all: the box stays light, and the author's own
     * classes ("cl") can style what the layout leaves at its default.
     */
    css(name: string, text: string): void {
        const last = this.written_[name];
        if (last === text) {
            return;
        }
        this.written_[name] = text;
        if (last === undefined && isInitial(name, text)) {
            return;
        }
        this.style_.setProperty(name, text);
    }

    /** The same for a style of an inner layer; `key` (starting with a dot) tells it apart from the box's own. */
    layerCss_(style: CSSStyleDeclaration, key: string, name: string, text: string): void {
        if (this.written_[key] !== text) {
            this.written_[key] = text;
            style.setProperty(name, text);
        }
    }

    flush(): void {
        const dirty = this.dirty_;
        this.dirty_ = 0;
        this.queued_ = false;
        if (dirty === 0) {
            return;
        }
        if (dirty & Group.Pos) {
            this.flushPosition_();
        }
        if (dirty & Group.Transform) {
            this.flushTransform_();
        }
        if (dirty & Group.Origin) {
            this.css(
                'transform-origin',
                cssNum(this.value(Prop.OriginX)) +
                    '% ' +
                    cssNum(this.value(Prop.OriginY)) +
                    '% ' +
                    cssNum(this.value(Prop.OriginZ)) +
                    'px',
            );
        }
        if (dirty & Group.Opacity) {
            const text = cssNum(clamp(this.value(Prop.Opacity) / 100, 0, 1));
            const last = this.opacityText_;
            if (text !== last) {
                this.opacityText_ = text;
                if (last !== undefined || text !== '1') {
                    this.style_.opacity = text;
                }
            }
        }
        if (dirty & Group.Display) {
            this.css('display', this.value(Prop.Display) === 0 ? 'none' : '');
        }
        if (this.isShape_) {
            if (dirty & (Group.Border | Group.Background | Group.Shadow | Group.Filter)) {
                const hooks = this.hooks_;
                if (hooks && hooks.paintShape_) {
                    hooks.paintShape_(this);
                }
            }
            if (dirty & (Group.Shadow | Group.Filter)) {
                this.css('filter', this.filterText_(true));
            }
        } else {
            if (dirty & Group.Border) {
                this.flushBorder_();
            }
            if (dirty & Group.Background) {
                this.flushBackground_();
            }
            if (dirty & Group.Shadow) {
                this.flushShadow_();
            }
            if (dirty & Group.Filter) {
                this.css('filter', this.filterText_(false));
            }
        }
        if (dirty & Group.Text) {
            this.flushText_();
        }
        if (dirty & Group.Image) {
            this.flushImage_();
        }
        if (dirty & Group.Volume && this.media) {
            const volume = clamp(this.value(Prop.Volume) / 100, 0, 1);
            if (this.media.volume !== volume) {
                this.media.volume = volume;
            }
        }
        if (dirty & Group.Corner) {
            this.flushCorners_();
        }
        if (dirty & Group.Clip) {
            this.flushClip_();
        }
        if (dirty & Group.Perspective && this.isScene_) {
            this.css('perspective', cssNum(this.value(Prop.PerspectiveOriginZ)) + 'px');
            this.css(
                'perspective-origin',
                cssNum(this.value(Prop.PerspectiveOriginX)) + '% ' + cssNum(this.value(Prop.PerspectiveOriginY)) + '%',
            );
        }
    }

    /** Pixel size of one dimension; `other` is the other dimension's pixels for aspect sizes. */
    private sizePx_(prop: Prop, parentSize: number): number {
        const value = this.value(prop);
        const unit = this.unit(prop);
        return unit === Unit.Percent ? (value * parentSize) / 100 : unit === LengthUnit.Aspect ? NaN : value;
    }

    private flushPosition_(): void {
        const box = this.isScene_ ? this.owner_.sceneBox() : null;
        const parentW = box ? box.width : this.parent ? this.parent.pxW : 0;
        const parentH = box ? box.height : this.parent ? this.parent.pxH_ : 0;
        let w = this.sizePx_(Prop.Width, parentW);
        let h = this.sizePx_(Prop.Height, parentH);
        const wAspect = isNaN(w);
        const hAspect = isNaN(h);
        if (wAspect && !hAspect) {
            w = (this.value(Prop.Width) / 100) * h;
        } else if (hAspect && !wAspect) {
            h = (this.value(Prop.Height) / 100) * w;
        } else if (wAspect && hAspect) {
            w = h = 0;
        }
        w = Math.max(0, w);
        h = Math.max(0, h);

        if (!this.isScene_) {
            const fromLeft = this.coord_ === 0 || this.coord_ === 3;
            const fromTop = this.coord_ === 0 || this.coord_ === 1;
            this.css('left', fromLeft ? this.lengthOf_(Prop.Left) : 'auto');
            this.css('right', fromLeft ? 'auto' : this.lengthOf_(Prop.Right));
            this.css('top', fromTop ? this.lengthOf_(Prop.Top) : 'auto');
            this.css('bottom', fromTop ? 'auto' : this.lengthOf_(Prop.Bottom));
            // Percent sizes stay percent so that the browser follows a resized parent by itself;
            // aspect sizes depend on the other dimension and are written in pixels.
            this.css('width', wAspect ? cssNum(w) + 'px' : this.lengthOf_(Prop.Width));
            this.css('height', hAspect ? cssNum(h) + 'px' : this.lengthOf_(Prop.Height));
        }
        if (w !== this.pxW || h !== this.pxH_) {
            this.pxW = w;
            this.pxH_ = h;
            const children = this.children;
            for (let i = 0; i < children.length; ++i) {
                children[i]!.markDirty_(Group.Pos);
            }
            if (this.isShape_) {
                // Gradients and patterns of an outline are laid out in its pixels.
                this.markDirty_(Group.Background | Group.Border);
            }
            const hooks = this.hooks_;
            if (hooks && hooks.resized_) {
                hooks.resized_(this);
            }
            if (this.isScene_) {
                this.owner_.sceneResized(this);
            }
        }
    }

    private flushTransform_(): void {
        const tx = this.hasLocation_ ? this.locX_ : this.value(Prop.TranslateX);
        const ty = this.hasLocation_ ? this.locY_ : this.value(Prop.TranslateY);
        const tz = this.value(Prop.TranslateZ);
        // Parts are joined as they come, not trimmed at the end: no string is cut per frame.
        let text = '';
        if (tx !== 0 || ty !== 0 || tz !== 0) {
            text = 'translate3d(' + cssNum(tx) + 'px,' + cssNum(ty) + 'px,' + cssNum(tz) + 'px)';
        }
        if (this.hasLocation_ && isFinite(this.locAngle_) && this.locAngle_ !== 0) {
            text = joined(text, 'rotate(' + cssNum(this.locAngle_) + 'deg)');
        }
        const rx = this.value(Prop.RotateX);
        const ry = this.value(Prop.RotateY);
        const rz = this.value(Prop.RotateZ);
        if (rx !== 0) {
            text = joined(text, 'rotateX(' + cssNum(rx) + 'deg)');
        }
        if (ry !== 0) {
            text = joined(text, 'rotateY(' + cssNum(ry) + 'deg)');
        }
        if (rz !== 0) {
            text = joined(text, 'rotate(' + cssNum(rz) + 'deg)');
        }
        const kx = this.value(Prop.SkewX);
        const ky = this.value(Prop.SkewY);
        if (kx !== 0) {
            text = joined(text, 'skewX(' + cssNum(kx) + 'deg)');
        }
        if (ky !== 0) {
            text = joined(text, 'skewY(' + cssNum(ky) + 'deg)');
        }
        const sx = this.value(Prop.ScaleX);
        const sy = this.value(Prop.ScaleY);
        const sz = this.value(Prop.ScaleZ);
        if (sx !== 100 || sy !== 100 || sz !== 100) {
            // Uniform scaling is common: its number is turned into text once.
            const xText = cssNum(sx / 100);
            const yText = sy === sx ? xText : cssNum(sy / 100);
            text = joined(text, 'scale3d(' + xText + ',' + yText + ',' + (sz === 100 ? '1' : cssNum(sz / 100)) + ')');
        }
        if (text === '') {
            text = 'none';
        }
        // Written every frame of a move: no keyed lookup of the last text, and the property setter
        // rather than setProperty, which costs the browser a name lookup per call.
        const last = this.transformText_;
        if (text !== last) {
            this.transformText_ = text;
            if (last !== undefined || text !== 'none') {
                this.style_.transform = text;
            }
        }
    }

    private flushBorder_(): void {
        const style = BORDER_STYLES[this.borderStyle_] || 'none';
        if (style === 'none') {
            this.css('border', 'none');
            return;
        }
        this.css(
            'border',
            cssNum(Math.max(0, this.value(Prop.BorderWidth))) + 'px ' + style + ' ' + this.cssColorOf_(Prop.BorderColor),
        );
    }

    private flushBackground_(): void {
        const fill = this.fill;
        switch (fill.style) {
            case 1:
                this.css('background-color', this.cssColorOf_(Prop.BackgroundColor));
                this.css('background-image', 'none');
                break;
            case 2:
                this.css('background-color', 'transparent');
                this.css('background-image', this.gradientText_());
                this.css('background-size', 'auto');
                this.css('background-position', '0 0');
                this.css('background-repeat', 'no-repeat');
                break;
            case 3: {
                this.css('background-color', 'transparent');
                this.css('background-image', fill.imageUrl_ ? 'url("' + fill.imageUrl_.replace(/"/g, '%22') + '")' : 'none');
                const placing = IMAGE_FITS[fill.imageFit_] || IMAGE_FITS[0];
                if (placing) {
                    this.css('background-size', placing[0]);
                    this.css('background-position', placing[1]);
                    this.css('background-repeat', placing[2]);
                }
                break;
            }
            default:
                this.css('background-color', 'transparent');
                this.css('background-image', 'none');
                break;
        }
    }

    /** CSS gradient of the fill with the current angle and origin. */
    gradientText_(): string {
        const fill = this.fill;
        let stops = '';
        for (const stop of fill.stops_) {
            stops +=
                ',' + cssColor(stop[1]!, stop[2]!, stop[3]!, stop[4]!) + ' ' + cssNum(stop[0]!) + '%';
        }
        if (stops === '') {
            stops = ',transparent,transparent';
        } else if (fill.stops_.length === 1) {
            stops += stops;
        }
        if (fill.linear_) {
            return 'linear-gradient(' + cssNum(this.value(Prop.GradientAngle)) + 'deg' + stops + ')';
        }
        return (
            'radial-gradient(' +
            (fill.radialShape_ === 0 ? 'circle ' : 'ellipse ') +
            (RADIAL_SIZES[fill.radialSize_] || 'farthest-corner') +
            ' at ' +
            cssNum(this.value(Prop.GradientOriginX)) +
            '% ' +
            cssNum(this.value(Prop.GradientOriginY)) +
            '%' +
            stops +
            ')'
        );
    }

    /** Offset and blur of the shadow as CSS text: "dx dy blur color". */
    shadowText_(): string {
        const angle = (this.value(Prop.ShadowAngle) * Math.PI) / 180;
        const distance = this.value(Prop.ShadowDistance);
        return (
            cssNum(distance * Math.cos(angle)) +
            'px ' +
            cssNum(distance * Math.sin(angle)) +
            'px ' +
            cssNum(Math.max(0, this.value(Prop.ShadowBlur))) +
            'px ' +
            this.cssColorOf_(Prop.ShadowColor)
        );
    }

    private flushShadow_(): void {
        // A text has no box to cast a shadow from: its letters cast it.
        const textShadow = this.kind === Kind.Text;
        const text = this.shadowOn_ ? this.shadowText_() : 'none';
        this.css(textShadow ? 'text-shadow' : 'box-shadow', text);
    }

    /** The filter text; shapes also carry their shadow here, as it follows the outline. */
    filterText_(withShadow: boolean): string {
        let text =
            percentPart(this, 'invert', Prop.FilterInvert, 0) +
            degreePart(this, 'hue-rotate', Prop.FilterHue) +
            percentPart(this, 'contrast', Prop.FilterContrast, 100) +
            percentPart(this, 'brightness', Prop.FilterBrightness, 100) +
            percentPart(this, 'saturate', Prop.FilterSaturate, 100) +
            percentPart(this, 'sepia', Prop.FilterSepia, 0) +
            percentPart(this, 'grayscale', Prop.FilterGrayscale, 0);
        const blur = this.value(Prop.FilterBlur);
        if (blur !== 0) {
            text += 'blur(' + cssNum(Math.max(0, blur)) + 'px) ';
        }
        if (withShadow && this.shadowOn_) {
            text += 'drop-shadow(' + this.shadowText_() + ') ';
        }
        return text === '' ? 'none' : text.slice(0, -1);
    }

    private flushText_(): void {
        if (!this.textLayer_) {
            return;
        }
        const layer = this.textLayer_.style;
        this.layerCss_(layer, '.color', 'color', this.cssColorOf_(Prop.TextColor));
        this.layerCss_(layer, '.font-size', 'font-size', cssNum(this.value(Prop.FontSize)) + 'px');
        this.layerCss_(layer, '.letter-spacing', 'letter-spacing', cssNum(this.value(Prop.LetterSpace)) + 'px');
        this.layerCss_(layer, '.word-spacing', 'word-spacing', cssNum(this.value(Prop.WordSpace)) + 'px');
        this.layerCss_(layer, '.line-height', 'line-height', cssNum(this.value(Prop.LineHeight) / 100));
        this.layerCss_(layer, '.text-indent', 'text-indent', cssNum(this.value(Prop.TextIndent)) + 'px');
        if (this.textContent) {
            this.layerCss_(this.textContent.style, '.highlight', 'background-color', this.cssColorOf_(Prop.HighlightColor));
        }
    }

    private flushImage_(): void {
        if (!this.imageLayer_) {
            return;
        }
        const layer = this.imageLayer_.style;
        const position = this.lengthOf_(Prop.ImageX) + ' ' + this.lengthOf_(Prop.ImageY);
        const size = this.lengthOf_(Prop.ImageWidth) + ' ' + this.lengthOf_(Prop.ImageHeight);
        this.layerCss_(layer, '.image-position', 'background-position', position);
        this.layerCss_(layer, '.image-size', 'background-size', size);
    }

    private flushCorners_(): void {
        if (this.kind !== Kind.Div) {
            return;
        }
        this.css(
            'border-radius',
            this.lengthOf_(Prop.TopLeftRadius) +
                ' ' +
                this.lengthOf_(Prop.TopRightRadius) +
                ' ' +
                this.lengthOf_(Prop.BottomRightRadius) +
                ' ' +
                this.lengthOf_(Prop.BottomLeftRadius),
        );
    }

    private flushClip_(): void {
        switch (this.clipStyle_) {
            case 1:
                this.css(
                    'clip-path',
                    'inset(' +
                        this.lengthOf_(Prop.ClipRectTop) +
                        ' ' +
                        this.lengthOf_(Prop.ClipRectRight) +
                        ' ' +
                        this.lengthOf_(Prop.ClipRectBottom) +
                        ' ' +
                        this.lengthOf_(Prop.ClipRectLeft) +
                        ')',
                );
                break;
            case 2:
                this.css('clip-path', 'circle(' + this.lengthOf_(Prop.ClipCircleRadius) + ' at 50% 50%)');
                break;
            case 3:
                this.css(
                    'clip-path',
                    'ellipse(' +
                        this.lengthOf_(Prop.ClipOvalVertex) +
                        ' ' +
                        this.lengthOf_(Prop.ClipOvalCoVertex) +
                        ' at 50% 50%)',
                );
                break;
            default:
                this.css('clip-path', 'none');
                break;
        }
    }

    /** Static look of the layout that no timeline animates. */
    applyOverflow_(): void {
        this.css('overflow', OVERFLOWS[this.overflow] || 'visible');
    }
}

const INITIAL: { readonly [name: string]: string } = {
    opacity: '1',
    'transform-origin': '50% 50% 0px',
    overflow: 'visible',
    'background-color': 'transparent',
    left: 'auto',
    right: 'auto',
    top: 'auto',
    bottom: 'auto',
    'border-radius': '0px 0px 0px 0px',
    display: '',
};

function isInitial(name: string, text: string): boolean {
    return (text === 'none' && name !== 'display') || INITIAL[name] === text;
}

const RADIAL_SIZES: readonly string[] = ['closest-side', 'farthest-side', 'closest-corner', 'farthest-corner'];

/** Background size, position and repeat of each image fill type: stretch, center, fit, tile, fill. */
export const IMAGE_FITS: readonly (readonly [string, string, string])[] = [
    ['100% 100%', '0 0', 'no-repeat'],
    ['auto', '50% 50%', 'no-repeat'],
    ['contain', '50% 50%', 'no-repeat'],
    ['auto', '0 0', 'repeat'],
    ['cover', '50% 50%', 'no-repeat'],
];

/** Two parts of a style value, with a space between them when both are there. */
function joined(text: string, part: string): string {
    return text === '' ? part : text + ' ' + part;
}

function percentPart(view: ElementView, name: string, prop: Prop, identity: number): string {
    const value = view.value(prop);
    return value === identity ? '' : name + '(' + cssNum(value) + '%) ';
}

function degreePart(view: ElementView, name: string, prop: Prop): string {
    const value = view.value(prop);
    return value === 0 ? '' : name + '(' + cssNum(value) + 'deg) ';
}
