#include "VTMdiSubWindow.h"

#include "IDocument.h"
#include "VTEditor.h"

#include <QCloseEvent>

VTMdiSubWindow::VTMdiSubWindow(VTEditor* pEditor, QWidget* parent)
    : QMdiSubWindow(parent)
    , m_pEditor(pEditor)
{
    setAttribute(Qt::WA_DeleteOnClose);
}

void VTMdiSubWindow::forceClose()
{
    m_bForced = true;
    close();
}

void VTMdiSubWindow::closeEvent(QCloseEvent* pEvent)
{
    IDocument* pDocument = m_pEditor ? m_pEditor->getDocument() : nullptr;
    if (m_bForced || !pDocument) {
        QMdiSubWindow::closeEvent(pEvent);
        return;
    }
    if (!pDocument->close()) {
        pEvent->ignore();
        return;
    }
    pDocument->requestClosing(false);
    QMdiSubWindow::closeEvent(pEvent);
}
