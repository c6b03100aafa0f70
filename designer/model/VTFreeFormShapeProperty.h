#pragma once

#include "VTAutoShapeProperty.h"

#include <memory>

class VTBezierPath;
class VTFreeFormArrowStyle;

// A freeform's block: a shape whose outline is a Bezier path drawn by the author, with arrow heads
// for the open kinds. The block owns its path and its arrow style; both always exist.
class VTFreeFormShapeProperty : public VTAutoShapeProperty
{
    Q_OBJECT
public:
    explicit VTFreeFormShapeProperty(QObject* parent = nullptr);
    // Deep copy: the path and the arrow style are copied too.
    VTFreeFormShapeProperty(const VTFreeFormShapeProperty& other);
    ~VTFreeFormShapeProperty() override;

    VTElementProperty* clone() const override;
    // Adds "bzpath" and "arrow".
    void serialize(QJsonObject& json) const override;
    // Writes "s" as [type, points] followed by the arrow heads, and leaves out the adjustments,
    // which the path replaces.
    QStringList serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const override;
    // Reads "bzpath" and "arrow", then the shape keys. An absent "bzpath" or "arrow" leaves the
    // path or the style as it is.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;

    VTBezierPath* getPath() const { return m_pPath.get(); }
    // Takes the new path, or an empty one for null, and hands back the old one, which undo keeps.
    [[nodiscard]] std::unique_ptr<VTBezierPath> replacePath(std::unique_ptr<VTBezierPath> pPath);
    VTFreeFormArrowStyle* getArrowStyle() const { return m_pArrowStyle.get(); }
    // Takes the new style, or a default one for null, and hands back the old one.
    [[nodiscard]] std::unique_ptr<VTFreeFormArrowStyle>
    replaceArrowStyle(std::unique_ptr<VTFreeFormArrowStyle> pStyle);

private:
    std::unique_ptr<VTFreeFormArrowStyle> m_pArrowStyle;
    std::unique_ptr<VTBezierPath> m_pPath;
};
