#include "VTFunctionData.h"

VTFunctionData::VTFunctionData(const QString& strName, const QString& strContent,
                               const QStringList& lstParams, FunctionType nType)
    : m_strName(strName)
    , m_strContent(strContent)
    , m_lstParams(lstParams)
    , m_nType(nType)
{}

bool VTFunctionData::operator==(const VTFunctionData& other) const
{
    return m_strName == other.m_strName && m_strContent == other.m_strContent &&
           m_lstParams == other.m_lstParams;
}

QString VTFunctionData::getDefaultName(FunctionType nType)
{
    switch (nType) {
    case NormalFunction:
        return QStringLiteral("untitledFunction");
    case DocumentEventHandler:
        return QStringLiteral("documentEventHandler");
    case TimelineEventHandler:
        return QStringLiteral("timelineEventHandler");
    case SceneEventHandler:
        return QStringLiteral("sceneEventHandler");
    case ElementEventHandler:
        return QStringLiteral("elementEventHandler");
    case PreloaderEventHandler:
        return QStringLiteral("preloaderEventHandler");
    }
    return QString();
}

QString VTFunctionData::getTypeLabel(FunctionType nType)
{
    switch (nType) {
    case NormalFunction:
        return tr("Normal Function");
    case DocumentEventHandler:
        return tr("Document Event Handler");
    case TimelineEventHandler:
        return tr("Timeline Event Handler");
    case SceneEventHandler:
        return tr("Scene Event Handler");
    case ElementEventHandler:
        return tr("Element Event Handler");
    case PreloaderEventHandler:
        break;
    }
    return QString();
}
