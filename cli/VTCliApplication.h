#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

// Parses the command line of "vetra" and runs the sub-command it names.
class VTCliApplication final
{
    Q_DECLARE_TR_FUNCTIONS(VTCliApplication)
public:
    VTCliApplication();
    ~VTCliApplication();

    void addCommand(std::unique_ptr<VTCliCommand> pCommand);
    VTCliCommand* findCommand(const QString& name) const;

    // arguments without the program name. Returns the exit code.
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err);
    QString getUsage() const;

private:
    std::vector<std::unique_ptr<VTCliCommand>> m_lstCommands;
};
