// Opens the project named on the command line, changes its width to 777, writes the backup and
// dies as a crash does, so that tests see what a crash leaves on disk. Exits with 2 when a step
// fails before the crash.

#include "VTDocument.h"

#include <QCoreApplication>
#include <QUndoCommand>
#include <QUndoStack>

#include <cstdlib>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
#ifdef Q_OS_UNIX
    // The crash is the point; a core file of it is not.
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
#endif
    auto* pDocument = new VTDocument;
    pDocument->setFileName(QCoreApplication::arguments().value(1));
    if (!pDocument->open())
        return 2;
    pDocument->setWidth(777);
    pDocument->getUndoStack()->push(new QUndoCommand(QStringLiteral("Width")));
    if (!pDocument->saveBackup())
        return 2;
    std::abort();
}
