#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class VTDocument;

// A whole project in one zip file: the ".vetrapack" that a user passes on, and the ".vetrasym"
// of an exported symbol, which is the package of a temporary project that holds the symbol.
//
// Inside, every project bears the same fixed names, whatever it is called outside; the folder
// chosen at extraction names it again, and the references in its JSON are bare file names, so
// they stay valid. A package is written beside its final name and renamed into place only when
// complete, so a failed or aborted package never leaves a partial file under that name.
//
// Nothing read from a package is trusted. Before a byte is written, every entry name is checked
// (no absolute name, no "." or ".." segment, no backslash, colon or NUL) and the declared sizes
// are weighed against what deflate can produce from the archive's own size; while copying, no
// entry may grow past its declared size. A package that fails any of this is refused as a whole.
//
// Failures are told in message boxes, as everywhere in the model, and returned as false.
class VTPackage final
{
    Q_DECLARE_TR_FUNCTIONS(VTPackage)
public:
    VTPackage() = delete;

    static QString getProjectEntryName() { return QStringLiteral("vetra-studio.vetra"); }
    static QString getResourceFolderEntryName() { return QStringLiteral("vetra-studio_res"); }
    static QString getPreloaderEntryName()
    {
        return QStringLiteral("vetra-studio_res/preloader/preloader.vetra");
    }
    static QString getPreloaderResourceFolderEntryName()
    {
        return QStringLiteral("vetra-studio_res/preloader/preloader_res");
    }
    static QString getSymbolFileSuffix() { return QStringLiteral("vetrasym"); }

    // Packs the project, its referenced resources (deleted ones left out) and its custom
    // preloader into packagePath. Symbols are packed in their current state, straight from
    // memory, so packing writes nothing into the project's own folder and changes none of the
    // document's state. bReportSuccess shows the closing message; an exported symbol file and
    // the command-line tool do without it.
    static bool save(VTDocument& document, const QString& packagePath, bool bReportSuccess = true);

    // Unpacks into folder, which must exist, as folder/F.vetra and folder/F_res, F being the
    // folder's own name. Entries that are no part of a project are left out and named in
    // pProblems.
    static bool extract(const QString& packagePath, const QString& folder, QStringList* pProblems = nullptr);

    // The name of the project file extract() writes into folder.
    static QString getExtractedProjectPath(const QString& folder);

    // Whether an entry name stays below whatever folder it is extracted into.
    static bool isSafeEntryName(const QString& name);

    // Deflate cannot expand data more than about 1032 to 1; a header that claims more lies, and
    // so does an archive whose entries together claim more than that of the archive's size.
    static constexpr qint64 s_nMaxExpansion = 1100;
    // The project's and the preloader's JSON are held in memory whole; no real one comes near.
    static constexpr qint64 s_nMaxManifestSize = 256 * 1024 * 1024;
};
