// Shared setup of the browser tests: packages come from web/node_modules (these files live outside
// the web project, where a bare import would not find them), the browser is Debian's Chromium, and
// the pages are the built ones under VETRA_RESOURCES_DIR.

import { existsSync } from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { pathToFileURL } from 'node:url';

export const webRequire = createRequire(new URL('../../web/package.json', import.meta.url));

const { chromium } = webRequire('playwright-core');

export const chromiumPath = process.env.VETRA_CHROMIUM ?? '/usr/bin/chromium';

export function launchChromium() {
    if (!existsSync(chromiumPath)) {
        throw new Error(`no browser at ${chromiumPath}: install Debian's chromium package (or set VETRA_CHROMIUM)`);
    }
    return chromium.launch({
        executablePath: chromiumPath,
        headless: true,
        args: [
            '--no-sandbox',
            '--disable-gpu',
            '--disable-background-networking',
            '--disable-component-update',
            '--disable-sync',
            '--no-first-run',
        ],
    });
}

/** The built resources folder; fails with a hint when the bundles are not there. */
export function resourcesDir(required) {
    const dir = process.env.VETRA_RESOURCES_DIR;
    if (!dir) {
        throw new Error('VETRA_RESOURCES_DIR is not set: point it at the build\'s share/vetra-studio/resources');
    }
    for (const file of required) {
        if (!existsSync(path.join(dir, file))) {
            throw new Error(`${path.join(dir, file)} is missing: build the targets web_bundles and vetra_resources first`);
        }
    }
    return path.resolve(dir);
}

/** file:// URL of a page with the query items appended in the given order, values encoded. */
export function pageUrl(file, query = {}) {
    const url = pathToFileURL(file);
    url.search = Object.entries(query)
        .map(([key, value]) => `${encodeURIComponent(key)}=${encodeURIComponent(value)}`)
        .join('&');
    return url.href;
}
