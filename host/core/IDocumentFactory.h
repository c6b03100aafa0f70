#pragma once

#include <QObject>
#include <QStringList>

class ICreateDocumentDlg;
class IDocument;
class IEditor;
class IOptionsDlg;

// What a plug-in gives the host so File > New and Open can make its documents and editors.
class IDocumentFactory : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

public slots:
    virtual IDocument* createDocument() = 0;
    virtual IEditor* createEditor() = 0;
    // File suffixes this factory opens, without dots; the first ones are preferred.
    virtual QStringList getMimeTypes() = 0;
    virtual IOptionsDlg* createOptionDlg() = 0;
    virtual ICreateDocumentDlg* getNewProjectDialog() = 0;
    // Asks the user for a file to open; empty when cancelled.
    virtual QString getOpenFileName() = 0;
};
