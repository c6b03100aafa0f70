// The built player bundle on its frame path and at its public surface: a playing move writes
// each element's transform and opacity at most once a frame and no other style, and minifying
// (which shortens the player's own member names) leaves every name that pages and user
// functions use as it is.
//   VETRA_RESOURCES_DIR=<resources> node --test tests/web/player-perf.test.mjs

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { launchChromium } from './browser.mjs';
import { element, scene, writeSite } from './player-site.mjs';

let browser;

before(async () => {
    browser = await launchChromium();
});

after(async () => {
    await browser?.close();
});

const BOXES = 6;
const DURATION = 1500;

/** Boxes that turn, shrink and fade together, as a typical scene does, and one that stands still. */
function movingSite(functions = []) {
    const elems = [];
    const entries = [];
    for (let id = 1; id <= BOXES; ++id) {
        const listeners = id === 1 ? { e: [[100, [103, 7]]] } : {};
        elems.push(element(id, 5, { r: [id * 30, 10, 20, 20, 0], f: [1, 200, 40, 40, 255] }, listeners));
        entries.push({ el: id, p: 'rZ', t: 0, d: DURATION, s: '0deg', e: '360deg', es: 3 });
        entries.push({ el: id, p: 'sX', t: 0, d: DURATION, s: 100, e: 50, es: 3 });
        entries.push({ el: id, p: 'sY', t: 0, d: DURATION, s: 100, e: 50, es: 3 });
        entries.push({ el: id, p: 'o', t: 0, d: DURATION, s: 100, e: 20, es: 3 });
    }
    elems.push(element(BOXES + 1, 5, { r: [10, 60, 20, 20, 0], f: [1, 0, 0, 255, 255] }));
    const timelines = [{ id: 1, n: 'Main', dur: DURATION, l: { half: DURATION / 2 }, ra: [[0, 0, entries]] }];
    return writeSite({ docData: { w: 400, h: 300, scenes: [scene(1, elems, { timelines })] }, functions });
}

// Counts the inline style writes of every element in each animation frame: a mutation record per
// write, taken right after the player's frame callback, with the properties whose text changed.
const frameWriteCounter = `(() => {
    const frames = [];
    window.__frames = frames;
    let observer = null;
    const props = (text) => {
        const map = new Map();
        for (const part of (text || '').split(';')) {
            const at = part.indexOf(':');
            if (at > 0) map.set(part.slice(0, at).trim(), part.slice(at + 1).trim());
        }
        return map;
    };
    const original = window.requestAnimationFrame.bind(window);
    window.requestAnimationFrame = (callback) => original((stamp) => {
        if (!observer && document.querySelector('.vetra-stage')) {
            observer = new MutationObserver(() => undefined);
            observer.observe(document.querySelector('.vetra-stage'),
                { subtree: true, attributes: true, attributeFilter: ['style'], attributeOldValue: true });
        }
        callback(stamp);
        if (!observer) return;
        // A write's result is the old value of the next record of its node, or the style now.
        const byNode = new Map();
        for (const record of observer.takeRecords()) {
            const node = record.target;
            if (node.classList && node.classList.contains('vetra-element')) {
                byNode.set(node, [...(byNode.get(node) || []), record.oldValue]);
            }
        }
        const writes = {};
        byNode.forEach((olds, node) => {
            const key = node.className + '#' + [...node.parentNode.children].indexOf(node);
            writes[key] = olds.map((old, i) => {
                const before = props(old);
                const now = props(i + 1 < olds.length ? olds[i + 1] : node.getAttribute('style'));
                const names = [...new Set([...before.keys(), ...now.keys()])];
                return names.filter((name) => before.get(name) !== now.get(name)).join(',');
            });
        });
        frames.push(writes);
    });
})();`;

