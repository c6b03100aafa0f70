// The player's listeners and actions against a fake document that records what it is asked to do:
// the actions in Node (they need no page), the bindings to browser input in Chromium.
//   node --test tests/web/player-act.test.mjs

import assert from 'node:assert/strict';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, describe, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { launchChromium, webRequire } from './browser.mjs';

const playerDir = fileURLToPath(new URL('../../web/src/player/', import.meta.url));
const workDir = mkdtempSync(path.join(tmpdir(), 'vetra-act-'));

/** The act modules as one script: an ES module for Node, or a classic script defining `VetraAct`. */
async function bundle(format) {
    const { build } = webRequire('esbuild');
    const result = await build({
        stdin: {
            contents: [
                "export * from './events';",
                "export { safeUrl, textToHtml } from './actions';",
                "export { eventTable } from './listeners';",
            ].join('\n'),
            resolveDir: playerDir,
            loader: 'ts',
        },
        bundle: true,
        write: false,
        format,
        globalName: format === 'iife' ? 'VetraAct' : undefined,
        target: 'es2017',
        logLevel: 'silent',
    });
    return result.outputFiles[0].text;
}

/**
 * A document that records every call as [what, ...args]. Timelines 1 (the main one, also reached
 * as -1) and 2 exist with the labels "intro" and "end"; media 5 and 6; symbol 7 and the specials
 * -1 to -3 answer with a document whose main timeline logs as "sym". Functions: 1 records its
 * arguments and `this`, 2 throws, 3 rejects, 4 returns a value, 9 is the Script Error handler.
 * Self-contained: its source also runs inside the page.
 */
function makeFakeHost() {
    const log = [];
    const labels = { intro: 250, end: 900 };
    const recorder = (owner, id, methods, api = {}) => {
        for (const method of methods) {
            api[method] = (...args) => log.push([owner, id, method, ...args]);
        }
        return api;
    };
    const makeTimeline = (owner, id) =>
        recorder(owner, id, ['play', 'start', 'pause', 'toggle', 'seek'], {
            id,
            name: `T${id}`,
            labelTime: (label) => labels[label],
        });
    const mediaMethods = ['play', 'start', 'pause', 'toggle', 'seek', 'mute', 'toggleMute', 'setVolume', 'fullScreen'];
    const makeMedia = (id) => recorder('media', id, mediaMethods);
    const api = { name: 'doc-api' };
    const seen = [];
    const functions = {
        1: function (doc, e) {
            seen.push({ doc, e, self: this });
            log.push(['fn', 1, e.type, e.eventType, e.targetId]);
        },
        2: function failing() {
            log.push(['fn', 2]);
            throw new Error('broken handler');
        },
        3: async function rejecting() {
            log.push(['fn', 3]);
            throw new TypeError('late failure');
        },
        4: () => 42,
        9: function onScriptError(doc, e) {
            log.push(['scripterror', e.message, e.functionId, e.functionName]);
        },
    };
    const host = {
        containerId: 'stage',
        sceneIndex: 0,
        sceneCount: 3,
        layout: [0, 0],
        api,
        timeline: (id) => (id === -1 || id === 1 ? makeTimeline('tl', 1) : id === 2 ? makeTimeline('tl', 2) : null),
        goToScene: (...args) => log.push(['goToScene', ...args]),
        elementNode: () => null,
        seek: (...args) => log.push(['seek', ...args]),
        play: (...args) => log.push(['play', ...args]),
        pause: (...args) => log.push(['pause', ...args]),
        media: (id) => (id === 5 || id === 6 ? makeMedia(id) : null),
        symbol: (id, scope) => {
            log.push(['symbol', id, scope.elementId]);
            const known = id === 7 || (id <= -1 && id >= -3);
            return known ? { timeline: (which) => (which === -1 ? makeTimeline('sym', id) : null) } : null;
        },
        setElementVisible: (...args) => log.push(['visible', ...args]),
        setElementText: (...args) => log.push(['text', ...args]),
        muteAll: () => log.push(['muteAll']),
        userFunction: (id) => functions[id] || null,
    };
    return { host, log, seen, api };
}

