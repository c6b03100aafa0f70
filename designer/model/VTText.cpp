#include "VTText.h"

#include <QJsonArray>

VTElement* VTText::clone() const
{
    return new VTText(*this);
}

void VTText::initDefault()
{
    // Only a block made here takes the kind's look; one that is there already is the author's.
    const bool bHadBase = getLayoutProperty(VTLayoutKey::base()) != nullptr;
    VTElement::initDefault();
    if (bHadBase)
        return;
    if (VTElementProperty* pBlock = getLayoutProperty(VTLayoutKey::base())) {
        pBlock->setSizeW(200.0);
        pBlock->setSizeH(50.0);
    }
}

VTTextProperty* VTText::getTextProperty(const VTLayoutKey& key) const
{
    return qobject_cast<VTTextProperty*>(getLayoutProperty(key));
}

void VTText::serializeTextToExport(QJsonArray& array) const
{
    if (const VTTextProperty* pBlock = getTextProperty())
        pBlock->serializeTextToExport(array);
}
