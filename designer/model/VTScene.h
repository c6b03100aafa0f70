#pragma once

#include "VTElement.h"

#include <QJsonObject>

#include <memory>

class VTSceneManager;
class VTTimelineManager;

// The root element of one stage. Its name is the scene's name, its id the scene's id within the
// symbol, and its children are numbered from nextChildId so that ids stay unique per scene.
//
// The scene owns its timelines. A layout change reaches them too, so that each timeline runs the
// animations of the layout its elements show.
class VTScene final : public VTElement
{
    Q_OBJECT
    Q_PROPERTY(double m_dPerspectiveOrgX READ getPerspectiveX WRITE setPerspectiveX)
    Q_PROPERTY(double m_dPerspectiveOrgY READ getPerspectiveY WRITE setPerspectiveY)
    Q_PROPERTY(double m_dPerspectiveOrgZ READ getPerspectiveZ WRITE setPerspectiveZ)
public:
    // What a file that lacks "nextChildId" reads: above the ids that old files hand-numbered.
    static constexpr int kFileDefaultNextChildId = 1000;

    VTScene();
    // Name, nextChildId, manager link, auto-advance, transition and timelines, besides what an
    // element copies.
    VTScene(const VTScene& other);
    VTScene& operator=(const VTScene&) = delete;
    ~VTScene() override;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::SceneElement; }
    // A new scene: 800 by 600 pixels at 0, 0, solid white, no border, next child id 1,
    // auto-advance on, no transition.
    void initDefault() override;
    // "Scene_1", "Scene_2"... for an empty name; "<name>_1"... for a name another scene of the
    // manager bears. Children are then named within the scene.
    void updateName() override;
    // Percent values of a scene refer to its symbol's stage.
    using VTElement::getParentComputedH;
    using VTElement::getParentComputedW;
    double getParentComputedW(const VTLayoutKey& key) const override;
    double getParentComputedH(const VTLayoutKey& key) const override;
    // Scene events (50 to 56) and pointer events (100 to 111).
    bool isSupportedEventType(VTEventListener::EventType nEventType) const override;

    void serialize(QJsonObject& json) const override;
    // Reads the element, then the scene keys; a selected scene joins its manager's selection.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;
    void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const override
    {
        serializeToExport(json, bSingleLayout, false, bWithEvents);
    }
    // bUnused has no effect; it keeps the call form of the player export.
    void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bUnused, bool bWithEvents) const;

    // Keeps the manager's list of selected scenes in step, in order of selection.
    void setSelected(bool bSelected);

    VTSceneManager* getSceneManager() const { return m_pSceneManager; }
    void setSceneManager(VTSceneManager* pManager) { m_pSceneManager = pManager; }

    int getNextChildId() const { return m_nNextChildId; }
    void setNextChildId(int nId) { m_nNextChildId = nId; }
    // Numbers the element's subtree from nextChildId and puts it under pParent (the scene when
    // pParent is null or the scene itself) at nIndex, then names it uniquely in the scene.
    // Returns the index, or -1 when the tree refuses it (the caller keeps it then).
    int addElement(VTElement* pElement, int nIndex = -1, VTElement* pParent = nullptr);
    VTElement* findElementById(int nId) const { return getElementById(nId, false); }

    bool isAutoAdvance() const { return m_bAutoAdvance; }
    void setAutoAdvance(bool bAutoAdvance) { m_bAutoAdvance = bAutoAdvance; }
    int getTransitionType() const { return m_nTsType; }
    void setTransitionType(int nType) { m_nTsType = nType; }
    int getTransitionDuration() const { return m_nTsDuration; }
    void setTransitionDuration(int nDuration) { m_nTsDuration = nDuration; }
    int getTransitionEasing() const { return m_nTsEasing; }
    void setTransitionEasing(int nEasing) { m_nTsEasing = nEasing; }
    int getTransitionDirection() const { return m_nTsDirection; }
    void setTransitionDirection(int nDirection) { m_nTsDirection = nDirection; }
    // The time the transition into this scene adds to the symbol's total: none without type.
    int getEffectiveTransitionDuration() const { return m_nTsType != VT::TransitionNone ? m_nTsDuration : 0; }
    // Display names; empty for -1 and unknown numbers.
    static QString getTransTypeName(int nType);
    static QString getTransDirectionName(int nDirection);

    // The perspective of one layout's block; 0 when the layout has no scene block.
    double getPerspectiveX() const { return getPerspectiveX(kCurrent); }
    double getPerspectiveX(const VTLayoutKey& key) const;
    void setPerspectiveX(double dValue) { setPerspectiveX(dValue, kCurrent); }
    void setPerspectiveX(double dValue, const VTLayoutKey& key);
    double getPerspectiveY() const { return getPerspectiveY(kCurrent); }
    double getPerspectiveY(const VTLayoutKey& key) const;
    void setPerspectiveY(double dValue) { setPerspectiveY(dValue, kCurrent); }
    void setPerspectiveY(double dValue, const VTLayoutKey& key);
    double getPerspectiveZ() const { return getPerspectiveZ(kCurrent); }
    double getPerspectiveZ(const VTLayoutKey& key) const;
    void setPerspectiveZ(double dValue) { setPerspectiveZ(dValue, kCurrent); }
    void setPerspectiveZ(double dValue, const VTLayoutKey& key);

    VTTimelineManager* getTimelineManager() const { return m_pTimelineManager.get(); }
    // Elements and timelines follow.
    void setCurrentLayoutID(const VTLayoutKey& key) override;

private:
    int m_nNextChildId = 1;
    bool m_bAutoAdvance = true;
    int m_nTsType = VT::TransitionNone;
    int m_nTsDuration = 0;
    int m_nTsEasing = 0;
    int m_nTsDirection = 0;
    std::unique_ptr<VTTimelineManager> m_pTimelineManager;
    VTSceneManager* m_pSceneManager = nullptr;
};
