// The block of a layout (the keys of an element object or of an "rp" entry) turned into the base
// values of a view and the few settings that no timeline animates.

import { Prop } from './contracts';
import { type ElementView, Group, Kind } from './elementview';
import { arr, int, num, type Length, LengthUnit, type Obj, readColor, readLength, str } from './read';

/** What a block refers to outside itself. */
export interface BlockContext {
    /** URL of an image resource, or '' when there is none. */
    imageUrl_(resourceId: number): string;
}

const scratch: Length = { value: 0, unit: LengthUnit.Px };

const BLACK = [0, 0, 0, 255];
const HALF_BLACK = [0, 0, 0, 128];
const TRANSPARENT = [0, 0, 0, 0];

function setLength(view: ElementView, prop: Prop, raw: unknown, fallback: number, fallbackUnit: LengthUnit): void {
    readLength(raw, fallback, fallbackUnit, scratch);
    view.base[prop] = scratch.value;
    view.baseUnit_[prop] = scratch.unit;
}

function setPlain(view: ElementView, prop: Prop, value: number): void {
    view.base[prop] = value;
    view.baseUnit_[prop] = 0;
}

function setColor(view: ElementView, prop: Prop, raw: unknown, fallback: readonly number[]): void {
    readColor(raw, view.baseColor_, prop * 4, fallback);
}

/** One part of "t": an array of up to three numbers, empty meaning the part's identity. */
function part(t: readonly unknown[], index: number, item: number, identity: number): number {
    const values = arr(t[index]);
    return values.length === 0 ? identity : num(values[item], identity);
}

function applyGeometry(view: ElementView, block: Obj): void {
    const r = arr(block['r']);
    const coord = int(r[4], 0);
    view.coord_ = coord >= 0 && coord <= 3 ? coord : 0;
    // Both sides of an axis take the stored position; the coordinate type picks the one shown.
    setLength(view, Prop.Left, r[0], 0, LengthUnit.Px);
    setLength(view, Prop.Right, r[0], 0, LengthUnit.Px);
    setLength(view, Prop.Top, r[1], 0, LengthUnit.Px);
    setLength(view, Prop.Bottom, r[1], 0, LengthUnit.Px);
    setLength(view, Prop.Width, r[2], 100, LengthUnit.Px);
    setLength(view, Prop.Height, r[3], 50, LengthUnit.Px);
    if (view.baseUnit_[Prop.Width] === LengthUnit.Aspect && view.baseUnit_[Prop.Height] === LengthUnit.Aspect) {
        // Two sizes that each follow the other say nothing; the height falls back to pixels.
        view.baseUnit_[Prop.Height] = LengthUnit.Px;
    }

    const t = arr(block['t']);
    setPlain(view, Prop.TranslateX, part(t, 0, 0, 0));
    setPlain(view, Prop.TranslateY, part(t, 0, 1, 0));
    setPlain(view, Prop.TranslateZ, part(t, 0, 2, 0));
    setPlain(view, Prop.ScaleX, part(t, 1, 0, 100));
    setPlain(view, Prop.ScaleY, part(t, 1, 1, 100));
    setPlain(view, Prop.ScaleZ, part(t, 1, 2, 100));
    setPlain(view, Prop.SkewX, part(t, 2, 0, 0));
    setPlain(view, Prop.SkewY, part(t, 2, 1, 0));
    setPlain(view, Prop.RotateX, part(t, 3, 0, 0));
    setPlain(view, Prop.RotateY, part(t, 3, 1, 0));
    setPlain(view, Prop.RotateZ, part(t, 3, 2, 0));
    setPlain(view, Prop.OriginX, part(t, 4, 0, 50));
    setPlain(view, Prop.OriginY, part(t, 4, 1, 50));
    setPlain(view, Prop.OriginZ, part(t, 4, 2, 0));
}

function applyBackground(view: ElementView, raw: unknown, ctx: BlockContext): void {
    const f = arr(raw);
    const fill = view.fill;
    fill.style = int(f[0], 0);
    fill.stops_ = [];
    fill.imageUrl_ = '';
    setColor(view, Prop.BackgroundColor, TRANSPARENT, TRANSPARENT);
    switch (fill.style) {
        case 1:
            setColor(view, Prop.BackgroundColor, f.slice(1, 5), TRANSPARENT);
            break;
        case 2: {
            fill.linear_ = int(f[1], 0) !== 1;
            const stops = fill.linear_ ? f[3] : f[4];
            for (const stop of arr(stops)) {
                const row = arr(stop);
                if (row.length >= 5) {
                    fill.stops_.push([num(row[0], 0), num(row[1], 0), num(row[2], 0), num(row[3], 0), num(row[4], 255)]);
                }
            }
            fill.stops_.sort((a, b) => a[0]! - b[0]!);
            setPlain(view, Prop.GradientAngle, fill.linear_ ? num(f[2], 0) : 0);
            setPlain(view, Prop.GradientOriginX, fill.linear_ ? 50 : num(f[2], 50));
            setPlain(view, Prop.GradientOriginY, fill.linear_ ? 50 : num(f[3], 50));
            fill.radialShape_ = int(f[5], 1);
            fill.radialSize_ = int(f[6], 3);
            break;
        }
        case 3:
            fill.imageUrl_ = f.length > 1 ? ctx.imageUrl_(int(f[1], -1)) : '';
            fill.imageFit_ = int(f[2], 0);
            fill.imageW_ = num(f[3], 0);
            fill.imageH_ = num(f[4], 0);
            break;
        default:
            fill.style = 0;
            break;
    }
}

