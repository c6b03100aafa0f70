#pragma once

#include "RandomCommandContext.h"
#include "RandomGesture.h"

#include <QList>
#include <QSet>

class VTDocument;

// Builds one random but valid command after another from the model as it stands, the way the
// studio's views would. While some action id has not run yet, every other command comes from a
// gesture that exercises one of the missing ids; the rest are drawn by weight.
class RandomCommandGenerator final
{
public:
    RandomCommandGenerator(VTDocument& document, quint32 nSeed);

    // A command with at least one action, not yet submitted; null when no gesture found anything
    // to do. *pName receives the gesture's name. With bMissingOnly every command comes from a
    // gesture for an id not yet covered, while there is one.
    VTCommand* next(const QSet<int>& setCovered, QString* pName, bool bMissingOnly = false);

    RandomCommandContext& getContext() { return m_context; }

    // The ids that a history must have run: every action id and element action id that is in use.
    static QSet<int> getExpectedIds();
    // The ids that only carry a record to the views.
    static bool isRecordOnly(int nId);

private:
    const RandomGesture* pickGesture(const QSet<int>& setCovered, bool bMissingOnly);

    RandomCommandContext m_context;
    QList<RandomGesture> m_lstGestures;
    int m_nTotalWeight = 0;
    bool m_bTargetMissing = false;
};
