#include "VTFunctionManager.h"

#include "VTFunction.h"
#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <limits>

VTFunctionManager::VTFunctionManager() = default;

VTFunctionManager::~VTFunctionManager() = default;

QList<VTFunction*> VTFunctionManager::getFunctions() const
{
    QList<VTFunction*> lstFunctions;
    lstFunctions.reserve(static_cast<int>(m_lstFunctions.size()));
    for (const auto& pFunction : m_lstFunctions)
        lstFunctions.append(pFunction.get());
    return lstFunctions;
}

int VTFunctionManager::addFunction(VTFunction* pFunction, int nIndex)
{
    if (!pFunction)
        return -1;
    const auto it = std::find_if(m_lstFunctions.cbegin(), m_lstFunctions.cend(),
                                 [pFunction](const auto& pOwned) { return pOwned.get() == pFunction; });
    if (it != m_lstFunctions.cend())
        return -1;

    pFunction->setName(getValidFunctionName(pFunction->getName()));
    std::unique_ptr<VTFunction> pOwned(pFunction);
    const int nCount = getFunctionCount();
    if (nIndex >= 0 && nIndex < nCount) {
        m_lstFunctions.insert(m_lstFunctions.begin() + nIndex, std::move(pOwned));
        return nIndex;
    }
    if (pFunction->getId() == -1)
        pFunction->setId(takeNextId());
    m_lstFunctions.push_back(std::move(pOwned));
    return nCount;
}

int VTFunctionManager::takeNextId()
{
    if (m_nCurrentId < std::numeric_limits<int>::max())
        return ++m_nCurrentId;
    // Only a file can push the counter this far. Reusing a free id beats overflowing, and with
    // fewer functions than positive ints one is always free.
    QSet<int> setIds;
    for (const auto& pFunction : m_lstFunctions)
        setIds.insert(pFunction->getId());
    int nId = 1;
    while (setIds.contains(nId))
        ++nId;
    return nId;
}

int VTFunctionManager::detachFunction(VTFunction* pFunction)
{
    for (int i = 0; i < getFunctionCount(); ++i) {
        if (m_lstFunctions[i].get() == pFunction) {
            m_lstFunctions[i].release();
            m_lstFunctions.erase(m_lstFunctions.begin() + i);
            return i;
        }
    }
    return -1;
}

QString VTFunctionManager::getValidFunctionName(const QString& strName) const
{
    QSet<QString> setNames;
    for (const auto& pFunction : m_lstFunctions)
        setNames.insert(pFunction->getName());

    // The suffixes pile up rather than count: existing projects hold names made this way, and
    // the next free name must come out the same as it always has.
    QString strCandidate = strName;
    int nCounter = 0;
    while (setNames.contains(strCandidate))
        strCandidate += QLatin1Char('_') + QString::number(nCounter++);
    return strCandidate;
}

VTFunction* VTFunctionManager::findFunctionById(int nId) const
{
    for (const auto& pFunction : m_lstFunctions) {
        if (pFunction->getId() == nId)
            return pFunction.get();
    }
    return nullptr;
}

VTFunction* VTFunctionManager::findFunctionByName(const QString& strName) const
{
    for (const auto& pFunction : m_lstFunctions) {
        if (pFunction->getName() == strName)
            return pFunction.get();
    }
    return nullptr;
}

VTFunction* VTFunctionManager::findFunctionByUuid(const QUuid& uuid) const
{
    if (uuid.isNull())
        return nullptr;
    for (const auto& pFunction : m_lstFunctions) {
        if (pFunction->getUuid() == uuid)
            return pFunction.get();
    }
    return nullptr;
}

void VTFunctionManager::serialize(QJsonObject& json) const
{
    QJsonArray jaFunctions;
    for (const auto& pFunction : m_lstFunctions) {
        QJsonObject joFunction;
        pFunction->serialize(joFunction);
        jaFunctions.append(joFunction);
    }
    json.insert(QStringLiteral("current_id"), m_nCurrentId);
    json.insert(QStringLiteral("functions"), jaFunctions);
}

bool VTFunctionManager::parse(const QJsonObject& json, QStringList* pWarnings)
{
    QStringList lstProblems;
    const VTJsonReader reader(json, tr("scripts"), &lstProblems);
    m_nCurrentId = reader.readInt(QStringLiteral("current_id"), 0);

    const QJsonArray jaFunctions = reader.readArray(QStringLiteral("functions"));
    if (jaFunctions.size() > kMaxFunctionCount) {
        reader.report(tr("\"functions\" holds %1 items, more than %2; no function is read.")
                          .arg(jaFunctions.size())
                          .arg(kMaxFunctionCount));
    } else {
        QSet<int> setIds;
        for (const auto& pFunction : m_lstFunctions)
            setIds.insert(pFunction->getId());
        for (int i = 0; i < jaFunctions.size(); ++i) {
            const QJsonValue value = jaFunctions.at(i);
            if (!value.isObject()) {
                reader.report(tr("function %1 should be an object but is %2; it is left out.")
                                  .arg(i)
                                  .arg(VTJsonReader::describeType(value)));
                continue;
            }
            auto pFunction = std::make_unique<VTFunction>();
            pFunction->parse(value.toObject(), &lstProblems);
            const int nId = pFunction->getId();
            // Kept as the file has it; only the first of the two is reachable from an action.
            if (nId != -1 && setIds.contains(nId))
                reader.report(tr("function %1 shares the id %2 with an earlier function.").arg(i).arg(nId));
            setIds.insert(nId);
            m_lstFunctions.push_back(std::move(pFunction));
        }
    }

    // A negative counter would soon hand out -1, the mark of a function that was never added.
    if (m_nCurrentId < 0) {
        reader.report(tr("\"current_id\" %1 is negative; 0 is used instead.").arg(m_nCurrentId));
        m_nCurrentId = 0;
    }
    int nHighestId = 0;
    for (const auto& pFunction : m_lstFunctions)
        nHighestId = std::max(nHighestId, pFunction->getId());
    if (m_nCurrentId < nHighestId) {
        reader.report(tr("\"current_id\" %1 is below the id %2 in use; %2 is used instead.")
                          .arg(m_nCurrentId)
                          .arg(nHighestId));
        m_nCurrentId = nHighestId;
    }

    if (pWarnings)
        pWarnings->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTFunctionManager::processFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                                           QList<VTFunction*>& lstNewFunctions)
{
    for (auto it = mapFunctions.begin(); it != mapFunctions.end(); ++it) {
        const VTFunction* pSource = it.key();
        if (!pSource)
            continue;
        VTFunction* pTarget = findFunctionByUuid(pSource->getUuid());
        if (!pTarget) {
            std::unique_ptr<VTFunction> pClone = pSource->clone();
            pClone->setId(-1);
            pTarget = pClone.release();
            addFunction(pTarget, -1);
            lstNewFunctions.append(pTarget);
        }
        it.value() = pTarget;
    }
}

QString VTFunctionManager::createFunctionDataScript() const
{
    QString strScript = QStringLiteral("var f = [];");
    for (const auto& pFunction : m_lstFunctions) {
        const QString strName = pFunction->getName();
        strScript +=
            QStringLiteral("\nvar ") + strName + QStringLiteral(" = ") + pFunction->toString(true) +
            QStringLiteral(";\n") +
            QStringLiteral("f.push([%1, \"%2\", %3]);").arg(pFunction->getId()).arg(strName, strName);
    }
    return strScript;
}
