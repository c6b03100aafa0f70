#include "VTTextProperty.h"

#include "VTPropertyJson.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTextDocument>
#include <QTextFormat>
#include <QVector>

#include <cmath>

namespace {

const QString kText = QStringLiteral("text");

} // namespace

VTTextProperty::VTTextProperty(QObject* parent)
    : VTElementProperty(parent)
{}

VTTextProperty::VTTextProperty(const VTTextProperty& other)
    : VTElementProperty(other)
    , m_strHtml(other.m_strHtml)
    , m_strFontFamily(other.m_strFontFamily)
    , m_nFontSize(other.m_nFontSize)
    , m_nWordSpace(other.m_nWordSpace)
    , m_nLetterSpace(other.m_nLetterSpace)
    , m_bBold(other.m_bBold)
    , m_bItalic(other.m_bItalic)
    , m_bUnderline(other.m_bUnderline)
    , m_bStrikeout(other.m_bStrikeout)
    , m_nAlignH(other.m_nAlignH)
    , m_nAlignV(other.m_nAlignV)
    , m_nTextIndent(other.m_nTextIndent)
    , m_dLineHeight(other.m_dLineHeight)
    , m_clForeground(other.m_clForeground)
    , m_clHighlight(other.m_clHighlight)
{}

VTElementProperty* VTTextProperty::clone() const
{
    return new VTTextProperty(*this);
}

void VTTextProperty::setFontFamily(const QString& family)
{
    if (!family.trimmed().isEmpty())
        m_strFontFamily = family;
}

void VTTextProperty::setFontSize(int nSize)
{
    if (nSize >= 0)
        m_nFontSize = nSize;
}

void VTTextProperty::setHAlignment(int nAlignment)
{
    if (isValidHAlignment(nAlignment))
        m_nAlignH = nAlignment;
}

void VTTextProperty::setVAlignment(int nAlignment)
{
    if (isValidVAlignment(nAlignment))
        m_nAlignV = nAlignment;
}

void VTTextProperty::setLineHeight(double dLineHeight)
{
    if (std::isfinite(dLineHeight) && dLineHeight >= 0.0)
        m_dLineHeight = dLineHeight;
}

bool VTTextProperty::isValidHAlignment(int nAlignment)
{
    return nAlignment == Qt::AlignLeft || nAlignment == Qt::AlignRight || nAlignment == Qt::AlignHCenter ||
           nAlignment == Qt::AlignJustify;
}

bool VTTextProperty::isValidVAlignment(int nAlignment)
{
    return nAlignment == Qt::AlignTop || nAlignment == Qt::AlignBottom || nAlignment == Qt::AlignVCenter;
}

void VTTextProperty::serialize(QJsonObject& json) const
{
    VTElementProperty::serialize(json);
    QJsonObject text;
    text.insert(QStringLiteral("html"), m_strHtml);
    text.insert(QStringLiteral("fontFamily"), m_strFontFamily);
    text.insert(QStringLiteral("fontSize"), m_nFontSize);
    text.insert(QStringLiteral("wordSpace"), m_nWordSpace);
    text.insert(QStringLiteral("letterSpace"), m_nLetterSpace);
    text.insert(QStringLiteral("bold"), m_bBold);
    text.insert(QStringLiteral("italic"), m_bItalic);
    text.insert(QStringLiteral("underline"), m_bUnderline);
    text.insert(QStringLiteral("strikeout"), m_bStrikeout);
    text.insert(QStringLiteral("alignH"), m_nAlignH);
    text.insert(QStringLiteral("alignV"), m_nAlignV);
    text.insert(QStringLiteral("indent"), m_nTextIndent);
    text.insert(QStringLiteral("lineHeight"), m_dLineHeight);
    text.insert(QStringLiteral("color"), VTPropertyJson::colorToJson(m_clForeground));
    text.insert(QStringLiteral("highlightColor"), VTPropertyJson::colorToJson(m_clHighlight));
    json.insert(kText, text);
}

