// Qt's page-side web channel script (qwebchannel.js) is loaded by a classic <script> tag before our
// bundles and defines these globals. Only the parts our pages use are declared.

/** A remote signal. Property notify signals fire after the property cache is updated. */
interface QtSignal {
    connect(callback: (...args: unknown[]) => void): void;
    disconnect(callback: (...args: unknown[]) => void): void;
}

/**
 * A published QObject as the script builds it: properties become getters over a cache the host
 * keeps current, slots become functions that take an optional result callback as last argument,
 * signals become QtSignal members. Everything is untyped until a page wraps it.
 */
interface QtRemoteObject {
    readonly [member: string]: unknown;
}

/** A WebSocket fits: the script sends strings and takes over the transport's onmessage. */
interface QWebChannelTransport {
    send(data: string): void;
}

declare class QWebChannel {
    constructor(transport: QWebChannelTransport, initCallback?: (channel: QWebChannel) => void);
    readonly objects: { readonly [name: string]: QtRemoteObject | undefined };
}
