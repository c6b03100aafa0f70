#pragma once

#include "DocumentManager.h"
#include "IDocument.h"
#include "VTApplicationFonts.h"
#include "VTBackup.h"
#include "VTFileHistory.h"
#include "VTOutputSettings.h"
#include "VTPreloaderLink.h"
#include "VTProjectPaths.h"
#include "VTSymbol.h"
#include "VTTypes.h"

#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QStringList>

#include <memory>

class QUndoCommand;
class VTFileLocker;
class VTFunctionManager;
class VTResourceManager;
class VTPreloader;

// One open project: folder N with the project file N.vetra and the resource folder N_res.
//
// What a save or a close may remove is decided by the resources: a file of the history that no
// resource references any more goes when the project closes or moves. Backups and their recovery
// are VTBackup's; subsystems still to come are reached through the protected hooks below.
class VTDocument : public IDocument, public VTSymbol
{
    Q_OBJECT
public:
    enum ViewportValue
    {
        ViewportDeviceHeight = VTOutputSettings::ViewportDeviceHeight,
        ViewportDeviceWidth = VTOutputSettings::ViewportDeviceWidth,
        ViewportNone = VTOutputSettings::ViewportNone,
    };
    Q_ENUM(ViewportValue)

    static constexpr int s_nCurrentDocVersion = 3;

    explicit VTDocument(QObject* parent = nullptr);
    ~VTDocument() override;

    static QString getProjectSuffix() { return VTProjectPaths::getProjectSuffix(); }
    static QString getBackupSuffix() { return VTProjectPaths::getBackupSuffix(); }
    static QString getPackageSuffix() { return VTProjectPaths::getPackageSuffix(); }

    // Names derived from the project file N.vetra.
    QString getName() const { return getPaths().getName(); }
    QString getLocation() const { return getPaths().getLocation(); }
    QString getResourceFolderName() const { return getPaths().getResourceFolderName(); }
    QString getResourceFolderPath() const { return getPaths().getResourceFolderPath(); }
    QString getBackupFilePath() const { return getPaths().getBackupFilePath(); }
    QString getHTML5EntryFileName() const { return getPaths().getHTML5EntryFileName(); }
    QString getHTML5DataFileName() const { return getPaths().getHTML5DataFileName(); }
    QString getHTML5CSSFileName() const { return getPaths().getHTML5CSSFileName(); }
    static QString getPath4Export(const QString& path) { return VTProjectPaths::getPath4Export(path); }
    VTProjectPaths getPaths() const { return VTProjectPaths(getFileName()); }

    // Files in the project folder that the project wrote or adopted, relative to the folder;
    // resource files carry the prefix "N_res/". What is listed here is what closing may remove.
    QStringList getFileHistory() const { return m_fileHistory.getEntries(); }
    bool addFileHistory(const QString& fileName, bool bInResourceFolder);
    bool removeFileHistory(const QString& fileName, bool bInResourceFolder);
    const VTFileLocker* getFileLocker() const { return m_pFileLocker; }
    VTFileLocker* getFileLocker() { return m_pFileLocker; }
    // Shared with every symbol of the project; owned here.
    VTResourceManager* getResourceManager() const { return m_pResourceManager; }
    // Bytes of all resources that are not deleted.
    virtual qint64 getDataSize() const;