let act;

before(async () => {
    const file = path.join(workDir, 'act.mjs');
    writeFileSync(file, await bundle('esm'));
    act = await import(pathToFileURL(file).href);
});

after(() => {
    rmSync(workDir, { recursive: true, force: true });
});

/** Runs `fn` with console.error captured; answers what was written. */
async function capturingErrors(fn) {
    const original = console.error;
    const written = [];
    console.error = (...args) => written.push(args.map(String).join(' '));
    try {
        await fn();
    } finally {
        console.error = original;
    }
    return written;
}

const scope = (host, elementId = 3, timeline = null) => ({ host, elementId, timeline });

describe('actions', () => {
    test('each action drives its target with its parameters', () => {
        const cases = [
            // Timelines: -1 is the main timeline; the speed pair becomes a signed speed.
            [[1, -1, 1.5, 0], [['tl', 1, 'start', 1.5]]],
            [[1, 2, 0.5, 1], [['tl', 2, 'start', -0.5]]],
            [[2, 1, 2, 0], [['tl', 1, 'play', 2]]],
            [[3, 2, 300, 1, 1], [['tl', 2, 'play', -1, 300]]],
            [[3, 2, 'intro', 1, 0], [['tl', 2, 'play', 1, 250]]],
            [[4, -1], [['tl', 1, 'pause']]],
            [[5, 1, 'end'], [['tl', 1, 'pause', 900]]],
            [[5, 1, 120], [['tl', 1, 'pause', 120]]],
            [[6, 2], [['tl', 2, 'toggle']]],
            [[7, 1, 0], [['tl', 1, 'seek', 0]]],
            [[7, -1, 'intro'], [['tl', 1, 'seek', 250]]],
            // Symbols act on the main timeline of the symbol, specials included.
            [[20, 7, 1, 1], [['symbol', 7, 3], ['sym', 7, 'start', -1]]],
            [[21, -1, 3, 0], [['symbol', -1, 3], ['sym', -1, 'play', 3]]],
            [[22, -2, 'end', 1, 0], [['symbol', -2, 3], ['sym', -2, 'play', 1, 900]]],
            [[23, -3], [['symbol', -3, 3], ['sym', -3, 'pause']]],
            [[24, 7, 40], [['symbol', 7, 3], ['sym', 7, 'pause', 40]]],
            [[25, 7], [['symbol', 7, 3], ['sym', 7, 'toggle']]],
            [[26, 7, 'intro'], [['symbol', 7, 3], ['sym', 7, 'seek', 250]]],
            // Media take one signed rate.
            [[40, 5, -1.5], [['media', 5, 'start', -1.5]]],
            [[41, 6, 2], [['media', 6, 'play', 2]]],
            [[42, 5, 1500, 0.5], [['media', 5, 'play', 0.5, 1500]]],
            [[43, 5], [['media', 5, 'pause']]],
            [[44, 6, 800], [['media', 6, 'pause', 800]]],
            [[45, 5], [['media', 5, 'mute', true]]],
            [[46, 5, 35], [['media', 5, 'setVolume', 35]]],
            [[46, 5, 180], [['media', 5, 'setVolume', 100]]],
            [[47, 6], [['media', 6, 'toggleMute']]],
            [[48], [['muteAll']]],
            [[49, 5], [['media', 5, 'toggle']]],
            [[50, 6, 2000], [['media', 6, 'seek', 2000]]],
            [[51, 6], [['media', 6, 'fullScreen']]],
            [[70, 11], [['visible', 11, 'hide']]],
            [[71, 11], [['visible', 11, 'show']]],
            [[72, 12], [['visible', 12, 'toggle']]],
            // Scenes: specials go by position, others by id; a transition only when written.
            [[100, -2], [['goToScene', -2, false, undefined]]],
            [[100, -3], [['goToScene', -3, false, undefined]]],
            [[100, -4], [['goToScene', -4, false, undefined]]],
            [[100, -5], [['goToScene', -5, false, undefined]]],
            [[100, 4], [['goToScene', 4, true, undefined]]],
            [[100, 4, 1, 600, 3], [['goToScene', 4, true, [1, 600, 3]]]],
            [[100, -2, 2, 400, 0, 2], [['goToScene', -2, false, [2, 400, 0, 2]]]],
            [[102, 8, 'Hello'], [['text', 8, 'Hello']]],
        ];
        for (const [action, expected] of cases) {
            const { host, log } = makeFakeHost();
            act.runActions(host, scope(host), [action]);
            assert.deepEqual(log, expected, JSON.stringify(action));
        }
    });

    test('unknown actions, missing targets and bad parameters are skipped, the rest still runs', async () => {
        const skipped = [
            [999, 1],
            [0],
            ['1', -1],
            [1, 'main'],
            [1, 3, 1, 0], // no timeline 3
            [1, 1.5, 1, 0],
            [3, 1, 'no such label', 1, 0],
            [3, 1, null, 1, 0],
            [5, 1],
            [7, 1, {}],
            [41, 99, 1],
            [42, 5, 'soon', 1],
            [46, 5, 'loud'],
            [70, '11'],
            [100, -1],
            [100, -6],
            [100, 'next'],
            [101, 'javascript:alert(1)', true],
            [102, 8, 5],
            [102, 8],
            [103, 77],
            [103, 'fn'],
        ];
        const { host, log } = makeFakeHost();
        act.runActions(host, scope(host), [...skipped, 'not an action', null, [48]]);
        assert.deepEqual(log, [['muteAll']]);

        // Unusable speeds fall back to normal speed instead of dropping the action.
        const fallback = makeFakeHost();
        act.runActions(fallback.host, scope(fallback.host), [
            [2, 1, 0, 1],
            [2, 1, 'fast', 0],
            [41, 5, 0],
            [100, 3, 9, 100, 0],
        ]);
        assert.deepEqual(fallback.log, [
            ['tl', 1, 'play', -1],
            ['tl', 1, 'play', 1],
            ['media', 5, 'play', 1],
            ['goToScene', 3, true, undefined],
        ]);

        // A host method that throws costs its own action only.
        const faulty = makeFakeHost();
        faulty.host.muteAll = () => {
            throw new Error('page fault');
        };
        const errors = await capturingErrors(() =>
            act.runActions(faulty.host, scope(faulty.host), [[48], [70, 2], [71, 2]]),
        );
        assert.deepEqual(faulty.log, [
            ['visible', 2, 'hide'],
            ['visible', 2, 'show'],
        ]);
        assert.equal(errors.length, 1);
    });

    test('changed text is text, not markup', () => {
        const { host, log } = makeFakeHost();
        act.runActions(host, scope(host), [[102, 4, '<img src=x onerror="steal()"> & \'more\'\nline two\r\nthree']]);
        assert.deepEqual(log, [
            ['text', 4, '&lt;img src=x onerror=&quot;steal()&quot;&gt; &amp; &#39;more&#39;<br>line two<br>three'],
        ]);
    });

    test('Go To URL opens only web, mail and relative addresses', () => {
        const base = 'file:///home/ana/Banner_HTML5/Banner.html';
        const cases = [
            ['https://example.com/a?b=1#c', 'https://example.com/a?b=1#c'],
            ['  HTTP://Example.com  ', 'http://example.com/'],
            ['mailto:ana@example.com', 'mailto:ana@example.com'],
            ['page2.html', 'file:///home/ana/Banner_HTML5/page2.html'],
            ['../other/index.html#top', 'file:///home/ana/other/index.html#top'],
            ['/root.html', 'file:///root.html'],
            ['javascript:alert(1)', null],
            ['JavaScript:alert(1)', null],
            ['java\tscript:alert(1)', null],
            ['\u0001 javascript:alert(1)', null],
            ['java\nscript:alert(1)', null],
            ['data:text/html,<script>alert(1)</script>', null],
            ['vbscript:msgbox', null],
            ['file:///etc/passwd', null],
            ['https://', null],
            // Browsers read a special scheme without slashes as with them: still a web address.
            ['http:example.com', 'http://example.com/'],
            ['https://exa mple.com', null],
            ['', null],
            ['   ', null],
            [42, null],
            [null, null],
        ];
        for (const [raw, expected] of cases) {
            assert.equal(act.safeUrl(raw, base), expected, JSON.stringify(raw));
        }
        // Without a page there is nothing to resolve against.
        assert.equal(act.safeUrl('page2.html', null), null);
    });

    test('Run JavaScript calls the function with the document and an event object', () => {
        const { host, log, seen, api } = makeFakeHost();
        const tl = host.timeline(2);
        // A trigger of timeline 2: `this` is the timeline.
        act.runActions(host, scope(host, null, tl), [[103, 1], [103, 4], [103, 1]]);
        assert.deepEqual(log, [
            ['fn', 1, 'trigger', 200, null],
            ['fn', 1, 'trigger', 200, null],
        ]);
        assert.equal(seen[0].doc, api);
        assert.equal(seen[0].self, tl);
        assert.equal(seen[0].e.timeline, tl);
        // One event object per run, shared by its functions.
        assert.equal(seen[0].e, seen[1].e);

        // Raised by the player with details: they become fields of the event object.
        const fired = makeFakeHost();
        const preloader = scope(fired.host, null);
        assert.equal(
            act.fireEvent(fired.host, preloader, [[2, [103, 1]]], 2, { progress: 0.25, loaded: 1, type: 'forged' }),
            true,
        );
        const e = fired.seen[0].e;
        assert.deepEqual([e.type, e.eventType, e.progress, e.loaded], ['progress', 2, 0.25, 1]);
        assert.equal(fired.seen[0].self, fired.api);
        assert.equal(act.fireEvent(fired.host, preloader, [[2, [103, 1]]], 3), false);
    });

    test('a failing function raises Script Error of the document and never the caller', async () => {
        const { host, log } = makeFakeHost();
        const documentScope = scope(host, null);
        const documentEvents = [
            [21, [48]],
            [23, [103, 9], [70, 1]],
        ];
        // The Ready event makes the table known as the document's.
        act.fireEvent(host, documentScope, documentEvents, 21);
        const elementScope = scope(host, 6);
        act.runActions(host, elementScope, [[103, 2], [71, 6]]);
        assert.deepEqual(log, [
            ['muteAll'],
            ['fn', 2],
            ['scripterror', 'broken handler', 2, 'failing'],
            ['visible', 1, 'hide'],
            ['visible', 6, 'show'],
        ]);

        // An async function's rejection arrives later, the same way.
        log.length = 0;
        act.runActions(host, elementScope, [[103, 3]]);
        await new Promise((resolve) => setTimeout(resolve, 10));
        assert.deepEqual(log, [
            ['fn', 3],
            ['scripterror', 'late failure', 3, 'rejecting'],
            ['visible', 1, 'hide'],
        ]);

        // A symbol's host that shares the document's table reports to the document's host.
        log.length = 0;
        const symbol = makeFakeHost();
        act.setDocumentEvents(symbol.host, documentScope, documentEvents);
        act.runActions(symbol.host, scope(symbol.host, 2), [[103, 2]]);
        assert.deepEqual(symbol.log, [['fn', 2]]);
        assert.deepEqual(log, [
            ['scripterror', 'broken handler', 2, 'failing'],
            ['visible', 1, 'hide'],
        ]);

        // A Script Error handler that fails itself is not called again for its own failure.
        const looping = makeFakeHost();
        const loopScope = scope(looping.host, null);
        const errors = await capturingErrors(async () => {
            act.setDocumentEvents(looping.host, loopScope, [[23, [103, 2], [103, 3]]]);
            act.runActions(looping.host, loopScope, [[103, 2]]);
            await new Promise((resolve) => setTimeout(resolve, 10));
        });
        assert.deepEqual(looping.log, [['fn', 2], ['fn', 2], ['fn', 3]]);
        assert.equal(errors.length, 2);

        // Without a Script Error listener the failure goes to the console.
        const quiet = makeFakeHost();
        const written = await capturingErrors(() => act.runActions(quiet.host, scope(quiet.host), [[103, 2], [48]]));
        assert.deepEqual(quiet.log, [['fn', 2], ['muteAll']]);
        assert.equal(written.length, 1);
        assert.match(written[0], /broken handler/);
    });

    test('listener tables keep what they can read and run in list order', () => {
        const table = act.eventTable([
            [100, [70, 1], 'junk', [71, 1]],
            'junk',
            [null, [48]],
            [0, [48]],
            [100.5, [48]],
            [150, [48]],
            [100, [72, 1]],
            [101],
        ]);
        assert.deepEqual([...table.keys()], [100, 150]);
        assert.deepEqual(table.get(100).actions, [[70, 1], [71, 1], [72, 1]]);
        assert.equal(table.get(100).runsFunction, false);
        assert.equal(act.eventTable({ 100: [] }).size, 0);
        assert.equal(act.eventTable(undefined).size, 0);

        const { host, log } = makeFakeHost();
        const groups = [[150, [70, 1], [103, 77], [71, 1]]];
        assert.equal(act.fireEvent(host, scope(host, null, host.timeline(1)), groups, 150), true);
        assert.equal(act.fireEvent(host, scope(host, null, host.timeline(1)), groups, 151), false);
        assert.deepEqual(log, [
            ['visible', 1, 'hide'],
            ['visible', 1, 'show'],
        ]);
    });

    test('swipes are quick and mostly sideways', () => {
        const cases = [
            [-80, 5, 200, -1],
            [80, -20, 200, 1],
            [30, 15, 100, 1],
            [29, 0, 100, 0],
            [80, 45, 200, 0],
            [120, 0, 1200, 0],
            [-120, 0, -1, 0],
            [Number.NaN, 0, 100, 0],
        ];
        for (const [dx, dy, duration, expected] of cases) {
            assert.equal(act.swipeDirection(dx, dy, duration), expected, `${dx}, ${dy} in ${duration} ms`);
        }
    });
});

