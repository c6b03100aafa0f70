#pragma once

#include <QObject>
#include <QPointer>

#include "IDocument.h"

// The view of one open document. The host forwards the document's signals through the editor,
// so panels can follow whichever editor is active without knowing documents.
class IEditor : public QObject
{
    Q_OBJECT
public:
    explicit IEditor(QObject* parent = nullptr);
    ~IEditor() override;

    IDocument* getDocument() const { return m_pDocument; }
    // Binds the document (not owned) and announces documentLoaded.
    void setDocument(IDocument* pDocument);
    // Tells views to let go of the document; the host calls it before deleting either.
    void unloadDocument();
    // Closes the editor's window without asking anything; the document has agreed already.
    virtual void closeWindow() {}

signals:
    void documentLoaded();
    void documentUnloading();
    void documentDataChanged(QObject* pInfo);
    void documentTitleChanged();
    void documentModifyChanged(bool bModified);
    void undoStackChanged();
    void aboutToActivate();
    void aboutToDeactivate();

private:
    QPointer<IDocument> m_pDocument;
};
