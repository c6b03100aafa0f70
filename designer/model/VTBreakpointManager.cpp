#include "VTBreakpointManager.h"

#include "IUtils.h"
#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <limits>

namespace {

const QString s_strResponsiveModeKey = QStringLiteral("responsiveMode");
const QString s_strHorizontalKey = QStringLiteral("h");
const QString s_strVerticalKey = QStringLiteral("v");
const QString s_strHCurrentIdKey = QStringLiteral("hCurrentId");
const QString s_strVCurrentIdKey = QStringLiteral("vCurrentId");
const QString s_strNextIdKey = QStringLiteral("nextId");

// Common phone, tablet and desktop widths, smallest first.
constexpr int kDefaultWidths[] = {375, 667, 768, 1024, 1280};

constexpr int kLastId = std::numeric_limits<int>::max();

QJsonArray toJson(const VTBreakpointManager::EntryList& lstBreakpoints)
{
    QJsonArray array;
    for (const VTBreakpointManager::Entry& breakpoint : lstBreakpoints)
        array.append(QJsonArray{breakpoint.first, breakpoint.second});
    return array;
}

// Counts the entries of one kind of damage and remembers the first, so that a list of a million
// bad entries gives one line and not a million.
struct DroppedEntries
{
    int m_nCount = 0;
    int m_nFirstIndex = -1;

    void add(int nIndex)
    {
        if (m_nCount++ == 0)
            m_nFirstIndex = nIndex;
    }
};

} // namespace

std::unique_ptr<VTBreakpointManager> VTBreakpointManager::clone() const
{
    return std::make_unique<VTBreakpointManager>(*this);
}

void VTBreakpointManager::initDefault(int nWidth)
{
    m_lstHorizontal.clear();
    m_lstVertical.clear();
    for (const int nCandidate : kDefaultWidths) {
        if (nCandidate > nWidth)
            continue;
        if (m_lstHorizontal.isEmpty())
            add(Horizontal, 0);
        add(Horizontal, nCandidate);
    }
}

void VTBreakpointManager::init(const PresetList& lstHorizontal, const PresetList& lstVertical)
{
    m_lstHorizontal.clear();
    m_lstVertical.clear();
    addPresets(Horizontal, lstHorizontal);
    addPresets(Vertical, lstVertical);
}

void VTBreakpointManager::addPresets(Direction direction, const PresetList& lstPresets)
{
    for (const QPair<int, bool>& preset : lstPresets) {
        // 0 is the base entry's value, which the direction gets anyway.
        if (!preset.second || preset.first < 1)
            continue;
        if (list(direction).isEmpty())
            add(direction, 0);
        add(direction, preset.first);
    }
}

VTBreakpointManager::Entry VTBreakpointManager::add(Direction direction, int nValue, int nId)
{
    const Entry refused(-1, -1);
    EntryList& lstBreakpoints = list(direction);
    if (nValue < 0 || (nId >= 1 && findIndex(lstBreakpoints, nId) >= 0))
        return refused;
    int nIndex = 0;
    for (; nIndex < lstBreakpoints.size(); ++nIndex) {
        const int nExisting = lstBreakpoints.at(nIndex).second;
        if (nExisting == nValue)
            return refused;
        if (nExisting > nValue)
            break;
    }
    if (nId < 1) {
        // The last id stays unused: handing it out would leave nothing above it to count on to.
        if (m_nNextId >= kLastId)
            return refused;
        nId = m_nNextId++;
    }
    const Entry breakpoint(nId, nValue);
    lstBreakpoints.insert(nIndex, breakpoint);
    return breakpoint;
}

bool VTBreakpointManager::update(Direction direction, int nId, int nValue)
{
    EntryList& lstBreakpoints = list(direction);
    const int nIndex = findIndex(lstBreakpoints, nId);
    if (nIndex < 0)
        return false;
    lstBreakpoints[nIndex].second = nValue;
    return true;
}

