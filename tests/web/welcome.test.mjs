// The welcome page in a real browser, talking to a fake studio over the web channel protocol.
//   VETRA_RESOURCES_DIR=<build>/share/vetra-studio/resources node --test tests/web/welcome.test.mjs

import assert from 'node:assert/strict';
import { mkdtempSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { launchChromium, pageUrl, resourcesDir } from './browser.mjs';
import { startFakeChannel } from './fakechannel.mjs';

const resources = resourcesDir(['welcome/vtwelcome.html', 'welcome/vtwelcome.js', 'welcome/vtwelcome.css', 'qwebchannel.js']);
const welcomeHtml = path.join(resources, 'welcome', 'vtwelcome.html');

let browser;
const servers = [];

before(async () => {
    browser = await launchChromium();
});

after(async () => {
    await Promise.all(servers.map((server) => server.close()));
    await browser?.close();
});

/** A fake studio publishing "vtwelcome" the way VTWelcomeBridge declares it. */
async function startStudio({ recentFiles = [], appVersion = '2.6.0', objectName = 'vtwelcome' } = {}) {
    const server = await startFakeChannel({
        objects: {
            [objectName]: {
                properties: {
                    recentFiles: { value: recentFiles, notify: 'recentFilesChanged' },
                    appVersion: { value: appVersion },
                },
                slots: ['newProject()', 'openProject()', 'openRecent(QString)'],
            },
        },
    });
    servers.push(server);
    return server;
}

/**
 * Opens the page at 800x600 (the smallest window the studio allows). Uncaught exceptions and
 * console errors, CSP violations among them, are collected for the test to check.
 */
async function openWelcome(url) {
    const page = await browser.newPage({ viewport: { width: 800, height: 600 } });
    page.setDefaultTimeout(10000);
    const problems = [];
    page.on('pageerror', (error) => problems.push(`uncaught: ${error.message}`));
    page.on('console', (message) => {
        if (message.type() === 'error') {
            problems.push(`console: ${message.text()}`);
        }
    });
    page.on('dialog', (dialog) => {
        problems.push(`dialog: ${dialog.message()}`);
        return dialog.dismiss();
    });
    await page.goto(url);
    return { page, problems };
}

function welcomeUrl(query) {
    return pageUrl(welcomeHtml, query);
}

async function recentRows(page) {
    return page.$$eval('#recent-list .recent-item', (items) =>
        items.map((item) => ({
            name: item.querySelector('.recent-name').textContent,
            folder: item.querySelector('.recent-folder').textContent,
            title: item.title,
        })),
    );
}

async function offlineState(page) {
    await page.waitForSelector('body[data-state="offline"]');
    return page.evaluate(() => ({
        status: document.getElementById('status').hidden ? null : document.getElementById('status').innerText,
        newDisabled: document.getElementById('new-project').disabled,
        openDisabled: document.getElementById('open-project').disabled,
        recentEnabled: [...document.querySelectorAll('#recent-list button')].filter((b) => !b.disabled).length,
    }));
}

async function until(condition, what, timeoutMs = 5000) {
    const end = Date.now() + timeoutMs;
    while (!condition()) {
        if (Date.now() > end) {
            throw new Error(`timed out waiting for ${what}`);
        }
        await new Promise((resolve) => setTimeout(resolve, 20));
    }
}

const markupPath = '/tmp/<b>bold</b>/x<img src=x onerror=alert(1)>.vetra';

test('shows the recent projects and asks the studio to open them', { timeout: 60000 }, async () => {
    const recent = [
        '/home/ana/Projects/Intro Banner/Intro Banner.vetra',
        '/srv/share/Holiday.Sale.vetrapack',
        markupPath,
        '/notes.VETRA',
        '/home/ana/archive.vetra.bak',
    ];
    const studio = await startStudio({ recentFiles: recent });
    // Unencoded, as a host that leaves '=' and '?' of the value alone would write it.
    const url = `${welcomeUrl({})}?webChannelBaseUrl=${studio.url}&lang=`;
    const { page, problems } = await openWelcome(url);
    await page.waitForSelector('body[data-state="ready"]');

    // The page connects with the token of this run and as a local page, or the studio refuses it.
    assert.equal(studio.stats.accepted, 1);
    assert.equal(studio.stats.refused, 0);
    assert.ok(['null', 'file://'].includes(studio.stats.origins[0]), `origin ${studio.stats.origins[0]}`);

    assert.equal(await page.textContent('.brand-name'), 'Vetra Studio');
    assert.equal(await page.textContent('#version'), 'Version 2.6.0');
    assert.equal(await page.textContent('#new-project .action-title'), 'New Project');
    assert.equal(await page.textContent('#open-project .action-title'), 'Open Project\u2026');
    assert.equal(await page.textContent('#recent-title'), 'Recent Projects');
    assert.equal(await page.isVisible('#recent-empty'), false);

    assert.deepEqual(await recentRows(page), [
        { name: 'Intro Banner', folder: '/home/ana/Projects/Intro Banner', title: recent[0] },
        { name: 'Holiday.Sale', folder: '/srv/share', title: recent[1] },
        { name: 'x<img src=x onerror=alert(1)>', folder: '/tmp/<b>bold</b>', title: markupPath },
        { name: 'notes', folder: '/', title: recent[3] },
        { name: 'archive.vetra.bak', folder: '/home/ana', title: recent[4] },
    ]);
    // Paths are text: nothing in them became an element.
    assert.equal(await page.locator('#recent-list b, #recent-list img').count(), 0);

    // The smallest window shows everything without scrolling sideways or cutting the list off.
    const layout = await page.evaluate(() => {
        const inside = (element) => {
            const box = element.getBoundingClientRect();
            return box.left >= 0 && box.top >= 0 && box.right <= innerWidth && box.bottom <= innerHeight;
        };
        return {
            scrollWidth: document.documentElement.scrollWidth,
            scrollHeight: document.documentElement.scrollHeight,
            allInside: [...document.querySelectorAll('.action, .recent-item, .brand, #version')].every(inside),
        };
    });
    assert.deepEqual(layout, { scrollWidth: 800, scrollHeight: 600, allInside: true });

    const shot = path.join(mkdtempSync(path.join(tmpdir(), 'vetra-welcome-')), 'welcome-800x600.png');
    await page.screenshot({ path: shot });
    console.log(`welcome page screenshot: ${shot}`);

    // A double click must not open the dialog twice. Messages arrive in order, so a second
    // newProject would come before openProject.
    await page.dblclick('#new-project');
    await page.click('#open-project');
    await studio.waitForCall((call) => call.method === 'openProject');
    await page.click(`#recent-list li:nth-child(3) button`);
    await studio.waitForCall((call) => call.method === 'openRecent');
    assert.deepEqual(studio.calls, [
        { object: 'vtwelcome', method: 'newProject', args: [] },
        { object: 'vtwelcome', method: 'openProject', args: [] },
        { object: 'vtwelcome', method: 'openRecent', args: [markupPath] },
    ]);

    // Keyboard: the entries are real buttons.
    await page.focus('#recent-list li:nth-child(1) button');
    await page.keyboard.press('Enter');
    const byKey = await studio.waitForCall((call) => call.method === 'openRecent' && call.args[0] !== markupPath);
    assert.deepEqual(byKey.args, [recent[0]]);

    assert.deepEqual(problems, []);
    await page.close();
});

test('follows recentFilesChanged and shows an empty list as such', { timeout: 60000 }, async () => {
    const studio = await startStudio({ recentFiles: [] });
    const { page, problems } = await openWelcome(welcomeUrl({ webChannelBaseUrl: studio.url, lang: 'en' }));
    await page.waitForSelector('body[data-state="ready"]');

    assert.equal(await page.isVisible('#recent-list'), false);
    assert.equal(await page.textContent('#recent-empty-title'), 'No recent projects');
    assert.equal(await page.isVisible('#recent-empty-hint'), true);

    studio.setProperty('vtwelcome', 'recentFiles', ['/work/b/Beta.vetra', '/work/a/Alpha.vetra']);
    await page.waitForSelector('#recent-list li:nth-child(2)');
    assert.deepEqual(
        (await recentRows(page)).map((row) => row.name),
        ['Beta', 'Alpha'],
    );
    assert.equal(await page.isVisible('#recent-empty'), false);

    // A new list replaces the old one; clicks go to the entry now shown, not a stale one.
    studio.setProperty('vtwelcome', 'recentFiles', ['/work/c/Gamma.vetra']);
    await page.waitForFunction(() => document.querySelectorAll('#recent-list li').length === 1);
    assert.deepEqual(await recentRows(page), [{ name: 'Gamma', folder: '/work/c', title: '/work/c/Gamma.vetra' }]);
    await page.click('#recent-list button');
    const call = await studio.waitForCall((c) => c.method === 'openRecent');
    assert.deepEqual(call.args, ['/work/c/Gamma.vetra']);

    // Junk in the property is skipped rather than breaking the page.
    studio.setProperty('vtwelcome', 'recentFiles', ['/work/d/Delta.vetra', 42, null, '']);
    await page.waitForFunction(() => document.querySelector('#recent-list .recent-name')?.textContent === 'Delta');
    assert.equal(await page.locator('#recent-list li').count(), 1);

    studio.setProperty('vtwelcome', 'recentFiles', []);
    await page.waitForSelector('#recent-empty', { state: 'visible' });
    assert.equal(await page.textContent('#recent-empty-title'), 'No recent projects');
    assert.equal(await page.locator('#recent-list li').count(), 0);

    assert.deepEqual(problems, []);
    await page.close();
});

test('without the studio the page says so and offers no actions', { timeout: 60000 }, async () => {
    const expectOffline = (state, label) =>
        assert.deepEqual(
            { ...state, status: state.status?.split('\n')[0] ?? null },
            { status: 'Cannot reach Vetra Studio.', newDisabled: true, openDisabled: true, recentEnabled: 0 },
            label,
        );

    // Opened without an address.
    {
        const { page } = await openWelcome(welcomeUrl({ lang: 'en' }));
        expectOffline(await offlineState(page), 'no address');
        // It never learnt the list, so it does not claim there is none.
        assert.equal(await page.textContent('#recent-empty-title'), 'Recent projects are unavailable.');
        await page.close();
    }

    // Nothing listens on the port any more.
    {
        const gone = await startStudio();
        const url = gone.url;
        await gone.close();
        const { page } = await openWelcome(welcomeUrl({ webChannelBaseUrl: url }));
        expectOffline(await offlineState(page), 'closed port');
        await page.close();
    }

    // Not a WebSocket address at all.
    {
        const { page } = await openWelcome(welcomeUrl({ webChannelBaseUrl: 'http://127.0.0.1:1/' }));
        expectOffline(await offlineState(page), 'bad scheme');
        await page.close();
    }

    // The studio refuses a wrong token.
    {
        const studio = await startStudio({ recentFiles: ['/p/One.vetra'] });
        const { page } = await openWelcome(welcomeUrl({ webChannelBaseUrl: studio.url.replace(/token=\w+/, 'token=guess') }));
        expectOffline(await offlineState(page), 'wrong token');
        assert.equal(studio.stats.refused, 1);
        assert.equal(studio.calls.length, 0);
        await page.close();
    }

    // A studio that publishes something else.
    {
        const studio = await startStudio({ objectName: 'vtstage' });
        const { page } = await openWelcome(welcomeUrl({ webChannelBaseUrl: studio.url }));
        expectOffline(await offlineState(page), 'no vtwelcome object');
        // It hangs up instead of keeping a useless connection open.
        await until(() => studio.clientCount === 0, 'the page to close its socket');
        await page.close();
    }

    // Connected, then the studio goes away: the page notices and its buttons stop working.
    {
        const studio = await startStudio({ recentFiles: ['/p/One.vetra'] });
        const { page, problems } = await openWelcome(welcomeUrl({ webChannelBaseUrl: studio.url }));
        await page.waitForSelector('body[data-state="ready"]');
        assert.equal(await page.isEnabled('#new-project'), true);
        studio.disconnectAll();
        expectOffline(await offlineState(page), 'dropped');
        // The last known projects stay in view, greyed out.
        assert.deepEqual((await recentRows(page)).map((row) => row.name), ['One']);
        await page.click('#new-project', { force: true });
        await page.click('#recent-list button', { force: true });
        assert.equal(studio.calls.length, 0);
        assert.deepEqual(problems, []);
        await page.close();
    }
});

test('speaks the studio language, English by default', { timeout: 60000 }, async () => {
    const studio = await startStudio({ recentFiles: [] });
    const texts = async (lang) => {
        const { page, problems } = await openWelcome(welcomeUrl({ webChannelBaseUrl: studio.url, lang }));
        await page.waitForSelector('body[data-state="ready"]');
        const result = await page.evaluate(() => ({
            lang: document.documentElement.lang,
            newProject: document.querySelector('#new-project .action-title').textContent,
            openProject: document.querySelector('#open-project .action-title').textContent,
            recent: document.getElementById('recent-title').textContent,
            empty: document.getElementById('recent-empty-title').textContent,
        }));
        assert.deepEqual(problems, []);
        await page.close();
        return result;
    };

    const german = {
        lang: 'de',
        newProject: 'Neues Projekt',
        openProject: 'Projekt \u00f6ffnen\u2026',
        recent: 'Zuletzt verwendete Projekte',
        empty: 'Keine zuletzt verwendeten Projekte',
    };
    const english = {
        lang: 'en',
        newProject: 'New Project',
        openProject: 'Open Project\u2026',
        recent: 'Recent Projects',
        empty: 'No recent projects',
    };
    assert.deepEqual(await texts('de'), german);
    assert.deepEqual(await texts('de_DE'), german);
    assert.deepEqual(await texts('fr'), {
        lang: 'fr',
        newProject: 'Nouveau projet',
        openProject: 'Ouvrir un projet\u2026',
        recent: 'Projets r\u00e9cents',
        empty: 'Aucun projet r\u00e9cent',
    });
    assert.deepEqual(await texts(''), english);
    assert.deepEqual(await texts('xx'), english);

    // The failure text is translated too.
    const { page } = await openWelcome(welcomeUrl({ lang: 'de' }));
    const state = await offlineState(page);
    assert.equal(state.status.split('\n')[0], 'Vetra Studio ist nicht erreichbar.');
    await page.close();
});
