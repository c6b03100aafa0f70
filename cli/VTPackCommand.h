#pragma once

#include "VTCliOutputCommand.h"

// "vetra pack FILE OUT.vetrapack": writes a project as one package file with the studio's own
// packing, resources and custom preloader included.
class VTPackCommand final : public VTCliOutputCommand
{
    Q_DECLARE_TR_FUNCTIONS(VTPackCommand)
public:
    QString getName() const override { return QStringLiteral("pack"); }
    QString getArgumentsSyntax() const override { return QStringLiteral("FILE OUT.vetrapack"); }
    QString getSummary() const override;

protected:
    QString getOutputSuffix() const override;
    bool write(VTDocument& document, const QString& outPath) const override;
    QString getFailureText() const override { return tr("not written"); }
};
