#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

// "vetra resave IN OUT": opens a project and writes it under a new name with the studio's own
// "Save As", resources included. It is how a round trip through the model is checked from
// outside; the project that was read stays as it was.
class VTResaveCommand final : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTResaveCommand)
public:
    QString getName() const override { return QStringLiteral("resave"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("IN OUT"); }
    QString getSummary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
