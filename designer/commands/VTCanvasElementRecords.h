#pragma once

#include <QColor>
#include <QList>
#include <QString>

class VTCommand;
class VTElement;
class VTScene;
class VTSymbol;
class VTText;

// The element edits of a stage gesture: where a new geometry or text format goes among the
// responsive layouts. Outside responsive mode an edit on the stage is an edit of the base, and
// every layout that follows the base follows it, while a layout with a value of its own keeps it.
// In responsive mode the edit belongs to the layout shown, which stops following the base for
// what it changed. The keyframe work comes behind each action (VTCanvasKeyframeUpdater).
//
// Both read the layouts and the mode from the symbol as it stands; the caller has set it to what
// the page showed.
class VTCanvasElementRecords final
{
public:
    VTCanvasElementRecords() = delete;

    // The text values that the stage's text editing changes.
    struct TextFormat
    {
        QString strInnerHtml;
        bool bBold = false;
        bool bItalic = false;
        bool bUnderline = false;
        bool bStrikeOut = false;
        int nFontSize = 0;
        QString strFontFamily;
        QColor color;
        QColor highlightColor;
        int nWordSpace = 0;
        int nLetterSpace = 0;
    };

    // One geometry action per layout it reaches. Values come as the page measures them: pixels,
    // and percent points for what the element stores as a share (percent units and scales), so
    // 50 for half. Properties that the geometry action does not write are passed over.
    static void changeGeometry(VTCommand& command, const VTSymbol& symbol, VTElement* pElement,
                               const QList<int>& lstProperties, const QList<double>& lstValues);
    // One text action per layout it reaches, each carrying that layout's other values.
    static void changeText(VTCommand& command, const VTSymbol& symbol, VTScene* pScene, VTText* pText,
                           const TextFormat& format);
};
