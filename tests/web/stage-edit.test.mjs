// Editing on the stage with the pointer and the keys: what each gesture sends to the studio, and
// what the stage shows before and after the studio's records come back.
//   VETRA_RESOURCES_DIR=<build>/share/vetra-studio/resources node --test tests/web/stage-edit.test.mjs

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { launchChromium } from './browser.mjs';
import {
    elementBox,
    findElement,
    openStage,
    settle,
    stageToClient,
    startStudio,
    submitted,
    welcomeScene,
} from './stage-scene.mjs';

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

async function freshStage() {
    return openStage(browser, server, welcomeScene(0));
}

/** Drags from one stage point to another in a few steps, with the given keys held. */
async function drag(page, from, to, keys = []) {
    const a = await stageToClient(page, from.x, from.y);
    const b = await stageToClient(page, to.x, to.y);
    for (const key of keys) {
        await page.keyboard.down(key);
    }
    await page.mouse.move(a.x, a.y);
    await page.mouse.down();
    for (let i = 1; i <= 5; ++i) {
        await page.mouse.move(a.x + ((b.x - a.x) * i) / 5, a.y + ((b.y - a.y) * i) / 5);
    }
    await page.mouse.up();
    for (const key of keys) {
        await page.keyboard.up(key);
    }
    await settle(page);
}

async function click(page, p, keys = []) {
    const c = await stageToClient(page, p.x, p.y);
    for (const key of keys) {
        await page.keyboard.down(key);
    }
    await page.mouse.click(c.x, c.y);
    for (const key of keys) {
        await page.keyboard.up(key);
    }
    await settle(page);
}

/** The geometry records of the page's commands: [{ text, id, props, values }]. */
function geometryCommands(stage) {
    const found = [];
    for (const { json, runOnly } of submitted(stage)) {
        for (const action of json.actions.filter((a) => a.cmd === 1000)) {
            const p = action.params;
            assert.deepEqual(
                p.slice(0, 4).map((e) => e.type),
                [1, 1, 1, 1],
            );
            assert.equal(p[4].type, 33);
            assert.equal(p.length, 5 + p[4].value.length, 'one double for each listed property');
            found.push({
                text: json.text,
                runOnly,
                id: p[0].value,
                props: p[4].value,
                values: p.slice(5).map((e) => e.value),
            });
        }
    }
    return found;
}

function selectionCommands(stage) {
    return submitted(stage)
        .filter(({ json }) => json.actions.some((a) => a.cmd === 33))
        .map(({ json, runOnly }) => ({
            runOnly,
            records: json.actions.map((a) => [a.params[0].value, a.params[1].value]),
        }));
}

const near = (a, b, tolerance = 0.01) => Math.abs(a - b) <= tolerance;

test('a drag moves the element live and sends one geometry command; the stage then shows what the model says', async () => {
    const stage = await freshStage();
    const { page } = stage;
    const before = submitted(stage).length;
    // The logo, 120 x 120 at 420, 150; Alt keeps snapping out of the way.
    await drag(page, { x: 480, y: 210 }, { x: 530, y: 240 }, ['Alt']);
    const moves = geometryCommands(stage);
    assert.equal(moves.length, 1);
    const [move] = moves;
    assert.equal(move.text, 'Move');
    assert.equal(move.runOnly, false);
    assert.equal(move.id, 4);
    assert.deepEqual(move.props, [0, 2]);
    assert.ok(near(move.values[0], 470) && near(move.values[1], 180), JSON.stringify(move.values));
    const command = submitted(stage)
        .slice(before)
        .find(({ json }) => json.text === 'Move').json;
    assert.equal(command.sceneId, 1);
    assert.equal(command.symbolResourceId, -1);
    assert.equal(command.responsive, false);

    // Until the studio answers the element stays where it was dropped.
    let box = await elementBox(page, 4);
    let at = await stageToClient(page, 470, 180);
    assert.ok(near(box.x, at.x, 0.6) && near(box.y, at.y, 0.6));
    // The studio's records put it where the model has it.
    await stage.records({
        cmd: 1000,
        isUndoCmd: false,
        params: [
            { type: 1, value: 4 },
            { type: 7, value: { r: [470, 180, 120, 120, 0] } },
            { type: 1, value: 0 },
        ],
    });
    box = await elementBox(page, 4);
    assert.ok(near(box.x, at.x, 0.6) && near(box.y, at.y, 0.6));

    // A command that comes back without records (the model did not change) puts it back.
    await drag(page, { x: 530, y: 240 }, { x: 600, y: 300 }, ['Alt']);
    assert.equal(geometryCommands(stage).length, 2);
    await stage.records();
    box = await elementBox(page, 4);
    assert.ok(near(box.x, at.x, 0.6) && near(box.y, at.y, 0.6), 'back at the model position');

    // Escape drops a drag: nothing is sent and the element stays.
    const a = await stageToClient(page, 530, 240);
    await page.mouse.move(a.x, a.y);
    await page.mouse.down();
    await page.mouse.move(a.x + 40, a.y + 40, { steps: 4 });
    await page.keyboard.press('Escape');
    await page.mouse.up();
    await settle(page);
    assert.equal(geometryCommands(stage).length, 2);
    box = await elementBox(page, 4);
    assert.ok(near(box.x, at.x, 0.6) && near(box.y, at.y, 0.6));
    assert.deepEqual(stage.problems, []);
    await page.close();
});

