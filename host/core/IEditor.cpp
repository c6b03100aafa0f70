#include "IEditor.h"

#include "IDocument.h"

IEditor::IEditor(QObject* parent)
    : QObject(parent)
{
}

IEditor::~IEditor() = default;

void IEditor::setDocument(IDocument* pDocument)
{
    if (m_pDocument)
        unloadDocument();
    m_pDocument = pDocument;
    if (!pDocument)
        return;
    connect(pDocument, &IDocument::titleChanged, this, &IEditor::documentTitleChanged);
    connect(pDocument, &IDocument::modifyChanged, this, &IEditor::documentModifyChanged);
    connect(pDocument, &IDocument::undoStackChanged, this, &IEditor::undoStackChanged);
    connect(pDocument, &IDocument::dataChanged, this, &IEditor::documentDataChanged);
    emit documentLoaded();
}

void IEditor::unloadDocument()
{
    if (!m_pDocument)
        return;
    emit documentUnloading();
    disconnect(m_pDocument, nullptr, this, nullptr);
    m_pDocument = nullptr;
}
