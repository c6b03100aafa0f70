// The sample as "Preview in Browser" shows it: `vetra preview` writes the preview folder and serves
// it on 127.0.0.1, Chromium opens the printed URL, the player reads the document, and the video of
// the second scene seeks, which a browser does with byte-range requests to the server.

import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { cpSync, existsSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { launchChromium, resourcesDir } from './browser.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const repo = path.resolve(here, '..', '..');
const binDir = process.env.VETRA_BIN_DIR ?? path.join(repo, 'build', 'bin');
const vetra = path.join(binDir, 'vetra');

let work;
let server;
let serverExit;
let url;
let browser;
let page;
const mediaResponses = [];

/** Starts `vetra preview` and resolves with the first line it prints: the page's URL. */
function startPreview(project, resources) {
    server = spawn(vetra, ['preview', project], {
        // The player and the templates of the built resources folder.
        env: { ...process.env, VETRA_RESOURCE_PATH: path.dirname(resources) },
        stdio: ['ignore', 'pipe', 'pipe'],
    });
    let errors = '';
    server.stderr.on('data', (chunk) => { errors += chunk; });
    serverExit = new Promise((resolve) => server.on('exit', (code, signal) => resolve({ code, signal })));
    return new Promise((resolve, reject) => {
        let printed = '';
        server.stdout.on('data', (chunk) => {
            printed += chunk;
            const newline = printed.indexOf('\n');
            if (newline >= 0) {
                resolve(printed.slice(0, newline).trim());
            }
        });
        serverExit.then(({ code }) => reject(new Error(`vetra preview ended (${code}) before printing a URL: ${errors}`)));
        // Not keeping the test process alive once the URL is there.
        setTimeout(() => reject(new Error(`vetra preview printed no URL within 20 s: ${errors}`)), 20000).unref();
    });
}

before(async () => {
    assert.ok(existsSync(vetra), `${vetra} is missing: build the target vetra first`);
    const resources = resourcesDir(['canvas/player/vtplayer.js', 'canvas/player/vtplayer.html']);
    work = mkdtempSync(path.join(tmpdir(), 'vetra-preview-test-'));
    cpSync(path.join(repo, 'examples', 'welcome'), path.join(work, 'welcome'), { recursive: true });
    url = await startPreview(path.join(work, 'welcome', 'welcome.vetra'), resources);
    assert.match(url, /^http:\/\/127\.0\.0\.1:\d+\/\/.*\/welcome_res\/preview\/welcome\.html$/);

    browser = await launchChromium();
    page = await browser.newPage({ viewport: { width: 1000, height: 700 } });
    page.on('response', (response) => {
        if (response.url().endsWith('/clip.webm')) {
            mediaResponses.push({ status: response.status(), range: response.request().headers()['range'] });
        }
    });
});

after(async () => {
    await browser?.close();
    if (server && server.exitCode === null) {
        server.kill('SIGINT');
        await serverExit;
    }
    if (work) {
        rmSync(work, { recursive: true, force: true });
    }
});

test('the preview page opens from the server and the document becomes ready', async () => {
    const errors = [];
    page.on('pageerror', (error) => errors.push(error.message));
    const response = await page.goto(url);
    assert.equal(response.status(), 200);
    assert.equal(response.headers()['server'], 'Vetra Studio');
    const containerId = await page.evaluate(() => document.querySelector('div[id]')?.id);
    assert.ok(containerId, 'the page has no container');
    const scenes = await page.evaluate(async (id) => {
        window.__doc = await KorvelVetra.ready(id);
        return window.__doc.sceneIndex;
    }, containerId);
    assert.equal(scenes, 0);
    assert.deepEqual(errors, []);
});

test('the video of the second scene seeks through range requests', async () => {
    const result = await page.evaluate(async () => {
        window.__doc.goToScene(1, false, [0, 0]);
        const deadline = (ms, what) => new Promise((_, reject) => setTimeout(() => reject(new Error(what)), ms));
        const video = await Promise.race([
            (async () => {
                for (;;) {
                    const found = document.querySelector('video.vetra-media');
                    if (found) {
                        return found;
                    }
                    await new Promise((resolve) => requestAnimationFrame(resolve));
                }
            })(),
            deadline(10000, 'no video element in the second scene'),
        ]);
        if (video.readyState < 1) {
            video.preload = 'auto';
            video.load();
            await Promise.race([
                new Promise((resolve) => video.addEventListener('loadedmetadata', resolve, { once: true })),
                deadline(10000, `no metadata (network state ${video.networkState}, error ${video.error?.code})`),
            ]);
        }
        const target = video.duration / 2;
        const seeked = new Promise((resolve) => video.addEventListener('seeked', resolve, { once: true }));
        video.currentTime = target;
        await Promise.race([seeked, deadline(10000, 'the video never reported seeked')]);
        return { duration: video.duration, target, time: video.currentTime };
    });
    assert.ok(result.duration > 0, `the video has no duration: ${JSON.stringify(result)}`);
    assert.ok(Math.abs(result.time - result.target) < 0.1, `seeked to ${result.time}, asked ${result.target}`);
    // The media requests of the browser ask for ranges, and the server answers with parts.
    assert.ok(mediaResponses.some((r) => r.status === 206 && /^bytes=\d+-/.test(r.range ?? '')),
        `no partial answer among ${JSON.stringify(mediaResponses)}`);
});

test('an interrupt stops the server cleanly', async () => {
    server.kill('SIGINT');
    const { code } = await serverExit;
    assert.equal(code, 0);
    assert.ok(!existsSync(path.join(work, 'welcome', 'welcome_res', 'preview')), 'the preview files are left');
});
