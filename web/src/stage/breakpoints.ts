// The breakpoint ruler: the breakpoints of the shown symbol as markers over the top ruler
// (horizontal) and the left ruler (vertical), the range of the shown layout marked. A marker can
// be dragged to a new value, a range clicked to show its layout, and the right mouse button opens
// the studio's breakpoint menu for a marker or for a place on the ruler.

import type { Point } from './contracts';
import type { BreakpointState } from './scenedata';

export const HORIZONTAL = 0;
export const VERTICAL = 1;
/** Breakpoint values the studio accepts. */
export const MAX_BREAKPOINT = 10000;

export interface BreakpointHost {
    /** Stage origin in view pixels, and the zoom. */
    readonly origin: Point;
    readonly zoom: number;
    state(): BreakpointState | null;
    /** A marker was dragged: the studio's record 91. */
    move(direction: number, id: number, value: number): void;
    /** A range was clicked: show the layout of that range (record 92). */
    show(direction: number, id: number): void;
    /** The breakpoint menu for a marker (its value) or a place (value -1). */
    menu(direction: number, value: number, rulerPos: number): void;
}

/** The room a breakpoint can move in: above the one before it and below the one after it. */
export function allowedRange(pairs: readonly (readonly [number, number])[], id: number): [number, number] {
    const at = pairs.findIndex((pair) => pair[0] === id);
    const low = at > 0 ? pairs[at - 1]![1] + 1 : 1;
    const high = at >= 0 && at + 1 < pairs.length ? pairs[at + 1]![1] - 1 : MAX_BREAKPOINT;
    return [Math.max(1, low), Math.min(MAX_BREAKPOINT, high)];
}

/** The id of the range that holds a stage coordinate: the last breakpoint not above it. */
export function rangeAt(pairs: readonly (readonly [number, number])[], value: number): number | null {
    let found: number | null = null;
    for (const [id, at] of pairs) {
        if (at <= value) {
            found = id;
        }
    }
    return found;
}

interface Drag {
    readonly direction: number;
    readonly id: number;
    readonly marker: HTMLElement;
    readonly range: [number, number];
    value: number;
    moved: boolean;
    readonly pointerId: number;
    /** Where on the marker it was taken, so that it does not jump under the pointer. */
    readonly grab: number;
}

export class BreakpointBars {
    private drag_: Drag | null = null;

    constructor(
        private readonly bars_: readonly [HTMLElement, HTMLElement],
        private readonly host_: BreakpointHost,
    ) {
        for (const direction of [HORIZONTAL, VERTICAL]) {
            const bar = bars_[direction]!;
            bar.addEventListener('pointerdown', (e) => this.pointerDown_(direction, e));
            bar.addEventListener('pointermove', (e) => this.pointerMove_(e));
            bar.addEventListener('pointerup', (e) => this.pointerUp_(e));
            bar.addEventListener('pointercancel', () => this.cancel());
            bar.addEventListener('contextmenu', (e) => this.contextMenu_(direction, e));
        }
    }

    get dragging(): boolean {
        return this.drag_ !== null;
    }

    private pairs_(direction: number): [number, number][] {
        const state = this.host_.state();
        return state ? (direction === HORIZONTAL ? state.h : state.v) : [];
    }

    /** Stage coordinate of a client point along a bar. */
    private valueAt_(direction: number, e: MouseEvent): number {
        const bar = this.bars_[direction]!;
        const r = bar.getBoundingClientRect();
        const along = direction === HORIZONTAL ? e.clientX - r.left : e.clientY - r.top;
        const origin = direction === HORIZONTAL ? this.host_.origin.x : this.host_.origin.y;
        return (along - origin) / this.host_.zoom;
    }

