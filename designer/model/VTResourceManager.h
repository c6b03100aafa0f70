#pragma once

#include "MediaResource.h"
#include "VTResource.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QPixmap>
#include <QStringList>

class QIODevice;
class QSaveFile;
class VTFileLocker;
class VTDocument;
class VTSymbol;

// Owns the resources of one project (the document and all its symbols share it) and their files
// in the resource folder. Every path it hands out or touches lies inside that folder: a file name
// read from a project that would lead elsewhere is refused, and such a resource counts as missing.
class VTResourceManager final : public QObject
{
    Q_OBJECT
public:
    explicit VTResourceManager(VTDocument* pDocument, QObject* parent = nullptr);
    ~VTResourceManager() override;

    VTDocument* getDocument() const { return m_pDocument; }

    // Lookups; null when nothing matches. By name and by file name skip deleted resources, by
    // uuid does not, so pasted content can find and restore a deleted one.
    VTResource* findResourceById(int nId) const;
    VTResource* findResourceByUuid(const QUuid& uuid) const;
    VTResource* findResourceByName(const QString& name) const;
    VTResource* findResourceByFileName(const QString& fileName) const;
    // Scripts and style sheets in their saved order, whatever skipDeleted says; others by id.
    QList<VTResource*> getResourcesByType(int nType, bool bSkipDeleted) const;
    const QMap<int, VTResource*>& getIdResourceMap() const { return m_mapResources; }
    const QMap<VTResource*, VTSymbol*>& getResourceSymbolMap() const { return m_mapSymbols; }
    QList<VTResource*> getOrderedJsResources() const { return m_lstJsResources; }
    QList<VTResource*> getOrderedCssResources() const { return m_lstCssResources; }
    VTSymbol* getSymbolForResource(VTResource* pResource) const { return m_mapSymbols.value(pResource); }
    VTResource* getResourceForSymbol(VTSymbol* pSymbol) const { return m_mapSymbols.key(pSymbol); }

    // Registration only; takes ownership. An id below 1 takes the next free one.
    void addResource(VTResource* pResource);
    // Imports a file into the resource folder under a free name, then registers. False when the
    // source does not read, the copy fails or is cancelled; nothing stays behind then.
    bool addResource(VTResource* pResource, const QString& sourcePath);
    // Copies the resource's files over from another project, then registers.
    bool addResource(VTResource* pResource, VTResourceManager* pOther);
    // A symbol resource for a symbol made in this project; its file is written at the next save.
    void addResource(VTResource* pResource, VTSymbol* pSymbol);
    // Deletes the resource (and its symbol) outright; for resources that were never committed.
    void removeResource(VTResource* pResource);

    // The resource folder with a trailing "/", made when missing.
    QString getTempPath() const;
    // The same without touching the disk; empty while the project has no file name.
    QString getResourceFolder() const;
    // The absolute path of a file name inside the resource folder, or empty when the name would
    // lead outside it (absolute, "..", a backslash, a symbolic link out of the folder).
    QString resolveFileName(const QString& fileName) const;
    QString getAbsTempFilename(VTResource* pResource, bool bSaveSymbol = false);
    QString getAbsTempFilename(const MediaResource* pResource, MediaResource::MediaFormat format) const;
    QStringList getAbsTempFilenames(const MediaResource* pResource) const;
    // Every file that the resources refer to; URL scripts and style sheets have none.
    QStringList getAbsTempFilenames(bool bSkipDeleted, bool bSaveSymbols);

    qint64 getDataSize(VTResource* pResource, bool bWithSymbols) const;
    qint64 getDataSize(const QList<VTResource*>& resources, bool bWithSymbols) const;
    qint64 getDataSize(bool bWithSymbols) const;

    QPixmap loadResouceAsPixmap(VTResource* pResource) const;
    bool saveResourceAsFile(VTResource* pResource, const QString& targetPath);

    int getJsCssResourceOrder(VTResource* pResource) const;
    bool setJsCssResourceOrder(VTResource* pResource, int nIndex);

    // "resource://" links of HTML widgets.
    static QString getUrlPrefix() { return QStringLiteral("resource://"); }
    static QString getUrlResource(const VTResource* pResource);
    static bool isUrlResource(const QString& text);
    VTResource* getResourceFromUrl(const QString& text) const;

    // A free file name in the folder for a wanted one: reserved characters replaced, then
    // "_1", "_2"... until no resource (deleted ones included) has it and it is no reserved name.
    QString getValidFileName(const QString& fileName) const;
    // A free display name; pSelf is the resource being named, if any.
    QString getValidResourceName(const QString& name, const VTResource* pSelf = nullptr) const;

    bool loadAllSymbols();
    VTSymbol* loadSymbol(VTResource* pResource);
    bool saveAllSymbolsState();

    // The `resources` list of the project file. Problems go to pProblems; a false result means
    // either a broken entry (the load must stop) or missing files (pbMissingFiles tells).
    bool parse(const QJsonArray& array, int nDocVersion, QStringList* pProblems, bool* pbMissingFiles);
    void serialize(QJsonArray& array) const;
    void serializeToExport(QJsonArray& array, bool bPreview, bool bStage);
    // The same list with the entry of one resource alone, for the views that a change of it reaches.
    void serializeToExport(QJsonArray& array, const VTResource* pResource, bool bPreview, bool bStage);

    // A file of an old project kept under its hashed name was copied to its plain name.
    void addMigratedFile(const QString& hashedName, const QString& plainName);
    // Locks a file found at load and enters it in the file history.
    void adoptLoadedFile(const QString& fileName) { lockAndRecord(fileName); }
    bool isTempResource(const QString& filePath) const;
    void cleanOldResources();
    void updateOriginalResourceFile(VTResource* pResource) { Q_UNUSED(pResource) }

    // Copies in chunks of 1 MiB, emitting bytesWritten after each, until done or cancelled;
    // closes both devices. True when all went through.
    bool copyResourceData(QIODevice* pSource, QIODevice* pTarget);
    void cancelCopyingData() { m_bCancelCopy = true; }
    bool isCopyCancelled() const { return m_bCancelCopy; }

    // Copies above this size show a progress dialog that can cancel them.
    static qint64 getMinimumDatasizeToShow() { return 0x1400000; }
    static constexpr qint64 s_nChunkSize = 0x100000;

    // The names a folder of resources must never take.
    static bool isReservedName(const QString& fileName);

    // Replaces a held file by the content of pFile, releasing the lock only around the rename.
    bool commitLockedFile(const QString& filePath, QSaveFile* pFile);

    static bool copyDirRecursive(const QString& source, const QString& target, bool bOverwrite);
    static bool copyDir(const QString& source, const QString& target);

signals:
    void bytesWritten(qint64 nBytes);

private:
    bool isFileNameTaken(const QString& candidate, MediaResource::MediaFormat format) const;
    // Locks the file and enters it in the project's file history.
    void lockAndRecord(const QString& fileName);
    VTFileLocker* getLocker() const;
    // Copies a list of (source, target) files with one progress display for all of them; on
    // failure or cancel the targets written so far are removed.
    bool copyFiles(const QList<QPair<QString, QString>>& files, const QString& progressLabel);

    VTDocument* m_pDocument = nullptr;
    QMap<int, VTResource*> m_mapResources;
    QMap<VTResource*, VTSymbol*> m_mapSymbols;
    QList<VTResource*> m_lstJsResources;
    QList<VTResource*> m_lstCssResources;
    int m_nNextId = 1;
    QStringList m_lstHashedNames;
    QStringList m_lstPlainNames;
    bool m_bCancelCopy = false;
};
