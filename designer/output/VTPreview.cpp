#include "VTPreview.h"

#include "IMessageBox.h"
#include "IUtils.h"
#include "VTDocument.h"
#include "VTEngine.h"
#include "VTHtmlExporter.h"
#include "VTHttpServer.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHostAddress>

VTPreview::VTPreview(VTDocument* pDocument)
    : m_pDocument(pDocument)
    , m_opener(&VTPreview::openInDesktopBrowser)
    , m_nPort(VTHttpServer::s_nDefaultPort)
{}

bool VTPreview::openInDesktopBrowser(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

void VTPreview::tell(const QString& text)
{
    IMessageBox::instance()->warning(IUtils::getApplicationName(), text, IMessageBox::Ok);
}

QString VTPreview::getPreviewFolderPath() const
{
    if (!m_pDocument || m_pDocument->getFileName().isEmpty())
        return QString();
    return QDir(m_pDocument->getResourceFolderPath()).filePath(getPreviewFolderName());
}

QUrl VTPreview::buildUrl(const QString& pagePath, quint16 nPort)
{
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(QHostAddress(QHostAddress::LocalHost).toString());
    url.setPort(nPort);
    // Decoded: a "%" or "#" in a folder name is part of the name.
    url.setPath(QLatin1Char('/') + QFileInfo(pagePath).absoluteFilePath(), QUrl::DecodedMode);
    return url;
}

bool VTPreview::preparePreviewFolder(QString* pFolder) const
{
    const QString location = m_pDocument->getLocation();
    const QString resourceFolder = m_pDocument->getResourceFolderName();
    if (location.isEmpty() || resourceFolder.isEmpty() || !QFileInfo(location).isDir())
        return false;
    QDir dir(location);
    if ((!dir.exists(resourceFolder) && !dir.mkdir(resourceFolder)) || !dir.cd(resourceFolder))
        return false;
    const QString resourcePath = QFileInfo(dir.absolutePath()).canonicalFilePath();
    const QString name = getPreviewFolderName();
    if ((!dir.exists(name) && !dir.mkdir(name)) || !dir.cd(name))
        return false;
    const QFileInfo preview(dir.absolutePath());
    // The server will serve whatever this folder is; it must be the one inside the project.
    if (preview.isSymLink() || resourcePath.isEmpty() ||
        preview.canonicalFilePath() != QDir(resourcePath).filePath(name))
        return false;
    *pFolder = dir.absolutePath();
    return true;
}

void VTPreview::noteWritten(const QString& folder, const QString& fileName)
{
    // Listed in the project's history, so the preview goes when the project closes.
    m_pDocument->addFileHistory(getPreviewFolderName() + QLatin1Char('/') + fileName, true);
    m_lstWrittenFiles.append(QDir(folder).filePath(fileName));
}

bool VTPreview::previewProject(bool bCurrentSceneOnly)
{
    m_url = QUrl();
    m_lstWrittenFiles.clear();
    if (!m_pDocument) {
        tell(tr("Unable to preview document."));
        return false;
    }
    m_pDocument->pause();

    QString folder;
    if (!preparePreviewFolder(&folder)) {
        tell(tr("Unable to preview project.\nThe resources folder is undefined or inaccessible."));
        return false;
    }

    VTHtmlExporter exporter(*m_pDocument);
    if (!exporter.exportPlayerFile(folder))
        return false;
    noteWritten(folder, VTEngine::getPlayerFileName());
    if (!exporter.exportHtmlFile(folder, true))
        return false;
    noteWritten(folder, m_pDocument->getHTML5EntryFileName());
    if (!exporter.exportDataFile(folder, true, bCurrentSceneOnly))
        return false;
    noteWritten(folder, m_pDocument->getHTML5DataFileName());
    if (!exporter.exportCSSFile(folder, true))
        return false;
    noteWritten(folder, m_pDocument->getHTML5CSSFileName());

    VTHttpServer* pServer = VTHttpServer::getInstance();
    // Only the loopback address: the preview is for this machine's browser alone.
    if (!pServer->isListening() && !pServer->start(QHostAddress(QHostAddress::LocalHost), m_nPort)) {
        tell(tr("Unable to start the preview server."));
        return false;
    }
    pServer->addAllowedDir(folder);

    m_url = buildUrl(exporter.getPageFilePath(folder), pServer->getPort());
    if (!m_opener || !m_opener(m_url)) {
        tell(tr("Unable to preview %1 in default browser.")
                 .arg(bCurrentSceneOnly ? tr("current scene") : tr("project")));
    }
    return true;
}
