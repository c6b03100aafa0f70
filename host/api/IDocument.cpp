#include "IDocument.h"

#include "DocumentManager.h"
#include "IMessageBox.h"

#include <QFileInfo>
#include <QUndoStack>

IDocument::IDocument(QObject* parent)
    : QObject(parent)
    , m_pUndoStack(new QUndoStack(this))
{
    connect(m_pUndoStack, &QUndoStack::cleanChanged, this, [this](bool bClean) { emit modifyChanged(!bClean); });
    connect(m_pUndoStack, &QUndoStack::indexChanged, this, [this] { emit undoStackChanged(); });
    DocumentManager::registerDocument(this);
}

IDocument::~IDocument()
{
    DocumentManager::unregisterDocument(this);
}

void IDocument::setFileName(const QString& fileName)
{
    if (m_strFileName == fileName)
        return;
    m_strFileName = fileName;
    emit titleChanged();
}

void IDocument::requestClosing(bool bCloseWindow)
{
    emit closingRequested(bCloseWindow);
}

bool IDocument::isModified() const
{
    return !m_pUndoStack->isClean() || m_bTemp;
}

void IDocument::submitCommand(QUndoCommand* pCommand)
{
    if (pCommand)
        m_pUndoStack->push(pCommand);
}

bool IDocument::openTempDocument(int, int, int, bool)
{
    return false;
}

bool IDocument::close()
{
    if (isModified()) {
        const QString name = QFileInfo(m_strFileName).completeBaseName();
        const auto answer = IMessageBox::instance()->question(
            tr("Vetra Studio"),
            tr("The project \"%1\" has unsaved changes.\nDo you want to save them?").arg(name),
            IMessageBox::Save | IMessageBox::Discard | IMessageBox::Cancel, IMessageBox::Save);
        if (answer == IMessageBox::Cancel || answer == IMessageBox::NoButton)
            return false;
        if (answer == IMessageBox::Save && !(m_bTemp ? saveAs() : save()))
            return false;
    }
    emit aboutToClose();
    return true;
}
