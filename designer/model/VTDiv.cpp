#include "VTDiv.h"

#include "VTBackground.h"

VTElement* VTDiv::clone() const
{
    return new VTDiv(*this);
}

void VTDiv::initDefault()
{
    const bool bHadBase = getLayoutProperty(VTLayoutKey::base()) != nullptr;
    VTText::initDefault();
    if (bHadBase)
        return;
    if (VTElementProperty* pBlock = getLayoutProperty(VTLayoutKey::base()))
        applyBoxLook(*pBlock);
}

void VTDiv::applyBoxLook(VTElementProperty& block)
{
    // A box is seen on the white stage at once, and its text must stand out from the fill.
    block.setSizeW(256.0);
    block.setSizeH(128.0);
    block.getBackground()->setFillStyle(VTBackground::Solid);
    block.getBackground()->setSolidColor(QColor(74, 134, 232));
    if (auto* pText = qobject_cast<VTTextProperty*>(&block))
        pText->setColor(QColor(255, 255, 255, 255));
}

VTCorner* VTDiv::getCorner(const VTLayoutKey& key) const
{
    const auto* pBlock = qobject_cast<const VTDivProperty*>(getLayoutProperty(key));
    return pBlock ? pBlock->getCorner() : nullptr;
}
