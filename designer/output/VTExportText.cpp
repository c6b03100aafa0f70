#include "VTExportText.h"

#include <QDir>
#include <QRegularExpression>

QString VTExportText::escapeHtml(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '&':
            result += QLatin1String("&amp;");
            break;
        case '<':
            result += QLatin1String("&lt;");
            break;
        case '>':
            result += QLatin1String("&gt;");
            break;
        case '"':
            result += QLatin1String("&quot;");
            break;
        case '\'':
            result += QLatin1String("&#39;");
            break;
        default:
            result += c;
        }
    }
    return result;
}

QString VTExportText::escapeJsString(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\\':
            result += QLatin1String("\\\\");
            break;
        case '\'':
            result += QLatin1String("\\'");
            break;
        case '"':
            result += QLatin1String("\\\"");
            break;
        case '\n':
            result += QLatin1String("\\n");
            break;
        case '\r':
            result += QLatin1String("\\r");
            break;
        case 0x2028:
            result += QLatin1String("\\u2028");
            break;
        case 0x2029:
            result += QLatin1String("\\u2029");
            break;
        case '<':
            result += QLatin1String("\\x3C");
            break;
        default:
            result += c;
        }
    }
    return result;
}

QString VTExportText::escapeCssString(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\\':
            result += QLatin1String("\\\\");
            break;
        case '\'':
            result += QLatin1String("\\'");
            break;
        case '"':
            result += QLatin1String("\\\"");
            break;
        case '\n':
            result += QLatin1String("\\A ");
            break;
        case '\r':
            result += QLatin1String("\\D ");
            break;
        case '<':
            result += QLatin1String("\\3C ");
            break;
        default:
            result += c;
        }
    }
    return result;
}

QString VTExportText::escapeUrlPath(const QString& path)
{
    QString result;
    result.reserve(path.size());
    for (const QChar c : path) {
        switch (c.unicode()) {
        case '%':
            result += QLatin1String("%25");
            break;
        case '#':
            result += QLatin1String("%23");
            break;
        case '?':
            result += QLatin1String("%3F");
            break;
        default:
            result += c;
        }
    }
    return result;
}

QString VTExportText::toInlineCode(const QString& code)
{
    // Inside strings, regular expressions and comments "<\/" reads as "</"; elsewhere in valid
    // code "</script" cannot stand at all.
    static const QRegularExpression s_closingTag(QStringLiteral("</(script)"),
                                                 QRegularExpression::CaseInsensitiveOption);
    QString result = code;
    result.replace(s_closingTag, QStringLiteral("<\\/\\1"));
    return result;
}

QString VTExportText::toInlineJson(const QString& json)
{
    QString result = json;
    result.replace(QLatin1Char('<'), QLatin1String("\\u003c"));
    result.replace(QChar(0x2028), QLatin1String("\\u2028"));
    result.replace(QChar(0x2029), QLatin1String("\\u2029"));
    return result;
}

QString VTExportText::indentLines(const QString& text)
{
    QString result = text;
    result.replace(QLatin1Char('\n'), QLatin1String("\n\t"));
    return result;
}

QString VTExportText::fillPlaceholders(const QString& text, const QMap<QString, QString>& values)
{
    static const QLatin1String s_open("{$");
    QString result;
    result.reserve(text.size());
    int nPos = 0;
    while (nPos < text.size()) {
        const int nStart = text.indexOf(s_open, nPos);
        if (nStart < 0)
            break;
        const int nEnd = text.indexOf(QLatin1Char('}'), nStart + s_open.size());
        if (nEnd < 0)
            break;
        const QString name = text.mid(nStart + s_open.size(), nEnd - nStart - s_open.size());
        const auto it = values.constFind(name);
        if (it == values.constEnd()) {
            // Not ours: keep "{$" and look for the next placeholder right behind it, so that
            // "{${$title}" still fills the title.
            result += text.midRef(nPos, nStart + s_open.size() - nPos);
            nPos = nStart + s_open.size();
            continue;
        }
        result += text.midRef(nPos, nStart - nPos);
        result += it.value();
        nPos = nEnd + 1;
    }
    result += text.midRef(nPos);
    return result;
}

const QStringList& VTExportText::getReservedScriptNames()
{
    // The language's reserved words and literals, words reserved in strict code, and the names
    // that the data and load scripts declare around the functions.
    static const QStringList s_lstNames =
        QStringLiteral("await break case catch class const continue debugger default delete do else enum "
                       "export extends false finally for function if implements import in instanceof "
                       "interface let new null package private protected public return static super switch "
                       "this throw true try typeof var void while with yield arguments eval undefined NaN "
                       "Infinity Vetra KorvelVetra docData preloaderDocData f li")
            .split(QLatin1Char(' '));
    return s_lstNames;
}

bool VTExportText::isValidScriptName(const QString& name)
{
    if (name.isEmpty() || getReservedScriptNames().contains(name))
        return false;
    for (int i = 0; i < name.size(); ++i) {
        const QChar c = name.at(i);
        if (c == QLatin1Char('_') || c == QLatin1Char('$') || c.isLetter())
            continue;
        if (i == 0)
            return false;
        const QChar::Category category = c.category();
        const bool bContinue =
            c.isDigit() || category == QChar::Number_Letter || category == QChar::Mark_NonSpacing ||
            category == QChar::Mark_SpacingCombining || category == QChar::Punctuation_Connector ||
            c.unicode() == 0x200C || c.unicode() == 0x200D;
        if (!bContinue)
            return false;
    }
    return true;
}

bool VTExportText::isSafeRelativeFolder(const QString& path)
{
    if (path.isEmpty())
        return true;
    if (QDir::isAbsolutePath(path) || path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1Char('\\')))
        return false;
    // A drive or a stream name means another place on some systems, whichever this one is.
    if (path.contains(QLatin1Char(':')) || path.contains(QChar(0)))
        return false;
    static const QRegularExpression s_separators(QStringLiteral("[/\\\\]"));
    const QStringList segments = path.split(s_separators);
    return !segments.contains(QStringLiteral(".."));
}

bool VTExportText::isSafeFileName(const QString& name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\')) &&
           !name.contains(QLatin1Char(':')) && !name.contains(QChar(0));
}

QString VTExportText::joinPath(const QString& folder, const QString& name)
{
    return folder.isEmpty() ? name : folder + QLatin1Char('/') + name;
}
