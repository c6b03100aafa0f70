#include "VTPlayback.h"

#include "IUtils.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

const QString kActionTime = QStringLiteral("action_time");
const QString kSpeed = QStringLiteral("speed");
const QString kTime = QStringLiteral("time");
const QString kDuration = QStringLiteral("duration");

constexpr int kSymbolFamily = VTEventListener::StartSymbol;
constexpr int kMediaFamily = VTEventListener::StartMedia;
// Below this a whole speed times any span of int times stays exact in 64 bits.
constexpr double kExactSpeedLimit = 1e6;

// Marks come from files and edits that can hold anything, so every result is computed wide and
// brought back into an int with IUtils::clampToInt, truncated toward zero.

// Halves go up, as the player's own rounding does.
double roundHalfUp(double dValue)
{
    return std::floor(dValue + 0.5);
}

// A speed that is missing or not a number reads as 0; callers decide what 0 stands for.
double readSpeed(const QJsonObject& joData)
{
    const QJsonValue value = joData.value(kSpeed);
    return value.isDouble() ? value.toDouble() : 0.0;
}

// A position in ms, a label looked up on the symbol, or -1 for anything else.
int readPosition(const QJsonObject& joData, const VTPlayback::LabelLookup& lookupLabel)
{
    const QJsonValue value = joData.value(kTime);
    if (value.isDouble())
        return IUtils::clampToInt(value.toDouble());
    if (value.isString())
        return lookupLabel ? lookupLabel(value.toString()) : -1;
    return -1;
}

qint64 readDuration(const QJsonObject& joData)
{
    const QJsonValue value = joData.value(kDuration);
    return value.isDouble() ? IUtils::clampToInt(value.toDouble()) : 0;
}

// Timeline ms that playing nSpan ms of the element takes at dSpeed percent; nothing at speed 0.
double runLength(double dSpeed, double dSpan)
{
    if (dSpeed == 0.0 || dSpan == 0.0)
        return 0.0;
    return std::abs(100.0 / dSpeed) * dSpan;
}

// How far the element got in nSpan ms of timeline at dSpeed percent. The marks hold whole
// percentages, so this divides as integers; only absurd speeds go through doubles.
double advance(qint64 nSpan, double dSpeed)
{
    if (std::abs(dSpeed) <= kExactSpeedLimit && dSpeed == std::trunc(dSpeed))
        return static_cast<double>(nSpan * static_cast<qint64>(dSpeed) / 100);
    return std::trunc(static_cast<double>(nSpan) * dSpeed / 100.0);
}

// Timeline ms of a run from nFrom to nTo at a speed factor, for the player.
int exportedRunLength(int nFrom, int nTo, double dFactor)
{
    return std::max(0, IUtils::clampToInt(roundHalfUp((static_cast<double>(nTo) - nFrom) / dFactor)));
}

int getFamilyStart(int nActionType)
{
    return nActionType >= kMediaFamily ? kMediaFamily : kSymbolFamily;
}

} // namespace

VTPlayback::VTPlayback(QObject* pParent)
    : QVariantAnimation(pParent)
    , m_pEventListenerList(std::make_unique<VTEventListenerList>())
{}

VTPlayback::~VTPlayback() = default;

VTPlayback::PlaybackKind VTPlayback::getPlaybackKind(int nActionType)
{
    for (const int nFamily : {kSymbolFamily, kMediaFamily}) {
        if (nActionType >= nFamily + StartKind && nActionType <= nFamily + PauseAtKind)
            return static_cast<PlaybackKind>(nActionType - nFamily);
    }
    return NoPlaybackKind;
}

VTEventListenerList* VTPlayback::getEventListenerList() const
{
    return m_pEventListenerList.get();
}

void VTPlayback::addEventListener(VTEventListener* pListener)
{
    if (!pListener || m_pEventListenerList->getEventListenerIndex(pListener) >= 0)
        return;
    const int nTime = pListener->getActionTime();
    const QList<VTEventListener*> lstListeners = m_pEventListenerList->getEventListeners();
    const auto it =
        std::find_if(lstListeners.cbegin(), lstListeners.cend(),
                     [nTime](const VTEventListener* pOther) { return pOther->getActionTime() > nTime; });
    m_pEventListenerList->addEventListener(
        pListener, it == lstListeners.cend() ? -1 : static_cast<int>(it - lstListeners.cbegin()));
}

