#include "VTSymbol.h"

#include "IMessageBox.h"
#include "IUtils.h"
#include "VTFunctionManager.h"
#include "VTJsonReader.h"
#include "VTResourceManager.h"

#include <QDebug>
#include <QIODevice>
#include <QJsonDocument>

namespace {

const QString s_strWidthKey = QStringLiteral("width");
const QString s_strHeightKey = QStringLiteral("height");
const QString s_strResourcesKey = QStringLiteral("resources");
const QString s_strScriptsKey = QStringLiteral("scripts");
const QString s_strScenesKey = QStringLiteral("scenes");

enum class ValueKind
{
    String,
    Int,
    Bool,
    Array,
    Object
};

// The kind of each symbol key that is kept raw: a value of another kind is dropped on reading,
// so whatever models the key later can rely on it.
QList<QPair<QString, ValueKind>> rawKeyKinds()
{
    return {{QStringLiteral("author"), ValueKind::String},
            {QStringLiteral("created"), ValueKind::String},
            {QStringLiteral("modified"), ValueKind::String},
            {QStringLiteral("modifiedBy"), ValueKind::String},
            {QStringLiteral("align"), ValueKind::Int},
            {QStringLiteral("title"), ValueKind::String},
            {QStringLiteral("description"), ValueKind::String},
            {QStringLiteral("keywords"), ValueKind::String},
            {QStringLiteral("autofit"), ValueKind::Bool},
            {s_strScenesKey, ValueKind::Array},
            {QStringLiteral("events"), ValueKind::Array},
            {QStringLiteral("layoutBreakpoints"), ValueKind::Object}};
}

bool hasKind(const QJsonValue& value, ValueKind kind)
{
    switch (kind) {
    case ValueKind::String:
        return value.isString();
    case ValueKind::Int:
        return VTJsonReader::isInt(value);
    case ValueKind::Bool:
        return value.isBool();
    case ValueKind::Array:
        return value.isArray();
    case ValueKind::Object:
        return value.isObject();
    }
    return false;
}

QString kindName(ValueKind kind)
{
    switch (kind) {
    case ValueKind::String:
        return VTJsonReader::tr("a text");
    case ValueKind::Int:
        return VTJsonReader::tr("a whole number");
    case ValueKind::Bool:
        return VTJsonReader::tr("true or false");
    case ValueKind::Array:
        return VTJsonReader::tr("a list");
    case ValueKind::Object:
        return VTJsonReader::tr("an object");
    }
    return {};
}

} // namespace

VTSymbol::VTSymbol() = default;

VTSymbol::~VTSymbol() = default;

bool VTSymbol::loadData(const QJsonObject& object)
{
    const VTJsonReader reader(object, QString(), &m_lstLoadProblems);
    if (m_pFunctionManager)
        m_pFunctionManager->parse(reader.readObject(s_strScriptsKey), &m_lstLoadProblems);
    if (m_pResourceManager) {
        const QJsonValue version = object.value(QStringLiteral("docVersion"));
        int nVersion = VTJsonReader::isInt(version) ? version.toInt() : -1;
        if (version.isString() && version.toString() == QLatin1String("1.0"))
            nVersion = 1;
        bool bMissingFiles = false;
        if (!m_pResourceManager->parse(reader.readArray(s_strResourcesKey), nVersion, &m_lstLoadProblems,
                                       &bMissingFiles)) {
            const auto answer = IMessageBox::instance()->question(
                IUtils::getApplicationName(),
                tr("Some resource files cannot be loaded.\nDo you want to continue?"),
                IMessageBox::Yes | IMessageBox::No);
            if (answer != IMessageBox::Yes)
                return false;
        }
        if (!m_pResourceManager->loadAllSymbols()) {
            IMessageBox::instance()->warning(
                IUtils::getApplicationName(),
                tr("Cannot open project.\nError while loading symbol resources."), IMessageBox::Ok);
            return false;
        }
    }
    return loadDataWithoutResource(object);
}

