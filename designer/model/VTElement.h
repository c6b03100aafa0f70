#pragma once

#include <atomic>

#include "VTElementGeometry.h"
#include "VTElementProperty.h"
#include "VTEventListenerList.h"
#include "VTLayoutKey.h"
#include "VTMatrix4x4.h"
#include "VTTypes.h"

#include <QList>
#include <QMap>
#include <QPointF>
#include <QRectF>
#include <QSet>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVector>

class QJsonObject;
class VTBackground;
class VTBorder;
class VTClip;
class VTFilterEffect;
class VTResource;
class VTResourceManager;
class VTScene;
class VTShadow;

// A node of a scene's tree and the base of every stage object; a plain element is a group.
//
// The element keeps what holds for all responsive layouts (identity, place in the tree, edit
// state, event listeners) and one property block per layout for everything else. Values in the
// blocks are stored in their own units; the computed forms turn them into pixels through the
// parent, which is why size and position questions go through the element and not the block.
//
// Ownership: the element owns its blocks and its children through Qt parenthood. The tree parent
// is kept apart from the QObject parent (getParent(), not parent()), so that an element handed out
// by detachChild belongs to the caller and can come back, as undo needs.
//
// Every layout-dependent call takes a VTLayoutKey; (-1, -1), the default, stands for the current
// layout. A layout without a block reads as 0, false or empty, and writes to it are dropped.
class VTElement : public VTEventListenerList
{
    Q_OBJECT
    // What animation writes through the element: the values of the current layout's block.
    Q_PROPERTY(double m_dPositionX READ getPositionX WRITE setPositionX)
    Q_PROPERTY(double m_dPositionY READ getPositionY WRITE setPositionY)
    Q_PROPERTY(double m_dSizeW READ getSizeW WRITE setSizeW)
    Q_PROPERTY(double m_dSizeH READ getSizeH WRITE setSizeH)
    Q_PROPERTY(QPointF m_ptTranslateXY READ getTranslateXY WRITE setTranslateXY)
    Q_PROPERTY(double m_dScaleX READ getScaleX WRITE setScaleX)
    Q_PROPERTY(double m_dScaleY READ getScaleY WRITE setScaleY)
    Q_PROPERTY(double m_dScaleZ READ getScaleZ WRITE setScaleZ)
    Q_PROPERTY(double m_dSkewX READ getSkewX WRITE setSkewX)
    Q_PROPERTY(double m_dSkewY READ getSkewY WRITE setSkewY)
    Q_PROPERTY(double m_dRotateX READ getRotateX WRITE setRotateX)
    Q_PROPERTY(double m_dRotateY READ getRotateY WRITE setRotateY)
    Q_PROPERTY(double m_dRotateZ READ getRotateZ WRITE setRotateZ)
    Q_PROPERTY(double m_dOriginRatioX READ getOriginRatioX WRITE setOriginRatioX)
    Q_PROPERTY(double m_dOriginRatioY READ getOriginRatioY WRITE setOriginRatioY)
    Q_PROPERTY(double m_dOriginZ READ getOriginZ WRITE setOriginZ)
    Q_PROPERTY(double m_dTranslateX READ getTranslateX WRITE setTranslateX)
    Q_PROPERTY(double m_dTranslateY READ getTranslateY WRITE setTranslateY)
    Q_PROPERTY(double m_dTranslateZ READ getTranslateZ WRITE setTranslateZ)
    Q_PROPERTY(double m_dOpacity READ getOpacity WRITE setOpacity)
    Q_PROPERTY(int m_nDisplay READ getDisplay WRITE setDisplay)
public:
    // Targets of symbol actions that are no element of the tree.
    enum SpecialID : int
    {
        CurrentSymbolID = VTEventListener::kCurrentSymbolId,
        ParentSymbolID = VTEventListener::kParentSymbolId,
        DocumentID = VTEventListener::kDocumentId,
    };

