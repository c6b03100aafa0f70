#include "VTCliCommand.h"

#include <QCoreApplication>
#include <QTextStream>

QString VTCliCommand::getUsage() const
{
    return QCoreApplication::translate("VTCliCommand", "Usage: vetra %1 %2")
        .arg(getName(), getArgumentsSyntax());
}

bool VTCliCommand::answerHelp(const QStringList& arguments, QTextStream& out) const
{
    const bool bHelp = arguments.size() == 1 && (arguments.first() == QLatin1String("--help") ||
                                                 arguments.first() == QLatin1String("-h"));
    if (bHelp)
        out << getUsage() << '\n' << getSummary() << '\n';
    return bHelp;
}
