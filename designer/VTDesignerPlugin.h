#pragma once

#include "IPlugin.h"

#include <QPointer>
#include <QTimer>

#include "IEditor.h"
class QDockWidget;
#include <QWebEngineView>
class VTCanvasZoomControl;
class VTWelcomeBridge;

// The designer's entry: gives the host its document factory, builds the welcome page, the docks
// and their actions, restores the window layout and schedules the update check.
class VTDesignerPlugin final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.KORVEL.Vetra.Plugin" FILE "designer.json")
    Q_INTERFACES(ExtensionSystem::IPlugin)
public:
    VTDesignerPlugin();
    ~VTDesignerPlugin() override;

    // The docks, reachable by the panels that live in them.
    static QDockWidget* spInspectorDockWidget;
    static QDockWidget* spScenesDockWidget;
    static QDockWidget* spDocPropertiesWidget;
    static QDockWidget* spTimelineDockWidget;
    static QDockWidget* spElementsWidget;
    static QDockWidget* spResourcesWidget;
    static QDockWidget* spFunctionsWidget;
    static QDockWidget* spBreakpointsWidget;

    static QList<QDockWidget*> getDocks();
    QTimer* getUpdateTimer() { return &m_updateTimer; }
    QWebEngineView* getWelcomeView() const { return m_pWelcomeView; }

public slots:
    bool initialize(const QStringList& arguments, QString* pErrorString) override;
    void extensionsInitialized() override;
    bool delayedInitialize() override;
    ShutdownFlag aboutToShutdown() override;
    QObject* remoteCommand(const QStringList& options, const QString& workingDirectory,
                           const QStringList& arguments) override;

    void checkUpdates(bool bSilent);
    void updateEditorActivated(IEditor* pEditor);
    void updateEditorDeactivated(IEditor* pEditor);

private:
    void initWelcomeScreen();
    void initActions();
    void initToolbars();
    void initDocks();
    QDockWidget* addDock(const QString& title, const QString& objectName, const QString& actionId, QWidget* pContent,
                         Qt::DockWidgetArea area, const QString& context);
    void updateActions();
    void updateActionVisible(bool bVisible);

    QTimer m_updateTimer;
    QPointer<QWebEngineView> m_pWelcomeView;
    VTWelcomeBridge* m_pWelcomeBridge = nullptr;
    VTCanvasZoomControl* m_pZoomControl = nullptr;
    // Docks the user keeps open while editing; they come back whenever a project is active.
    QStringList m_lstEditingDocks;
};
