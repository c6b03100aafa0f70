// What the stage does on each signal of the studio's canvas object. Scene, records and playback go
// to the page; view settings, media questions and the tools are answered here.

import type { CanvasSignalHandlers } from './bridge';
import type { DrawShape, PointEditTool, TextEditTool } from './contracts';
import type { StagePage } from './page';
import { createDrawTool, createPointEditTool, setTextEditShortcuts } from './tools/index';
import { clampZoom } from './viewport';

/** Signal arguments as the studio sends them; a QVariant may arrive as text. */
export function bool(value: unknown): boolean {
    return value === true || value === 1 || value === 'true';
}

export function number(value: unknown, fallback: number): number {
    const n = typeof value === 'number' ? value : Number(value);
    return value !== null && value !== '' && isFinite(n) ? n : fallback;
}

function pointTool(page: StagePage, id: unknown): PointEditTool | null {
    const current = page.tool as Partial<PointEditTool> | null;
    return current && typeof current.openPath === 'function' && current.elementId === number(id, -1)
        ? (current as PointEditTool)
        : null;
}

function textTool(page: StagePage): TextEditTool | null {
    const current = page.tool as Partial<TextEditTool> | null;
    return current && typeof current.execCommand === 'function' ? (current as TextEditTool) : null;
}

/** Answers a media element's size and duration once the browser knows them. */
function answerMediaInfo(page: StagePage, elementId: number): void {
    const media = page.hasScene ? page.renderer.view(elementId)?.media : null;
    if (!media) {
        return;
    }
    const answer = (): void => {
        const video = media instanceof HTMLVideoElement ? media : null;
        const duration = isFinite(media.duration) ? Math.round(media.duration * 1000) : 0;
        page.notify('updateMediaProps', [elementId, video?.videoWidth ?? 0, video?.videoHeight ?? 0, duration, false]);
    };
    if (media.readyState >= 1) {
        answer();
    } else {
        media.addEventListener('loadedmetadata', answer, { once: true });
        media.preload = 'metadata';
    }
}

export function canvasHandlers(page: StagePage): CanvasSignalHandlers {
    const draw = (shape: DrawShape): void => {
        if (page.hasScene) {
            page.setStageView(0);
            page.startTool(createDrawTool(page.toolHost, shape));
        }
    };
    return {
        currentSceneChanged: (hasScene, data) => page.currentSceneChanged(bool(hasScene), data),
        dataChangedToJS: (json) => page.dataChangedToJS(json),

        play: (ts) => page.play(number(ts, page.time())),
        pause: (ts) => page.pause(number(ts, page.time())),
        setCurrentTime: (time) => page.setCurrentTime(number(time, page.time())),
        finishAllTask: () => page.finishAllTask(),

        autoKeyframeModeChanged: (on) => {
            // The studio adds the keyframes; the stage only keeps the mode with its scene.
            if (page.hasScene) {
                page.data.autoAddKeyframe = bool(on);
            }
        },
        zoomFactorChanged: (factor) => page.viewport.setZoom(clampZoom(number(factor, page.viewport.zoom)), false),
        fitToViewportChanged: (fit) => {
            page.viewport.setFit(bool(fit), false);
            if (page.viewport.fit) {
                // The zoom control shows the fitted factor.
                page.notify('setZoomFactor', [page.viewport.zoom]);
            }
        },
        snapEnabledChanged: (on) => page.setSnapEnabled(bool(on)),
        rulerVisibilityChanged: (show) => page.setRulersVisible(bool(show)),
        containerHandlerVisibilityChanged: (show) => page.setContainerHandler(bool(show)),
        transformToolChanged: (tools) => page.setTransformTools(number(tools, 0)),
        changeStageView: (mode) => page.setStageView(number(mode, 0)),
        editTextOnSingleClicked: (single) => {
            page.editTextOnSingleClick = bool(single);
        },
        needRepaint: () => {
            if (page.hasScene) {
                page.renderer.flushNow();
            }
            page.redraw();
        },
        needUpdateScenePos: () => {
            page.redraw();
            page.tool?.refresh();
        },
        updateMediaInfo: (id) => answerMediaInfo(page, number(id, -1)),

        insertRectangle: () => draw({ kind: 'rectangle' }),
        insertRoundedRect: () => draw({ kind: 'roundedRect' }),
        insertEllipse: () => draw({ kind: 'ellipse' }),
        insertShape: (type) => draw({ kind: 'autoshape', type: number(type, 1) }),
        cancelBuildingItem: () => {
            if (page.tool && !textTool(page)) {
                page.endCurrentTool();
            }
        },
        editPoint: (id, on) => {
            if (!bool(on)) {
                if (pointTool(page, id)) {
                    page.endCurrentTool();
                }
            } else if (page.hasScene) {
                page.startTool(createPointEditTool(page.toolHost, number(id, -1)));
            }
        },
        openPath: (id, open) => pointTool(page, id)?.openPath(bool(open)),
        straightSegment: (id) => pointTool(page, id)?.straightSegment(),

        startEditText: (id) => {
            page.pauseForEdit();
            page.editText(number(id, -1));
        },
        stopEditText: (immediately) => {
            const tool = textTool(page);
            if (tool) {
                tool.stop(bool(immediately));
                page.endTool(tool);
            }
        },
        execTextEditorCommand: (name, value) =>
            textTool(page)?.execCommand(String(name ?? ''), value === undefined || value === null ? '' : String(value)),
        requestEditHtml: () => {
            const tool = textTool(page);
            if (tool) {
                page.notify('editTextInnerHTML', [tool.innerHtml()]);
            }
        },
        requestSendCurrentTextFormat: () => {
            const tool = textTool(page);
            if (tool) {
                page.notify('onTextFormatChanged', [JSON.stringify(tool.currentFormat())]);
            }
        },
        textEditShortcutsChanged: (shortcuts) => {
            if (typeof shortcuts === 'string') {
                setTextEditShortcuts(shortcuts);
            }
        },
    };
}
