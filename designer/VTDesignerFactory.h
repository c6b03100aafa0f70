#pragma once

#include "IDocumentFactory.h"

// Makes the designer's documents, editors and dialogs for the host.
class VTDesignerFactory final : public IDocumentFactory
{
    Q_OBJECT
public:
    using IDocumentFactory::IDocumentFactory;

public slots:
    IDocument* createDocument() override;
    IEditor* createEditor() override;
    QStringList getMimeTypes() override;
    IOptionsDlg* createOptionDlg() override;
    ICreateDocumentDlg* getNewProjectDialog() override;
    QString getOpenFileName() override;
};
