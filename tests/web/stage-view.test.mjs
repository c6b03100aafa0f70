// The stage view: zoom and scrolling as the studio hears of them, rulers, the breakpoint ruler,
// the container handles, the context menu, and the way in to the editing tools.
//   VETRA_RESOURCES_DIR=<build>/share/vetra-studio/resources node --test tests/web/stage-view.test.mjs

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { launchChromium } from './browser.mjs';
import { openStage, settle, stageToClient, startStudio, submitted, welcomeScene } from './stage-scene.mjs';

let browser;
let server;

before(async () => {
    browser = await launchChromium();
    server = await startStudio([1]);
});

after(async () => {
    await server?.close();
    await browser?.close();
});

const stageWidthOnScreen = (page) => page.$eval('#stage', (n) => n.getBoundingClientRect().width);

test('ctrl+wheel zooms about the pointer and tells the studio; the studio zoom is shown without an echo', async () => {
    const stage = await openStage(browser, server, welcomeScene(0));
    const { page } = stage;
    const under = await stageToClient(page, 300, 200);
    await page.mouse.move(under.x, under.y);
    await page.keyboard.down('Control');
    await page.mouse.wheel(0, -200);
    await page.keyboard.up('Control');
    await settle(page);
    const zooms = stage.calls('setZoomFactor').map((c) => c.args[0]);
    assert.equal(zooms.length, 1);
    assert.ok(zooms[0] > 1.2 && zooms[0] <= 4, String(zooms[0]));
    assert.ok(Math.abs((await stageWidthOnScreen(page)) - 800 * zooms[0]) < 1);
    // The stage point under the pointer is still under it.
    const after = await stageToClient(page, 300, 200);
    assert.ok(Math.abs(after.x - under.x) < 1.5 && Math.abs(after.y - under.y) < 1.5, JSON.stringify([under, after]));
    assert.ok(stage.calls('setSceneOffset').length > 0 && stage.calls('setScrollValue').length > 0);

    // A drag at this zoom moves by screen distance over the zoom.
    const from = await stageToClient(page, 480, 210);
    await page.keyboard.down('Alt');
    await page.mouse.move(from.x, from.y);
    await page.mouse.down();
    await page.mouse.move(from.x + 100, from.y, { steps: 5 });
    await page.mouse.up();
    await page.keyboard.up('Alt');
    await settle(page);
    const move = submitted(stage).find(({ json }) => json.text === 'Move').json.actions[0].params;
    assert.ok(Math.abs(move[5].value - (420 + 100 / zooms[0])) < 0.01, JSON.stringify(move));

    stage.emit('zoomFactorChanged', 0.5);
    await settle(page);
    assert.ok(Math.abs((await stageWidthOnScreen(page)) - 400) < 1);
    assert.equal(stage.calls('setZoomFactor').length, 1, 'no echo of the studio own zoom');
    // Out of range values are held to what the studio allows.
    stage.emit('zoomFactorChanged', 9);
    await settle(page);
    assert.ok(Math.abs((await stageWidthOnScreen(page)) - 3200) < 1);
    await page.close();
});

test('fit to viewport scales the stage into the view and reports the factor; the wheel scrolls', async () => {
    const stage = await openStage(browser, server, welcomeScene(0), { width: 640, height: 480 });
    const { page } = stage;
    stage.emit('fitToViewportChanged', true);
    await settle(page);
    const view = await page.$eval('#viewport', (n) => n.getBoundingClientRect().toJSON());
    const box = await page.$eval('#stage', (n) => n.getBoundingClientRect().toJSON());
    assert.ok(box.left >= view.left && box.right <= view.right && box.top >= view.top && box.bottom <= view.bottom);
    const reported = stage.calls('setZoomFactor').map((c) => c.args[0]);
    assert.ok(reported.length === 1 && Math.abs(reported[0] - box.width / 800) < 1e-6, JSON.stringify(reported));

    // Scrolling moves the stage and the studio hears the scroll.
    stage.emit('zoomFactorChanged', 2);
    await settle(page);
    const before = await page.$eval('#stage', (n) => n.getBoundingClientRect().left);
    await page.mouse.move(view.left + 100, view.top + 100);
    await page.mouse.wheel(120, 0);
    await settle(page);
    assert.ok(Math.abs((await page.$eval('#stage', (n) => n.getBoundingClientRect().left)) - (before - 120)) < 1);
    const scroll = stage.calls('setScrollValue').at(-1).args;
    assert.ok(scroll[0] !== 0, JSON.stringify(scroll));
    await page.close();
});

