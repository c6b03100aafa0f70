#pragma once

#include "VTAnimatedProperty.h"
#include "VTKeyframeEvaluator.h"
#include "VTLayoutKey.h"
#include "VTTypes.h"

#include <QEasingCurve>
#include <QList>
#include <QPair>
#include <QPointer>
#include <QSequentialAnimationGroup>
#include <QString>
#include <QVariant>

#include <memory>

class QJsonArray;
class QJsonObject;
class VTElement;
class VTKeyValue;
class VTKeyframeSegment;

// The animation of one property of one element, in one timeline and one layout: keys sorted by
// time and, between neighbours, segments that say whether and how the value moves.
//
// The Qt structure: a sequential group whose children are a lead-in from time 0 to the first
// key, one segment per pair of neighbouring keys, and a tail at the last key. With n keys there
// are n + 1 children; child i ends at key i and child i + 1 starts there. The lead-in and the tail
// run between a real key and a hidden one that the keyframe owns.
//
// Applying a time does not go through Qt's group update. Qt applies a time only to children that
// it considers started, so a keyframe that ended before the playhead would keep a stale value
// after an edit, and every write would box the value in a QVariant and look the property up by
// name. applyTime finds the segment by binary search, eases with the segment's own QEasingCurve,
// interpolates as Qt's interpolators do for the property's type, and writes through the typed
// meta-call. The results equal those of the Qt segments; a test holds both against each other.
// The numbers it works on are cached from the keys and segments; the cache is dropped by every
// change made through the keyframe or its segments, which is the only way keys change.
class VTKeyframe : public QSequentialAnimationGroup
{
    Q_OBJECT
public:
    // Keys of one keyframe that a file may hold; far above anything made by hand.
    static constexpr int kMaxKeyCount = 100000;

    // A motion path keyframe for Location, a plain one otherwise.
    static VTKeyframe* createKeyframe(VT::ElementProperty nProperty, VTElement* pElement,
                                      const VTLayoutKey& layoutKey);
    // Unit sign and target are looked up for that layout once and kept.
    VTKeyframe(VT::ElementProperty nProperty, VTElement* pElement, const VTLayoutKey& layoutKey);
    ~VTKeyframe() override;

    // Takes ownership of pKey unless it is here already. Display never gets a transition, and no
    // segment gets one whose two ends hold the same value.
    virtual void addKeyValue(VTKeyValue* pKey, QEasingCurve::Type nEasing, bool bTransition);
    // Takes the key out without deleting it and hands back the segment that left the group (the
    // caller owns it). Null for a foreign key, and for the only key, which empties the keyframe.
    virtual VTKeyframeSegment* detachKeyValue(VTKeyValue* pKey);
    // An invalid valueMinus keeps an existing jump and follows value otherwise.
    virtual void changeKeyValue(VTKeyValue* pKey, const QVariant& value,
                                const QVariant& valueMinus = QVariant());
    // Clamped between the neighbours; the order of the keys never changes.
    virtual void moveKeyValue(VTKeyValue* pKey, int nTime);
    // Shifts the whole curve by newValue - oldValue, numbers clamped to the property's range.
    virtual void changeAllKeyValues(const QVariant& oldValue, const QVariant& newValue);
    virtual void moveAllKeyValues(int nDelta);
    // Converts the keys between pixels and shares of the parent; the unit sign is the caller's.
    virtual void changeUnit(const QString& unitFrom, const QString& unitTo, double dFactor);
    // Mirrors the keys first..last in time, values and segment settings.
    void invertKeyValues(int nFirst, int nLast);

