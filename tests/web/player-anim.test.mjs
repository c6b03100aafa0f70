// The player's animation engine in Node: easing and motion paths against Qt's own numbers (from
// easingdump, built here unless VETRA_EASINGDUMP names a built one), keyframe entries against
// values worked out by hand from the model's rules, and timelines driven by a fake document.
//   node --test tests/web/player-anim.test.mjs

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, describe, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { webRequire } from './browser.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const playerDir = path.join(here, '..', '..', 'web', 'src', 'player');
const work = mkdtempSync(path.join(tmpdir(), 'player-anim-'));
let anim;

before(async () => {
    const { build } = webRequire('esbuild');
    const outfile = path.join(work, 'anim.mjs');
    await build({
        stdin: {
            contents: ['easing', 'entries', 'motionpath', 'playback', 'timeline', 'contracts']
                .map((name) => `export * from './${name}';`).join('\n'),
            resolveDir: playerDir,
            loader: 'ts',
        },
        bundle: true, format: 'esm', platform: 'neutral', outfile, logLevel: 'warning',
    });
    anim = await import(pathToFileURL(outfile).href);
});

after(() => rmSync(work, { recursive: true, force: true }));

/** The reference tool: a given binary, or one built here with the system's Qt; null when neither. */
function easingDump() {
    if (process.env.VETRA_EASINGDUMP) return process.env.VETRA_EASINGDUMP;
    const binary = path.join(work, 'easingdump');
    if (existsSync(binary)) return binary;
    const flags = spawnSync('pkg-config', ['--cflags', '--libs', 'Qt5Core', 'Qt5Gui'], { encoding: 'utf8' });
    if (flags.status !== 0) return null;
    const compile = spawnSync('g++', ['-std=c++17', '-fPIC', '-O1', path.join(here, 'easingdump.cpp'),
        ...flags.stdout.trim().split(/\s+/), '-o', binary], { encoding: 'utf8' });
    return compile.status === 0 ? binary : null;
}

function runDump(args, input) {
    const binary = easingDump();
    if (!binary) return null;
    return JSON.parse(execFileSync(binary, args, { input, maxBuffer: 1 << 28, encoding: 'utf8' }));
}

/** A seeded generator, so that a failure can be replayed. */
function random(seed) {
    return () => {
        seed = (seed * 1103515245 + 12345) % 2147483648;
        return seed / 2147483648;
    };
}

describe('easing', () => {
    // Curves made of + - * / and sqrt only must agree to the bit; those with sin, cos, pow and
    // asin are allowed the engine's own rounding of those functions.
    const ALGEBRAIC = new Set([...Array(17).keys(), 25, 26, 27, 28, 33, 34, 35, 36, 37, 38, 39, 40, 45, 46]);

    test('every type against QEasingCurve::valueForProgress', (t) => {
        const dump = runDump(['1001']);
        if (!dump) return t.skip('no easingdump and no Qt to build it');
        assert.equal(Object.keys(dump.curves).length, 47);
        let worst = 0;
        for (const [type, values] of Object.entries(dump.curves)) {
            values.forEach((expected, i) => {
                const progress = dump.progress[i];
                const actual = anim.easingValue(Number(type), progress);
                const error = Math.abs(actual - expected);
                worst = Math.max(worst, error);
                if (ALGEBRAIC.has(Number(type))) {
                    // == and not Object.is: the dump does not keep the sign of a zero.
                    assert.ok(actual === expected, `type ${type} at ${progress}: ${actual} instead of ${expected}`);
                } else {
                    assert.ok(error <= 1e-12, `type ${type} at ${progress}: ${actual} instead of ${expected}`);
                }
            });
        }
        t.diagnostic(`largest difference to Qt: ${worst}`);
    });

    test('progress is clamped and unknown types ease linearly', () => {
        const { easingValue, normalizeEasing } = anim;
        assert.equal(easingValue(1, -0.5), 0);
        assert.equal(easingValue(1, 1.5), 1);
        assert.equal(easingValue(1, NaN), 0);
        assert.equal(easingValue(33, 0.5), 0.5 * 0.5 * (2.70158 * 0.5 - 1.70158));
        for (const bad of [47, -1, 2.5, '3', null, undefined]) assert.equal(normalizeEasing(bad), 0);
        assert.equal(normalizeEasing(46), 46);
        assert.equal(easingValue(normalizeEasing(99), 0.25), 0.25);
    });
});

