#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QStringList>

#include <memory>

class QJsonArray;
class QJsonObject;
class VTAnchorPoint;

// The geometry of a freeform outline and of a motion path: anchors with control handles, and for
// each span between two neighbouring anchors a flattened polyline. Motion path positions are
// looked up on the polylines, so they are kept up to date after every change instead of being
// built on demand.
//
// Both lists have the same length. Entry i of the polylines runs from anchor i to anchor i + 1;
// the last entry stays empty. The path owns its anchors and polylines; an anchor handed out by
// removeAnchorPoint belongs to the caller from then on.
class VTBezierPath
{
public:
    // A project file is untrusted: a longer anchor list is refused, and a span never gets more
    // interior points than this, whatever its handles claim. Real spans stay far below the cap
    // (it is reached at about 4000 pixels of control polygon).
    static constexpr int kMaxAnchorCount = 5000;
    static constexpr int kMaxSegmentsPerSpan = 1000;

    VTBezierPath() = default;
    virtual ~VTBezierPath();
    VTBezierPath& operator=(const VTBezierPath&) = delete;

    // "points": an array of anchor objects.
    virtual void serialize(QJsonObject& json) const;
    // Replaces the whole path. A missing "points" gives an empty path. A "points" that is not an
    // array or holds more than kMaxAnchorCount items is refused (empty path, false); items that
    // are not objects are skipped, and anchors with bad fields keep their defaults (false).
    virtual bool parse(const QJsonObject& json, QStringList* pWarnings = nullptr);
    // Deep copy of anchors and polylines.
    virtual std::unique_ptr<VTBezierPath> clone() const;

    // The compact form of the player and of the stage page: one array [x, y, x1, y1, x2, y2] for
    // each anchor, near-zero values written as 0, and a seventh item 1 on the first anchor when
    // the path is open there. Appends to the array.
    void serializeToExport(QJsonArray& array) const;
    // Reads the form above, replacing the whole path. Items that are not arrays are skipped;
    // missing or non-numeric coordinates read as 0.
    bool parseFromJsArray(const QJsonArray& array, QStringList* pWarnings = nullptr);

    const QList<VTAnchorPoint*>& getAnchorPoints() const { return m_lstAnchorPoints; }
    const QList<QList<QPointF>*>& getCubicBezierCurves() const { return m_lstCubicBezierCurves; }
    VTAnchorPoint* getAnchorPointAt(int nIndex) const;

    // Only for an anchor of this path; returns whether it was one.
    bool setAnchorPointData(VTAnchorPoint* pAnchor, const QPointF& ptPosition, const QPointF& ptControlPoint1,
                            const QPointF& ptControlPoint2);
    // Recomputes the spans on both sides of the anchor at nIndex.
    void updatePathAt(int nIndex);

    QList<int> getKeyPointIndexes(int nTime) const;
    // Anchors with a key time of 0 or more, in path order.
    QList<VTAnchorPoint*> getKeyPoints() const;

    // Takes ownership. nIndex below 1 prepends, at or past the count appends. Returns the index
    // the anchor got, or -1 (ownership not taken) for a null anchor or one already in the path.
    int addAnchorPoint(int nIndex, VTAnchorPoint* pAnchor);
    // Gives the anchor back to the caller without deleting it. Returns its former index, or -1.
    int removeAnchorPoint(VTAnchorPoint* pAnchor);

    // Reverses the stretch between two key anchors, mirroring its key times, so that the motion
    // runs backwards over that key range.
    void invertAnchorPoints(int nFrom, int nTo);
    void moveOffset(const QPointF& ptOffset);

    // An outline from the stage without the start point flag is taken as closed; the flag marks an
    // open path, unless its two ends meet anyway.
    bool isClosedPath() const;

    // The exact bounds of the anchors and of every span that has a polyline, with the extrema
    // that a curve reaches between its anchors. A null rectangle for an empty path.
    QRectF getBoundingRect() const;

    // The point at dT of the cubic a.position, a.control2, b.control1, b.position.
    static QPointF calculateBezierAt(const VTAnchorPoint* pA, const VTAnchorPoint* pB, double dT);
    // Flattens the span from pA to pB into pLstPoints, about one point per four pixels of control
    // polygon. Two anchors with the same key time make an empty span: the motion does not travel.
    static void calculateCurve(const VTAnchorPoint* pA, const VTAnchorPoint* pB, QList<QPointF>* pLstPoints);

protected:
    VTBezierPath(const VTBezierPath& other);

private:
    void clear();
    // One polyline per anchor, each span computed in order; the last stays empty.
    void rebuildCurves();
    // Recomputes span nIndex, or empties it when it is the last one; ignores other indexes.
    void updateSpan(int nIndex);

    QList<VTAnchorPoint*> m_lstAnchorPoints;
    QList<QList<QPointF>*> m_lstCubicBezierCurves;
};
