#pragma once

#include "VTLayoutKey.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QSize>
#include <QStringList>

#include <memory>

class QIODevice;
class VTBreakpointManager;
class VTEventListenerList;
class VTFunctionManager;
class VTResource;
class VTResourceManager;
class VTScene;
class VTSceneManager;

// A self-contained animation: a stage size, its scenes, breakpoints and events. The project is
// the top-level symbol; every symbol resource holds one more.
//
// Keys of the symbol's object that this version does not know are kept as read and written back
// unchanged, so a file from a newer version loses nothing by being opened and saved here.
class VTSymbol
{
    Q_DECLARE_TR_FUNCTIONS(VTSymbol)
public:
    // Qt::AlignHCenter: the stage sits centred at the top of the page.
    static constexpr int kDefaultAlignment = 4;

    VTSymbol();
    virtual ~VTSymbol();
    VTSymbol(const VTSymbol&) = delete;
    VTSymbol& operator=(const VTSymbol&) = delete;

    virtual void setAlignment(int nAlign) { m_nAlign = nAlign; }
    int getAlignment() const { return m_nAlign; }

    // Reads `scripts`, `resources` (into the resource manager, asking whether to go on when
    // files are missing), the symbols of symbol resources, then the symbol's own keys. A symbol
    // that holds an instance of itself, at any depth, refuses the whole load. Notes go to
    // getLoadProblems(), which the caller clears before a load.
    virtual bool loadData(const QJsonObject& object);
    // Writes `resources`, `scripts` and the symbol's own keys.
    virtual bool saveData(QJsonObject& object) const;

    // The resources that the scenes use, as keys; what they map to is for the caller.
    virtual void prepareResourceMap(QMap<VTResource*, VTResource*>& map) const;
    // Points the scenes' references at the resources the map gives.
    virtual void updateResourceMap(const QMap<VTResource*, VTResource*>& map);
    // Take up and give back the uses that the scenes hold on resources.
    void attachResources();
    void detachResources();

    // A copy for paste and import: the same keys, copies of the scenes, the same managers. The
    // caller owns it.
    VTSymbol* clone() const;

    // The project's managers, shared by the document and all its symbols; not owned.
    VTResourceManager* getResourceManager() const { return m_pResourceManager; }
    void setResourceManager(VTResourceManager* pManager) { m_pResourceManager = pManager; }
    VTFunctionManager* getFunctionManager() const { return m_pFunctionManager; }
    void setFunctionManager(VTFunctionManager* pManager) { m_pFunctionManager = pManager; }
    VTSceneManager* getSceneManager() const { return m_pSceneManager.get(); }
    // The symbol's own event listeners; never null.
    VTEventListenerList* getEventListenerList() const { return m_pEvents.get(); }

    // A symbol's data file: the compact JSON of saveDataWithoutResource.
    bool saveTempData(QIODevice* pDevice) const;
    bool loadTempData(QIODevice* pDevice);
    // The object the player gets for a symbol resource. bStage: the canvas page's form, the
    // current layout alone and no events.
    void serializeToExport(QJsonObject& object, bool bStage) const;

    // The symbol's own keys, without resources and scripts: the form of a symbol's data file.
    // The scenes read before are replaced.
    bool loadDataWithoutResource(const QJsonObject& object);
    void saveDataWithoutResource(QJsonObject& object) const;

    // What the last load dropped or replaced by a default, one readable line each.
    QStringList getLoadProblems() const { return m_lstLoadProblems; }
    void clearLoadProblems() { m_lstLoadProblems.clear(); }
    void addLoadProblem(const QString& text) { m_lstLoadProblems.append(text); }

    // Keys read but not known to this version, written back as they came.
    QJsonObject getPreservedData() const { return m_joPreserved; }
    // The symbol's keys, in the order of the file format.
    static QStringList getSymbolKeys();

