// The exported sample, played in Chromium, against the model: `vetra export` writes the folder,
// the page is opened at two widths (one per breakpoint layout of the sample), every timeline of
// every scene is sought to a set of times, and what the player wrote into the DOM is compared
// with what `vetra values` computes from the project at the same time and layout.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { cpSync, existsSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { launchChromium, resourcesDir } from './browser.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const repo = path.resolve(here, '..', '..');
const binDir = process.env.VETRA_BIN_DIR ?? path.join(repo, 'build', 'bin');
const vetra = path.join(binDir, 'vetra');

const PX_TOLERANCE = 0.5;
const FRACTION_TOLERANCE = 0.005;
// Angles are written with three decimals; a turn along the path also goes through the export's
// rounded anchor points.
const DEG_TOLERANCE = 0.05;

let work;
let project;
let page;
let browser;

function run(args) {
    return execFileSync(vetra, args, { encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'] });
}

function modelValues(scene, timeline, time, layout) {
    return JSON.parse(
        run(['values', project, '--scene', String(scene), '--timeline', timeline, '--time', String(time),
            '--layout', layout.join(',')]),
    );
}

before(async () => {
    assert.ok(existsSync(vetra), `${vetra} is missing: build the target vetra first`);
    const resources = resourcesDir(['canvas/player/vtplayer.js', 'canvas/player/vtplayer.html']);
    work = mkdtempSync(path.join(tmpdir(), 'vetra-export-test-'));
    // A copy, so that opening the project never touches the repository's sample.
    cpSync(path.join(repo, 'examples', 'welcome'), path.join(work, 'welcome'), { recursive: true });
    project = path.join(work, 'welcome', 'welcome.vetra');
    const out = path.join(work, 'out');
    const printed = run(['export', project, out, '--player', path.join(resources, 'canvas', 'player')]);
    assert.match(printed, /welcome\.html/);
    for (const file of ['welcome.html', 'welcome.js', 'welcome.css', 'vtplayer.js']) {
        assert.ok(existsSync(path.join(out, file)), `${file} was not exported`);
    }
    browser = await launchChromium();
    page = await browser.newPage({ viewport: { width: 1000, height: 700 } });
    const errors = [];
    page.on('pageerror', (error) => errors.push(error.message));
    await page.goto(pathToFileURL(path.join(out, 'welcome.html')).href);
    const containerId = readFileSync(path.join(out, 'welcome.html'), 'utf8').match(/<div id="([^"]+)"/)[1];
    await page.evaluate(async (id) => {
        window.__doc = await KorvelVetra.ready(id);
    }, containerId);
    assert.deepEqual(errors, []);
});

after(async () => {
    await browser?.close();
    if (work) {
        rmSync(work, { recursive: true, force: true });
    }
});

/** Shows a scene at once, stops every timeline and seeks one; resolves after the frame is written. */
async function seekInPage(sceneIndex, timeline, time) {
    return page.evaluate(
        async ({ sceneIndex, timeline, time }) => {
            const doc = window.__doc;
            if (doc.sceneIndex !== sceneIndex) {
                doc.goToScene(sceneIndex, false, [0, 0]);
            }
            const frame = () => new Promise((resolve) => requestAnimationFrame(() => resolve()));
            await frame();
            // Pause every timeline of the scene: only the one under test may move anything.
            for (const name of window.__timelineNames ?? []) {
                doc.timeline(name)?.pause();
            }
            doc.timeline(timeline).pause();
            doc.seek(time, timeline);
            await frame();
            await frame();
            return { layout: [...doc.layout], sceneIndex: doc.sceneIndex };
        },
        { sceneIndex, timeline, time },
    );
}

/** Reads the animated values of one element from its node's inline style. */
async function domValues(id, keys) {
    return page.evaluate(
        ({ id, keys }) => {
            const doc = window.__doc;
            const node = id === 0 ? doc.elementNode(0) : doc.elementNode(id);
            if (!node) {
                return { missing: true };
            }
            const style = node.style;
            // Text properties sit on the text box inside the element's frame.
            const textStyle = (node.querySelector('.vetra-text') ?? node).style;
            const transforms = [];
            for (const match of (style.transform || '').matchAll(/(\w+)\(([^)]*)\)/g)) {
                transforms.push([match[1], match[2].split(',').map((part) => parseFloat(part))]);
            }
            const find = (name) => transforms.filter((t) => t[0] === name).map((t) => t[1]);
            const color = (text) => {
                const m = (text || '').match(/rgba?\(([^)]*)\)/);
                if (!m) {
                    return null;
                }
                const parts = m[1].split(',').map((p) => parseFloat(p));
                return [parts[0], parts[1], parts[2], Math.round((parts.length > 3 ? parts[3] : 1) * 255)];
            };
            const result = { transform: style.transform };
            for (const key of keys) {
                switch (key) {
                case 'o': result.o = style.opacity === '' ? 1 : parseFloat(style.opacity); break;
                case 'lt': result.lt = style.left; break;
                case 'tp': result.tp = style.top; break;
                case 'w': result.w = style.width; break;
                case 'h': result.h = style.height; break;
                case 'rZ': { const r = find('rotate'); result.rZ = r.length ? r[r.length - 1][0] : 0; break; }
                case 'rX': { const r = find('rotateX'); result.rX = r.length ? r[0][0] : 0; break; }
                case 'rY': { const r = find('rotateY'); result.rY = r.length ? r[0][0] : 0; break; }
                case 'sX': case 'sY': {
                    const s = find('scale3d').concat(find('scale'));
                    const v = s.length ? s[0] : [1, 1, 1];
                    result[key] = key === 'sX' ? v[0] : (v.length > 1 ? v[1] : v[0]);
                    break;
                }
                case 'skX': { const k = find('skewX'); result.skX = k.length ? k[0][0] : 0; break; }
                case 'skY': { const k = find('skewY'); result.skY = k.length ? k[0][0] : 0; break; }
                case 'pos': {
                    const t = find('translate3d').concat(find('translate'));
                    result.pos = t.length ? [t[0][0], t[0][1] || 0] : [0, 0];
                    const r = find('rotate');
                    result.orientRotate = r.length ? r[0][0] : 0;
                    break;
                }
                case 'fc': {
                    // Shapes are filled through their outline, boxes through their background.
                    const outline = node.querySelector(':scope > svg > path');
                    result.fc = color(outline ? outline.getAttribute('fill') : style.backgroundColor);
                    break;
                }
                case 'lw': case 'lc': {
                    // A shape's border is the stroke of its outline.
                    const outline = node.querySelector(':scope > svg > path');
                    if (key === 'lw') {
                        result.lw = parseFloat(outline ? outline.getAttribute('stroke-width') : style.borderTopWidth);
                    } else {
                        result.lc = color(outline ? outline.getAttribute('stroke') : style.borderTopColor);
                    }
                    break;
                }
                case 'tc': result.tc = color(textStyle.color); break;
                case 'fz': result.fz = parseFloat(textStyle.fontSize); break;
                default: result[key] = undefined;
                }
            }
            return result;
        },
        { id, keys },
    );
}

