#include "IMessageBox.h"
#include "IUtils.h"
#include "VTCheckCommand.h"
#include "VTCliApplication.h"
#include "VTCliMessageBox.h"
#include "VTExportCommand.h"
#include "VTPackCommand.h"
#include "VTPreviewCommand.h"
#include "VTResaveCommand.h"
#include "VTUnpackCommand.h"
#include "VTValuesCommand.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

// Everything the user needs reaches the terminal through the message box and the command's own
// report; Qt's log lines would repeat it. Only real faults are let through.
void terminalMessageHandler(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        fprintf(stderr, "%s\n", qPrintable(message));
        fflush(stderr);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vetra"));
    QCoreApplication::setApplicationVersion(IUtils::getApplicationVersion());
    if (qEnvironmentVariableIsEmpty("VETRA_CLI_LOG"))
        qInstallMessageHandler(terminalMessageHandler);

    QTextStream out(stdout);
    QTextStream err(stderr);
    VTCliMessageBox messageBox(&err);
    IMessageBox::setInstance(&messageBox);

    VTCliApplication cli;
    cli.addCommand(std::make_unique<VTCheckCommand>());
    cli.addCommand(std::make_unique<VTResaveCommand>());
    cli.addCommand(std::make_unique<VTPackCommand>());
    cli.addCommand(std::make_unique<VTUnpackCommand>());
    cli.addCommand(std::make_unique<VTValuesCommand>());
    cli.addCommand(std::make_unique<VTExportCommand>());
    cli.addCommand(std::make_unique<VTPreviewCommand>());
    const int nExitCode = cli.run(QCoreApplication::arguments().mid(1), out, err);

    out.flush();
    err.flush();
    IMessageBox::setInstance(nullptr);
    return nExitCode;
}
