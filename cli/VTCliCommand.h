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
    // "Usage: vetra NAME SYNTAX".
    QString getUsage() const;
    // For "--help" or "-h" alone: writes the usage and the summary to out and says true.
    bool answerHelp(const QStringList& arguments, QTextStream& out) const;
    // Results go to out, messages and problems to err. Returns the exit code.
    virtual int run(const QStringList& arguments, QTextStream& out, QTextStream& err) = 0;
};
