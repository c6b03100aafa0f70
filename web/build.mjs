#!/usr/bin/env node
// Bundles the studio's web pages with esbuild.
//
//   node build.mjs --outdir <resources dir>   build every bundle below <resources dir>
//   node build.mjs --list                     print each bundle's path relative to the outdir
//
// <resources dir> is the "resources" folder of the shared data (the build tree's
// share/vetra-studio/resources); the static HTML and CSS of each page are copied there by CMake.
// CMake reads --list at configure time to know what this script produces, so a new page only
// needs a new row in `bundles`.

import path from 'node:path';
import process from 'node:process';
import { fileURLToPath } from 'node:url';

const here = path.dirname(fileURLToPath(import.meta.url));

/**
 * One row per bundle. Pages are opened from file:// inside Qt WebEngine, so every bundle is a
 * classic script (iife): module scripts do not load from file URLs.
 *
 * target: the oldest engine that runs the bundle. Qt WebEngine 5.15 is Chromium 87.
 * minify: optional, false unless the row says so.
 * mangleProps: optional, the property names that minifying may shorten. Only names that a bundle
 *   keeps to itself may match: never a DOM name, a key of loaded data or a public API name.
 */
const bundles = [
    {
        entry: 'src/welcome/main.ts',
        out: 'welcome/vtwelcome.js',
        format: 'iife',
        target: 'chrome87',
    },
    {
        // The exported player runs in the audience's browsers, not in the studio: an older target,
        // one iife with no runtime dependency, and small, as every export carries a copy.
        entry: 'src/player/main.ts',
        out: 'canvas/player/vtplayer.js',
        format: 'iife',
        target: 'es2017',
        minify: true,
        // Members private to the player's classes carry the prefix m_ or a trailing underscore.
        mangleProps: /^m_|[^_]_$/,
    },
    {
        // The editor's stage: it shares the player's renderer but runs only inside the studio.
        entry: 'src/stage/main.ts',
        out: 'canvas/vtcanvas.js',
        format: 'iife',
        target: 'chrome87',
    },
];

function parseArguments(argv) {
    const options = { outdir: null, list: false };
    for (let i = 0; i < argv.length; ++i) {
        const arg = argv[i];
        if (arg === '--list') {
            options.list = true;
        } else if (arg === '--outdir') {
            options.outdir = argv[++i] ?? null;
        } else if (arg.startsWith('--outdir=')) {
            options.outdir = arg.slice('--outdir='.length);
        } else {
            throw new Error(`unknown argument "${arg}"`);
        }
    }
    if (!options.list && !options.outdir) {
        throw new Error('--outdir <resources dir> is required');
    }
    return options;
}

async function buildAll(outdir) {
    // Loaded here, not at the top: CMake asks for --list while configuring, before npm ci has
    // installed esbuild.
    const { build } = await import('esbuild');
    for (const bundle of bundles) {
        const outfile = path.join(outdir, bundle.out);
        const result = await build({
            absWorkingDir: here,
            entryPoints: [path.join(here, bundle.entry)],
            outfile,
            bundle: true,
            platform: 'browser',
            format: bundle.format,
            target: bundle.target,
            minify: bundle.minify === true,
            mangleProps: bundle.mangleProps,
            sourcemap: false,
            legalComments: 'none',
            charset: 'utf8',
            logLevel: 'warning',
        });
        if (result.errors.length > 0) {
            throw new Error(`${bundle.entry} failed`);
        }
        console.log(`built ${outfile}`);
    }
}

try {
    const options = parseArguments(process.argv.slice(2));
    if (options.list) {
        for (const bundle of bundles) {
            console.log(bundle.out);
        }
    } else {
        await buildAll(path.resolve(options.outdir));
    }
} catch (error) {
    console.error(`build.mjs: ${error instanceof Error ? error.message : error}`);
    process.exitCode = 1;
}