test('a playing move writes transform and opacity at most once a frame, and nothing else', async () => {
    const page = await browser.newPage({ viewport: { width: 400, height: 300 } });
    const errors = [];
    page.on('pageerror', (error) => errors.push(error.message));
    await page.addInitScript(frameWriteCounter);
    await page.goto(pathToFileURL(movingSite()).href);
    await page.evaluate(() => KorvelVetra.ready('vetra_stage'));
    await page.waitForFunction(() => !KorvelVetra.docs.vetra_stage.timeline().playing, null, { timeout: 10000 });
    const frames = await page.evaluate(() => window.__frames);
    const end = await page.evaluate(() => {
        const node = KorvelVetra.docs.vetra_stage.elementNode(1);
        return [node.style.transform, node.style.opacity];
    });
    await page.close();
    assert.deepEqual(errors, []);

    // The frames of playback: past the one that builds the scene, up to the last one that moves.
    const moving = frames.filter((writes) => Object.keys(writes).length > 0).slice(2);
    assert.ok(moving.length >= 10, `only ${moving.length} frames moved`);
    for (const writes of moving) {
        assert.ok(Object.keys(writes).length <= BOXES, 'the box that stands still is never written');
        for (const [box, list] of Object.entries(writes)) {
            const names = list.join(',').split(',');
            assert.ok(list.length <= 2, `${box} was written ${list.length} times in one frame: ${list}`);
            assert.deepEqual(new Set(names).size, names.length, `${box} wrote a property twice: ${list}`);
            for (const name of names) {
                assert.ok(name === 'transform' || name === 'opacity', `${box} wrote ${name} while moving`);
            }
        }
    }
    assert.deepEqual(end, ['rotate(360deg) scale3d(0.5, 0.5, 1)', '0.2'], 'the move ends on its end values');
});

test('the public names survive minifying', async () => {
    const page = await browser.newPage({ viewport: { width: 400, height: 300 } });
    const errors = [];
    page.on('pageerror', (error) => errors.push(error.message));
    const seen = 'window.__seen = { doc: Object.keys(doc).sort(), e: e.type + "/" + e.eventType + "/" + e.targetId, ' +
        'own: Object.keys(e).filter((k) => /_$|^m_/.test(k)), fields: [typeof e.timeStamp, e.currentTarget === this, ' +
        'e.originalEvent instanceof Event, typeof e.clientX, typeof e.preventDefault, typeof e.stopPropagation] };';
    await page.goto(pathToFileURL(movingSite([[7, 'onClick', seen]])).href);
    const result = await page.evaluate(async () => {
        const doc = await KorvelVetra.ready('vetra_stage');
        const timeline = doc.timeline('Main');
        timeline.pause('half');
        const state = [timeline.id, timeline.name, timeline.duration, timeline.time, timeline.playing, timeline.speed,
            timeline.labelTime('half')];
        timeline.play(-2, 300);
        const playing = [timeline.playing, timeline.speed, timeline.time];
        timeline.toggle();
        timeline.seek(100);
        timeline.start(1);
        const methods = ['play', 'start', 'pause', 'toggle', 'seek', 'labelTime']
            .filter((m) => typeof timeline[m] !== 'function');
        doc.elementNode(1).click();
        return {
            global: ['loadedDocs', 'docs', 'openDoc', 'ready', 'closeDoc'].filter((key) => !(key in KorvelVetra)),
            api: [doc.containerId, doc.sceneIndex, doc.sceneCount, doc.layout, typeof doc.goToScene, typeof doc.seek,
                typeof doc.play, typeof doc.pause, KorvelVetra.docs.vetra_stage === doc],
            state,
            playing,
            methods,
            seen: window.__seen,
        };
    });
    await page.close();
    assert.deepEqual(errors, []);
    assert.deepEqual(result.global, []);
    assert.deepEqual(result.api, ['vetra_stage', 0, 1, [0, 0], 'function', 'function', 'function', 'function', true]);
    assert.deepEqual(result.state, [1, 'Main', DURATION, DURATION / 2, false, 1, DURATION / 2]);
    assert.deepEqual(result.playing, [true, -2, 300]);
    assert.deepEqual(result.methods, []);
    assert.ok(result.seen, 'the function of the click ran');
    assert.deepEqual(result.seen.doc, ['containerId', 'elementNode', 'goToScene', 'layout', 'pause', 'play', 'sceneCount',
        'sceneIndex', 'seek', 'timeline']);
    assert.equal(result.seen.e, 'click/100/1');
    assert.deepEqual(result.seen.own, []);
    assert.deepEqual(result.seen.fields, ['number', true, true, 'number', 'function', 'function']);
});
