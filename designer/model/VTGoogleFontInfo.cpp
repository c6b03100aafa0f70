#include "VTGoogleFontInfo.h"

#include <QJsonArray>

namespace {

QStringList readStrings(const QJsonValue& value)
{
    QStringList list;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& item : array) {
        if (item.isString())
            list.append(item.toString());
    }
    return list;
}

QJsonArray toArray(const QStringList& list)
{
    QJsonArray array;
    for (const QString& item : list)
        array.append(item);
    return array;
}

// The weight that a variant names, with "regular" and "italic" taken out; -1 when none is left.
int variantWeight(const QString& variant, bool* pbNothingLeft)
{
    QString rest = variant;
    rest.remove(QStringLiteral("regular")).remove(QStringLiteral("italic"));
    bool bOk = false;
    const int nWeight = rest.toInt(&bOk);
    *pbNothingLeft = rest.isEmpty();
    return bOk ? nWeight : -1;
}

} // namespace

void VTGoogleFontInfo::parseFromJson(const QJsonObject& object)
{
    m_strFamily = object.value(QStringLiteral("family")).toString();
    m_strCategory = object.value(QStringLiteral("category")).toString();
    m_lstSubsets = readStrings(object.value(QStringLiteral("subsets")));
    m_lstVariants = readStrings(object.value(QStringLiteral("variants")));
    m_mapFiles.clear();
    const QJsonObject files = object.value(QStringLiteral("files")).toObject();
    for (auto it = files.constBegin(); it != files.constEnd(); ++it) {
        if (it.value().isString())
            m_mapFiles.insert(it.key(), it.value().toString());
    }
}

void VTGoogleFontInfo::serializeToJson(QJsonObject& object) const
{
    object.insert(QStringLiteral("family"), m_strFamily);
    object.insert(QStringLiteral("category"), m_strCategory);
    object.insert(QStringLiteral("subsets"), toArray(m_lstSubsets));
    object.insert(QStringLiteral("variants"), toArray(m_lstVariants));
    QJsonObject files;
    for (auto it = m_mapFiles.constBegin(); it != m_mapFiles.constEnd(); ++it)
        files.insert(it.key(), it.value());
    object.insert(QStringLiteral("files"), files);
}

QString VTGoogleFontInfo::getQueryWithAllVariants() const
{
    QString family = m_strFamily;
    family.replace(QLatin1Char(' '), QLatin1Char('+'));
    QStringList items;
    for (QString variant : m_lstVariants) {
        variant.replace(QStringLiteral("italic"), QStringLiteral("i"));
        variant.replace(QStringLiteral("regular"), QStringLiteral("400"));
        items.append(variant);
    }
    const QString joined = items.join(QLatin1Char(','));
    if (joined.isEmpty() || joined == QLatin1String("400"))
        return family;
    return family + QLatin1Char(':') + joined;
}

QString VTGoogleFontInfo::getSuitableVariantForGoogleFontInfo(bool bForExport) const
{
    if (m_lstVariants.contains(QStringLiteral("regular")))
        return bForExport ? QString() : QStringLiteral("regular");
    for (const char* pszWeight : {"400", "500"}) {
        if (m_lstVariants.contains(QLatin1String(pszWeight)))
            return QLatin1String(pszWeight);
    }
    return m_lstVariants.value(0);
}

QString VTGoogleFontInfo::getStringCombinedStyleVariantToExport(bool bBold, bool bItalic) const
{
    QStringList taken;
    for (const QString& variant : m_lstVariants) {
        if (variant == QLatin1String("regular")) {
            taken.append(QStringLiteral("400"));
            continue;
        }
        bool bNothingLeft = false;
        const int nWeight = variantWeight(variant, &bNothingLeft);
        const bool bHeavy = bNothingLeft ? variant.contains(QStringLiteral("700")) : nWeight > 400;
        const bool bHasItalic = variant.contains(QStringLiteral("italic"));
        QString item = variant;
        item.replace(QStringLiteral("italic"), QStringLiteral("i"));
        if (bHeavy && bHasItalic) {
            if (bBold && bItalic)
                taken.append(item);
        } else if (bHeavy) {
            if (bBold)
                taken.append(variant);
        } else if (bHasItalic) {
            if (bItalic)
                taken.append(item);
        }
    }
    QString result = taken.join(QLatin1Char(','));
    while (result.endsWith(QLatin1Char(',')))
        result.chop(1);
    if (result.isEmpty())
        return getSuitableVariantForGoogleFontInfo(true);
    if (result == QLatin1String("400"))
        return {};
    return result;
}