test('moves snap to the edges and centres of other elements and of the stage, unless Alt is held', async () => {
    const stage = await freshStage();
    const { page } = stage;
    // Left edge 4 px from the stage's centre line (400).
    await drag(page, { x: 480, y: 210 }, { x: 464, y: 210 });
    let [move] = geometryCommands(stage);
    assert.deepEqual(move.props, [0]);
    assert.ok(near(move.values[0], 400), String(move.values[0]));
    await stage.records();
    await drag(page, { x: 480, y: 210 }, { x: 464, y: 210 }, ['Alt']);
    move = geometryCommands(stage)[1];
    assert.ok(near(move.values[0], 404), String(move.values[0]));
    // Turned off by the studio.
    await stage.records();
    stage.emit('snapEnabledChanged', false);
    await drag(page, { x: 480, y: 210 }, { x: 464, y: 210 });
    move = geometryCommands(stage)[2];
    assert.ok(near(move.values[0], 404), String(move.values[0]));
    await page.close();
});

test('a move keeps the element units and sides, and counts in the parent of a child', async () => {
    // The logo measured from the right and the bottom, in percent of the stage.
    const data = welcomeScene(0, (scene) => {
        findElement(scene, 4).r = ['60%', '5%', 120, 120, 2];
        return scene;
    });
    const stage = await openStage(browser, server, data);
    const { page } = stage;
    // At 200, 450 from the left and top; moved by 40, -60.
    await drag(page, { x: 260, y: 530 }, { x: 300, y: 470 }, ['Alt']);
    let [move] = geometryCommands(stage);
    assert.equal(move.id, 4);
    assert.deepEqual(move.props, [0, 2]);
    assert.ok(near(move.values[0], 55) && near(move.values[1], 15), JSON.stringify(move.values));

    // The card text inside the card, which is shown at 60% and turned by -8 degrees at time 0: a
    // move of 30 stage pixels to the right is 50 of the card's own, along its turned axis.
    const text = { x: 220, y: 205 };
    await click(page, text);
    const c = await stageToClient(page, text.x, text.y);
    await page.mouse.dblclick(c.x, c.y);
    await settle(page);
    await drag(page, text, { x: text.x + 30, y: text.y }, ['Alt']);
    move = geometryCommands(stage)[1];
    assert.equal(move.id, 3);
    const angle = (8 * Math.PI) / 180;
    assert.ok(near(move.values[0], 20 + 50 * Math.cos(angle), 0.05), JSON.stringify(move.values));
    assert.ok(near(move.values[1], 20 + 50 * Math.sin(angle), 0.05), JSON.stringify(move.values));
    await page.close();
});

test('the handles resize (shift keeps the ratio), and the rotation handle turns in 15 degree steps with shift', async () => {
    const stage = await freshStage();
    const { page } = stage;
    // The logo: 120 x 120 at 420, 150.
    await click(page, { x: 480, y: 210 });
    assert.equal(await page.$$eval('.vt-handle', (n) => n.length), 8);
    await drag(page, { x: 540, y: 270 }, { x: 600, y: 280 }, ['Shift']);
    let [resize] = geometryCommands(stage);
    assert.equal(resize.text, 'Resize');
    assert.deepEqual(resize.props, [4, 5]);
    assert.ok(near(resize.values[0], 180) && near(resize.values[1], 180), JSON.stringify(resize.values));
    await stage.records();

    // Without shift the sides are free; from the top left corner the position changes too.
    await drag(page, { x: 420, y: 150 }, { x: 400, y: 170 }, ['Alt']);
    resize = geometryCommands(stage)[1];
    assert.deepEqual(resize.props, [4, 5, 0, 2]);
    assert.deepEqual(resize.values.map(Math.round), [140, 100, 400, 170]);
    await stage.records();

    // The element's own aspect lock keeps the ratio as shift does; a side handle keeps the middle.
    await stage.records({
        cmd: 1034,
        isUndoCmd: false,
        params: [
            { type: 1, value: 4 },
            { type: 4, value: true },
            { type: 1, value: 0 },
        ],
    });
    await drag(page, { x: 540, y: 210 }, { x: 610, y: 210 }, ['Alt']);
    resize = geometryCommands(stage)[2];
    assert.deepEqual(resize.props, [4, 5, 2]);
    assert.deepEqual(resize.values.map(Math.round), [190, 190, 115]);
    await stage.records();

    // The rotation handle sits above the top edge's middle; a turn of 40 degrees becomes 45.
    const centre = { x: 480, y: 210 };
    const angle = ((-90 + 40) * Math.PI) / 180;
    await drag(
        page,
        { x: 480, y: 150 - 22 },
        { x: centre.x + 100 * Math.cos(angle), y: centre.y + 100 * Math.sin(angle) },
        ['Shift'],
    );
    const rotate = geometryCommands(stage)[3];
    assert.equal(rotate.text, 'Rotate');
    assert.deepEqual(rotate.props, [11]);
    assert.ok(near(rotate.values[0], 45), JSON.stringify(rotate.values));
    await page.close();
});

