#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// Text rules of the exported page, its scripts and its style sheet. Project strings are the
// author's, or whoever wrote the project file: each one is escaped for the exact place it lands
// in, so that no title, name or folder can end an attribute, a string or a script early.
class VTExportText final
{
public:
    VTExportText() = delete;

    // For HTML text and quoted attribute values: & < > " and ' as entities.
    static QString escapeHtml(const QString& text);
    // For a JavaScript string in either kind of quotes: backslash escapes for \ ' " and line
    // ends, and < as \x3C, so that the string cannot close an inline script.
    static QString escapeJsString(const QString& text);
    // For a CSS string in single quotes.
    static QString escapeCssString(const QString& text);
    // For a relative URL path made of file names: characters that would end the path ("?", "#")
    // or start an escape ("%") are percent-encoded; everything else stays as written.
    static QString escapeUrlPath(const QString& path);

    // Code that goes into a script element of the page: no "</script" may end it early.
    static QString toInlineCode(const QString& code);
    // Compact JSON for a script element of the page: every "<" as \u003c, which only strings can
    // hold in JSON, and the two line separators that old engines refuse in strings.
    static QString toInlineJson(const QString& json);
    // Each line break followed by a tab: how the scripts of the page indent a block.
    static QString indentLines(const QString& text);

    // Replaces every "{$name}" of the map in one pass, so that a value that itself holds a
    // placeholder is never expanded. Unknown placeholders stay as they are.
    static QString fillPlaceholders(const QString& text, const QMap<QString, QString>& values);

    // Whether a user function can be declared under this name in the exported scripts: an
    // identifier of letters, digits, "_" and "$" that is no reserved word and none of the names
    // that the exported scripts declare themselves.
    static bool isValidScriptName(const QString& name);
    static const QStringList& getReservedScriptNames();

    // Whether an output folder name of the project stays below the export folder: no absolute
    // path, no drive, no ".." segment. Empty is allowed: the export folder itself.
    static bool isSafeRelativeFolder(const QString& path);
    // Whether a name is one plain file name: not empty, no separator, not "." or "..".
    static bool isSafeFileName(const QString& name);
    // The file path of name inside folder, or the name alone for an empty folder; "/" separated.
    static QString joinPath(const QString& folder, const QString& name);
};
