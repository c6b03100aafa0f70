#include "VTElementPropertyFactory.h"

#include "VTAutoShapeProperty.h"
#include "VTDivProperty.h"
#include "VTElementProperty.h"
#include "VTFreeFormShapeProperty.h"
#include "VTImageProperty.h"
#include "VTSceneProperty.h"
#include "VTTextProperty.h"
#include "VTTypes.h"

VTElementProperty* VTElementPropertyFactory::createElementProperty(int nType)
{
    switch (nType) {
    case VT::ImageElement:
        return new VTImageProperty();
    case VT::TextElement:
        return new VTTextProperty();
    case VT::DivElement:
        return new VTDivProperty();
    case VT::SceneElement:
        return new VTSceneProperty();
    case VT::ShapeElement:
        return new VTAutoShapeProperty();
    case VT::FreeFormElement:
        return new VTFreeFormShapeProperty();
    // Kinds whose layouts hold the plain values only.
    case VT::AudioElement:
    case VT::VideoElement:
    case VT::HTMLWidgetElement:
    case VT::GroupElement:
    case VT::SymbolElement:
        return new VTElementProperty();
    // Components have no block, and other numbers name no kind.
    default:
        return nullptr;
    }
}
