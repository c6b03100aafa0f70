#include "VTCheckCommand.h"

#include "VTCliProject.h"
#include "VTDocument.h"
#include "VTFunctionManager.h"
#include "VTResourceManager.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace {

QString counted(int nCount, const QString& one, const QString& many)
{
    return nCount == 1 ? one : many.arg(nCount);
}

} // namespace

QString VTCheckCommand::getSummary() const
{
    return tr("Open a project as the studio does and report every problem (exit code 1 if it does not open)");
}

int VTCheckCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    if (answerHelp(arguments, out))
        return s_nExitSuccess;
    if (arguments.size() != 1 || arguments.first().isEmpty()) {
        err << getUsage() << '\n';
        return s_nExitUsage;
    }
    bool bOpened = false;
    {
        const VTCliProject project(arguments.first(), err);
        bOpened = project.isOpen();
        if (bOpened) {
            out << project.getShownPath() << ": " << tr("OK") << " - "
                << getSummaryLine(project.getDocument());
            if (!project.getProblems().isEmpty())
                out << ", " << counted(project.getProblems().size(), tr("1 problem"), tr("%1 problems"));
            out << '\n';
        }
    }
    out.flush();
    err.flush();
    return bOpened ? s_nExitSuccess : s_nExitFailure;
}

QString VTCheckCommand::getSummaryLine(const VTDocument& document)
{
    return tr("\"%1\", %2 x %3 px, format version %4, %5, %6, %7, %8")
        .arg(document.getName())
        .arg(document.getWidth())
        .arg(document.getHeight())
        .arg(document.getDocVersion())
        .arg(
            counted(document.getSceneCount(), tr("1 scene"), tr("%1 scenes")),
            counted(document.getElementCount(), tr("1 element"), tr("%1 elements")),
            counted(document.getResourceManager()->getIdResourceMap().size(), tr("1 resource"),
                    tr("%1 resources")),
            counted(document.getFunctionManager()->getFunctionCount(), tr("1 function"), tr("%1 functions")));
}