    // Writes nothing unless the keyframe belongs to an animation with an element.
    virtual void serialize(QJsonObject& json) const;
    // Replaces nothing: keys are added to what is here. Keys that cannot be read are left out and
    // named in pProblems; returns false when anything was left out.
    virtual bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);

    // The value the property has at nTime, in the type of the bound property (a double for a
    // keyframe without target), or invalid with no keys.
    virtual QVariant getValue(int nTime) const;
    // Writes getValue(nTime) into the target; nothing without keys or target.
    virtual void applyTime(int nTime);
    void invalidateCache() { m_evaluator.invalidate(); }
    // The sum of the children's durations, which is the last key's time, without walking them:
    // Qt asks for it on every seek.
    int duration() const override;

    VTKeyValue* getKeyValue(int nTime) const;
    const QList<VTKeyValue*>& getKeyValues() const { return m_lstKeyValues; }
    int getStartTime() const;
    int getEndTime() const;
    // The neighbour segment strictly around nTime; null at a key's own time.
    VTKeyframeSegment* getKeyframeSegment(int nTime) const;
    // Neighbour segments in order, without lead-in and tail.
    QList<VTKeyframeSegment*> getKeyframeSegments() const;
    // (segment ending at the key, segment starting at it); lead-in and tail are never returned.
    QPair<VTKeyframeSegment*, VTKeyframeSegment*> getAdjacentSegments(const VTKeyValue* pKey) const;

    QObject* getTargetObject() const { return m_pTarget; }
    VT::ElementProperty getType() const { return m_nProperty; }
    QByteArray getPropertyName() const;
    QString getName() const;
    QString getExportPropertyName() const;
    QString getUnitSign() const { return m_strUnitSign; }
    void setUnitSign(const QString& unit) { m_strUnitSign = unit; }
    QPair<int, int> getMinMaxKeyValue() const;
    bool canHaveTransition() const { return VTAnimatedProperty::canHaveTransition(m_nProperty); }
    // The element of the animation this keyframe belongs to, or null.
    VTElement* getAnimationElement() const;

    // The player's form: "el", "p" and "anims" with the moves of appendAnimData.
    void getKeyframesData(QJsonObject& json, bool bForEditor) const;
    // One entry per move and per jump, in time order. bForEditor adds the anchor index and key
    // time to each motion path row, for the stage page.
    virtual void appendAnimData(QJsonArray& array, bool bForEditor) const;
    // "p" and "v" of a property's plain value.
    static void serializeSavedValueToExport(QJsonObject& json, int nProperty, const QString& unit,
                                            const QVariant& value);

protected:
    void updateCurrentTime(int nCurrentTime) override;

    using ValueKind = VTKeyframeEvaluator::ValueKind;
    ValueKind getValueKind() const { return m_evaluator.getValueKind(); }
    // Moves for the player with the start and end keys of each; overridden to add motion rows.
    virtual void appendMove(QJsonArray& array, const VTKeyValue* pFrom, const VTKeyValue* pTo, int nEasing,
                            bool bForEditor) const;
    QJsonObject createEntry(const VTKeyValue* pFrom, const VTKeyValue* pTo, bool bJump) const;
    // Inserts a key at nIndex (the key count appends) with the segment rules of addKeyValue.
    void insertKeyValue(int nIndex, VTKeyValue* pKey, const QEasingCurve& curve, bool bTransition);
    void updateAllSegments();
    VTKeyframeSegment* segmentAt(int nChild) const;

private:
    const VTKeyframeEvaluator& getEvaluator() const;
    void deleteKeysAndSegments();
    QVariant clampToRange(const QVariant& value) const;

    VT::ElementProperty m_nProperty;
    QString m_strUnitSign;
    QPointer<QObject> m_pTarget;
    int m_nPropertyIndex = -1;

    QList<VTKeyValue*> m_lstKeyValues;
    VTKeyframeSegment* m_pLeadIn = nullptr;
    VTKeyframeSegment* m_pTail = nullptr;
    std::unique_ptr<VTKeyValue> m_pLeadInKey;
    std::unique_ptr<VTKeyValue> m_pTailKey;

    mutable VTKeyframeEvaluator m_evaluator;
};
