#pragma once

#include "VTCliProjectDialogs.h"

#include <QCoreApplication>
#include <QStringList>

#include <memory>

class QTextStream;
class VTDocument;

// A project opened for one command as the studio opens it. While it is open the unattended
// dialogs stand in for the user; every load problem goes to the error stream after the file's
// path, and a project that does not open says so there too. The project is never saved here.
class VTCliProject final
{
    Q_DECLARE_TR_FUNCTIONS(VTCliProject)
public:
    VTCliProject(const QString& filePath, QTextStream& err);
    ~VTCliProject();
    VTCliProject(const VTCliProject&) = delete;
    VTCliProject& operator=(const VTCliProject&) = delete;

    bool isOpen() const { return m_bOpen; }
    VTDocument& getDocument() const { return *m_pDocument; }
    const QStringList& getProblems() const { return m_lstProblems; }
    // The path the user gave, absolute, as the user's system writes it.
    QString getShownPath() const { return m_strShownPath; }

private:
    VTCliProjectDialogs m_dialogs;
    IProjectDialogs* m_pPreviousDialogs = nullptr;
    std::unique_ptr<VTDocument> m_pDocument;
    QStringList m_lstProblems;
    QString m_strShownPath;
    bool m_bOpen = false;
};
