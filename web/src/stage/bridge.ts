// The studio's canvas object ("vtcanvas_<id>") as the stage sees it: the signals it raises, each
// handed to one function of the page, and the slots the page calls. The object lives only here and
// in the page that owns this bridge; nothing of it is put on `window`.

import { ChannelError, remoteObject } from '../common/channel';

/** Signals of the canvas object with the page's handler for each. Arguments arrive as the studio sends them. */
export interface CanvasSignalHandlers {
    play(ts: unknown): void;
    pause(ts: unknown): void;
    setCurrentTime(time: unknown, seeking: unknown): void;
    autoKeyframeModeChanged(on: unknown): void;
    dataChangedToJS(json: unknown): void;
    insertRectangle(): void;
    insertRoundedRect(): void;
    insertEllipse(): void;
    insertShape(type: unknown): void;
    startEditText(id: unknown): void;
    stopEditText(immediately?: unknown): void;
    editPoint(id: unknown, on: unknown): void;
    openPath(id: unknown, open: unknown): void;
    straightSegment(id: unknown): void;
    requestEditHtml(): void;
    zoomFactorChanged(factor: unknown): void;
    fitToViewportChanged(fit: unknown): void;
    snapEnabledChanged(on: unknown): void;
    rulerVisibilityChanged(show: unknown): void;
    containerHandlerVisibilityChanged(show: unknown): void;
    transformToolChanged(tools: unknown): void;
    currentSceneChanged(hasScene: unknown, data: unknown): void;
    editTextOnSingleClicked(single: unknown): void;
    execTextEditorCommand(name: unknown, value: unknown): void;
    requestSendCurrentTextFormat(): void;
    updateMediaInfo(id: unknown): void;
    finishAllTask(): void;
    needRepaint(): void;
    needUpdateScenePos(): void;
    cancelBuildingItem(): void;
    textEditShortcutsChanged(shortcuts: unknown): void;
    changeStageView(mode: unknown): void;
}

export type CanvasSignal = keyof CanvasSignalHandlers;

export const CANVAS_SIGNALS: readonly CanvasSignal[] = [
    'play',
    'pause',
    'setCurrentTime',
    'autoKeyframeModeChanged',
    'dataChangedToJS',
    'insertRectangle',
    'insertRoundedRect',
    'insertEllipse',
    'insertShape',
    'startEditText',
    'stopEditText',
    'editPoint',
    'openPath',
    'straightSegment',
    'requestEditHtml',
    'zoomFactorChanged',
    'fitToViewportChanged',
    'snapEnabledChanged',
    'rulerVisibilityChanged',
    'containerHandlerVisibilityChanged',
    'transformToolChanged',
    'currentSceneChanged',
    'editTextOnSingleClicked',
    'execTextEditorCommand',
    'requestSendCurrentTextFormat',
    'updateMediaInfo',
    'finishAllTask',
    'needRepaint',
    'needUpdateScenePos',
    'cancelBuildingItem',
    'textEditShortcutsChanged',
    'changeStageView',
];

export interface CanvasBridge {
    readonly objectName: string;
    /** Calls a slot; unknown names and slots the studio lacks are logged, not thrown. */
    call(slot: string, ...args: unknown[]): void;
    /** Stops delivering signals to the page's handlers. */
    detach(): void;
}

export function canvasObjectName(canvasId: number): string {
    return 'vtcanvas_' + canvasId;
}

/**
 * Connects every signal of the canvas object to `handlers` and gives the page its slots. A signal
 * the object lacks is reported once on the console: an older studio still gets a working stage.
 * A handler that throws is logged and does not stop the next signal.
 */
export function connectCanvas(channel: QWebChannel, canvasId: number, handlers: CanvasSignalHandlers): CanvasBridge {
    const objectName = canvasObjectName(canvasId);
    const object = remoteObject(channel, objectName);
    if (typeof object['submitCommandFromJS'] !== 'function' || typeof object['sendSceneDataToJS'] !== 'function') {
        throw new ChannelError(`${objectName} is not a canvas object`);
    }
    let attached = true;
    const missing: string[] = [];
    for (const name of CANVAS_SIGNALS) {
        const member = object[name] as Partial<QtSignal> | undefined;
        if (!member || typeof member.connect !== 'function') {
            missing.push(name);
            continue;
        }
        const handler = handlers[name] as (...args: unknown[]) => void;
        member.connect((...args: unknown[]) => {
            if (!attached) {
                return;
            }
            try {
                handler.apply(handlers, args);
            } catch (error) {
                console.error(`vtcanvas: ${name} failed:`, error);
            }
        });
    }
    if (missing.length > 0) {
        console.warn(`vtcanvas: ${objectName} lacks the signals ${missing.join(', ')}`);
    }
    const slotOf = (slot: string): ((...args: unknown[]) => unknown) | null => {
        const member = attached ? object[slot] : undefined;
        if (typeof member !== 'function') {
            if (attached) {
                console.warn(`vtcanvas: ${objectName}.${slot} is missing`);
            }
            return null;
        }
        return member as (...args: unknown[]) => unknown;
    };
    return {
        objectName,
        call(slot, ...args) {
            const invoke = slotOf(slot);
            // The result callback keeps the script from making a promise nobody waits for.
            invoke?.(...args, () => undefined);
        },
        detach() {
            attached = false;
        },
    };
}
