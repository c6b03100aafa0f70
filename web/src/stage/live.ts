// What the stage shows while the pointer is down: values put over an element's own (and over what
// a timeline animates) until the gesture is over. The studio's records then bring the model's
// values; the override is dropped once they are in, or at once when nothing comes back.

import { Prop, Unit } from '../player/contracts';
import type { ElementView } from '../player/elementview';

interface Saved {
    readonly view: ElementView;
    readonly prop: Prop;
    readonly animated: boolean;
    readonly value: number;
    readonly unit: number;
}

export class LiveOverride {
    private readonly saved_: Saved[] = [];

    get empty(): boolean {
        return this.saved_.length === 0;
    }

    /** Shows `value` for a property of a view; the first call per property remembers what was there. */
    set(view: ElementView, prop: Prop, value: number, unit: Unit): void {
        if (!this.saved_.some((s) => s.view === view && s.prop === prop)) {
            this.saved_.push({
                view,
                prop,
                animated: view.animated_[prop] === 1,
                value: view.anim_[prop]!,
                unit: view.animUnit_[prop]!,
            });
        }
        view.setNumber(prop, value, unit);
    }

    /** The views this override touches. */
    views(): ElementView[] {
        return [...new Set(this.saved_.map((s) => s.view))];
    }

    /** Puts back what each property showed before, newest first. */
    restore(): void {
        for (let i = this.saved_.length - 1; i >= 0; --i) {
            const s = this.saved_[i]!;
            if (s.animated) {
                s.view.setNumber(s.prop, s.value, s.unit);
            } else {
                s.view.clearAnimated(s.prop);
            }
        }
        this.saved_.length = 0;
    }
}

/** Sets the position of a box by the side its coordinate type counts from. */
export function showPosition(
    live: LiveOverride,
    view: ElementView,
    coord: number,
    left: number,
    top: number,
    w: number,
    h: number,
    parentW: number,
    parentH: number,
): void {
    const fromLeft = coord === 0 || coord === 3;
    const fromTop = coord === 0 || coord === 1;
    if (fromLeft) {
        live.set(view, Prop.Left, left, Unit.Px);
    } else {
        live.set(view, Prop.Right, parentW - left - w, Unit.Px);
    }
    if (fromTop) {
        live.set(view, Prop.Top, top, Unit.Px);
    } else {
        live.set(view, Prop.Bottom, parentH - top - h, Unit.Px);
    }
}
