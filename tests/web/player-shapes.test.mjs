// The player's shape outlines: vertices checked by hand, fallbacks for damaged data, and a real
// browser telling which points the drawn outlines cover.
//   node --test tests/web/player-shapes.test.mjs
// The module is bundled on the fly from web/src/player/shapes.ts, so no build folder is needed.

import assert from 'node:assert/strict';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { launchChromium, webRequire } from './browser.mjs';

const entry = fileURLToPath(new URL('../../web/src/player/shapes.ts', import.meta.url));
const ALL_TYPES = [11, 12, 33, 22, 21, 56, 20, 53, 61, 57, 41, 42, 44, 34, 35, 69, 71, 72, 74, 75, 73, 13, 14, 19,
    15, 16, 17, 18, 26, 25, 31, 29, 27, 30, 28, 32, 81, 82, 83, 85, 89, 101];
const CALLOUTS = [13, 14, 19];
const ARGS = { M: 2, L: 2, C: 6, A: 7, Z: 0 };

let shapes;
let iife;
let tempDir;

before(async () => {
    const esbuild = webRequire('esbuild');
    const bundle = (format) =>
        esbuild.build({
            entryPoints: [entry], bundle: true, write: false, format, target: 'es2017', globalName: 'shapes',
        });
    tempDir = mkdtempSync(path.join(tmpdir(), 'vetra-shapes-'));
    const file = path.join(tempDir, 'shapes.mjs');
    writeFileSync(file, (await bundle('esm')).outputFiles[0].text);
    shapes = await import(pathToFileURL(file).href);
    iife = (await bundle('iife')).outputFiles[0].text;
});

after(() => rmSync(tempDir, { recursive: true, force: true }));

/** Commands of path data, refusing anything but the absolute commands with their exact argument counts. */
function parsePath(d) {
    const commands = [];
    const re = /([MLCAZ])([^MLCAZ]*)/gy;
    let match;
    while (re.lastIndex < d.length && (match = re.exec(d)) !== null) {
        const args = match[2].trim() === '' ? [] : match[2].trim().split(/\s+/).map(Number);
        assert.equal(args.length, ARGS[match[1]], `argument count of ${match[0]} in ${d}`);
        assert.ok(args.every(Number.isFinite), `numbers of ${match[0]}`);
        commands.push({ cmd: match[1], args });
    }
    assert.equal(re.lastIndex, d.length, `unreadable path data: ${d}`);
    return commands;
}

/** The end points of the commands, in order. */
function vertices(d) {
    return parsePath(d).filter((c) => c.cmd !== 'Z').map((c) => c.args.slice(-2));
}

function assertPoints(actual, expected, message) {
    assert.equal(actual.length, expected.length, `${message}: ${JSON.stringify(actual)}`);
    actual.forEach((p, i) => {
        const q = expected[i];
        assert.ok(Math.abs(p[0] - q[0]) < 0.01 && Math.abs(p[1] - q[1]) < 0.01,
            `${message}: point ${i} is ${p}, expected ${q} (all: ${JSON.stringify(actual)})`);
    });
}

