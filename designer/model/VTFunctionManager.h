#pragma once

#include <QCoreApplication>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <memory>
#include <vector>

class QJsonObject;
class VTFunction;

// The ordered functions of a project, owned by the document. Ids come from a counter that only
// grows, so an id that a "Run JavaScript" action holds never comes to mean another function.
class VTFunctionManager final
{
    Q_DECLARE_TR_FUNCTIONS(VTFunctionManager)
public:
    VTFunctionManager();
    ~VTFunctionManager();
    VTFunctionManager(const VTFunctionManager&) = delete;
    VTFunctionManager& operator=(const VTFunctionManager&) = delete;

    // In list order. The manager keeps the ownership.
    QList<VTFunction*> getFunctions() const;
    int getFunctionCount() const { return static_cast<int>(m_lstFunctions.size()); }
    // The last id given out; 0 before the first.
    int getCurrentId() const { return m_nCurrentId; }

    // Takes ownership, and always makes the name unique first. An index inside the list inserts
    // there and keeps the id (undo puts a removed function back this way); any other index
    // appends, and a function without an id (-1) gets the next one (a free one, should the
    // counter have reached the largest int). Returns the index the function got, or -1 without
    // taking it for a null function or one already in the list.
    int addFunction(VTFunction* pFunction, int nIndex = -1);
    // Hands the function back to the caller without deleting it; returns its former index or -1.
    int detachFunction(VTFunction* pFunction);

    // The name itself while it is free, otherwise it gets "_0", then "_1" and so on appended in
    // turn, each try building on the last: "f", "f_0", "f_0_1". Case matters.
    QString getValidFunctionName(const QString& strName) const;

    // First match in list order, or null. A null UUID names no function, since functions read
    // from files without one must not be taken for each other.
    VTFunction* findFunctionById(int nId) const;
    VTFunction* findFunctionByName(const QString& strName) const;
    VTFunction* findFunctionByUuid(const QUuid& uuid) const;

    // Keys "current_id" and "functions" (always written, empty when there are none).
    void serialize(QJsonObject& json) const;
    // Reads the counter and appends one function per array item, names and ids as the file holds
    // them. Items that are not objects are skipped and a list longer than kMaxFunctionCount is
    // refused; a negative counter, or one below an id in use, is raised so that no new function
    // shares an id or gets -1. Everything of the kind is noted in pWarnings; returns false when
    // anything was. The document reads its "scripts" object with this into a fresh manager.
    bool parse(const QJsonObject& json, QStringList* pWarnings = nullptr);

    // The manager's side of copying content from another document. The map's keys are source
    // functions in use. Each gets as its value the function of this manager with the same UUID,
    // or else a clone without id that is added here (so it gets a new id and a unique name) and
    // listed in lstNewFunctions, for the undo command to take over on undo.
    void processFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                            QList<VTFunction*>& lstNewFunctions);

    // The player's script: every function as a global variable and as a row [id, name, function]
    // of the array f, which "Run JavaScript" indexes by id.
    QString createFunctionDataScript() const;

    static constexpr int kMaxFunctionCount = 10000;

private:
    int takeNextId();

    std::vector<std::unique_ptr<VTFunction>> m_lstFunctions;
    int m_nCurrentId = 0;
};
