#pragma once

#include <QCoreApplication>
#include <QJsonArray>
#include <QStringList>

class VTResource;
class VTResourceManager;

// The two lists that describe a project's resources: the `resources` array of the project file,
// and the compact arrays that the player and the stage page read.
class VTResourceListFormat final
{
    Q_DECLARE_TR_FUNCTIONS(VTResourceListFormat)
public:
    VTResourceListFormat() = delete;

    // Reads every entry it can. An entry that is broken (no valid id, type or uuid, a duplicate
    // id) or whose files are missing or lie outside the resource folder is left out and named in
    // pProblems; the result is false then, and *pbMissingFiles tells whether files were missing.
    static bool parse(VTResourceManager& manager, const QJsonArray& array, int nDocVersion,
                      QStringList* pProblems, bool* pbMissingFiles);
    static void serialize(const VTResourceManager& manager, QJsonArray& array);
    // With pOnly, the list holds that resource's entry alone (none when the flags skip it), with
    // the position among the used scripts or style sheets that it has in the whole list.
    static void serializeToExport(VTResourceManager& manager, QJsonArray& array, bool bPreview, bool bStage,
                                  const VTResource* pOnly = nullptr);

    // Entries beyond this many are not read: no real project comes near it, and a hostile file
    // must not make the loader allocate without bound.
    static constexpr int s_nMaxEntries = 100000;
};