test('parametric outlines pass through their hand-checked vertices', () => {
    const cases = [
        ['triangle, apex at a quarter', 33, [0.25], 200, 100, [[50, 0], [200, 100], [0, 100]]],
        ['diamond', 22, [], 200, 100, [[100, 0], [200, 50], [100, 100], [0, 50]]],
        ['right arrow', 15, [0.4, 0.3], 200, 100,
            [[0, 30], [170, 30], [170, 0], [200, 50], [170, 100], [170, 70], [0, 70]]],
        ['left arrow', 16, [0.4, 0.3], 200, 100,
            [[200, 30], [30, 30], [30, 0], [0, 50], [30, 100], [30, 70], [200, 70]]],
        ['up arrow', 17, [0.4, 0.3], 100, 200, [[30, 200], [30, 30], [0, 30], [50, 0], [100, 30], [70, 30], [70, 200]]],
        ['notched arrow', 31, [0.4, 0.3], 200, 100,
            [[0, 30], [170, 30], [170, 0], [200, 50], [170, 100], [170, 70], [0, 70], [12, 50]]],
        ['right arrow callout', 27, [0.2, 0.6, 0.3, 0.5], 200, 100, [[0, 0], [100, 0], [100, 40], [170, 40], [170, 20],
            [200, 50], [170, 80], [170, 60], [100, 60], [100, 100], [0, 100]]],
        ['chevron', 32, [1], 200, 100, [[0, 0], [100, 0], [200, 50], [100, 100], [0, 100], [100, 50]]],
        ['cross', 20, [0.1], 200, 100, [[10, 0], [190, 0], [190, 10], [200, 10], [200, 90], [190, 90], [190, 100],
            [10, 100], [10, 90], [0, 90], [0, 10], [10, 10]]],
        ['4 stars', 81, [], 100, 100, [[50, 0], [58.839, 41.161], [100, 50], [58.839, 58.839], [50, 100],
            [41.161, 58.839], [0, 50], [41.161, 41.161]]],
        // A regular star: the inner corners lie on the line through the two side points.
        ['5 stars', 82, [], 100, 100, [[50, 0], [61.803, 38.197], [100, 38.197], [69.098, 61.803], [80.902, 100],
            [50, 76.393], [19.098, 100], [30.902, 61.803], [0, 38.197], [38.197, 38.197]]],
        ['6 polygons', 42, [], 100, 50, [[100, 25], [75, 50], [25, 50], [0, 25], [25, 0], [75, 0]]],
        ['callout tip beyond the left side', 13, [-0.5, 0.4], 100, 100,
            [[0, 0], [100, 0], [100, 100], [0, 100], [0, 33.333], [-50, 40], [0, 16.667], [0, 0]]],
        ['callout tip inside: no wedge', 13, [0.5, 0.5], 100, 100, [[0, 0], [100, 0], [100, 100], [0, 100], [0, 0]]],
    ];
    for (const [name, type, adjustments, w, h, expected] of cases) {
        const d = shapes.autoShapePath(type, adjustments, w, h);
        assert.ok(d.endsWith('Z'), `${name} is closed`);
        assertPoints(vertices(d), expected, name);
    }
});

test('adjustments fall back to defaults, hold to their ranges, and damaged input never throws', () => {
    const path = shapes.autoShapePath;
    assert.deepEqual(shapes.defaultAdjustments(82), [0.382]);
    assert.deepEqual(shapes.defaultAdjustments(27), [0.25, 0.5, 0.25, 0.65]);
    assert.deepEqual(shapes.defaultAdjustments(23), []);
    const triangle = path(33, [0.5], 100, 100);
    for (const bad of [[], [NaN], ['0.25'], [null], [Infinity]]) {
        assert.equal(path(33, bad, 100, 100), triangle, `triangle with ${JSON.stringify(bad)}`);
    }
    assert.equal(path(33, null, 100, 100), triangle);
    assert.equal(path(33, [7], 100, 100), path(33, [1], 100, 100));
    assert.equal(path(33, [0.5, 9, 9], 100, 100), triangle, 'values a newer stage adds are ignored');
    assert.equal(path(12, [0.9], 100, 60), path(12, [0.5], 100, 60));
    // Only the damaged value falls back: the callout keeps its given tip with a default radius.
    assert.equal(path(14, [2, 'x', -1], 100, 100), path(14, [2, 1.25, 0], 100, 100));
    // Lengths beyond the room the box leaves are cut back instead of crossing the shape.
    assertPoints(vertices(path(25, [0.5, 3], 100, 50)), vertices(path(25, [0.5, 1], 100, 50)), 'double arrow heads');
    assertPoints(vertices(path(32, [5], 200, 100)), vertices(path(32, [1], 200, 100)), 'chevron notch');
    const rectangle = [[0, 0], [80, 0], [80, 40], [0, 40]];
    assertPoints(vertices(path(23, [], 80, 40)), rectangle, 'unknown number');
    assertPoints(vertices(path(0, [1, 2], 80, 40)), rectangle, 'number 0');
    for (const [type, w, h] of [[591, 80, 40], [33, -1, 10], [33, NaN, 10], [33, 10, Infinity]]) {
        assert.equal(path(type, [], w, h), '', `${type} in ${w} x ${h}`);
    }
    for (const junk of [undefined, null, 'x', {}, [[1]], [{}, -0]]) {
        for (const type of [...ALL_TYPES, 'x', undefined]) {
            assert.doesNotThrow(() => parsePath(path(type, junk, 50, 0)));
            assert.doesNotThrow(() => parsePath(path(type, junk, 0, 0)));
        }
    }
});

