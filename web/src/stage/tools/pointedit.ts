// Point editing of a freeform: its anchors and handles drawn over the element, turned with it.
//
//   drag an anchor        moves it with its handles (Shift: along one axis; snapped like elements)
//   Alt-drag an anchor    pulls a pair of handles out of it, making a corner smooth
//   drag a handle         the opposite handle mirrors it; with Alt the two move apart
//   press on the outline  adds an anchor there without changing the curve, and drags it
//   right press           selects the anchor or segment under it, for the context menu
//   Delete, Backspace     removes the selected anchor
//   Escape                ends point editing (or takes back the drag in progress)
//
// Every finished gesture is one command with the new path. When the outline grows out of its box
// or shrinks inside it, the same command moves and resizes the box, so the outline stays where it
// was drawn instead of being stretched into the old box.

import type { Point, PointEditTool, StageElement, StageHost, StageRecord } from '../contracts';
import { BoxFrame, nearestOnCubic } from './geometry';
import { EditPath } from './editpath';
import { FEEDBACK, OverlayLayer } from './overlay';
import { GeometryProp, editPointRecord, freeformPathRecord, geometryRecord } from './records';

type Selection = { readonly kind: 'anchor' | 'segment'; readonly index: number } | null;

interface Drag {
    readonly kind: 'anchor' | 'handle' | 'pullOut';
    readonly index: number;
    readonly side: 'in' | 'out';
    /** The path each move starts again from (with the anchor a press on the outline added). */
    readonly original: EditPath;
    /** The path before the press, which Escape brings back. */
    readonly before: EditPath;
    readonly pressClient: Point;
    readonly pressLocal: Point;
    readonly text: string;
    moved: boolean;
}

interface HandleRef {
    readonly index: number;
    readonly side: 'in' | 'out';
}

const DRAG_THRESHOLD = 3;
/** Bounds that differ from the box by less than this, in pixels, are the box. */
const BOX_TOLERANCE = 0.01;
/** Presses farther than this outside the box, in client pixels, end point editing. */
const OUTSIDE_MARGIN = 12;

export class FreeformPointEditor implements PointEditTool {
    readonly name = 'editPoints';
    readonly elementId: number;
    private readonly host_: StageHost;
    private readonly layer_: OverlayLayer;
    private frame_: BoxFrame;
    private path_: EditPath;
    private selection_: Selection = null;
    private drag_: Drag | null = null;
    private done_ = false;
    // The stage opens the studio's menu on a right press and keeps the press itself; what lies
    // under it is selected first, so the menu's commands act on it.
    private readonly onContextMenu_ = (e: MouseEvent) => this.selectAt_(e.clientX, e.clientY);

    constructor(host: StageHost, element: StageElement) {
        this.host_ = host;
        this.elementId = element.id;
        this.frame_ = new BoxFrame(element.box(), element.rotation());
        this.path_ = readPath(element);
        this.layer_ = new OverlayLayer(host, 'vetra-point-editor');
        host.overlay.ownerDocument.addEventListener('contextmenu', this.onContextMenu_, true);
        if (element.data()['editPoint'] !== true) {
            host.submit([editPointRecord(this.elementId, true)], 'Edit Points', true);
        }
        this.redraw_();
    }

    pointerDown(e: PointerEvent): boolean {
        if (this.done_) {
            return false;
        }
        const hit = this.hitTest_(e.clientX, e.clientY);
        if (e.button !== 0) {
            return false;
        }
        const pressClient = { x: e.clientX, y: e.clientY };
        const pressLocal = this.clientToLocal_(e.clientX, e.clientY);
        const before = this.path_.clone();
        const common = { original: before, before, pressClient, pressLocal, moved: false };
        if (hit.handle) {
            this.selection_ = { kind: 'anchor', index: hit.handle.index };
            this.drag_ = { ...common, kind: 'handle', ...hit.handle, text: 'Move Control Point' };
        } else if (hit.anchor !== null) {
            this.selection_ = { kind: 'anchor', index: hit.anchor };
            this.drag_ = e.altKey
                ? { ...common, kind: 'pullOut', index: hit.anchor, side: 'out', text: 'Move Control Point' }
                : { ...common, kind: 'anchor', index: hit.anchor, side: 'out', text: 'Move Anchor Point' };
        } else if (hit.segment) {
            const index = this.path_.insertAt(hit.segment.index, hit.segment.t);
            this.selection_ = { kind: 'anchor', index };
            // An added anchor is a change even when the pointer does not move on.
            this.drag_ = {
                ...common,
                original: this.path_.clone(),
                kind: 'anchor',
                index,
                side: 'out',
                text: 'Insert Anchor Point',
                moved: true,
            };
        } else if (this.isOutside_(e.clientX, e.clientY)) {
            this.finish_();
            return false;
        } else {
            this.selection_ = null;
        }
        this.redraw_();
        return true;
    }