    int getDocVersion() const { return m_nDocVersion; }
    void setDocVersion(int nVersion) { m_nDocVersion = nVersion; }
    bool isAutoplay() const { return m_bAutoplay; }
    void setAutoplay(bool bAutoplay) { m_bAutoplay = bAutoplay; }
    bool isAutoKeyframeMode() const { return m_bAutoKeyframeMode; }
    void setAutoKeyframeMode(bool bOn);
    // The preloader: see VTPreloaderLink.
    bool hasCustomLoader() const { return m_preloaderLink.hasCustomLoader(); }
    void setHasCustomLoader(bool bHas) { m_preloaderLink.setHasCustomLoader(bHas); }
    VT::PreloaderType getLoaderType() const { return m_preloaderLink.getLoaderType(); }
    void setLoaderType(VT::PreloaderType nType) { m_preloaderLink.setLoaderType(nType); }
    VTLoadIndicatorProps* getDefaultLoadingIndicatorProps()
    {
        return m_preloaderLink.getDefaultLoadingIndicatorProps();
    }
    const VTLoadIndicatorProps* getDefaultLoadingIndicatorProps() const
    {
        return m_preloaderLink.getDefaultLoadingIndicatorProps();
    }
    VTPreloader* getPreloaderDoc() const { return m_preloaderLink.getPreloaderDoc(); }
    void setPreloaderDoc(VTPreloader* pDoc)
    {
        m_preloaderLink.setPreloaderDoc(pDoc, m_outputSettings.getPreloaderResFolder());
    }
    bool initPreloaderDocument()
    {
        return m_preloaderLink.initPreloaderDocument(m_outputSettings.getPreloaderResFolder());
    }
    bool isEmbedSystemFont() const { return m_bEmbedSystemFont; }
    void setEmbedSystemFont(bool bEmbed) { m_bEmbedSystemFont = bEmbed; }
    const VTOutputSettings& getOutputSettings() const { return m_outputSettings; }
    QString getResFolderHTML5Output() const { return m_outputSettings.getResFolder(); }
    void setResFolderHTML5Output(const QString& name) { m_outputSettings.setResFolder(name); }
    // Kept in step along the chain of loaded preloaders; the last one's value is the one used.
    QString getPreloaderResFolderHTML5Output() const
    {
        return m_preloaderLink.resolvePreloaderResFolderHTML5Output(m_outputSettings.getPreloaderResFolder());
    }
    void setPreloaderResFolderHTML5Output(const QString& name)
    {
        m_outputSettings.setPreloaderResFolder(name);
        m_preloaderLink.propagatePreloaderResFolderHTML5Output(name);
    }
    int getViewportWMeta() const { return m_outputSettings.getViewportWMeta(); }
    void setViewportWMeta(int nValue) { m_outputSettings.setViewportWMeta(nValue); }
    int getViewportHMeta() const { return m_outputSettings.getViewportHMeta(); }
    void setViewportHMeta(int nValue) { m_outputSettings.setViewportHMeta(nValue); }
    QString getViewportWidthTag() const { return m_outputSettings.getViewportWidthTag(); }
    QString getViewportHeightTag() const { return m_outputSettings.getViewportHeightTag(); }
    static QString getViewportValueText(int nValue) { return VTOutputSettings::getViewportValueText(nValue); }
    QString getContainerID() const { return m_outputSettings.getContainerID(); }
    void setContainerID(const QString& id) { m_outputSettings.setContainerID(id); }
    QString getHtmlOutput() const { return m_outputSettings.getHtmlOutput(); }
    void setHtmlOutput(const QString& html) { m_outputSettings.setHtmlOutput(html); }
    QString getCssDoc() const { return m_outputSettings.getCssDoc(); }
    void setCssDoc(const QString& css) { m_outputSettings.setCssDoc(css); }
    bool isInitResponsive() const { return m_bInitResponsive; }
    void setInitResponsive(bool bResponsive) { m_bInitResponsive = bResponsive; }

    // What openTempDocument was asked for and the scene model will build from.
    int getRequestedSceneCount() const { return m_nRequestedSceneCount; }
    BreakpointList getInitialHBreakpoints() const { return m_lstInitialHBreakpoints; }
    BreakpointList getInitialVBreakpoints() const { return m_lstInitialVBreakpoints; }

    QString getStatus() const { return m_strStatus; }
    void setStatus(const QString& text);
    // The command being submitted last; owned by the undo stack.
    QUndoCommand* getCurrentCommand() const { return m_pCurrentCommand; }

    // The symbol being edited: the top of the editing stack, or the project itself.
    VTSymbol* getCurrentSymbol();
    const VTSymbol* getCurrentSymbol() const;
    // The project clears the stack, a symbol on the stack pops those above it, any other is pushed.
    void setCurrentSymbol(VTSymbol* pSymbol);
    QList<VTSymbol*> getEditingSymbolStack() const { return m_lstEditingSymbols; }
    void setEditingSymbolStack(const QList<VTSymbol*>& stack) { m_lstEditingSymbols = stack; }
    // Enter a symbol, or go back to the one below the top of the stack, through a command outside
    // the undo stack that the views hear of. An EditSymbolEvent posted to the document enters the
    // symbol of a resource.
    void startEditingSymbol(VTSymbol* pSymbol);
    void endEditingSymbol();
    // Asks the stage page to finish its running work and gives it half a second to do so, before a
    // change that would pull the ground from under it (playback, layout or symbol switch).
    void stopAllCurrentTasks();
    // Font resources register with the application's font database, for the stage and the
    // inspector; a command that restores or deletes resources registers them again.
    virtual void regApplicationFont();

    virtual bool isPreloader() const { return false; }
    // Asks before a project of another format version is written in the current one.
    bool checkFormatBeforeSaving();