test('rulers show stage pixels and can be hidden; the breakpoint ruler edits breakpoints', async () => {
    const stage = await openStage(browser, server, welcomeScene(0));
    const { page } = stage;
    // The marker of the breakpoint at 600 sits over the ruler at stage x 600.
    const marker = await page.$eval('.bp-h .bp-marker', (n) => {
        const r = n.getBoundingClientRect();
        return { x: r.left + r.width / 2, y: r.top + r.height / 2, value: n.dataset.value };
    });
    const at600 = await stageToClient(page, 600, 0);
    assert.equal(marker.value, '600');
    assert.ok(Math.abs(marker.x - at600.x) <= 1, JSON.stringify([marker, at600]));

    // Dragging it sends record 91 with the new value.
    await page.mouse.move(marker.x, marker.y);
    await page.mouse.down();
    await page.mouse.move(marker.x + 50, marker.y, { steps: 5 });
    await page.mouse.up();
    await settle(page);
    let command = submitted(stage).at(-1);
    assert.equal(command.json.text, 'Update Breakpoint');
    assert.deepEqual(
        command.json.actions.map((a) => [a.cmd, a.params.map((p) => p.value)]),
        [[91, [0, 2, 650]]],
    );
    // The studio's answer: the breakpoints of that direction as they are now.
    await stage.records({
        cmd: 91,
        isUndoCmd: false,
        params: [
            { type: 1, value: 0 },
            { type: 8, value: [0, 0] },
            { type: 8, value: [1, 0] },
            { type: 8, value: [2, 650] },
        ],
    });
    const moved = await page.$eval('.bp-h .bp-marker', (n) => {
        const r = n.getBoundingClientRect();
        return { x: r.left + r.width / 2, y: r.top + r.height / 2, value: n.dataset.value };
    });
    assert.equal(moved.value, '650');

    // A click on a range shows its layout (record 92, responsive), without an undo step.
    const at300 = await stageToClient(page, 300, 0);
    await page.mouse.click(at300.x, marker.y);
    await settle(page);
    command = submitted(stage).at(-1);
    assert.equal(command.runOnly, true);
    assert.deepEqual(
        command.json.actions.map((a) => [a.cmd, a.params.map((p) => p.value)]),
        [[92, [1, 0, true]]],
    );

    // The right button opens the studio's breakpoint menu for the marker.
    await page.mouse.click(moved.x, moved.y, { button: 'right' });
    await settle(page);
    assert.deepEqual(stage.calls('setEditingBreakpoint').at(-1).args, [0, 650, 650]);
    const order = server.calls
        .filter((c) => c.method === 'setEditingBreakpoint' || c.method === 'onShowContextMenu')
        .slice(-2);
    assert.deepEqual(
        order.map((c) => c.method),
        ['setEditingBreakpoint', 'onShowContextMenu'],
    );

    // Breakpoint records move the marker.
    await stage.records({
        cmd: 91,
        isUndoCmd: false,
        params: [
            { type: 1, value: 0 },
            { type: 8, value: [0, 0] },
            { type: 8, value: [1, 0] },
            { type: 8, value: [2, 700] },
        ],
    });
    assert.equal(await page.$eval('.bp-h .bp-marker', (n) => n.dataset.value), '700');

    stage.emit('rulerVisibilityChanged', false);
    await settle(page);
    assert.equal(await page.$eval('.ruler-top', (n) => n.getClientRects().length), 0);
    assert.equal(await page.$eval('#viewport', (n) => n.getBoundingClientRect().top), 0);
    await page.close();
});

