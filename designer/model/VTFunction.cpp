#include "VTFunction.h"

#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonObject>

VTFunction::VTFunction()
    : m_uuid(QUuid::createUuid())
{}

VTFunction::~VTFunction() = default;

std::unique_ptr<VTFunction> VTFunction::clone() const
{
    return std::make_unique<VTFunction>(*this);
}

std::unique_ptr<VTFunction> VTFunction::createFunction(VTFunctionData::FunctionType nType)
{
    auto pFunction = std::make_unique<VTFunction>();
    pFunction->setType(nType);
    pFunction->setName(VTFunctionData::getDefaultName(nType));
    if (nType != VTFunctionData::NormalFunction)
        pFunction->setParams({QStringLiteral("doc"), QStringLiteral("e")});
    return pFunction;
}

void VTFunction::addParam(const QString& strParam, int nIndex)
{
    QStringList lstParams = m_data.getParams();
    if (nIndex < 0 || nIndex >= lstParams.size())
        lstParams.append(strParam);
    else
        lstParams.insert(nIndex, strParam);
    m_data.setParams(lstParams);
}

void VTFunction::setParamAt(int nIndex, const QString& strParam)
{
    QStringList lstParams = m_data.getParams();
    if (nIndex < 0 || nIndex >= lstParams.size())
        return;
    lstParams[nIndex] = strParam;
    m_data.setParams(lstParams);
}

QString VTFunction::getParamAt(int nIndex) const
{
    return m_data.getParams().value(nIndex);
}

void VTFunction::removeParamAt(int nIndex)
{
    QStringList lstParams = m_data.getParams();
    if (nIndex < 0 || nIndex >= lstParams.size())
        return;
    lstParams.removeAt(nIndex);
    m_data.setParams(lstParams);
}

QString VTFunction::toString(bool bWithName) const
{
    QString strText = QStringLiteral("function");
    if (bWithName)
        strText += QLatin1Char(' ') + m_data.getName();
    strText += QLatin1Char('(') + m_data.getParams().join(QStringLiteral(", ")) + QStringLiteral(") {\n") +
               m_data.getContent() + QStringLiteral("\n}");
    return strText;
}

void VTFunction::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("id"), m_nId);
    json.insert(QStringLiteral("uuid"), m_uuid.toString());
    json.insert(QStringLiteral("name"), m_data.getName());
    json.insert(QStringLiteral("content"), m_data.getContent());
    json.insert(QStringLiteral("type"), static_cast<int>(m_data.getType()));
    json.insert(QStringLiteral("params"), QJsonArray::fromStringList(m_data.getParams()));
}

bool VTFunction::parse(const QJsonObject& json, QStringList* pWarnings)
{
    QStringList lstProblems;
    const QJsonValue name = json.value(QStringLiteral("name"));
    const QString strContext = name.isString() ? tr("function \"%1\"").arg(name.toString()) : tr("function");
    const VTJsonReader reader(json, strContext, &lstProblems);

    m_nId = reader.readInt(QStringLiteral("id"), -1);
    m_data.setName(reader.readString(QStringLiteral("name")));
    m_data.setContent(reader.readString(QStringLiteral("content")));

    const int nType = reader.readInt(QStringLiteral("type"), VTFunctionData::NormalFunction);
    if (VTFunctionData::isValidType(nType)) {
        m_data.setType(static_cast<VTFunctionData::FunctionType>(nType));
    } else {
        reader.report(tr("\"type\" %1 is not a known function kind; 0 is used instead.").arg(nType));
        m_data.setType(VTFunctionData::NormalFunction);
    }

    // A missing UUID is an old or hand-made file; such a function is simply never taken for
    // another document's function. A malformed one is the same, but worth telling.
    m_uuid = QUuid();
    const QString strUuid = reader.readString(QStringLiteral("uuid"));
    if (!strUuid.isEmpty()) {
        m_uuid = QUuid::fromString(strUuid);
        // A function that never had one is written with the null UUID; that reads back quietly.
        if (m_uuid.isNull() && strUuid != QUuid().toString())
            reader.report(tr("\"uuid\" \"%1\" is not a UUID; the function gets none.").arg(strUuid));
    }

    QStringList lstParams;
    const QJsonArray jaParams = reader.readArray(QStringLiteral("params"));
    if (jaParams.size() > kMaxParamCount) {
        reader.report(tr("\"params\" holds %1 names, more than %2; the function gets none.")
                          .arg(jaParams.size())
                          .arg(kMaxParamCount));
    } else {
        for (int i = 0; i < jaParams.size(); ++i) {
            if (jaParams.at(i).isString())
                lstParams.append(jaParams.at(i).toString());
            else
                reader.report(tr("parameter %1 should be a text but is %2; it is left out.")
                                  .arg(i)
                                  .arg(VTJsonReader::describeType(jaParams.at(i))));
        }
    }
    m_data.setParams(lstParams);

    if (pWarnings)
        pWarnings->append(lstProblems);
    return lstProblems.isEmpty();
}