VTBreakpointManager::Entry VTBreakpointManager::remove(Direction direction, int nId)
{
    EntryList& lstBreakpoints = list(direction);
    const int nIndex = findIndex(lstBreakpoints, nId);
    return nIndex < 0 ? Entry(-1, -1) : lstBreakpoints.takeAt(nIndex);
}

VTLayoutKey VTBreakpointManager::getCurrentId(bool bForShow) const
{
    if (bForShow && !m_bResponsiveMode)
        return VTLayoutKey::base();
    return VTLayoutKey(m_nCurrentHId, m_nCurrentVId);
}

void VTBreakpointManager::setCurrentId(const VTLayoutKey& key)
{
    if (key.isCurrent())
        return;
    m_nCurrentHId = key.getHorizontalId();
    m_nCurrentVId = key.getVerticalId();
}

const VTBreakpointManager::EntryList& VTBreakpointManager::getBreakpoints(Direction direction) const
{
    return direction == Vertical ? m_lstVertical : m_lstHorizontal;
}

QPair<int, int> VTBreakpointManager::getRange(Direction direction, int nId) const
{
    const EntryList& lstBreakpoints = getBreakpoints(direction);
    const int nIndex = findIndex(lstBreakpoints, nId);
    if (nIndex < 0)
        return {-1, -1};
    const int nNext = nIndex + 1 < lstBreakpoints.size() ? lstBreakpoints.at(nIndex + 1).second : -1;
    return {lstBreakpoints.at(nIndex).second, nNext};
}

VTLayoutKey VTBreakpointManager::getBreakpointBySize(int nWidth, int nHeight) const
{
    // The largest value that the size reaches; a walk down a sorted list finds the same entry, and
    // this way a list out of order from a damaged file still gives a sensible answer.
    const auto pick = [](const EntryList& lstBreakpoints, int nSize) {
        int nId = 0;
        int nBest = -1;
        for (const Entry& breakpoint : lstBreakpoints) {
            if (breakpoint.second <= nSize && breakpoint.second > nBest) {
                nBest = breakpoint.second;
                nId = breakpoint.first;
            }
        }
        return nId;
    };
    return VTLayoutKey(pick(m_lstHorizontal, nWidth), pick(m_lstVertical, nHeight));
}

QList<VTLayoutKey> VTBreakpointManager::getBreakpointsFromDirection(Direction direction,
                                                                    const QVector<int>& vecIds) const
{
    QList<VTLayoutKey> lstKeys;
    if (vecIds.isEmpty())
        return lstKeys;
    const auto idsOrBase = [](const EntryList& lstBreakpoints) {
        return lstBreakpoints.isEmpty() ? QVector<int>{0} : getIds(lstBreakpoints);
    };
    if (direction == Horizontal) {
        const QVector<int> vecVertical = idsOrBase(m_lstVertical);
        for (const int nId : vecIds) {
            for (const int nVertical : vecVertical)
                lstKeys.append(VTLayoutKey(nId, nVertical));
        }
    } else {
        const QVector<int> vecHorizontal = idsOrBase(m_lstHorizontal);
        for (const int nHorizontal : vecHorizontal) {
            for (const int nId : vecIds)
                lstKeys.append(VTLayoutKey(nHorizontal, nId));
        }
    }
    return lstKeys;
}

QList<VTLayoutKey> VTBreakpointManager::getAllBreakpointIds(bool bWithBase) const
{
    QList<VTLayoutKey> lstKeys;
    if (bWithBase)
        lstKeys.append(VTLayoutKey::base());
    if (m_lstHorizontal.isEmpty()) {
        for (const Entry& vertical : m_lstVertical)
            lstKeys.append(VTLayoutKey(0, vertical.first));
        return lstKeys;
    }
    for (const Entry& horizontal : m_lstHorizontal) {
        if (m_lstVertical.isEmpty()) {
            lstKeys.append(VTLayoutKey(horizontal.first, 0));
            continue;
        }
        for (const Entry& vertical : m_lstVertical)
            lstKeys.append(VTLayoutKey(horizontal.first, vertical.first));
    }
    return lstKeys;
}