describe('motion path', () => {
    test('placement and direction against QPainterPath', (t) => {
        const next = random(7);
        const paths = [];
        for (let k = 0; k < 40; ++k) {
            const rows = [];
            const count = 2 + Math.floor(next() * 4);
            for (let i = 0; i < count; ++i) {
                const x = next() * 400 - 200;
                const y = next() * 400 - 200;
                const h = next() < 0.3 ? 0 : 80;
                rows.push([x, y, x + (next() - 0.5) * h, y + (next() - 0.5) * h, x + (next() - 0.5) * h, y + (next() - 0.5) * h]);
            }
            if (k % 8 === 0) rows.push([...rows[rows.length - 1]]);
            paths.push(rows);
        }
        const percents = [...Array(101).keys()].map((i) => i / 100).concat([1 / 3, 1e-9, 1 - 1e-12]);
        const reference = runDump(['path'], JSON.stringify({ paths: paths.map(anim.travelPoints), percents }));
        if (!reference) return t.skip('no easingdump and no Qt to build it');
        const out = new Float64Array(2);
        paths.forEach((rows, k) => {
            const travel = anim.buildTravel(rows);
            const expected = reference.paths[k];
            assert.equal(travel.length, expected.length, `length of path ${k}`);
            percents.forEach((percent, j) => {
                travel.pointAtPercent(percent, out, 0);
                assert.deepEqual([out[0], out[1]], expected.points[j], `path ${k} at ${percent}`);
                const angle = travel.angleAtPercent(percent);
                assert.ok(Math.abs(angle - expected.angles[j]) <= 1e-12, `angle of path ${k} at ${percent}: ${angle}`);
            });
        });
    });

    test('flattening of a span', () => {
        const points = [];
        // Handles on the anchors: a straight span of 100 px gets 25 interior points, evenly spaced
        // in the curve's parameter, x = 100 (3s^2 - 2s^3).
        anim.flattenSpan(0, 0, 0, 0, 100, 0, 100, 0, points);
        assert.equal(points.length, 27 * 2);
        for (let i = 0; i < 27; ++i) {
            const s = i / 26;
            assert.ok(Math.abs(points[i * 2] - 100 * (3 * s * s - 2 * s * s * s)) < 1e-9, `x of point ${i}`);
            assert.equal(points[i * 2 + 1], 0);
        }
        assert.equal(points[52], 100);
        // A span shorter than two pixels has its ends only.
        const short = [];
        anim.flattenSpan(0, 0, 0, 0, 1, 1, 1, 1, short);
        assert.deepEqual(short, [0, 0, 1, 1]);
    });
});

/** A document with element views that record what the timeline writes. */
function fakeHost() {
    const host = {
        log: [], events: [], fired: [], playbacks: [], wakes: 0, onAction: null,
        views: new Map(),
        view(id) {
            if (!host.views.has(id)) {
                const values = new Map();
                host.views.set(id, {
                    values,
                    setNumber: (prop, value, unit) => { values.set(prop, [value, unit]); host.log.push(['n', id, prop, value]); },
                    setColor: (prop, r, g, b, a) => { values.set(prop, [r, g, b, a]); host.log.push(['c', id, prop]); },
                    setLocation: (x, y, angle) => { values.set('pos', [x, y, angle]); host.log.push(['l', id]); },
                    clearAnimated: (prop) => { values.delete(prop); host.log.push(['clear', id, prop]); },
                    flush() {},
                });
            }
            return host.views.get(id);
        },
        animTarget: (id) => (id === 404 ? null : host.view(id)),
        playbackTarget: (id) => ({ playback: (kind, position, speed) => host.playbacks.push([id, kind, position, speed]) }),
        runActions(actions, timeline) {
            host.fired.push(actions[0][1]);
            host.onAction?.(actions[0][1], timeline);
        },
        timelineEvent: (event) => host.events.push(event),
        wake() { host.wakes++; },
    };
    return host;
}

/** A timeline with one row of entries for layout (0, 0). */
function timelineOf(entries, extra = {}, host = fakeHost()) {
    return { host, timeline: new anim.TimelineRuntime({ id: 1, n: 'Main', dur: 0, ra: [[0, 0, entries]], ...extra }, host) };
}

