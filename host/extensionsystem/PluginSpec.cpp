#include "PluginSpec.h"

#include "IPlugin.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QPluginLoader>
#include <QRegularExpression>

namespace ExtensionSystem {

namespace {
QString tr(const char* text)
{
    return QCoreApplication::translate("ExtensionSystem::PluginSpec", text);
}
} // namespace

PluginSpec* PluginSpec::createBuiltin(const QString& name, const QString& version)
{
    auto* pSpec = new PluginSpec;
    pSpec->m_strName = name;
    pSpec->m_strVersion = version;
    pSpec->m_strCompatVersion = version;
    pSpec->m_bBuiltin = true;
    pSpec->m_bRequired = true;
    pSpec->m_state = Running;
    return pSpec;
}

PluginSpec* PluginSpec::read(const QString& filePath)
{
    auto* pSpec = new PluginSpec;
    pSpec->m_strFilePath = QFileInfo(filePath).absoluteFilePath();
    const QPluginLoader loader(filePath);
    const QJsonObject metaData = loader.metaData();
    if (metaData.isEmpty())
        pSpec->setError(tr("the file is not a Qt plug-in."));
    else if (pSpec->parseMetaData(metaData))
        pSpec->m_state = Read;
    return pSpec;
}

PluginSpec::~PluginSpec()
{
    delete m_pLoader;
}

void PluginSpec::setError(const QString& text)
{
    m_strError = text;
    m_state = Invalid;
}

bool PluginSpec::parseMetaData(const QJsonObject& metaData)
{
    const QString iid = metaData.value(QLatin1String("IID")).toString();
    if (iid != QLatin1String(kPluginIid)) {
        setError(tr("its interface id is \"%1\", expected \"%2\".").arg(iid, QLatin1String(kPluginIid)));
        return false;
    }
    const QJsonValue value = metaData.value(QLatin1String("MetaData"));
    if (!value.isObject()) {
        setError(tr("its metadata block is missing."));
        return false;
    }
    const QJsonObject data = value.toObject();
    m_strName = data.value(QLatin1String("Name")).toString();
    m_strVersion = data.value(QLatin1String("Version")).toString();
    m_strCompatVersion = data.value(QLatin1String("CompatVersion")).toString(m_strVersion);
    m_strCategory = data.value(QLatin1String("Category")).toString();
    m_strDescription = data.value(QLatin1String("Description")).toString();
    m_bRequired = data.value(QLatin1String("Required")).toBool(false);
    if (m_strName.isEmpty()) {
        setError(tr("its metadata has no name."));
        return false;
    }
    if (!isValidVersion(m_strVersion) || !isValidVersion(m_strCompatVersion)
        || compareVersions(m_strCompatVersion, m_strVersion) > 0) {
        setError(tr("its version \"%1\" (compatible with \"%2\") is not valid.").arg(m_strVersion, m_strCompatVersion));
        return false;
    }
    const QJsonValue deps = data.value(QLatin1String("Dependencies"));
    if (!deps.isUndefined() && !deps.isArray()) {
        setError(tr("its dependency list is not a list."));
        return false;
    }
    const QJsonArray depArray = deps.toArray();
    for (const QJsonValue& dep : depArray) {
        const QJsonObject o = dep.toObject();
        PluginDependency d{o.value(QLatin1String("Name")).toString(), o.value(QLatin1String("Version")).toString()};
        if (d.strName.isEmpty() || !isValidVersion(d.strVersion)) {
            setError(tr("one of its dependencies has no name or no valid version."));
            return false;
        }
        m_vecDependencies.append(d);
    }
    return true;
}

bool PluginSpec::provides(const QString& name, const QString& version) const
{
    if (name != m_strName)
        return false;
    return compareVersions(m_strVersion, version) >= 0 && compareVersions(m_strCompatVersion, version) <= 0;
}

bool PluginSpec::isValidVersion(const QString& version)
{
    static const QRegularExpression re(QStringLiteral("^\\d+(\\.\\d+){0,3}$"));
    return re.match(version).hasMatch();
}

int PluginSpec::compareVersions(const QString& v1, const QString& v2)
{
    const QStringList a = v1.split(QLatin1Char('.'));
    const QStringList b = v2.split(QLatin1Char('.'));
    for (int i = 0; i < 4; ++i) {
        const int n1 = a.value(i, QStringLiteral("0")).toInt();
        const int n2 = b.value(i, QStringLiteral("0")).toInt();
        if (n1 != n2)
            return n1 < n2 ? -1 : 1;
    }
    return 0;
}

} // namespace ExtensionSystem