// The input side in a real browser: a scene with an element inside, both listening.
describe('bindings in Chromium', () => {
    let browser;
    let pageUrl;

    before(async () => {
        browser = await launchChromium();
        writeFileSync(path.join(workDir, 'act.js'), await bundle('iife'));
        writeFileSync(
            path.join(workDir, 'act.html'),
            `<!DOCTYPE html><html><head><meta charset="utf-8"><script src="act.js"></script>
<style>body { margin: 0 } #stage { position: relative; width: 400px; height: 300px }
#scene { position: absolute; inset: 0 } #box { position: absolute; left: 100px; top: 100px; width: 100px; height: 50px }
#inner { width: 20px; height: 20px } #hidden { display: none }</style></head>
<body><div id="stage"><div id="scene"><div id="box"><div id="inner"></div></div></div><div id="hidden"></div></div>
<script>window.makeFakeHost = ${makeFakeHost.toString()};</script></body></html>`,
        );
        writeFileSync(path.join(workDir, 'other.html'), '<!DOCTYPE html><title>other</title>');
        pageUrl = pathToFileURL(path.join(workDir, 'act.html')).href;
    });

    after(async () => {
        await browser?.close();
    });

    async function openPage(contextOptions = {}) {
        const context = await browser.newContext({ viewport: { width: 800, height: 600 }, ...contextOptions });
        const page = await context.newPage();
        page.setDefaultTimeout(10000);
        const problems = [];
        page.on('pageerror', (error) => problems.push(error.message));
        await page.goto(pageUrl);
        return { context, page, problems };
    }

    // Binds the tables in the page: "scene" with element id null, "box" as element 3, the stage
    // as the document, "hidden" as a scene that is not on show. Each action is a Hide Element
    // whose id tells who ran it, so the log shows the order.
    async function bindAll(page, tables) {
        await page.evaluate((tables) => {
            const fake = window.makeFakeHost();
            window.fake = fake;
            window.unbinders = [];
            for (const [id, elementId, groups] of tables) {
                const node = id === 'window' ? window : document.getElementById(id);
                const scope = { host: fake.host, elementId, timeline: null };
                window.unbinders.push(VetraAct.bindEvents(fake.host, scope, node, groups));
            }
        }, tables);
    }

    const takeLog = (page) =>
        page.evaluate(() => {
            const log = window.fake.log.slice();
            window.fake.log.length = 0;
            return log.map((entry) => (entry[0] === 'visible' ? entry[1] : entry));
        });

    test('mouse events reach the element first, then its scene, then the document', async () => {
        const { context, page, problems } = await openPage();
        const mouseEvents = [100, 101, 102, 103, 104, 105, 106, 107, 108];
        const each = (base) => mouseEvents.map((eventNo) => [eventNo, [70, base + eventNo], [71, base + eventNo]]);
        await bindAll(page, [
            ['box', 3, each(1000)],
            ['scene', null, each(2000)],
            ['stage', null, [[21, [48]], ...each(3000)]],
        ]);
        const pairs = (...ids) => ids.flatMap((id) => [id, id]);

        await page.mouse.move(150, 125);
        assert.deepEqual(await takeLog(page), [
            ...pairs(1102, 2102, 3102),
            ...pairs(3107, 2107, 1107),
            ...pairs(1104, 2104, 3104),
        ]);
        await page.mouse.down();
        await page.mouse.up();
        assert.deepEqual(await takeLog(page), pairs(1103, 2103, 3103, 1105, 2105, 3105, 1100, 2100, 3100));

        // Into a child of the element: over and out bubble, enter and leave do not.
        await page.mouse.move(110, 110);
        assert.deepEqual(await takeLog(page), [
            ...pairs(1106, 2106, 3106),
            ...pairs(1102, 2102, 3102),
            ...pairs(1104, 2104, 3104),
        ]);
        await page.mouse.move(300, 250);
        assert.deepEqual(await takeLog(page), [
            ...pairs(1106, 2106, 3106),
            ...pairs(1108),
            ...pairs(2102, 3102),
            ...pairs(2104, 3104),
        ]);
        await page.mouse.dblclick(150, 140);
        const clicks = (await takeLog(page)).filter((id) => id % 1000 === 100 || id % 1000 === 101);
        assert.deepEqual(clicks, pairs(1100, 2100, 3100, 1100, 2100, 3100, 1101, 2101, 3101));

        // Unbound tables hear nothing more.
        await page.evaluate(() => window.unbinders.forEach((unbind) => unbind()));
        await page.mouse.click(150, 125);
        await page.mouse.move(10, 10);
        assert.deepEqual(await takeLog(page), []);
        assert.deepEqual(problems, []);
        await context.close();
    });

    test('keys, resizing and orientation reach shown owners only', async () => {
        const { context, page, problems } = await openPage();
        await bindAll(page, [
            ['stage', null, [[53, [70, 1]], [54, [70, 2]], [55, [70, 3]], [56, [70, 4]]]],
            ['hidden', null, [[53, [70, 11]], [56, [70, 14]]]],
            ['box', 3, [[109, [70, 5]]]],
        ]);
        await page.keyboard.down('a');
        await page.keyboard.up('a');
        assert.deepEqual(await takeLog(page), [1, 2]);

        await page.setViewportSize({ width: 500, height: 700 });
        await page.waitForFunction(() => window.fake.log.length >= 2);
        // A resize may come in more than one step; each listener must have heard it.
        assert.deepEqual([...new Set(await takeLog(page))].sort(), [3, 4]);

        // The hidden scene joins in once it is shown.
        await page.evaluate(() => {
            document.getElementById('hidden').style.display = 'block';
        });
        await page.keyboard.press('b');
        assert.deepEqual(await takeLog(page), [1, 11, 2]);

        // Focus of the element or of something inside it.
        await page.evaluate(() => {
            const inner = document.getElementById('inner');
            inner.tabIndex = 0;
            inner.focus();
        });
        assert.deepEqual(await takeLog(page), [5]);
        assert.deepEqual(problems, []);
        await context.close();
    });

    test('a quick sideways drag is a swipe, with the mouse or a finger', async () => {
        const { context, page, problems } = await openPage({ hasTouch: true });
        await bindAll(page, [
            ['box', 3, [[110, [70, 110], [103, 1]], [111, [70, 111]]]],
            ['scene', null, [[111, [70, 211]]]],
        ]);
        const drag = async (fromX, fromY, toX, toY) => {
            await page.mouse.move(fromX, fromY);
            await page.mouse.down();
            await page.mouse.move(toX, toY, { steps: 3 });
            await page.mouse.up();
        };
        await drag(190, 125, 110, 130);
        assert.deepEqual(await takeLog(page), [110, ['fn', 1, 'swipeleft', 110, 3]]);
        const swipe = await page.evaluate(() => {
            const e = window.fake.seen[0].e;
            const self = window.fake.seen[0].self.id;
            return { dx: e.dx, dy: e.dy, fromPage: e.originalEvent instanceof Event, self };
        });
        assert.deepEqual(swipe, { dx: -80, dy: 5, fromPage: true, self: 'box' });

        // Ending outside the element still counts; the scene hears its own swipe as well.
        await drag(110, 125, 390, 140);
        assert.deepEqual(await takeLog(page), [111, 211]);
        // Too short, too steep: nothing. Begun outside the element: the scene's alone.
        await drag(150, 125, 170, 125);
        await drag(150, 110, 200, 290);
        await drag(20, 20, 200, 20);
        assert.deepEqual(await takeLog(page), [211]);

        // A finger, through the touch events of the browser's protocol.
        const cdp = await context.newCDPSession(page);
        const touch = async (type, x, y) =>
            cdp.send('Input.dispatchTouchEvent', { type, touchPoints: type === 'touchEnd' ? [] : [{ x, y }] });
        await touch('touchStart', 190, 120);
        await touch('touchMove', 150, 122);
        await touch('touchMove', 120, 124);
        await touch('touchEnd');
        assert.deepEqual(await takeLog(page), [110, ['fn', 1, 'swipeleft', 110, 3]]);
        // A slow finger is no swipe.
        await touch('touchStart', 110, 120);
        await new Promise((resolve) => setTimeout(resolve, 1200));
        await touch('touchMove', 190, 120);
        await touch('touchEnd');
        assert.deepEqual(await takeLog(page), []);
        assert.deepEqual(problems, []);
        await context.close();
    });

    test('Go To URL follows allowed addresses and refuses scripts', async () => {
        const { context, page, problems } = await openPage();
        const scripts = [
            100,
            [101, 'javascript:window.hacked=1', false],
            [101, ' JAVA\tSCRIPT:window.hacked=2', true],
            [70, 1],
        ];
        await bindAll(page, [['box', 3, [scripts]]]);
        await page.mouse.click(150, 125);
        assert.deepEqual(await takeLog(page), [1]);
        assert.equal(await page.evaluate(() => window.hacked), undefined);
        assert.equal(context.pages().length, 1);

        // A new window for a relative address.
        await bindAll(page, [['scene', null, [[101, [101, 'other.html?x=1', true]]]]]);
        const [popup] = await Promise.all([context.waitForEvent('page'), page.mouse.dblclick(300, 250)]);
        await popup.waitForLoadState();
        assert.equal(popup.url(), new URL('other.html?x=1', pageUrl).href);
        assert.equal(page.url(), pageUrl);

        // The same window.
        await bindAll(page, [['box', 3, [[100, [101, 'other.html#same', false]]]]]);
        await Promise.all([page.waitForURL(/other\.html#same$/), page.mouse.click(150, 125)]);
        assert.deepEqual(problems, []);
        await context.close();
    });
});
