// Listener tables of the data script ("e" of documents, scenes, elements and timelines, "pe" of a
// preloader) and the event object that user functions receive.
//
// A table arrives as [[eventNo, action, action...], ...] where each action is [actionNo,
// params...]. It is read once per array and cached, because timeline events such as Update are
// raised every frame and must not re-read (or allocate) anything on the way to "no listener".

import type { ActionHost, ActionScope, TimelineApi } from './contracts';

/** Event numbers of listener tables. */
export const enum EventNo {
    Start = 1,
    Progress = 2,
    Complete = 3,
    ItemStart = 4,
    ItemComplete = 5,
    Create = 20,
    Ready = 21,
    Destroy = 22,
    ScriptError = 23,
    SceneActivate = 50,
    SceneDeactivate = 51,
    Scroll = 52,
    KeyDown = 53,
    KeyUp = 54,
    OrientationChange = 55,
    WindowResize = 56,
    MouseClick = 100,
    MouseDoubleClick = 101,
    MouseOver = 102,
    MouseDown = 103,
    MouseMove = 104,
    MouseUp = 105,
    MouseOut = 106,
    MouseEnter = 107,
    MouseLeave = 108,
    Focus = 109,
    SwipeLeft = 110,
    SwipeRight = 111,
    TimelineUpdate = 150,
    TimelinePlay = 151,
    TimelinePause = 152,
    TimelineComplete = 153,
    TimelineSpeedChange = 154,
    TimelineReverse = 155,
    TimelineSeek = 156,
    Trigger = 200,
    Playback = 201,
}

/** The action number that calls a user function; only listeners holding it need an event object. */
export const RUN_FUNCTION = 103;

/** The actions of one event of one table, in list order. */
export interface Listeners {
    readonly eventNo: number;
    readonly actions: readonly unknown[][];
    /** Whether an action calls a user function, which is the only consumer of the event object. */
    readonly runsFunction: boolean;
}

export type EventTable = ReadonlyMap<number, Listeners>;

const EMPTY_TABLE: EventTable = new Map<number, Listeners>();
const tables = new WeakMap<object, EventTable>();

/**
 * The table of a listener array. Anything that is not [integer event, arrays...] is skipped; an
 * event listed twice keeps both runs of actions, first one first.
 */
export function eventTable(groups: unknown): EventTable {
    if (!Array.isArray(groups) || groups.length === 0) {
        return EMPTY_TABLE;
    }
    const cached = tables.get(groups);
    if (cached) {
        return cached;
    }
    const collected = new Map<number, unknown[][]>();
    for (const group of groups) {
        if (!Array.isArray(group) || !isEventNumber(group[0])) {
            continue;
        }
        const eventNo = group[0];
        let actions = collected.get(eventNo);
        for (let i = 1; i < group.length; ++i) {
            const action: unknown = group[i];
            if (!Array.isArray(action) || typeof action[0] !== 'number') {
                continue;
            }
            if (!actions) {
                actions = [];
                collected.set(eventNo, actions);
            }
            actions.push(action);
        }
    }
    const table = new Map<number, Listeners>();
    collected.forEach((actions, eventNo) => {
        let runsFunction = false;
        for (const action of actions) {
            runsFunction = runsFunction || action[0] === RUN_FUNCTION;
        }
        table.set(eventNo, { eventNo, actions, runsFunction });
    });
    tables.set(groups, table);
    return table;
}

function isEventNumber(value: unknown): value is number {
    return typeof value === 'number' && Number.isInteger(value) && value >= 1 && value <= 255;
}

// The document's own table, found again when a user function fails anywhere in the document so
// that its Script Error listeners hear of it.
interface DocumentListeners {
    readonly scope: ActionScope;
    readonly table: EventTable;
}

const documents = new WeakMap<ActionHost, DocumentListeners>();

/**
 * Makes `groups` the document table of `host`: the one whose Script Error listeners run when a
 * function fails. A symbol instance's host can be given the document's scope and table, so that
 * the failures of functions run inside the symbol reach the document too.
 */
export function setDocumentEvents(host: ActionHost, scope: ActionScope, groups: unknown): void {
    const table = eventTable(groups);
    documents.set(host, { scope, table });
}

/** Forgets the document table of `host` if it is still `groups`. */
export function clearDocumentEvents(host: ActionHost, groups: unknown): void {
    const known = documents.get(host);
    if (known && known.table === eventTable(groups)) {
        documents.delete(host);
    }
}

export function documentEvents(host: ActionHost): DocumentListeners | undefined {
    return documents.get(host);
}

/**
 * Only the document's own list can hold Create, Ready, Destroy and Script Error, so a table with
 * one of them is the document's whoever binds it.
 */
export function isDocumentTable(table: EventTable): boolean {
    return (
        table.has(EventNo.Create) ||
        table.has(EventNo.Ready) ||
        table.has(EventNo.Destroy) ||
        table.has(EventNo.ScriptError)
    );
}

