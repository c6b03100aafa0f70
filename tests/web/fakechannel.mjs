// A stand-in for the studio's web channel server (QWebChannel over QWebSocketServer), good enough
// for Qt's qwebchannel.js: it publishes objects with the same message layout Qt 5.15 sends, refuses
// sockets without the access token as the studio does, and records what the page asks for.

import { randomBytes } from 'node:crypto';
import { once } from 'node:events';
import { webRequire } from './browser.mjs';

const { WebSocketServer } = webRequire('ws');

export const MessageType = Object.freeze({
    signal: 1,
    propertyUpdate: 2,
    init: 3,
    idle: 4,
    debug: 5,
    invokeMethod: 6,
    connectToSignal: 7,
    disconnectFromSignal: 8,
    setProperty: 9,
    response: 10,
});

// QObject's own meta methods come first in every meta object (Qt 5): destroyed(QObject*),
// destroyed(), objectNameChanged(QString), deleteLater(), _q_reregisterTimers(void*).
const firstOwnMethodIndex = 5;

/**
 * Lays out one published object like QMetaObjectPublisher::classInfoForObject does.
 * definition: { properties: { name: { value, notify? } }, signals: [name], slots: ['name(Type,...)'] }
 */
function publish(definition) {
    const signalNames = [...(definition.signals ?? [])];
    for (const property of Object.values(definition.properties ?? {})) {
        if (property.notify && !signalNames.includes(property.notify)) {
            signalNames.push(property.notify);
        }
    }
    let next = firstOwnMethodIndex;
    const signalIndex = new Map(signalNames.map((name) => [name, next++]));
    const slots = (definition.slots ?? []).map((signature) => ({
        name: signature.slice(0, signature.indexOf('(')),
        signature,
        index: next++,
    }));

    const properties = [[0, 'objectName', [1, 2], '']];
    const propertyIndex = new Map();
    const notifyIndexes = new Set();
    for (const [name, property] of Object.entries(definition.properties ?? {})) {
        const index = properties.length;
        propertyIndex.set(name, index);
        let notify = [];
        if (property.notify) {
            const sigIndex = signalIndex.get(property.notify);
            notifyIndexes.add(sigIndex);
            // Qt shortens "<property>Changed" to 1; the script rebuilds the name.
            notify = [property.notify === `${name}Changed` ? 1 : property.notify, sigIndex];
        }
        properties.push([index, name, notify, property.value]);
    }

    const methods = [
        ['deleteLater', 3],
        ['deleteLater()', 3],
    ];
    for (const slot of slots) {
        methods.push([slot.name, slot.index], [slot.signature, slot.index]);
    }
    const signals = [
        ['destroyed', 0],
        ['destroyed(QObject*)', 0],
    ];
    for (const [name, index] of signalIndex) {
        if (!notifyIndexes.has(index)) {
            signals.push([name, index]);
        }
    }
    return { info: { methods, properties, signals, enums: {} }, signalIndex, propertyIndex, slots };
}

/**
 * Starts the server on 127.0.0.1 with a random port.
 * options: { objects: { name: definition }, token?: string }
 */
