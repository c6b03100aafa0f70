// The stage page against a fake studio: connecting, drawing a scene of the welcome sample as the
// studio exports it, applying the studio's records, playback, and keeping project content from
// running.
//   VETRA_RESOURCES_DIR=<build>/share/vetra-studio/resources node --test tests/web/stage-core.test.mjs

import assert from 'node:assert/strict';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { launchChromium, pageUrl } from './browser.mjs';
import {
    elementBox,
    findElement,
    openStage,
    settle,
    stageResources,
    stageToClient,
    startStudio,
    welcomeScene,
} from './stage-scene.mjs';

let browser;
const servers = [];

before(async () => {
    browser = await launchChromium();
});

after(async () => {
    await Promise.all(servers.map((server) => server.close()));
    await browser?.close();
});

async function studio(ids) {
    const server = await startStudio(ids);
    servers.push(server);
    return server;
}

const param = (type, value) => (value === undefined ? { type } : { type, value });

test('the page takes its object by the canvas id, whenever the id comes, and asks for the scene', async () => {
    const server = await studio([1, 2]);
    // The id set after the channel is up (the usual order) picks that object.
    const late = await openStage(browser, server, null, { canvasId: 2 });
    assert.equal(late.calls('sendSceneDataToJS').length, 1);
    assert.equal(server.calls.filter((c) => c.object === 'vtcanvas_1').length, 0);
    await late.page.close();

    // The id set before the page's script runs (a reload that keeps the studio's snippet) works too.
    const page = await browser.newPage();
    await page.addInitScript(() => {
        window.canvasId = 1;
    });
    const html = path.join(stageResources(), 'canvas', 'index.html');
    await page.goto(pageUrl(html, { webChannelBaseUrl: server.url }));
    await server.waitForCall((c) => c.object === 'vtcanvas_1' && c.method === 'sendSceneDataToJS');
    // A reload connects again and asks again, once.
    const before = server.calls.filter((c) => c.object === 'vtcanvas_1' && c.method === 'sendSceneDataToJS').length;
    await page.reload();
    await server.waitForCall(
        (c) => c.object === 'vtcanvas_1' && c.method === 'sendSceneDataToJS' && server.calls.indexOf(c) >= before + 1,
    );
    await settle(page);
    assert.equal(
        server.calls.filter((c) => c.object === 'vtcanvas_1' && c.method === 'sendSceneDataToJS').length,
        before + 1,
    );
    await page.close();
});

test('a scene of the sample is drawn with every element where the model puts it', async () => {
    const server = await studio([1]);
    const data = welcomeScene(0);
    const stage = await openStage(browser, server, data);
    const { page } = stage;
    // Plain boxes: left, top, width and height of the model, at zoom 1 from the stage's origin.
    for (const id of [4, 6]) {
        const [l, t, w, h] = findElement(data.scene, id).r;
        const box = await elementBox(page, id);
        const origin = await stageToClient(page, l, t);
        assert.ok(
            Math.abs(box.x - origin.x) < 0.6 && Math.abs(box.y - origin.y) < 0.6,
            `element ${id} at ${JSON.stringify(box)}`,
        );
        assert.ok(Math.abs(box.w - w) < 0.6 && Math.abs(box.h - h) < 0.6, `element ${id} sized ${box.w} x ${box.h}`);
    }
    // The card is shown at time 0 of its timeline: scaled to 60% and turned by -8 degrees.
    const card = await page.$eval('[data-vt-id="2"]', (node) => getComputedStyle(node).transform);
    const m = card
        .match(/matrix\(([^)]+)\)/)[1]
        .split(',')
        .map(Number);
    assert.ok(Math.abs(Math.hypot(m[0], m[1]) - 0.6) < 1e-3, card);
    assert.ok(Math.abs((Math.atan2(m[1], m[0]) * 180) / Math.PI + 8) < 0.01, card);
    // Children sit in their group; the sample's stage size is the container's.
    assert.equal(await page.$eval('[data-vt-id="8"]', (node) => node.parentElement.dataset.vtId), '7');
    assert.deepEqual(await page.$eval('#stage', (n) => [n.offsetWidth, n.offsetHeight]), [
        data.containerW,
        data.containerH,
    ]);
    assert.deepEqual(stage.problems, []);
    await page.close();
});

