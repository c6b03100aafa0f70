#pragma once

#include <QStringList>

class QTextStream;

// One sub-command of the "vetra" tool. The application lists the commands by name and hands
// each the arguments that follow its name.
class VTCliCommand
{
public:
    static constexpr int s_nExitSuccess = 0;
    static constexpr int s_nExitFailure = 1;
    static constexpr int s_nExitUsage = 2;

    virtual ~VTCliCommand() = default;

    virtual QString getName() const = 0;
    // The arguments after the name, as the usage text shows them ("FILE").
    virtual QString getArgumentsSyntax() const = 0;
    // One line for the command list.
    virtual QString getSummary() const = 0;
    // "--help" or "-h" alone.
    static bool isHelpRequest(const QStringList& arguments)
    {
        return arguments.size() == 1 &&
               (arguments.first() == QLatin1String("--help") || arguments.first() == QLatin1String("-h"));
    }
    // Results go to out, messages and problems to err. Returns the exit code.
    virtual int run(const QStringList& arguments, QTextStream& out, QTextStream& err) = 0;
};