    static constexpr VTLayoutKey kCurrent = VTLayoutKey::current();
    // Files nest children no deeper than this; deeper ones are left out on reading.
    static constexpr int kMaxTreeDepth = 256;
    // Read limits of one element's lists, far above anything made by hand.
    static constexpr int kMaxChildCount = 100000;
    static constexpr int kMaxLayoutCount = 4096;

    VTElement();
    // A deep copy for paste and duplication: id, name, visibility, lock and aspect lock, clones of
    // every block and child. The copy is not selected, has no parent, shows expanded, and its
    // backgrounds are detached until it is added to a project (attachResources).
    VTElement(const VTElement& other);
    VTElement& operator=(const VTElement&) = delete;
    ~VTElement() override;

    // Own listeners first, then the children's.
    void prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                            const VTFunctionManager* pSourceManager) const override;
    void updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                           const VTFunctionManager* pSourceManager) override;
    // Re-aims element_id of the listeners here and below after a paste: an id of the map takes
    // the id of the mapped copy; other ids survive only when pScene is given and the scene holds
    // them. The lookup runs in the scene this element sits in, which is the destination once the
    // paste has added it; pScene only says whether that lookup is wanted.
    void updateTargetIds(const QMap<int, VTElement*>& mapElements, VTScene* pScene) override;
    // Pointer events, 100 to 111.
    bool isSupportedEventType(VTEventListener::EventType nEventType) const override;

    virtual VTElement* clone() const;
    virtual VT::ElementType getType() const { return VT::GroupElement; }
    // A base layout block of the element's kind, if there is none yet.
    virtual void initDefault();
    // Gives ids to the subtree: an id below 1 takes nNextId, which then grows; an id of its own
    // raises nNextId above it, so an element brought back by undo keeps its id.
    virtual void updateId(int& nNextId);
    // Makes the names of the subtree unique in the scene: an empty name becomes "<Kind>_1",
    // "<Kind>_2"...; a name in use elsewhere gets "_1", "_2"... appended.
    virtual void updateName();

    // Tree. setParent only records the parent; addChild and detachChild keep both sides in step.
    virtual void setParent(VTElement* pParent) { m_pParent = pParent; }
    virtual VTElement* getParent() const { return m_pParent; }
    // Takes ownership. An index from 0 to count - 1 inserts there, any other appends; the child
    // follows this element's current layout. A child of another element is detached from it
    // first. Returns the index, or -1 for null, for this element or one of its ancestors.
    virtual int addChild(VTElement* pChild, int nIndex = -1);
    // Hands the child over to the caller; returns its former index, or -1 if it is not a child.
    virtual int detachChild(VTElement* pChild);
    virtual const QList<VTElement*>& getChildren() const { return m_lstChildren; }
    virtual VTElement* getRoot() const;
    // The selected elements below this one, in tree order; nothing unless this one is selected.
    // bTopLevelOnly: only the selected children themselves; otherwise each child's own selection
    // stands for it when it has one.
    virtual QList<VTElement*> getSelectedElements(bool bTopLevelOnly) const;
    virtual int getSelectedElementsCount() const;

    // The computed size of the parent, which percent values refer to; 0 without parent. A scene
    // answers with its symbol's size.
    virtual double getParentComputedW() const { return getParentComputedW(kCurrent); }
    virtual double getParentComputedH() const { return getParentComputedH(kCurrent); }
    virtual double getParentComputedW(const VTLayoutKey& key) const;
    virtual double getParentComputedH(const VTLayoutKey& key) const;
    virtual void setComputedX(double dValue) { setComputedX(dValue, kCurrent); }
    virtual void setComputedX(double dValue, const VTLayoutKey& key);
    // Where the content box starts inside the element: the border width, when there is a border.
    virtual double getContentBoxOffset(const VTLayoutKey& key) const;
    double getContentBoxOffset() const { return getContentBoxOffset(kCurrent); }

    // Resources used by the subtree (background images), as keys of the map; what they map to is
    // for the caller. updateResourceMap points the references at the mapped resources; an absent
    // key, a null value or the same resource changes nothing.
    virtual void prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const;
    virtual void updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources);
    // The subtree enters or leaves the project: backgrounds of all layouts take or drop their
    // resource uses. A removed element stays alive for undo, detached.
    virtual void attachResources();
    virtual void detachResources();

    // The project form.
    virtual void serialize(QJsonObject& json) const;
    // The player's compact form. bSingleLayout: the stage's form, the current layout alone;
    // otherwise every layout goes to "rp". bWithEvents: listeners are written (never for the
    // stage).
    virtual void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const;
    // "r" and "t" of the current layout, which the stage asks for alone.
    void serializeGeomToExport(QJsonObject& json) const;
    // Replaces the element's content with that of a file. Damaged values fall back to defaults,
    // and children that cannot be made or read are left out; each case adds a readable line to
    // pProblems. Returns false only when the element itself cannot stand, so that the parent
    // leaves it out; a plain element always stands.
    virtual bool parse(const QJsonObject& json, VTResourceManager* pManager,
                       QStringList* pProblems = nullptr);
    // Fonts of all layouts of the subtree.
    virtual void getExportedFontInfo(QList<VTExportedFontInfo>& lstFonts) const;
    // Stores the key and passes it to the subtree. (-1, -1) is no layout and is ignored.
    virtual void setCurrentLayoutID(const VTLayoutKey& key);
    // Whether any layout of the subtree transforms in depth, so the player must keep 3D.
    virtual bool isPreserved3D() const;

    // Identity.
    int getId() const { return m_nId; }
    void setId(int nId) { m_nId = nId; }
    // -1 for the whole subtree, so that a pasted copy gets new ids at the next updateId.
    void resetId();
    QString getName() const { return m_strName; }
    void setName(const QString& name) { m_strName = name; }
    // The default name of the kind, the stem of generated names.
    QString getKindName() const { return mapType2DefaultName(getType()); }
    static QString mapType2DefaultName(int nType);
    // The nearest element of kind scene, this one included; null outside a scene. Given as an
    // element so that the tree does not depend on the scene class.
    VTElement* getScene() const;
    // Whether an element below this one, other than pExcept, has the name; exact comparison.
    bool isDuplicatedElemName(const QString& name, const VTElement* pExcept) const;
    VTElement* getChildByIndex(int nIndex) const;
    int getChildIndex(const VTElement* pChild) const;
    VTElement* getElementById(int nId, bool bIncludeSelf) const;
    // Whether this element is an ancestor of pElement, at any depth.
    bool isParentOf(const VTElement* pElement) const;
    // The nearest element that holds both, searched no higher than this element's scene.
    VTElement* getCommonAncestor(const VTElement* pOther) const;

    // Edit state.
    bool isVisible() const { return m_bVisible; }
    void setVisible(bool bVisible) { m_bVisible = bVisible; }
    bool isLocked() const { return m_bLocked; }
    void setLocked(bool bLocked) { m_bLocked = bLocked; }
    // A locked parent locks, a hidden parent hides, down the subtree. Showing or unlocking again
    // is done one element at a time.
    void updateLockAndVisibility();
    bool isSelected() const { return m_bSelected; }
    void setSelected(bool bSelected)
    {
        if (m_bSelected != bSelected)
            s_nTreeEpoch.fetch_add(1, std::memory_order_relaxed);
        m_bSelected = bSelected;
    }
    // Changes whenever any element anywhere is selected, deselected, inserted, taken out, made or
    // destroyed: an unchanged value means every tree and its selection are as they were, so a
    // walk over a tree may be answered from the last one.
    static quint64 getTreeEpoch() { return s_nTreeEpoch.load(std::memory_order_relaxed); }
    bool isAspectRatioLocked() const { return m_bAspectRatioLocked; }
    void setLockAspectRatio(bool bLocked) { m_bAspectRatioLocked = bLocked; }
    bool isExpandedKeyframe() const { return m_bExpandedKeyframe; }
    void setExpandedKeyframe(bool bExpanded) { m_bExpandedKeyframe = bExpanded; }
    bool isExpandedTimeline() const { return m_bExpandedTimeline; }
    void setExpandedTimeline(bool bExpanded) { m_bExpandedTimeline = bExpanded; }
    bool isExpandedElementPane() const { return m_bExpandedElementPane; }
    void setExpandedElementPane(bool bExpanded) { m_bExpandedElementPane = bExpanded; }

    // Layouts.
    VTLayoutKey getCurrentLayoutID() const { return m_currentLayoutId; }
    // (-1, -1) becomes the current layout; any other key stands.
    VTLayoutKey resolveLayoutKey(const VTLayoutKey& key) const
    {
        return key.isCurrent() ? m_currentLayoutId : key;
    }
    VTElementProperty* getLayoutProperty(const VTLayoutKey& key = kCurrent) const;
    // In key order: by horizontal id, then vertical id.
    QList<VTLayoutKey> getAllLayoutIds() const { return m_mapLayoutProperties.keys(); }
    // Takes ownership. False, leaving the block to the caller, for a null block, one held already,
    // a layout that has a block and a key that names no layout.
    bool addLayoutProperty(VTElementProperty* pBlock, const VTLayoutKey& key = kCurrent);
    // Puts the block in place and hands back the one it replaces (null if none). A block that
    // addLayoutProperty would refuse for other reasons than an existing one changes nothing.
    VTElementProperty* updateLayoutProperty(VTElementProperty* pBlock, const VTLayoutKey& key = kCurrent);
    // Hands the block over to the caller; null if there is none.
    VTElementProperty* removeLayoutProperty(const VTLayoutKey& key = kCurrent);
    // Fits the blocks to the wanted layouts, the base always among them: blocks of other layouts
    // are removed, and with bWithBase false every block but the source's; each wanted layout
    // without a block gets a copy of the source's block. The source's own block stays in any case.
    // Without a source block nothing changes.
    void prepareLayoutProperty(QList<VTLayoutKey> lstKeys, bool bWithBase, const VTLayoutKey& sourceKey);
    // A new block of the element's kind, which the caller owns; null when the kind has no block
    // class.
    VTElementProperty* createLayoutBlock() const;

    // Values of one layout's block.
    double getPositionX(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getPositionX);
    }
    void setPositionX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setPositionX, dValue);
    }
    double getPositionY(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getPositionY);
    }
    void setPositionY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setPositionY, dValue);
    }
    double getSizeW(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getSizeW);
    }
    void setSizeW(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setSizeW, dValue);
    }
    double getSizeH(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getSizeH);
    }
    void setSizeH(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setSizeH, dValue);
    }
    double getOpacity(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getOpacity);
    }
    void setOpacity(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setOpacity, dValue);
    }
    double getOriginRatioX(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getOriginRatioX);
    }
    void setOriginRatioX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setOriginRatioX, dValue);
    }
    double getOriginRatioY(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getOriginRatioY);
    }
    void setOriginRatioY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setOriginRatioY, dValue);
    }
    double getOriginZ(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getOriginZ);
    }
    void setOriginZ(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setOriginZ, dValue);
    }
    double getTranslateX(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getTranslateX);
    }
    void setTranslateX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setTranslateX, dValue);
    }
    double getTranslateY(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getTranslateY);
    }
    void setTranslateY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setTranslateY, dValue);
    }
    double getTranslateZ(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getTranslateZ);
    }
    void setTranslateZ(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setTranslateZ, dValue);
    }
    QPointF getTranslateXY(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getTranslateXY);
    }
    void setTranslateXY(const QPointF& ptValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setTranslateXY, ptValue);
    }
    double getScaleX(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getScaleX);
    }
    void setScaleX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setScaleX, dValue);
    }
    double getScaleY(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getScaleY);
    }
    void setScaleY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setScaleY, dValue);
    }
    double getScaleZ(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getScaleZ);
    }
    void setScaleZ(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setScaleZ, dValue);
    }
    double getSkewX(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getSkewX);
    }
    void setSkewX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setSkewX, dValue);
    }
    double getSkewY(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getSkewY);
    }
    void setSkewY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setSkewY, dValue);
    }
    double getRotateX(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getRotateX);
    }
    void setRotateX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setRotateX, dValue);
    }
    double getRotateY(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getRotateY);
    }
    void setRotateY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setRotateY, dValue);
    }
    double getRotateZ(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getRotateZ);
    }
    void setRotateZ(double dValue, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setRotateZ, dValue);
    }
    int getCoordinateType(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getCoordinateType);
    }
    void setCoordinateType(int nType, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setCoordinateType, nType);
    }
    int getUnitW(const VTLayoutKey& key = kCurrent) const { return read(key, &VTElementProperty::getUnitW); }
    void setUnitW(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setUnitW, nUnit);
    }
    int getUnitH(const VTLayoutKey& key = kCurrent) const { return read(key, &VTElementProperty::getUnitH); }
    void setUnitH(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setUnitH, nUnit);
    }
    int getUnitX(const VTLayoutKey& key = kCurrent) const { return read(key, &VTElementProperty::getUnitX); }
    void setUnitX(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setUnitX, nUnit);
    }
    int getUnitY(const VTLayoutKey& key = kCurrent) const { return read(key, &VTElementProperty::getUnitY); }
    void setUnitY(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setUnitY, nUnit);
    }
    QString getCursorValue(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getCursorValue);
    }
    void setCursorValue(const QString& value, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setCursorValue, value);
    }
    int getOverflowType(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getOverflowType);
    }
    void setOverflowType(int nType, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setOverflowType, nType);
    }
    int getDisplay(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getDisplay);
    }
    void setDisplay(int nDisplay, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setDisplay, nDisplay);
    }
    QString getTitle(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getTitle);
    }
    void setTitle(const QString& title, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setTitle, title);
    }
    int getTabIndex(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getTabIndex);
    }
    void setTabIndex(int nIndex, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setTabIndex, nIndex);
    }
    QString getClassName(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getClassName);
    }
    void setClassName(const QString& name, const VTLayoutKey& key = kCurrent)
    {
        write(key, &VTElementProperty::setClassName, name);
    }
    VTBorder* getBorder(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getBorder);
    }
    VTBackground* getBackground(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getBackground);
    }
    VTShadow* getShadow(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getShadow);
    }
    VTFilterEffect* getFilter(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getFilter);
    }
    VTClip* getClip(const VTLayoutKey& key = kCurrent) const
    {
        return read(key, &VTElementProperty::getClip);
    }

    // Inheritance from the base layout. A layout without a block inherits nothing.
    bool isInherit(int nProperty, const VTLayoutKey& key = kCurrent) const;
    // Whether every property inherits in that layout.
    bool isInherit(const VTLayoutKey& key) const;
    void setInherit(int nProperty, bool bInherit, const VTLayoutKey& key = kCurrent);
    void setInherits(bool bInherit, const VTLayoutKey& key = kCurrent);
    QMap<int, bool> getInherits(const VTLayoutKey& key = kCurrent) const;
    // Applies each entry as setInherit would and returns what those entries were before, so that
    // applying the result undoes the call. Empty, changing nothing, without a block.
    QMap<int, bool> addInherits(const QMap<int, bool>& mapInherits, const VTLayoutKey& key = kCurrent);
    // Replaces the layout's whole map and returns the one it replaced. Empty, changing nothing,
    // without a block.
    QMap<int, bool> setInherits(const QMap<int, bool>& mapInherits, const VTLayoutKey& key = kCurrent);

    // Pixels. Positions are measured from the edges that the coordinate type names.
    double getComputedX(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getComputedX(*this, key);
    }
    double getComputedY(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getComputedY(*this, key);
    }
    void setComputedY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setComputedY(*this, dValue, key);
    }
    double getComputedW(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getComputedW(*this, key);
    }
    void setComputedW(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setComputedW(*this, dValue, key);
    }
    double getComputedH(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getComputedH(*this, key);
    }
    void setComputedH(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setComputedH(*this, dValue, key);
    }
    // Size including the border.
    double getComputedTotalW(const VTLayoutKey& key = kCurrent) const
    {
        return getComputedW(key) + 2.0 * getContentBoxOffset(key);
    }
    void setComputedTotalW(double dValue, const VTLayoutKey& key = kCurrent)
    {
        setComputedW(dValue - 2.0 * getContentBoxOffset(key), key);
    }
    double getComputedTotalH(const VTLayoutKey& key = kCurrent) const
    {
        return getComputedH(key) + 2.0 * getContentBoxOffset(key);
    }
    void setComputedTotalH(double dValue, const VTLayoutKey& key = kCurrent)
    {
        setComputedH(dValue - 2.0 * getContentBoxOffset(key), key);
    }
    QSizeF getComputedSize(const VTLayoutKey& key = kCurrent) const
    {
        return QSizeF(getComputedW(key), getComputedH(key));
    }
    // From the parent's left and top edges, whatever the coordinate type.
    double getComputedLeft(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getComputedLeft(*this, key);
    }
    void setComputedLeft(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setComputedLeft(*this, dValue, key);
    }
    double getComputedTop(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getComputedTop(*this, key);
    }
    void setComputedTop(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setComputedTop(*this, dValue, key);
    }
    QPointF getComputedLeftTop(const VTLayoutKey& key = kCurrent) const
    {
        return QPointF(getComputedLeft(key), getComputedTop(key));
    }
    void setComputedLeftTop(const QPointF& ptValue, const VTLayoutKey& key = kCurrent);
    // Summed over the ancestors; the IncludeTranslate forms add their translations too.
    double getAbsoluteLeft(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getAbsoluteLeft(*this, key, false);
    }
    void setAbsoluteLeft(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setAbsoluteLeft(*this, dValue, key);
    }
    double getAbsoluteTop(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getAbsoluteTop(*this, key, false);
    }
    void setAbsoluteTop(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setAbsoluteTop(*this, dValue, key);
    }
    QPointF getAbsoluteLeftTop(const VTLayoutKey& key = kCurrent) const
    {
        return QPointF(getAbsoluteLeft(key), getAbsoluteTop(key));
    }
    void setAbsoluteLeftTop(const QPointF& ptValue, const VTLayoutKey& key = kCurrent);
    double getAbsoluteLeftIncludeTranslate(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getAbsoluteLeft(*this, key, true);
    }
    double getAbsoluteTopIncludeTranslate(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getAbsoluteTop(*this, key, true);
    }
    // The absolute position in the element's own position unit: a share of the root's size for
    // percent positions.
    double getGlobalPositionX(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getGlobalPositionX(*this, key);
    }
    void setGlobalPositionX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setGlobalPositionX(*this, dValue, key);
    }
    double getGlobalPositionY(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getGlobalPositionY(*this, key);
    }
    void setGlobalPositionY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        VTElementGeometry::setGlobalPositionY(*this, dValue, key);
    }
    QPointF getGlobalPosition(const VTLayoutKey& key = kCurrent) const
    {
        return QPointF(getGlobalPositionX(key), getGlobalPositionY(key));
    }
    void setGlobalPosition(const QPointF& ptValue, const VTLayoutKey& key = kCurrent);
    // The element's box with its border, through its transforms, in scene coordinates.
    QRectF getBoundaryRect(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getBoundaryRect(*this, key);
    }

    // The keyframe property that the horizontal position animates: Left or Right; and Top or
    // Bottom for the vertical one.
    int getXKeyframeType(const VTLayoutKey& key = kCurrent) const;
    int getYKeyframeType(const VTLayoutKey& key = kCurrent) const;
    // The coordinate type measured from the other side horizontally, or vertically.
    static int changeCoordinateX(int nType);
    static int changeCoordinateY(int nType);

    // Transforms; see VTElementGeometry for the frames they map between.
    VTMatrix4x4 getTransformMatrix(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getTransformMatrix(getLayoutProperty(key));
    }
    VTMatrix4x4 getInversedTransformMatrix(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getInversedTransformMatrix(getLayoutProperty(key));
    }
    VTMatrix4x4 getTransformToParent(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getTransformToParent(*this, key);
    }
    VTMatrix4x4 getTransformFromParent(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getTransformFromParent(*this, key);
    }
    VTMatrix4x4 getTransformToScene(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getTransformToScene(*this, key);
    }
    VTMatrix4x4 getTransformFromScene(const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getTransformFromScene(*this, key);
    }
    // From this element's frame to pTarget's. pCommonAncestor saves the lookup when the caller
    // knows it; null looks it up.
    VTMatrix4x4 getTransformToElement(const VTElement* pTarget, const VTLayoutKey& key = kCurrent,
                                      const VTElement* pCommonAncestor = nullptr) const
    {
        return VTElementGeometry::getTransformToElement(*this, pTarget, key, pCommonAncestor);
    }
    // Where this element's children are placed from, in pTarget's frame.
    QPointF getContentOffsetToElement(const VTElement* pTarget, const VTLayoutKey& key = kCurrent) const;
    // The transform to pNewParent's frame that keeps the element where it is on the stage.
    VTMatrix4x4 getTransformMatrixWhenReparent(const VTElement* pNewParent,
                                               const VTLayoutKey& key = kCurrent) const
    {
        return VTElementGeometry::getTransformMatrixWhenReparent(*this, pNewParent, key);
    }

    // Names this element and its subtree so that none is in setTaken, adding each name given; a
    // scene names all its children against one set.
    void nameSubtree(QSet<QString>& setTaken);

