#pragma once

#include <QString>

// Small helpers shared by the model, the plug-in and the command-line tool.
class IUtils final
{
public:
    IUtils() = delete;

    // The name every message box is titled with and the project file's `appName` holds.
    static QString getApplicationName() { return QStringLiteral("Vetra Studio"); }
    static QString getApplicationVersion() { return QStringLiteral("2.6.0"); }

    // A number from a file or a computation brought into the range of int, truncated toward zero;
    // not-a-number gives 0.
    static int clampToInt(double dValue);
    static int clampToInt(qint64 nValue);

    // Eight letters for the id of the exported container element. The first is never one of the
    // last ten capitals, which old players rejected as the start of an id.
    static QString genContainerId();

    // Removes a folder and everything in it. A missing folder counts as removed; an empty path or
    // a file system root is refused, so a blank setting can never wipe the working directory.
    static bool removeDir(const QString& path);

    // A name that is safe as a file name on every desktop system and as a URL path segment in the
    // exported page: reserved and control characters become "_", trailing dots and blanks go,
    // reserved device names get a prefix, and the result is never empty.
    static QString convert2ValidResourceName(const QString& name);

    // "hh:mm:ss.zzz"; hours keep counting past 99, negative times get a leading "-".
    static QString time2String(int nMilliseconds);

    // Copies in blocks of 1 MiB into a temporary file that replaces the target only once complete,
    // so a failed copy never leaves a truncated target. Returns false when either side fails;
    // pbSourceFailed tells which.
    static bool copyFileInBlocks(const QString& sourcePath, const QString& targetPath,
                                 bool* pbSourceFailed = nullptr);

    // Copies a folder tree with copyFileInBlocks; the target folders are made as needed.
    static bool copyDir(const QString& sourcePath, const QString& targetPath);

    static constexpr qint64 s_nCopyBlockSize = 1024 * 1024;
};
