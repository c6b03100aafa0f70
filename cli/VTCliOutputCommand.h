#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

class QFileInfo;
class VTDocument;

// A command of the form "vetra NAME IN OUT": opens IN as the studio does and writes it as a new
// OUT of one kind. OUT must not exist yet: replacing work is a decision a user makes in the
// studio, not a side effect of a tool. The folder of OUT is made when it is missing, as the
// studio's dialog does, and the project that was read stays as it was.
class VTCliOutputCommand : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTCliOutputCommand)
public:
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) final;

protected:
    // Without the dot.
    virtual QString getOutputSuffix() const = 0;
    // Whether something already stands where OUT, or what a write brings along with it, would go.
    virtual bool isOutputTaken(const QFileInfo& target) const;
    virtual bool write(VTDocument& document, const QString& outPath) const = 0;
    // What err says after OUT's path when the write fails.
    virtual QString getFailureText() const = 0;
};
