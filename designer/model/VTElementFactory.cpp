#include "VTElementFactory.h"

#include "VTAutoShape.h"
#include "VTDiv.h"
#include "VTElement.h"
#include "VTFreeFormShape.h"
#include "VTHTMLWidget.h"
#include "VTImage.h"
#include "VTMedia.h"
#include "VTSymbolElement.h"
#include "VTText.h"
#include "VTTypes.h"

#include <memory>

VTElement* VTElementFactory::createElement(int nType)
{
    std::unique_ptr<VTElement> pElement;
    switch (nType) {
    case VT::GroupElement:
        pElement = std::make_unique<VTElement>();
        break;
    case VT::SymbolElement:
        pElement = std::make_unique<VTSymbolElement>();
        break;
    case VT::ImageElement:
        pElement = std::make_unique<VTImage>();
        break;
    case VT::AudioElement:
    case VT::VideoElement:
        pElement = std::make_unique<VTMedia>(static_cast<VT::ElementType>(nType));
        break;
    case VT::HTMLWidgetElement:
        pElement = std::make_unique<VTHTMLWidget>();
        break;
    case VT::TextElement:
        pElement = std::make_unique<VTText>();
        break;
    case VT::DivElement:
        pElement = std::make_unique<VTDiv>();
        break;
    case VT::ShapeElement:
        pElement = std::make_unique<VTAutoShape>();
        break;
    case VT::FreeFormElement:
        pElement = std::make_unique<VTFreeFormShape>();
        break;
    // Scenes belong to the document, components have no class, other numbers name no kind.
    default:
        return nullptr;
    }
    pElement->initDefault();
    return pElement.release();
}