    pointerMove(e: PointerEvent): void {
        const drag = this.drag_;
        if (!drag || this.done_) {
            return;
        }
        if (!drag.moved && Math.hypot(e.clientX - drag.pressClient.x, e.clientY - drag.pressClient.y) < DRAG_THRESHOLD) {
            return;
        }
        drag.moved = true;
        const path = drag.original.clone();
        const anchor = path.anchors[drag.index];
        if (!anchor) {
            return;
        }
        if (drag.kind === 'anchor') {
            const start = drag.original.anchors[drag.index] as { x: number; y: number };
            const p = this.clientToLocal_(e.clientX, e.clientY);
            let dx = p.x - drag.pressLocal.x;
            let dy = p.y - drag.pressLocal.y;
            if (e.shiftKey) {
                if (Math.abs(dx) > Math.abs(dy)) {
                    dy = 0;
                } else {
                    dx = 0;
                }
            } else {
                // The anchor snaps, not the pointer: where the anchor would go is what is snapped.
                const wanted = this.frame_.toStage({ x: start.x + dx, y: start.y + dy });
                const snapped = this.frame_.toLocal(this.host_.snap(wanted, [this.elementId]));
                dx = snapped.x - start.x;
                dy = snapped.y - start.y;
            }
            path.moveAnchor(drag.index, start.x + dx, start.y + dy);
        } else {
            // The handle keeps its offset from the pointer, so a press beside it does not make it jump.
            const p = this.clientToLocal_(e.clientX, e.clientY);
            const a = drag.original.anchors[drag.index] as { x: number; y: number; inX: number; inY: number; outX: number; outY: number };
            const from = drag.kind === 'pullOut' ? { x: a.x, y: a.y } : drag.side === 'in' ? { x: a.inX, y: a.inY } : { x: a.outX, y: a.outY };
            const target = { x: from.x + p.x - drag.pressLocal.x, y: from.y + p.y - drag.pressLocal.y };
            path.moveHandle(drag.index, drag.side, target, drag.kind === 'pullOut' || !e.altKey);
        }
        this.path_ = path;
        this.redraw_();
    }

    pointerUp(_e: PointerEvent): void {
        const drag = this.drag_;
        this.drag_ = null;
        if (!drag || this.done_) {
            return;
        }
        if (drag.moved) {
            this.commit_(drag.text);
        } else {
            this.redraw_();
        }
    }

    keyDown(e: KeyboardEvent): boolean {
        if (this.done_) {
            return false;
        }
        if (e.key === 'Escape') {
            if (this.drag_) {
                this.path_ = this.drag_.before;
                this.drag_ = null;
                this.selection_ = null;
                this.redraw_();
            } else {
                this.finish_();
            }
            return true;
        }
        if (e.key === 'Delete' || e.key === 'Backspace') {
            const selection = this.selection_;
            if (selection && selection.kind === 'anchor' && !this.drag_) {
                const path = this.path_.clone();
                if (path.remove(selection.index)) {
                    this.path_ = path;
                    this.selection_ = null;
                    this.commit_('Remove Anchor Point');
                }
            }
            // Never let the stage delete the element while its points are being edited.
            return true;
        }
        return false;
    }