function compareLength(label, expected, unit, actual) {
    if (unit === '%') {
        assert.match(actual, /%$/, `${label}: expected a percent length, found ${actual}`);
        assert.ok(Math.abs(parseFloat(actual) - expected * 100) <= FRACTION_TOLERANCE * 100, `${label}: ${actual} vs ${expected * 100}%`);
    } else {
        assert.match(actual, /px$/, `${label}: expected pixels, found ${actual}`);
        assert.ok(Math.abs(parseFloat(actual) - expected) <= PX_TOLERANCE, `${label}: ${actual} vs ${expected}px`);
    }
}

function near(label, expected, actual, tolerance) {
    assert.ok(typeof actual === 'number' && Math.abs(actual - expected) <= tolerance,
        `${label}: page ${actual}, model ${expected}`);
}

/** Compares one element of `vetra values` with the page; returns how many values were checked. */
async function compareElement(context, element) {
    const keys = Object.keys(element.values);
    const dom = await domValues(element.id, keys);
    assert.ok(!dom.missing, `${context}: element ${element.id} (${element.name}) is not in the page`);
    let checked = 0;
    for (const key of keys) {
        const expected = element.values[key];
        const unit = element.units[key];
        const label = `${context} ${element.name}.${key} (transform "${dom.transform}")`;
        switch (key) {
        case 'lt': case 'tp': case 'w': case 'h':
            compareLength(label, expected, unit, dom[key]);
            break;
        case 'o':
            near(label, expected, dom.o, FRACTION_TOLERANCE);
            break;
        case 'sX': case 'sY':
            near(label, expected, dom[key], FRACTION_TOLERANCE);
            break;
        case 'rZ': case 'rX': case 'rY': case 'skX': case 'skY':
            near(label, expected, dom[key], DEG_TOLERANCE);
            break;
        case 'pos':
            near(`${label}[x]`, expected[0], dom.pos[0], PX_TOLERANCE);
            near(`${label}[y]`, expected[1], dom.pos[1], PX_TOLERANCE);
            if (typeof element.orient === 'number') {
                // At rest (and exactly on a key) the element does not turn.
                const turn = dom.orientRotate;
                assert.ok(turn === 0 || Math.abs(turn - element.orient) <= DEG_TOLERANCE,
                    `${label}: turned ${turn}, model orientation ${element.orient}`);
            }
            break;
        case 'fc': case 'tc': case 'lc':
            assert.ok(dom[key], `${label}: no colour in the page`);
            for (let i = 0; i < 4; ++i) {
                near(`${label}[${i}]`, expected[i], dom[key][i], 1);
            }
            break;
        case 'fz': case 'lw':
            near(label, expected, dom[key], PX_TOLERANCE);
            break;
        default:
            assert.fail(`${label}: the test has no reader for this property yet`);
        }
        ++checked;
    }
    return checked;
}

