#include "VTAnimationFactory.h"

#include "VTElement.h"
#include "VTPlaybackAnimation.h"

VTAnimation* VTAnimationFactory::createAnimation(VTElement* pElement)
{
    if (!pElement)
        return nullptr;
    switch (pElement->getType()) {
    case VT::SymbolElement:
    case VT::AudioElement:
    case VT::VideoElement:
        return new VTPlaybackAnimation(pElement);
    default:
        return new VTAnimation(pElement);
    }
}
