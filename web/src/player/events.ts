// Binds the listener tables of documents, scenes and elements to the browser's events, and runs
// the listeners of the events that the player raises itself (Create, Ready, scene activation,
// timeline events, preloader progress).
//
// Pointer, mouse and touch input meet here: down, move and up come from pointer events where the
// browser has them, so a finger works like a mouse; swipes read touches directly, since a touch
// that starts a pan loses its pointer events to the browser.

import { runActions } from './actions';
import type { ActionHost, ActionScope } from './contracts';
import {
    clearDocumentEvents,
    EventNo,
    eventTable,
    isDocumentTable,
    type Listeners,
    PlayerEvent,
    setDocumentEvents,
} from './listeners';

export { reportScriptError, runActions } from './actions';
export { EventNo, PlayerEvent, setDocumentEvents } from './listeners';

/** Shortest horizontal travel of a swipe, in CSS pixels. */
export const SWIPE_MIN_DISTANCE = 30;
/** Longest duration of a swipe, in ms: a slower drag is not a swipe. */
export const SWIPE_MAX_DURATION = 1000;
/** Largest vertical travel of a swipe as a share of its horizontal travel (about 27 degrees). */
export const SWIPE_MAX_SLOPE = 0.5;

/** -1 for a swipe to the left, 1 to the right, 0 when the move is no swipe. */
export function swipeDirection(dx: number, dy: number, duration: number): -1 | 0 | 1 {
    const distance = Math.abs(dx);
    if (!(distance >= SWIPE_MIN_DISTANCE) || !(Math.abs(dy) <= distance * SWIPE_MAX_SLOPE)) {
        return 0;
    }
    if (!(duration >= 0 && duration <= SWIPE_MAX_DURATION)) {
        return 0;
    }
    return dx < 0 ? -1 : 1;
}

/** Events bound on the node itself, under the browser's name. */
const NODE_EVENTS: { readonly [eventNo: number]: string } = {
    [EventNo.MouseClick]: 'click',
    [EventNo.MouseDoubleClick]: 'dblclick',
    [EventNo.MouseOver]: 'mouseover',
    [EventNo.MouseOut]: 'mouseout',
    [EventNo.MouseEnter]: 'mouseenter',
    [EventNo.MouseLeave]: 'mouseleave',
    // Focus of the element or of anything inside it (an input of an HTML widget, a child with a tab index).
    [EventNo.Focus]: 'focusin',
};

const POINTER_EVENTS: { readonly [eventNo: number]: readonly [string, string] } = {
    [EventNo.MouseDown]: ['pointerdown', 'mousedown'],
    [EventNo.MouseMove]: ['pointermove', 'mousemove'],
    [EventNo.MouseUp]: ['pointerup', 'mouseup'],
};

const WINDOW_EVENTS: { readonly [eventNo: number]: string } = {
    [EventNo.KeyDown]: 'keydown',
    [EventNo.KeyUp]: 'keyup',
    [EventNo.WindowResize]: 'resize',
};

type Remover = () => void;

function noop(): void {
    // Nothing was bound.
}

/**
 * Binds the browser events of a listener table ("e") to `node`, the element, scene or document
 * container that owns it, and returns the function that unbinds them all. Key, resize, scroll and
 * orientation listeners go to the node's window; they stay quiet while the node is not shown.
 * Events that the player raises itself are left to `fireEvent`.
 */
