#include "VTResaveCommand.h"

#include "VTDocument.h"
#include "VTProjectPaths.h"

#include <QFileInfo>

QString VTResaveCommand::getSummary() const
{
    return tr(
        "Open a project and save it as OUT (a new .vetra file) with its resources, as \"Save As\" does");
}

QString VTResaveCommand::getOutputSuffix() const
{
    return VTProjectPaths::getProjectSuffix();
}

bool VTResaveCommand::isOutputTaken(const QFileInfo& target) const
{
    return target.exists() ||
           QFileInfo::exists(VTProjectPaths(target.absoluteFilePath()).getResourceFolderPath());
}

bool VTResaveCommand::write(VTDocument& document, const QString& outPath) const
{
    return document.save(outPath);
}
