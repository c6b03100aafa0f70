// The stage as the editing tools see it (StageHost), and the element adapter they work on.

import type { PathAnchor, Point, StageElement, StageHost, StageRecord, StageTool } from './contracts';
import type { ElementView } from '../player/elementview';
import { isShapeKind, Kind } from '../player/elementview';
import { arr } from '../player/read';
import { measure } from './geometry';
import type { StageRenderer } from './render';

/** What the tool host reads from the page that runs it. */
export interface ToolHostPage {
    readonly overlay: HTMLElement;
    readonly renderer: StageRenderer | null;
    readonly selection: ReadonlySet<number>;
    toStage(clientX: number, clientY: number): Point;
    toClient(p: Point): Point;
    zoom(): number;
    snap(p: Point, ignore: readonly number[]): Point;
    time(): number;
    layout(): readonly [number, number];
    responsive(): boolean;
    submit(records: StageRecord[], text: string, runOnly: boolean): void;
    endTool(tool: StageTool): void;
    notify(slot: string, args: unknown[]): void;
}

/** A freeform's anchors as numbers only; anything else in the list is skipped. */
function anchorsOf(points: unknown): PathAnchor[] {
    const anchors: PathAnchor[] = [];
    for (const item of arr(points)) {
        if (Array.isArray(item) && item.length >= 6 && item.slice(0, 6).every((n) => typeof n === 'number')) {
            anchors.push((item as number[]).slice());
        }
    }
    return anchors;
}

export function stageElement(renderer: StageRenderer, view: ElementView): StageElement {
    const data = (): { readonly [key: string]: unknown } => renderer.elementOf(view) ?? {};
    const shape = (): readonly unknown[] => arr(data()['s']);
    return {
        id: view.id,
        kind: view.kind,
        get autoshapeType(): number {
            const type = shape()[0];
            return isShapeKind(view.kind) && typeof type === 'number' ? type : 0;
        },
        node: view.node,
        box: () => measure(view).box,
        rotation: () => measure(view).rotation,
        path: () => (view.kind === Kind.Freeform ? anchorsOf(shape()[1]) : null),
        closed: () => {
            if (view.kind !== Kind.Freeform) {
                return false;
            }
            const anchors = anchorsOf(shape()[1]);
            if (anchors.length < 2) {
                return false;
            }
            const first = anchors[0]!;
            const last = anchors[anchors.length - 1]!;
            if (Math.abs(first[0]! - last[0]!) <= 1e-12 && Math.abs(first[1]! - last[1]!) <= 1e-12) {
                return true;
            }
            // The start flag marks an open path whose ends do not meet.
            return first[6] !== 1;
        },
        data,
    };
}

export function createToolHost(page: ToolHostPage): StageHost {
    return {
        overlay: page.overlay,
        toStage: (x, y) => page.toStage(x, y),
        toClient: (p) => page.toClient(p),
        zoom: () => page.zoom(),
        snap: (p, ignore) => page.snap(p, ignore ?? []),
        element: (id) => {
            const renderer = page.renderer;
            const view = renderer?.view(id);
            return renderer && view ? stageElement(renderer, view) : null;
        },
        selectedIds: () => [...page.selection],
        time: () => page.time(),
        layout: () => page.layout(),
        responsive: () => page.responsive(),
        submit: (records, text, runOnly) => page.submit(records, text, runOnly === true),
        endTool: (tool) => page.endTool(tool),
        notify: (slot, ...args) => page.notify(slot, args),
    };
}
