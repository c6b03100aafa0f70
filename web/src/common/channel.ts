// The page's side of the studio's web channel: a WebSocket to the address the studio put in the
// page URL, Qt's QWebChannel on top, and checked access to the members of a published object.
// Every page that talks to the studio (welcome page, stage) opens its channel here.

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
    /** Hangs up without reporting the loss; for a page that cannot use what it found or leaves. */
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

/** The published object of that name, or a ChannelError naming what is missing. */
export function remoteObject(channel: QWebChannel, objectName: string): QtRemoteObject {
    const object = channel.objects[objectName];
    if (!object) {
        throw new ChannelError(`the studio publishes no "${objectName}" object`);
    }
    return object;
}

/**
 * A slot of a published object as a plain function. A trailing function is passed as the result
 * callback, so the script creates no Promise that would reject (and be reported as unhandled) for
 * slots that return nothing.
 */
export function remoteSlot(object: QtRemoteObject, objectName: string, name: string): (...args: unknown[]) => void {
    const member = object[name];
    if (typeof member !== 'function') {
        throw new ChannelError(`${objectName}.${name} is missing`);
    }
    const invoke = member as (...args: unknown[]) => unknown;
    return (...args) => {
        invoke(...args, () => undefined);
    };
}

export function remoteSignal(object: QtRemoteObject, objectName: string, name: string): QtSignal {
    const member = object[name] as Partial<QtSignal> | undefined;
    if (!member || typeof member.connect !== 'function') {
        throw new ChannelError(`${objectName}.${name} is missing`);
    }
    return member as QtSignal;
}