test('project content cannot run script on the stage', async () => {
    const server = await studio([1]);
    const data = welcomeScene(0, (scene) => {
        findElement(scene, 3).txt[0] =
            'Card <img src="x" onerror="window.__ran = 1"><script>window.__ran = 2</script><b>bold</b>';
        return scene;
    });
    data.scene.elems.push({
        id: 50,
        k: 3,
        n: 'W',
        r: [0, 0, 100, 100, 0],
        f: [0],
        fe: [0, 0, 100, 100, 100, 0, 0, 0],
        o: 100,
        of: 0,
        useresource: false,
        url: '',
        srcdoc: '<p>widget</p>',
        selected: false,
        locked: false,
        visible: true,
    });
    const stage = await openStage(browser, server, data);
    const { page } = stage;
    await settle(page);
    assert.equal(await page.evaluate(() => window.__ran), undefined);
    const text = await page.$eval('[data-vt-id="3"] .vetra-text', (node) => node.innerHTML);
    assert.match(text, /<b>bold<\/b>/);
    assert.doesNotMatch(text, /onerror|script/);
    // Widgets load in a frame of their own origin.
    const sandbox = await page.$eval('[data-vt-id="50"] iframe', (frame) => frame.getAttribute('sandbox'));
    assert.ok(sandbox !== null && sandbox.includes('allow-scripts'), sandbox);
    assert.ok(!sandbox.includes('allow-same-origin'), sandbox);
    // Only the page's own code holds the channel object: nothing reachable from window has its slots.
    const exposed = await page.evaluate(() => {
        const holds = (value) => {
            try {
                return !!value && typeof value === 'object' && typeof value.submitCommandFromJS === 'function';
            } catch {
                return false; // a frame of another origin, such as a widget's
            }
        };
        return Object.getOwnPropertyNames(window).filter((key) => {
            let value;
            try {
                value = window[key];
            } catch {
                return false;
            }
            if (holds(value)) {
                return true;
            }
            try {
                return !!value && typeof value === 'object' && value !== window && Object.values(value).some(holds);
            } catch {
                return false;
            }
        });
    });
    assert.deepEqual(exposed, []);
    await page.close();
});

