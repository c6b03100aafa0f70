// The page's side of the studio's web channel: a WebSocket to the address the studio put in the
// page URL, Qt's QWebChannel on top, and a typed view of the published welcome object.

export class ChannelError extends Error {
    constructor(message: string) {
        super(message);
        this.name = 'ChannelError';
    }
}

export interface OpenChannelOptions {
    /** Give up when the socket is not open and the channel not initialised by then. */
    readonly timeoutMs?: number;
    /** Called once if an established channel goes away (studio quit, socket dropped). */
    readonly onLost?: (reason: string) => void;
}

export interface ChannelConnection {
    readonly channel: QWebChannel;
    /** Hangs up without reporting the loss; for a page that cannot use what it found. */
    close(): void;
}

type ChannelState = 'pending' | 'open' | 'finished';

/**
 * Connects to the studio. `url` is used exactly as given: it carries the access token of this run
 * of the studio, and the server refuses anything else. Rejects with ChannelError when the address
 * is missing or bad, the socket fails, or the channel does not come up in time.
 */
export function openChannel(
    url: string | null | undefined,
    options: OpenChannelOptions = {},
): Promise<ChannelConnection> {
    return new Promise((resolve, reject) => {
        if (!url) {
            reject(new ChannelError('the page was opened without a channel address'));
            return;
        }
        if (typeof QWebChannel !== 'function') {
            reject(new ChannelError('qwebchannel.js is not loaded'));
            return;
        }
        let socket: WebSocket;
        try {
            socket = new WebSocket(url);
        } catch (error) {
            reject(new ChannelError(`bad channel address: ${String(error)}`));
            return;
        }

        let state: ChannelState = 'pending';
        const fail = (reason: string): void => {
            window.clearTimeout(timer);
            if (state === 'pending') {
                state = 'finished';
                socket.close();
                reject(new ChannelError(reason));
            } else if (state === 'open') {
                state = 'finished';
                options.onLost?.(reason);
            }
        };
        const timer = window.setTimeout(() => fail('the studio did not answer in time'), options.timeoutMs ?? 15000);

        // An error is always followed by close; both go through fail(), which reports only once.
        socket.onerror = () => fail('the connection failed');
        socket.onclose = (event) => fail(`the connection closed (${event.code})`);
        socket.onopen = () => {
            new QWebChannel(socket, (channel) => {
                if (state !== 'pending') {
                    return;
                }
                window.clearTimeout(timer);
                state = 'open';
                resolve({
                    channel,
                    close: () => {
                        state = 'finished';
                        socket.close();
                    },
                });
            });
        };
    });
}

/** What the welcome page may ask of the studio; mirrors the published "vtwelcome" object. */
export interface WelcomeBridge {
    readonly appVersion: string;
    /** Absolute project paths, newest first, as the host last reported them. */
    recentFiles(): unknown;
    onRecentFilesChanged(callback: () => void): void;
    newProject(): void;
    openProject(): void;
    openRecent(path: string): void;
}

export const welcomeObjectName = 'vtwelcome';

function slot(object: QtRemoteObject, name: string): (...args: unknown[]) => void {
    const member = object[name];
    if (typeof member !== 'function') {
        throw new ChannelError(`${welcomeObjectName}.${name} is missing`);
    }
    const invoke = member as (...args: unknown[]) => unknown;
    // A trailing function is taken as the result callback, so the script creates no Promise that
    // would reject (and be reported as unhandled) for slots that return nothing.
    return (...args) => {
        invoke(...args, () => undefined);
    };
}

function signal(object: QtRemoteObject, name: string): QtSignal {
    const member = object[name] as Partial<QtSignal> | undefined;
    if (!member || typeof member.connect !== 'function') {
        throw new ChannelError(`${welcomeObjectName}.${name} is missing`);
    }
    return member as QtSignal;
}

/** Checks the published object has what the page needs and gives it a typed face. */
export function welcomeBridge(channel: QWebChannel): WelcomeBridge {
    const object = channel.objects[welcomeObjectName];
    if (!object) {
        throw new ChannelError(`the studio publishes no "${welcomeObjectName}" object`);
    }
    const newProject = slot(object, 'newProject');
    const openProject = slot(object, 'openProject');
    const openRecent = slot(object, 'openRecent');
    const changed = signal(object, 'recentFilesChanged');
    const version = object['appVersion'];
    return {
        appVersion: typeof version === 'string' ? version : '',
        recentFiles: () => object['recentFiles'],
        onRecentFilesChanged: (callback) => changed.connect(() => callback()),
        newProject: () => newProject(),
        openProject: () => openProject(),
        openRecent: (path) => openRecent(path),
    };
}
