#pragma once

#include "VTElementProperty.h"

#include <QColor>
#include <QString>

// The text of a text, div or shape in one layout: the inner HTML and the base formatting that
// applies where the HTML sets none. Font size, spacings, line height, indent and the two colours
// are animated through their Qt properties.
//
// The accessor names are those of the text element, which forwards to its current block.
class VTTextProperty : public VTElementProperty
{
    Q_OBJECT
    Q_PROPERTY(QColor m_clForeground READ getColor WRITE setColor)
    Q_PROPERTY(QColor m_clHighlight READ getHighlightColor WRITE setHighlightColor)
    Q_PROPERTY(int m_nFontSize READ getFontSize WRITE setFontSize)
    Q_PROPERTY(int m_nLetterSpace READ getLetterSpace WRITE setFontLetterSpace)
    Q_PROPERTY(int m_nWordSpace READ getWordSpace WRITE setWordSpace)
    Q_PROPERTY(double m_dLineHeight READ getLineHeight WRITE setLineHeight)
    Q_PROPERTY(int m_nTextIndent READ getTextIndent WRITE setTextIndent)
public:
    // Dark grey, softer on the stage's white than black.
    static constexpr QRgb clDefaultTextColor = 0xff434343;

    explicit VTTextProperty(QObject* parent = nullptr);
    // Deep copy, as the base block's.
    VTTextProperty(const VTTextProperty& other);

    VTElementProperty* clone() const override;
    // Adds the object "text" beside the keys of the base block.
    void serialize(QJsonObject& json) const override;
    // Adds "txt" when the base layout is written or one of the text properties is overridden.
    QStringList serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const override;
    // Reads "text", then the base block. A missing "text" reads as an empty one.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;
    // The block's own family with its styles, then every family that the inner HTML names.
    void getExportedFontInfo(QList<VTExportedFontInfo>& lstFonts) const override;

    // The player's flat text array; see serializeToExport.
    void serializeTextToExport(QJsonArray& array) const;

    // How a family is written for the player's CSS: a single name is put in single quotes so that
    // names with blanks or digits stay one family; a list is taken as the author wrote it.
    static QString addBracketStringFontFamily(const QString& family);
    // The family that a font entry of the export stands for: the first of a list, unquoted.
    static QString normalizeFontFamily(const QString& family);

    QString getInnerHtml() const { return m_strHtml; }
    void setInnerHtml(const QString& html) { m_strHtml = html; }
    QString getFontFamily() const { return m_strFontFamily; }
    // A blank family is ignored: CSS would fall back to the browser's default font.
    void setFontFamily(const QString& family);
    int getFontSize() const { return m_nFontSize; }
    // Negative sizes are ignored; CSS drops them.
    void setFontSize(int nSize);
    int getLetterSpace() const { return m_nLetterSpace; }
    void setFontLetterSpace(int nSpace) { m_nLetterSpace = nSpace; }
    int getWordSpace() const { return m_nWordSpace; }
    void setWordSpace(int nSpace) { m_nWordSpace = nSpace; }
    bool getBold() const { return m_bBold; }
    void setBold(bool bBold) { m_bBold = bBold; }
    bool getItalic() const { return m_bItalic; }
    void setItalic(bool bItalic) { m_bItalic = bItalic; }
    bool getUnderline() const { return m_bUnderline; }
    void setUnderline(bool bUnderline) { m_bUnderline = bUnderline; }
    bool getStrikeOut() const { return m_bStrikeout; }
    void setStrikeout(bool bStrikeout) { m_bStrikeout = bStrikeout; }
    // One of Qt::AlignLeft, AlignRight, AlignHCenter, AlignJustify; others are ignored.
    int getHAligment() const { return m_nAlignH; }
    void setHAlignment(int nAlignment);
    // One of Qt::AlignTop, AlignBottom, AlignVCenter; others are ignored.
    int getVAlignment() const { return m_nAlignV; }
    void setVAlignment(int nAlignment);
    int getTextIndent() const { return m_nTextIndent; }
    void setTextIndent(int nIndent) { m_nTextIndent = nIndent; }
    // A factor of the font size; negative or non-finite values are ignored.
    double getLineHeight() const { return m_dLineHeight; }
    void setLineHeight(double dLineHeight);
    QColor getColor() const { return m_clForeground; }
    void setColor(const QColor& color) { m_clForeground = color; }
    QColor getHighlightColor() const { return m_clHighlight; }
    void setHighlightColor(const QColor& color) { m_clHighlight = color; }

    static bool isValidHAlignment(int nAlignment);
    static bool isValidVAlignment(int nAlignment);

private:
    QString m_strHtml;
    QString m_strFontFamily = QStringLiteral("Arial");
    int m_nFontSize = 18;
    int m_nWordSpace = 0;
    int m_nLetterSpace = 0;
    bool m_bBold = false;
    bool m_bItalic = false;
    bool m_bUnderline = false;
    bool m_bStrikeout = false;
    int m_nAlignH = Qt::AlignHCenter;
    int m_nAlignV = Qt::AlignVCenter;
    int m_nTextIndent = 0;
    double m_dLineHeight = 1.2;
    QColor m_clForeground = QColor::fromRgba(clDefaultTextColor);
    QColor m_clHighlight = QColor(Qt::transparent);
};
