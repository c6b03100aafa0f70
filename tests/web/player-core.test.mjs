// The player's renderer in a real browser: hand-made export folders (page, data script, resource
// folder) opened from file://, and the renderer's pure parts and element views on their own.
//   node --test tests/web/player-core.test.mjs
// The bundle comes from VETRA_RESOURCES_DIR (canvas/player/vtplayer.js) or is built here.

import assert from 'node:assert/strict';
import { mkdtempSync, readFileSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { launchChromium } from './browser.mjs';
import { bundleModules, element, playerBundle, scene, serveSlowly, txt, writeSite } from './player-site.mjs';

let browser;

before(async () => {
    playerBundle();
    browser = await launchChromium();
});

after(async () => {
    await browser?.close();
});

async function openPage(url, { width = 800, height = 600, init, waitUntil = 'load' } = {}) {
    const page = await browser.newPage({ viewport: { width, height } });
    page.setDefaultTimeout(10000);
    const problems = [];
    page.on('pageerror', (error) => problems.push(`uncaught: ${error.message}`));
    page.on('console', (message) => {
        if (message.type() === 'error' && !/ERR_FILE_NOT_FOUND|Failed to load resource/.test(message.text())) {
            problems.push(`console: ${message.text()}`);
        }
    });
    if (init) {
        await page.addInitScript(init);
    }
    await page.goto(url, { waitUntil });
    return { page, problems };
}

/** Opens a site and waits until its document shows. */
async function openSite(site, options) {
    const { page, problems } = await openPage(pathToFileURL(writeSite(site)).href, options);
    await page.evaluate((id) => KorvelVetra.ready(id), site.containerId ?? 'vetra_stage');
    return { page, problems };
}

// Box of an element relative to the scene, in stage pixels.
function boxesScript(ids) {
    return (list) => {
        const doc = Object.values(KorvelVetra.docs)[0];
        const sceneBox = document.querySelector('.vetra-scene').getBoundingClientRect();
        const out = {};
        for (const id of list) {
            const r = doc.elementNode(id).getBoundingClientRect();
            out[id] = [r.left - sceneBox.left, r.top - sceneBox.top, r.width, r.height].map((v) => Math.round(v * 10) / 10);
        }
        return out;
    };
}

test('layouts, lengths, addresses and stage placement are read as the data means them', async () => {
    const dir = mkdtempSync(path.join(tmpdir(), 'vetra-player-unit-'));
    const file = path.join(dir, 'layout.mjs');
    writeFileSync(
        file,
        await bundleModules(
            [
                ['readBreakpoints, chooseLayout, layoutBlock, placeStage, centeringOfAlign', 'layout.ts'],
                ['readLength, resourceUrl, isSafeUrl', 'read.ts'],
                ['readTransition', 'transition.ts'],
            ],
            'esm',
        ),
    );
    const m = await import(pathToFileURL(file).href);

    // Pairs are sorted by value; damaged pairs are skipped; a size at a value belongs to it.
    const bp = m.readBreakpoints({ h: [[3, 768], [1, 0], [2, 375], [9, 1, 2], 'x'], v: [[5, 0], [6, 500]] });
    assert.deepEqual(bp.h, [[1, 0], [2, 375], [3, 768]]);
    assert.deepEqual(m.chooseLayout(bp, 400, 100), [2, 5]);
    assert.deepEqual(m.chooseLayout(bp, 768, 500), [3, 6]);
    assert.deepEqual(m.chooseLayout(bp, 767, 499), [2, 5]);
    assert.deepEqual(m.chooseLayout(m.readBreakpoints(undefined), 1000, 1000), [0, 0]);
    assert.deepEqual(m.chooseLayout(m.readBreakpoints({ h: [[4, 100]] }), 50, 0), [0, 0]);

    // A layout's block: the base entry, its own keys over it, the dropped groups gone.
    const el = {
        r: [1, 1, 1, 1, 0],
        rp: [
            [0, 0, { r: [0, 0, 10, 10, 0], sh: [1, 2, 3, 0, 0, 0, 255], l: [1, 1, 0, 0, 0, 255] }],
            [1, 0, { l: [1, 5, 255, 0, 0, 255], or: ['sh', 'd'] }],
            [2, 0, {}],
        ],
    };
    assert.deepEqual(m.layoutBlock(el, 0, 0), el.rp[0][2]);
    assert.deepEqual(m.layoutBlock(el, 1, 0), { r: [0, 0, 10, 10, 0], l: [1, 5, 255, 0, 0, 255] });
    assert.deepEqual(m.layoutBlock(el, 2, 0), el.rp[0][2]);
    assert.deepEqual(m.layoutBlock(el, 7, 7), el.rp[0][2], 'a layout without an entry inherits all');
    assert.deepEqual(m.layoutBlock({ r: [5, 5, 5, 5, 0] }, 1, 0), { r: [5, 5, 5, 5, 0] }, 'no "rp": the keys themselves');

    const length = (raw) => {
        const out = m.readLength(raw, -1, 1, { value: 0, unit: 0 });
        return [out.value, out.unit];
    };
    assert.deepEqual(length(12.5), [12.5, 1]);
    assert.deepEqual(length('50%'), [50, 2]);
    assert.deepEqual(length('150a'), [150, 4]);
    assert.deepEqual(length('1e-05%'), [0.00001, 2]);
    assert.deepEqual(length('abc'), [-1, 1]);
    assert.deepEqual(length(null), [-1, 1]);

    assert.equal(m.resourceUrl('demo_res', 'a b#1.png'), 'demo_res/a%20b%231.png');
    assert.equal(m.resourceUrl('../', 'x.png'), '../x.png');
    assert.equal(m.resourceUrl('', 'x.png'), 'x.png');
    assert.equal(m.resourceUrl('out/res folder', 'x.png'), 'out/res%20folder/x.png');
    assert.equal(m.isSafeUrl('https://example.org'), true);
    assert.equal(m.isSafeUrl('page.html?a=b'), true);
    assert.equal(m.isSafeUrl(' java\tscript:alert(1)'), false);
    assert.equal(m.isSafeUrl('JavaScript:alert(1)'), false);
    assert.equal(m.isSafeUrl('data:text/html,x'), false);

    const place = (boxW, boxH, center, autofit) => {
        const out = m.placeStage(boxW, boxH, 400, 300, center, autofit, { left: 0, top: 0, scale: 1 });
        return [out.left, out.top, Math.round(out.scale * 1000) / 1000];
    };
    assert.deepEqual(place(600, 400, 'both', false), [100, 50, 1]);
    assert.deepEqual(place(600, 400, 'horizontal', false), [100, 0, 1]);
    assert.deepEqual(place(600, 400, 'vertical', false), [0, 50, 1]);
    assert.deepEqual(place(600, 400, 'none', true), [0, 0, 1.333]);
    assert.deepEqual(place(1000, 300, 'both', true), [300, 0, 1]);
    assert.deepEqual(place(200, 100, 'both', false), [0, 0, 1], 'a larger stage keeps its corner in view');
    assert.deepEqual(place(200, 0, 'both', true), [0, 0, 0.5], 'no height: fit by width');
    assert.equal(m.centeringOfAlign(132), 'both');
    assert.equal(m.centeringOfAlign(4), 'horizontal');
    assert.equal(m.centeringOfAlign(1), 'none');

    assert.deepEqual(m.readTransition([2, 500, 3, 6]), { type: 2, duration: 500, easing: 3, direction: 6 });
    assert.deepEqual(m.readTransition([1, 300, -1]), { type: 1, duration: 300, easing: 0, direction: 0 });
    assert.equal(m.readTransition([9, 300]).type, 0);
    assert.equal(m.readTransition([1, 0]).type, 0);
    assert.equal(m.readTransition('fade').type, 0);
});

test('an element view writes only what changed and gives the layout its values back', async () => {
    const script = await bundleModules(
        [
            ['ElementView', 'elementview.ts'],
            ['applyBlock', 'blocks.ts'],
            ['PROP_BY_KEY', 'contracts.ts'],
        ],
        'iife',
    );
    const { page, problems } = await openPage('about:blank');
    await page.addScriptTag({ content: script });
    const result = await page.evaluate(() => {
        const { ElementView, applyBlock, PROP_BY_KEY: P } = window.harness;
        const queued = [];
        const owner = {
            queueFlush: (view) => queued.push(view),
            sceneBox: () => ({ width: 400, height: 300 }),
            sceneResized: () => undefined,
        };
        const ctx = { imageUrl: () => '' };
        const sceneNode = document.createElement('div');
        document.body.appendChild(sceneNode);
        const sceneView = new ElementView(0, 8, sceneNode, null, owner);
        applyBlock(sceneView, { r: [0, 0, 400, 300, 0] }, ctx);
        const node = document.createElement('div');
        node.style.position = 'absolute';
        sceneNode.appendChild(node);
        const view = new ElementView(5, 5, node, sceneView, owner);
        applyBlock(view, { r: [10, 20, '50%', 40, 0], f: [1, 0, 0, 255, 255], o: 100, t: [[5, 6, 0]] }, ctx);
        const flushAll = () => {
            while (queued.length) queued.shift().flush();
        };
        flushAll();
        const writes = [];
        const original = node.style.setProperty.bind(node.style);
        node.style.setProperty = (name, value) => {
            writes.push(name);
            original(name, value);
        };
        // The properties written every frame go through their own setters.
        for (const name of ['opacity', 'transform']) {
            Object.defineProperty(node.style, name, {
                configurable: true,
                get: () => node.style.getPropertyValue(name),
                set: (value) => {
                    writes.push(name);
                    original(name, value);
                },
            });
        }
        const out = { pxW: view.pxW, width: node.style.width, transform: node.style.transform };

        view.setNumber(P.o, 40, 0);
        view.setNumber(P.o, 50, 0);
        view.setNumber(P.o, 50, 0);
        out.queuedOnce = queued.length;
        flushAll();
        out.opacityWrites = writes.splice(0);
        out.opacity = node.style.opacity;

        view.flush();
        out.idleWrites = writes.splice(0);

        view.setNumber(P.w, 25, 2);
        view.setNumber(P.w, 25, 2);
        flushAll();
        out.widthWrites = writes.splice(0);
        out.width25 = [node.style.width, view.pxW];

        view.setColor(P.fc, 255, 0, 0, 51);
        flushAll();
        out.background = node.style.backgroundColor;

        view.setLocation(30, 40, 90);
        flushAll();
        out.located = node.style.transform;
        view.setLocation(30, 40, NaN);
        flushAll();
        out.unturned = node.style.transform;

        view.clearAnimated(P.pos);
        view.clearAnimated(P.o);
        view.clearAnimated(P.w);
        view.clearAnimated(P.fc);
        flushAll();
        out.restored = [node.style.transform, node.style.opacity, node.style.width, node.style.backgroundColor, view.pxW];

        // A parent that changes size moves its children's pixel size along.
        sceneView.setNumber(P.w, 200, 1);
        flushAll();
        out.afterParent = [sceneView.pxW, view.pxW];

        view.setNumber(P.rZ, 45, 3);
        view.setNumber(P.sX, 200, 0);
        view.setNumber(P.toX, 0, 2);
        flushAll();
        out.turned = [node.style.transform, node.style.transformOrigin];
        view.setNumber(999, 1, 0);
        view.setNumber(P.o, NaN, 0);
        out.ignored = queued.length;
        return out;
    });
    assert.deepEqual(problems, []);
    assert.equal(result.pxW, 200);
    assert.equal(result.width, '50%');
    assert.equal(result.transform, 'translate3d(5px, 6px, 0px)');
    assert.equal(result.queuedOnce, 1, 'a view is queued once however often it changes');
    assert.deepEqual(result.opacityWrites, ['opacity']);
    assert.equal(result.opacity, '0.5');
    assert.deepEqual(result.idleWrites, [], 'nothing changed, nothing written');
    assert.deepEqual(result.widthWrites, ['width']);
    assert.deepEqual(result.width25, ['25%', 100]);
    assert.equal(result.background, 'rgba(255, 0, 0, 0.2)');
    assert.equal(result.located, 'translate3d(30px, 40px, 0px) rotate(90deg)');
    assert.equal(result.unturned, 'translate3d(30px, 40px, 0px)');
    assert.deepEqual(result.restored, ['translate3d(5px, 6px, 0px)', '1', '50%', 'rgb(0, 0, 255)', 200]);
    assert.deepEqual(result.afterParent, [200, 100]);
    assert.equal(result.turned[0], 'translate3d(5px, 6px, 0px) rotate(45deg) scale3d(2, 1, 1)');
    assert.equal(result.turned[1], '0% 50% 0px');
    assert.equal(result.ignored, 0, 'unknown properties and non-numbers are ignored');
    await page.close();
});

const RESOURCES = [
    [1, 0, 'red.png', 'red.png'],
    [2, 1, 'beep', ['beep.mp3', 'beep.ogg']],
    [3, 2, 'clip', ['clip.mp4']],
    [4, 7, 'page.html', 'page.html'],
    [
        5,
        3,
        'Badge',
        {
            scenes: [scene(1, [element(1, 5, { r: [5, 5, 20, 10, 0], f: [1, 0, 255, 0, 255] })], { r: [0, 0, '100%', '100%', 0], f: [0] })],
            dur: 0,
            align: 0,
            af: false,
        },
    ],
];

test('every element kind builds its DOM from the data', async () => {
    const elems = [
        element(1, 4, {
            r: [10, 10, 150, 40, 0],
            txt: txt('<p>Hi <i>there</i></p>', { 2: 24, 3: [255, 0, 0, 255], 5: 'bold', 7: true, 9: 2, 10: 64 }),
        }),
        element(2, 5, { r: [10, 60, 100, 40, 0], l: [1, 3, 0, 0, 255, 255], lr: [4, '10%', 0, 8], f: [1, 0, 128, 0, 255], txt: txt('') }),
        element(3, 0, { r: [120, 10, 80, 40, 0], ir: [5, '10%', '50%', 20] }, { rs: 1 }),
        element(4, 1, { r: [0, 110, 200, 30, 0] }, { rs: 2, vol: 50, ap: false, lo: true, ct: true, pl: true }),
        element(5, 2, { r: [0, 150, 100, 60, 0] }, { rs: 3, vol: 100, ap: false, lo: false, ct: false, pl: false }),
        element(6, 3, {}, { useresource: false, url: 'widget.html', srcdoc: '' }),
        element(7, 3, {}, { useresource: false, url: '', srcdoc: '<p id="inline">inline</p>' }),
        element(8, 3, {}, { useresource: true, rs: 4, srcdoc: '' }),
        element(9, 3, {}, { useresource: false, url: 'javascript:alert(1)', srcdoc: '' }),
        element(15, 3, {}, { useresource: false, url: 'resource://page.html', srcdoc: '' }),
        element(10, 6, { r: [200, 150, 100, 100, 0] }, { elems: [element(11, 4, { r: [10, 10, 50, 20, 0], txt: txt('inner') })] }),
        element(12, 9, { r: [220, 10, 80, 60, 0], s: [33], f: [1, 0, 128, 255, 255], l: [3, 2, 0, 0, 0, 255], txt: txt('tri') }),
        element(13, 11, {
            r: [220, 80, 100, 50, 0],
            s: [591, [[0, 0, 0, 0, 0, 0, 1], [100, 50, 100, 50, 100, 50]], 1, 4],
            l: [1, 2, 255, 0, 0, 255],
            f: [1, 0, 0, 0, 255],
            txt: txt(''),
        }),
        element(14, 7, { r: [300, 200, 80, 60, 0] }, { rs: 5, ap: false }),
    ];
    const { page, problems } = await openSite({
        docData: { w: 400, h: 300, dur: 0, scenes: [scene(1, elems)], resources: RESOURCES },
        images: ['red.png'],
        files: { 'widget.html': '<p>widget</p>', 'demo_res/page.html': '<p>page</p>' },
    });
    const r = await page.evaluate(() => {
        const doc = KorvelVetra.docs.vetra_stage;
        const node = (id) => doc.elementNode(id);
        const cs = (el) => getComputedStyle(el);
        const text = node(1).querySelector('.vetra-text');
        const image = node(3).querySelector('.vetra-image');
        const audio = node(4).querySelector('audio');
        const video = node(5).querySelector('video');
        const frames = [6, 7, 8, 9, 15].map((id) => node(id).querySelector('iframe'));
        const outline = node(12).querySelector('svg path');
        const line = node(13).querySelectorAll('svg path');
        const symbolStage = node(14).querySelector('.vetra-stage');
        return {
            html: text.firstChild.innerHTML,
            font: [cs(text).fontSize, cs(text).color, cs(text).fontWeight, cs(text).textDecorationLine, cs(text).textAlign, cs(text).justifyContent],
            divBox: [node(2).offsetWidth, node(2).offsetHeight],
            divLook: [
                cs(node(2)).borderTopLeftRadius,
                cs(node(2)).borderTopRightRadius,
                node(2).style.borderRadius,
                cs(node(2)).backgroundColor,
                cs(node(2)).borderTopColor,
            ],
            image: [image.style.backgroundImage, image.style.backgroundPosition, image.style.backgroundSize],
            audio: [audio.controls, audio.loop, audio.preload, audio.volume, [...audio.querySelectorAll('source')].map((s) => s.getAttribute('src'))],
            video: [
                video.controls,
                video.loop,
                video.preload,
                video.playsInline,
                [...video.querySelectorAll('source')].map((s) => s.getAttribute('src')),
            ],
            frames: frames.map((f) => [f.getAttribute('src'), f.getAttribute('srcdoc')]),
            group: node(11).parentElement === node(10),
            shape: ['d', 'fill', 'stroke', 'stroke-dasharray'].map((name) => outline.getAttribute(name)).concat(node(12).textContent),
            line: [line[0].getAttribute('d') !== '', line[0].getAttribute('fill'), line[1].getAttribute('d') !== '', line[1].getAttribute('fill')],
            symbol: symbolStage && [
                symbolStage.style.width,
                symbolStage.style.height,
                cs(symbolStage.querySelector('.vetra-kind-div')).backgroundColor,
            ],
            kinds: [1, 2, 3, 4, 6, 10, 12, 13, 14].map((id) => node(id).className),
        };
    });
    assert.deepEqual(problems, []);
    assert.equal(r.html, '<p>Hi <i>there</i></p>');
    assert.deepEqual(r.font, ['24px', 'rgb(255, 0, 0)', '700', 'underline', 'right', 'flex-end']);
    assert.deepEqual(r.divBox, [106, 46], 'the border adds to the model size');
    assert.deepEqual(r.divLook, ['4px', '10%', '4px 10% 8px 0px', 'rgb(0, 128, 0)', 'rgb(0, 0, 255)']);
    assert.match(r.image[0], /^url\("demo_res\/red\.png"\)$/);
    assert.deepEqual(r.image.slice(1), ['5px 10%', '50% 20px']);
    assert.deepEqual(r.audio, [true, true, 'auto', 0.5, ['demo_res/beep.mp3', 'demo_res/beep.ogg']]);
    assert.deepEqual(r.video, [false, false, 'metadata', true, ['demo_res/clip.mp4']]);
    assert.deepEqual(r.frames, [
        ['widget.html', null],
        [null, '<p id="inline">inline</p>'],
        ['demo_res/page.html', null],
        [null, null],
        ['demo_res/page.html', null],
    ]);
    assert.equal(r.group, true);
    assert.equal(r.shape[0], 'M40 0L80 60L0 60Z');
    assert.deepEqual(r.shape.slice(1), ['rgba(0,128,255,1)', 'rgba(0,0,0,1)', '6 4', 'tri']);
    assert.deepEqual(r.line, [true, 'none', true, 'rgba(255,0,0,1)'], 'a line is not filled; its head takes the line colour');
    assert.deepEqual(r.symbol, ['80px', '60px', 'rgb(0, 255, 0)']);
    assert.deepEqual(r.kinds, [
        'vetra-element vetra-kind-text',
        'vetra-element vetra-kind-div',
        'vetra-element vetra-kind-image',
        'vetra-element vetra-kind-media',
        'vetra-element vetra-kind-widget',
        'vetra-element vetra-kind-group',
        'vetra-element vetra-kind-shape',
        'vetra-element vetra-kind-shape',
        'vetra-element vetra-kind-symbol',
    ]);
    await page.close();
});

test('damaged data shows what it can and throws nothing', async () => {
    const broken = {
        id: 1,
        k: 8,
        r: 'x',
        f: 'y',
        timelines: 'x',
        st: 'x',
        e: 'bad',
        rp: [[0, 0, null], 'x', [1]],
        elems: [
            null,
            5,
            { k: 'text' },
            { id: 2, k: 4, txt: 'oops', r: [null, '12q', {}, [], 7], t: 'no', l: [1], sh: 'z', fe: [null], wc: [2], rp: 'bad', e: 5 },
            { id: 3, k: 99, r: [0, 0, 10, 10, 0], elems: 'x' },
            { id: 4, k: 0, rs: 77, ir: 'x' },
            { id: 5, k: 7, rs: 'x' },
            { id: 6, k: 9, s: 'no', f: [2, 1, 'a', 'b', 'c'] },
            { id: 7, k: 11, s: [594, 'pts'], l: [1, 'w'] },
            { id: 8, k: 1, rs: 2 },
            { id: 9, k: 3, useresource: true, rs: 'x', url: 7 },
        ],
    };
    const { page, problems } = await openSite({
        docData: { w: 'x', scenes: ['garbage', broken], resources: [null, 'x', [2, 1, 'snd', 'notarray']], b: { h: 'x' }, e: 3 },
    });
    const r = await page.evaluate(() => {
        const doc = KorvelVetra.docs.vetra_stage;
        doc.goToScene(-2);
        doc.goToScene(NaN);
        doc.seek('nowhere');
        doc.play('no such timeline');
        return [doc.sceneCount, doc.sceneIndex, [2, 3, 4, 5, 6, 7, 8, 9].map((id) => doc.elementNode(id) !== null), doc.timeline()];
    });
    assert.deepEqual(r, [1, 0, [true, true, true, true, true, true, true, true], null]);
    assert.deepEqual(problems, []);
    await page.close();
});

test('positions and sizes follow their units, aspect ratios and coordinate types', async () => {
    const box = (id, r, more = {}) => element(id, 5, { r, f: [1, 200, 200, 200, 255], ...more });
    const elems = [
        box(1, ['25%', '10%', '50%', 30, 0]),
        box(2, [10, 20, '150a', 40, 0]),
        box(3, [10, 20, 100, '50a', 0]),
        box(4, [10, 20, 50, 40, 1]),
        box(5, [10, 20, 50, 40, 2]),
        box(6, [10, 20, 50, 40, 3]),
        box(7, [10, 20, 50, 40, 0], { l: [1, 5, 0, 0, 0, 255] }),
        element(8, 6, { r: [100, 100, '50%', '50%', 0] }, { elems: [box(9, ['50%', '50%', '50%', '100a', 0])] }),
        box(10, [0, 0, 40, 20, 0], { t: [[10, 20, 0], [200, 100, 100], [], [0, 0, 90], [0, 0, 0]] }),
        box(11, [0, 0, 40, 20, 0], { t: [[], [], [], [0, 0, 180], [100, 100, 0]] }),
    ];
    const { page, problems } = await openSite({ docData: { w: 400, h: 300, dur: 0, scenes: [scene(1, elems)] } });
    const boxes = await page.evaluate(boxesScript(), [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]);
    assert.deepEqual(problems, []);
    assert.deepEqual(boxes[1], [100, 30, 200, 30]);
    assert.deepEqual(boxes[2], [10, 20, 60, 40], 'width is 1.5 times the height');
    assert.deepEqual(boxes[3], [10, 20, 100, 50], 'height is half the width');
    assert.deepEqual(boxes[4], [340, 20, 50, 40], 'from the right');
    assert.deepEqual(boxes[5], [340, 240, 50, 40], 'from the right and the bottom');
    assert.deepEqual(boxes[6], [10, 240, 50, 40], 'from the bottom');
    assert.deepEqual(boxes[7], [10, 20, 60, 50], 'a border surrounds the model size');
    assert.deepEqual(boxes[8], [100, 100, 200, 150]);
    assert.deepEqual(boxes[9], [200, 175, 100, 100], 'percent of the group, height as the width');
    assert.deepEqual(boxes[10], [-10, 20, 20, 80], 'translate, rotate, scale about the top left origin');
    assert.deepEqual(boxes[11], [40, 20, 40, 20], 'turned about its bottom right corner');
    await page.close();
});

test('block keys become the look of the box', async () => {
    const stops = [[0, 255, 0, 0, 255], [100, 0, 0, 255, 255]];
    const elems = [
        element(1, 5, { o: 40, of: 1, cl: 'fancy big', tb: 3, c: 'pointer', tl: 'Tip', txt: txt('') }),
        element(2, 5, { d: 0, txt: txt('') }),
        element(3, 5, { f: [2, 0, 45, stops], txt: txt('') }),
        element(4, 5, { f: [2, 1, 25, 75, stops, 0, 1], txt: txt('') }),
        element(5, 5, { f: [3, 1, 2, 2, 2], txt: txt('') }),
        element(6, 5, { sh: [4, 90, 10, 0, 0, 0, 255], txt: txt('') }),
        element(7, 4, { sh: [0, 0, 3, 255, 0, 0, 255], txt: txt('shadow') }),
        element(8, 5, { fe: [100, 90, 50, 120, 100, 0, 0, 2], txt: txt('') }),
        element(9, 5, { wc: [1, 5, '10%', 5, 0], txt: txt('') }),
        element(10, 5, { wc: [2, '40%'], txt: txt('') }),
        element(11, 5, { wc: [3, 20, 10], txt: txt('') }),
        element(12, 5, { fe: [0, 0, 100, 100, 100, 0, 0, 0], txt: txt('') }),
    ];
    const { page, problems } = await openSite({
        docData: { w: 400, h: 300, dur: 0, scenes: [scene(1, elems, { t3d: true, pso: [20, 30, 800] })], resources: [[1, 0, 'red.png', 'red.png']] },
        images: ['red.png'],
    });
    const r = await page.evaluate(() => {
        const doc = KorvelVetra.docs.vetra_stage;
        const n = (id) => doc.elementNode(id);
        const sceneNode = document.querySelector('.vetra-scene');
        return {
            general: [n(1).style.opacity, n(1).style.overflow, [...n(1).classList], n(1).tabIndex, n(1).style.cursor, n(1).title],
            hidden: getComputedStyle(n(2)).display,
            linear: n(3).style.backgroundImage,
            radial: n(4).style.backgroundImage,
            image: [n(5).style.backgroundImage, n(5).style.backgroundSize, n(5).style.backgroundRepeat],
            shadow: n(6).style.boxShadow,
            textShadow: [n(7).style.textShadow, n(7).style.boxShadow],
            filter: n(8).style.filter,
            clips: [9, 10, 11].map((id) => n(id).style.clipPath),
            plain: [n(12).style.filter, n(12).getAttribute('tabindex'), n(12).hasAttribute('title')],
            scene: [sceneNode.style.perspective, sceneNode.style.perspectiveOrigin, sceneNode.style.transformStyle],
        };
    });
    assert.deepEqual(problems, []);
    assert.deepEqual(r.general, ['0.4', 'hidden', ['vetra-element', 'vetra-kind-div', 'fancy', 'big'], 3, 'pointer', 'Tip']);
    assert.equal(r.hidden, 'none');
    assert.equal(r.linear, 'linear-gradient(45deg, rgb(255, 0, 0) 0%, rgb(0, 0, 255) 100%)');
    assert.equal(r.radial, 'radial-gradient(circle farthest-side at 25% 75%, rgb(255, 0, 0) 0%, rgb(0, 0, 255) 100%)');
    assert.deepEqual(r.image, ['url("demo_res/red.png")', 'contain', 'no-repeat']);
    assert.equal(r.shadow, 'rgb(0, 0, 0) 0px 10px 4px');
    assert.deepEqual(r.textShadow, ['rgb(255, 0, 0) 3px 0px 0px', '']);
    assert.equal(r.filter, 'invert(100%) hue-rotate(90deg) contrast(50%) brightness(120%) blur(2px)');
    assert.deepEqual(r.clips, ['inset(5px 10% 5px 0px)', 'circle(40% at 50% 50%)', 'ellipse(20px 10px at 50% 50%)']);
    assert.deepEqual(r.plain, ['', null, false], 'defaults are left to the style sheets');
    assert.deepEqual(r.scene, ['800px', '20% 30%', 'preserve-3d']);
    await page.close();
});

test('a resize picks the layout of the new size, with its overrides, drops and animations', async () => {
    const x = element(1, 5, {}, {
        rp: [
            [0, 0, { r: [10, 10, 100, 50, 0], f: [1, 255, 0, 0, 255], sh: [5, 45, 5, 0, 0, 0, 128], l: [1, 1, 0, 0, 0, 255], txt: txt('base') }],
            [1, 0, { l: [1, 4, 0, 255, 0, 255], txt: txt('narrow'), or: ['sh'] }],
            [2, 0, { r: [20, 30, '50%', 50, 0] }],
        ],
    });
    // A click hides the target and changes its text; layout switches keep what actions did.
    const button = element(2, 5, { r: [0, 200, 40, 40, 0], txt: txt('') }, { e: [[100, [70, 3], [102, 3, 'changed']]] });
    const target = element(3, 4, {}, { rp: [[0, 0, { r: [0, 250, 40, 40, 0], txt: txt('old') }], [1, 0, { txt: txt('narrow old') }]] });
    const jump = (value) => ({ el: 1, p: 'o', t: 0, d: 0, s: value, e: value });
    const timelines = [{ id: 1, n: 'Main', dur: 0, ra: [[1, 0, [jump(50)]], [2, 0, [jump(80)]]] }];
    const { page, problems } = await openSite({
        docData: {
            w: 400,
            h: 300,
            dur: 0,
            b: { h: [[1, 0], [2, 700]] },
            scenes: [
                scene(1, [x, button, target], { timelines, r: [0, 0, '100%', '100%', 0], rp: [[2, 0, { f: [1, 0, 0, 255, 255] }]] }),
            ],
        },
        options: { paused: true },
    });
    const state = () =>
        page.evaluate(() => {
            const doc = KorvelVetra.docs.vetra_stage;
            const n = doc.elementNode(1);
            const cs = getComputedStyle(n);
            return {
                layout: doc.layout,
                box: [n.offsetLeft, n.offsetTop, n.offsetWidth],
                shadow: cs.boxShadow,
                border: cs.borderTopWidth + ' ' + cs.borderTopColor,
                text: n.textContent,
                opacity: cs.opacity,
                scene: getComputedStyle(document.querySelector('.vetra-scene')).backgroundColor,
                stage: document.querySelector('.vetra-stage').style.width,
            };
        });
    let s = await state();
    assert.deepEqual(s.layout, [2, 0]);
    assert.deepEqual(s.box, [20, 30, 402], 'half of 800 plus the border');
    assert.notEqual(s.shadow, 'none');
    assert.equal(s.border, '1px rgb(0, 0, 0)');
    assert.equal(s.text, 'base');
    assert.equal(s.opacity, '1', 'a paused timeline shows nothing of its own');
    assert.equal(s.scene, 'rgb(0, 0, 255)');
    assert.equal(s.stage, '800px', 'a scene of 100% fills its container');

    await page.evaluate(() => KorvelVetra.docs.vetra_stage.seek(0));
    await page.waitForFunction(() => getComputedStyle(KorvelVetra.docs.vetra_stage.elementNode(1)).opacity === '0.8');

    await page.evaluate(() => KorvelVetra.docs.vetra_stage.elementNode(2).click());
    await page.setViewportSize({ width: 500, height: 400 });
    await page.waitForFunction(() => KorvelVetra.docs.vetra_stage.layout[0] === 1);
    const acted = await page.evaluate(() => {
        const n = KorvelVetra.docs.vetra_stage.elementNode(3);
        return [getComputedStyle(n).display, n.textContent];
    });
    assert.deepEqual(acted, ['none', 'changed']);
    s = await state();
    assert.deepEqual(s.box, [10, 10, 108]);
    assert.equal(s.shadow, 'none', 'dropped by the layout');
    assert.equal(s.border, '4px rgb(0, 255, 0)');
    assert.equal(s.text, 'narrow');
    assert.equal(s.opacity, '0.5', 'the timeline shows the new layout at once');
    assert.equal(s.scene, 'rgb(255, 255, 255)');
    assert.equal(s.stage, '500px');

    await page.setViewportSize({ width: 900, height: 400 });
    await page.waitForFunction(() => KorvelVetra.docs.vetra_stage.layout[0] === 2);
    s = await state();
    assert.deepEqual(s.box, [20, 30, 452]);
    assert.equal(s.text, 'base');
    assert.notEqual(s.shadow, 'none');
    assert.equal(s.opacity, '0.8');
    assert.deepEqual(problems, []);
    await page.close();
});

test('the stage is centred and fitted in its container', async () => {
    const containers = {
        both: { center: 'both' },
        horizontal: { center: 'horizontal' },
        vertical: { center: 'vertical' },
        fit: { center: 'none', autofit: true },
        bothfit: { center: 'both', autofit: true },
    };
    let body = '';
    let calls = '';
    for (const [id, options] of Object.entries(containers)) {
        body += `<div id="${id}" style="position:relative;width:600px;height:400px"></div>`;
        calls += `KorvelVetra.openDoc('demo.js', '${id}', ${JSON.stringify(options)});`;
    }
    body += '<div id="grow" style="width:200px"></div>';
    calls += "KorvelVetra.openDoc('demo.js', 'grow', {center: 'both', autofit: true});";
    const page1 =
        '<!DOCTYPE html><html><head><script src="vtplayer.js"></script></head>' +
        `<body style="margin:0">${body}<script>${calls}</script></body></html>`;
    const site = writeSite({
        docData: { w: 400, h: 300, dur: 0, scenes: [scene(1, [element(1, 5, { r: [0, 0, 400, 300, 0] })])] },
        files: { 'multi.html': page1 },
    });
    const { page, problems } = await openPage(pathToFileURL(path.join(path.dirname(site), 'multi.html')).href);
    const ids = [...Object.keys(containers), 'grow'];
    const places = await page.evaluate(async (list) => {
        const out = {};
        for (const id of list) {
            await KorvelVetra.ready(id);
            const c = document.getElementById(id).getBoundingClientRect();
            const s = document.querySelector(`#${id} > .vetra-stage`).getBoundingClientRect();
            out[id] = [s.left - c.left, s.top - c.top, s.width, s.height, c.height].map((v) => Math.round(v * 10) / 10);
        }
        return out;
    }, ids);
    assert.deepEqual(problems, []);
    assert.deepEqual(places.both, [100, 50, 400, 300, 400]);
    assert.deepEqual(places.horizontal, [100, 0, 400, 300, 400]);
    assert.deepEqual(places.vertical, [0, 50, 400, 300, 400]);
    assert.deepEqual(places.fit, [0, 0, 533.3, 400, 400]);
    assert.deepEqual(places.bothfit, [33.3, 0, 533.3, 400, 400]);
    assert.deepEqual(places.grow, [0, 0, 200, 150, 150], 'a container without height takes the fitted stage height');
    await page.close();
});

test('scenes change by index, id and special targets, with transitions, events and auto-advance', async () => {
    const scenes = [
        scene(10, [element(1, 5, { txt: txt('one') })], { aa: true, timelines: [{ id: 1, n: 'Main', dur: 150, l: { end: 150 } }] }),
        scene(20, [element(1, 5, { txt: txt('two') })], { st: [1, 300, 0], e: [[50, [103, 7]], [51, [103, 9]]] }),
        scene(30, [
            element(1, 5, { txt: txt('three') }, { e: [[100, [72, 2]]] }),
            element(2, 4, { d: 0, r: [0, 100, 50, 20, 0], txt: txt('hidden') }),
        ]),
    ];
    const { page, problems } = await openSite({
        docData: { w: 400, h: 300, dur: 150, scenes, e: [[21, [103, 8]]] },
        functions: [
            [7, 'onActivate', "window.__log.push('activate ' + doc.sceneIndex + ' ' + (getDocument() === doc));"],
            [8, 'onReady', "window.__log.push('ready ' + doc.sceneCount);"],
            [9, 'onDeactivate', "window.__log.push('deactivate ' + doc.sceneIndex);"],
        ],
        options: { paused: false },
    }, { init: () => (window.__log = []) });
    const shown = () =>
        page.evaluate(() => ({
            index: KorvelVetra.docs.vetra_stage.sceneIndex,
            frames: [...document.querySelectorAll('.vetra-scene-frame')].map((f) => f.textContent),
        }));
    const go = (...args) => page.evaluate((a) => KorvelVetra.docs.vetra_stage.goToScene(...a), args);

    // The first scene ends its main timeline and moves on with the fade of the second.
    await page.waitForFunction(() => KorvelVetra.docs.vetra_stage.sceneIndex === 1);
    await page.waitForFunction(() => document.querySelectorAll('.vetra-scene-frame').length === 1);
    assert.deepEqual(await shown(), { index: 1, frames: ['two'] });
    assert.deepEqual(await page.evaluate(() => window.__log), ['ready 3', 'activate 1 true']);

    await go(30, true);
    assert.deepEqual(await shown(), { index: 2, frames: ['threehidden'] }, 'no transition: at once');
    assert.deepEqual(await page.evaluate(() => window.__log.slice(2)), ['deactivate 1']);

    // Listeners of the shown scene's elements are bound: a click shows the hidden text.
    await page.evaluate(() => KorvelVetra.docs.vetra_stage.elementNode(1).click());
    assert.equal(await page.evaluate(() => getComputedStyle(KorvelVetra.docs.vetra_stage.elementNode(2)).display), 'block');

    await go(-2);
    assert.equal((await shown()).index, 2, 'no scene after the last');
    await go(-5);
    assert.equal((await shown()).index, 0);
    await go(-4);
    assert.equal((await shown()).index, 2);
    await go(-3);
    assert.equal((await shown()).index, 1);
    await go(99);
    await go(3, true);
    assert.equal((await shown()).index, 1, 'unknown targets change nothing');

    // A transition given to the jump replaces the scene's own: a push from the right.
    await go(0, false, [2, 2000, 0, 2]);
    await page.waitForTimeout(300);
    const mid = await page.evaluate(() => [...document.querySelectorAll('.vetra-scene-frame')].map((f) => [f.textContent, f.style.transform]));
    assert.equal(mid.length, 2);
    assert.equal(mid[0][0], 'two');
    assert.match(mid[0][1], /^translate3d\(-\d+(\.\d+)?px, 0px, 0px\)$/, 'the old scene leaves to the left');
    assert.equal(mid[1][0], 'one');
    assert.match(mid[1][1], /^translate3d\(\d+(\.\d+)?px, 0px, 0px\)$/, 'the new one comes from the right');
    // Another jump ends the running transition first.
    await go(2);
    assert.deepEqual(await shown(), { index: 2, frames: ['threehidden'] });
    assert.deepEqual(problems, []);
    await page.close();
});

test('symbols play inside their instances and answer to actions', async () => {
    const fade = { el: 1, p: 'o', t: 0, d: 200, s: 0, e: 100, es: 0 };
    const symbol = {
        scenes: [
            scene(1, [element(1, 5, { r: ['10%', 0, '50%', '50%', 0], o: 0, f: [1, 0, 0, 255, 255] })], {
                r: [0, 0, '100%', '100%', 0],
                f: [0],
                timelines: [{ id: 1, n: 'Main', dur: 200, ra: [[0, 0, [fade]]] }],
            }),
        ],
        dur: 200,
        align: 0,
        af: false,
    };
    const elems = [
        element(1, 7, { r: [0, 0, 100, 80, 0] }, { rs: 5, ap: true }),
        element(2, 7, { r: [200, 0, 200, 80, 0] }, { rs: 5, ap: false }),
        element(3, 5, { r: [0, 200, 50, 50, 0], txt: txt('play') }, { e: [[100, [21, 2, 1, 0]]] }),
    ];
    const { page, problems } = await openSite({
        docData: { w: 400, h: 300, dur: 0, scenes: [scene(1, elems)], resources: [[5, 3, 'Fader', symbol]] },
    });
    const inner = () =>
        page.evaluate(() => {
            const doc = KorvelVetra.docs.vetra_stage;
            return [1, 2].map((id) => {
                const box = doc.elementNode(id).querySelector('.vetra-kind-div');
                return [box.style.opacity, box.offsetLeft, box.offsetWidth];
            });
        });
    await page.waitForFunction(() => KorvelVetra.docs.vetra_stage.elementNode(1).querySelector('.vetra-kind-div').style.opacity === '1');
    assert.deepEqual(await inner(), [['1', 10, 50], ['0', 20, 100]], 'only the auto-playing instance plays; sizes follow each box');
    await page.evaluate(() => KorvelVetra.docs.vetra_stage.elementNode(3).click());
    await page.waitForFunction(() => KorvelVetra.docs.vetra_stage.elementNode(2).querySelector('.vetra-kind-div').style.opacity === '1');
    assert.deepEqual(problems, []);
    await page.close();
});

test('a timeline drives the views in one frame loop that stops when nothing plays', async () => {
    const move = (p, s, e) => ({ el: 1, p, t: 0, d: 400, s, e, es: 0 });
    const sceneColor = { el: 0, p: 'fc', t: 0, d: 400, s: [0, 0, 0, 255], e: [0, 0, 200, 255], es: 0 };
    const timelines = [{ id: 1, n: 'Main', dur: 400, ra: [[0, 0, [move('o', 0, 100), move('lt', '0px', '100px'), sceneColor]]] }];
    const { page, problems } = await openSite(
        {
            docData: { w: 400, h: 300, dur: 400, scenes: [scene(1, [element(1, 5, { r: [0, 0, 50, 50, 0], txt: txt('') })], { timelines })] },
            options: { paused: true },
        },
        {
            init: () => {
                window.__frames = 0;
                const request = window.requestAnimationFrame.bind(window);
                window.requestAnimationFrame = (callback) => {
                    window.__frames++;
                    return request(callback);
                };
            },
        },
    );
    const look = () =>
        page.evaluate(() => {
            const n = KorvelVetra.docs.vetra_stage.elementNode(1);
            return [getComputedStyle(n).opacity, n.style.left, document.querySelector('.vetra-scene').style.backgroundColor];
        });
    assert.deepEqual(await look(), ['1', '0px', 'rgb(255, 255, 255)'], 'paused: the layout values');
    await page.evaluate(() => KorvelVetra.docs.vetra_stage.seek(200));
    await page.waitForFunction(() => KorvelVetra.docs.vetra_stage.elementNode(1).style.opacity === '0.5');
    assert.deepEqual(await look(), ['0.5', '50px', 'rgb(0, 0, 100)']);

    await page.evaluate(() => KorvelVetra.docs.vetra_stage.play());
    await page.waitForFunction(() => !KorvelVetra.docs.vetra_stage.timeline().playing);
    await page.waitForTimeout(50);
    assert.deepEqual(await look(), ['1', '100px', 'rgb(0, 0, 200)']);
    const frames = await page.evaluate(() => window.__frames);
    await page.waitForTimeout(300);
    assert.equal(await page.evaluate(() => window.__frames), frames, 'no frames are asked for once the timeline ends');
    assert.deepEqual(problems, []);
    await page.close();
});

test('loading shows the indicator, links the style sheet, and reports a data script that is missing', async () => {
    const dir = path.dirname(
        writeSite({
            docData: { w: 400, h: 300, dur: 0, scenes: [scene(1, [element(1, 0, {}, { rs: 1 })])], resources: [[1, 0, 'slow.png', 'slow.png']] },
            images: ['slow.png'],
            loadScript:
                "(function(Vetra) {\n\tVetra.openDoc('demo.js', 'vetra_stage', {paused:false, center: 'none', preloaderOptions: " +
                "{diameter: 80, density: 12, range: 1, speed: 2, color: '#ff0000', shape: 'square'}});\n\t" +
                "Vetra.openDoc('missing.js', 'other', {});})(KorvelVetra);",
        }),
    );
    // The second container comes after the load script: the player waits for the page to have it.
    writeFileSync(path.join(dir, 'demo.html'), readFileSync(path.join(dir, 'demo.html'), 'utf8').replace('</body>', '<div id="other"></div></body>'));
    const server = await serveSlowly(dir);
    try {
        // Images being loaded hold the page's load event back, so the test goes on before it.
        const { page, problems } = await openPage(server.url('demo.html'), { waitUntil: 'domcontentloaded' });
        await page.waitForSelector('#vetra_stage canvas.vetra-indicator');
        const indicator = await page.evaluate(() => {
            const canvas = document.querySelector('#vetra_stage canvas.vetra-indicator');
            return [canvas.style.width, document.querySelector('#vetra_stage .vetra-stage') !== null];
        });
        assert.deepEqual(indicator, ['80px', false], 'the indicator shows, the stage not yet');
        const missing = await page.evaluate(() => KorvelVetra.ready('other').then(() => 'opened', (error) => error.message));
        assert.match(missing, /missing\.js/);
        server.release();
        await page.evaluate(() => KorvelVetra.ready('vetra_stage'));
        const after = await page.evaluate(() => [
            document.querySelector('canvas.vetra-indicator') === null,
            document.querySelectorAll('link[rel="stylesheet"][href="demo.css"]').length,
            getComputedStyle(document.querySelector('.vetra-stage')).overflow,
            KorvelVetra.loadedDocs.length,
            KorvelVetra.loadedDocs[0].api === KorvelVetra.docs.vetra_stage,
        ]);
        assert.deepEqual(after, [true, 1, 'hidden', 1, true]);
        assert.deepEqual(problems.filter((p) => !/404/.test(p)), []);
        await page.close();
    } finally {
        server.close();
    }
});

test('a preloader document plays while the document loads and hears its progress', async () => {
    const preloader = {
        v: 3,
        mpv: 2,
        w: 400,
        h: 300,
        dur: 0,
        scenes: [scene(1, [element(1, 4, { txt: txt('Loading') })], { f: [0] })],
        resources: [],
        resourceFolder: 'preloader_res',
        pe: [[1, [103, 1]], [2, [103, 2]], [3, [103, 3]]],
    };
    const log = (what) => `window.__log.push('${what} ' + JSON.stringify([e.loaded, e.total]) + ' ' + (doc.elementNode(1) !== null));`;
    const functions = [
        [1, 'onStart', log('start')],
        [2, 'onProgress', log('progress')],
        [3, 'onComplete', log('complete')],
    ];
    let fnText = 'var f = [];';
    for (const [id, name, body] of functions) {
        fnText += `\n\tvar ${name} = function ${name}(doc, e) {\n${body}\n};\n\tf.push([${id}, "${name}", ${name}]);`;
    }
    const dir = path.dirname(
        writeSite({
            docData: {
                w: 400,
                h: 300,
                dur: 0,
                scenes: [scene(1, [element(1, 0, {}, { rs: 1 }), element(2, 0, {}, { rs: 2 })])],
                resources: [[1, 0, 'slow.png', 'slow.png'], [2, 0, 'fast.png', 'fast.png']],
            },
            images: ['slow.png', 'fast.png'],
            loadScript:
                '(function(Vetra) {\n\tpreloaderDocData = ' +
                JSON.stringify(preloader) +
                ';\n\t' +
                fnText +
                '\n\tpreloaderDocData.f = f;\n\tpreloaderDocData.li = false;' +
                "\n\tVetra.openDoc('demo.js', 'vetra_stage', {paused:false, preloaderDoc: preloaderDocData, center: 'both'});})(KorvelVetra);",
        }),
    );
    const server = await serveSlowly(dir);
    try {
        const { page, problems } = await openPage(server.url('demo.html'), {
            waitUntil: 'domcontentloaded',
            init: () => (window.__log = []),
        });
        await page.waitForFunction(() => window.__log.some((line) => line.startsWith('progress')));
        const during = await page.evaluate(() => [
            document.querySelector('#vetra_stage .vetra-stage').textContent,
            preloaderDocData.api.sceneCount,
            KorvelVetra.docs.vetra_stage === undefined,
        ]);
        assert.deepEqual(during, ['Loading', 1, true]);
        server.release();
        await page.evaluate(() => KorvelVetra.ready('vetra_stage'));
        const log = await page.evaluate(() => window.__log);
        assert.deepEqual(log, ['start [0,2] true', 'progress [1,2] true', 'progress [2,2] true', 'complete [2,2] true']);
        const stages = await page.evaluate(() =>
            [...document.querySelectorAll('#vetra_stage > .vetra-stage')].map((s) => s.querySelectorAll('.vetra-kind-image').length),
        );
        assert.deepEqual(stages, [2], 'the preloader is gone, the document shows');
        assert.deepEqual(problems, []);
        await page.close();
    } finally {
        server.close();
    }
});
