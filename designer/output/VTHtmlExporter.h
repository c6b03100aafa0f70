#pragma once

#include "VTExportedFontInfo.h"
#include "VTResource.h"

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QDir;
class VTDocument;
class VTResourceManager;

// Writes a project as a folder that the web player runs: the player script, the page N.html, the
// data script N.js, the resources, embedded fonts and the style sheet N.css. A preview writes the
// page, data script and style sheet only, into a folder of its own, with the preview flag.
//
// The page and the style sheet are templates with "{$name}" placeholders: the project's own
// text when the author edited it, else the player folder's (VTEngine). Everything the project
// says goes in escaped for its place (VTExportText), and every file lands inside the chosen
// folder: output folder names that lead out of it, and resource or function names that cannot
// be written safely, are refused before the first file is written.
//
// Failures are told in message boxes titled with the application's name and end the step with
// false; what was written before stays.
class VTHtmlExporter final
{
    Q_DECLARE_TR_FUNCTIONS(VTHtmlExporter)
public:
    // Writes an embedded font as a WOFF file; false when the family has no file to convert.
    using FontConverter =
        std::function<bool(const QString& family, const QString& targetPath, bool bBold, bool bItalic)>;

    explicit VTHtmlExporter(VTDocument& document);
    VTHtmlExporter(const VTHtmlExporter&) = delete;
    VTHtmlExporter& operator=(const VTHtmlExporter&) = delete;

    VTDocument& getDocument() const { return m_document; }

    // The export into a chosen folder, made when missing: checks, then player, page, data
    // script, resources, embedded fonts and style sheet.
    bool exportTo(const QString& folder);
    // Where exportTo puts the page.
    QString getPageFilePath(const QString& folder) const;

    // Every writer takes the folder it writes into.
    bool exportPlayerFile(const QString& folder);
    bool exportHtmlFile(const QString& folder, bool bPreview);
    bool exportDataFile(const QString& folder, bool bPreview, bool bCurrentSceneOnly);
    bool exportCSSFile(const QString& folder, bool bPreview);
    bool exportResources(const QDir& target);
    // Writes the system fonts collected by the last createDocDataScript and makes the
    // "@font-face" text of the style sheet. Fonts that the converter cannot write are left out.
    bool exportFonts(const QDir& target);

    // The scripts (VTExportScripts); createDocDataScript of the main document for an export
    // also collects the system fonts to embed.
    QString createDocDataScript(VTDocument& document, bool bPreview, bool bCurrentSceneOnly, bool bPreloader);
    QString createFunctionDataScript(const VTDocument& document, bool bInline) const;
    QString createLoadScript(bool bPreview);
    static QString getScopeInjectionScript();
    static QString convertAlignToString(int nAlign);

    // The page's tags for the scripts (type 5) or style sheets (type 6) included in the header.
    QString loadIncludeFiles(VTResource::ResourceType type, bool bPreview) const;
    // The link of the Google Fonts that the text of the project uses; empty when none.
    QString getStringIncludeHeaderGoogleFont() const;
    // The player folder's templates; empty, with a message, when they cannot be read.
    QString getDefaultHtmlContent() const;
    QString getDefaultCSSContent() const;
    // The style sheet with its placeholder filled.
    QString getCSSContent(bool bPreview) const;

    // The checks that exportTo runs before writing; each tells the user what it refuses.
    // Output folder names of the project and its preloader.
    bool checkOutputFolders() const;
    // Function names of the document (and of its custom preloader, when the page will hold it).
    bool checkFunctionNames();
    // The names that resources will have in the output folder.
    bool checkResourceNames();

    // The system fonts to embed, and the style sheet text made for them.
    QList<VTExportedFontInfo> getSystemFonts() const { return m_lstSystemFonts; }
    QString getFontFaceText() const { return m_strFontFace; }
    // The default finds no font files, as the platform offers no lookup of them.
    void setFontConverter(FontConverter converter) { m_fontConverter = std::move(converter); }

private:
    struct ResourceFile
    {
        QString strName;
        QString strSource;
        QString strTarget;
    };

    VTResourceManager* getPreloaderManager();
    // The files of the resources of one manager as they go to the output folder.
    static QList<ResourceFile> listResourceFiles(VTResourceManager& manager, bool bPreloader);
    bool copyResourceFiles(VTResourceManager& manager, const QList<ResourceFile>& files,
                           const QString& folder, const std::function<bool()>& isCancelled) const;
    // Makes the output folder name inside target; false when it cannot be made or resolves
    // outside target.
    static bool makeOutputFolder(const QDir& target, const QString& name, QString* pPath);
    QString readPlayerTemplate(const QString& fileName, bool* pbOk) const;
    bool writeTextFile(const QString& filePath, const QString& text, const QString& openFailure,
                       const QString& writeFailure) const;
    void collectSystemFonts();
    QList<VTExportedFontInfo> collectUsedFonts() const;
    static void tell(const QString& text);

    VTDocument& m_document;
    QList<VTExportedFontInfo> m_lstSystemFonts;
    QString m_strFontFace;
    FontConverter m_fontConverter;
};
