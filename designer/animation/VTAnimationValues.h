#pragma once

#include "VTLayoutKey.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

class VTScene;
class VTTimeline;

// The animated values of a scene at one time of one timeline, as the model computes them: the
// timeline is sought to the time in the scene's current layout and every keyframe's bound
// property is read back from the element. This is the reference the web player is checked
// against, so its form is fixed:
//
//   {"scene": {"index": 1, "id": 1, "name": "Intro"},
//    "timeline": {"id": 1, "name": "Timeline", "duration": 3000},
//    "time": 1200, "layout": [0, 0],
//    "elements": [{"id": 3, "name": "Title",
//                  "values": {"o": 0.5, "lt": 120, "fc": [255, 0, 0, 255], "pos": [10, 20]},
//                  "units": {"o": "%", "lt": "px", "fc": "color", "pos": ""},
//                  "orient": 45}]}
//
// Elements come in ascending id, the scene itself as id 0; only elements with keyframes in the
// timeline's current layout are listed. Value keys are the player's property keys. Numbers are in
// the model's units: "%" values are ratios (0.5 is 50%), "deg" degrees, "px" pixels; integer
// properties (border width, font size, ...) hold whole numbers. Colours are [red, green, blue,
// alpha] from 0 to 255, locations [x, y] relative to the element's place. "orient" appears for an
// element that turns along its motion path: the direction of travel in degrees, clockwise.
class VTAnimationValues final
{
    Q_DECLARE_TR_FUNCTIONS(VTAnimationValues)
public:
    // Seeks pTimeline (a timeline of pScene) to nTime and reports. nSceneIndex is the scene's
    // position from 1, as the studio lists it.
    static QJsonObject compute(VTScene* pScene, int nSceneIndex, VTTimeline* pTimeline, int nTime);
};
