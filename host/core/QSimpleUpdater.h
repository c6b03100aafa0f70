#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;
#include <QNetworkReply>

// Reads the update feed, a small JSON file:
//   {"updates": {"linux": {"latest-version": "2.7.0", "download-url": "https://...",
//                          "changelog": "...", "mandatory-update": false}}}
// and tells the user when a newer version exists.
class QSimpleUpdater final : public QObject
{
    Q_OBJECT
public:
    static QSimpleUpdater* getInstance();

    void setDownloaderEnabled(bool bEnabled) { m_bDownloader = bEnabled; }
    void setNotifyOnUpdate(bool bNotify) { m_bNotifyOnUpdate = bNotify; }
    void setNotifyOnFinish(bool bNotify) { m_bNotifyOnFinish = bNotify; }
    void setModuleVersion(const QString& version) { m_strModuleVersion = version; }
    void setPlatformKey(const QString& key) { m_strPlatform = key; }
    // With bSilent (the automatic check at start) only a newer version is reported; a check the
    // user asked for also reports "up to date" and failures.
    void checkForUpdates(const QUrl& url, bool bSilent);
    bool isChecking() const { return m_pReply != nullptr; }

    bool getUpdateAvailable() const { return m_bUpdateAvailable; }
    QString getLatestVersion() const { return m_strLatestVersion; }
    QString getChangelog() const { return m_strChangelog; }
    QUrl getDownloadUrl() const { return m_downloadUrl; }
    QString getLastError() const { return m_strLastError; }

    // The feed's address: the "Vetra/UpdateServer" setting (an http(s) base URL, default the
    // maker's endpoint) plus the feed path.
    static QUrl feedUrl();

signals:
    void checkingFinished(const QUrl& url);
    void updateAvailable(const QString& version);

private:
    QSimpleUpdater();
    void onFinished(QNetworkReply* pReply, bool bSilent);
    bool parse(const QByteArray& data);
    void finish(const QUrl& url, bool bSilent);

    QNetworkAccessManager* m_pManager;
    QPointer<QNetworkReply> m_pReply;
    bool m_bDownloader = false;
    bool m_bNotifyOnUpdate = true;
    bool m_bNotifyOnFinish = false;
    QString m_strModuleVersion;
    QString m_strPlatform = QStringLiteral("linux");
    bool m_bUpdateAvailable = false;
    QString m_strLatestVersion;
    QString m_strChangelog;
    QUrl m_downloadUrl;
    QString m_strLastError;
};