bool VTPlayback::detachEventListener(VTEventListener* pListener)
{
    return m_pEventListenerList->detachEventListener(pListener) >= 0;
}

VTEventListener* VTPlayback::getEventlistener(int nTime) const
{
    const QList<VTEventListener*> lstListeners = m_pEventListenerList->getEventListeners();
    for (VTEventListener* pListener : lstListeners) {
        if (pListener->getActionTime() == nTime)
            return pListener;
    }
    return nullptr;
}

void VTPlayback::changeActionTime(VTEventListener* pListener, int nTime)
{
    if (!detachEventListener(pListener))
        return;
    pListener->setEventData(QJsonObject{{kActionTime, nTime}});
    addEventListener(pListener);
}

void VTPlayback::moveAllEvents(int nDelta)
{
    // A uniform shift keeps the order; clamping at the ends can only make times equal.
    const QList<VTEventListener*> lstListeners = m_pEventListenerList->getEventListeners();
    for (VTEventListener* pListener : lstListeners) {
        QJsonObject joEvent = pListener->getEventData();
        joEvent.insert(kActionTime,
                       IUtils::clampToInt(static_cast<qint64>(pListener->getActionTime()) + nDelta));
        pListener->setEventData(joEvent);
    }
}

void VTPlayback::updatePlayback(int nPlaybackDuration, const LabelLookup& lookupLabel)
{
    const int nD = std::max(0, nPlaybackDuration);
    // The element's position when its current run began, and the timeline time that run ends.
    int nPos = 0;
    int nEnd = 0;
    bool bPlaying = false;
    int nLastTime = 0;
    double dLastSpeed = 0.0;

    const QList<VTEventListener*> lstListeners = m_pEventListenerList->getEventListeners();
    for (VTEventListener* pListener : lstListeners) {
        const int nTime = pListener->getActionTime();
        QJsonObject joData = pListener->getActionData();
        const double dSpeed = readSpeed(joData);
        const bool bReverse = dSpeed < 0;
        const auto endOfRun = [&](double dSpan) {
            return IUtils::clampToInt(nTime + runLength(dSpeed, dSpan));
        };
        const auto endFromPos = [&]() { return endOfRun(bReverse ? nPos : static_cast<double>(nD) - nPos); };

        switch (getPlaybackKind(pListener->getActionType())) {
        case StartKind:
            nPos = bReverse ? nD : 0;
            nEnd = endOfRun(nD);
            bPlaying = true;
            break;
        case PlayKind:
            if (bPlaying && nTime >= nEnd) {
                // The running play is over; playing again starts from the end it faces.
                nPos = bReverse ? nD : 0;
                nEnd = endOfRun(nD);
            } else {
                if (bPlaying)
                    nPos = IUtils::clampToInt(nPos +
                                              advance(static_cast<qint64>(nTime) - nLastTime, dLastSpeed));
                nEnd = endFromPos();
            }
            bPlaying = true;
            break;
        case PlayFromKind: {
            const int nFrom = readPosition(joData, lookupLabel);
            nPos = nFrom >= 0 ? nFrom : (bReverse ? nD : 0);
            if (nPos > nD) {
                nPos = bReverse ? nD : 0;
                nEnd = nTime;
            } else {
                nEnd = endFromPos();
            }
            bPlaying = true;
            break;
        }
        case PauseKind:
            if (bPlaying) {
                nPos = IUtils::clampToInt(static_cast<qint64>(nPos) - nLastTime + nTime);
                bPlaying = false;
                if (nEnd <= nTime)
                    nPos = 0;
            }
            nEnd = nTime;
            break;
        case PauseAtKind: {
            const int nAt = readPosition(joData, lookupLabel);
            nPos = nAt >= 0 ? nAt : (bReverse ? nD : 0);
            if (nPos >= nD)
                nPos = 0;
            bPlaying = false;
            nEnd = nTime;
            break;
        }
        case NoPlaybackKind:
            break;
        }

        // A pause after a slow run can leave the position past D, and a foreign action keeps an
        // older end; neither may give a run that ends before it starts.
        joData.insert(kDuration, std::max(0, IUtils::clampToInt(static_cast<qint64>(nEnd) - nTime)));
        pListener->setActionData(joData);
        nLastTime = nTime;
        dLastSpeed = dSpeed;
    }

    // A run stops where the next mark takes over.
    for (int i = 0; i + 1 < lstListeners.size(); ++i) {
        VTEventListener* pListener = lstListeners.at(i);
        const qint64 nTime = pListener->getActionTime();
        const qint64 nNextTime = lstListeners.at(i + 1)->getActionTime();
        QJsonObject joData = pListener->getActionData();
        if (nTime + readDuration(joData) > nNextTime) {
            joData.insert(kDuration, std::max(0, IUtils::clampToInt(nNextTime - nTime)));
            pListener->setActionData(joData);
        }
    }

    // Never before the last mark, so that a reload, which takes the last mark's time plus its
    // duration, gives the same length.
    setDuration(std::max({0, nEnd, lstListeners.isEmpty() ? 0 : nLastTime}));
}

