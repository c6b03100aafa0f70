#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class IDocument;
class IEditor;

// Keeps the open editors and which one is active.
class EditorManager final : public QObject
{
    Q_OBJECT
public:
    static EditorManager* instance();

    static IEditor* activeEditor();
    static QList<IEditor*> getEditors();
    static IEditor* getEditorOfDocument(IDocument* pDocument);
    static void activateEditor(IEditor* pEditor);
    static void addEditor(IEditor* pEditor);
    // Deactivates it first when it is the active one.
    static void removeEditor(IEditor* pEditor);

signals:
    void editorActivated(IEditor* pEditor);
    void editorDeactivated(IEditor* pEditor);
    void editorAdded(IEditor* pEditor);
    void editorRemoved(IEditor* pEditor);

private:
    EditorManager() = default;

    QList<IEditor*> m_lstEditors;
    QPointer<IEditor> m_pActive;
};