    int getWidth() const { return m_nWidth; }
    void setWidth(int nWidth) { m_nWidth = nWidth; }
    int getHeight() const { return m_nHeight; }
    void setHeight(int nHeight) { m_nHeight = nHeight; }
    QString getAuthor() const { return m_strAuthor; }
    void setAuthor(const QString& author) { m_strAuthor = author; }
    QDateTime getCreated() const { return m_dtCreated; }
    void setCreated(const QDateTime& time) { m_dtCreated = time; }
    QDateTime getModified() const { return m_dtModified; }
    void setModified(const QDateTime& time) { m_dtModified = time; }
    QString getModifiedBy() const { return m_strModifiedBy; }
    void setModifiedBy(const QString& name) { m_strModifiedBy = name; }
    QString getTitle() const { return m_strTitle; }
    void setTitle(const QString& title) { m_strTitle = title; }
    QString getDescription() const { return m_strDescription; }
    void setDescription(const QString& description) { m_strDescription = description; }
    QString getKeywords() const { return m_strKeywords; }
    void setKeywords(const QString& keywords) { m_strKeywords = keywords; }
    bool isAutofit() const { return m_bAutofit; }
    void setAutofit(bool bAutofit) { m_bAutofit = bAutofit; }
    // Responsive layouts. The manager is owned by the symbol and never null. The setters below
    // change it and then pass the layout to show to every scene; whoever changes the manager
    // directly calls updateCurrentLayoutId() for that.
    VTBreakpointManager* getBreakpointManager() const { return m_pBreakpointManager.get(); }
    bool isResponsiveMode() const;
    void setResponsiveMode(bool bResponsive);
    // Whether the symbol has any breakpoint, and so layouts besides the base.
    bool hasResponsiveLayout() const;
    // bForShow: what the scenes show, the base layout while responsive mode is off; otherwise the
    // stored pair, which survives leaving the mode.
    VTLayoutKey getCurrentLayoutId(bool bForShow) const;
    // (-1, -1) names no layout and changes nothing.
    void setCurrentLayoutId(const VTLayoutKey& key);
    void setCurrentLayoutId(int nHorizontalId, int nVerticalId)
    {
        setCurrentLayoutId(VTLayoutKey(nHorizontalId, nVerticalId));
    }
    // Passes the layout for show to every scene and through them to all elements.
    void updateCurrentLayoutId();
    // A stage size that lies inside the layout's ranges, the present size where it does. The base
    // layout gets room above every breakpoint. (-1, -1) is the layout for show.
    QSize getBestSize(const VTLayoutKey& key) const;

    // Counts for summaries: scenes, and elements below the scenes.
    int getSceneCount() const;
    int getElementCount() const;

    // The symbol resources placed in the scenes, at any depth of their trees.
    QList<VTResource*> getPlacedSymbolResources() const;
    // The names along the first chain of symbol resources of the manager that leads back to where
    // it started (A, B, A); empty when no symbol holds itself.
    static QStringList findSelfContainingSymbol(const VTResourceManager& manager);

protected:
    QStringList* getLoadProblemList() { return &m_lstLoadProblems; }
    // For subclasses that model some keys themselves: those must not be written back raw.
    void dropPreservedKeys(const QStringList& keys);

private:
    void readDate(const QJsonObject& object, const QString& key, QDateTime& target);

    QString m_strAuthor;
    QDateTime m_dtCreated;
    QDateTime m_dtModified;
    QString m_strModifiedBy;
    int m_nWidth = 800;
    int m_nHeight = 600;
    int m_nAlign = kDefaultAlignment;
    QString m_strTitle;
    QString m_strDescription;
    QString m_strKeywords;
    bool m_bAutofit = false;
    std::unique_ptr<VTBreakpointManager> m_pBreakpointManager;
    std::unique_ptr<VTEventListenerList> m_pEvents;
    std::unique_ptr<VTSceneManager> m_pSceneManager;
    VTResourceManager* m_pResourceManager = nullptr;
    VTFunctionManager* m_pFunctionManager = nullptr;
    QJsonObject m_joPreserved;
    QStringList m_lstLoadProblems;
};
