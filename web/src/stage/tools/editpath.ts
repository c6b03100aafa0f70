// A freeform outline as the point editor changes it: anchors with two handles each, and whether
// the outline is closed. It reads and writes the form the studio exchanges with the page, one
// array per anchor [x, y, x1, y1, x2, y2], the seventh item 1 on the first anchor of an open path.
//
// A closed outline keeps each anchor once: its closing span runs from the last anchor back to the
// first. A list whose ends meet (which the studio also counts as closed) is read with the repeated
// end merged into the first anchor, so that every anchor has one handle on each side.

import type { PathAnchor, Point, Rect } from '../contracts';
import { type Bounds, type Cubic, cubicsBounds, splitCubic } from './geometry';

export interface Anchor {
    x: number;
    y: number;
    /** Handle towards the previous anchor. */
    inX: number;
    inY: number;
    /** Handle towards the next anchor. */
    outX: number;
    outY: number;
}

/** Ends closer than this are the same point, as the studio decides whether a path is closed. */
const SAME_POINT = 1e-12;
/** More anchors than any drawing needs: such a list is damaged, and no editing is offered. */
const MAX_ANCHORS = 5000;

function finite(value: unknown, fallback: number): number {
    return typeof value === 'number' && isFinite(value) ? value : fallback;
}

/** Output numbers to a thousandth of a pixel, and 0 where the studio would write 0. */
function out(value: number): number {
    const rounded = Math.round(value * 1000) / 1000;
    return Math.abs(rounded) <= 1e-5 ? 0 : rounded;
}

export class EditPath {
    anchors: Anchor[];
    closed: boolean;

    constructor(anchors: Anchor[], closed: boolean) {
        this.anchors = anchors;
        this.closed = closed;
    }

    /** Reads the exchanged form; items that are not arrays are skipped, damaged numbers repaired. */
    static fromExport(points: readonly unknown[]): EditPath {
        const anchors: Anchor[] = [];
        let startFlag = false;
        if (points.length <= MAX_ANCHORS) {
            for (const item of points) {
                if (!Array.isArray(item)) {
                    continue;
                }
                const x = finite(item[0], 0);
                const y = finite(item[1], 0);
                if (anchors.length === 0) {
                    startFlag = item[6] === 1;
                }
                anchors.push({
                    x,
                    y,
                    inX: finite(item[2], x),
                    inY: finite(item[3], y),
                    outX: finite(item[4], x),
                    outY: finite(item[5], y),
                });
            }
        }
        const first = anchors[0];
        const last = anchors[anchors.length - 1];
        const meet =
            anchors.length >= 2 &&
            first !== undefined &&
            last !== undefined &&
            Math.abs(first.x - last.x) <= SAME_POINT &&
            Math.abs(first.y - last.y) <= SAME_POINT;
        if (meet && anchors.length > 2 && first && last) {
            first.inX = last.inX;
            first.inY = last.inY;
            anchors.pop();
        }
        return new EditPath(anchors, anchors.length >= 2 && (meet || !startFlag));
    }

    toExport(): PathAnchor[] {
        return this.anchors.map((a, i) => {
            const item = [out(a.x), out(a.y), out(a.inX), out(a.inY), out(a.outX), out(a.outY)];
            if (i === 0 && !this.closed) {
                item.push(1);
            }
            return item;
        });
    }

    clone(): EditPath {
        return new EditPath(
            this.anchors.map((a) => ({ ...a })),
            this.closed,
        );
    }

    /** Spans: anchor i to i + 1, and for a closed path the last anchor back to the first. */
    get segmentCount(): number {
        const n = this.anchors.length;
        if (n < 2) {
            return 0;
        }
        return this.closed ? n : n - 1;
    }

    /** The anchor index a segment ends at. */
    segmentEnd(segment: number): number {
        return (segment + 1) % this.anchors.length;
    }

    segment(index: number): Cubic {
        const a = this.anchors[index] as Anchor;
        const b = this.anchors[this.segmentEnd(index)] as Anchor;
        return {
            p0: { x: a.x, y: a.y },
            p1: { x: a.outX, y: a.outY },
            p2: { x: b.inX, y: b.inY },
            p3: { x: b.x, y: b.y },
        };
    }

    segments(): Cubic[] {
        const spans: Cubic[] = [];
        for (let i = 0; i < this.segmentCount; ++i) {
            spans.push(this.segment(i));
        }
        return spans;
    }

    bounds(): Bounds | null {
        return cubicsBounds(this.segments());
    }

