#pragma once

#include "VTLoadIndicatorProps.h"
#include "VTTypes.h"

#include <QJsonObject>
#include <QMetaObject>
#include <QString>
#include <QStringList>

class VTDocument;
class VTPreloader;

// A project's side of its preloader: which kind the page shows, the look of the built-in
// indicator, and the custom preloader document with its file in the project's resource folder.
//
// The custom preloader is loaded only when something needs it and dropped again when it closes,
// so the owner never keeps a preloader that another editor has already thrown away. While loaded
// it is a child of the owner; the host may take it into an editor of its own, and closing it
// there hands it back to the owner through aboutToClose.
class VTPreloaderLink final
{
public:
    explicit VTPreloaderLink(VTDocument* pOwner);
    ~VTPreloaderLink();
    VTPreloaderLink(const VTPreloaderLink&) = delete;
    VTPreloaderLink& operator=(const VTPreloaderLink&) = delete;

    VT::PreloaderType getLoaderType() const { return m_nLoaderType; }
    void setLoaderType(VT::PreloaderType nType) { m_nLoaderType = nType; }
    // Whether a custom preloader has been saved into the resource folder.
    bool hasCustomLoader() const { return m_bHasCustomLoader; }
    void setHasCustomLoader(bool bHas) { m_bHasCustomLoader = bHas; }
    VTLoadIndicatorProps* getDefaultLoadingIndicatorProps() { return &m_defaultProps; }
    const VTLoadIndicatorProps* getDefaultLoadingIndicatorProps() const { return &m_defaultProps; }

    // Null while the custom preloader is not loaded.
    VTPreloader* getPreloaderDoc() const { return m_pPreloader; }
    // Takes the document (a parentless one becomes a child of the owner) and hands it the
    // owner's output folder name, so the two never disagree.
    void setPreloaderDoc(VTPreloader* pPreloader, const QString& preloaderResFolderHTML5Output);
    // Loads the saved preloader, or makes an empty one of the owner's size when there is none
    // or it does not open. False only when no preloader could be made at all.
    bool initPreloaderDocument(const QString& preloaderResFolderHTML5Output);
    // The owner's value, or the one at the end of the chain of loaded preloaders.
    QString resolvePreloaderResFolderHTML5Output(const QString& ownValue) const;
    void propagatePreloaderResFolderHTML5Output(const QString& name);

    void onPreloaderClose();
    // The preloader is on disk now; the owner's flag that says so reaches the disk only with a
    // save of the owner.
    void onPreloaderSavedChanges();

    // Closes a loaded preloader before its owner; true when there is none or it closed.
    bool closePreloader();
    // Carries the preloader into newResourceFolder/preloader when the owner is saved under a new
    // name: loaded from disk first if needed, saved there without raising the owner's save.
    bool savePreloaderTo(const QString& newResourceFolder, const QString& preloaderResFolderHTML5Output);

    // The keys `hasCustomLoader`, `loaderType` and `defaultLoadingIndicatorProps` of `document`.
    void resetToFileDefaults();
    void readDocumentKeys(const QJsonObject& document, QStringList* pProblems);
    void writeDocumentKeys(QJsonObject& document) const;

    static QString getPreloaderFolderName() { return QStringLiteral("preloader"); }
    static QString getPreloaderFileName() { return QStringLiteral("preloader.vetra"); }

private:
    void disconnectPreloader();

    VTDocument* m_pOwner = nullptr;
    VT::PreloaderType m_nLoaderType = VT::DefaultPreloader;
    bool m_bHasCustomLoader = false;
    VTLoadIndicatorProps m_defaultProps;
    VTPreloader* m_pPreloader = nullptr;
    QMetaObject::Connection m_closeConnection;
    QMetaObject::Connection m_savedConnection;
};