function applyEffects(view: ElementView, block: Obj): void {
    const l = arr(block['l']);
    view.borderStyle_ = l.length > 0 ? int(l[0], 0) : 0;
    setPlain(view, Prop.BorderWidth, view.borderStyle_ > 0 ? num(l[1], 0) : 0);
    setColor(view, Prop.BorderColor, l.slice(2, 6), BLACK);

    const sh = arr(block['sh']);
    view.shadowOn_ = sh.length > 0;
    setPlain(view, Prop.ShadowBlur, num(sh[0], 5));
    setPlain(view, Prop.ShadowAngle, num(sh[1], 45));
    setPlain(view, Prop.ShadowDistance, num(sh[2], 5));
    setColor(view, Prop.ShadowColor, sh.slice(3, 7), HALF_BLACK);

    const fe = arr(block['fe']);
    setPlain(view, Prop.FilterInvert, num(fe[0], 0));
    setPlain(view, Prop.FilterHue, num(fe[1], 0));
    setPlain(view, Prop.FilterContrast, num(fe[2], 100));
    setPlain(view, Prop.FilterBrightness, num(fe[3], 100));
    setPlain(view, Prop.FilterSaturate, num(fe[4], 100));
    setPlain(view, Prop.FilterSepia, num(fe[5], 0));
    setPlain(view, Prop.FilterGrayscale, num(fe[6], 0));
    setPlain(view, Prop.FilterBlur, num(fe[7], 0));

    const wc = arr(block['wc']);
    view.clipStyle_ = int(wc[0], 0);
    setLength(view, Prop.ClipRectTop, view.clipStyle_ === 1 ? wc[1] : 0, 0, LengthUnit.Px);
    setLength(view, Prop.ClipRectRight, view.clipStyle_ === 1 ? wc[2] : 0, 0, LengthUnit.Px);
    setLength(view, Prop.ClipRectBottom, view.clipStyle_ === 1 ? wc[3] : 0, 0, LengthUnit.Px);
    setLength(view, Prop.ClipRectLeft, view.clipStyle_ === 1 ? wc[4] : 0, 0, LengthUnit.Px);
    setLength(view, Prop.ClipCircleRadius, view.clipStyle_ === 2 ? wc[1] : '50%', 50, LengthUnit.Percent);
    setLength(view, Prop.ClipOvalVertex, view.clipStyle_ === 3 ? wc[1] : '25%', 25, LengthUnit.Percent);
    setLength(view, Prop.ClipOvalCoVertex, view.clipStyle_ === 3 ? wc[2] : '50%', 50, LengthUnit.Percent);

    const lr = arr(block['lr']);
    setLength(view, Prop.TopLeftRadius, lr[0], 0, LengthUnit.Px);
    setLength(view, Prop.TopRightRadius, lr[1], 0, LengthUnit.Px);
    setLength(view, Prop.BottomLeftRadius, lr[2], 0, LengthUnit.Px);
    setLength(view, Prop.BottomRightRadius, lr[3], 0, LengthUnit.Px);

    const ir = arr(block['ir']);
    setLength(view, Prop.ImageX, ir[0], 0, LengthUnit.Px);
    setLength(view, Prop.ImageY, ir[1], 0, LengthUnit.Px);
    setLength(view, Prop.ImageWidth, ir[2], 100, LengthUnit.Percent);
    setLength(view, Prop.ImageHeight, ir[3], 100, LengthUnit.Percent);

    const pso = arr(block['pso']);
    setPlain(view, Prop.PerspectiveOriginX, num(pso[0], 50));
    setPlain(view, Prop.PerspectiveOriginY, num(pso[1], 50));
    setPlain(view, Prop.PerspectiveOriginZ, num(pso[2], 1200));
}

function applyAttributes(view: ElementView, block: Obj): void {
    const node = view.node;
    const className = str(block['cl'], '').trim();
    node.className = className === '' ? view.baseClass_ : view.baseClass_ + ' ' + className;

    const tabIndex = block['tb'];
    if (typeof tabIndex === 'number' && tabIndex >= -1) {
        node.tabIndex = Math.trunc(tabIndex);
    } else {
        node.removeAttribute('tabindex');
    }
    const title = str(block['tl'], '');
    if (title !== '') {
        node.title = title;
    } else {
        node.removeAttribute('title');
    }
    const cursor = str(block['c'], 'auto');
    if (cursor !== 'auto' && /^[a-z-]+$/i.test(cursor)) {
        node.style.cursor = cursor;
    } else {
        node.style.removeProperty('cursor');
    }
}

/** Takes the block of the current layout: base values, settings, and the kind's own keys. */
export function applyBlock(view: ElementView, block: Obj, ctx: BlockContext): void {
    applyGeometry(view, block);
    applyBackground(view, block['f'], ctx);
    applyEffects(view, block);
    setPlain(view, Prop.Opacity, num(block['o'], 100));
    setPlain(view, Prop.Display, view.shownByAction_ >= 0 ? view.shownByAction_ : block['d'] === 0 ? 0 : 1);
    const overflow = int(block['of'], 0);
    view.overflow = overflow >= 0 && overflow <= 3 ? overflow : 0;
    if (view.kind !== Kind.Scene) {
        view.applyOverflow_();
    } else if (view.overflow !== 0) {
        // A scene clips its stage anyway; its own setting only adds scrolling.
        view.applyOverflow_();
    }
    applyAttributes(view, block);
    const hooks = view.hooks_;
    if (hooks && hooks.applyBlock) {
        hooks.applyBlock(view, block);
    }
    view.markDirty_(Group.All);
}