void VTPlayback::appendPlaybacksData(QJsonArray& array, int nElementId, int nPlaybackDuration,
                                     const LabelLookup& lookupLabel) const
{
    const int nD = std::max(0, nPlaybackDuration);
    // Where the element stands after the previous mark, and the previous run as sent.
    int nPos = 0;
    int nRunStart = 0;
    int nRunLength = 0;
    int nPrevTime = 0;
    double dPrevSpeed = 100.0;
    int nLastEntry = -1;

    const QList<VTEventListener*> lstListeners = m_pEventListenerList->getEventListeners();
    for (const VTEventListener* pListener : lstListeners) {
        const int nActionType = pListener->getActionType();
        const PlaybackKind nKind = getPlaybackKind(nActionType);
        if (nKind == NoPlaybackKind)
            continue;
        const int nTime = std::max(pListener->getActionTime(), nPrevTime);

        if (nLastEntry >= 0 && nTime < static_cast<qint64>(nPrevTime) + nRunLength) {
            // Cut short: the element stops where the run got to, kept off the end the run was
            // heading for, so that a following Play continues instead of restarting.
            const double dMoved = roundHalfUp(dPrevSpeed / 100.0 * (static_cast<double>(nTime) - nPrevTime));
            nPos = IUtils::clampToInt(nRunStart + dMoved);
            if (dPrevSpeed >= 0 && nPos >= nD)
                nPos = nD - 1;
            else if (dPrevSpeed < 0 && nPos <= 0)
                nPos = 1;
            nPos = std::clamp(nPos, 0, nD);
            QJsonObject joLast = array.at(nLastEntry).toObject();
            joLast.insert(QStringLiteral("d"), IUtils::clampToInt(static_cast<qint64>(nTime) - nPrevTime));
            array.replace(nLastEntry, joLast);
        }

        const QJsonObject& joData = pListener->getActionData();
        const int nAt = readPosition(joData, lookupLabel);
        double dSpeed = readSpeed(joData);
        if (dSpeed == 0.0)
            dSpeed = dPrevSpeed;
        const bool bReverse = dSpeed < 0;
        const double dFactor = dSpeed / 100.0;
        const int nRunEnd = bReverse ? 0 : nD;

        int nSentType = nActionType;
        int nEndPos = 0;
        bool bIsPause = false;
        switch (nKind) {
        case StartKind:
            nRunStart = bReverse ? nD : 0;
            nEndPos = nRunEnd;
            nRunLength = std::max(0, IUtils::clampToInt(roundHalfUp(nD / std::abs(dFactor))));
            break;
        case PlayKind:
            if (bReverse)
                nRunStart = nPos >= 1 ? nPos : nD;
            else
                nRunStart = nPos < nD ? nPos : 0;
            if (nRunStart != nPos)
                nSentType = getFamilyStart(nActionType);
            nEndPos = nRunEnd;
            nRunLength = exportedRunLength(nRunStart, nEndPos, dFactor);
            break;
        case PlayFromKind: {
            const int nFrom = nAt != -1 ? nAt : (bReverse ? nD : 0);
            nRunStart = std::clamp(nFrom, 0, nD);
            nEndPos = nRunEnd;
            nRunLength = exportedRunLength(nRunStart, nEndPos, dFactor);
            break;
        }
        case PauseKind:
            nRunStart = nEndPos = nPos;
            nRunLength = 0;
            bIsPause = true;
            break;
        case PauseAtKind:
            nRunStart = nEndPos = nAt < 0 ? 0 : std::min(nD, nAt);
            nRunLength = 0;
            bIsPause = true;
            break;
        case NoPlaybackKind:
            break;
        }

        QJsonArray jaAction{nSentType, nRunStart};
        if (!bIsPause)
            jaAction.append(dFactor);
        array.append(QJsonObject{{QStringLiteral("el"), nElementId},
                                 {QStringLiteral("p"), QStringLiteral("pb")},
                                 {QStringLiteral("t"), nTime},
                                 {QStringLiteral("d"), nRunLength},
                                 {QStringLiteral("a"), jaAction}});
        nLastEntry = array.size() - 1;
        if (!bIsPause)
            dPrevSpeed = dSpeed;
        nPos = nEndPos;
        nPrevTime = nTime;
    }
}

