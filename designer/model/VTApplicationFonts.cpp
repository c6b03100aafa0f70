#include "VTApplicationFonts.h"

#include "VTFontResource.h"
#include "VTResourceManager.h"

#include <QCoreApplication>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>

void VTApplicationFonts::registerAll(VTResourceManager* pManager,
                                     const std::function<void(const QString&)>& status)
{
    removeAll();
    // The font database belongs to the GUI; the headless tool has no stage to show fonts on.
    if (!pManager || !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return;
    const QList<VTResource*> fonts = pManager->getResourcesByType(VTResource::Font, true);
    int nCount = 0;
    for (VTResource* pResource : fonts) {
        status(QCoreApplication::translate("VTDocument", "Adding Google fonts %1/%2")
                   .arg(++nCount)
                   .arg(fonts.size()));
        QFile file(pManager->getAbsTempFilename(pResource, false));
        if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
            continue;
        const int nId = QFontDatabase::addApplicationFontFromData(file.readAll());
        if (nId < 0)
            continue;
        m_lstIds.append(nId);
        const QStringList families = QFontDatabase::applicationFontFamilies(nId);
        if (!families.isEmpty())
            static_cast<VTFontResource*>(pResource)->setFamilyName(families.first());
    }
    status(QString());
}

void VTApplicationFonts::removeAll()
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        m_lstIds.clear();
        return;
    }
    for (int nId : qAsConst(m_lstIds))
        QFontDatabase::removeApplicationFont(nId);
    m_lstIds.clear();
}