int VTBreakpointManager::getBestSize(Direction direction, int nId, int nSize) const
{
    if (nId == 0)
        return nSize;
    const QPair<int, int> range = getRange(direction, nId);
    const qint64 nStart = range.first == -1 ? 0 : range.first;
    // The last range has no end: a size below it goes some way into it, and never below 300, so
    // that a small breakpoint still opens at a usable stage.
    if (range.second == -1)
        return nSize < nStart ? IUtils::clampToInt(std::max<qint64>(nStart + 100, 300)) : nSize;
    const qint64 nEnd = range.second;
    if (nSize >= nStart && nSize <= nEnd - 1)
        return nSize;
    return IUtils::clampToInt(std::max<qint64>((nStart + nEnd) / 2, nEnd - 100));
}

int VTBreakpointManager::validate(Direction direction, int nId, int nValue) const
{
    const EntryList& lstBreakpoints = getBreakpoints(direction);
    const int nIndex = findIndex(lstBreakpoints, nId);
    if (nIndex < 0)
        return nValue;
    const qint64 nLowest = nIndex == 0 ? 1 : qint64(lstBreakpoints.at(nIndex - 1).second) + 1;
    qint64 nResult = std::max<qint64>(nValue, nLowest);
    if (nIndex + 1 < lstBreakpoints.size())
        nResult = std::min<qint64>(nResult, qint64(lstBreakpoints.at(nIndex + 1).second) - 1);
    return IUtils::clampToInt(nResult);
}

bool VTBreakpointManager::isSameBreakpoints(const VTBreakpointManager* pOther) const
{
    if (!pOther)
        return false;
    const auto sameValues = [](const EntryList& lstA, const EntryList& lstB) {
        return std::equal(lstA.cbegin(), lstA.cend(), lstB.cbegin(), lstB.cend(),
                          [](const Entry& a, const Entry& b) { return a.second == b.second; });
    };
    return sameValues(m_lstHorizontal, pOther->m_lstHorizontal) &&
           sameValues(m_lstVertical, pOther->m_lstVertical);
}

void VTBreakpointManager::serialize(QJsonObject& json) const
{
    serializeCommon(json, true);
    json.insert(s_strHCurrentIdKey, m_nCurrentHId);
    json.insert(s_strVCurrentIdKey, m_nCurrentVId);
    json.insert(s_strNextIdKey, m_nNextId);
}

void VTBreakpointManager::serializeCommon(QJsonObject& json, bool bWithMode) const
{
    if (bWithMode)
        json.insert(s_strResponsiveModeKey, m_bResponsiveMode);
    if (!m_lstHorizontal.isEmpty())
        json.insert(s_strHorizontalKey, toJson(m_lstHorizontal));
    if (!m_lstVertical.isEmpty())
        json.insert(s_strVerticalKey, toJson(m_lstVertical));
}

bool VTBreakpointManager::parse(const QJsonObject& json, QStringList* pProblems)
{
    const VTJsonReader reader(json, tr("breakpoints"), pProblems);
    m_lstHorizontal.clear();
    m_lstVertical.clear();
    m_bResponsiveMode = reader.readBool(s_strResponsiveModeKey, false);
    m_nNextId = reader.readInt(s_strNextIdKey, 1);
    if (m_nNextId < 1) {
        reader.report(tr("\"nextId\" %1 is below 1; 1 is used instead.").arg(m_nNextId));
        m_nNextId = 1;
    }
    parseList(json, Horizontal, pProblems);
    parseList(json, Vertical, pProblems);

    // An id that names no breakpoint only shows empty layouts; a negative one is no layout at all.
    const auto readCurrentId = [&reader](const QString& key) {
        const int nId = reader.readInt(key, 0);
        if (nId >= 0)
            return nId;
        reader.report(tr("\"%1\" %2 is negative; 0 is used instead.").arg(key).arg(nId));
        return 0;
    };
    m_nCurrentHId = readCurrentId(s_strHCurrentIdKey);
    m_nCurrentVId = readCurrentId(s_strVCurrentIdKey);
    return true;
}

