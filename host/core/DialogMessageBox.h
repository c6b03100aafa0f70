#pragma once

#include "IMessageBox.h"

// Message boxes as real dialogs on the main window.
class DialogMessageBox final : public IMessageBox
{
public:
    StandardButton information(const QString& title, const QString& text, StandardButtons buttons,
                               StandardButton defaultButton) override;
    StandardButton warning(const QString& title, const QString& text, StandardButtons buttons,
                           StandardButton defaultButton) override;
    StandardButton question(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override;
    StandardButton critical(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override;
};
