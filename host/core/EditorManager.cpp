#include "EditorManager.h"

#include "IEditor.h"

EditorManager* EditorManager::instance()
{
    static EditorManager* s_pInstance = new EditorManager;
    return s_pInstance;
}

IEditor* EditorManager::activeEditor()
{
    return instance()->m_pActive;
}

QList<IEditor*> EditorManager::getEditors()
{
    return instance()->m_lstEditors;
}

IEditor* EditorManager::getEditorOfDocument(IDocument* pDocument)
{
    for (IEditor* pEditor : instance()->m_lstEditors) {
        if (pDocument && pEditor->getDocument() == pDocument)
            return pEditor;
    }
    return nullptr;
}

void EditorManager::activateEditor(IEditor* pEditor)
{
    EditorManager* self = instance();
    if (pEditor == self->m_pActive || (pEditor && !self->m_lstEditors.contains(pEditor)))
        return;
    if (IEditor* pOld = self->m_pActive) {
        emit pOld->aboutToDeactivate();
        self->m_pActive = nullptr;
        emit self->editorDeactivated(pOld);
    }
    self->m_pActive = pEditor;
    if (pEditor) {
        emit pEditor->aboutToActivate();
        emit self->editorActivated(pEditor);
    }
}

void EditorManager::addEditor(IEditor* pEditor)
{
    EditorManager* self = instance();
    if (!pEditor || self->m_lstEditors.contains(pEditor))
        return;
    self->m_lstEditors.append(pEditor);
    connect(pEditor, &QObject::destroyed, self, [self, pEditor] { self->m_lstEditors.removeAll(pEditor); });
    emit self->editorAdded(pEditor);
}

void EditorManager::removeEditor(IEditor* pEditor)
{
    EditorManager* self = instance();
    if (!self->m_lstEditors.contains(pEditor))
        return;
    if (self->m_pActive == pEditor)
        activateEditor(nullptr);
    self->m_lstEditors.removeAll(pEditor);
    emit self->editorRemoved(pEditor);
}
