// The scene snapshot the studio sends with currentSceneChanged, read into what the stage keeps: the
// scene's element tree in the stage form (current layout only), the resources, the container and
// the breakpoints. The tree is the page's working copy: records change it in place, and the
// renderer is built from it.

import { arr, bool, int, isObj, num, type Obj, str } from '../player/read';

/** An element object of the tree; the stage writes into it as records arrive. */
export type ElementData = { [key: string]: unknown };

export interface BreakpointState {
    responsive: boolean;
    /** (id, value) pairs, ascending by value; the first has value 0 when a direction has any. */
    h: [number, number][];
    v: [number, number][];
    /** The stored current pair, kept while responsive mode is off. */
    hCurrent: number;
    vCurrent: number;
}

export interface SceneData {
    readonly scene: ElementData;
    readonly sceneId: number;
    readonly resources: Map<number, unknown[]>;
    outputCss: string;
    readonly symbolResourceId: number;
    containerW: number;
    containerH: number;
    docAlign: number;
    autoAddKeyframe: boolean;
    showContainerHandler: boolean;
    transformTools: number;
    breakpoints: BreakpointState;
    readonly loaderData: Obj | null;
}

export class SceneDataError extends Error {}

function readPairs(raw: unknown): [number, number][] {
    const pairs: [number, number][] = [];
    for (const item of arr(raw)) {
        if (Array.isArray(item) && item.length === 2 && typeof item[0] === 'number' && typeof item[1] === 'number') {
            pairs.push([int(item[0], 0), int(item[1], 0)]);
        }
    }
    return pairs.sort((a, b) => a[1] - b[1]);
}

export function readBreakpointState(raw: unknown): BreakpointState {
    const b = isObj(raw) ? raw : {};
    return {
        responsive: bool(b['responsiveMode'], false),
        h: readPairs(b['h']),
        v: readPairs(b['v']),
        hCurrent: int(b['hCurrentId'], 0),
        vCurrent: int(b['vCurrentId'], 0),
    };
}

/** The layout the stage shows: the stored pair in responsive mode, else the base layout. */
export function shownLayout(b: BreakpointState): [number, number] {
    return b.responsive ? [b.hCurrent, b.vCurrent] : [0, 0];
}

/** Reads the JSON text of currentSceneChanged; throws SceneDataError when it is no scene at all. */
export function readSceneData(text: string): SceneData {
    let parsed: unknown;
    try {
        parsed = JSON.parse(text);
    } catch (error) {
        throw new SceneDataError(`the scene data is no JSON: ${String(error)}`);
    }
    if (!isObj(parsed) || !isObj(parsed['scene'])) {
        throw new SceneDataError('the scene data holds no scene');
    }
    const scene = parsed['scene'] as ElementData;
    const resources = new Map<number, unknown[]>();
    for (const entry of arr(parsed['resources'])) {
        if (Array.isArray(entry) && typeof entry[0] === 'number') {
            resources.set(entry[0], entry);
        }
    }
    const sceneR = arr(scene['r']);
    return {
        scene,
        sceneId: int(scene['id'], -1),
        resources,
        outputCss: str(parsed['outputCss'], ''),
        symbolResourceId: int(parsed['symbolResourceId'], -1),
        containerW: Math.max(1, num(parsed['containerW'], num(sceneR[2], 800))),
        containerH: Math.max(1, num(parsed['containerH'], num(sceneR[3], 600))),
        docAlign: int(parsed['docAlign'], 4),
        autoAddKeyframe: bool(parsed['autoAddKeyframe'], false),
        showContainerHandler: bool(parsed['showContainerHandler'], false),
        transformTools: int(parsed['transformTools'], 0),
        breakpoints: readBreakpointState(parsed['breakpoints']),
        loaderData: isObj(parsed['canvasLoaderData']) ? parsed['canvasLoaderData'] : null,
    };
}

/** Where an element object sits in the tree. */
export interface TreePlace {
    readonly element: ElementData;
    /** The parent object; the scene for top-level elements. */
    readonly parent: ElementData;
    readonly index: number;
}

export function childrenOf(element: ElementData): ElementData[] {
    let elems = element['elems'];
    if (!Array.isArray(elems)) {
        elems = [];
        element['elems'] = elems;
    }
    return elems as ElementData[];
}

/** Finds an element by id below `root` (the scene itself is not searched for). */
export function findElement(root: ElementData, id: number): TreePlace | null {
    const elems = root['elems'];
    if (!Array.isArray(elems)) {
        return null;
    }
    for (let i = 0; i < elems.length; ++i) {
        const child = elems[i] as unknown;
        if (!isObj(child)) {
            continue;
        }
        if (child['id'] === id) {
            return { element: child as ElementData, parent: root, index: i };
        }
        const inner = findElement(child as ElementData, id);
        if (inner) {
            return inner;
        }
    }
    return null;
}

/** Every element object below `root`, parents before children. */
export function eachElement(root: ElementData, visit: (element: ElementData, parent: ElementData) => void): void {
    for (const child of arr(root['elems'])) {
        if (isObj(child)) {
            visit(child as ElementData, root);
            eachElement(child as ElementData, visit);
        }
    }
}

/** Takes an element object out of its parent's list; empties "elems" as the studio leaves it out. */
export function detachElement(place: TreePlace): void {
    const elems = childrenOf(place.parent);
    const at = elems.indexOf(place.element);
    if (at >= 0) {
        elems.splice(at, 1);
    }
    if (elems.length === 0 && place.parent !== undefined) {
        delete place.parent['elems'];
    }
}

/** Puts an element object at `index` of a parent's list, at the end when the index is out of range. */
export function attachElement(parent: ElementData, element: ElementData, index: number): number {
    const elems = childrenOf(parent);
    const at = index >= 0 && index <= elems.length ? index : elems.length;
    elems.splice(at, 0, element);
    return at;
}