    /**
     * Adds an anchor on a segment at parameter t, splitting the span so the outline keeps its
     * shape. Returns the new anchor's index.
     */
    insertAt(segment: number, t: number): number {
        const [left, right] = splitCubic(this.segment(segment), Math.min(1, Math.max(0, t)));
        const a = this.anchors[segment] as Anchor;
        const b = this.anchors[this.segmentEnd(segment)] as Anchor;
        a.outX = left.p1.x;
        a.outY = left.p1.y;
        b.inX = right.p2.x;
        b.inY = right.p2.y;
        const anchor: Anchor = {
            x: left.p3.x,
            y: left.p3.y,
            inX: left.p2.x,
            inY: left.p2.y,
            outX: right.p1.x,
            outY: right.p1.y,
        };
        // The closing span ends at anchor 0: its new anchor goes at the end of the list.
        const index = segment + 1;
        this.anchors.splice(index, 0, anchor);
        return index;
    }

    /** Removes an anchor; false when the outline would be left with fewer than two. */
    remove(index: number): boolean {
        if (index < 0 || index >= this.anchors.length || this.anchors.length <= 2) {
            return false;
        }
        this.anchors.splice(index, 1);
        return true;
    }

    /** Moves an anchor with both of its handles. */
    moveAnchor(index: number, x: number, y: number): void {
        const a = this.anchors[index];
        if (!a) {
            return;
        }
        const dx = x - a.x;
        const dy = y - a.y;
        a.x = x;
        a.y = y;
        a.inX += dx;
        a.inY += dy;
        a.outX += dx;
        a.outY += dy;
    }

    /** Puts one handle of an anchor at p; with `mirror` the other handle goes opposite at the same distance. */
    moveHandle(index: number, side: 'in' | 'out', p: Point, mirror: boolean): void {
        const a = this.anchors[index];
        if (!a) {
            return;
        }
        const ox = 2 * a.x - p.x;
        const oy = 2 * a.y - p.y;
        if (side === 'in') {
            a.inX = p.x;
            a.inY = p.y;
            if (mirror) {
                a.outX = ox;
                a.outY = oy;
            }
        } else {
            a.outX = p.x;
            a.outY = p.y;
            if (mirror) {
                a.inX = ox;
                a.inY = oy;
            }
        }
    }

    /** A straight segment: its two handles go onto their anchors. */
    straighten(segment: number): void {
        if (segment < 0 || segment >= this.segmentCount) {
            return;
        }
        const a = this.anchors[segment] as Anchor;
        const b = this.anchors[this.segmentEnd(segment)] as Anchor;
        a.outX = a.x;
        a.outY = a.y;
        b.inX = b.x;
        b.inY = b.y;
    }

    /**
     * Opens a closed outline by taking out one segment: the anchor after it becomes the start and
     * the anchor before it the end. The handles stay, so closing again gives the same outline back.
     */
    openSegment(segment: number): void {
        if (!this.closed || segment < 0 || segment >= this.segmentCount) {
            return;
        }
        const start = this.segmentEnd(segment);
        this.anchors = this.anchors.slice(start).concat(this.anchors.slice(0, start));
        this.closed = false;
    }

    close(): void {
        if (this.anchors.length >= 2) {
            this.closed = true;
        }
    }

    /** Shifts everything, handles included. */
    translate(dx: number, dy: number): void {
        for (const a of this.anchors) {
            a.x += dx;
            a.y += dy;
            a.inX += dx;
            a.inY += dy;
            a.outX += dx;
            a.outY += dy;
        }
    }

    /**
     * Maps the outline's tight bounds onto the rectangle r, as the player draws a freeform into its
     * box; a side without extent is placed in the middle of r.
     */
    fitTo(r: Rect): void {
        const b = this.bounds();
        if (!b) {
            return;
        }
        const axis = (low: number, high: number, start: number, size: number) => {
            const extent = high - low;
            return extent > 1e-6 ? (v: number) => start + ((v - low) * size) / extent : (v: number) => start + size / 2 + (v - low);
        };
        const fx = axis(b.minX, b.maxX, r.x, r.w);
        const fy = axis(b.minY, b.maxY, r.y, r.h);
        for (const a of this.anchors) {
            a.x = fx(a.x);
            a.y = fy(a.y);
            a.inX = fx(a.inX);
            a.inY = fy(a.inY);
            a.outX = fx(a.outX);
            a.outY = fy(a.outY);
        }
    }
}

/** An anchor from a drawn point: with both handles on the point, a corner. */
export function cornerAnchor(p: Point): Anchor {
    return { x: p.x, y: p.y, inX: p.x, inY: p.y, outX: p.x, outY: p.y };
}