function valueAt(entries, time, el = 3) {
    const { host, timeline } = timelineOf(entries);
    timeline.seek(time);
    const prop = anim.PROP_BY_KEY[entries[0].p];
    return prop === anim.PROP_BY_KEY.pos ? host.view(el).values.get('pos') : host.view(el).values.get(prop);
}

describe('keyframe entries', () => {
    const move = (p, t, d, s, e, es = 0, extra = {}) => ({ el: 3, p, t, d, s, e, es, ...extra });

    test('numbers, units and the value around moves and jumps', () => {
        const opacity = [move('o', 1000, 2000, 20, 80, 3)];
        assert.deepEqual(valueAt(opacity, 0), [20, 0]);
        assert.deepEqual(valueAt(opacity, 1500), [20 + 60 * 0.125, 0]);
        assert.deepEqual(valueAt(opacity, 2000), [50, 0]);
        assert.deepEqual(valueAt(opacity, 3000), [80, 0]);
        assert.deepEqual(valueAt(opacity, 9999), [80, 0]);

        assert.deepEqual(valueAt([move('lt', 0, 1000, '12px', '50px')], 500), [31, 1]);
        assert.deepEqual(valueAt([move('w', 0, 1000, '50%', '100%')], 250), [62.5, 2]);
        assert.deepEqual(valueAt([move('rZ', 0, 1000, '0deg', '90deg')], 500), [45, 3]);
        assert.deepEqual(valueAt([move('ga', 0, 1000, 0, 90)], 500), [45, 3]);

        // A jump holds its start before its time and its end from then on; at one time the later
        // entry (the move that leaves a key after its jump) wins.
        const jumpThenMove = [move('tp', 0, 0, '0px', '0px'), move('tp', 500, 0, '0px', '100px'),
            move('tp', 500, 500, '100px', '200px')];
        assert.deepEqual(valueAt(jumpThenMove, 499), [0, 1]);
        assert.deepEqual(valueAt(jumpThenMove, 500), [100, 1]);
        assert.deepEqual(valueAt(jumpThenMove, 750), [150, 1]);
        assert.deepEqual(valueAt(jumpThenMove, 1000), [200, 1]);
        assert.deepEqual(valueAt([move('d', 400, 0, '1', '0')], 399.9), [1, 0]);
        assert.deepEqual(valueAt([move('d', 400, 0, '1', '0')], 400), [0, 0]);

        // The model eases from the key's own time on: a curve that starts at one half (CosineCurve)
        // is already half-way at the key.
        assert.deepEqual(valueAt([move('o', 100, 100, 0, 100, 44)], 100), [50, 0]);
    });

    test('whole-number properties and colours truncate like the model', () => {
        assert.deepEqual(valueAt([move('fz', 0, 1000, '10px', '13px')], 500), [11, 1]);
        assert.deepEqual(valueAt([move('ls', 0, 1000, '-10px', '-13px')], 500), [-11, 1]);
        assert.deepEqual(valueAt([move('lw', 0, 1000, '0px', '3px')], 999), [2, 1]);
        // A double property keeps the fraction.
        assert.deepEqual(valueAt([move('tX', 0, 1000, '-10px', '-13px')], 500), [-11.5, 1]);
        assert.deepEqual(valueAt([move('fc', 0, 1000, [0, 0, 0, 255], [255, 100, 3, 0])], 500), [127, 50, 1, 127]);
        // Overshooting curves leave the colour range, which the model clamps.
        assert.deepEqual(valueAt([move('tc', 0, 1000, [240, 20, 0, 255], [255, 0, 0, 255], 34)], 600), [255, 0, 0, 255]);
    });

    test('entries that cannot be read are left out', () => {
        const { host, timeline } = timelineOf([
            { el: 3, p: 'constructor', t: 0, d: 0, s: 1, e: 1 },
            { el: 3, p: 'xx', t: 0, d: 0, s: 1, e: 1 },
            { el: 'a', p: 'o', t: 0, d: 0, s: 1, e: 1 },
            { el: 3, p: 'o', d: 0, s: 1, e: 1 },
            { el: 3, p: 'fc', t: 0, d: 0, s: [1, 2], e: [1, 2, 3, 4] },
            { el: 3, p: 'o', t: 100, d: -5, s: 'x', e: 7 },
            null, 5, 'text',
            { el: 3, p: 'o', t: 200, d: 0, s: 8, e: 9 },
            { el: 404, p: 'o', t: 0, d: 0, s: 1, e: 1 },
        ]);
        timeline.seek(1000);
        assert.deepEqual([...host.view(3).values.keys()], [anim.PROP_BY_KEY.o]);
        assert.deepEqual(host.view(3).values.get(anim.PROP_BY_KEY.o), [9, 0]);
        assert.equal(timeline.duration, 200);
        assert.doesNotThrow(() => new anim.TimelineRuntime({ ra: [[0], 'x', [0, 0, 7]], l: [1], t: [[1], 'x'] }, host));
        assert.doesNotThrow(() => new anim.TimelineRuntime(undefined, host));
    });

    // Cases of the model's own motion path tests, written as the export writes the moves.
    test('motion paths as the model places them', () => {
        const corner = (x, y) => [x, y, x, y, x, y];
        const motion = (t, d, rows, es = 0, ao = true) =>
            ({ el: 3, p: 'pos', t, d, s: rows[0].slice(0, 2), e: rows[rows.length - 1].slice(0, 2), es, cp: rows, ao });
        const near = (actual, expected, tolerance) =>
            assert.ok(Math.hypot(actual[0] - expected[0], actual[1] - expected[1]) <= tolerance, `${actual} instead of ${expected}`);

        const straight = [motion(0, 1000, [corner(0, 0), corner(100, 50)])];
        near(valueAt(straight, 250), [25, 12.5], 1e-9);
        near(valueAt(straight, 1500), [100, 50], 0);
        const eased = [motion(0, 1000, [corner(0, 0), corner(100, 0)], 1)];
        near(valueAt(eased, 800), [64, 0], 1e-9);
        const cubic = [motion(0, 1000, [[0, 0, 0, 0, 0, 50], [100, 0, 100, 50, 100, 0]])];
        near(valueAt(cubic, 500), [50, 37.5], 0.5);
        // Through an anchor that only shapes the path: legs of 50 and 60 px.
        const bent = [motion(0, 1000, [corner(0, 0), corner(30, 40), corner(30, 100)])];
        near(valueAt(bent, 500), [30, 45], 1e-9);
        near(valueAt(bent, 250), [16.5, 22], 1e-9);
        // Before the first key: the first anchor; two anchors of one key time: the later one on.
        const late = [motion(200, 1000, [corner(0, 0), corner(100, 100)])];
        near(valueAt(late, 100), [0, 0], 0);
        const twoAtOnce = [motion(0, 1000, [corner(0, 0), corner(100, 0)]),
            { el: 3, p: 'pos', t: 1000, d: 0, s: [100, 0], e: [100, 20], cp: [corner(100, 0), corner(100, 20)] },
            motion(1000, 1000, [corner(100, 20), corner(100, 120)])];
        near(valueAt(twoAtOnce, 1000), [100, 20], 0);
        near(valueAt(twoAtOnce, 1500), [100, 70], 1e-9);

        // Direction of travel, clockwise with y downwards; 0 where the element does not move.
        assert.ok(Math.abs(valueAt([motion(0, 1000, [corner(0, 0), corner(100, 100)])], 500)[2] - 45) < 1e-9);
        assert.ok(Math.abs(valueAt([motion(0, 1000, [corner(100, 0), corner(0, 0)])], 500)[2] - 180) < 1e-9);
        assert.ok(Math.abs(valueAt([motion(0, 1000, [corner(0, 100), corner(0, 0)])], 300)[2] + 90) < 1e-9);
        assert.equal(valueAt(late, 100)[2], 0);
        assert.equal(valueAt(late, 200)[2], 0);
        assert.ok(Number.isNaN(valueAt([motion(0, 1000, [corner(0, 0), corner(9, 9)], 0, false)], 500)[2]));
        assert.equal(anim.orientationOf(180), 180);
        assert.equal(anim.orientationOf(270), 90);
        assert.equal(anim.orientationOf(0), 0);
    });
});