private:
    // Every name below pRoot, pSkip's subtree left out.
    static void collectNames(const VTElement* pRoot, const VTElement* pSkip, QSet<QString>& setNames);
    template <typename T> T read(const VTLayoutKey& key, T (VTElementProperty::*fnRead)() const) const
    {
        const VTElementProperty* pBlock = getLayoutProperty(key);
        return pBlock ? (pBlock->*fnRead)() : T();
    }
    template <typename Arg, typename Value>
    void write(const VTLayoutKey& key, void (VTElementProperty::*fnWrite)(Arg), const Value& value)
    {
        if (VTElementProperty* pBlock = getLayoutProperty(key))
            (pBlock->*fnWrite)(value);
    }

    void deleteAllLayoutProperties();
    void deleteAllChildren();
    void removeAllEventListeners();
    void writeLayoutsToExport(QJsonObject& json) const;

    int m_nId = -1;
    QString m_strName;
    bool m_bVisible = true;
    bool m_bLocked = false;
    bool m_bSelected = false;
    // Projects load on worker threads too.
    static std::atomic<quint64> s_nTreeEpoch;
    bool m_bAspectRatioLocked = false;
    bool m_bExpandedKeyframe = true;
    bool m_bExpandedTimeline = true;
    bool m_bExpandedElementPane = true;
    VTElement* m_pParent = nullptr;
    QList<VTElement*> m_lstChildren;
    VTLayoutKey m_currentLayoutId = VTLayoutKey::base();
    QMap<VTLayoutKey, VTElementProperty*> m_mapLayoutProperties;
};