test('records from the studio change the stage in place; what it cannot follow asks for one fresh scene', async () => {
    const server = await studio([1]);
    const stage = await openStage(browser, server, welcomeScene(0));
    const { page } = stage;

    // Geometry of the logo: a new left and top.
    await stage.records({
        cmd: 1000,
        isUndoCmd: false,
        params: [param(1, 4), param(7, { r: [100, 50, 120, 120, 0] }), param(1, 0)],
    });
    let box = await elementBox(page, 4);
    let at = await stageToClient(page, 100, 50);
    assert.ok(Math.abs(box.x - at.x) < 0.6 && Math.abs(box.y - at.y) < 0.6, JSON.stringify(box));

    // Selection records draw the selection; the second one takes it away again.
    await stage.records({ cmd: 33, isUndoCmd: false, params: [param(1, 5), param(4, true)] });
    assert.equal(await page.$$eval('.vt-outline', (n) => n.length), 1);
    assert.equal(await page.$$eval('.vt-handle', (n) => n.length), 8);
    await stage.records({ cmd: 33, isUndoCmd: false, params: [param(1, 5), param(4, false)] });
    assert.equal(await page.$$eval('.vt-outline', (n) => n.length), 0);

    // Text, insert and remove.
    const txt = [
        'Changed',
        "'Arial'",
        20,
        [0, 0, 0, 255],
        [0, 0, 0, 0],
        'normal',
        false,
        false,
        false,
        4,
        128,
        120,
        0,
        0,
        0,
    ];
    await stage.records({ cmd: 1008, isUndoCmd: false, params: [param(1, 3), param(8, txt)] });
    assert.equal(await page.$eval('[data-vt-id="3"] .vetra-text', (n) => n.textContent), 'Changed');
    const added = {
        id: 60,
        k: 5,
        n: 'Div',
        r: [10, 10, 50, 40, 0],
        f: [1, 255, 0, 0, 255],
        fe: [0, 0, 100, 100, 100, 0, 0, 0],
        o: 100,
        of: 0,
        selected: true,
        locked: false,
        visible: true,
    };
    await stage.records({
        cmd: 1,
        isUndoCmd: false,
        params: [param(11, added), param(1, 0), param(1, 1), param(1, 8)],
    });
    assert.equal(await page.$eval('[data-vt-id="60"]', (n) => n.previousElementSibling?.dataset.vtId ?? null), null);
    assert.equal(await page.$$eval('.vt-outline', (n) => n.length), 1, 'an element inserted as selected shows so');
    await stage.records({ cmd: 2, isUndoCmd: false, params: [param(1, 60), param(1, 0), param(1, 1), param(1, 8)] });
    assert.equal(await page.$('[data-vt-id="60"]'), null);
    assert.equal(await page.$$eval('.vt-outline', (n) => n.length), 0);

    // A keyframe record replaces the logo's track: at time 0 it now stands turned by 90 degrees.
    await stage.records({
        cmd: 19,
        isUndoCmd: false,
        params: [param(7, { el: 4, p: 'rZ', anims: [{ t: 0, d: 1000, s: '90deg', e: '180deg', es: 0 }] })],
    });
    const turn = await page.$eval('[data-vt-id="4"]', (n) => getComputedStyle(n).transform);
    const m = turn
        .match(/matrix\(([^)]+)\)/)[1]
        .split(',')
        .map(Number);
    assert.ok(Math.abs(Math.atan2(m[1], m[0]) - Math.PI / 2) < 1e-3, turn);

    // A broken record and one the stage cannot apply: the next still applies, and a single fresh
    // scene is asked for once the command has ended.
    const asked = stage.calls('sendSceneDataToJS').length;
    server.emitSignal(stage.object, 'dataChangedToJS', ['{not json']);
    server.emitSignal(stage.object, 'dataChangedToJS', [
        JSON.stringify({ cmd: 1039, isUndoCmd: false, params: [param(7, { el: 4, p: 'o', v: 50 })] }),
    ]);
    await stage.records(
        { cmd: 1000, isUndoCmd: false, params: [param(1, 4), param(7, { r: [200, 60, 120, 120, 0] }), param(1, 0)] },
        { cmd: 2, isUndoCmd: true, params: [param(1, 6), param(1, 3), param(1, 1), param(1, 8)] },
    );
    box = await elementBox(page, 4);
    at = await stageToClient(page, 200, 60);
    assert.ok(Math.abs(box.x - at.x) < 1, 'a record after a broken one still applies');
    assert.equal(stage.calls('sendSceneDataToJS').length, asked + 1);
    await page.close();
});

