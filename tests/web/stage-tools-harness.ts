// A stand-in stage for the tool tests: a zoomed, offset stage layer with element views built the
// way the player builds them, an overlay, and a StageHost that records what the tools send
// instead of talking to the studio. Pointer and key events of the page go to the active tool.

import type { PathAnchor, Point, Rect, StageElement, StageHost, StageRecord, StageTool } from '../../web/src/stage/contracts';
import { freeformPath } from '../../web/src/player/shapes-freeform';
import { createDrawTool, createPointEditTool, createTextEditTool } from '../../web/src/stage/tools/index';

interface ElementDesc {
    id: number;
    kind: number;
    autoshapeType?: number;
    box: Rect;
    rotation?: number;
    path?: PathAnchor[];
    closed?: boolean;
    data?: { [key: string]: unknown };
    html?: string;
}

interface Setup {
    zoom: number;
    origin: Point;
    /** Grid step of the fake snapping, 0 for none. */
    grid: number;
    elements: ElementDesc[];
}

const log = {
    submits: [] as { records: StageRecord[]; text: string; runOnly: boolean }[],
    notifies: [] as unknown[][],
    ended: 0,
};

let setup: Setup = { zoom: 1, origin: { x: 0, y: 0 }, grid: 0, elements: [] };
let tool: StageTool | null = null;
const descs = new Map<number, ElementDesc>();
const nodes = new Map<number, HTMLElement>();

const stage = document.createElement('div');
stage.id = 'stage';
const overlay = document.createElement('div');
overlay.id = 'overlay';
document.body.append(stage, overlay);

function renderElement(desc: ElementDesc): HTMLElement {
    const node = document.createElement('div');
    node.className = 'element';
    node.dataset['id'] = String(desc.id);
    Object.assign(node.style, {
        position: 'absolute',
        left: desc.box.x + 'px',
        top: desc.box.y + 'px',
        width: desc.box.w + 'px',
        height: desc.box.h + 'px',
        transform: `rotate(${desc.rotation ?? 0}deg)`,
    });
    if (desc.path) {
        const points = desc.path.slice();
        if (desc.closed === false && points[0] && points[0].length < 7) {
            points[0] = [...points[0], 1];
        }
        node.innerHTML =
            `<svg width="${desc.box.w}" height="${desc.box.h}" overflow="visible" style="position:absolute;left:0;top:0">` +
            `<path d="${freeformPath(points, desc.box.w, desc.box.h)}" fill="#f4c542" stroke="#444" stroke-width="2"/></svg>`;
    }
    if (desc.html !== undefined) {
        const layer = document.createElement('div');
        layer.className = 'vetra-text';
        layer.style.cssText =
            'position:absolute;left:0;top:0;width:100%;height:100%;display:flex;flex-direction:column;justify-content:center;' +
            'font:18px Arial;color:rgb(67,67,67);text-align:center';
        const content = document.createElement('div');
        content.innerHTML = desc.html;
        layer.appendChild(content);
        node.appendChild(layer);
    }
    stage.appendChild(node);
    return node;
}

function stageElement(desc: ElementDesc): StageElement {
    return {
        id: desc.id,
        kind: desc.kind,
        autoshapeType: desc.autoshapeType ?? 0,
        get node() {
            return nodes.get(desc.id) as HTMLElement;
        },
        box: () => ({ ...desc.box }),
        rotation: () => desc.rotation ?? 0,
        path: () => (desc.path ? desc.path.map((a) => a.slice()) : null),
        closed: () => desc.closed ?? true,
        data: () => desc.data ?? {},
    };
}

const host: StageHost = {
    overlay,
    toStage: (x, y) => ({ x: (x - setup.origin.x) / setup.zoom, y: (y - setup.origin.y) / setup.zoom }),
    toClient: (p) => ({ x: p.x * setup.zoom + setup.origin.x, y: p.y * setup.zoom + setup.origin.y }),
    zoom: () => setup.zoom,
    snap: (p) => (setup.grid > 0 ? { x: Math.round(p.x / setup.grid) * setup.grid, y: Math.round(p.y / setup.grid) * setup.grid } : p),
    element: (id) => {
        const desc = descs.get(id);
        return desc ? stageElement(desc) : null;
    },
    selectedIds: () => [],
    time: () => 0,
    layout: () => [0, 0],
    responsive: () => false,
    submit: (records, text, runOnly) => {
        log.submits.push({ records: JSON.parse(JSON.stringify(records)), text, runOnly: runOnly === true });
    },
    endTool: (ended) => {
        if (ended === tool) {
            tool = null;
        }
        log.ended += 1;
    },
    notify: (slot, ...args) => {
        log.notifies.push([slot, ...args]);
    },
};

function configure(next: Setup): void {
    setup = next;
    stage.innerHTML = '';
    descs.clear();
    nodes.clear();
    Object.assign(stage.style, {
        position: 'absolute',
        left: next.origin.x + 'px',
        top: next.origin.y + 'px',
        width: '0',
        height: '0',
        transform: `scale(${next.zoom})`,
        transformOrigin: '0 0',
    });
    for (const desc of next.elements) {
        descs.set(desc.id, desc);
        nodes.set(desc.id, renderElement(desc));
    }
    log.submits.length = 0;
    log.notifies.length = 0;
    log.ended = 0;
    overlay.innerHTML = '';
    tool?.cancel();
    tool = null;
}

/** Gives an element new data, as the studio's records would, and tells the tool. */
function update(id: number, change: Partial<ElementDesc>): void {
    const desc = descs.get(id);
    if (!desc) {
        return;
    }
    Object.assign(desc, change);
    nodes.get(id)?.remove();
    nodes.set(id, renderElement(desc));
    tool?.refresh();
}

// Like the stage, only the main button goes to the tool; a right press opens the context menu.
window.addEventListener('pointerdown', (e) => {
    if (e.button === 0) {
        tool?.pointerDown(e);
    }
});
window.addEventListener('contextmenu', (e) => {
    e.preventDefault();
    log.notifies.push(['onShowContextMenu']);
});
window.addEventListener('pointermove', (e) => tool?.pointerMove(e));
window.addEventListener('pointerup', (e) => tool?.pointerUp(e));
window.addEventListener('keydown', (e) => {
    // The stage's own key: Delete removes the selected elements when no tool takes it.
    if (!(tool?.keyDown(e) ?? false) && e.key === 'Delete') {
        log.notifies.push(['stageDelete']);
    }
});

const harness = {
    log,
    configure,
    update,
    draw: (shape: Parameters<typeof createDrawTool>[1]) => {
        tool = createDrawTool(host, shape);
    },
    editPoints: (id: number) => {
        tool = createPointEditTool(host, id);
        return tool !== null;
    },
    editText: (id: number) => {
        tool = createTextEditTool(host, id);
        return tool !== null;
    },
    call: (method: string, ...args: unknown[]) => {
        const t = tool as unknown as { [name: string]: (...a: unknown[]) => unknown } | null;
        return t ? t[method]?.(...args) : undefined;
    },
    active: () => (tool ? tool.name : null),
};

(window as unknown as { harness: typeof harness }).harness = harness;
