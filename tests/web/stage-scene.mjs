// Shared setup of the stage page tests: a fake studio publishing "vtcanvas_<id>" with the canvas
// object's signals and slots, the page opened against it, and scene data made from the welcome
// sample by the studio's own export (`vetra export`), turned into the form the stage receives:
// the current layout only (the block keys at the top of each element, no "rp"), no event keys,
// the shown timeline's entries as "anims", and resources as file URLs.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { cpSync, existsSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { pageUrl, resourcesDir } from './browser.mjs';
import { startFakeChannel } from './fakechannel.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const repo = path.resolve(here, '..', '..');
const binDir = process.env.VETRA_BIN_DIR ?? path.join(repo, 'build', 'bin');

export const CANVAS_SIGNALS = [
    'play',
    'pause',
    'setCurrentTime',
    'autoKeyframeModeChanged',
    'dataChangedToJS',
    'insertRectangle',
    'insertRoundedRect',
    'insertEllipse',
    'insertShape',
    'startEditText',
    'stopEditText',
    'editPoint',
    'openPath',
    'straightSegment',
    'requestEditHtml',
    'zoomFactorChanged',
    'fitToViewportChanged',
    'snapEnabledChanged',
    'rulerVisibilityChanged',
    'containerHandlerVisibilityChanged',
    'transformToolChanged',
    'currentSceneChanged',
    'editTextOnSingleClicked',
    'execTextEditorCommand',
    'requestSendCurrentTextFormat',
    'updateMediaInfo',
    'finishAllTask',
    'needRepaint',
    'needUpdateScenePos',
    'cancelBuildingItem',
    'textEditShortcutsChanged',
    'changeStageView',
];

export const CANVAS_SLOTS = [
    'sendSceneDataToJS()',
    'submitCommandFromJS(QString,bool)',
    'setZoomFactor(double)',
    'setFitToViewport(bool)',
    'setSceneOffset(double,double)',
    'setScrollValue(double,double)',
    'pauseTimeline()',
    'setFocusedItemId(int)',
    'editSymbol(int)',
    'endEditSymbol()',
    'editTextInnerHTML(QString)',
    'onTextFormatChanged(QString)',
    'updateMediaProps(int,int,int,int,bool)',
    'onAllTaskFinished()',
    'onTextEditShortcutsChanged()',
    'setEditingBreakpoint(int,int,int)',
    'setCurrentBreakpoint(int,int)',
    'setEditingText(bool,int,int)',
    'getDoubleClickToEditText()',
    'onShowContextMenu()',
];

export function stageResources() {
    return resourcesDir(['canvas/index.html', 'canvas/vtcanvas.js', 'canvas/vtcanvas.css', 'qwebchannel.js']);
}

/** A fake studio with the canvas objects of the given ids. */
export async function startStudio(ids = [1]) {
    const objects = {};
    for (const id of ids) {
        objects[`vtcanvas_${id}`] = { signals: CANVAS_SIGNALS, slots: CANVAS_SLOTS };
    }
    return startFakeChannel({ objects });
}

let exported = null;

/** The welcome sample exported by the studio's command line, once per test file. */
export function exportWelcome() {
    if (exported) {
        return exported;
    }
    const vetra = path.join(binDir, 'vetra');
    assert.ok(existsSync(vetra), `${vetra} is missing: build the target vetra first`);
    const work = mkdtempSync(path.join(tmpdir(), 'vetra-stage-test-'));
    cpSync(path.join(repo, 'examples', 'welcome'), path.join(work, 'welcome'), { recursive: true });
    const out = path.join(work, 'out');
    execFileSync(vetra, ['export', path.join(work, 'welcome', 'welcome.vetra'), out], { stdio: 'ignore' });
    const script = readFileSync(path.join(out, 'welcome.js'), 'utf8');
    const data = JSON.parse(script.match(/var docData = (\{.*\});\n/)[1]);
    exported = { work, out, data, css: readFileSync(path.join(out, 'welcome.css'), 'utf8') };
    process.on('exit', () => rmSync(work, { recursive: true, force: true }));
    return exported;
}

const EVENT_KEYS = new Set(['e', 'pe']);

/** An element object of the export as the stage gets it: its current block, no layouts, no events. */
function stageElement(element) {
    const copy = {};
    for (const [key, value] of Object.entries(element)) {
        if (key === 'rp' || EVENT_KEYS.has(key)) {
            continue;
        }
        copy[key] = key === 'elems' ? value.map(stageElement) : value;
    }
    if ('ap' in copy) {
        copy.ap = false;
    }
    return copy;
}

