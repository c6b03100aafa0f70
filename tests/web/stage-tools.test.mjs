// The stage's editing tools: the curve arithmetic on its own, then drawing, point editing and text
// editing driven by real pointer and key events in Chromium, against a stand-in stage
// (stage-tools-harness.ts) that records what the tools send to the studio.
//   node --test tests/web/stage-tools.test.mjs
// Set VETRA_SCREENSHOTS to a folder to keep pictures of the handles and of a drawing preview.

import assert from 'node:assert/strict';
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { launchChromium, webRequire } from './browser.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const toolsDir = path.join(here, '../../web/src/stage/tools');

let math;
let harnessScript;
let browser;
let tempDir;

before(async () => {
    const esbuild = webRequire('esbuild');
    tempDir = mkdtempSync(path.join(tmpdir(), 'vetra-stage-tools-'));
    const mathBundle = await esbuild.build({
        stdin: {
            contents: "export * from './geometry'; export * from './editpath';",
            resolveDir: toolsDir,
            loader: 'ts',
        },
        bundle: true, write: false, format: 'esm', platform: 'node',
    });
    const mathFile = path.join(tempDir, 'math.mjs');
    writeFileSync(mathFile, mathBundle.outputFiles[0].text);
    math = await import(pathToFileURL(mathFile).href);
    const harness = await esbuild.build({
        entryPoints: [path.join(here, 'stage-tools-harness.ts')],
        bundle: true, write: false, format: 'iife', target: 'chrome87',
    });
    harnessScript = harness.outputFiles[0].text;
    browser = await launchChromium();
});

after(async () => {
    await browser?.close();
    rmSync(tempDir, { recursive: true, force: true });
});

// ---------------------------------------------------------------------------------------------
// Independent arithmetic for the expectations

function bezier(p0, p1, p2, p3, t) {
    const s = 1 - t;
    return [0, 1].map((k) => s * s * s * p0[k] + 3 * s * s * t * p1[k] + 3 * s * t * t * p2[k] + t * t * t * p3[k]);
}

/** Points along an exported path (arrays of x, y, x1, y1, x2, y2), closed unless flagged open. */
function samplePath(points, perSpan = 200) {
    const open = points[0]?.[6] === 1;
    const count = open ? points.length - 1 : points.length;
    const out = [];
    for (let i = 0; i < count; ++i) {
        const a = points[i];
        const b = points[(i + 1) % points.length];
        for (let j = 0; j <= perSpan; ++j) {
            out.push(bezier([a[0], a[1]], [a[4], a[5]], [b[2], b[3]], [b[0], b[1]], j / perSpan));
        }
    }
    return out;
}