test('the container handles resize the stage through the studio', async () => {
    const stage = await openStage(browser, server, welcomeScene(0));
    const { page } = stage;
    assert.equal(await page.$$eval('.vt-container-handle', (n) => n.length), 0);
    stage.emit('containerHandlerVisibilityChanged', true);
    await settle(page);
    assert.equal(await page.$$eval('.vt-container-handle', (n) => n.length), 3);
    const edge = await stageToClient(page, 800, 300);
    await page.mouse.move(edge.x, edge.y);
    await page.mouse.down();
    await page.mouse.move(edge.x + 100, edge.y, { steps: 4 });
    assert.ok(Math.abs((await stageWidthOnScreen(page)) - 900) < 1, 'the stage follows the drag');
    await page.mouse.up();
    await settle(page);
    const command = submitted(stage).at(-1);
    assert.equal(command.runOnly, true);
    assert.deepEqual(
        command.json.actions.map((a) => [a.cmd, a.params.map((p) => p.value)]),
        [[59, [900]]],
    );
    // Until the studio answers with the new size, the stage keeps the model's.
    assert.ok(Math.abs((await stageWidthOnScreen(page)) - 800) < 1);
    await stage.records({ cmd: 59, isUndoCmd: false, params: [{ type: 1, value: 900 }] });
    assert.ok(Math.abs((await stageWidthOnScreen(page)) - 900) < 1);
    await page.close();
});

test('the right button selects and opens the studio menu; double clicks and the studio open the tools', async () => {
    const stage = await openStage(browser, server, welcomeScene(0));
    const { page } = stage;
    const logo = await stageToClient(page, 480, 210);
    await page.mouse.click(logo.x, logo.y, { button: 'right' });
    await settle(page);
    const menuCalls = server.calls
        .filter((c) => ['setFocusedItemId', 'onShowContextMenu'].includes(c.method))
        .slice(-2);
    assert.deepEqual(
        menuCalls.map((c) => [c.method, c.args]),
        [
            ['setFocusedItemId', [4]],
            ['onShowContextMenu', []],
        ],
    );
    assert.deepEqual(
        submitted(stage)
            .at(-1)
            .json.actions.map((a) => [a.cmd, a.params[0].value, a.params[1].value]),
        [[33, 4, true]],
    );

    // A double click goes into the card to the text inside it; the next one opens the text's edit,
    // which the studio closes again.
    const text = await stageToClient(page, 220, 205);
    await page.mouse.dblclick(text.x, text.y);
    await settle(page);
    assert.deepEqual(
        submitted(stage)
            .at(-1)
            .json.actions.map((a) => [a.params[0].value, a.params[1].value])
            .sort(),
        [
            [2, false],
            [3, true],
        ],
    );
    assert.equal(await page.$eval('#canvas-root', (n) => n.getAttribute('data-tool')), null);
    await page.mouse.dblclick(text.x, text.y);
    await settle(page);
    assert.equal(await page.$eval('#canvas-root', (n) => n.getAttribute('data-tool')), 'editText');
    assert.deepEqual(stage.calls('setEditingText').at(-1).args.slice(0, 1), [true]);
    assert.equal(await page.$$eval('.vt-handle', (n) => n.length), 0, 'no handles while a tool runs');
    stage.emit('stopEditText', true);
    await settle(page);
    assert.equal(await page.$eval('#canvas-root', (n) => n.getAttribute('data-tool')), null);

    // The drawing tool: a drag on the stage inserts a rectangle.
    stage.emit('insertRectangle');
    await settle(page);
    const a = await stageToClient(page, 100, 450);
    await page.mouse.move(a.x, a.y);
    await page.mouse.down();
    await page.mouse.move(a.x + 80, a.y + 60, { steps: 5 });
    await page.mouse.up();
    await settle(page);
    const insert = submitted(stage).at(-1).json.actions[0];
    assert.equal(insert.cmd, 1);
    assert.equal(insert.params[0].type, 11);
    stage.emit('cancelBuildingItem');
    await settle(page);
    assert.equal(await page.$eval('#canvas-root', (n) => n.getAttribute('data-tool')), null);
    assert.deepEqual(stage.problems, []);
    await page.close();
});
