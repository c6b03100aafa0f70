#pragma once

#include "VTDivProperty.h"
#include "VTText.h"

class VTCorner;

// A box with a fill, rounded corners and text: the general-purpose block of the stage.
class VTDiv : public VTText
{
    Q_OBJECT
public:
    VTDiv() = default;
    VTDiv(const VTDiv& other) = default;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::DivElement; }
    // A 256 by 128 box filled in blue, with white text.
    void initDefault() override;

    // The corner radii of a layout; null without a div block.
    VTCorner* getCorner(const VTLayoutKey& key = kCurrent) const;

    // The look that divs and shapes start with, applied to a block of theirs.
    static void applyBoxLook(VTElementProperty& block);
};