/** The largest distance from a point of `from` to the polyline through the points of `to`. */
function farthest(from, to) {
    let worst = 0;
    for (const p of from) {
        let best = Infinity;
        for (let i = 0; i + 1 < to.length; ++i) {
            const [a, b] = [to[i], to[i + 1]];
            const dx = b[0] - a[0];
            const dy = b[1] - a[1];
            const length2 = dx * dx + dy * dy;
            const t = length2 > 0 ? Math.max(0, Math.min(1, ((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length2)) : 0;
            best = Math.min(best, Math.hypot(p[0] - a[0] - t * dx, p[1] - a[1] - t * dy));
        }
        worst = Math.max(worst, best);
    }
    return worst;
}

/** A local point of a box turned `deg` degrees clockwise about its centre, in stage pixels. */
function onStage(box, deg, p) {
    const r = (deg * Math.PI) / 180;
    const dx = p[0] - box.w / 2;
    const dy = p[1] - box.h / 2;
    return [box.x + box.w / 2 + dx * Math.cos(r) - dy * Math.sin(r), box.y + box.h / 2 + dx * Math.sin(r) + dy * Math.cos(r)];
}

function assertNear(actual, expected, tolerance, message) {
    assert.ok(
        actual.length === expected.length && actual.every((v, i) => Math.abs(v - expected[i]) <= tolerance),
        `${message}: ${JSON.stringify(actual)} is not ${JSON.stringify(expected)}`,
    );
}

// ---------------------------------------------------------------------------------------------
// Curve arithmetic

test('a split span traces the same curve, and the nearest point is found on any span', () => {
    const spans = [
        { p0: { x: 0, y: 0 }, p1: { x: 30, y: 90 }, p2: { x: 120, y: -40 }, p3: { x: 150, y: 60 } },
        { p0: { x: 10, y: 10 }, p1: { x: 10, y: 10 }, p2: { x: 80, y: 80 }, p3: { x: 80, y: 80 } },
        // A loop: two parts of the curve pass near the same points.
        { p0: { x: 0, y: 0 }, p1: { x: 200, y: 100 }, p2: { x: -100, y: 100 }, p3: { x: 100, y: 0 } },
    ];
    for (const c of spans) {
        const xy = (p) => [p.x, p.y];
        for (const t of [0.1, 0.5, 0.83]) {
            const [left, right] = math.splitCubic(c, t);
            // Halves meet at the cut and reproduce the original at the mapped parameters.
            for (const u of [0, 0.25, 0.6, 1]) {
                const original = bezier(xy(c.p0), xy(c.p1), xy(c.p2), xy(c.p3), u * t);
                assertNear(xy(math.cubicPoint(left, u)), original, 1e-9, `left half at ${u} of cut ${t}`);
                const later = bezier(xy(c.p0), xy(c.p1), xy(c.p2), xy(c.p3), t + u * (1 - t));
                assertNear(xy(math.cubicPoint(right, u)), later, 1e-9, `right half at ${u} of cut ${t}`);
            }
            // A point on the curve, and one pushed off it along the normal, lead back to t.
            const on = math.cubicPoint(c, t);
            const found = math.nearestOnCubic(c, on);
            assert.ok(found.distance < 1e-4, `point on curve found at distance ${found.distance}`);
        }
    }
    const straight = spans[1];
    const off = math.nearestOnCubic(straight, { x: 45 + 5, y: 45 - 5 });
    assertNear([off.point.x, off.point.y], [45, 45], 1e-4, 'foot of the perpendicular on a straight span');
    assert.ok(Math.abs(off.distance - Math.SQRT2 * 5) < 1e-4);
    const ends = math.nearestOnCubic(straight, { x: -20, y: 0 });
    assert.equal(ends.t, 0, 'a point beyond the start is nearest to the start');
});

test('bounds hold the curve, not its handles; a turned frame maps both ways and reframes in place', () => {
    const arch = { p0: { x: 0, y: 0 }, p1: { x: 0, y: -100 }, p2: { x: 100, y: -100 }, p3: { x: 100, y: 0 } };
    const b = math.cubicsBounds([arch]);
    // The arch peaks at 0.75 of its handle height.
    assertNear([b.minX, b.minY, b.maxX, b.maxY], [0, -75, 100, 0], 1e-9, 'arch bounds');

    const box = { x: 40, y: 30, w: 200, h: 100 };
    for (const deg of [0, 30, 90, -135]) {
        const frame = new math.BoxFrame(box, deg);
        for (const p of [[0, 0], [200, 100], [17, 83]]) {
            const s = frame.toStage({ x: p[0], y: p[1] });
            assertNear([s.x, s.y], onStage(box, deg, p), 1e-9, `stage point at ${deg}°`);
            const back = frame.toLocal(s);
            assertNear([back.x, back.y], p, 1e-9, `round trip at ${deg}°`);
        }
        // A smaller box inside: local points shifted by its corner stay where they were on the stage.
        const inner = { x: -20, y: 10, w: 150, h: 120 };
        const moved = frame.reframed(inner);
        for (const p of [[0, 0], [75, 33], [150, 120]]) {
            const before = frame.toStage({ x: p[0] + inner.x, y: p[1] + inner.y });
            const after = moved.toStage({ x: p[0], y: p[1] });
            assertNear([after.x, after.y], [before.x, before.y], 1e-9, `reframed point at ${deg}°`);
        }
    }
});

test('paths read and write the exchanged form, and edits keep the outline', () => {
    // Ends that meet make a closed path whatever the flag; the repeated end is merged.
    const meeting = math.EditPath.fromExport([[0, 0, 0, 0, 5, 0, 1], [50, 50, 50, 40, 50, 60], [0, 0, -5, 0, 0, 0]]);
    assert.equal(meeting.closed, true);
    assert.equal(meeting.anchors.length, 2);
    assert.deepEqual([meeting.anchors[0].inX, meeting.anchors[0].outX], [-5, 5]);
    const open = math.EditPath.fromExport([[0, 0, 0, 0, 0, 0, 1], [10, 0, 10, 0, 10, 0], 'junk', [10, 10, NaN, 3, 10, 10]]);
    assert.equal(open.closed, false);
    assert.equal(open.anchors.length, 3, 'non-array items are skipped');
    assert.deepEqual(open.anchors[2], { x: 10, y: 10, inX: 10, inY: 3, outX: 10, outY: 10 }, 'a damaged handle lies on its anchor');
    assert.deepEqual(open.toExport()[0], [0, 0, 0, 0, 0, 0, 1]);
    assert.equal(math.EditPath.fromExport([[0, 0, 0, 0, 0, 0], [9, 9, 9, 9, 9, 9]]).closed, true, 'no flag: closed');

    const square = [[0, 0, 0, -20, 20, 0], [100, 0, 80, 0, 100, 20], [100, 100, 100, 80, 80, 100], [0, 100, 20, 100, 0, 80]];
    const path = math.EditPath.fromExport(square);
    const before = samplePath(path.toExport());
    // Including the closing span, whose new anchor goes to the end of the list.
    for (const [segment, t] of [[1, 0.3], [3, 0.5]]) {
        path.insertAt(segment, t);
    }
    assert.equal(path.anchors.length, 6);
    const after = samplePath(path.toExport());
    assert.ok(farthest(before, after) < 0.05 && farthest(after, before) < 0.05, 'inserting anchors keeps the outline');

    const opened = math.EditPath.fromExport(square);
    opened.openSegment(1);
    const written = opened.toExport();
    assert.deepEqual(written.map((a) => [a[0], a[1]]), [[100, 100], [0, 100], [0, 0], [100, 0]], 'starts after the removed segment');
    assert.equal(written[0][6], 1);
    opened.close();
    assert.equal(opened.toExport()[0].length, 6);
    assert.ok(farthest(samplePath(opened.toExport()), before) < 1e-9, 'closing again restores the outline');
});

// ---------------------------------------------------------------------------------------------
// The browser side

async function openHarness(config) {
    const page = await browser.newPage({ viewport: { width: 900, height: 700 } });
    page.setDefaultTimeout(10000);
    const problems = [];
    page.on('pageerror', (error) => problems.push(error.message));
    await page.setContent('<!doctype html><html><body style="margin:0;font-family:sans-serif"></body></html>');
    await page.addScriptTag({ content: harnessScript });
    await page.evaluate((c) => harness.configure(c), { zoom: 1, origin: { x: 0, y: 0 }, grid: 0, elements: [], ...config });
    return { page, problems };
}

const log = (page) => page.evaluate(() => JSON.parse(JSON.stringify(harness.log)));

async function screenshot(page, name) {
    const dir = process.env.VETRA_SCREENSHOTS;
    if (dir) {
        mkdirSync(dir, { recursive: true });
        await page.screenshot({ path: path.join(dir, name) });
    }
}

/** The element object and the following parameter values of the one insertion sent. */
function insertion(entries) {
    assert.equal(entries.submits.length, 1, `one command: ${JSON.stringify(entries.submits)}`);
    const [record] = entries.submits[0].records;
    assert.equal(entries.submits[0].records.length, 1);
    assert.equal(record.cmd, 1);
    assert.equal(record.params[0].type, 11);
    return { element: record.params[0].value, rest: record.params.slice(1), text: entries.submits[0].text };
}

test('drawing a box shape inserts the dragged box: Shift squares it, Alt centres it, a click makes the default size', async () => {
    // Zoom 2 with the stage at 50, 40: client 150, 140 is stage 50, 50.
    const cases = [
        { name: 'drag', shape: { kind: 'rectangle' }, to: [350, 240], box: [50, 50, 100, 50] },
        { name: 'drag up and left', shape: { kind: 'rectangle' }, to: [110, 120], box: [30, 40, 20, 10] },
        { name: 'shift', shape: { kind: 'rectangle' }, to: [350, 240], keys: ['Shift'], box: [50, 50, 100, 100] },
        { name: 'alt', shape: { kind: 'ellipse' }, to: [350, 240], keys: ['Alt'], box: [-50, 0, 200, 100], divShape: 21 },
        { name: 'shift alt', shape: { kind: 'roundedRect' }, to: [350, 240], keys: ['Shift', 'Alt'], box: [-50, -50, 200, 200], divShape: 12 },
        { name: 'click', shape: { kind: 'rectangle' }, to: null, box: [50, 50, 100, 100] },
        { name: 'snapped', shape: { kind: 'rectangle' }, to: [353, 247], grid: 10, box: [50, 50, 100, 50] },
    ];
    const { page, problems } = await openHarness({ zoom: 2, origin: { x: 50, y: 40 } });
    for (const c of cases) {
        await page.evaluate((grid) => harness.configure({ zoom: 2, origin: { x: 50, y: 40 }, grid, elements: [] }), c.grid ?? 0);
        await page.evaluate((shape) => harness.draw(shape), c.shape);
        for (const key of c.keys ?? []) {
            await page.keyboard.down(key);
        }
        await page.mouse.move(150, 140);
        await page.mouse.down();
        if (c.to) {
            await page.mouse.move(c.to[0], c.to[1], { steps: 4 });
            if (c.name === 'shift') {
                await screenshot(page, 'draw-preview.png');
                assert.equal(await page.locator('#overlay svg path').count(), 1, 'a preview is drawn while dragging');
            }
        }
        await page.mouse.up();
        for (const key of c.keys ?? []) {
            await page.keyboard.up(key);
        }
        const { element, rest } = insertion(await log(page));
        assert.equal(element.type, 5, c.name);
        assert.deepEqual([element.path.l, element.path.t, element.path.w, element.path.h], c.box, c.name);
        assert.equal(element.shapeType, c.divShape, `${c.name}: shape type`);
        assert.deepEqual(rest, [], c.name);
        assert.equal((await log(page)).ended, 1, `${c.name}: the tool ends`);
        assert.equal(await page.locator('#overlay svg').count(), 0, `${c.name}: the preview goes`);
    }
    assert.deepEqual(problems, []);
    await page.close();
});

test('autoshapes carry their type and default adjustments, lines their two-point open path; Escape inserts nothing', async () => {
    const { page, problems } = await openHarness({});
    const drag = async (shape, from, to, keys = []) => {
        await page.evaluate(() => harness.configure({ zoom: 1, origin: { x: 0, y: 0 }, grid: 0, elements: [] }));
        await page.evaluate((s) => harness.draw(s), shape);
        await page.mouse.move(...from);
        await page.mouse.down();
        for (const key of keys) {
            await page.keyboard.down(key);
        }
        await page.mouse.move(...to, { steps: 3 });
    };
    const release = async (keys = []) => {
        await page.mouse.up();
        for (const key of keys) {
            await page.keyboard.up(key);
        }
    };

    await drag({ kind: 'autoshape', type: 15 }, [100, 100], [300, 180]);
    await screenshot(page, 'draw-arrow-preview.png');
    await page.mouse.up();
    let { element, rest } = insertion(await log(page));
    assert.equal(element.type, 9);
    assert.deepEqual(rest, [{ type: 1, value: 15 }, { type: 1, value: 2 }, { type: 2, value: 0.5 }, { type: 2, value: 0.5 }]);

    // A line from lower left to upper right: the path runs inside its box from corner to corner.
    await drag({ kind: 'autoshape', type: 591 }, [100, 200], [260, 120]);
    await page.mouse.up();
    ({ element, rest } = insertion(await log(page)));
    assert.equal(element.type, 11);
    assert.deepEqual(element.path, { l: 100, t: 120, w: 160, h: 80 });
    assert.deepEqual(rest[0], { type: 1, value: 591 });
    assert.equal(rest[1].type, 5);
    assert.deepEqual(JSON.parse(rest[1].value), [[0, 80, 0, 80, 0, 80, 1], [160, 0, 160, 0, 160, 0]]);

    // Shift turns a line to the nearest 45 degrees.
    await drag({ kind: 'autoshape', type: 590 }, [100, 100], [300, 112], ['Shift']);
    await release(['Shift']);
    ({ element } = insertion(await log(page)));
    assert.deepEqual([element.path.w, element.path.h], [200, 0]);

    await drag({ kind: 'ellipse' }, [100, 100], [300, 180]);
    await page.keyboard.press('Escape');
    await page.mouse.up();
    const entries = await log(page);
    assert.equal(entries.submits.length, 0);
    assert.equal(entries.ended, 1);
    assert.equal(await page.locator('#overlay svg').count(), 0);
    assert.deepEqual(problems, []);
    await page.close();
});

test('traced freeforms: a curve through its clicks, a freeform shape closed on its first point, a scribble along the stroke', async () => {
    const { page, problems } = await openHarness({});
    const fresh = (shape) =>
        page.evaluate((s) => {
            harness.configure({ zoom: 1, origin: { x: 0, y: 0 }, grid: 0, elements: [] });
            harness.draw(s);
        }, shape);

    await fresh({ kind: 'autoshape', type: 593 });
    await page.mouse.click(100, 200);
    await page.mouse.click(200, 100);
    await page.mouse.dblclick(300, 200);
    let { element, rest } = insertion(await log(page));
    assert.equal(element.type, 11);
    assert.deepEqual(rest[0], { type: 1, value: 593 });
    let points = JSON.parse(rest[1].value);
    assert.deepEqual(points.map((a) => [a[0] + element.path.l, a[1] + element.path.t]), [[100, 200], [200, 100], [300, 200]]);
    assert.equal(points[0][6], 1, 'a curve ended by a double click is open');
    const middle = points[1];
    assert.ok(Math.abs(middle[2] - middle[0]) > 1 && Math.abs(middle[3] - middle[1]) < 1e-9, 'smooth through the top point');

    await fresh({ kind: 'autoshape', type: 594 });
    for (const [x, y] of [[100, 100], [200, 100], [200, 200], [102, 101]]) {
        await page.mouse.click(x, y);
    }
    ({ element, rest } = insertion(await log(page)));
    points = JSON.parse(rest[1].value);
    assert.deepEqual(element.path, { l: 100, t: 100, w: 100, h: 100 });
    assert.deepEqual(points, [[0, 0, 0, 0, 0, 0], [100, 0, 100, 0, 100, 0], [100, 100, 100, 100, 100, 100]], 'closed, corners');

    await fresh({ kind: 'autoshape', type: 595 });
    const stroke = [];
    for (let i = 0; i <= 60; ++i) {
        stroke.push([100 + i * 5, 200 + 60 * Math.sin(i / 8)]);
    }
    await page.mouse.move(...stroke[0]);
    await page.mouse.down();
    for (const p of stroke.slice(1)) {
        await page.mouse.move(...p);
    }
    await page.mouse.up();
    ({ element, rest } = insertion(await log(page)));
    points = JSON.parse(rest[1].value);
    assert.equal(points[0][6], 1, 'a scribble ending away from its start is open');
    assert.ok(points.length >= 4 && points.length < stroke.length / 2, `${points.length} anchors for ${stroke.length} pointer points`);
    const drawn = samplePath(points, 60).map(([x, y]) => [x + element.path.l, y + element.path.t]);
    assert.ok(farthest(stroke, drawn) < 3, `the curve follows the hand within 3 px (${farthest(stroke, drawn)})`);
    assert.deepEqual(problems, []);
    await page.close();
});

// A closed oval of four smooth anchors that fills its 200 × 100 box.
const OVAL = [
    [0, 50, 0, 77.6, 0, 22.4],
    [100, 0, 44.8, 0, 155.2, 0],
    [200, 50, 200, 22.4, 200, 77.6],
    [100, 100, 155.2, 100, 44.8, 100],
];
const ZOOM = 1.5;
const ORIGIN = { x: 60, y: 50 };

function freeform(rotation, extra = {}) {
    return {
        id: 7, kind: 11, autoshapeType: 594, box: { x: 100, y: 80, w: 200, h: 100 }, rotation,
        path: OVAL, closed: true, data: { r: [100, 80, 200, 100, 0] }, ...extra,
    };
}

const toClient = ([x, y]) => [x * ZOOM + ORIGIN.x, y * ZOOM + ORIGIN.y];

/**
 * Stage positions of the anchors and handles a command leaves: its path placed in the box of its
 * geometry record, or in the old box when there is none.
 */
function placedPath(submit, oldBox, rotation) {
    const pathRecord = submit.records.find((r) => r.cmd === 1036);
    assert.ok(pathRecord, `a path record: ${JSON.stringify(submit.records)}`);
    assert.equal(pathRecord.params[0].value, 7);
    const points = JSON.parse(pathRecord.params[1].value);
    const geometry = submit.records.find((r) => r.cmd === 1000);
    let box = oldBox;
    if (geometry) {
        assert.deepEqual(geometry.params[4], { type: 33, value: [0, 2, 4, 5] });
        const [l, t, w, h] = geometry.params.slice(5).map((p) => p.value);
        box = { x: l, y: t, w, h };
    }
    const b = samplePath(points, 50).reduce(
        (acc, [x, y]) => [Math.min(acc[0], x), Math.min(acc[1], y), Math.max(acc[2], x), Math.max(acc[3], y)],
        [Infinity, Infinity, -Infinity, -Infinity],
    );
    assertNear(b, [0, 0, box.w, box.h], 0.05, 'the path fills its box');
    return {
        points,
        open: points[0][6] === 1,
        anchors: points.map((a) => onStage(box, rotation, [a[0], a[1]])),
        handles: points.map((a) => [onStage(box, rotation, [a[2], a[3]]), onStage(box, rotation, [a[4], a[5]])]),
    };
}

test('point editing: anchors move with their handles, handles mirror, the box follows the outline', async () => {
    for (const rotation of [0, 30]) {
        const { page, problems } = await openHarness({ zoom: ZOOM, origin: ORIGIN, elements: [freeform(rotation)] });
        const box = { x: 100, y: 80, w: 200, h: 100 };
        const stageOf = (p) => onStage(box, rotation, p);
        assert.equal(await page.evaluate(() => harness.editPoints(7)), true);
        let entries = await log(page);
        assert.deepEqual(entries.submits[0], { records: [{ cmd: 1037, params: [{ type: 1, value: 7 }, { type: 4, value: true }] }], text: 'Edit Points', runOnly: true });
        assert.equal(await page.locator('#overlay rect.vetra-anchor').count(), 4);

        // The top anchor goes up and right by 30 and 15 client pixels: out of the box.
        const top = toClient(stageOf([100, 0]));
        await page.mouse.move(...top);
        await page.mouse.down();
        await page.mouse.move(top[0] + 30, top[1] - 15, { steps: 3 });
        if (rotation === 30) {
            await screenshot(page, 'point-edit-drag.png');
        }
        await page.mouse.up();
        entries = await log(page);
        assert.equal(entries.submits.length, 2, `rotation ${rotation}: one command for the drag`);
        const moved = placedPath(entries.submits[1], box, rotation);
        assert.equal(entries.submits[1].text, 'Move Anchor Point');
        assert.ok(entries.submits[1].records.some((r) => r.cmd === 1000), 'the box grows with the outline');
        const delta = [30 / ZOOM, -15 / ZOOM];
        const shift = (p) => [p[0] + delta[0], p[1] + delta[1]];
        assertNear(moved.anchors[1], shift(stageOf([100, 0])), 0.01, `rotation ${rotation}: the anchor lands under the pointer`);
        assertNear(moved.handles[1][0], shift(stageOf([44.8, 0])), 0.01, 'its first handle follows');
        assertNear(moved.handles[1][1], shift(stageOf([155.2, 0])), 0.01, 'its second handle follows');
        for (const i of [0, 2, 3]) {
            assertNear(moved.anchors[i], stageOf(OVAL[i].slice(0, 2)), 0.01, `rotation ${rotation}: anchor ${i} stays`);
        }

        // The studio answers with the new path and box; then a handle of the right anchor is dragged.
        const geometry = entries.submits[1].records.find((r) => r.cmd === 1000).params.slice(5).map((p) => p.value);
        const newBox = { x: geometry[0], y: geometry[1], w: geometry[2], h: geometry[3] };
        await page.evaluate(([b, p, r]) => harness.update(7, { box: b, path: p, data: { r: [b.x, b.y, b.w, b.h, 0], editPoint: true } }),
            [newBox, moved.points, rotation]);
        const right = moved.anchors[2];
        await page.mouse.click(...toClient(right));
        assert.equal((await log(page)).submits.length, 2, 'selecting sends nothing');
        const handle = toClient(moved.handles[2][1]);
        for (const alt of [false, true]) {
            const before = (await log(page)).submits.length;
            await page.mouse.move(...handle);
            if (alt) {
                await page.keyboard.down('Alt');
            }
            await page.mouse.down();
            await page.mouse.move(handle[0] + 15, handle[1] + 30, { steps: 3 });
            await page.mouse.up();
            if (alt) {
                await page.keyboard.up('Alt');
            }
            entries = await log(page);
            assert.equal(entries.submits.length, before + 1);
            const edited = placedPath(entries.submits[before], newBox, rotation);
            const dragged = [moved.handles[2][1][0] + 10, moved.handles[2][1][1] + 20];
            assertNear(edited.handles[2][1], dragged, 0.01, `alt ${alt}: the handle follows the pointer`);
            const opposite = alt ? moved.handles[2][0] : [2 * right[0] - dragged[0], 2 * right[1] - dragged[1]];
            assertNear(edited.handles[2][0], opposite, 0.01, `alt ${alt}: the other handle ${alt ? 'stays' : 'mirrors'}`);
            assertNear(edited.anchors[2], right, 0.01, 'the anchor stays');
            // Back to the studio's state before the next drag.
            await page.evaluate(([b, p]) => harness.update(7, { box: b, path: p }), [newBox, moved.points]);
        }
        assert.deepEqual(problems, []);
        await page.close();
    }
});

test('point editing: a press on the outline adds an anchor without changing the curve; Delete removes one', async () => {
    const rotation = 30;
    const box = { x: 100, y: 80, w: 200, h: 100 };
    const { page, problems } = await openHarness({ zoom: ZOOM, origin: ORIGIN, elements: [freeform(rotation)] });
    await page.evaluate(() => harness.editPoints(7));
    const a = OVAL[1];
    const b = OVAL[2];
    const onCurve = bezier([a[0], a[1]], [a[4], a[5]], [b[2], b[3]], [b[0], b[1]], 0.37);
    await page.mouse.click(...toClient(onStage(box, rotation, onCurve)));
    let entries = await log(page);
    assert.equal(entries.submits.length, 2);
    assert.equal(entries.submits[1].text, 'Insert Anchor Point');
    assert.equal(entries.submits[1].records.length, 1, 'the box does not change');
    const inserted = placedPath(entries.submits[1], box, rotation);
    assert.equal(inserted.points.length, 5);
    const before = samplePath(OVAL).map((p) => onStage(box, rotation, p));
    const after = samplePath(inserted.points).map((p) => onStage(box, rotation, p));
    assert.ok(farthest(before, after) < 0.5 && farthest(after, before) < 0.5, 'the curve keeps its shape');
    assertNear(inserted.anchors[2], onStage(box, rotation, onCurve), 6 / ZOOM, 'the new anchor is where the press was');

    // Delete takes the selected anchor out; the stage never sees the key.
    await page.evaluate(([p]) => harness.update(7, { path: p }), [inserted.points]);
    await page.mouse.click(...toClient(inserted.anchors[4]));
    await page.keyboard.press('Delete');
    entries = await log(page);
    assert.equal(entries.submits.length, 3);
    assert.equal(entries.submits[2].text, 'Remove Anchor Point');
    const removed = placedPath(entries.submits[2], box, rotation);
    assert.equal(removed.points.length, 4);
    for (const [i, j] of [[0, 0], [1, 1], [2, 2], [3, 3]]) {
        assertNear(removed.anchors[i], inserted.anchors[j], 0.01, `anchor ${j} keeps its place`);
    }
    assert.ok(!entries.notifies.some((n) => n[0] === 'stageDelete'), 'Delete did not reach the stage');
    assert.deepEqual(problems, []);
    await page.close();
});

test('point editing: the path opens at the selected anchor and closes again, a segment goes straight, Escape ends', async () => {
    const box = { x: 100, y: 80, w: 200, h: 100 };
    const { page, problems } = await openHarness({ zoom: ZOOM, origin: ORIGIN, elements: [freeform(0, { data: { r: [100, 80, 200, 100, 0], editPoint: true } })] });
    await page.evaluate(() => harness.editPoints(7));
    assert.equal((await log(page)).submits.length, 0, 'an element already marked is not marked again');
    await page.mouse.click(...toClient(onStage(box, 0, [200, 50])));
    await page.evaluate(() => harness.call('openPath', true));
    let entries = await log(page);
    const opened = placedPath(entries.submits[0], box, 0);
    assert.equal(opened.open, true);
    assert.deepEqual(opened.points.map((p) => p.slice(0, 2)), [[200, 50], [100, 100], [0, 50], [100, 0]], 'starts at the selected anchor');

    await page.evaluate(([p]) => harness.update(7, { path: p, closed: false }), [opened.points]);
    await page.evaluate(() => harness.call('openPath', false));
    entries = await log(page);
    const closed = placedPath(entries.submits[1], box, 0);
    assert.equal(closed.open, false);
    assert.equal(closed.points[0].length, 6);

    // A right press on the lower left segment selects it; it then goes straight.
    await page.evaluate(() => harness.update(7, { path: [[0, 50, 0, 77.6, 0, 22.4], [100, 0, 44.8, 0, 155.2, 0], [200, 50, 200, 22.4, 200, 77.6], [100, 100, 155.2, 100, 44.8, 100]], closed: true }));
    const lower = bezier([100, 100], [44.8, 100], [0, 77.6], [0, 50], 0.5);
    await page.mouse.click(...toClient(onStage(box, 0, lower)), { button: 'right' });
    assert.equal((await log(page)).submits.length, 2, 'a right press adds nothing');
    await page.evaluate(() => harness.call('straightSegment'));
    entries = await log(page);
    const straight = placedPath(entries.submits[2], box, 0);
    assertNear(straight.handles[3][1], straight.anchors[3], 1e-6, 'the segment leaves its start straight');
    assertNear(straight.handles[0][0], straight.anchors[0], 1e-6, 'and arrives straight');
    assertNear(straight.handles[1][1], onStage(box, 0, [155.2, 0]), 0.01, 'other segments keep their handles');

    await page.keyboard.press('Escape');
    entries = await log(page);
    assert.deepEqual(entries.submits[3].records, [{ cmd: 1037, params: [{ type: 1, value: 7 }, { type: 4, value: false }] }]);
    assert.equal(entries.submits[3].runOnly, true);
    assert.equal(entries.ended, 1);
    assert.equal(await page.locator('#overlay svg').count(), 0);
    assert.equal(await page.evaluate(() => harness.editPoints(99)), false, 'no tool for a missing element');
    await page.evaluate(() => harness.configure({ zoom: 1, origin: { x: 0, y: 0 }, grid: 0, elements: [{ id: 8, kind: 11, autoshapeType: 590, box: { x: 0, y: 0, w: 50, h: 0 }, path: [[0, 0, 0, 0, 0, 0, 1], [50, 0, 50, 0, 50, 0]] }] }));
    assert.equal(await page.evaluate(() => harness.editPoints(8)), false, 'lines have no point editing');
    assert.deepEqual(problems, []);
    await page.close();
});

const TEXT = {
    id: 9, kind: 4, box: { x: 100, y: 100, w: 300, h: 80 }, html: 'Hello',
    data: { txt: ['Hello', "'Open Sans'", 24, [10, 20, 30, 255], [0, 0, 0, 0], 'bold', false, true, false, 4, 128, 120, 0, 2, 1] },
};

test('text editing submits the typed text with the element format and tells the studio when it starts and ends', async () => {
    const { page, problems } = await openHarness({ elements: [TEXT] });
    assert.equal(await page.evaluate(() => harness.editText(9)), true);
    let entries = await log(page);
    const rect = await page.evaluate(() => document.querySelector('.element').getBoundingClientRect().toJSON());
    assert.deepEqual(entries.notifies[0], ['setEditingText', true, Math.round(rect.left), Math.round(rect.top)]);
    const format = JSON.parse(entries.notifies.find((n) => n[0] === 'onTextFormatChanged')[1]);
    assert.equal(format.fontsize, 18);
    assert.equal(format.bold, false);
    assert.deepEqual(format.foreground, { r: 67, g: 67, b: 67, a: 255 });

    await page.keyboard.press('End');
    await page.keyboard.type(' world');
    // Delete in the text removes a character and does not reach the stage.
    await page.keyboard.press('Backspace');
    await page.keyboard.press('Delete');
    await page.keyboard.type('d!');
    await page.keyboard.press('Escape');
    entries = await log(page);
    assert.equal(entries.submits.length, 1);
    const { records, text } = entries.submits[0];
    assert.equal(text, 'Change Text');
    assert.deepEqual(records[0].params.map((p) => p.value), [
        9, 'Hello world!', true, false, true, false, 24, 'Open Sans', 10, 20, 30, 255, 0, 0, 0, 0, 2, 1,
    ]);
    assert.deepEqual(records[0].params.map((p) => p.type), [1, 5, 4, 4, 4, 4, 1, 5, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1]);
    assert.deepEqual(entries.notifies.at(-1), ['setEditingText', false, 0, 0]);
    assert.ok(!entries.notifies.some((n) => n[0] === 'stageDelete'));
    assert.equal(entries.ended, 1);
    assert.equal(await page.locator('[contenteditable]').count(), 0, 'the text is no longer editable');

    // Unchanged text sends nothing; a press outside ends the edit like Escape.
    await page.evaluate(() => harness.editText(9));
    await page.mouse.click(800, 600);
    entries = await log(page);
    assert.equal(entries.submits.length, 1);
    assert.equal(entries.ended, 2);
    assert.deepEqual(problems, []);
    await page.close();
});

test('text editing: commands format the selection and report it, and nothing that runs survives', async () => {
    const { page, problems } = await openHarness({ elements: [TEXT] });
    await page.evaluate(() => harness.editText(9));
    await page.evaluate(() => harness.call('execCommand', 'bold', ''));
    let entries = await log(page);
    let format = JSON.parse(entries.notifies.filter((n) => n[0] === 'onTextFormatChanged').at(-1)[1]);
    assert.equal(format.bold, true, 'the report follows the command');
    assert.equal(format.cancopy, true);
    await page.evaluate(() => harness.call('execCommand', 'fontsize', '30px'));
    await page.evaluate(() => harness.call('execCommand', 'forecolor', 'rgba(255, 0, 0, 0.5)'));
    format = await page.evaluate(() => harness.call('currentFormat'));
    assert.equal(format.fontsize, 30);
    assert.deepEqual(format.foreground, { r: 255, g: 0, b: 0, a: 128 });

    // A paste from outside brings plain text only.
    await page.keyboard.press('End');
    await page.evaluate(() => {
        const data = new DataTransfer();
        data.setData('text/html', '<i onmouseover="window.bad=1">rich</i>');
        data.setData('text/plain', ' plain');
        document.querySelector('[contenteditable]').dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true }));
    });
    // The studio's own paste brings HTML, cleaned.
    await page.evaluate(() =>
        harness.call('execCommand', 'pasteHTML',
            '<b onclick="window.bad=2">bold</b><script>window.bad=3</script><img src="javascript:window.bad=4" onerror="window.bad=5">' +
            '<iframe srcdoc="<b>x</b>"></iframe><a href="javascript:void(window.bad=6)" title="t">link</a><a href="https://example.org/">ok</a>'));
    const html = await page.evaluate(() => harness.call('innerHtml'));
    await page.keyboard.press('Escape');
    entries = await log(page);
    const sent = entries.submits[0].records[0].params[1].value;
    assert.equal(sent, html);
    assert.match(sent, /font-size: 30px/);
    assert.match(sent, /plain/);
    assert.doesNotMatch(sent, /rich/);
    assert.match(sent, /<b>bold<\/b>/);
    assert.match(sent, /<a href="https:\/\/example.org\/">ok<\/a>/);
    assert.match(sent, /<a title="t">link<\/a>/);
    for (const bad of [/script/i, /\son\w+=/i, /iframe/i, /javascript:/i, /srcdoc/i, /\u200b/]) {
        assert.doesNotMatch(sent, bad);
    }
    assert.equal(await page.evaluate(() => window.bad), undefined, 'nothing ran');

    // Setting the whole content is cleaned the same way, and stopping at once drops the edit.
    await page.evaluate(() => harness.editText(9));
    await page.evaluate(() => harness.call('execCommand', 'mceSetContent', '<p onload="x()">new<svg onload="window.bad=7"></svg></p>'));
    assert.equal(await page.evaluate(() => harness.call('innerHtml')), '<p>new</p>');
    await page.evaluate(() => harness.call('stop', true));
    entries = await log(page);
    assert.equal(entries.submits.length, 1, 'stopping at once submits nothing');
    assert.equal(await page.evaluate(() => document.querySelector('.vetra-text > div').innerHTML), html, 'the text shows what was sent before');
    assert.deepEqual(problems, []);
    await page.close();
});
