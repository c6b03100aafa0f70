#include "VTJsonReader.h"

#include <QDebug>

#include <cmath>
#include <limits>

VTJsonReader::VTJsonReader(const QJsonObject& object, const QString& context, QStringList* pProblems)
    : m_joObject(object)
    , m_strContext(context)
    , m_pProblems(pProblems)
{}

int VTJsonReader::readInt(const QString& key, int nDefault) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return nDefault;
    if (isInt(value))
        return static_cast<int>(value.toDouble());
    reportWrongType(key, tr("a whole number"), QString::number(nDefault));
    return nDefault;
}

bool VTJsonReader::readBool(const QString& key, bool bDefault) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return bDefault;
    if (value.isBool())
        return value.toBool();
    reportWrongType(key, tr("true or false"), bDefault ? QStringLiteral("true") : QStringLiteral("false"));
    return bDefault;
}

QString VTJsonReader::readString(const QString& key, const QString& defaultValue) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return defaultValue;
    if (value.isString())
        return value.toString();
    reportWrongType(key, tr("a text"),
                    defaultValue.isEmpty() ? tr("an empty text")
                                           : QStringLiteral("\"%1\"").arg(defaultValue));
    return defaultValue;
}

QJsonObject VTJsonReader::readObject(const QString& key) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return {};
    if (value.isObject())
        return value.toObject();
    reportWrongType(key, tr("an object"), tr("an empty one"));
    return {};
}

QJsonArray VTJsonReader::readArray(const QString& key) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return {};
    if (value.isArray())
        return value.toArray();
    reportWrongType(key, tr("a list"), tr("an empty one"));
    return {};
}

bool VTJsonReader::isInt(const QJsonValue& value)
{
    if (!value.isDouble())
        return false;
    const double dValue = value.toDouble();
    // Checked before any conversion: casting an out-of-range double to int is undefined.
    return std::isfinite(dValue) && std::trunc(dValue) == dValue &&
           dValue >= static_cast<double>(std::numeric_limits<int>::min()) &&
           dValue <= static_cast<double>(std::numeric_limits<int>::max());
}

QString VTJsonReader::describeType(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return tr("null");
    case QJsonValue::Bool:
        return tr("true or false");
    case QJsonValue::Double:
        return isInt(value) ? tr("a whole number") : tr("the number %1").arg(value.toDouble());
    case QJsonValue::String:
        return tr("a text");
    case QJsonValue::Array:
        return tr("a list");
    case QJsonValue::Object:
        return tr("an object");
    case QJsonValue::Undefined:
        break;
    }
    return tr("nothing");
}

void VTJsonReader::reportWrongType(const QString& key, const QString& expected, const QString& fallback) const
{
    report(tr("\"%1\" should be %2 but is %3; %4 is used instead.")
               .arg(key, expected, describeType(m_joObject.value(key)), fallback));
}

void VTJsonReader::reportDropped(const QString& key, const QString& expected) const
{
    report(tr("\"%1\" should be %2 but is %3; it is left out.")
               .arg(key, expected, describeType(m_joObject.value(key))));
}

void VTJsonReader::report(const QString& text) const
{
    const QString line = m_strContext.isEmpty() ? text : QStringLiteral("%1: %2").arg(m_strContext, text);
    qWarning().noquote() << line;
    if (m_pProblems)
        m_pProblems->append(line);
}
