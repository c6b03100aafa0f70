#pragma once

class QObject;
class VTScene;
class VTUpdateViewInfo;

// Which records of a running command the stage page hears of, and what the end of the command
// must then redraw. The page shows one scene, its current timeline and its current layout, so a
// record about anything else would only make it redraw for nothing. Kept apart from the canvas
// view so the rules hold without a browser.
class VTCanvasRecordFilter final
{
public:
    VTCanvasRecordFilter() = delete;

    // pCanvas: the view the page belongs to; a command it made itself is not echoed to it.
    // pScene: the scene the page shows, whose current timeline and layout count.
    static bool shouldNotifyActionToJS(const VTUpdateViewInfo* pInfo, const QObject* pCanvas,
                                       const VTScene* pScene);
    // Whether the page redraws the stage once a command with this record has finished.
    static bool shouldRepaintWhenFinishedCommand(int nId);
    // Whether the page places the scene again (its size or offsets may have changed).
    static bool shouldUpdateScenePosWhenFinishedCommand(int nId);
};
