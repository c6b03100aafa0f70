// The actions that listeners and timeline triggers run. Each action is the player array of one
// listener: [actionNo, params...], positional as the studio writes them. The data is untrusted:
// an unknown action, a target that is not there or a parameter of the wrong type skips that one
// action and the rest of the list still runs; nothing here throws at the caller.

import type { ActionHost, ActionScope, DocumentApi, MediaApi, TimelineApi } from './contracts';
import { documentEvents, EventNo, PlayerEvent, RUN_FUNCTION } from './listeners';

/** Action numbers of the player arrays. */
export const enum ActionNo {
    StartTimeline = 1,
    PlayTimeline = 2,
    PlayTimelineFrom = 3,
    PauseTimeline = 4,
    PauseTimelineAt = 5,
    TogglePlayPauseTimeline = 6,
    SeekTimeline = 7,
    StartSymbol = 20,
    PlaySymbol = 21,
    PlaySymbolFrom = 22,
    PauseSymbol = 23,
    PauseSymbolAt = 24,
    TogglePlayPauseSymbol = 25,
    SeekSymbol = 26,
    StartMedia = 40,
    PlayMedia = 41,
    PlayMediaFrom = 42,
    PauseMedia = 43,
    PauseMediaAt = 44,
    MuteMedia = 45,
    MediaVolume = 46,
    ToggleMuteMedia = 47,
    MuteAllMedia = 48,
    TogglePlayPauseMedia = 49,
    SeekMedia = 50,
    PlayVideoFullScreen = 51,
    HideElement = 70,
    ShowElement = 71,
    ToggleHideShowElement = 72,
    JumpToScene = 100,
    GoToUrl = 101,
    ChangeText = 102,
    RunJavaScript = 103,
}

/** Runs the actions in order. `event` is what triggered them: a browser event, a `PlayerEvent`, or nothing. */
export function runActions(
    host: ActionHost,
    scope: ActionScope,
    actions: readonly unknown[][],
    event?: unknown,
): void {
    if (!Array.isArray(actions)) {
        return;
    }
    // Made on the first function call only, and shared by the functions of this run.
    let userEvent: PlayerEvent | null = event instanceof PlayerEvent ? event : null;
    for (const action of actions as readonly unknown[]) {
        if (!Array.isArray(action)) {
            continue;
        }
        try {
            if (action[0] === RUN_FUNCTION) {
                if (!userEvent) {
                    // Without an event of its own a run on a timeline is one of its triggers.
                    const eventType = scope.timeline && (event === undefined || event === null) ? EventNo.Trigger : 0;
                    userEvent = new PlayerEvent(eventType, scope, null, event);
                }
                runFunction(host, scope, action[1], userEvent);
            } else {
                runAction(host, scope, action);
            }
        } catch (error) {
            // A fault of the page (a host method throwing) must not stop the listeners that follow.
            console.error('vtplayer: action', action[0], 'failed:', error);
        }
    }
}

function runAction(host: ActionHost, scope: ActionScope, a: readonly unknown[]): void {
    const no = a[0];
    if (typeof no !== 'number') {
        return;
    }
    if (no >= ActionNo.StartTimeline && no <= ActionNo.SeekTimeline) {
        const id = intParam(a[1]);
        const timeline = id === null ? null : host.timeline(id);
        if (timeline) {
            driveTimeline(timeline, no - ActionNo.StartTimeline, a);
        }
    } else if (no >= ActionNo.StartSymbol && no <= ActionNo.SeekSymbol) {
        const id = intParam(a[1]);
        const symbol: DocumentApi | null = id === null ? null : host.symbol(id, scope);
        const timeline = symbol ? symbol.timeline(-1) : null;
        if (timeline) {
            driveTimeline(timeline, no - ActionNo.StartSymbol, a);
        }
    } else if (no >= ActionNo.StartMedia && no <= ActionNo.PlayVideoFullScreen) {
        if (no === ActionNo.MuteAllMedia) {
            host.muteAll();
            return;
        }
        const id = intParam(a[1]);
        const media = id === null ? null : host.media(id);
        if (media) {
            driveMedia(media, no, a);
        }
    } else if (no >= ActionNo.HideElement && no <= ActionNo.ToggleHideShowElement) {
        const id = intParam(a[1]);
        if (id !== null) {
            const change = no === ActionNo.HideElement ? 'hide' : no === ActionNo.ShowElement ? 'show' : 'toggle';
            host.setElementVisible(id, change);
        }
    } else if (no === ActionNo.JumpToScene) {
        jumpToScene(host, a);
    } else if (no === ActionNo.GoToUrl) {
        const url = safeUrl(a[1], documentBase());
        if (url !== null) {
            openUrl(url, typeof a[2] === 'boolean' ? a[2] : true);
        }
    } else if (no === ActionNo.ChangeText) {
        const id = intParam(a[1]);
        if (id !== null && typeof a[2] === 'string') {
            host.setElementText(id, textToHtml(a[2]));
        }
    }
}