export function bindEvents(host: ActionHost, scope: ActionScope, node: EventTarget, groups: unknown): () => void {
    const table = eventTable(groups);
    if (table.size === 0) {
        return noop;
    }
    const documentTable = isDocumentTable(table);
    if (documentTable) {
        setDocumentEvents(host, scope, groups);
    }
    const win = windowOf(node);
    const removers: Remover[] = [];
    const listen = (target: EventTarget, type: string, handler: (event: Event) => void, passive = false): void => {
        const options: AddEventListenerOptions | boolean = passive ? { passive: true } : false;
        target.addEventListener(type, handler, options);
        removers.push(() => target.removeEventListener(type, handler, options));
    };
    const shown = (): boolean => isShown(node);

    table.forEach((listeners) => {
        const run = (source: unknown): void => {
            const event = listeners.runsFunction ? new PlayerEvent(listeners.eventNo, scope, node, source) : source;
            runActions(host, scope, listeners.actions, event);
        };
        const runIfShown = (event: Event): void => {
            if (shown()) {
                run(event);
            }
        };
        const eventNo = listeners.eventNo;
        const nodeType = NODE_EVENTS[eventNo];
        const pointerTypes = POINTER_EVENTS[eventNo];
        const windowType = WINDOW_EVENTS[eventNo];
        if (nodeType) {
            listen(node, nodeType, run);
        } else if (pointerTypes) {
            listen(node, hasPointerEvents(win) ? pointerTypes[0] : pointerTypes[1], run);
        } else if (windowType) {
            if (win) {
                listen(win, windowType, runIfShown);
            }
        } else if (eventNo === EventNo.Scroll) {
            // The page scrolling, or the node itself when it scrolls its own content.
            if (win && win !== node) {
                listen(win, 'scroll', runIfShown, true);
            }
            listen(node, 'scroll', run, true);
        } else if (eventNo === EventNo.OrientationChange) {
            if (win) {
                removers.push(bindOrientation(win, runIfShown));
            }
        }
    });

    const left = table.get(EventNo.SwipeLeft);
    const right = table.get(EventNo.SwipeRight);
    if (left || right) {
        bindSwipes(node, win, listen, (direction, event, detail) => {
            const listeners = direction < 0 ? left : right;
            if (listeners) {
                runSwipe(host, scope, node, listeners, event, detail);
            }
        });
    }

    let bound = true;
    return () => {
        if (!bound) {
            return;
        }
        bound = false;
        for (const remove of removers) {
            remove();
        }
        if (documentTable) {
            clearDocumentEvents(host, groups);
        }
    };
}

function runSwipe(
    host: ActionHost,
    scope: ActionScope,
    node: EventTarget,
    listeners: Listeners,
    event: Event,
    detail: SwipeDetail,
): void {
    if (!listeners.runsFunction) {
        runActions(host, scope, listeners.actions, event);
        return;
    }
    const playerEvent = new PlayerEvent(listeners.eventNo, scope, node, event);
    playerEvent.dx = detail.dx;
    playerEvent.dy = detail.dy;
    playerEvent.duration = detail.duration;
    runActions(host, scope, listeners.actions, playerEvent);
}

/**
 * Runs the listeners of one event that the player raises itself: document Create (20), Ready (21),
 * Destroy (22), Script Error (23), scene Activate (50) and Deactivate (51), timeline events (150 to
 * 156), preloader events (1 to 5). `detail` is a browser event or a plain object whose fields the
 * event object of user functions takes over. Answers whether any listener ran. Costs no
 * allocation when the table has no listener for the event.
 */
export function fireEvent(
    host: ActionHost,
    scope: ActionScope,
    groups: unknown,
    eventNo: number,
    detail?: unknown,
): boolean {
    const table = eventTable(groups);
    const listeners = table.get(eventNo);
    if (!listeners) {
        return false;
    }
    if (eventNo >= EventNo.Create && eventNo <= EventNo.ScriptError) {
        setDocumentEvents(host, scope, groups);
    }
    const event = listeners.runsFunction ? new PlayerEvent(eventNo, scope, null, detail) : detail;
    runActions(host, scope, listeners.actions, event);
    return true;
}

interface SwipeDetail {
    readonly dx: number;
    readonly dy: number;
    readonly duration: number;
}

type Listen = (target: EventTarget, type: string, handler: (event: Event) => void, passive?: boolean) => void;

