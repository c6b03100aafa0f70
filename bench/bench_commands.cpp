// Undo and redo through the document's undo stack on a scene of 2,000 divs, ten of them selected,
// with a view listening to the records: one command of 10,000 element actions (opacity, geometry,
// name, class and border in turn), and 10,000 commands of one element action each. Prints the
// time of the first run (the push), of an undo and of a redo of everything, best of the rounds,
// against a target of 50 ms for each undo and redo.
//
// Each undo and redo compares the scene's selection with the one the command was made in, so their
// time grows with the number of elements as well.
//
// Usage: bench_commands [ACTIONS] [ROUNDS] [ELEMENTS]   (defaults 10000, 5 and 2000)
#include "AgreeingMessageBox.h"
#include "IMessageBox.h"
#include "VTCommand.h"
#include "VTDocument.h"
#include "VTElementCommandAction.h"
#include "VTElementFactory.h"
#include "VTScene.h"
#include "VTSceneManager.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMap>
#include <QTextStream>
#include <QUndoStack>

#include <algorithm>
#include <functional>
#include <limits>

namespace {

constexpr int kSelected = 10;
constexpr double kTargetMs = 50.0;

using Id = VTElementCommandAction::ElementActionId;

// The nIndex-th action of a gesture on the element, each kind in turn, all with new values.
VTElementCommandAction* elementAction(VTDocument* pDocument, VTElement* pElement, int nIndex)
{
    const VTLayoutKey key = pElement->getCurrentLayoutID();
    VTElementCommandAction* pAction = nullptr;
    switch (nIndex % 5) {
    case 0:
        pAction = new VTElementCommandAction(Id::ChangeOpacity, pDocument, 5);
        pAction->addParam(pElement, false);
        pAction->addParam(0.5 + (nIndex % 50) / 100.0);
        pAction->addParam(QMap<int, bool>());
        pAction->addParam(key.getHorizontalId());
        pAction->addParam(key.getVerticalId());
        break;
    case 1:
        pAction = new VTElementCommandAction(Id::ChangeGeometry, pDocument, 6);
        pAction->prepareChangeGeometryParams(pElement);
        pAction->setChangeGeometryProperty(VT::PropLeft, static_cast<double>(nIndex % 700));
        break;
    case 2:
        pAction = new VTElementCommandAction(Id::SetElementName, pDocument, 2);
        pAction->addParam(pElement, false);
        pAction->addParam(QStringLiteral("Element %1").arg(nIndex));
        break;
    case 3:
        pAction = new VTElementCommandAction(Id::ChangeClassName, pDocument, 5);
        pAction->addParam(pElement, false);
        pAction->addParam(QStringLiteral("c%1").arg(nIndex));
        pAction->addParam(QMap<int, bool>());
        pAction->addParam(key.getHorizontalId());
        pAction->addParam(key.getVerticalId());
        break;
    default:
        pAction = new VTElementCommandAction(Id::ChangeBorder, pDocument, 7);
        pAction->prepareChangeBorderParams(pElement);
        pAction->getParam(1)->setValue(1 + nIndex % 5);
        break;
    }
    return pAction;
}

struct Project
{
    explicit Project(int nElements)
    {
        auto* pScene = new VTScene();
        pScene->initDefault();
        pScene->setSelected(true);
        document.getSceneManager()->addScene(pScene);
        for (int i = 0; i < nElements; ++i) {
            VTElement* pElement = VTElementFactory::createElement(VT::DivElement);
            pScene->addElement(pElement, -1, nullptr);
            pElement->setSelected(i % qMax(1, nElements / kSelected) == 0);
            lstElements.append(pElement);
        }
        // The views: each record is looked at, as the canvas and the panels do.
        QObject::connect(&document, &IDocument::dataChanged, &document, [this](QObject*) { ++nRecords; });
    }

    VTDocument document;
    QList<VTElement*> lstElements;
    qint64 nRecords = 0;
};

double msOf(const std::function<void()>& fnRun)
{
    QElapsedTimer timer;
    timer.start();
    fnRun();
    return timer.nsecsElapsed() / 1.0e6;
}

struct Times
{
    double dPush = std::numeric_limits<double>::max();
    double dUndo = std::numeric_limits<double>::max();
    double dRedo = std::numeric_limits<double>::max();
};

void report(QTextStream& out, const QString& what, const Times& times)
{
    const auto verdict = [](double dMs) {
        return dMs < kTargetMs ? QStringLiteral("ok") : QStringLiteral("SLOW");
    };
    out << what << ": push " << QString::number(times.dPush, 'f', 1) << " ms, undo "
        << QString::number(times.dUndo, 'f', 1) << " ms (" << verdict(times.dUndo) << "), redo "
        << QString::number(times.dRedo, 'f', 1) << " ms (" << verdict(times.dRedo) << ")\n";
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    AgreeingMessageBox box;
    IMessageBox::setInstance(&box);
    const int nActions = argc > 1 ? std::max(1, atoi(argv[1])) : 10000;
    const int nRounds = argc > 2 ? std::max(1, atoi(argv[2])) : 5;
    const int nElements = argc > 3 ? std::max(1, atoi(argv[3])) : 2000;
    QTextStream out(stdout);

    Times oneCommand;
    Times manyCommands;
    for (int nRound = 0; nRound < nRounds; ++nRound) {
        {
            Project project(nElements);
            QUndoStack* pStack = project.document.getUndoStack();
            auto* pCommand = new VTCommand(&project.document, QStringLiteral("many actions"));
            for (int i = 0; i < nActions; ++i)
                pCommand->addAction(
                    elementAction(&project.document, project.lstElements.at(i % nElements), i));
            oneCommand.dPush =
                std::min(oneCommand.dPush, msOf([&] { project.document.submitCommand(pCommand); }));
            oneCommand.dUndo = std::min(oneCommand.dUndo, msOf([&] { pStack->undo(); }));
            oneCommand.dRedo = std::min(oneCommand.dRedo, msOf([&] { pStack->redo(); }));
        }
        {
            Project project(nElements);
            QUndoStack* pStack = project.document.getUndoStack();
            manyCommands.dPush = std::min(
                manyCommands.dPush, msOf([&] {
                    for (int i = 0; i < nActions; ++i) {
                        auto* pCommand = new VTCommand(&project.document, QStringLiteral("one action"));
                        pCommand->addAction(
                            elementAction(&project.document, project.lstElements.at(i % nElements), i));
                        project.document.submitCommand(pCommand);
                    }
                }));
            manyCommands.dUndo = std::min(manyCommands.dUndo, msOf([&] { pStack->setIndex(0); }));
            manyCommands.dRedo =
                std::min(manyCommands.dRedo, msOf([&] { pStack->setIndex(pStack->count()); }));
        }
    }
    out << "best of " << nRounds << " rounds, " << nElements << " elements, " << kSelected << " selected\n";
    report(out, QStringLiteral("one command of %1 element actions").arg(nActions), oneCommand);
    report(out, QStringLiteral("%1 commands of one element action").arg(nActions), manyCommands);
    return 0;
}
