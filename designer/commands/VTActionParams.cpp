#include "VTActionParams.h"

#include "VTElement.h"
#include "VTEventListenerList.h"
#include "VTScene.h"

VTEventListenerList* VTActionParams::getEventList(const VTCmdParam* pParam)
{
    if (!pParam)
        return nullptr;
    switch (pParam->getType()) {
    case VTCmdParam::Element:
        return pParam->getAsElement();
    case VTCmdParam::Scene:
        return pParam->getAsScene();
    default:
        return pParam->getAsEventListenerList();
    }
}
