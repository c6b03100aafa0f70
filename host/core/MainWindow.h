#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QUrl>

class IDocument;
class IDocumentFactory;
class IEditor;
class IOptionsDlg;
class QMdiArea;
class QMenu;
class QToolBar;
class QWebChannel;
class QWebSocketServer;
class RecentFiles;
class WebChannelServer;

// The studio's window: menus, file tool bar, the area that holds one tab per open project,
// the welcome page while none is open, and the socket server of the web channel.
class MainWindow final : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    QMdiArea* getMdiArea() const { return m_pMdiArea; }
    void setWelcomeWidget(QWidget* pWidget);
    QWidget* getWelcomeWidget() const { return m_pWelcome; }
    QWebSocketServer* getServer() const;
    QWebChannel* getChannel() const;
    WebChannelServer* getWebChannelServer() const { return m_pChannelServer; }
    // The address a page connects to, access token included.
    QUrl getWebChannelUrl() const;
    QToolBar* getFileToolbar() const { return m_pFileToolbar; }
    QString getDefaultTempPath() const;
    IOptionsDlg* getOptionsDialog();
    RecentFiles* getRecentFiles() const { return m_pRecentFiles; }

    // Gives an opened document its editor and makes it the active tab.
    void loadOpenedDocument(IDocument* pDocument, bool bAddToRecent);
    void updateRecentFileActions();

public slots:
    void newProject();
    void openProject();
    // Opens (or activates, when already open) the project at `filePath`.
    bool openFile(const QString& filePath);
    bool saveProject();
    bool saveProjectAs();
    bool closeProject();
    // Closes every project, each asked in turn; false when one refused.
    bool closeAllProjects();
    void showPreferences();

protected:
    void closeEvent(QCloseEvent* pEvent) override;

private:
    void createMenus();
    void createFileToolbar();
    IDocumentFactory* factory() const;
    IDocument* activeDocument() const;
    void onClosingRequested(IDocument* pDocument, bool bCloseWindow);
    void onEditorActivated(IEditor* pEditor);
    void updateWelcomeVisibility();
    void updateFileActions();

    QMdiArea* m_pMdiArea;
    QPointer<QWidget> m_pWelcome;
    WebChannelServer* m_pChannelServer;
    RecentFiles* m_pRecentFiles;
    QToolBar* m_pFileToolbar = nullptr;
    QMenu* m_pRecentMenu = nullptr;
    QPointer<IOptionsDlg> m_pOptionsDlg;
    QMetaObject::Connection m_statusConnection;
};