describe('timeline', () => {
    const opacityRow = [{ el: 3, p: 'o', t: 0, d: 1000, s: 0, e: 100, es: 0 }];
    const triggersAt = (...times) => times.map((time) => [time, [[999, time]]]);

    test('playback follows the frame clock and stops at the end', () => {
        const { host, timeline } = timelineOf(opacityRow);
        const opacity = () => host.view(3).values.get(anim.PROP_BY_KEY.o)?.[0];
        assert.equal(timeline.duration, 1000);
        assert.equal(opacity(), undefined, 'nothing is shown before the timeline runs');
        assert.equal(timeline.tick(5), false);
        timeline.play();
        assert.equal(host.wakes, 1);
        assert.equal(opacity(), 0);
        assert.equal(timeline.tick(5000), true);
        assert.equal(timeline.tick(5250), true);
        assert.equal(timeline.time, 250);
        assert.equal(opacity(), 25);
        timeline.play(2);
        timeline.tick(5500);
        assert.equal(timeline.time, 750);
        assert.equal(timeline.tick(6000), false);
        assert.equal(timeline.time, 1000);
        assert.equal(opacity(), 100);
        assert.deepEqual(host.events, [151, 150, 154, 150, 150, 153]);

        timeline.play(-1, 1000);
        timeline.tick(7000);
        timeline.tick(7400);
        assert.equal(opacity(), 60);
        timeline.pause();
        assert.equal(timeline.playing, false);
        assert.equal(timeline.tick(8000), false);
        assert.equal(timeline.time, 600);

        // A value that holds is not written again on every frame; a seek writes it anyway.
        const held = timelineOf(opacityRow, { l: { end: 2000 } });
        held.timeline.play();
        held.timeline.tick(0);
        held.timeline.tick(1200);
        const writes = held.host.log.length;
        held.timeline.tick(1500);
        assert.equal(held.host.log.length, writes);
        held.timeline.seek(1600);
        assert.equal(held.host.log.length, writes + 1);
    });

    test('triggers fire once per pass', () => {
        const { host, timeline } = timelineOf([], { l: { end: 1000, mid: 500 }, t: triggersAt(0, 300, 1000) });
        for (const time of [500, 100, 1000, 300, 0]) timeline.seek(time);
        assert.deepEqual(host.fired, []);

        timeline.play();
        for (const now of [0, 100, 200, 400, 450]) timeline.tick(now);
        assert.deepEqual(host.fired.splice(0), [0, 300]);
        timeline.tick(1200);
        assert.deepEqual(host.fired.splice(0), [1000]);
        assert.equal(timeline.playing, false);

        // Played again from the end: it starts over, and the last trigger waits for the end.
        timeline.play();
        timeline.tick(2000);
        assert.deepEqual(host.fired.splice(0), [0]);
        timeline.tick(2400);
        assert.deepEqual(host.fired.splice(0), [300]);

        // A seek while playing starts a new pass there; what is ahead fires.
        timeline.seek('mid');
        timeline.seek(900);
        timeline.tick(2450);
        assert.deepEqual(host.fired.splice(0), []);
        timeline.tick(2600);
        assert.deepEqual(host.fired.splice(0), [1000]);

        // Turning round at the end: backwards, in descending order, down to the start.
        timeline.play(-1);
        timeline.tick(3000);
        timeline.tick(4200);
        assert.deepEqual(host.fired.splice(0), [300, 0]);
        assert.equal(timeline.time, 0);
    });

    test('an action that pauses or seeks takes over the rest of the frame', () => {
        const { host, timeline } = timelineOf([], { t: [...triggersAt(100, 200), [200, [[999, 'twin']]], ...triggersAt(900)] });
        host.onAction = (tag, tl) => { if (tag === 100 || tag === 900) tl.pause(); };
        timeline.play();
        timeline.tick(0);
        timeline.tick(500);
        assert.deepEqual(host.fired.splice(0), [100]);
        assert.equal(timeline.playing, false);
        assert.equal(timeline.time, 500);
        // Resuming continues the pass: the pausing trigger stays fired, both triggers at 200 fire.
        timeline.play();
        timeline.tick(1000);
        assert.deepEqual(host.fired.splice(0), [200, 'twin']);
        timeline.tick(1500);
        assert.deepEqual(host.fired.splice(0), [900]);
        assert.equal(host.events.filter((event) => event === 153).length, 0, 'paused before the end');

        // A seek from an action: a loop back to the start.
        host.onAction = (tag, tl) => { if (tag === 900) tl.seek(0); };
        timeline.seek(850);
        timeline.play();
        timeline.tick(2000);
        timeline.tick(3000);
        assert.equal(timeline.time, 0);
        assert.equal(timeline.playing, true);
        assert.deepEqual(host.fired.splice(0), [900]);
        timeline.tick(3150);
        assert.deepEqual(host.fired.splice(0), [100]);
    });

    test('labels, speed, events and layouts', () => {
        const host = fakeHost();
        const wide = [{ el: 3, p: 'o', t: 0, d: 2000, s: 0, e: 100, es: 0 }, { el: 4, p: 'tc', t: 0, d: 0, s: [0, 0, 0, 0], e: [1, 2, 3, 4] }];
        const timeline = new anim.TimelineRuntime({
            id: 7, n: 'Other', ra: [[0, 0, [...opacityRow, { el: 3, p: 'lt', t: 0, d: 0, s: '1px', e: '2px' }]], [1, 0, wide]],
            l: { half: 500 },
        }, host);
        assert.equal(timeline.id, 7);
        assert.equal(timeline.name, 'Other');
        assert.equal(timeline.labelTime('half'), 500);
        assert.equal(timeline.labelTime('none'), undefined);
        timeline.seek('none');
        assert.deepEqual(host.events, []);
        timeline.seek('half');
        assert.deepEqual(host.events.splice(0), [156, 150]);
        timeline.seek(-50);
        assert.equal(timeline.time, 0);
        assert.deepEqual(host.events.splice(0), [156, 150]);
        timeline.start(-2);
        assert.equal(timeline.time, 1000);
        assert.deepEqual(host.events.splice(0), [155, 154, 150, 151]);
        timeline.pause(250);
        assert.deepEqual(host.events.splice(0), [152, 156, 150]);
        assert.equal(timeline.speed, -2);

        // Another layout: its own entries, and the values the old one animated go back.
        timeline.setLayout(1, 0);
        assert.equal(timeline.duration, 2000);
        assert.deepEqual(host.log.filter((entry) => entry[0] === 'clear'), [['clear', 3, anim.PROP_BY_KEY.lt]]);
        assert.deepEqual(host.view(3).values.get(anim.PROP_BY_KEY.o), [12.5, 0]);
        assert.deepEqual(host.view(4).values.get(anim.PROP_BY_KEY.tc), [1, 2, 3, 4]);
        // A layout without entries of its own animates nothing.
        timeline.setLayout(2, 0);
        assert.equal(timeline.duration, 500);
        assert.equal(host.view(3).values.size, 0);
        assert.equal(host.view(4).values.size, 0);
        timeline.toggle();
        assert.equal(timeline.playing, true);
        timeline.toggle();
        assert.equal(timeline.playing, false);
    });

    test('playback marks drive media, also when seeking into a run', () => {
        const pb = (t, d, a) => ({ el: 8, p: 'pb', t, d, a });
        const { host, timeline } = timelineOf([pb(1000, 2000, [40, 0, 2]), pb(3500, 0, [43, 5000]), pb(4000, 1000, [42, 1000, -1])]);
        assert.equal(timeline.duration, 5000);
        timeline.seek(500);
        assert.deepEqual(host.playbacks.splice(0), []);
        timeline.seek(2000);
        assert.deepEqual(host.playbacks.splice(0), [[8, 44, 2000, NaN]]);
        timeline.play();
        assert.deepEqual(host.playbacks.splice(0), [[8, 42, 2000, 2]]);
        timeline.tick(0);
        timeline.tick(1000);
        timeline.tick(1200);
        assert.deepEqual(host.playbacks.splice(0), [], 'the run goes on and ends by itself');
        timeline.tick(1600);
        assert.deepEqual(host.playbacks.splice(0), [[8, 43, 5000, NaN]]);
        timeline.tick(2100);
        assert.deepEqual(host.playbacks.splice(0), [[8, 42, 900, -1]]);
        timeline.pause();
        assert.deepEqual(host.playbacks.splice(0), [[8, 43, 900, NaN]]);
        timeline.play(-2);
        assert.deepEqual(host.playbacks.splice(0), [[8, 42, 900, 2]]);
        // Backwards: back over the pause mark, past the end of the first run, and into it.
        timeline.tick(3000);
        timeline.tick(3100);
        assert.deepEqual(host.playbacks.splice(0), [[8, 44, 5000, NaN]]);
        timeline.tick(3400);
        assert.deepEqual(host.playbacks.splice(0), [[8, 44, 4000, NaN]]);
        timeline.tick(3600);
        assert.deepEqual(host.playbacks.splice(0), [[8, 42, 3800, -4]]);
        timeline.seek(0);
        assert.deepEqual(host.playbacks.splice(0), [[8, 44, 0, NaN]]);
    });
});