    openPath(open: boolean): void {
        if (this.done_ || this.drag_) {
            return;
        }
        const path = this.path_.clone();
        if (open && path.closed) {
            const s = this.selection_;
            const n = path.anchors.length;
            // Open at an anchor: it becomes the start, so the segment that led into it goes.
            const segment = !s ? n - 1 : s.kind === 'segment' ? s.index : (s.index - 1 + n) % n;
            path.openSegment(segment);
            this.path_ = path;
            this.selection_ = null;
            this.commit_('Open Path');
        } else if (!open && !path.closed) {
            path.close();
            this.path_ = path;
            this.commit_('Close Path');
        }
    }

    straightSegment(): void {
        const s = this.selection_;
        if (this.done_ || this.drag_ || !s) {
            return;
        }
        const path = this.path_.clone();
        if (s.kind === 'segment') {
            path.straighten(s.index);
        } else {
            // An anchor: both of its segments, which leaves it a sharp corner.
            const n = path.anchors.length;
            path.straighten(s.index);
            path.straighten((s.index - 1 + n) % n);
        }
        this.path_ = path;
        this.commit_('Straight Segment');
    }

    refresh(): void {
        if (this.done_) {
            return;
        }
        const element = this.host_.element(this.elementId);
        if (!element) {
            // The element went away (undo of its insertion, another scene): nothing left to edit.
            this.finish_();
            return;
        }
        if (!this.drag_) {
            this.frame_ = new BoxFrame(element.box(), element.rotation());
            this.path_ = readPath(element);
            const s = this.selection_;
            if (s && s.index >= (s.kind === 'anchor' ? this.path_.anchors.length : this.path_.segmentCount)) {
                this.selection_ = null;
            }
        }
        this.redraw_();
    }

    cancel(): void {
        if (this.done_) {
            return;
        }
        this.leave_();
    }

    private selectAt_(clientX: number, clientY: number): void {
        if (this.done_ || this.drag_) {
            return;
        }
        const hit = this.hitTest_(clientX, clientY);
        if (hit.handle || hit.anchor !== null) {
            this.selection_ = { kind: 'anchor', index: hit.handle ? hit.handle.index : (hit.anchor as number) };
        } else if (hit.segment) {
            this.selection_ = { kind: 'segment', index: hit.segment.index };
        }
        this.redraw_();
    }

    private leave_(): void {
        this.done_ = true;
        this.drag_ = null;
        this.layer_.remove();
        this.host_.overlay.ownerDocument.removeEventListener('contextmenu', this.onContextMenu_, true);
        // The element carries the editing mark; take it off unless the studio already did.
        const element = this.host_.element(this.elementId);
        if (element && element.data()['editPoint'] === true) {
            this.host_.submit([editPointRecord(this.elementId, false)], 'End Edit Point', true);
        }
    }

    private finish_(): void {
        if (this.done_) {
            return;
        }
        this.leave_();
        this.host_.endTool(this);
    }

    private clientToLocal_(clientX: number, clientY: number): Point {
        return this.frame_.toLocal(this.host_.toStage(clientX, clientY));
    }

    private localToClient_(p: Point): Point {
        return this.host_.toClient(this.frame_.toStage(p));
    }

    private isOutside_(clientX: number, clientY: number): boolean {
        const p = this.clientToLocal_(clientX, clientY);
        const zoom = this.host_.zoom() > 0 ? this.host_.zoom() : 1;
        const margin = OUTSIDE_MARGIN / zoom;
        const box = this.frame_.box;
        return p.x < -margin || p.y < -margin || p.x > box.w + margin || p.y > box.h + margin;
    }

