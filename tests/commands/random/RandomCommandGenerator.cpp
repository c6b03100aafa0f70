#include "RandomCommandGenerator.h"

#include "RandomDocumentGestures.h"
#include "RandomElementGestures.h"
#include "RandomKeyframeGestures.h"
#include "RandomLayoutGestures.h"
#include "RandomTimelineGestures.h"
#include "RandomTreeGestures.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElementCommandAction.h"

namespace {

using Id = VTCommandAction::ActionId;
using ElementId = VTElementCommandAction::ElementActionId;

// Builders may find nothing to do on the model they are given; that many tries in a row find
// nothing only when the model has run out of material.
constexpr int kMaxTries = 200;

} // namespace

RandomCommandGenerator::RandomCommandGenerator(VTDocument& document, quint32 nSeed)
    : m_context(document, nSeed)
{
    RandomTreeGestures::append(m_lstGestures);
    RandomTimelineGestures::append(m_lstGestures);
    RandomKeyframeGestures::append(m_lstGestures);
    RandomDocumentGestures::append(m_lstGestures);
    RandomElementGestures::append(m_lstGestures);
    RandomLayoutGestures::append(m_lstGestures);
    for (const RandomGesture& gesture : qAsConst(m_lstGestures))
        m_nTotalWeight += gesture.nWeight;
}

VTCommand* RandomCommandGenerator::next(const QSet<int>& setCovered, QString* pName, bool bMissingOnly)
{
    for (int nTry = 0; nTry < kMaxTries; ++nTry) {
        const RandomGesture* pGesture = pickGesture(setCovered, bMissingOnly);
        VTCommand* pCommand = pGesture->build(m_context);
        if (!pCommand)
            continue;
        if (pCommand->isEmpty()) {
            delete pCommand;
            continue;
        }
        if (pName)
            *pName = pGesture->name;
        return pCommand;
    }
    return nullptr;
}

const RandomGesture* RandomCommandGenerator::pickGesture(const QSet<int>& setCovered, bool bMissingOnly)
{
    // Most of the project lies outside a placed symbol: inside one, every few gestures lead out.
    VTDocument& document = m_context.getDocument();
    if (document.getCurrentSymbol() != &document && m_context.chance(15)) {
        for (const RandomGesture& gesture : qAsConst(m_lstGestures)) {
            if (gesture.lstIds.contains(Id::ChangeCurrentSymbol))
                return &gesture;
        }
    }
    m_bTargetMissing = !m_bTargetMissing;
    if (m_bTargetMissing || bMissingOnly) {
        const QSet<int> setMissing = getExpectedIds() - setCovered;
        QList<const RandomGesture*> lstCandidates;
        for (const RandomGesture& gesture : qAsConst(m_lstGestures)) {
            for (int nId : gesture.lstIds) {
                if (setMissing.contains(nId)) {
                    lstCandidates.append(&gesture);
                    break;
                }
            }
        }
        if (!lstCandidates.isEmpty())
            return m_context.pick(lstCandidates);
    }
    int nDraw = m_context.intIn(0, m_nTotalWeight - 1);
    for (const RandomGesture& gesture : qAsConst(m_lstGestures)) {
        nDraw -= gesture.nWeight;
        if (nDraw < 0)
            return &gesture;
    }
    return &m_lstGestures.last();
}

QSet<int> RandomCommandGenerator::getExpectedIds()
{
    QSet<int> setIds;
    for (int nId = Id::AddElement; nId <= Id::ResourceChanged; ++nId) {
        if (nId != 42 && nId != 64)
            setIds.insert(nId);
    }
    for (int nId = ElementId::ChangeGeometry; nId <= ElementId::ChangePerspective; ++nId) {
        if (nId != 1004)
            setIds.insert(nId);
    }
    return setIds;
}

bool RandomCommandGenerator::isRecordOnly(int nId)
{
    switch (nId) {
    case Id::CommandFinished:
    case Id::EditingSymbolChanged:
    case Id::TextEditingChanged:
    case Id::TextFormatChanged:
    case Id::TextEditorCommand:
    case Id::MediaInfoChanged:
    case Id::TimelinePlayed:
    case Id::TimelinePaused:
    case Id::TimeChanged:
    case Id::StopAllTasks:
    case Id::ResourceChanged:
    case ElementId::UpdateHtmlWidgetFromResource:
        return true;
    default:
        return false;
    }
}
