#include "VTPreloader.h"

#include "IMessageBox.h"
#include "IUtils.h"
#include "VTJsonReader.h"

#include <QFileInfo>

namespace {

const QString s_strLoadingIndicatorPropsKey = QStringLiteral("loadingIndicatorProps");
const QString s_strUseLoadingIndicatorKey = QStringLiteral("useLoadingIndicator");

} // namespace

VTPreloader::VTPreloader(QObject* parent)
    : VTDocument(parent)
    , m_pLoadingIndicatorProps(new VTLoadIndicatorProps)
{}

VTPreloader::~VTPreloader()
{
    delete m_pLoadingIndicatorProps;
}

bool VTPreloader::loadData(const QJsonObject& object)
{
    if (!VTDocument::loadData(object))
        return false;
    const VTJsonReader reader(object, QString(), getLoadProblemList());
    m_pLoadingIndicatorProps->parse(reader.readObject(s_strLoadingIndicatorPropsKey),
                                    s_strLoadingIndicatorPropsKey, getLoadProblemList());
    m_bUseLoadingIndicator = reader.readBool(s_strUseLoadingIndicatorKey, false);
    return true;
}

bool VTPreloader::saveData(QJsonObject& object) const
{
    if (!VTDocument::saveData(object))
        return false;
    QJsonObject props;
    m_pLoadingIndicatorProps->serialize(props);
    object.insert(s_strLoadingIndicatorPropsKey, props);
    object.insert(s_strUseLoadingIndicatorKey, m_bUseLoadingIndicator);
    return true;
}

bool VTPreloader::forceClose()
{
    if (isModified()) {
        const auto answer = IMessageBox::instance()->question(
            IUtils::getApplicationName(),
            tr("Save changes made to %1?").arg(QFileInfo(getFileName()).completeBaseName()),
            IMessageBox::Yes | IMessageBox::No);
        if (answer == IMessageBox::Yes)
            save();
    }
    emit aboutToClose();
    return true;
}