// Timeline and symbol actions share one parameter layout, by their offset in their family:
// 0 start [target, |speed|, reverse], 1 play [target, |speed|, reverse],
// 2 play from [target, time, |speed|, reverse], 3 pause [target], 4 pause at [target, time],
// 5 toggle [target], 6 seek [target, time].
function driveTimeline(timeline: TimelineApi, kind: number, a: readonly unknown[]): void {
    switch (kind) {
        case 0:
            timeline.start(speedFromPair(a[2], a[3]));
            break;
        case 1:
            timeline.play(speedFromPair(a[2], a[3]));
            break;
        case 2: {
            const from = timeItem(timeline, a[2]);
            if (from !== null) {
                timeline.play(speedFromPair(a[3], a[4]), from);
            }
            break;
        }
        case 3:
            timeline.pause();
            break;
        case 4: {
            const at = timeItem(timeline, a[2]);
            if (at !== null) {
                timeline.pause(at);
            }
            break;
        }
        case 5:
            timeline.toggle();
            break;
        case 6: {
            const to = timeItem(timeline, a[2]);
            if (to !== null) {
                timeline.seek(to);
            }
            break;
        }
    }
}

function driveMedia(media: MediaApi, no: number, a: readonly unknown[]): void {
    switch (no) {
        case ActionNo.StartMedia:
            media.start(signedRate(a[2]));
            break;
        case ActionNo.PlayMedia:
            media.play(signedRate(a[2]));
            break;
        case ActionNo.PlayMediaFrom: {
            const from = msParam(a[2]);
            if (from !== null) {
                media.play(signedRate(a[3]), from);
            }
            break;
        }
        case ActionNo.PauseMedia:
            media.pause();
            break;
        case ActionNo.PauseMediaAt: {
            const at = msParam(a[2]);
            if (at !== null) {
                media.pause(at);
            }
            break;
        }
        case ActionNo.MuteMedia:
            media.mute(true);
            break;
        case ActionNo.MediaVolume:
            if (typeof a[2] === 'number' && isFinite(a[2])) {
                media.setVolume(Math.min(100, Math.max(0, a[2])));
            }
            break;
        case ActionNo.ToggleMuteMedia:
            media.toggleMute();
            break;
        case ActionNo.TogglePlayPauseMedia:
            media.toggle();
            break;
        case ActionNo.SeekMedia: {
            const to = msParam(a[2]);
            if (to !== null) {
                media.seek(to);
            }
            break;
        }
        case ActionNo.PlayVideoFullScreen:
            media.fullScreen();
            break;
    }
}

const NEXT_SCENE = -2;
const FIRST_SCENE = -5;
const TRANSITION_KINDS = 6;

// [sceneId] keeps the scene's own transition; [sceneId, type, duration, easing(, direction)]
// replaces it.
function jumpToScene(host: ActionHost, a: readonly unknown[]): void {
    const target = intParam(a[1]);
    if (target === null || (target < 0 && (target > NEXT_SCENE || target < FIRST_SCENE))) {
        return;
    }
    let transition: number[] | undefined;
    const type = intParam(a[2]);
    const duration = a[3];
    const knownType = type !== null && type >= 0 && type < TRANSITION_KINDS;
    if (knownType && typeof duration === 'number' && duration >= 0 && isFinite(duration)) {
        const easing = intParam(a[4]);
        transition = [type, duration, easing === null ? -1 : easing];
        const direction = intParam(a[5]);
        if (direction !== null) {
            transition.push(direction);
        }
    }
    host.goToScene(target, target >= 0, transition);
}

function runFunction(host: ActionHost, scope: ActionScope, idParam: unknown, event: PlayerEvent): void {
    const id = intParam(idParam);
    const fn = id === null ? null : host.userFunction(id);
    if (typeof fn !== 'function') {
        return;
    }
    let result: unknown;
    try {
        result = fn.call(thisFor(host, scope, event), host.api, event);
    } catch (error) {
        functionFailed(host, error, id, fn.name, event);
        return;
    }
    // An async function fails later, through its promise.
    try {
        const then = result !== null && typeof result === 'object' ? (result as { then?: unknown }).then : undefined;
        if (typeof then === 'function') {
            then.call(result, undefined, (error: unknown) => functionFailed(host, error, id, fn.name, event));
        }
    } catch (error) {
        functionFailed(host, error, id, fn.name, event);
    }
}

// `this` follows the kind of handler: a timeline's handler gets the timeline, an element's or a
// scene's the node that owns the listener, the document's the document.
function thisFor(host: ActionHost, scope: ActionScope, event: PlayerEvent): unknown {
    if (scope.timeline) {
        return scope.timeline;
    }
    const node = event.currentTarget;
    if (scope.elementId !== null) {
        return node || host.elementNode(scope.elementId) || host.api;
    }
    if (node && typeof Element !== 'undefined' && node instanceof Element && node.id !== host.containerId) {
        return node;
    }
    return host.api;
}

