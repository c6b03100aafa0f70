#pragma once

#include "VTLayoutKey.h"
#include "VTTypes.h"

#include <QList>
#include <QMap>
#include <QParallelAnimationGroup>
#include <QStringList>
#include <QVector>

class QJsonObject;
class VTElement;
class VTKeyframe;
class VTSymbol;
class VTTimeline;

// Everything one timeline does to one element in one layout: the element's keyframes side by
// side, the auto-orient flag of its motion path, and which properties this layout animates on its
// own instead of taking the base layout's animation. Only the exceptions are stored: a property
// without an entry inherits.
class VTAnimation : public QParallelAnimationGroup
{
    Q_OBJECT
public:
    explicit VTAnimation(VTElement* pElement);
    ~VTAnimation() override;

    // A deep copy of the same class through the project form; it belongs to no timeline.
    virtual VTAnimation* clone(VTTimeline* pTimeline, const VTLayoutKey& layoutKey) const;
    virtual bool isPlayback() const { return false; }
    virtual void serialize(QJsonObject& json) const;
    // Keyframes that do not apply to the element in that layout (an unknown property, one the
    // element cannot animate, a second keyframe of one property) are left out and named in
    // pProblems; returns false when anything was. Without a timeline no keyframe is kept.
    virtual bool parse(const QJsonObject& json, VTTimeline* pTimeline, const VTLayoutKey& layoutKey,
                       QStringList* pProblems = nullptr);
    // Writes every keyframe's value at nTime into the element.
    virtual void applyTime(int nTime);

    VTElement* getElement() const { return m_pElement; }
    void setElement(VTElement* pElement) { m_pElement = pElement; }
    bool isAutoOrient() const { return m_bAutoOrient; }
    void setAutoOrient(bool bAutoOrient) { m_bAutoOrient = bAutoOrient; }

    VTKeyframe* getKeyframe(VT::ElementProperty nProperty) const;
    QList<VTKeyframe*> getKeyframes() const;
    // Takes ownership unless it is a child already.
    void addKeyframe(VTKeyframe* pKeyframe);
    // Hands the keyframe back without deleting it.
    void detachKeyframe(VTKeyframe* pKeyframe);
    bool isUsingMotionPath() const;
    // The first key over all keyframes (and playback marks); 0 when nothing counts.
    int getStartTime() const { return qMax(0, getFirstTime()); }
    int getEndTime() const;

    bool isPropInherit(int nProperty) const { return m_mapPropsInherit.value(nProperty, true); }
    void setPropInherit(int nProperty, bool bInherit);
    bool isAllPropsInherit() const { return m_mapPropsInherit.isEmpty(); }
    // Applies the changes and returns the values they replaced, for an undo to apply.
    QMap<int, bool> addPropsInherits(const QMap<int, bool>& mapChanges);
    // Replaces the map and returns the old one.
    QMap<int, bool> setMapPropsInherit(const QMap<int, bool>& mapInherits);
    QMap<int, bool> getMapPropsInherit() const { return m_mapPropsInherit; }

protected:
    void updateCurrentTime(int nCurrentTime) override;
    // The earliest time of 0 or more that the animation holds, or -1.
    virtual int getFirstTime() const;
    // Keeps the list of keyframes in step with the group's children, however they come and go
    // (added, taken, deleted).
    bool event(QEvent* pEvent) override;

private:
    VTElement* m_pElement = nullptr;
    bool m_bAutoOrient = false;
    QMap<int, bool> m_mapPropsInherit;
    // The keyframe children in order: a seek runs over every keyframe of a scene and should not
    // go through the group's private list for each.
    QVector<VTKeyframe*> m_vecKeyframes;
};

// An inherit map from pairs of arguments: nCount is the number of arguments that follow, a
// property number and a flag (its low bit) for each entry.
QMap<int, bool> vtGetMapInherits(int nCount, ...);

// Whether an edit of a property reaches the animation of a layout: in responsive mode only the
// layout being edited, otherwise the base and every layout whose animation inherits the property.
bool isNeedChangePropAnim(const VTSymbol* pSymbol, const VTLayoutKey& layout, const VTAnimation* pAnimation,
                          int nProperty);
