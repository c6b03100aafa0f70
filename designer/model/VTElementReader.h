#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class QJsonArray;
class QJsonObject;
class VTElement;
class VTResourceManager;

// Reads the parts of an element's project form that can be large or nested: its layout blocks
// and its children. A project file may be damaged or made by hand, so this is where the limits
// live that keep a hostile file from exhausting memory or the stack, and where every entry that
// cannot be used is named in a readable line instead of vanishing.
class VTElementReader final
{
    Q_DECLARE_TR_FUNCTIONS(VTElementReader)
public:
    VTElementReader() = delete;

    // Counts, while it lives, one more element read in progress on this thread. VTElement::parse
    // holds one, so that children know how deep they are.
    class DepthGuard final
    {
    public:
        DepthGuard();
        ~DepthGuard();
        DepthGuard(const DepthGuard&) = delete;
        DepthGuard& operator=(const DepthGuard&) = delete;
    };

    // Whether a read since the last call stopped at the nesting limit; clears the mark. A tree
    // that deep is no project anyone made, so the scene refuses it rather than open a part.
    static bool takeDepthExceeded();

    // The blocks of "respProps", or of the older form that kept one layout's values among the
    // element's own keys (when "respProps" is absent or no list). A base layout that the file
    // lacks is made up from the first layout read, or from a new block. The element must have no
    // blocks yet.
    static void readLayouts(VTElement& element, const QJsonObject& json, VTResourceManager* pManager,
                            const QString& strContext, QStringList* pProblems);
    // Appends the children, each made by VTElementFactory from its "type" (5 when missing).
    static void readChildren(VTElement& element, const QJsonArray& array, VTResourceManager* pManager,
                             const QString& strContext, QStringList* pProblems);

    // strContext names the element in the lines: "element \"Title\"".
    static void report(QStringList* pProblems, const QString& strContext, const QString& text);
    // Lines of a part that was read on its own, prefixed with the element's context.
    static void appendProblems(QStringList* pProblems, const QString& strContext,
                               const QStringList& lstLines);
};
