#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

// "vetra pack FILE OUT.vetrapack": opens a project and writes it as one package file with the
// studio's own packing, resources and custom preloader included. The project is only read.
class VTPackCommand final : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTPackCommand)
public:
    QString getName() const override { return QStringLiteral("pack"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("FILE OUT.vetrapack"); }
    QString getSummary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
