#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

class VTDocument;

// "vetra check FILE": opens the project with the studio's own code and reports what the studio
// would say, plus whatever it had to leave out or replace. The project is only read: it is never
// saved and its locks go with the document.
class VTCheckCommand final : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTCheckCommand)
public:
    QString getName() const override { return QStringLiteral("check"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("FILE"); }
    QString getSummary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;

    // "welcome: 800 x 600 px, format version 3, 1 scene, 0 resources, 0 scripts"
    static QString getSummaryLine(const VTDocument& document);
};
