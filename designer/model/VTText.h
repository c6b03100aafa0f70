#pragma once

#include "VTElement.h"
#include "VTTextProperty.h"

#include <QColor>
#include <QString>

class QJsonArray;

// A text box: an element whose layouts each hold an inner HTML and its base formatting. The text
// lives in the blocks, so that responsive layouts can word or size it differently.
//
// Every accessor acts on one layout's block, the current one by default; a layout without a block
// reads as 0, false or empty, and writes to it are dropped. The names follow the block's.
class VTText : public VTElement
{
    Q_OBJECT
public:
    VTText() = default;
    VTText(const VTText& other) = default;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::TextElement; }
    // A 200 by 50 box.
    void initDefault() override;

    // The player's text array of the current layout; nothing without a text block.
    void serializeTextToExport(QJsonArray& array) const;

    // The block of a layout as a text block; null when there is none.
    VTTextProperty* getTextProperty(const VTLayoutKey& key = kCurrent) const;

    QString getInnerHtml(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getInnerHtml);
    }
    void setInnerHtml(const QString& html, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setInnerHtml, html);
    }
    QString getFontFamily(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getFontFamily);
    }
    void setFontFamily(const QString& family, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setFontFamily, family);
    }
    int getFontSize(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getFontSize);
    }
    void setFontSize(int nSize, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setFontSize, nSize);
    }
    int getLetterSpace(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getLetterSpace);
    }
    void setFontLetterSpace(int nSpace, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setFontLetterSpace, nSpace);
    }
    int getWordSpace(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getWordSpace);
    }
    void setWordSpace(int nSpace, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setWordSpace, nSpace);
    }
    bool getBold(const VTLayoutKey& key = kCurrent) const { return readText(key, &VTTextProperty::getBold); }
    void setBold(bool bBold, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setBold, bBold);
    }
    bool getItalic(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getItalic);
    }
    void setItalic(bool bItalic, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setItalic, bItalic);
    }
    bool getUnderline(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getUnderline);
    }
    void setUnderline(bool bUnderline, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setUnderline, bUnderline);
    }
    bool getStrikeOut(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getStrikeOut);
    }
    void setStrikeout(bool bStrikeout, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setStrikeout, bStrikeout);
    }
    int getHAligment(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getHAligment);
    }
    void setHAlignment(int nAlignment, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setHAlignment, nAlignment);
    }
    int getVAlignment(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getVAlignment);
    }
    void setVAlignment(int nAlignment, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setVAlignment, nAlignment);
    }
    int getTextIndent(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getTextIndent);
    }
    void setTextIndent(int nIndent, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setTextIndent, nIndent);
    }
    double getLineHeight(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getLineHeight);
    }
    void setLineHeight(double dLineHeight, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setLineHeight, dLineHeight);
    }
    QColor getColor(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getColor);
    }
    void setColor(const QColor& color, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setColor, color);
    }
    QColor getHighlightColor(const VTLayoutKey& key = kCurrent) const
    {
        return readText(key, &VTTextProperty::getHighlightColor);
    }
    void setHighlightColor(const QColor& color, const VTLayoutKey& key = kCurrent)
    {
        writeText(key, &VTTextProperty::setHighlightColor, color);
    }

private:
    template <typename T> T readText(const VTLayoutKey& key, T (VTTextProperty::*fnRead)() const) const
    {
        const VTTextProperty* pBlock = getTextProperty(key);
        return pBlock ? (pBlock->*fnRead)() : T();
    }
    template <typename Arg, typename Value>
    void writeText(const VTLayoutKey& key, void (VTTextProperty::*fnWrite)(Arg), const Value& value)
    {
        if (VTTextProperty* pBlock = getTextProperty(key))
            (pBlock->*fnWrite)(value);
    }
};
