#include "VTPackCommand.h"

#include "VTDocument.h"
#include "VTPackage.h"
#include "VTProjectPaths.h"

QString VTPackCommand::getSummary() const
{
    return tr("Open a project and write it with its resources as one package file OUT, as \"Save as "
              "Package\" does");
}

QString VTPackCommand::getOutputSuffix() const
{
    return VTProjectPaths::getPackageSuffix();
}

bool VTPackCommand::write(VTDocument& document, const QString& outPath) const
{
    return VTPackage::save(document, outPath, false);
}
