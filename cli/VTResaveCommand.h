#pragma once

#include "VTCliOutputCommand.h"

// "vetra resave IN OUT": writes a project under a new name with the studio's own "Save As",
// resources included. It is how a round trip through the model is checked from outside.
class VTResaveCommand final : public VTCliOutputCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTResaveCommand)
public:
    QString getName() const override { return QStringLiteral("resave"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("IN OUT"); }
    QString getSummary() const override;

protected:
    QString getOutputSuffix() const override;
    // A project brings its resource folder along.
    bool isOutputTaken(const QFileInfo& target) const override;
    bool write(VTDocument& document, const QString& outPath) const override;
    QString getFailureText() const override { return tr("not saved"); }
};