const EVENT_TYPES: { readonly [eventNo: number]: string } = {
    1: 'start',
    2: 'progress',
    3: 'complete',
    4: 'itemstart',
    5: 'itemcomplete',
    20: 'create',
    21: 'ready',
    22: 'destroy',
    23: 'scripterror',
    50: 'sceneactivate',
    51: 'scenedeactivate',
    52: 'scroll',
    53: 'keydown',
    54: 'keyup',
    55: 'orientationchange',
    56: 'resize',
    100: 'click',
    101: 'dblclick',
    102: 'mouseover',
    103: 'mousedown',
    104: 'mousemove',
    105: 'mouseup',
    106: 'mouseout',
    107: 'mouseenter',
    108: 'mouseleave',
    109: 'focus',
    110: 'swipeleft',
    111: 'swiperight',
    150: 'update',
    151: 'play',
    152: 'pause',
    153: 'complete',
    154: 'speedchange',
    155: 'reverse',
    156: 'seek',
    200: 'trigger',
    201: 'playback',
};

// Fields of the browser's event that handlers commonly read, copied so that `e.clientX` or
// `e.key` work on the player's object as on the browser's. Touch events give the first changed
// touch's coordinates.
const COPIED_FIELDS = [
    'clientX',
    'clientY',
    'pageX',
    'pageY',
    'screenX',
    'screenY',
    'offsetX',
    'offsetY',
    'button',
    'buttons',
    'pointerType',
    'key',
    'code',
    'keyCode',
    'which',
    'repeat',
    'altKey',
    'ctrlKey',
    'shiftKey',
    'metaKey',
] as const;

const TOUCH_FIELDS = ['clientX', 'clientY', 'pageX', 'pageY', 'screenX', 'screenY'] as const;

/**
 * What a user function gets as `e`: the player's event name and number, the id of the element
 * that owns the listener, the browser's event (when there is one) with its common fields copied,
 * and whatever the player reports with the event (script errors, loading progress).
 */
export class PlayerEvent {
    [field: string]: unknown;

    /** The player's name of the event ("click", "swipeleft", "scripterror"...); "action" when a run has no event. */
    readonly type: string;
    /** The listener event number (100 Mouse Click...), 0 when unknown. */
    readonly eventType: number;
    /** The element whose listener runs; null for scenes, timelines and the document. */
    readonly targetId: number | null;
    /** Where the browser's event happened, else the node that owns the listener. */
    readonly target: EventTarget | null;
    /** The node that owns the listener, when it has one. */
    readonly currentTarget: EventTarget | null;
    readonly timeline: TimelineApi | null;
    readonly originalEvent: Event | null;
    readonly detail: unknown;
    readonly timeStamp: number;

    constructor(eventType: number, scope: ActionScope | null, node: EventTarget | null, source: unknown) {
        const original = isDomEvent(source) ? source : null;
        this.type = EVENT_TYPES[eventType] || (original ? original.type : 'action');
        this.eventType = eventType;
        this.targetId = scope ? scope.elementId : null;
        this.timeline = scope ? scope.timeline : null;
        this.currentTarget = node;
        this.originalEvent = original;
        this.detail = original ? null : source === undefined ? null : source;
        this.target = original && original.target ? original.target : node;
        this.timeStamp = original ? original.timeStamp : now();
        if (original) {
            copyFields(this, original, COPIED_FIELDS);
            const touches = (original as Partial<TouchEvent>).changedTouches;
            const touch = touches && touches.length > 0 ? touches[0] : undefined;
            if (touch) {
                copyFields(this, touch, TOUCH_FIELDS);
            }
        } else if (isPlainObject(source)) {
            for (const key of Object.keys(source)) {
                if (!(key in this)) {
                    this[key] = source[key];
                }
            }
        }
    }

    preventDefault(): void {
        if (this.originalEvent) {
            this.originalEvent.preventDefault();
        }
    }

    stopPropagation(): void {
        if (this.originalEvent) {
            this.originalEvent.stopPropagation();
        }
    }
}

function copyFields(into: PlayerEvent, from: object, fields: readonly string[]): void {
    const record = from as { readonly [key: string]: unknown };
    for (const field of fields) {
        const value = record[field];
        if (value !== undefined && typeof value !== 'function') {
            into[field] = value;
        }
    }
}

function isDomEvent(value: unknown): value is Event {
    return typeof Event !== 'undefined' && value instanceof Event;
}

function isPlainObject(value: unknown): value is { readonly [key: string]: unknown } {
    if (value === null || typeof value !== 'object' || Array.isArray(value)) {
        return false;
    }
    const proto: unknown = Object.getPrototypeOf(value);
    return proto === Object.prototype || proto === null;
}

function now(): number {
    return typeof performance !== 'undefined' ? performance.now() : Date.now();
}
