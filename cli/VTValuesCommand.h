#pragma once

#include "VTCliCommand.h"

#include <QCoreApplication>

// "vetra values FILE [--scene N] [--timeline NAME] --time T [--layout H,V]": the animated values
// of one scene at one time, as JSON on standard output (the form is described in
// VTAnimationValues). The scene is its position from 1 or its name, the first scene by default;
// the timeline is named, the main timeline by default; the layout is a pair of breakpoint ids of
// the document, the base layout by default. The project is only read.
class VTValuesCommand final : public VTCliCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTValuesCommand)
public:
    QString getName() const override { return QStringLiteral("values"); }
    QString getArgumentsSyntax() const override
    {
        return QStringLiteral("FILE [--scene N] [--timeline NAME] --time T [--layout H,V]");
    }
    QString getSummary() const override;
    int run(const QStringList& arguments, QTextStream& out, QTextStream& err) override;
};