test('every shape is a closed outline in its box; callouts reach out only to their tip', () => {
    for (const [w, h] of [[160, 90], [90, 160]]) {
        for (const type of ALL_TYPES) {
            const d = shapes.autoShapePath(type, [], w, h);
            assert.ok(d.startsWith('M') && d.endsWith('Z'), `${type}: ${d}`);
            const points = vertices(d);
            const tip = CALLOUTS.includes(type) ? [0.3 * w, 1.25 * h] : null;
            for (const [x, y] of points) {
                if (tip && Math.abs(x - tip[0]) < 0.01 && Math.abs(y - tip[1]) < 0.01) {
                    continue;
                }
                assert.ok(x >= -0.01 && x <= w + 0.01 && y >= -0.01 && y <= h + 0.01,
                    `${type} in ${w} x ${h}: ${x}, ${y}`);
            }
            if (tip) {
                assert.ok(points.some(([x, y]) => x === tip[0] && y === tip[1]), `${type} reaches its tip`);
            }
        }
    }
});

test('freeform paths from exported points', () => {
    const fp = shapes.freeformPath;
    const square = [[0, 0, 0, 0, 0, 0], [100, 0, 100, 0, 100, 0], [100, 100, 100, 100, 100, 100],
        [0, 100, 0, 100, 0, 100]];
    // Without the open mark the path is closed, and it is stretched to fill the element's box.
    assert.equal(fp(square, 200, 100), 'M0 0L200 0L200 100L0 100Z');
    const open = square.map((p, i) => (i === 0 ? [...p, 1] : p));
    assert.equal(fp(open, 200, 100), 'M0 0L200 0L200 100L0 100');
    // Ends that meet close the path, with no extra side between them, whatever their handles say.
    assert.equal(fp([...open, [0, 0, 0, 0, 50, 50]], 100, 100), 'M0 0L100 0L100 100L0 100Z');
    // The bounds are those of the curve, not of its handles: this arch peaks at y 25.
    const arch = [[0, 100, 0, 100, 0, 0, 1], [100, 100, 100, 0, 100, 100]];
    assert.equal(fp(arch, 100, 75), 'M0 75C0 -25 100 -25 100 75');
    // Points in element pixels spanning the element come back unchanged.
    const curve = [[0, 0, 0, 0, 50, 0, 1], [100, 40, 50, 40, 100, 40]];
    assert.equal(fp(curve, 100, 40), 'M0 0C50 0 50 40 100 40');
    // The same drawn elsewhere on the stage.
    const moved = curve.map((p) => p.map((v, i) => (i < 6 ? v + (i % 2 === 0 ? 300 : -70) : v)));
    assert.equal(fp(moved, 100, 40), 'M0 0C50 0 50 40 100 40');
    // A flat line cannot be stretched across its box: it keeps to the middle.
    assert.equal(fp([[0, 50, 0, 50, 0, 50, 1], [100, 50, 100, 50, 100, 50]], 200, 10), 'M0 5L200 5');
    // Items that are not points are skipped; missing handles sit on their anchor.
    assert.equal(fp(['x', [0, 0], null, [100, 0], [100, 100, 'a']], 100, 100), 'M0 0L100 0L100 100Z');
    const tooMany = Array.from({ length: 5001 }, (_, i) => [i, i % 7, i, i % 7, i, i % 7]);
    for (const [points, w, h] of [[[], 10, 10], [[[5, 5, 5, 5, 5, 5]], 10, 10], ['x', 10, 10], [null, 10, 10],
        [tooMany, 10, 10], [square, NaN, 10], [square, 10, -2]]) {
        assert.equal(fp(points, w, h), '');
    }
    assert.doesNotThrow(() => parsePath(fp([[-1e308, 0], [1e308, 1e308, 'x']], 10, 10)));
    assert.doesNotThrow(() => parsePath(shapes.autoShapePath(19, [1e308, -1e308], 1e308, 1e300)));
});

