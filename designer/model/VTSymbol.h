#pragma once

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QStringList>

class QIODevice;
class VTResource;
class VTFunctionManager;
class VTResourceManager;

// A self-contained animation: a stage size, its scenes, breakpoints and events. The project is
// the top-level symbol.
//
// Only the stage size is modelled here so far. Every other key of the symbol's object is kept as
// it was read and written back unchanged, so that opening and saving never loses content that
// this version does not edit yet; each part that gains a real model takes its keys out of the
// preserved object. Values of a known key with the wrong type are dropped and noted in the load
// problems, since writing them back would only carry the damage along.
class VTSymbol
{
    Q_DECLARE_TR_FUNCTIONS(VTSymbol)
public:
    VTSymbol();
    virtual ~VTSymbol();
    VTSymbol(const VTSymbol&) = delete;
    VTSymbol& operator=(const VTSymbol&) = delete;

    int getWidth() const { return m_nWidth; }
    void setWidth(int nWidth) { m_nWidth = nWidth; }
    int getHeight() const { return m_nHeight; }
    void setHeight(int nHeight) { m_nHeight = nHeight; }

    // Reads `scripts`, `resources` (into the resource manager, asking whether to go on when
    // files are missing), the symbols of symbol resources, then the symbol's own keys. Notes go
    // to getLoadProblems(), which the caller clears before a load.
    virtual bool loadData(const QJsonObject& object);
    // Writes `resources`, `scripts` and the symbol's own keys.
    virtual bool saveData(QJsonObject& object) const;

    // The resources that the symbol's content uses, as keys; what they map to is for the caller.
    virtual void prepareResourceMap(QMap<VTResource*, VTResource*>& map) const { Q_UNUSED(map) }
    // Points the content's references at the resources the map gives.
    virtual void updateResourceMap(const QMap<VTResource*, VTResource*>& map) { Q_UNUSED(map) }
    // Take up and give back the uses that the symbol's content holds on resources.
    void attachResources() {}
    void detachResources() {}

    // The project's managers, shared by the document and all its symbols; not owned.
    VTResourceManager* getResourceManager() const { return m_pResourceManager; }
    void setResourceManager(VTResourceManager* pManager) { m_pResourceManager = pManager; }
    VTFunctionManager* getFunctionManager() const { return m_pFunctionManager; }
    void setFunctionManager(VTFunctionManager* pManager) { m_pFunctionManager = pManager; }

    // A symbol's data file: the compact JSON of saveDataWithoutResource.
    bool saveTempData(QIODevice* pDevice) const;
    bool loadTempData(QIODevice* pDevice);
    // The object the player gets for a symbol resource.
    void serializeToExport(QJsonObject& object, bool bStage) const;

    // The symbol's own keys, without resources and scripts: the form of a symbol's data file.
    bool loadDataWithoutResource(const QJsonObject& object);
    void saveDataWithoutResource(QJsonObject& object) const;

    // What the last load dropped or replaced by a default, one readable line each.
    QStringList getLoadProblems() const { return m_lstLoadProblems; }
    void clearLoadProblems() { m_lstLoadProblems.clear(); }

    // Counts of the content that is still kept as raw JSON.
    int getRawSceneCount() const;
    // Keys read but not modelled yet, written back as they came.
    QJsonObject getPreservedData() const { return m_joPreserved; }

    // The symbol's keys, in the order of the file format.
    static QStringList getSymbolKeys();

    void addLoadProblem(const QString& text) { m_lstLoadProblems.append(text); }

protected:
    QStringList* getLoadProblemList() { return &m_lstLoadProblems; }
    // For subclasses that model some keys themselves: those must not be written back raw.
    void dropPreservedKeys(const QStringList& keys);

private:
    int m_nWidth = 800;
    int m_nHeight = 600;
    VTResourceManager* m_pResourceManager = nullptr;
    VTFunctionManager* m_pFunctionManager = nullptr;
    QJsonObject m_joPreserved;
    QStringList m_lstLoadProblems;
};
