#pragma once

#include "VTAutoShapeProperty.h"
#include "VTText.h"

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVector>

// A vector shape with text, such as a star, a callout or a block arrow. What defines it is the
// shape number and the adjustment values per layout; the outline is worked out by the stage page
// and the player, so the outline hooks here are neutral and a kind that draws shapes itself
// overrides them.
class VTAutoShape : public VTText
{
    Q_OBJECT
public:
    VTAutoShape() = default;
    VTAutoShape(const VTAutoShape& other) = default;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::ShapeElement; }
    // As a div: a 256 by 128 box filled in blue, with white text.
    void initDefault() override;
    // The outline is drawn inside the box, so a border adds nothing to it.
    double getContentBoxOffset(const VTLayoutKey& key) const override;

    virtual QPainterPath generatePath(const QRectF& rect, const QVector<double>& adjustments) const;
    virtual QRectF getTextRect(const QRectF& rect, const QVector<double>& adjustments) const;
    virtual int getAdjustmentPointCount() const { return 0; }
    virtual QPointF getAdjustmentPoint(const QRectF& rect, int nIndex) const;
    virtual void setAdjustmentPoint(const QPointF& point, int nIndex);
    virtual void resetAdjustments() {}

    // The block of a layout as a shape block; null when there is none.
    VTAutoShapeProperty* getAutoShapeProperty(const VTLayoutKey& key = kCurrent) const;

    QString getAutoShapeName(const VTLayoutKey& key = kCurrent) const;
    void setAutoShapeName(const QString& name, const VTLayoutKey& key = kCurrent);
    int getAutoShapeGroup(const VTLayoutKey& key = kCurrent) const;
    void setAutoShapeGroup(int nGroup, const VTLayoutKey& key = kCurrent);
    int getAutoShapeType(const VTLayoutKey& key = kCurrent) const;
    void setAutoShapeType(int nType, const VTLayoutKey& key = kCurrent);
    int getAdjustmentCount(const VTLayoutKey& key = kCurrent) const;
    // A shared empty list when the layout has no shape block.
    const QVector<double>& getAdjustments(const VTLayoutKey& key = kCurrent) const;
    void setAdjustments(const QVector<double>& adjustments, const VTLayoutKey& key = kCurrent);
};
