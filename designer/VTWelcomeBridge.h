#pragma once

#include <QObject>
#include <QStringList>

class MainWindow;

// What the welcome page may do, published on the web channel as "vtwelcome".
class VTWelcomeBridge final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList recentFiles READ getRecentFiles NOTIFY recentFilesChanged)
    Q_PROPERTY(QString appVersion READ getAppVersion CONSTANT)
public:
    explicit VTWelcomeBridge(MainWindow* pWindow);

    QStringList getRecentFiles() const;
    QString getAppVersion() const;

public slots:
    void newProject();
    void openProject();
    // Only projects of the recent list: the page names a path, and a page is not trusted to
    // name any file it likes.
    void openRecent(const QString& filePath);

signals:
    void recentFilesChanged();

private:
    MainWindow* m_pWindow;
};
