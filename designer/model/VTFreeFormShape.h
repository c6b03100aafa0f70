#pragma once

#include "VTAutoShape.h"
#include "VTFreeFormShapeProperty.h"

#include <memory>

class VTBezierPath;
class VTFreeFormArrowStyle;

// A shape whose outline the author draws as a Bezier path: a line, an arrow, a curve, a closed
// freeform or a scribble. The path and the arrow heads differ per layout and live in the blocks.
class VTFreeFormShape : public VTAutoShape
{
    Q_OBJECT
public:
    VTFreeFormShape() = default;
    // The point-editing mode is the stage's and is not copied.
    VTFreeFormShape(const VTFreeFormShape& other);

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::FreeFormElement; }
    // Adds "editPoint", so that the stage shows the path's points for editing.
    void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const override;

    // Point editing on the stage; not saved.
    bool isEditPoint() const { return m_bEditPoint; }
    void setEditPoint(bool bEditPoint) { m_bEditPoint = bEditPoint; }

    // The block of a layout as a freeform block; null when there is none.
    VTFreeFormShapeProperty* getFreeFormProperty(const VTLayoutKey& key = kCurrent) const;
    VTBezierPath* getPath(const VTLayoutKey& key = kCurrent) const;
    VTFreeFormArrowStyle* getArrowStyle(const VTLayoutKey& key = kCurrent) const;
    // Put the new object in place and hand back the old one, which the undoing command keeps.
    // Without a freeform block in that layout nothing changes and the new object comes back.
    [[nodiscard]] std::unique_ptr<VTBezierPath> replacePath(std::unique_ptr<VTBezierPath> pPath,
                                                            const VTLayoutKey& key = kCurrent);
    [[nodiscard]] std::unique_ptr<VTFreeFormArrowStyle>
    replaceArrowStyle(std::unique_ptr<VTFreeFormArrowStyle> pStyle, const VTLayoutKey& key = kCurrent);

    // Line, arrow or double arrow: the open kinds that take arrow heads.
    bool isLine(const VTLayoutKey& key = kCurrent) const;

private:
    bool m_bEditPoint = false;
};
