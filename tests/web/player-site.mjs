// Export folders for the player's browser tests: the page and style sheet from the studio's
// templates, the data scripts in the form the export writes, small image files, and the player
// bundle (from VETRA_RESOURCES_DIR when set, else built here with web/build.mjs).

import { execFileSync } from 'node:child_process';
import { copyFileSync, existsSync, mkdirSync, mkdtempSync, readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { webRequire } from './browser.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const repo = path.resolve(here, '..', '..');
const templates = path.join(repo, 'resources', 'canvas', 'player');
const playerSrc = path.join(repo, 'web', 'src', 'player');

let bundlePath = null;

/** The player bundle to test. */
export function playerBundle() {
    if (bundlePath) {
        return bundlePath;
    }
    const dir = process.env.VETRA_RESOURCES_DIR;
    if (dir && existsSync(path.join(dir, 'canvas', 'player', 'vtplayer.js'))) {
        bundlePath = path.join(dir, 'canvas', 'player', 'vtplayer.js');
    } else {
        const out = mkdtempSync(path.join(tmpdir(), 'vetra-player-build-'));
        execFileSync(process.execPath, [path.join(repo, 'web', 'build.mjs'), '--outdir', out], { stdio: 'pipe' });
        bundlePath = path.join(out, 'canvas', 'player', 'vtplayer.js');
    }
    return bundlePath;
}

/** The scope injection text as the export puts it in front of the functions: without comments. */
function scopeInjection() {
    const text = readFileSync(path.join(repo, 'resources', 'canvas', 'vtscopeinjection.js'), 'utf8');
    return text
        .split('\n')
        .filter((line) => !line.trim().startsWith('//'))
        .join('\n')
        .trim();
}

/**
 * A data script: `functions` are [id, name, body] with the body of `function name(doc, e) {...}`.
 */
export function dataScript(docData, functions = []) {
    let text = 'var f = [];';
    for (const [id, name, body] of functions) {
        text += `\nvar ${name} = function ${name}(doc, e) {\n${body}\n};\nf.push([${id}, "${name}", ${name}]);`;
    }
    const tail = (text + '\ndocData.f = f;').replace(/\n/g, '\n\t');
    return (
        '(function(Vetra) {\n\tvar docData = ' +
        JSON.stringify(docData) +
        ';\n\t' +
        scopeInjection().replace(/\n/g, '\n\t') +
        tail +
        '\n\tVetra.loadedDocs.push(docData);\n}(KorvelVetra)); '
    );
}

/** The load script of a document with the default loading indicator. */
export function loadScript(dataFile, containerId, options) {
    const li = { color: '#2090e6', density: 9, diameter: 60, range: 1, shape: 'oval', speed: 1 };
    const parts = [`paused:${options.paused ? 'true' : 'false'}`, 'preloaderOptions: li', `center: '${options.center ?? 'none'}'`];
    if (options.autofit) {
        parts.push('autofit: true');
    }
    return (
        '(function(Vetra) {\n\tvar li = ' +
        JSON.stringify(li) +
        ';\n\tVetra.openDoc(\'' +
        dataFile +
        '\', \'' +
        containerId +
        '\', {' +
        parts.join(', ') +
        '});})(KorvelVetra);'
    );
}

// A 2 by 2 opaque red PNG.
const RED_PNG = Buffer.from(
    'iVBORw0KGgoAAAANSUhEUgAAAAIAAAACCAYAAABytg0kAAAAEklEQVR4nGP4z8DwHwyBNAMDAE7+A/1rWk3gAAAAAElFTkSuQmCC',
    'base64',
);

/**
 * Writes an export folder and answers the path of its page. `site` holds: name (N), docData (the
 * object of N.js, without resourceFolder and cssUrl, which are filled in), functions, options of
 * openDoc, images (names of PNG files in the resource folder), files ({name: text}), and
 * loadScript to replace the generated one.
 */
export function writeSite(site) {
    const dir = mkdtempSync(path.join(tmpdir(), 'vetra-player-'));
    const name = site.name ?? 'demo';
    const resFolder = site.resourceFolder ?? `${name}_res`;
    mkdirSync(path.join(dir, resFolder), { recursive: true });
    copyFileSync(playerBundle(), path.join(dir, 'vtplayer.js'));
    for (const image of site.images ?? []) {
        writeFileSync(path.join(dir, resFolder, image), RED_PNG);
    }
    for (const [file, text] of Object.entries(site.files ?? {})) {
        writeFileSync(path.join(dir, file), text);
    }
    const containerId = site.containerId ?? 'vetra_stage';
    if (site.docData) {
        const docData = { v: 3, mpv: 2, resources: [], ...site.docData, resourceFolder: resFolder, cssUrl: `${name}.css` };
        writeFileSync(path.join(dir, `${name}.js`), dataScript(docData, site.functions));
    }
    const fill = (template, values) => {
        let text = template;
        for (const [key, value] of Object.entries(values)) {
            text = text.split(key).join(value);
        }
        return text;
    };
    const page = fill(readFileSync(path.join(templates, 'vtplayer.html'), 'utf8'), {
        '{$title}': name,
        '{$description}': '',
        '{$keywords}': '',
        '{$author}': '',
        '{$playerURL}': 'vtplayer.js',
        '{$cssFiles}': '',
        '{$jsFiles}': '',
        '{$loadDocumentScript}': site.loadScript ?? loadScript(`${name}.js`, containerId, site.options ?? {}),
        '{$containerID}': containerId,
        '{$viewportWidth}': '',
        '{$viewportHeight}': '',
        '{$googleFonts}': '',
    });
    writeFileSync(path.join(dir, `${name}.html`), page);
    writeFileSync(
        path.join(dir, `${name}.css`),
        fill(readFileSync(path.join(templates, 'vtplayer.css'), 'utf8'), { '{$systemFonts}': '' }),
    );
    return path.join(dir, `${name}.html`);
}

/** A scene object; `elems` are element objects, `extra` further keys ("st", "aa", "rp", "e"...). */
export function scene(id, elems, extra = {}) {
    return {
        id,
        n: `Scene_${id}`,
        k: 8,
        selected: false,
        locked: false,
        visible: true,
        aspectRatioLocked: false,
        r: [0, 0, 400, 300, 0],
        f: [1, 255, 255, 255, 255],
        pso: [50, 50, 1200],
        aa: false,
        st: [0, 0],
        timelines: [{ id: 1, n: 'Timeline', dur: 0 }],
        currentTime: 0,
        ...(elems.length > 0 ? { elems } : {}),
        ...extra,
    };
}

/** An element object of kind k with the block keys given. */
export function element(id, k, block = {}, extra = {}) {
    return {
        id,
        n: `E${id}`,
        k,
        selected: false,
        locked: false,
        visible: true,
        aspectRatioLocked: false,
        r: [0, 0, 100, 50, 0],
        ...block,
        ...extra,
    };
}

/** A text array: html, family, size, colour, highlight, weight, italic, underline, strikeout, alignments, line height, indent, spacings. */
export function txt(html, overrides = {}) {
    const t = [html, "'Arial'", 18, [67, 67, 67, 255], [0, 0, 0, 0], 'normal', false, false, false, 4, 128, 120, 0, 0, 0];
    for (const [index, value] of Object.entries(overrides)) {
        t[Number(index)] = value;
    }
    return t;
}

/** Bundles some of the player's modules into one ES module for Node or a page. */
export async function bundleModules(exports, format) {
    const contents = exports.map(([names, file]) => `export { ${names} } from ${JSON.stringify(path.join(playerSrc, file))};`).join('\n');
    const { build } = webRequire('esbuild');
    const result = await build({
        stdin: { contents, resolveDir: playerSrc, loader: 'ts' },
        bundle: true,
        write: false,
        format,
        globalName: format === 'iife' ? 'harness' : undefined,
        target: 'es2017',
        logLevel: 'silent',
    });
    return result.outputFiles[0].text;
}

/** Serves a folder over HTTP, holding "slow.png" back until `release` is called, as a slow network would. */
export async function serveSlowly(dir) {
    let release;
    const held = new Promise((resolve) => (release = resolve));
    const server = createServer(async (request, response) => {
        const file = path.join(dir, decodeURIComponent(new URL(request.url, 'http://x').pathname));
        if (file.endsWith('slow.png')) {
            await held;
        }
        try {
            const body = readFileSync(file);
            const types = { '.html': 'text/html', '.js': 'text/javascript', '.css': 'text/css' };
            const type = types[path.extname(file)] ?? 'image/png';
            response.writeHead(200, { 'content-type': type });
            response.end(body);
        } catch {
            response.writeHead(404);
            response.end();
        }
    });
    await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
    return {
        url: (file) => `http://127.0.0.1:${server.address().port}/${file}`,
        release: () => release(),
        close: () => {
            release();
            server.close();
        },
    };
}