export async function startFakeChannel(options) {
    const token = options.token ?? randomBytes(16).toString('hex');
    const objects = new Map(Object.entries(options.objects).map(([name, definition]) => [name, publish(definition)]));
    const values = new Map(
        Object.entries(options.objects).map(([name, definition]) => [
            name,
            new Map(Object.entries(definition.properties ?? {}).map(([key, property]) => [key, property.value])),
        ]),
    );

    const calls = [];
    const callWaiters = [];
    const clients = new Set();
    const stats = { accepted: 0, refused: 0, origins: [], requestUrls: [] };

    const server = new WebSocketServer({ host: '127.0.0.1', port: 0 });
    await once(server, 'listening');
    const { port } = server.address();

    function send(client, message) {
        client.socket.send(JSON.stringify(message));
    }

    function initData() {
        const data = {};
        for (const [name, object] of objects) {
            const properties = object.info.properties.map(([index, propertyName, notify]) => [
                index,
                propertyName,
                notify,
                index === 0 ? name : values.get(name).get(propertyName),
            ]);
            data[name] = { ...object.info, properties };
        }
        return data;
    }

    function record(call) {
        calls.push(call);
        for (const waiter of [...callWaiters]) {
            if (waiter.predicate(call)) {
                callWaiters.splice(callWaiters.indexOf(waiter), 1);
                clearTimeout(waiter.timer);
                waiter.resolve(call);
            }
        }
    }

    function handle(client, message) {
        switch (message.type) {
            case MessageType.init:
                send(client, { type: MessageType.response, id: message.id, data: initData() });
                break;
            case MessageType.idle:
                client.idle = true;
                flush(client);
                break;
            case MessageType.invokeMethod: {
                const object = objects.get(message.object);
                // Overloads are named by signature and then sent by index, others by name.
                const slot = object?.slots.find((s) => s.name === message.method || s.index === message.method);
                if (!slot) {
                    record({ object: message.object, method: String(message.method), args: message.args, unknown: true });
                    break;
                }
                record({ object: message.object, method: slot.name, args: message.args });
                // A slot returning void answers with null.
                send(client, { type: MessageType.response, id: message.id, data: null });
                break;
            }
            case MessageType.connectToSignal:
                client.subscriptions.add(`${message.object}:${message.signal}`);
                break;
            case MessageType.disconnectFromSignal:
                client.subscriptions.delete(`${message.object}:${message.signal}`);
                break;
            case MessageType.setProperty:
                record({ object: message.object, setProperty: message.property, value: message.value });
                break;
            default:
                record({ unexpected: message });
        }
    }

    // Qt holds property updates back until the page reports it is idle again.
    function flush(client) {
        if (!client.idle || client.pendingUpdates.length === 0) {
            return;
        }
        client.idle = false;
        send(client, { type: MessageType.propertyUpdate, data: client.pendingUpdates.splice(0) });
    }

    server.on('connection', (socket, request) => {
        stats.origins.push(request.headers.origin ?? '');
        stats.requestUrls.push(request.url);
        const given = new URL(request.url, 'ws://127.0.0.1').searchParams.get('token');
        if (given !== token) {
            ++stats.refused;
            socket.close(1008, 'refused');
            return;
        }
        ++stats.accepted;
        const client = { socket, idle: false, pendingUpdates: [], subscriptions: new Set() };
        clients.add(client);
        socket.on('message', (data) => handle(client, JSON.parse(String(data))));
        socket.on('close', () => clients.delete(client));
    });

    return {
        port,
        token,
        /** The address the studio would put into the page URL. */
        url: `ws://127.0.0.1:${port}/?token=${token}`,
        calls,
        stats,
        get clientCount() {
            return clients.size;
        },

        /** Resolves with the first recorded call (past or future) the predicate accepts. */
        waitForCall(predicate, timeoutMs = 5000) {
            const done = calls.find(predicate);
            if (done) {
                return Promise.resolve(done);
            }
            return new Promise((resolve, reject) => {
                const waiter = { predicate, resolve };
                waiter.timer = setTimeout(() => {
                    callWaiters.splice(callWaiters.indexOf(waiter), 1);
                    reject(new Error(`no matching call within ${timeoutMs} ms; calls: ${JSON.stringify(calls)}`));
                }, timeoutMs);
                callWaiters.push(waiter);
            });
        },

        /** Changes a property as the host would: new value plus its notify signal. */
        setProperty(objectName, propertyName, value) {
            const object = objects.get(objectName);
            const index = object.propertyIndex.get(propertyName);
            values.get(objectName).set(propertyName, value);
            const notify = object.info.properties[index][2];
            const update = {
                object: objectName,
                signals: notify.length > 0 ? { [notify[1]]: [] } : {},
                properties: { [index]: value },
            };
            for (const client of clients) {
                client.pendingUpdates.push(update);
                flush(client);
            }
        },

        /** Raises a signal of a published object, as the host does, on every page connected to it. */
        emitSignal(objectName, signalName, args = []) {
            const index = objects.get(objectName)?.signalIndex.get(signalName);
            if (index === undefined) {
                throw new Error(`${objectName} has no signal ${signalName}`);
            }
            for (const client of clients) {
                if (client.subscriptions.has(`${objectName}:${index}`)) {
                    send(client, { type: MessageType.signal, object: objectName, signal: index, args });
                }
            }
        },

        /** Drops every page, as a quitting studio does. */
        disconnectAll() {
            for (const client of clients) {
                client.socket.terminate();
            }
        },

        async close() {
            for (const client of clients) {
                client.socket.terminate();
            }
            await new Promise((resolve) => server.close(resolve));
        },
    };
}
