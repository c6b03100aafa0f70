// Which element a pointer means: hit testing against the element boxes as drawn (turned boxes
// included), and the rules that pick the element a click selects, since a click inside a group
// selects the group until the group itself is selected.

import type { Point, Rect } from './contracts';
import type { ElementView } from '../player/elementview';
import { Kind } from '../player/elementview';
import { insideQuad, measure, rectsMeet } from './geometry';
import type { StageRenderer } from './render';
import { type SnapTargets, snapTargets } from './snap';

/** Whether the element shows on the stage and takes the pointer: visible and not locked, nor any parent. */
export function isPickable(renderer: StageRenderer, view: ElementView): boolean {
    for (let v: ElementView | null = view; v && v.kind !== Kind.Scene; v = v.parent) {
        const element = renderer.elementOf(v);
        if (!element || element['visible'] === false || element['locked'] === true) {
            return false;
        }
    }
    return view.node.getClientRects().length > 0;
}

/** The topmost pickable element whose box holds the stage point. */
export function elementAt(renderer: StageRenderer, p: Point): ElementView | null {
    const views = renderer.elementViews();
    // Later in tree order is drawn above.
    for (let i = views.length - 1; i >= 0; --i) {
        const view = views[i]!;
        if (!isPickable(renderer, view)) {
            continue;
        }
        if (insideQuad(p, measure(view).corners)) {
            return view;
        }
    }
    return null;
}

/** The chain from a view up to its top-level element, the view first. */
export function ancestry(view: ElementView): ElementView[] {
    const chain: ElementView[] = [];
    for (let v: ElementView | null = view; v && v.kind !== Kind.Scene; v = v.parent) {
        chain.push(v);
    }
    return chain;
}

/**
 * The element a click on `hit` selects: the innermost selected element of its chain, so that a
 * selected child of a group is dragged as itself; otherwise the top-level element.
 */
export function selectable(hit: ElementView, selection: ReadonlySet<number>): ElementView {
    const chain = ancestry(hit);
    for (const v of chain) {
        if (selection.has(v.id)) {
            return v;
        }
    }
    return chain[chain.length - 1] ?? hit;
}

/** One level into a group on double click: the child of `group` that holds `hit`. */
export function childWithin(group: ElementView, hit: ElementView): ElementView | null {
    const chain = ancestry(hit);
    const at = chain.indexOf(group);
    return at > 0 ? chain[at - 1]! : null;
}

/** Top-level pickable elements whose drawn bounds meet a stage rectangle. */
export function elementsIn(renderer: StageRenderer, band: Rect): ElementView[] {
    const found: ElementView[] = [];
    for (const view of renderer.scene.view.children) {
        if (isPickable(renderer, view) && rectsMeet(measure(view).bounds, band)) {
            found.push(view);
        }
    }
    return found;
}

/** Of a set of ids, those without a selected ancestor: moving a group moves its children already. */
export function outermost(renderer: StageRenderer, ids: Iterable<number>): ElementView[] {
    const set = new Set(ids);
    const views: ElementView[] = [];
    for (const id of set) {
        const view = renderer.view(id);
        if (!view) {
            continue;
        }
        let covered = false;
        for (let v = view.parent; v && v.kind !== Kind.Scene; v = v.parent) {
            if (set.has(v.id)) {
                covered = true;
                break;
            }
        }
        if (!covered) {
            views.push(view);
        }
    }
    return views;
}

/**
 * What a drag of `moving` snaps to: every other pickable element, the stage's edges and centre.
 * The moving elements' own parents and children are left out, as they move with them or hold them.
 */
export function stageSnapTargets(
    renderer: StageRenderer,
    moving: readonly ElementView[],
    stageW: number,
    stageH: number,
): SnapTargets {
    const skip = new Set<ElementView>();
    for (const view of moving) {
        for (let v: ElementView | null = view; v; v = v.parent) {
            skip.add(v);
        }
        const stack = [...view.children];
        while (stack.length > 0) {
            const child = stack.pop()!;
            skip.add(child);
            stack.push(...child.children);
        }
    }
    const boxes = renderer
        .elementViews()
        .filter((view) => !skip.has(view) && isPickable(renderer, view))
        .map((view) => measure(view).bounds);
    return snapTargets(boxes, stageW, stageH);
}
