// Entry of the player: the global `KorvelVetra` that exported pages talk to. The load script calls
// `openDoc(dataFile, containerId, options)`; the data script pushes its data into `loadedDocs`.
// While the data and the images load, the container shows the project's preloader: a preloader
// document of its own, or the built-in loading indicator.

import type { DocumentApi } from './contracts';
import { PlayerDocument, readShared, type Shared } from './document';
import { fireSafely } from './scene';
import { readCentering } from './layout';
import { imageUrls, linkStylesheet, loadScript, preloadImages } from './loader';
import { LoadingIndicator, readIndicator } from './preloader';
import { isObj, type Obj, str } from './read';

/** Longest wait for images before a document shows anyway. */
const PRELOAD_TIMEOUT_MS = 20000;

// Preloader events.
const LOAD_START = 1;
const LOAD_PROGRESS = 2;
const LOAD_COMPLETE = 3;
const ITEM_START = 4;
const ITEM_COMPLETE = 5;

interface Waiter {
    readonly promise: Promise<DocumentApi>;
    resolve(api: DocumentApi): void;
    reject(error: Error): void;
}

export interface KorvelVetraGlobal {
    /** Data scripts push their data here. */
    loadedDocs: unknown[];
    /** Opened documents by container id. */
    readonly docs: { [containerId: string]: DocumentApi };
    openDoc(dataFile: string, containerId: string, options?: unknown): void;
    /** The document of a container once it shows; rejects when it cannot load. */
    ready(containerId: string): Promise<DocumentApi>;
    /** Closes the document of a container and empties it. */
    closeDoc(containerId: string): void;
}

const opened = new Map<string, PlayerDocument>();
const waiters = new Map<string, Waiter>();
const claimed = new WeakSet<object>();

function waiterFor(containerId: string): Waiter {
    let waiter = waiters.get(containerId);
    if (!waiter) {
        let resolve: (api: DocumentApi) => void = () => undefined;
        let reject: (error: Error) => void = () => undefined;
        const promise = new Promise<DocumentApi>((yes, no) => {
            resolve = yes;
            reject = no;
        });
        // A page that never asks still must not report an unhandled rejection.
        promise.catch(() => undefined);
        waiter = { promise, resolve, reject };
        waiters.set(containerId, waiter);
    }
    return waiter;
}

/**
 * The data pushed by the script that just ran: the newest one nobody has taken yet. (A script runs
 * and fires its load event in one go, so no other data script can push in between.)
 */
function claimData(list: readonly unknown[]): Obj | null {
    for (let i = list.length - 1; i >= 0; --i) {
        const data = list[i];
        if (isObj(data) && !claimed.has(data)) {
            claimed.add(data);
            return data;
        }
    }
    return null;
}

interface OpenOptions {
    readonly paused: boolean;
    readonly center: ReturnType<typeof readCentering>;
    readonly autofit: boolean;
    readonly resourceFolder: string | null;
    readonly preloaderDoc: Obj | null;
    readonly indicator: unknown;
}

function readOptions(raw: unknown): OpenOptions {
    const options = isObj(raw) ? raw : {};
    return {
        paused: options['paused'] === true,
        center: readCentering(options['center']),
        autofit: options['autofit'] === true,
        resourceFolder: typeof options['resourceFolder'] === 'string' ? options['resourceFolder'] : null,
        preloaderDoc:
            isObj(options['preloaderDoc']) && Array.isArray(options['preloaderDoc']['scenes'])
                ? options['preloaderDoc']
                : null,
        indicator: options['preloaderOptions'],
    };
}

/** Runs `then` with the container once the page has it. */
function withContainer(win: Window, containerId: string, then: (container: HTMLElement | null) => void): void {
    const doc = win.document;
    const container = doc.getElementById(containerId);
    if (container || doc.readyState !== 'loading') {
        then(container);
        return;
    }
    doc.addEventListener('DOMContentLoaded', () => then(doc.getElementById(containerId)), { once: true });
}

/** What shows while a document loads, and its progress events. */
class Preloading {
    private indicator_: LoadingIndicator | null = null;
    private document_: PlayerDocument | null = null;
    private cancelImages_: () => void = () => undefined;
    private closed_ = false;
    private started_ = false;
    private loaded_ = 0;
    private total_ = 0;

    constructor(
        private readonly container_: HTMLElement,
        private readonly containerId_: string,
        options: OpenOptions,
    ) {
        const preloader = options.preloaderDoc;
        if (preloader) {
            this.openPreloader_(preloader, options);
        } else {
            const indicator = readIndicator(options.indicator);
            if (indicator) {
                this.indicator_ = new LoadingIndicator(container_, indicator);
            }
        }
    }