/** The scene data of one scene of the welcome sample; `change` may adjust it before it is written. */
export function welcomeScene(sceneIndex = 0, change = (scene) => scene) {
    const { out, css } = exportWelcome();
    // A copy for each caller: tests change their scenes, and the stage writes into what it gets.
    const data = structuredClone(exportWelcome().data);
    const source = data.scenes[sceneIndex];
    const scene = stageElement(source);
    const timeline = source.timelines[0];
    const row = (timeline.ra ?? []).find((r) => r[0] === 0 && r[1] === 0);
    const anims = row ? row[2] : [];
    scene.timelines = [
        {
            id: timeline.id,
            n: timeline.n,
            dur: timeline.dur,
            ...(anims.length > 0 ? { anims } : {}),
            ...(timeline.l ? { l: timeline.l } : {}),
        },
    ];
    const fileUrl = (name) => pathToFileURL(path.join(out, data.resourceFolder, name)).href;
    const resources = data.resources.map((entry) => {
        const [id, type, name, file] = entry;
        if (type === 1 || type === 2) {
            return [id, type, name, file.map(fileUrl)];
        }
        if (type === 3) {
            return entry;
        }
        return [id, type, name, fileUrl(file)];
    });
    return {
        scene: change(scene),
        resources,
        outputCss: css,
        symbolResourceId: -1,
        containerW: data.w,
        containerH: data.h,
        docAlign: 4,
        autoAddKeyframe: false,
        showContainerHandler: false,
        transformTools: 0,
        breakpoints: { responsiveMode: false, h: data.b.h, hCurrentId: 0, vCurrentId: 0, nextId: 3 },
    };
}

/** Finds an element object by id in stage scene data. */
export function findElement(scene, id) {
    for (const child of scene.elems ?? []) {
        if (child.id === id) {
            return child;
        }
        const inner = findElement(child, id);
        if (inner) {
            return inner;
        }
    }
    return null;
}

/**
 * Opens the stage against `server` and shows `sceneData`. Console errors and uncaught exceptions
 * are collected in `problems`.
 */
export async function openStage(browser, server, sceneData, { canvasId = 1, width = 1200, height = 800 } = {}) {
    const html = path.join(stageResources(), 'canvas', 'index.html');
    const page = await browser.newPage({ viewport: { width, height } });
    page.setDefaultTimeout(10000);
    const problems = [];
    page.on('pageerror', (error) => problems.push(`uncaught: ${error.message}`));
    page.on('console', (message) => {
        if (message.type() === 'error') {
            problems.push(`console: ${message.text()}`);
        }
    });
    await page.goto(pageUrl(html, { webChannelBaseUrl: server.url }));
    const object = `vtcanvas_${canvasId}`;
    // Calls of pages opened before this one on the same studio are not this page's.
    const first = server.calls.length;
    let asked = server.calls.filter((c) => c.object === object && c.method === 'sendSceneDataToJS').length;
    await page.evaluate((id) => {
        window.canvasId = id;
    }, canvasId);
    await server.waitForCall((c) => c.object === object && c.method === 'sendSceneDataToJS' && --asked < 0);
    const stage = {
        page,
        problems,
        object,
        emit: (signal, ...args) => server.emitSignal(object, signal, args),
        async showScene(data) {
            server.emitSignal(object, 'currentSceneChanged', [true, JSON.stringify(data)]);
            await page.waitForSelector('#canvas-root:not([data-state])');
        },
        /** Sends records as one command of the studio, closed by record 41. */
        async records(...list) {
            for (const record of list) {
                server.emitSignal(object, 'dataChangedToJS', [JSON.stringify(record)]);
            }
            server.emitSignal(object, 'dataChangedToJS', [JSON.stringify({ cmd: 41, isUndoCmd: false })]);
            await settle(page);
        },
        calls: (method) => server.calls.slice(first).filter((c) => c.object === object && c.method === method),
    };
    if (sceneData) {
        await stage.showScene(sceneData);
    }
    return stage;
}

/** Waits until the page has handled what came over the channel and painted. */
export async function settle(page) {
    await page.evaluate(
        () =>
            new Promise((resolve) => setTimeout(() => requestAnimationFrame(() => requestAnimationFrame(resolve)), 30)),
    );
}

/** The client rectangle of an element's box on the stage. */
export function elementBox(page, id) {
    return page.$eval(`[data-vt-id="${id}"]`, (node) => {
        const r = node.getBoundingClientRect();
        return { x: r.left, y: r.top, w: r.width, h: r.height };
    });
}

/** Client position of a stage point: the stage box is at the origin of the stage, scaled by the zoom. */
export function stageToClient(page, x, y) {
    return page.$eval(
        '#stage',
        (node, p) => {
            const r = node.getBoundingClientRect();
            const zoom = r.width / node.offsetWidth;
            return { x: r.left + p.x * zoom, y: r.top + p.y * zoom };
        },
        { x, y },
    );
}

/** The commands the page submitted, parsed: { json, runOnly }. */
export function submitted(stage) {
    return stage.calls('submitCommandFromJS').map((c) => ({ json: JSON.parse(c.args[0]), runOnly: c.args[1] }));
}
