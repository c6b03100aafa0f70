#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

// "vetra export FILE OUTDIR [--player DIR]": writes a project as the HTML5 folder that the
// studio's export writes, with the player of DIR or the one that comes with the tool. OUTDIR
// must be new or empty, since an export replaces the files it writes; it is made when missing.
// The project is only read, though a custom preloader that was never saved is made on the way,
// as in the studio.
class VTExportCommand final : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTExportCommand)
public:
    QString getName() const override { return QStringLiteral("export"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("FILE OUTDIR [--player DIR]"); }
    QString getSummary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