    // The whole project file: `appName`, `document`, `locations`.
    bool loadData(const QJsonObject& object) override;
    bool saveData(QJsonObject& object) const override;

    // The keys of `document` that the project itself owns, beside those of VTSymbol.
    static QStringList getDocumentKeys();

public slots:
    void submitCommand(QUndoCommand* pCommand) override;
    virtual void submitCommand(QUndoCommand* pCommand, bool bDirect);
    bool openTempDocument(int nWidth, int nHeight, int nSceneCount, bool bResponsive) override;
    bool open() override;
    bool close() override;
    bool save() override;
    bool save(const QString& filePath) override;
    bool saveAs() override;
    bool revert() override { return true; }
    bool saveBackup() override { return m_backup.write(); }
    bool cleanTempDir() override;
    virtual bool extractPackage(const QString& packagePath, const QString& folder);
    virtual bool saveToPackage(const QString& packagePath);
    // The current timeline of the current scene of the current symbol. Both answer false when
    // there is none or it is already in that state; the views hear of a change by a record.
    virtual bool pause();
    virtual bool play();
    void onCleanup();
    void onPreloaderClose() { m_preloaderLink.onPreloaderClose(); }
    void onPreloaderSavedChanges() { m_preloaderLink.onPreloaderSavedChanges(); }

signals:
    void locationChanged();
    void changeAutoKeyframeMode(bool bOn);
    void changesSaved();

protected:
    void customEvent(QEvent* pEvent) override;

    // Hooks of the subsystems still to come, each with the behaviour that keeps data safe now.

    // Backup check before opening, which offers recovery; true lets the open go on.
    virtual bool checkBackupBeforeOpen(const QString& filePath)
    {
        return m_backup.recoverBeforeOpen(filePath);
    }
    // The open-as-backup question when closing; true lets the close go on.
    virtual bool confirmCloseOfBackup() { return m_backup.confirmClose(); }
    // Closes a loaded custom preloader; true when there is none or it closed.
    virtual bool closePreloader() { return m_preloaderLink.closePreloader(); }
    // Saves the custom preloader, loading it first if needed, into <newResourceFolder>/preloader.
    virtual bool savePreloaderTo(const QString& oldResourceFolder, const QString& newResourceFolder);
    // Only the fonts this project registered are removed again.
    virtual void removeApplicationFonts();
    // The preview server serves the resource folder; it follows a save under a new name.
    virtual void onResourceFolderMoved(const QString& oldFolder, const QString& newFolder)
    {
        Q_UNUSED(oldFolder)
        Q_UNUSED(newFolder)
    }

private:
    void resetToFileDefaults();
    void resetOutputToNewDefaults();
    void readDocumentKeys(const QJsonObject& document, bool bOldFormat);
    bool readDocVersion(const QJsonObject& document);
    void readLocations(const QJsonObject& object);
    // Writes the compact JSON of saveData() to filePath through a temporary file, with the lock
    // of filePath released only for the final rename and taken again afterwards.
    bool writeProjectFile(const QString& filePath, const QByteArray& data);
    bool serialize(QByteArray* pData);
    // After a save under a new name: the copies take the locks, and old files that are not in
    // referenced (absolute paths, taken while the old project was still current) go.
    void adoptCopiedFiles(const QList<QPair<QString, QString>>& copies, const QStringList& referenced,
                          bool bWasTemp, int nOldVersion);
    void finishSave(const QString& filePath);
    void warn(const QString& text) const;

    VTFileLocker* m_pFileLocker = nullptr;
    VTResourceManager* m_pResourceManager = nullptr;
    std::unique_ptr<VTFunctionManager> m_pFunctionManager;
    VTApplicationFonts m_applicationFonts;
    VTFileHistory m_fileHistory;
    VTBackup m_backup{*this};
    QList<VTSymbol*> m_lstEditingSymbols;
    QUndoCommand* m_pCurrentCommand = nullptr;
    QString m_strStatus;

    int m_nDocVersion = s_nCurrentDocVersion;
    bool m_bAutoplay = true;
    bool m_bAutoKeyframeMode = false;
    VTPreloaderLink m_preloaderLink{this};
    bool m_bEmbedSystemFont = false;
    VTOutputSettings m_outputSettings;
    bool m_bInitResponsive = false;
    // Top-level keys of the file that this version does not know, written back unchanged.
    QJsonObject m_joPreservedTop;

    int m_nRequestedSceneCount = 0;
    BreakpointList m_lstInitialHBreakpoints;
    BreakpointList m_lstInitialVBreakpoints;
};