bool VTSymbol::saveData(QJsonObject& object) const
{
    QJsonArray resources;
    if (m_pResourceManager)
        m_pResourceManager->serialize(resources);
    object.insert(s_strResourcesKey, resources);
    QJsonObject scripts;
    if (m_pFunctionManager)
        m_pFunctionManager->serialize(scripts);
    object.insert(s_strScriptsKey, scripts);
    saveDataWithoutResource(object);
    return true;
}

bool VTSymbol::saveTempData(QIODevice* pDevice) const
{
    QJsonObject object;
    saveDataWithoutResource(object);
    const QByteArray data = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (!pDevice || pDevice->write(data) != data.size()) {
        qWarning() << "Could not save symbol data";
        return false;
    }
    return true;
}

bool VTSymbol::loadTempData(QIODevice* pDevice)
{
    if (!pDevice)
        return false;
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(pDevice->readAll(), &error);
    if (error.error != QJsonParseError::NoError || !json.isObject()) {
        qWarning() << "Error while reading symbol data. The data structure is invalid.";
        return false;
    }
    return loadDataWithoutResource(json.object());
}

void VTSymbol::serializeToExport(QJsonObject& object, bool bStage) const
{
    Q_UNUSED(bStage)
    object.insert(QStringLiteral("align"), m_joPreserved.value(QStringLiteral("align")).toInt());
    object.insert(QStringLiteral("af"), m_joPreserved.value(QStringLiteral("autofit")).toBool());
}

bool VTSymbol::loadDataWithoutResource(const QJsonObject& object)
{
    const VTJsonReader reader(object, QString(), &m_lstLoadProblems);
    m_nWidth = reader.readInt(s_strWidthKey, 0);
    m_nHeight = reader.readInt(s_strHeightKey, 0);
    if (m_nWidth < 0) {
        reader.report(VTJsonReader::tr("\"width\" is negative; 0 is used instead."));
        m_nWidth = 0;
    }
    if (m_nHeight < 0) {
        reader.report(VTJsonReader::tr("\"height\" is negative; 0 is used instead."));
        m_nHeight = 0;
    }

    m_joPreserved = object;
    for (const QString& key : {s_strWidthKey, s_strHeightKey, s_strResourcesKey, s_strScriptsKey})
        m_joPreserved.remove(key);
    const auto kinds = rawKeyKinds();
    for (const auto& kind : kinds) {
        const QJsonValue value = m_joPreserved.value(kind.first);
        if (value.isUndefined() || hasKind(value, kind.second))
            continue;
        reader.reportDropped(kind.first, kindName(kind.second));
        m_joPreserved.remove(kind.first);
    }
    return true;
}

void VTSymbol::saveDataWithoutResource(QJsonObject& object) const
{
    for (auto it = m_joPreserved.constBegin(); it != m_joPreserved.constEnd(); ++it)
        object.insert(it.key(), it.value());
    object.insert(s_strWidthKey, m_nWidth);
    object.insert(s_strHeightKey, m_nHeight);
}

int VTSymbol::getRawSceneCount() const
{
    return m_joPreserved.value(s_strScenesKey).toArray().size();
}

QStringList VTSymbol::getSymbolKeys()
{
    return {QStringLiteral("author"),
            QStringLiteral("created"),
            QStringLiteral("modified"),
            QStringLiteral("modifiedBy"),
            s_strWidthKey,
            s_strHeightKey,
            QStringLiteral("align"),
            QStringLiteral("title"),
            QStringLiteral("description"),
            QStringLiteral("keywords"),
            QStringLiteral("autofit"),
            s_strScenesKey,
            QStringLiteral("events"),
            QStringLiteral("layoutBreakpoints")};
}

void VTSymbol::dropPreservedKeys(const QStringList& keys)
{
    for (const QString& key : keys)
        m_joPreserved.remove(key);
}