    /** Handles drawn and taken: those of the selected anchor, or of the selected segment. */
    private visibleHandles_(): HandleRef[] {
        const s = this.selection_;
        const path = this.path_;
        const refs: HandleRef[] = [];
        if (!s) {
            return refs;
        }
        if (s.kind === 'anchor') {
            const n = path.anchors.length;
            // The ends of an open path have no span on their outer side, nor a handle there.
            if (path.closed || s.index > 0) {
                refs.push({ index: s.index, side: 'in' });
            }
            if (path.closed || s.index < n - 1) {
                refs.push({ index: s.index, side: 'out' });
            }
        } else {
            refs.push({ index: s.index, side: 'out' }, { index: path.segmentEnd(s.index), side: 'in' });
        }
        return refs.filter((r) => {
            const a = path.anchors[r.index];
            if (!a) {
                return false;
            }
            const h = r.side === 'in' ? { x: a.inX, y: a.inY } : { x: a.outX, y: a.outY };
            // A handle on its anchor is hidden under it; Alt-drag on the anchor pulls it out.
            return Math.hypot(h.x - a.x, h.y - a.y) > 0.5;
        });
    }

    private handlePoint_(r: HandleRef): Point {
        const a = this.path_.anchors[r.index] as { inX: number; inY: number; outX: number; outY: number };
        return r.side === 'in' ? { x: a.inX, y: a.inY } : { x: a.outX, y: a.outY };
    }

    private hitTest_(clientX: number, clientY: number): {
        handle: HandleRef | null;
        anchor: number | null;
        segment: { index: number; t: number } | null;
    } {
        const radius: number = FEEDBACK.hitRadius;
        const near = (p: Point) => {
            const c = this.localToClient_(p);
            return Math.hypot(c.x - clientX, c.y - clientY);
        };
        let handle: HandleRef | null = null;
        let best = radius;
        for (const r of this.visibleHandles_()) {
            const d = near(this.handlePoint_(r));
            if (d <= best) {
                best = d;
                handle = r;
            }
        }
        if (handle) {
            return { handle, anchor: null, segment: null };
        }
        let anchor: number | null = null;
        best = radius;
        this.path_.anchors.forEach((a, i) => {
            const d = near(a);
            if (d <= best) {
                best = d;
                anchor = i;
            }
        });
        if (anchor !== null) {
            return { handle: null, anchor, segment: null };
        }
        const local = this.clientToLocal_(clientX, clientY);
        const zoom = this.host_.zoom() > 0 ? this.host_.zoom() : 1;
        let segment: { index: number; t: number } | null = null;
        best = radius / zoom;
        for (let i = 0; i < this.path_.segmentCount; ++i) {
            const found = nearestOnCubic(this.path_.segment(i), local);
            if (found.distance <= best) {
                best = found.distance;
                segment = { index: i, t: found.t };
            }
        }
        return { handle: null, anchor: null, segment };
    }

    /** Sends the path as it now stands, with the box moved and resized around it when needed. */
    private commit_(text: string): void {
        const element = this.host_.element(this.elementId);
        const path = this.path_.clone();
        const b = path.bounds();
        if (!element || !b) {
            this.redraw_();
            return;
        }
        const records: StageRecord[] = [];
        const frame = this.frame_;
        const moved =
            Math.abs(b.minX) > BOX_TOLERANCE ||
            Math.abs(b.minY) > BOX_TOLERANCE ||
            Math.abs(b.maxX - frame.box.w) > BOX_TOLERANCE ||
            Math.abs(b.maxY - frame.box.h) > BOX_TOLERANCE;
        let newFrame = frame;
        let geometry: StageRecord | null = null;
        if (moved) {
            const rect = { x: b.minX, y: b.minY, w: b.maxX - b.minX, h: b.maxY - b.minY };
            const reframed = frame.reframed(rect);
            geometry = boxChange(element, frame, reframed);
            if (geometry) {
                path.translate(-rect.x, -rect.y);
                newFrame = reframed;
            } else {
                // The box is not in plain pixels: the outline is fitted to it as it is.
                path.fitTo({ x: 0, y: 0, w: frame.box.w, h: frame.box.h });
            }
        }
        records.push(freeformPathRecord(this.elementId, path.toExport()));
        if (geometry) {
            records.push(geometry);
        }
        // Shown as sent until the studio's records come back and refresh() reads them.
        this.frame_ = newFrame;
        this.path_ = path;
        this.host_.submit(records, text);
        this.redraw_();
    }