test('tree records reorder and move elements; animation records rebuild the shown timeline', async () => {
    const server = await studio([1]);
    const stage = await openStage(browser, server, welcomeScene(0));
    const { page } = stage;
    const order = () =>
        page.$$eval('[data-vt-scene] > [data-vt-id]', (nodes) => nodes.map((n) => Number(n.dataset.vtId)));
    assert.deepEqual(await order(), [1, 2, 4, 5, 6, 7]);
    // The swoosh to the back.
    await stage.records({ cmd: 4, isUndoCmd: false, params: [param(1, 6), param(1, 0)] });
    assert.deepEqual(await order(), [6, 1, 2, 4, 5, 7]);
    // The logo into the badge group, placed inside it.
    await stage.records({
        cmd: 3,
        isUndoCmd: false,
        params: [param(1, 4), param(1, 0), param(7, { r: [10, 10, 120, 120, 0] }), param(1, 7), param(1, 6)],
    });
    assert.deepEqual(await order(), [6, 1, 2, 5, 7]);
    assert.equal(await page.$eval('[data-vt-id="4"]', (n) => n.parentElement.dataset.vtId), '7');
    const box = await elementBox(page, 4);
    const at = await stageToClient(page, 530, 350);
    assert.ok(Math.abs(box.x - at.x) < 0.6 && Math.abs(box.y - at.y) < 0.6, JSON.stringify(box));

    // At 1500 ms the logo is half way round; without its animation it stands still.
    stage.emit('setCurrentTime', 1500, true);
    await settle(page);
    const turned = () => page.$eval('[data-vt-id="4"]', (n) => getComputedStyle(n).transform);
    assert.notEqual(await turned(), 'none');
    await stage.records({ cmd: 18, isUndoCmd: false, params: [param(7, { el: 4 })] });
    assert.equal(await turned(), 'none');
    // An added animation fades the swoosh; undoing it takes the fade away again.
    const fade = { anims: [{ el: 6, p: 'o', t: 0, d: 3000, s: 0, e: 100, es: 0 }] };
    const opacity = () => page.$eval('[data-vt-id="6"]', (n) => Number(getComputedStyle(n).opacity));
    await stage.records({ cmd: 17, isUndoCmd: false, params: [param(7, fade)] });
    assert.ok(Math.abs((await opacity()) - 0.5) < 0.01);
    await stage.records({ cmd: 17, isUndoCmd: true, params: [param(7, fade)] });
    assert.equal(await opacity(), 1);
    // Records the stage cannot follow without the data ask for the scene.
    const asked = stage.calls('sendSceneDataToJS').length;
    await stage.records({ cmd: 18, isUndoCmd: true, params: [param(7, { el: 4 })] });
    assert.equal(stage.calls('sendSceneDataToJS').length, asked + 1);
    assert.deepEqual(stage.problems, []);
    await page.close();
});

test('the shown timeline plays, pauses and seeks with the studio; finishAllTask stops it and answers', async () => {
    const server = await studio([1]);
    const stage = await openStage(browser, server, welcomeScene(0));
    const { page } = stage;
    const titleOpacity = () => page.$eval('[data-vt-id="1"]', (n) => Number(getComputedStyle(n).opacity));
    assert.equal(await titleOpacity(), 0);
    // Opacity of the title goes from 0 to 1 over the first 800 ms.
    stage.emit('setCurrentTime', 800, true);
    await settle(page);
    assert.equal(await titleOpacity(), 1);
    stage.emit('setCurrentTime', 0, true);
    await settle(page);
    stage.emit('play', 0);
    await page.waitForFunction(
        () => Number(getComputedStyle(document.querySelector('[data-vt-id="1"]')).opacity) > 0.2,
    );
    stage.emit('pause', 300);
    await settle(page);
    const paused = await titleOpacity();
    await new Promise((resolve) => setTimeout(resolve, 200));
    assert.equal(await titleOpacity(), paused, 'nothing moves after pause');
    assert.ok(paused > 0 && paused < 1);

    stage.emit('play', 0);
    await page.waitForFunction(
        () => Number(getComputedStyle(document.querySelector('[data-vt-id="1"]')).opacity) > 0.1,
    );
    stage.emit('finishAllTask');
    await server.waitForCall((c) => c.method === 'onAllTaskFinished');
    const stopped = await titleOpacity();
    await new Promise((resolve) => setTimeout(resolve, 150));
    assert.equal(await titleOpacity(), stopped);
    await page.close();
});