function functionFailed(host: ActionHost, error: unknown, id: number | null, name: string, event: PlayerEvent): void {
    // What a Script Error listener runs must not feed itself.
    if (event.eventType === EventNo.ScriptError) {
        console.error('vtplayer: the Script Error handler failed:', error);
        return;
    }
    reportScriptError(host, error, { functionId: id, functionName: name || '' });
}

/**
 * Raises Script Error (23) of the document with the error as the event's `error` and `message`.
 * Without a listener for it the error goes to the console, so that it is not lost.
 */
export function reportScriptError(host: ActionHost, error: unknown, info?: { readonly [key: string]: unknown }): void {
    const owner = documentEvents(host);
    const listeners = owner ? owner.table.get(EventNo.ScriptError) : undefined;
    if (!owner || !listeners) {
        console.error('vtplayer: script error:', error);
        return;
    }
    const detail: { [key: string]: unknown } = {
        error,
        message: describeError(error),
    };
    if (info) {
        for (const key of Object.keys(info)) {
            detail[key] = info[key];
        }
    }
    // The document's own host runs them: a symbol's host may share the document's table.
    const scope = owner.scope;
    runActions(scope.host, scope, listeners.actions, new PlayerEvent(EventNo.ScriptError, scope, null, detail));
}

// Whatever was thrown: a thrown object may even fail to turn into text.
function describeError(error: unknown): string {
    try {
        return error instanceof Error ? error.message : String(error);
    } catch {
        return 'unknown error';
    }
}

function intParam(value: unknown): number | null {
    return typeof value === 'number' && Number.isInteger(value) ? value : null;
}

/** A media position in ms; negatives as 0. */
function msParam(value: unknown): number | null {
    return typeof value === 'number' && isFinite(value) ? Math.max(0, value) : null;
}

/** A speed pair [|speed|, reverse flag] as a signed speed; a missing or unusable speed is normal speed. */
export function speedFromPair(magnitude: unknown, reverse: unknown): number {
    const speed = typeof magnitude === 'number' && magnitude > 0 && isFinite(magnitude) ? magnitude : 1;
    return reverse === 1 || reverse === true ? -speed : speed;
}

function signedRate(value: unknown): number {
    return typeof value === 'number' && value !== 0 && isFinite(value) ? value : 1;
}

/** A time item: milliseconds, or a label of the timeline; null when it names nothing. */
function timeItem(timeline: TimelineApi, item: unknown): number | null {
    if (typeof item === 'number') {
        return isFinite(item) ? Math.max(0, item) : null;
    }
    if (typeof item === 'string') {
        const time = timeline.labelTime(item);
        return typeof time === 'number' && isFinite(time) ? time : null;
    }
    return null;
}

const ALLOWED_SCHEMES = ['http', 'https', 'mailto'];

/**
 * The address that Go To URL may open: http, https and mailto addresses, and relative ones
 * resolved against `base`. Anything else (javascript:, data:, file: and other schemes) and
 * addresses that do not parse give null.
 */
export function safeUrl(raw: unknown, base: string | null): string | null {
    if (typeof raw !== 'string') {
        return null;
    }
    // Browsers drop tabs and line breaks anywhere and controls and blanks at the ends before they
    // look for the scheme, so "java\tscript:" must be judged as "javascript:".
    // eslint-disable-next-line no-control-regex
    const text = raw.replace(/[\t\n\r]/g, '').replace(/^[\u0000-\u0020]+|[\u0000-\u0020]+$/g, '');
    if (text === '') {
        return null;
    }
    const scheme = /^([a-zA-Z][a-zA-Z0-9+.-]*):/.exec(text);
    if (scheme && ALLOWED_SCHEMES.indexOf((scheme[1] || '').toLowerCase()) < 0) {
        return null;
    }
    let url: URL;
    try {
        url = scheme || base === null ? new URL(text) : new URL(text, base);
    } catch {
        return null;
    }
    if (scheme) {
        const protocol = url.protocol.slice(0, -1);
        if (ALLOWED_SCHEMES.indexOf(protocol) < 0 || (protocol !== 'mailto' && url.hostname === '')) {
            return null;
        }
    }
    return url.href;
}

function documentBase(): string | null {
    return typeof document !== 'undefined' ? document.baseURI : null;
}

function openUrl(url: string, newWindow: boolean): void {
    if (typeof window === 'undefined') {
        return;
    }
    // A mail link hands over to the mail program; a blank window left behind would be noise.
    if (newWindow && !/^mailto:/i.test(url)) {
        window.open(url, '_blank', 'noopener');
    } else {
        window.location.assign(url);
    }
}

const HTML_ESCAPES: { readonly [ch: string]: string } = {
    '&': '&amp;',
    '<': '&lt;',
    '>': '&gt;',
    '"': '&quot;',
    "'": '&#39;',
};

/** Plain text as the HTML of a text element: markup characters escaped, line breaks kept. */
export function textToHtml(text: string): string {
    return text.replace(/[&<>"']/g, (ch) => HTML_ESCAPES[ch] || ch).replace(/\r\n|\r|\n/g, '<br>');
}
