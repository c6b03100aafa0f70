#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

// "vetra preview FILE [--port N] [--scene-only]": writes the preview of a project as the studio
// does, serves it on 127.0.0.1 (port 8080 unless told; another one when that is taken), prints
// the page's URL and serves until interrupted (SIGINT or SIGTERM), then removes the files it
// wrote. The project itself is only read.
class VTPreviewCommand final : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTPreviewCommand)
public:
    QString getName() const override { return QStringLiteral("preview"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("FILE [--port N] [--scene-only]"); }
    QString getSummary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