// One gesture at a time: a second finger or a cancel abandons it. The end of a pointer gesture is
// watched on the window, since a quick swipe often ends outside a small element.
function bindSwipes(
    node: EventTarget,
    win: Window | null,
    listen: Listen,
    onSwipe: (direction: -1 | 1, event: Event, detail: SwipeDetail) => void,
): void {
    let tracking = false;
    let startX = 0;
    let startY = 0;
    let startTime = 0;
    let pointerId = 0;
    const begin = (x: number, y: number, time: number): void => {
        tracking = true;
        startX = x;
        startY = y;
        startTime = time;
    };
    const finish = (x: number, y: number, time: number, event: Event): void => {
        if (!tracking) {
            return;
        }
        tracking = false;
        const detail = { dx: x - startX, dy: y - startY, duration: time - startTime };
        const direction = swipeDirection(detail.dx, detail.dy, detail.duration);
        if (direction !== 0) {
            onSwipe(direction, event, detail);
        }
    };
    const cancel = (): void => {
        tracking = false;
    };

    const touches = hasTouchEvents(win);
    if (touches) {
        listen(
            node,
            'touchstart',
            (event) => {
                const list = (event as TouchEvent).touches;
                const touch = list.length === 1 ? list[0] : undefined;
                if (touch) {
                    begin(touch.clientX, touch.clientY, event.timeStamp);
                } else {
                    cancel();
                }
            },
            true,
        );
        listen(
            node,
            'touchend',
            (event) => {
                const touch = (event as TouchEvent).changedTouches[0];
                if (touch && (event as TouchEvent).touches.length === 0) {
                    finish(touch.clientX, touch.clientY, event.timeStamp, event);
                }
            },
            true,
        );
        listen(node, 'touchcancel', cancel, true);
    }

    // Fingers are the touch listeners' when the browser has both.
    const fromFinger = (event: Event): boolean => touches && (event as PointerEvent).pointerType === 'touch';
    if (hasPointerEvents(win)) {
        listen(node, 'pointerdown', (event) => {
            const pointer = event as PointerEvent;
            if (pointer.isPrimary && pointer.button === 0 && !fromFinger(event)) {
                pointerId = pointer.pointerId;
                begin(pointer.clientX, pointer.clientY, event.timeStamp);
            }
        });
        const ends = win || node;
        listen(ends, 'pointerup', (event) => {
            const pointer = event as PointerEvent;
            if (pointer.pointerId === pointerId && !fromFinger(event)) {
                finish(pointer.clientX, pointer.clientY, event.timeStamp, event);
            }
        });
        listen(ends, 'pointercancel', (event) => {
            if ((event as PointerEvent).pointerId === pointerId) {
                cancel();
            }
        });
    } else {
        listen(node, 'mousedown', (event) => {
            const mouse = event as MouseEvent;
            if (mouse.button === 0) {
                begin(mouse.clientX, mouse.clientY, event.timeStamp);
            }
        });
        listen(win || node, 'mouseup', (event) => {
            const mouse = event as MouseEvent;
            finish(mouse.clientX, mouse.clientY, event.timeStamp, event);
        });
    }
}

// Phones and tablets announce a turn with orientationchange; elsewhere (desktop browsers, a
// resized window) the orientation media query is what changes.
function bindOrientation(win: Window, handler: (event: Event) => void): Remover {
    if ((win as { onorientationchange?: unknown }).onorientationchange !== undefined) {
        win.addEventListener('orientationchange', handler);
        return () => win.removeEventListener('orientationchange', handler);
    }
    if (typeof win.matchMedia !== 'function') {
        return noop;
    }
    const query = win.matchMedia('(orientation: portrait)');
    if (typeof query.addEventListener === 'function') {
        query.addEventListener('change', handler);
        return () => query.removeEventListener('change', handler);
    }
    // Safari before 14 knows only the older listener calls.
    query.addListener(handler);
    return () => query.removeListener(handler);
}

function windowOf(node: EventTarget): Window | null {
    const candidate = node as {
        window?: unknown;
        nodeType?: unknown;
        ownerDocument?: Document | null;
        defaultView?: Window | null;
    };
    if (candidate.window === node) {
        return node as Window;
    }
    if (candidate.nodeType === 9) {
        return candidate.defaultView || null;
    }
    if (candidate.ownerDocument) {
        return candidate.ownerDocument.defaultView;
    }
    return typeof window !== 'undefined' ? window : null;
}

function hasPointerEvents(win: Window | null): boolean {
    return win !== null && typeof (win as { PointerEvent?: unknown }).PointerEvent === 'function';
}

function hasTouchEvents(win: Window | null): boolean {
    return win !== null && 'ontouchstart' in win;
}

/** A scene that is not on show hears no keys, no resizing and no scrolling of the page. */
function isShown(node: EventTarget): boolean {
    if (typeof Element === 'undefined' || !(node instanceof Element)) {
        return true;
    }
    return node.isConnected && node.getClientRects().length > 0;
}
