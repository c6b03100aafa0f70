#include "VTCliProject.h"

#include "VTDocument.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

VTCliProject::VTCliProject(const QString& filePath, QTextStream& err)
    : m_pPreviousDialogs(IProjectDialogs::instance())
    , m_strShownPath(QDir::toNativeSeparators(QFileInfo(filePath).absoluteFilePath()))
{
    IProjectDialogs::setInstance(&m_dialogs);
    m_pDocument = std::make_unique<VTDocument>();
    m_pDocument->setFileName(QFileInfo(filePath).absoluteFilePath());
    m_bOpen = m_pDocument->open();
    m_lstProblems = m_pDocument->getLoadProblems();
    for (const QString& problem : qAsConst(m_lstProblems))
        err << getShownPath() << ": " << problem << '\n';
    if (!m_bOpen)
        err << getShownPath() << ": " << tr("not opened") << '\n';
}

VTCliProject::~VTCliProject()
{
    // The document may still ask its dialogs while it closes.
    m_pDocument.reset();
    IProjectDialogs::setInstance(m_pPreviousDialogs);
}