test('clicks and the rubber band select; the studio hears each change as selection records in one call', async () => {
    const stage = await freshStage();
    const { page } = stage;
    await drag(page, { x: 20, y: 30 }, { x: 450, y: 400 });
    let calls = selectionCommands(stage);
    assert.equal(calls.length, 1);
    assert.equal(calls[0].runOnly, true, 'selection is no undo step');
    assert.deepEqual(calls[0].records.sort(), [
        [2, true],
        [4, true],
        [6, true],
    ]);
    assert.equal(await page.$$eval('.vt-outline', (n) => n.length), 3);

    // A click elsewhere selects that element alone; shift adds and takes away.
    await click(page, { x: 650, y: 220 });
    calls = selectionCommands(stage);
    assert.deepEqual(calls[1].records.sort(), [
        [2, false],
        [4, false],
        [5, true],
        [6, false],
    ]);
    await click(page, { x: 480, y: 210 }, ['Shift']);
    assert.deepEqual(selectionCommands(stage)[2].records, [[4, true]]);
    await click(page, { x: 650, y: 220 }, ['Shift']);
    assert.deepEqual(selectionCommands(stage)[3].records, [[5, false]]);
    // A click into the group selects the group, not the symbol inside it.
    await click(page, { x: 600, y: 380 });
    assert.deepEqual(selectionCommands(stage)[4].records.sort(), [
        [4, false],
        [7, true],
    ]);
    // Empty stage: nothing selected.
    await click(page, { x: 20, y: 580 });
    assert.deepEqual(selectionCommands(stage)[5].records, [[7, false]]);
    assert.equal(await page.$$eval('.vt-outline', (n) => n.length), 0);
    await page.close();
});

test('arrow keys nudge the selection by 1 px, 10 with shift, as one command', async () => {
    const stage = await freshStage();
    const { page } = stage;
    await click(page, { x: 480, y: 210 });
    for (let i = 0; i < 3; ++i) {
        await page.keyboard.press('ArrowRight');
    }
    await page.keyboard.press('Shift+ArrowDown');
    await page.waitForFunction(() => true);
    await new Promise((resolve) => setTimeout(resolve, 600));
    const moves = geometryCommands(stage);
    assert.equal(moves.length, 1);
    assert.deepEqual(moves[0].props, [0, 2]);
    assert.ok(near(moves[0].values[0], 423) && near(moves[0].values[1], 160), JSON.stringify(moves[0].values));
    await page.close();
});

test('the translate tool moves by translation and the scale tool scales instead of resizing', async () => {
    const stage = await freshStage();
    const { page } = stage;
    stage.emit('transformToolChanged', 1);
    await drag(page, { x: 480, y: 210 }, { x: 500, y: 200 }, ['Alt']);
    let [change] = geometryCommands(stage);
    assert.equal(change.text, 'Move');
    assert.deepEqual(change.props, [84, 85]);
    assert.deepEqual(change.values.map(Math.round), [20, -10]);
    await stage.records();

    // The scale tool keeps the size and scales from the opposite corner, in percent.
    stage.emit('transformToolChanged', 2);
    await settle(page);
    await drag(page, { x: 540, y: 270 }, { x: 600, y: 300 }, ['Alt']);
    change = geometryCommands(stage)[1];
    assert.equal(change.text, 'Resize');
    assert.deepEqual(change.props, [7, 8, 0, 2]);
    assert.deepEqual(change.values.map(Math.round), [150, 125, 450, 165]);
    await page.close();
});
