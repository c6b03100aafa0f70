#pragma once

#include "IMessageBox.h"

class QTextStream;

// Messages of the model on the terminal: every message is printed as "<title>: <text>", and a
// question is answered at once with its most cautious button, whatever the default, since no
// one is there to ask.
class VTCliMessageBox final : public IMessageBox
{
public:
    explicit VTCliMessageBox(QTextStream* pStream);

    StandardButton information(const QString& title, const QString& text, StandardButtons buttons,
                               StandardButton defaultButton) override;
    StandardButton warning(const QString& title, const QString& text, StandardButtons buttons,
                           StandardButton defaultButton) override;
    StandardButton question(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override;
    StandardButton critical(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override;

    static StandardButton cautiousAnswer(StandardButtons buttons);
    static QString buttonName(StandardButton button);

private:
    void print(const QString& title, const QString& text);

    QTextStream* m_pStream = nullptr;
};
