// Entry of the stage page (canvas/index.html). The studio opens the page with
//   ?webChannelBaseUrl=<ws://127.0.0.1:PORT/?token=...>
// and, once the page has loaded, runs "window.canvasId = N;": the page's object on the channel is
// "vtcanvas_N". The id may be set before or after the channel is up, and again after a reload.

import { openChannel, type ChannelConnection } from '../common/channel';
import { connectCanvas } from './bridge';
import { StagePage } from './page';
import { pageElements } from './pagedom';
import { canvasHandlers } from './signals';

declare global {
    interface Window {
        canvasId?: unknown;
    }
}

/** How long to wait before trying again after the studio went away. */
const RETRY_MS = 2000;

/** Calls `then` with the canvas id as soon as the studio has set it (now, if it already has). */
function watchCanvasId(then: (id: number) => void): void {
    let value: unknown = window.canvasId;
    const report = (raw: unknown): void => {
        const id = typeof raw === 'number' ? raw : Number(raw);
        if (Number.isInteger(id) && id > 0) {
            then(id);
        }
    };
    Object.defineProperty(window, 'canvasId', {
        configurable: true,
        get: () => value,
        set: (next: unknown) => {
            value = next;
            report(next);
        },
    });
    if (value !== undefined) {
        report(value);
    }
}

function start(): void {
    const page = new StagePage(pageElements(document));
    const handlers = canvasHandlers(page);
    const url = new URLSearchParams(window.location.search).get('webChannelBaseUrl');
    let canvasId = 0;
    let connection: ChannelConnection | null = null;
    let connecting = false;
    let retry = 0;

    const bind = (): void => {
        if (!connection || canvasId === 0) {
            return;
        }
        try {
            page.attach(connectCanvas(connection.channel, canvasId, handlers));
        } catch (error) {
            console.error(`vtcanvas: ${error instanceof Error ? error.message : String(error)}`);
            page.attach(null);
            page.setStatus('offline');
        }
    };

    const connect = (): void => {
        if (connecting || connection) {
            return;
        }
        connecting = true;
        openChannel(url, {
            onLost: (reason) => {
                console.warn(`vtcanvas: ${reason}`);
                connection = null;
                page.attach(null);
                page.setStatus('offline');
                retry = window.setTimeout(connect, RETRY_MS);
            },
        })
            .then((opened) => {
                connecting = false;
                connection = opened;
                bind();
            })
            .catch((error: unknown) => {
                connecting = false;
                console.warn(`vtcanvas: ${error instanceof Error ? error.message : String(error)}`);
                page.setStatus('offline');
                if (url) {
                    retry = window.setTimeout(connect, RETRY_MS);
                }
            });
    };

    watchCanvasId((id) => {
        if (id !== canvasId) {
            canvasId = id;
            bind();
        }
    });
    // A reload or a closing page hangs up at once, so the studio does not keep a dead client.
    window.addEventListener('pagehide', () => {
        window.clearTimeout(retry);
        connection?.close();
        connection = null;
    });
    connect();
}

if (document.readyState === 'loading') {
    document.addEventListener('DOMContentLoaded', start);
} else {
    start();
}