void VTPlayback::serialize(QJsonArray& array) const
{
    m_pEventListenerList->serialize(array);
}

bool VTPlayback::parse(const QJsonArray& array, QStringList* pProblems)
{
    clearEventListeners();
    QStringList lstProblems;
    std::vector<std::unique_ptr<VTEventListener>> vecRead;

    if (array.size() > VTEventListenerList::kMaxEventListenerCount) {
        lstProblems.append(tr("playback: the list holds %1 marks, more than %2; none is read.")
                               .arg(array.size())
                               .arg(VTEventListenerList::kMaxEventListenerCount));
    } else {
        for (int i = 0; i < array.size(); ++i) {
            const QString strContext = tr("playback mark %1").arg(i);
            const QJsonValue value = array.at(i);
            if (!value.isObject()) {
                lstProblems.append(tr("%1 should be an object but is %2; it is left out.")
                                       .arg(strContext, VTJsonReader::describeType(value)));
                continue;
            }
            QJsonObject joListener = value.toObject();
            const QJsonValue action = joListener.value(QStringLiteral("action"));
            if (!VTJsonReader::isInt(action) || !isPlaybackAction(action.toInt())) {
                const QString strAction = VTJsonReader::isInt(action) ? QString::number(action.toInt())
                                                                      : VTJsonReader::describeType(action);
                lstProblems.append(
                    tr("%1: action %2 is not a playback action; it is left out.").arg(strContext, strAction));
                continue;
            }
            QJsonObject joEvent = joListener.value(QStringLiteral("event_value")).toObject();
            const QJsonValue time = joEvent.value(kActionTime);
            if (!time.isDouble()) {
                lstProblems.append(tr("%1 has no time on the timeline; it is left out.").arg(strContext));
                continue;
            }
            if (!VTJsonReader::isInt(time)) {
                const int nTime = IUtils::clampToInt(time.toDouble());
                lstProblems.append(tr("%1: the time %2 is not a whole number of milliseconds; %3 is used.")
                                       .arg(strContext)
                                       .arg(time.toDouble())
                                       .arg(nTime));
                joEvent.insert(kActionTime, nTime);
                joListener.insert(QStringLiteral("event_value"), joEvent);
            }
            auto pListener = std::make_unique<VTEventListener>();
            pListener->parse(joListener, &lstProblems, strContext);
            vecRead.push_back(std::move(pListener));
        }
    }

    std::stable_sort(vecRead.begin(), vecRead.end(), [](const auto& pLeft, const auto& pRight) {
        return pLeft->getActionTime() < pRight->getActionTime();
    });
    for (auto& pListener : vecRead)
        m_pEventListenerList->addEventListener(pListener.release());

    qint64 nEnd = 0;
    if (const VTEventListener* pLast =
            m_pEventListenerList->getEventListenerAt(m_pEventListenerList->getEventListenerCount() - 1)) {
        nEnd = static_cast<qint64>(pLast->getActionTime()) +
               std::max<qint64>(0, readDuration(pLast->getActionData()));
    }
    setDuration(std::max(0, IUtils::clampToInt(nEnd)));

    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

int VTPlayback::getFirstActionTime() const
{
    const VTEventListener* pFirst = m_pEventListenerList->getEventListenerAt(0);
    return pFirst ? pFirst->getActionTime() : -1;
}

void VTPlayback::clearEventListeners()
{
    const QList<VTEventListener*> lstListeners = m_pEventListenerList->getEventListeners();
    for (VTEventListener* pListener : lstListeners) {
        m_pEventListenerList->detachEventListener(pListener);
        const std::unique_ptr<VTEventListener> pDetached(pListener);
    }
}