    private redraw_(): void {
        const layer = this.layer_;
        layer.clear();
        if (this.done_) {
            return;
        }
        const toLayer = (p: Point) => layer.fromStage(this.frame_.toStage(p));
        const path = this.path_;
        const spanData = (i: number) => {
            const s = path.segment(i);
            const [a, b, c, d] = [s.p0, s.p1, s.p2, s.p3].map(toLayer) as [Point, Point, Point, Point];
            return { start: `M${a.x} ${a.y}`, curve: `C${b.x} ${b.y} ${c.x} ${c.y} ${d.x} ${d.y}` };
        };
        let outline = '';
        for (let i = 0; i < path.segmentCount; ++i) {
            const span = spanData(i);
            outline += (i === 0 ? span.start : '') + span.curve;
        }
        if (outline !== '') {
            layer.add('path', { d: outline, fill: 'none', stroke: FEEDBACK.stroke, 'stroke-width': 1 });
        }
        const s = this.selection_;
        if (s && s.kind === 'segment' && s.index < path.segmentCount) {
            const span = spanData(s.index);
            layer.add('path', { d: span.start + span.curve, fill: 'none', stroke: FEEDBACK.stroke, 'stroke-width': 3 });
        }
        for (const r of this.visibleHandles_()) {
            const a = toLayer(path.anchors[r.index] as Point);
            const h = toLayer(this.handlePoint_(r));
            layer.add('line', { x1: a.x, y1: a.y, x2: h.x, y2: h.y, stroke: FEEDBACK.stroke, 'stroke-width': 1 });
            layer.add('circle', {
                class: 'vetra-handle',
                cx: h.x,
                cy: h.y,
                r: FEEDBACK.handleRadius,
                fill: FEEDBACK.selectedFill,
                stroke: FEEDBACK.handleFill,
            });
        }
        path.anchors.forEach((anchor, i) => {
            const c = toLayer(anchor);
            const size = FEEDBACK.anchorSize;
            const selected = s !== null && s.kind === 'anchor' && s.index === i;
            layer.add('rect', {
                class: selected ? 'vetra-anchor vetra-selected' : 'vetra-anchor',
                x: c.x - size,
                y: c.y - size,
                width: 2 * size,
                height: 2 * size,
                fill: selected ? FEEDBACK.selectedFill : FEEDBACK.handleFill,
                stroke: FEEDBACK.stroke,
                transform: `rotate(${this.frame_.rotation} ${c.x} ${c.y})`,
            });
        });
    }
}

/** The element's path in its box's pixels, stretched as the stage draws it when it does not fill the box. */
function readPath(element: StageElement): EditPath {
    const path = EditPath.fromExport(element.path() ?? []);
    path.closed = path.anchors.length >= 2 && element.closed();
    const box = element.box();
    const b = path.bounds();
    if (
        b &&
        (Math.abs(b.minX) > BOX_TOLERANCE ||
            Math.abs(b.minY) > BOX_TOLERANCE ||
            Math.abs(b.maxX - box.w) > BOX_TOLERANCE ||
            Math.abs(b.maxY - box.h) > BOX_TOLERANCE)
    ) {
        path.fitTo({ x: 0, y: 0, w: box.w, h: box.h });
    }
    return path;
}

/**
 * The geometry record that moves the element's box from one frame to another, or null when the
 * box is not given in pixels from the left and top, where a shift on the stage is not a plain
 * difference of the stored values.
 */
function boxChange(element: StageElement, from: BoxFrame, to: BoxFrame): StageRecord | null {
    const r = element.data()['r'];
    if (!Array.isArray(r)) {
        return null;
    }
    const [left, top, width, height, coordinates] = r as unknown[];
    const pixels = [left, top, width, height].every((v) => typeof v === 'number' && isFinite(v));
    if (!pixels || (coordinates !== undefined && coordinates !== 0)) {
        return null;
    }
    return geometryRecord(element.id, [
        [GeometryProp.Left, (left as number) + to.box.x - from.box.x],
        [GeometryProp.Top, (top as number) + to.box.y - from.box.y],
        [GeometryProp.Width, to.box.w],
        [GeometryProp.Height, to.box.h],
    ]);
}
