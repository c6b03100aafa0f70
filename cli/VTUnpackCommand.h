#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

// "vetra unpack PKG FOLDER": extracts a package into FOLDER as FOLDER/F.vetra and FOLDER/F_res,
// F being the folder's name, and prints the project file. A folder that already holds a project
// is refused rather than written over, and a failed extraction takes back what it wrote.
class VTUnpackCommand final : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTUnpackCommand)
public:
    QString getName() const override { return QStringLiteral("unpack"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("PKG FOLDER"); }
    QString getSummary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;

    // Whether folder holds a project file, or a non-empty resource folder of the project that
    // unpacking would write.
    static bool holdsProject(const QString& folder);
};