test('arrow heads of freeform lines', () => {
    const line = [[0, 50, 0, 50, 0, 50, 1], [100, 50, 100, 50, 100, 50]];
    assert.deepEqual(shapes.readArrowEnds([591, line]), { endType: 0, endSize: 4, startType: 0, startSize: 4 });
    assert.deepEqual(shapes.readArrowEnds([592, line, 1, 8, 5, 2]),
        { endType: 1, endSize: 8, startType: 5, startSize: 2 });
    assert.deepEqual(shapes.readArrowEnds([591, line, 6, 0, 'x', 10.5]),
        { endType: 0, endSize: 4, startType: 0, startSize: 4 });
    assert.deepEqual(shapes.arrowHeadExtent(1), { length: 2, width: 2 });
    assert.deepEqual(shapes.arrowHeadExtent(8), { length: 3, width: 5 });

    // End arrow of size 5 on a 2 px line: 6 long, 6 wide; the line stops halfway into it.
    let drawn = shapes.arrowMarkers([591, line, 1, 5], 100, 0, 2);
    assert.equal(drawn.line, 'M0 0L97 0');
    assertPoints(vertices(drawn.heads), [[100, 0], [94, 3], [94, -3]], 'end arrow');
    // A start head alone comes after an empty end: stealth of size 9 (10 by 10) pointing back.
    drawn = shapes.arrowMarkers([591, line, 0, 4, 3, 9], 100, 0, 2);
    assert.equal(drawn.line, 'M5 0L100 0');
    assertPoints(vertices(drawn.heads), [[0, 0], [10, -5], [6, 0], [10, 5]], 'start stealth');
    // Diamonds and ovals sit centred on the end, so the line is not shortened.
    drawn = shapes.arrowMarkers([592, line, 4, 1, 5, 1], 100, 0, 2);
    assert.equal(drawn.line, 'M0 0L100 0');
    assertPoints(vertices(drawn.heads), [[102, 0], [100, 2], [98, 0], [100, -2], [-2, 0], [2, 0], [-2, 0]],
        'diamond, oval');
    // An open head is a V as thick as the line (10 by 10 here); the line's square end lies between
    // its arms: at 95.764 the end's corners (y = ±1) are 2.236 inside the outer and the inner edge.
    drawn = shapes.arrowMarkers([591, line, 2, 9], 100, 0, 2);
    assertPoints(vertices(drawn.heads), [[100, 0], [90, 5], [89.106, 3.211], [95.528, 0], [89.106, -3.211], [90, -5]],
        'open head');
    assert.equal(drawn.line, 'M0 0L95.764 0');
    // On a curve the head follows the last stretch of the line: this one arrives going straight down.
    const hook = [[0, 0, 0, 0, 100, 0, 1], [100, 100, 100, 0, 100, 100]];
    const [tip, left, right] = vertices(shapes.arrowMarkers([591, hook, 1, 1], 100, 100, 2).heads);
    assertPoints([tip], [[100, 100]], 'curved tip');
    assert.ok(Math.abs(left[1] - right[1]) < 0.2 && Math.abs(left[0] + right[0] - 200) < 0.2 && left[1] < 100,
        `head of the hook: ${left}, ${right}`);
    // No heads on closed outlines or without a visible line.
    const closed = [[0, 0, 0, 0, 0, 0], [100, 0, 100, 0, 100, 0], [50, 80, 50, 80, 50, 80]];
    assert.deepEqual(shapes.arrowMarkers([594, closed, 1, 4], 100, 80, 2),
        { line: shapes.freeformPath(closed, 100, 80), heads: '' });
    assert.equal(shapes.arrowMarkers([591, line, 1, 4], 100, 0, 0).heads, '');
    assert.deepEqual(shapes.arrowMarkers('junk', 10, 10, 2), { line: '', heads: '' });
});

test('shapeSvg draws the outline, and freeform heads in the line colour', () => {
    const svg = shapes.shapeSvg({ s: [33, [0.25]] }, 200, 100, 'rgba(1,2,3,1)', 2, '#f00');
    assert.match(svg, /^<svg [^>]*width="200" height="100"/);
    assert.ok(svg.includes(`d="${shapes.autoShapePath(33, [0.25], 200, 100)}"`), svg);
    assert.ok(svg.includes('fill="#f00" stroke="rgba(1,2,3,1)" stroke-width="2"'), svg);
    const line = [[0, 0, 0, 0, 0, 0, 1], [100, 0, 100, 0, 100, 0]];
    const arrow = shapes.shapeSvg([591, line, 1, 5], 100, 0, 'blue', 2, '');
    assert.ok(arrow.includes('d="M0 0L97 0" fill="none" stroke="blue"'), arrow);
    assert.match(arrow, /class="vetra-shape-heads" d="M100 0[^"]*" fill="blue" stroke="none"/);
    assert.ok(!shapes.shapeSvg([591, line, 1, 5], 100, 0, 'none', 2, '').includes('heads'));
    assert.ok(shapes.shapeSvg([11], 10, 10, '"><script>', 1, 'red').includes('stroke="&quot;&gt;&lt;script&gt;"'));
    for (const junk of [null, 5, 'x', {}, { s: 'x' }]) {
        assert.equal(shapes.shapeSvg(junk, 10, 10, 'red', 1, 'red'), '');
    }
    assert.equal(shapes.shapeSvg([594, []], 10, 10, 'red', 1, 'red'), '');
});

