#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

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
public:
    VTSymbol();
    virtual ~VTSymbol();
    VTSymbol(const VTSymbol&) = delete;
    VTSymbol& operator=(const VTSymbol&) = delete;

    int getWidth() const { return m_nWidth; }
    void setWidth(int nWidth) { m_nWidth = nWidth; }
    int getHeight() const { return m_nHeight; }
    void setHeight(int nHeight) { m_nHeight = nHeight; }

    // Reads `scripts`, `resources`, then the symbol's own keys. Notes go to getLoadProblems(),
    // which the caller clears before a load.
    virtual bool loadData(const QJsonObject& object);
    // Writes `resources`, `scripts` and the symbol's own keys.
    virtual bool saveData(QJsonObject& object) const;

    // The symbol's own keys, without resources and scripts: the form of a symbol's data file.
    bool loadDataWithoutResource(const QJsonObject& object);
    void saveDataWithoutResource(QJsonObject& object) const;

    // What the last load dropped or replaced by a default, one readable line each.
    QStringList getLoadProblems() const { return m_lstLoadProblems; }
    void clearLoadProblems() { m_lstLoadProblems.clear(); }

    // Counts of the content that is still kept as raw JSON.
    int getRawSceneCount() const;
    int getRawResourceCount() const { return m_jaResources.size(); }
    int getRawScriptCount() const { return m_joScripts.size(); }
    // Keys read but not modelled yet, written back as they came.
    QJsonObject getPreservedData() const { return m_joPreserved; }

    // The symbol's keys, in the order of the file format.
    static QStringList getSymbolKeys();

protected:
    void addLoadProblem(const QString& text) { m_lstLoadProblems.append(text); }
    QStringList* getLoadProblemList() { return &m_lstLoadProblems; }
    // For subclasses that model some keys themselves: those must not be written back raw.
    void dropPreservedKeys(const QStringList& keys);

private:
    int m_nWidth = 800;
    int m_nHeight = 600;
    QJsonArray m_jaResources;
    QJsonObject m_joScripts;
    QJsonObject m_joPreserved;
    QStringList m_lstLoadProblems;
};
