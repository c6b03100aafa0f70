#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

class VTDocument;

// Shows a project in a browser without a full export: the page, data script and style sheet,
// with the player, go into the folder "preview" inside the project's resource folder, and the
// process-wide VTHttpServer serves them on the loopback address. Resources are not copied; the
// page reaches them one folder up, through the same server, which serves the resource folder of
// every open project.
//
// Failures are told in message boxes and end the preview with false. A browser that does not
// open is told as well, but the preview itself stands: the server runs and the URL is valid.
class VTPreview final
{
    Q_DECLARE_TR_FUNCTIONS(VTPreview)
public:
    // Opens a page; false when it could not.
    using UrlOpener = std::function<bool(const QUrl& url)>;

    // Without a document every preview fails with a message.
    explicit VTPreview(VTDocument* pDocument);

    static QString getPreviewFolderName() { return QStringLiteral("preview"); }
    // The resource folder's "preview"; empty without a document.
    QString getPreviewFolderPath() const;

    // The studio opens the default browser (the default); the command-line tool prints the URL.
    void setUrlOpener(UrlOpener opener) { m_opener = std::move(opener); }
    static bool openInDesktopBrowser(const QUrl& url);
    // The port the server is started on when it does not listen yet; taken, it falls back to one
    // that the system picks.
    void setPort(quint16 nPort) { m_nPort = nPort; }
    quint16 getPort() const { return m_nPort; }

    // Writes the preview of the symbol being edited (its current scene alone with
    // bCurrentSceneOnly), makes sure the server runs and serves the folder, and opens the page.
    bool previewProject(bool bCurrentSceneOnly);

    // The page's address of the last preview, empty before one succeeded.
    QUrl getUrl() const { return m_url; }
    // The files the last preview wrote, absolute.
    QStringList getWrittenFiles() const { return m_lstWrittenFiles; }
    // http://127.0.0.1:PORT/ followed by the page's absolute path.
    static QUrl buildUrl(const QString& pagePath, quint16 nPort);

private:
    // Makes the preview folder when missing; false when it cannot be had, or when what stands
    // there is no plain folder inside the resource folder (a link would let the server out).
    bool preparePreviewFolder(QString* pFolder) const;
    void noteWritten(const QString& folder, const QString& fileName);
    static void tell(const QString& text);

    VTDocument* m_pDocument = nullptr;
    UrlOpener m_opener;
    quint16 m_nPort;
    QUrl m_url;
    QStringList m_lstWrittenFiles;
};