void VTBreakpointManager::parseList(const QJsonObject& json, Direction direction, QStringList* pProblems)
{
    const QString key = direction == Vertical ? s_strVerticalKey : s_strHorizontalKey;
    if (!json.contains(key))
        return;
    const VTJsonReader reader(json, tr("breakpoints"), pProblems);
    const QJsonArray entries = reader.readArray(key);
    EntryList& lstBreakpoints = list(direction);
    DroppedEntries malformed;
    DroppedEntries outOfRange;
    DroppedEntries repeated;
    // Sets, so that a long list of repeats costs no more than a short one.
    QSet<int> setIds;
    QSet<int> setValues;
    int nIndex = 0;
    for (; nIndex < entries.size(); ++nIndex) {
        if (lstBreakpoints.size() >= kMaxBreakpointsPerDirection)
            break;
        const QJsonValue entry = entries.at(nIndex);
        const QJsonArray pair = entry.toArray();
        if (!entry.isArray() || pair.size() != 2 || !VTJsonReader::isInt(pair.at(0)) ||
            !VTJsonReader::isInt(pair.at(1))) {
            malformed.add(nIndex);
            continue;
        }
        const int nId = pair.at(0).toInt();
        const int nValue = pair.at(1).toInt();
        // Id 0 means "no breakpoint", and the last id would leave the counter nowhere to go.
        if (nId < 1 || nId >= kLastId || nValue < 0) {
            outOfRange.add(nIndex);
            continue;
        }
        if (setIds.contains(nId) || setValues.contains(nValue)) {
            repeated.add(nIndex);
            continue;
        }
        setIds.insert(nId);
        setValues.insert(nValue);
        lstBreakpoints.append(Entry(nId, nValue));
        if (nId >= m_nNextId)
            m_nNextId = nId + 1;
    }

    const auto reportDropped = [&reader, &key](const DroppedEntries& dropped, const QString& reason) {
        if (dropped.m_nCount > 0) {
            reader.report(tr("\"%1\": left out %2 of its entries, the first at position %3: %4.")
                              .arg(key)
                              .arg(dropped.m_nCount)
                              .arg(dropped.m_nFirstIndex)
                              .arg(reason));
        }
    };
    reportDropped(malformed, tr("not an [id, value] pair of whole numbers"));
    reportDropped(outOfRange, tr("an id below 1 or a negative value"));
    reportDropped(repeated, tr("an id or value that the list has already"));
    if (nIndex < entries.size()) {
        reader.report(
            tr("\"%1\" holds more than %2 breakpoints; its entries from position %3 to %4 are left out.")
                .arg(key)
                .arg(kMaxBreakpointsPerDirection)
                .arg(nIndex)
                .arg(entries.size() - 1));
    }
    const bool bSorted = std::is_sorted(lstBreakpoints.cbegin(), lstBreakpoints.cend(),
                                        [](const Entry& a, const Entry& b) { return a.second < b.second; });
    if (!bSorted)
        reader.report(
            tr("\"%1\" is not in ascending order of value; its ranges follow the file's order.").arg(key));
}

int VTBreakpointManager::findIndex(const EntryList& lstBreakpoints, int nId)
{
    for (int i = 0; i < lstBreakpoints.size(); ++i) {
        if (lstBreakpoints.at(i).first == nId)
            return i;
    }
    return -1;
}

int VTBreakpointManager::findId(const EntryList& lstBreakpoints, int nValue)
{
    for (const Entry& breakpoint : lstBreakpoints) {
        if (breakpoint.second == nValue)
            return breakpoint.first;
    }
    return -1;
}

int VTBreakpointManager::findValue(const EntryList& lstBreakpoints, int nId)
{
    const int nIndex = findIndex(lstBreakpoints, nId);
    return nIndex < 0 ? -1 : lstBreakpoints.at(nIndex).second;
}

QVector<int> VTBreakpointManager::getIds(const EntryList& lstBreakpoints)
{
    QVector<int> vecIds;
    vecIds.reserve(lstBreakpoints.size());
    for (const Entry& breakpoint : lstBreakpoints)
        vecIds.append(breakpoint.first);
    return vecIds;
}
