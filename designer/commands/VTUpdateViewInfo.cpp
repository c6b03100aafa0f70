#include "VTUpdateViewInfo.h"

#include "VTCmdParam.h"
#include "VTRecordWriter.h"

#include <QJsonArray>

namespace {

const QString s_strCmdKey = QStringLiteral("cmd");
const QString s_strUndoKey = QStringLiteral("isUndoCmd");
const QString s_strParamsKey = QStringLiteral("params");

} // namespace

VTUpdateViewInfo::VTUpdateViewInfo(QObject* pParent)
    : QObject(pParent)
{}

VTUpdateViewInfo::~VTUpdateViewInfo()
{
    clearOwnedParams();
}

void VTUpdateViewInfo::setParams(QList<VTCmdParam*>* pParams)
{
    if (pParams == m_pParams)
        return;
    clearOwnedParams();
    m_pParams = pParams;
}

void VTUpdateViewInfo::clearOwnedParams()
{
    if (m_bOwnsParams && m_pParams) {
        qDeleteAll(*m_pParams);
        delete m_pParams;
    }
    m_pParams = nullptr;
    m_bOwnsParams = false;
}

void VTUpdateViewInfo::serialize(QJsonObject& json, VTDocument* pDocument,
                                 VTResourceManager* pResourceManager) const
{
    json.insert(s_strCmdKey, m_nId);
    json.insert(s_strUndoKey, m_bUndoCmd);
    if (!m_pParams)
        return;
    json.insert(s_strParamsKey,
                VTRecordWriter::writeEntries(m_nId, *m_pParams, m_bUndoCmd, pDocument, pResourceManager));
}

void VTUpdateViewInfo::parse(const QJsonObject& json, VTResourceManager* pResourceManager)
{
    m_nId = json.value(s_strCmdKey).toInt();
    m_bUndoCmd = json.value(s_strUndoKey).toBool();
    // A borrowed list belongs to an action and is left alone; the record starts a list of its own.
    if (m_bOwnsParams && m_pParams) {
        qDeleteAll(*m_pParams);
        m_pParams->clear();
    } else {
        m_pParams = new QList<VTCmdParam*>();
        m_bOwnsParams = true;
    }
    const QJsonArray entries = json.value(s_strParamsKey).toArray();
    for (const QJsonValue& entry : entries) {
        if (!entry.isObject())
            continue;
        auto* pParam = new VTCmdParam();
        pParam->parse(entry.toObject(), pResourceManager);
        m_pParams->append(pParam);
    }
}