    /** A preloader document shows once its own images are there, with its own indicator meanwhile. */
    private openPreloader_(data: Obj, options: OpenOptions): void {
        const shared = readShared(data, null);
        const indicator = readIndicator(data['li']);
        if (indicator) {
            this.indicator_ = new LoadingIndicator(this.container_, indicator);
        }
        const doc = this.container_.ownerDocument;
        const quiet = { itemStart: () => undefined, itemDone: () => undefined };
        this.cancelImages_ = preloadImages(doc, imageUrls(shared), quiet, PRELOAD_TIMEOUT_MS, () => {
            if (this.closed_) {
                return;
            }
            this.removeIndicator_();
            const preloader = new PlayerDocument({
                container: this.container_,
                containerId: this.containerId_,
                data,
                shared,
                options: { paused: false, center: options.center, autofit: options.autofit },
                eventsKey: 'pe',
            });
            (data as { api?: DocumentApi }).api = preloader.api;
            this.document_ = preloader;
            preloader.open();
            if (this.started_) {
                this.fire(LOAD_START, { loaded: this.loaded_, total: this.total_ });
            }
        });
    }

    /** The document's files start loading: `total` images. */
    begin(total: number): void {
        this.started_ = true;
        this.total_ = total;
        this.fire(LOAD_START, { loaded: 0, total });
    }

    fire(eventNo: number, detail: { [key: string]: unknown }): void {
        const doc = this.document_;
        if (doc) {
            fireSafely(doc, { host: doc, elementId: null, timeline: null }, doc.events, eventNo, detail);
        }
    }

    progress(loaded: number, total: number): void {
        this.loaded_ = loaded;
        if (this.indicator_) {
            this.indicator_.setProgress(total > 0 ? loaded / total : 1);
        }
        this.fire(LOAD_PROGRESS, { loaded, total, progress: total > 0 ? loaded / total : 1 });
    }

    private removeIndicator_(): void {
        if (this.indicator_) {
            this.indicator_.destroy();
            this.indicator_ = null;
        }
    }

    close(): void {
        this.fire(LOAD_COMPLETE, { loaded: this.loaded_, total: this.total_, progress: 1 });
        this.closed_ = true;
        this.cancelImages_();
        this.removeIndicator_();
        if (this.document_) {
            this.document_.destroy();
            this.document_ = null;
        }
    }
}

function createGlobal(win: Window, previous: Partial<KorvelVetraGlobal> | undefined): KorvelVetraGlobal {
    const docs: { [containerId: string]: DocumentApi } = {};
    const global: KorvelVetraGlobal = {
        loadedDocs: previous && Array.isArray(previous.loadedDocs) ? previous.loadedDocs : [],
        docs,
        openDoc(dataFile: string, containerId: string, rawOptions?: unknown): void {
            const id = String(containerId);
            if (opened.has(id)) {
                // A new document for the container: `ready` answers for that one from now on.
                waiters.delete(id);
            }
            const waiter = waiterFor(id);
            const options = readOptions(rawOptions);
            withContainer(win, id, (container) => {
                if (!container) {
                    waiter.reject(new Error('no element with the id "' + id + '" to show the document in'));
                    return;
                }
                const previousDoc = opened.get(id);
                if (previousDoc) {
                    previousDoc.destroy();
                    opened.delete(id);
                    delete docs[id];
                }
                const preloading = new Preloading(container, id, options);
                loadScript(win.document, String(dataFile), (ok) => {
                    const data = ok && Array.isArray(global.loadedDocs) ? claimData(global.loadedDocs) : null;
                    if (!data) {
                        preloading.close();
                        waiter.reject(new Error('the data script "' + dataFile + '" did not load'));
                        return;
                    }
                    const shared = readShared(data, options.resourceFolder);
                    linkStylesheet(win.document, str(data['cssUrl'], ''));
                    const urls = imageUrls(shared);
                    let loaded = 0;
                    preloading.begin(urls.length);
                    preloadImages(
                        win.document,
                        urls,
                        {
                            itemStart: (url, index, total) => preloading.fire(ITEM_START, { url, index, total }),
                            itemDone: (url, index, total, success) => {
                                preloading.fire(ITEM_COMPLETE, { url, index, total, success });
                                preloading.progress(++loaded, total);
                            },
                        },
                        PRELOAD_TIMEOUT_MS,
                        () => {
                            preloading.close();
                            show(container, id, data, shared, options, waiter);
                        },
                    );
                });
            });
        },
        ready(containerId: string): Promise<DocumentApi> {
            return waiterFor(String(containerId)).promise;
        },
        closeDoc(containerId: string): void {
            const id = String(containerId);
            const doc = opened.get(id);
            if (doc) {
                doc.destroy();
                opened.delete(id);
                delete docs[id];
            }
            waiters.delete(id);
        },
    };

    function show(container: HTMLElement, id: string, data: Obj, shared: Shared, options: OpenOptions, waiter: Waiter): void {
        const doc = new PlayerDocument({
            container,
            containerId: id,
            data,
            shared,
            options: { paused: options.paused, center: options.center, autofit: options.autofit },
        });
        // The functions of the data script find the document through it.
        (data as { api?: DocumentApi }).api = doc.api;
        opened.set(id, doc);
        docs[id] = doc.api;
        doc.open();
        waiter.resolve(doc.api);
    }

    return global;
}

declare global {
    interface Window {
        KorvelVetra?: KorvelVetraGlobal;
    }
}

if (typeof window !== 'undefined') {
    const previous = window.KorvelVetra;
    if (!previous || typeof previous.openDoc !== 'function') {
        window.KorvelVetra = createGlobal(window, previous);
    }
}