    render(): void {
        const state = this.host_.state();
        for (const direction of [HORIZONTAL, VERTICAL]) {
            const bar = this.bars_[direction]!;
            while (bar.lastChild) {
                bar.removeChild(bar.lastChild);
            }
            const pairs = this.pairs_(direction);
            bar.toggleAttribute('data-empty', pairs.length === 0);
            if (!state || pairs.length === 0) {
                continue;
            }
            const origin = direction === HORIZONTAL ? this.host_.origin.x : this.host_.origin.y;
            const zoom = this.host_.zoom;
            const current = direction === HORIZONTAL ? state.hCurrent : state.vCurrent;
            const doc = bar.ownerDocument;
            pairs.forEach(([id, value], i) => {
                const next = pairs[i + 1];
                const start = origin + value * zoom;
                const end = next
                    ? origin + next[1] * zoom
                    : Math.max(start, direction === HORIZONTAL ? bar.clientWidth : bar.clientHeight);
                if (state.responsive && id === current) {
                    const band = doc.createElement('div');
                    band.className = 'bp-current';
                    this.place_(band, direction, start, Math.max(0, end - start));
                    bar.appendChild(band);
                }
                if (value <= 0) {
                    return;
                }
                const marker = doc.createElement('div');
                marker.className = 'bp-marker';
                marker.dataset['id'] = String(id);
                marker.dataset['value'] = String(value);
                marker.title = `${value} px`;
                this.place_(marker, direction, Math.round(start), 0);
                bar.appendChild(marker);
            });
        }
    }

    private place_(node: HTMLElement, direction: number, at: number, length: number): void {
        if (direction === HORIZONTAL) {
            node.style.left = at + 'px';
            node.style.width = length > 0 ? length + 'px' : '';
        } else {
            node.style.top = at + 'px';
            node.style.height = length > 0 ? length + 'px' : '';
        }
    }

    private pointerDown_(direction: number, e: PointerEvent): void {
        if (e.button !== 0) {
            return;
        }
        e.preventDefault();
        e.stopPropagation();
        const marker = (e.target as Element).closest<HTMLElement>('.bp-marker');
        if (marker) {
            const id = Number(marker.dataset['id']);
            const value = Number(marker.dataset['value']);
            this.drag_ = {
                direction,
                id,
                marker,
                range: allowedRange(this.pairs_(direction), id),
                value,
                moved: false,
                pointerId: e.pointerId,
                grab: this.valueAt_(direction, e) - value,
            };
            marker.classList.add('bp-dragging');
            this.bars_[direction]!.setPointerCapture(e.pointerId);
            return;
        }
        const id = rangeAt(this.pairs_(direction), this.valueAt_(direction, e));
        if (id !== null) {
            this.host_.show(direction, id);
        }
    }

    private pointerMove_(e: PointerEvent): void {
        const drag = this.drag_;
        if (!drag || e.pointerId !== drag.pointerId) {
            return;
        }
        const raw = Math.round(this.valueAt_(drag.direction, e) - drag.grab);
        const value = Math.min(drag.range[1], Math.max(drag.range[0], raw));
        if (value !== drag.value) {
            drag.value = value;
            drag.moved = true;
        }
        const origin = drag.direction === HORIZONTAL ? this.host_.origin.x : this.host_.origin.y;
        this.place_(drag.marker, drag.direction, Math.round(origin + value * this.host_.zoom), 0);
        drag.marker.title = `${value} px`;
        drag.marker.dataset['live'] = String(value);
    }

    private pointerUp_(e: PointerEvent): void {
        const drag = this.drag_;
        if (!drag || e.pointerId !== drag.pointerId) {
            return;
        }
        this.drag_ = null;
        drag.marker.classList.remove('bp-dragging');
        if (drag.moved && String(drag.value) !== drag.marker.dataset['value']) {
            this.host_.move(drag.direction, drag.id, drag.value);
        } else {
            this.render();
        }
    }

    /** Drops a marker drag, putting the marker back. */
    cancel(): void {
        if (this.drag_) {
            this.drag_.marker.classList.remove('bp-dragging');
            this.drag_ = null;
            this.render();
        }
    }

    private contextMenu_(direction: number, e: MouseEvent): void {
        e.preventDefault();
        e.stopPropagation();
        const marker = (e.target as Element).closest<HTMLElement>('.bp-marker');
        if (marker) {
            const value = Number(marker.dataset['value']);
            this.host_.menu(direction, value, value);
        } else {
            this.host_.menu(direction, -1, Math.round(this.valueAt_(direction, e)));
        }
    }
}
