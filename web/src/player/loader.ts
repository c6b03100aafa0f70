// Loading what a document needs before it shows: its data script (a classic script, as pages run
// from file:// where nothing else can read a local file), its style sheet, and its images.

import type { Shared } from './document';
import { resourceUrl } from './read';

/** Adds a script element; `done` learns whether it loaded and ran. */
export function loadScript(doc: Document, src: string, done: (ok: boolean) => void): void {
    const script = doc.createElement('script');
    script.type = 'text/javascript';
    script.async = true;
    let finished = false;
    const finish = (ok: boolean): void => {
        if (!finished) {
            finished = true;
            done(ok);
        }
    };
    script.onload = () => finish(true);
    script.onerror = () => finish(false);
    script.src = src;
    (doc.head || doc.documentElement).appendChild(script);
}

/** Links the document's style sheet unless the page already has it. */
export function linkStylesheet(doc: Document, href: string): void {
    if (href === '') {
        return;
    }
    const wanted = new URL(href, doc.baseURI).href;
    const links = doc.querySelectorAll('link[rel~="stylesheet"]');
    for (let i = 0; i < links.length; ++i) {
        const link = links[i] as HTMLLinkElement;
        if (link.href === wanted) {
            return;
        }
    }
    const link = doc.createElement('link');
    link.rel = 'stylesheet';
    link.type = 'text/css';
    link.href = href;
    (doc.head || doc.documentElement).appendChild(link);
}

/** URLs of the image files of a document, each once. */
export function imageUrls(shared: Shared): string[] {
    const urls: string[] = [];
    for (const entry of shared.resources.values()) {
        if (entry[1] === 0 && typeof entry[3] === 'string') {
            const url = resourceUrl(shared.resourceFolder, entry[3]);
            if (url !== '' && urls.indexOf(url) < 0) {
                urls.push(url);
            }
        }
    }
    return urls;
}

export interface PreloadListener {
    itemStart(url: string, index: number, total: number): void;
    itemDone(url: string, index: number, total: number, ok: boolean): void;
}

/**
 * Loads images into the browser's cache, a few at a time, and calls `done` when all have loaded
 * or failed, or after `timeoutMs` at the latest: a slow file must not keep the page blank.
 */
export function preloadImages(
    doc: Document,
    urls: readonly string[],
    listener: PreloadListener,
    timeoutMs: number,
    done: () => void,
): () => void {
    const win = doc.defaultView;
    let next = 0;
    let settled = 0;
    let finished = false;
    const total = urls.length;
    const images: HTMLImageElement[] = [];
    const finish = (): void => {
        if (!finished) {
            finished = true;
            if (timer !== null && win) {
                win.clearTimeout(timer);
            }
            done();
        }
    };
    const startNext = (): void => {
        if (finished || next >= total) {
            return;
        }
        const index = next++;
        const url = urls[index]!;
        const image = new Image();
        images.push(image);
        const settle = (ok: boolean): void => {
            image.onload = null;
            image.onerror = null;
            if (finished) {
                return;
            }
            listener.itemDone(url, index, total, ok);
            if (++settled >= total) {
                finish();
            } else {
                startNext();
            }
        };
        image.onload = () => settle(true);
        image.onerror = () => settle(false);
        listener.itemStart(url, index, total);
        image.src = url;
    };
    const timer = win && total > 0 ? win.setTimeout(finish, timeoutMs) : null;
    if (total === 0) {
        finish();
    } else {
        for (let i = 0; i < 4; ++i) {
            startNext();
        }
    }
    return () => {
        finished = true;
        if (timer !== null && win) {
            win.clearTimeout(timer);
        }
        for (const image of images) {
            image.onload = null;
            image.onerror = null;
        }
    };
}