test('the outlines cover the right points in a browser', async () => {
    const browser = await launchChromium();
    try {
        const page = await browser.newPage();
        await page.setContent('<svg xmlns="http://www.w3.org/2000/svg" width="400" height="400"><path id="p"/></svg>');
        await page.addScriptTag({ content: iife });
        const [w, h] = [160, 90];
        const probe = (type, points) =>
            page.evaluate(([type, w, h, points]) => {
                const path = document.getElementById('p');
                path.setAttribute('d', shapes.autoShapePath(type, [], w, h));
                const box = path.getBBox();
                const inside = points.map(([x, y]) => {
                    const point = document.querySelector('svg').createSVGPoint();
                    point.x = x;
                    point.y = y;
                    return path.isPointInFill(point);
                });
                return { box: [box.x, box.y, box.width, box.height], inside };
            }, [type, w, h, points]);
        // Points that must be in (true) or out (false): arcs bending the wrong way show up here.
        const checks = {
            // Corner radius 15: 6, 6 from a corner is inside a rounded corner and outside a bitten one.
            12: [[1, 1, false], [6, 6, true], [w - 6, 6, true], [w - 6, h - 6, true], [6, h - 6, true],
                [w - 1, h - 1, false]],
            21: [[3, 3, false], [w / 2, 2, true], [w - 2, h / 2, true]],
            53: [[6, 6, false], [w - 6, 6, false], [w - 6, h - 6, false], [6, h - 6, false], [w / 2, 1, true],
                [1, h / 2, true]],
            57: [[w / 4, h / 2, true], [0.9 * w, h / 2, false]],
            71: [[w - 2, h / 2, true], [w - 2, 2, false], [2, 2, false]],
            74: [[2, h / 2, true], [w - 2, h / 2, false], [1, 1, false]],
            56: [[w / 2, h * 0.9, true], [w / 2, h * 0.1, false], [w * 0.25, h * 0.25, true]],
            75: [[0.21 * w, 15, true], [0.79 * w, 15, false], [0.21 * w, h - 15, false], [0.79 * w, h - 15, true]],
            19: [[3, 3, false], [0.3 * w, 1.1 * h, true]],
        };
        for (const type of ALL_TYPES) {
            // The moon's inner arc runs through the centre.
            const points = [...(type === 57 ? [] : [[w / 2, h / 2, true]]), ...(checks[type] ?? [])];
            const result = await probe(type, points.map(([x, y]) => [x, y]));
            points.forEach(([x, y, want], i) => assert.equal(result.inside[i], want, `${type} at ${x}, ${y}`));
            const [x, y, bw, bh] = result.box;
            const reach = CALLOUTS.includes(type) ? 1.25 * h : h;
            assert.ok(Math.abs(x) < 1 && Math.abs(y) < 1 && Math.abs(bw - w) < 1 && Math.abs(bh - reach) < 1,
                `${type} fills its box: ${result.box}`);
        }
        // Freeforms of any bend fill their box exactly.
        const curves = [
            [[0, 0, 0, 0, 30, -60, 1], [100, 0, 60, 90, 100, 0]],
            [[10, 10, -40, 0, 80, 30], [50, 70, 90, 90, 0, 40], [20, 40, 35, -20, 5, 60]],
            [[5, 5, 5, 5, 5, 5, 1], [6, 9, 40, -30, 6, 9]],
        ];
        for (const points of curves) {
            const box = await page.evaluate(([points, w, h]) => {
                const path = document.getElementById('p');
                path.setAttribute('d', shapes.freeformPath(points, w, h));
                const b = path.getBBox();
                return [b.x, b.y, b.width, b.height];
            }, [points, w, h]);
            assert.ok(box.every((v, i) => Math.abs(v - [0, 0, w, h][i]) < 0.05), `${JSON.stringify(points)}: ${box}`);
        }
    } finally {
        await browser.close();
    }
});
