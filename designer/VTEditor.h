#pragma once

#include "IEditor.h"

#include <QPointer>

class VTCanvas;
class VTDocument;
#include "VTMdiSubWindow.h"

// The editor of one open project: its tab in the main window and the stage inside it.
class VTEditor final : public IEditor
{
    Q_OBJECT
public:
    VTEditor();
    ~VTEditor() override;

    VTDocument* getVTDocument() const;
    VTMdiSubWindow* getSubWindow() const { return m_pSubWindow; }
    VTCanvas* getCanvas() const { return m_pCanvas; }
    void closeWindow() override;

public slots:
    void selfActivate();
    void onDocumentModifyChanged(bool bModified);
    void updateDocumentTabName();
    void onDocumentLoaded();
    void onDocumentUnloaded();
    // Every record of a running command, for the stage.
    void onDocumentDataChanged(QObject* pInfo);
    void activateDocumentTab();
    // Writes the preview of the project (or of its current scene) and opens it in the browser
    // through the process-wide preview server.
    bool previewProject(bool bCurrentSceneOnly);

private:
    void showLoadProblems(VTDocument* pDocument);
    void loadCanvasPage();
    QPointer<VTMdiSubWindow> m_pSubWindow;
    VTCanvas* m_pCanvas = nullptr;
    // The resource folder this editor lets the preview server answer for.
    QString m_strServedFolder;
};
