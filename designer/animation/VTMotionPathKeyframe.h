#pragma once

#include "VTKeyframe.h"

#include <memory>

class QPainterPath;
class VTAnchorPoint;
class VTMotionPath;

// The Location keyframe with the path its element travels. Anchors of the path that carry a key
// time stand for the keys: the n-th distinct key time among the anchors is key n. The element's
// translation follows the path by length, eased per segment, so equal time gives equal distance
// on a linear segment whatever the curve's parameterisation.
class VTMotionPathKeyframe final : public VTKeyframe
{
    Q_OBJECT
public:
    VTMotionPathKeyframe(VTElement* pElement, const VTLayoutKey& layoutKey);
    ~VTMotionPathKeyframe() override;

    VTMotionPath* getMotionPath() const { return m_pMotionPath.get(); }

    // The position on the path at nTime, relative to the element's own place.
    QVariant getValue(int nTime) const override;
    void applyTime(int nTime) override;
    // The direction of travel at nTime in degrees, clockwise from the positive x axis as the stage
    // shows it (y grows downwards), which is the rotation an auto-oriented element takes. 0 where
    // the element does not move along a curve.
    double getOrientation(int nTime) const;
    // Where an anchor for a new key at nTime belongs in the path.
    int getNewAnchorPointIndex(int nTime) const;

    void moveAllKeyValues(int nDelta) override;
    void serialize(QJsonObject& json) const override;
    // Reads the path ("motionPath", or "motion_path" of older files, which held stage
    // coordinates), then the keys.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr) override;
    // Whether the last parse read the older absolute form, which the animation then moves.
    bool hasReadAbsolutePath() const { return m_bReadAbsolutePath; }

protected:
    void appendMove(QJsonArray& array, const VTKeyValue* pFrom, const VTKeyValue* pTo, int nEasing,
                    bool bForEditor) const override;

private:
    struct PathPosition
    {
        QPointF ptPosition;
        double dAngle = 0.0;
    };
    PathPosition locate(int nTime) const;
    // Straight lines through the flattened spans of anchors nFrom to nTo.
    QPainterPath buildTravel(int nFrom, int nTo) const;
    // The eased progress of the segment that leaves the key of nKeyIndex; -1 without transition.
    double getSegmentProgress(int nKeyIndex, int nTime, int nFromTime, int nToTime) const;

    std::unique_ptr<VTMotionPath> m_pMotionPath;
    bool m_bReadAbsolutePath = false;
};