bool VTTextProperty::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTJsonReader outer(json, tr("layout properties"), &lstProblems);
    const VTPropertyJson text(outer.readObject(kText), kText, &lstProblems);

    m_strHtml = text.readString(QStringLiteral("html"));
    m_strFontFamily = text.readString(QStringLiteral("fontFamily"), QStringLiteral("Arial"));
    if (m_strFontFamily.trimmed().isEmpty()) {
        text.report(tr("\"fontFamily\" is blank; Arial is used instead."));
        m_strFontFamily = QStringLiteral("Arial");
    }
    m_nFontSize = text.readInt(QStringLiteral("fontSize"), 18, 0);
    m_nWordSpace = text.readInt(QStringLiteral("wordSpace"), 0);
    m_nLetterSpace = text.readInt(QStringLiteral("letterSpace"), 0);
    m_bBold = text.reader().readBool(QStringLiteral("bold"), false);
    m_bItalic = text.reader().readBool(QStringLiteral("italic"), false);
    m_bUnderline = text.reader().readBool(QStringLiteral("underline"), false);
    m_bStrikeout = text.reader().readBool(QStringLiteral("strikeout"), false);

    m_nAlignH = text.readInt(QStringLiteral("alignH"), Qt::AlignHCenter);
    if (!isValidHAlignment(m_nAlignH)) {
        text.report(tr("\"alignH\" %1 is no horizontal alignment; centred is used instead.").arg(m_nAlignH));
        m_nAlignH = Qt::AlignHCenter;
    }
    m_nAlignV = text.readInt(QStringLiteral("alignV"), Qt::AlignVCenter);
    if (!isValidVAlignment(m_nAlignV)) {
        text.report(tr("\"alignV\" %1 is no vertical alignment; centred is used instead.").arg(m_nAlignV));
        m_nAlignV = Qt::AlignVCenter;
    }

    m_nTextIndent = text.readInt(QStringLiteral("indent"), 0);
    m_dLineHeight = text.readDouble(QStringLiteral("lineHeight"), 1.2, 0.0);
    m_clForeground = text.readColor(QStringLiteral("color"), QColor::fromRgba(clDefaultTextColor));
    m_clHighlight = text.readColor(QStringLiteral("highlightColor"), QColor(Qt::transparent));

    VTElementProperty::parse(json, pManager, &lstProblems);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

QString VTTextProperty::addBracketStringFontFamily(const QString& family)
{
    if (family.contains(QLatin1Char(',')))
        return family;
    QString single = family;
    single.remove(QLatin1Char('"'));
    if (!single.contains(QLatin1Char('\'')))
        single = QLatin1Char('\'') + single + QLatin1Char('\'');
    return single;
}

QString VTTextProperty::normalizeFontFamily(const QString& family)
{
    QString first = family.section(QLatin1Char(','), 0, 0);
    first.remove(QLatin1Char('"'));
    return first.trimmed();
}

void VTTextProperty::serializeTextToExport(QJsonArray& array) const
{
    array.append(m_strHtml);
    array.append(addBracketStringFontFamily(m_strFontFamily));
    array.append(m_nFontSize);
    array.append(VTPropertyJson::toExportColor(m_clForeground));
    array.append(VTPropertyJson::toExportColor(m_clHighlight));
    array.append(m_bBold ? QStringLiteral("bold") : QStringLiteral("normal"));
    array.append(m_bItalic);
    array.append(m_bUnderline);
    array.append(m_bStrikeout);
    array.append(m_nAlignH);
    array.append(m_nAlignV);
    array.append(m_dLineHeight * 100.0);
    array.append(m_nTextIndent);
    array.append(m_nWordSpace);
    array.append(m_nLetterSpace);
}

QStringList VTTextProperty::serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const
{
    QStringList lstDrop = VTElementProperty::serializeToExport(json, bFirstBlock, bOverride);
    if (isGroupWritten(bOverride, {VT::PropInnerHtml, VT::PropFontFamily, VT::PropFontSize, VT::PropTextColor,
                                   VT::PropHighlightColor, VT::PropBold, VT::PropItalic, VT::PropUnderline,
                                   VT::PropStrikeout, VT::PropHorizontalAlignment, VT::PropVerticalAlignment,
                                   VT::PropLineHeight, VT::PropTextIndent, VT::PropWordSpacing,
                                   VT::PropLetterSpacing})) {
        QJsonArray text;
        serializeTextToExport(text);
        json.insert(QStringLiteral("txt"), text);
    }
    return lstDrop;
}

void VTTextProperty::getExportedFontInfo(QList<VTExportedFontInfo>& lstFonts) const
{
    const auto append = [&lstFonts](const QString& family, bool bBold, bool bItalic) {
        VTExportedFontInfo info;
        info.family = family;
        info.bold = bBold;
        info.italic = bItalic;
        info.ordered = lstFonts.size();
        lstFonts.append(info);
    };

    const QString own = normalizeFontFamily(m_strFontFamily);
    append(own.isEmpty() ? QStringLiteral("Arial") : own, m_bBold, m_bItalic);

    if (m_strHtml.isEmpty())
        return;
    QTextDocument document;
    document.setHtml(m_strHtml);
    if (document.isEmpty())
        return;
    const QVector<QTextFormat> formats = document.allFormats();
    for (const QTextFormat& format : formats) {
        QString family = format.property(QTextFormat::FontFamily).toString();
        // Newer Qt fills only the list form of the family.
        if (family.isEmpty())
            family = format.property(QTextFormat::FontFamilies).toStringList().value(0);
        family = normalizeFontFamily(family);
        if (family.isEmpty())
            continue;
        // Any weight that the HTML sets counts as bold: one font variant too many costs a
        // download, one too few makes the browser fake the bold face.
        append(family, format.property(QTextFormat::FontWeight).toBool(),
               format.property(QTextFormat::FontItalic).toBool());
    }
}
