#include "QSimpleUpdater.h"

#include "ICore.h"
#include "IMessageBox.h"
#include "PluginManager.h"
#include "PluginSpec.h"

#include <QDesktopServices>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSettings>

namespace {
constexpr qint64 kMaxFeedSize = 256 * 1024;
constexpr int kTimeoutMs = 20000;
constexpr char kDefaultServer[] = "https://www.korvel.com";
constexpr char kFeedPath[] = "/updates/vetra-studio/updates.json";
} // namespace

QSimpleUpdater::QSimpleUpdater()
    : m_pManager(new QNetworkAccessManager(this))
    , m_strModuleVersion(ICore::versionString())
{
}

QSimpleUpdater* QSimpleUpdater::getInstance()
{
    static QSimpleUpdater* s_pInstance = new QSimpleUpdater;
    return s_pInstance;
}

QUrl QSimpleUpdater::feedUrl()
{
    QString server = QLatin1String(kDefaultServer);
    if (QSettings* pSettings = ExtensionSystem::PluginManager::settings())
        server = pSettings->value(QStringLiteral("Vetra/UpdateServer"), server).toString();
    QUrl url(server);
    if (!url.isValid() || (url.scheme() != QLatin1String("https") && url.scheme() != QLatin1String("http")))
        url = QUrl(QLatin1String(kDefaultServer));
    QString path = url.path();
    while (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    url.setPath(path + QLatin1String(kFeedPath));
    return url;
}

void QSimpleUpdater::checkForUpdates(const QUrl& url, bool bSilent)
{
    if (m_pReply) {
        // One check at a time; the one running answers.
        return;
    }
    m_bUpdateAvailable = false;
    m_strLastError.clear();
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(kTimeoutMs);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Vetra Studio/%1").arg(m_strModuleVersion));
    QNetworkReply* pReply = m_pManager->get(request);
    m_pReply = pReply;
    connect(pReply, &QNetworkReply::downloadProgress, pReply, [pReply](qint64 received, qint64) {
        if (received > kMaxFeedSize)
            pReply->abort();
    });
    connect(pReply, &QNetworkReply::finished, this, [this, pReply, bSilent] { onFinished(pReply, bSilent); });
}

void QSimpleUpdater::onFinished(QNetworkReply* pReply, bool bSilent)
{
    pReply->deleteLater();
    m_pReply = nullptr;
    const QUrl url = pReply->request().url();
    if (pReply->error() != QNetworkReply::NoError)
        m_strLastError = pReply->errorString();
    else if (!parse(pReply->read(kMaxFeedSize + 1)))
        m_strLastError = m_strLastError.isEmpty() ? tr("The update information is not valid.") : m_strLastError;
    finish(url, bSilent);
}

bool QSimpleUpdater::parse(const QByteArray& data)
{
    if (data.size() > kMaxFeedSize) {
        m_strLastError = tr("The update information is too large.");
        return false;
    }
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !doc.isObject())
        return false;
    const QJsonObject platform =
        doc.object().value(QStringLiteral("updates")).toObject().value(m_strPlatform).toObject();
    const QString latest = platform.value(QStringLiteral("latest-version")).toString();
    if (!ExtensionSystem::PluginSpec::isValidVersion(latest))
        return false;
    m_strLatestVersion = latest;
    m_strChangelog = platform.value(QStringLiteral("changelog")).toString();
    const QUrl download(platform.value(QStringLiteral("download-url")).toString());
    // Only web addresses are ever opened from the feed.
    m_downloadUrl = (download.scheme() == QLatin1String("https") || download.scheme() == QLatin1String("http"))
                        ? download
                        : QUrl();
    m_bUpdateAvailable = ExtensionSystem::PluginSpec::compareVersions(latest, m_strModuleVersion) > 0;
    return true;
}

void QSimpleUpdater::finish(const QUrl& url, bool bSilent)
{
    IMessageBox* pBox = IMessageBox::instance();
    const QString title = ICore::applicationName();
    if (!m_strLastError.isEmpty()) {
        if (!bSilent && m_bNotifyOnFinish)
            pBox->warning(title, tr("Could not check for updates:\n%1").arg(m_strLastError));
    } else if (m_bUpdateAvailable) {
        emit updateAvailable(m_strLatestVersion);
        if (m_bNotifyOnUpdate) {
            QString text = tr("Version %1 of %2 is available (you have %3).")
                               .arg(m_strLatestVersion, title, m_strModuleVersion);
            if (!m_strChangelog.isEmpty())
                text += QLatin1String("\n\n") + m_strChangelog;
            if (m_bDownloader && m_downloadUrl.isValid()) {
                text += QLatin1String("\n\n") + tr("Do you want to download it now?");
                if (pBox->question(title, text, IMessageBox::Yes | IMessageBox::No, IMessageBox::Yes)
                    == IMessageBox::Yes)
                    QDesktopServices::openUrl(m_downloadUrl);
            } else {
                pBox->information(title, text);
            }
        }
    } else if (!bSilent && m_bNotifyOnFinish) {
        pBox->information(title, tr("You are using the latest version of %1.").arg(title));
    }
    emit checkingFinished(url);
}