async function crossCheck(width, expectedLayout) {
    await page.setViewportSize({ width, height: 700 });
    // The layout follows the container's size on the next frame.
    await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
    const data = readFileSync(path.join(work, 'out', 'welcome.js'), 'utf8');
    const docData = JSON.parse(data.match(/var docData = (\{.*\});\n/)[1]);
    let checked = 0;
    for (let sceneIndex = 0; sceneIndex < docData.scenes.length; ++sceneIndex) {
        const scene = docData.scenes[sceneIndex];
        const names = scene.timelines.map((t) => t.n);
        await page.evaluate((list) => { window.__timelineNames = list; }, names);
        for (const timeline of scene.timelines) {
            const duration = modelValues(sceneIndex + 1, timeline.n, 0, expectedLayout).timeline.duration;
            const times = [...new Set([0, 1, 120, 250, 333, 500, 777, 1000, 1250, 1500, 1999, 2500, 3000, duration - 1, duration]
                .filter((t) => t >= 0 && t <= duration))];
            for (const time of times) {
                const shown = await seekInPage(sceneIndex, timeline.n, time);
                assert.deepEqual(shown.layout, expectedLayout, `width ${width}: the page chose layout ${shown.layout}`);
                const model = modelValues(sceneIndex + 1, timeline.n, time, expectedLayout);
                const context = `width ${width}, scene ${scene.n}, timeline ${timeline.n}, ${time} ms:`;
                for (const element of model.elements) {
                    checked += await compareElement(context, element);
                }
            }
        }
    }
    return checked;
}

test('the exported sample plays the model\'s values at every sampled time, in each layout', async () => {
    // The sample's breakpoints: ids 1 (from 0 px) and 2 (from 600 px) across the width.
    const wide = await crossCheck(1000, [2, 0]);
    const narrow = await crossCheck(500, [1, 0]);
    // Something must actually have been compared in both layouts.
    assert.ok(wide > 50 && narrow > 50, `only ${wide} and ${narrow} values were compared`);
});

test('the narrow layout shows its own overrides of the title', async () => {
    await page.setViewportSize({ width: 500, height: 700 });
    await seekInPage(0, 'Main', 0);
    const titleFont = () => getComputedStyle(window.__doc.elementNode(1).querySelector('.vetra-text')).fontSize;
    const narrow = await page.evaluate(titleFont);
    await page.setViewportSize({ width: 1000, height: 700 });
    await seekInPage(0, 'Main', 0);
    const wide = await page.evaluate(titleFont);
    assert.notEqual(narrow, wide, 'the title keeps one font size in both layouts');
});

test('clicks on elements with handlers run their actions', async () => {
    await page.setViewportSize({ width: 1000, height: 700 });
    await seekInPage(0, 'Main', 0);
    const data = readFileSync(path.join(work, 'out', 'welcome.js'), 'utf8');
    const docData = JSON.parse(data.match(/var docData = (\{.*\});\n/)[1]);
    const clicks = new Map();
    const walk = (element) => {
        for (const group of element.e ?? []) {
            if (group[0] === 100) {
                clicks.set(element.n, { id: element.id, actions: group.slice(1) });
            }
        }
        for (const child of element.elems ?? []) {
            walk(child);
        }
    };
    walk(docData.scenes[0]);
    // The sample's logo runs the function "greet", which marks the title; its card goes on to the
    // next scene.
    const logo = clicks.get('Logo');
    const card = clicks.get('Card');
    assert.equal(logo?.actions[0][0], 103, 'the logo is expected to run a function');
    assert.equal(card?.actions[0][0], 100, 'the card is expected to jump to a scene');

    await page.evaluate((id) => window.__doc.elementNode(id).click(), logo.id);
    const greeted = await page.evaluate(() => window.__doc.elementNode(1).getAttribute('data-greeted'));
    assert.equal(greeted, 'yes', 'the function of the logo did not run');

    const before = await page.evaluate(() => window.__doc.sceneIndex);
    await page.evaluate((id) => window.__doc.elementNode(id).click(), card.id);
    await page.waitForTimeout(50);
    assert.equal(await page.evaluate(() => window.__doc.sceneIndex), before + 1);
    // The second scene with its video and widget; kept for whoever wants to look at a frame.
    await page.screenshot({ path: path.join(process.env.VETRA_SCREENSHOT_DIR ?? work, 'welcome-scene2.png') });
});
