#include "IMessageBox.h"

#include <QDebug>

namespace {

class LoggingMessageBox final : public IMessageBox
{
public:
    StandardButton information(const QString& title, const QString& text, StandardButtons buttons,
                               StandardButton defaultButton) override
    {
        qInfo().noquote() << title << ":" << text;
        return fallbackAnswer(buttons, defaultButton);
    }
    StandardButton warning(const QString& title, const QString& text, StandardButtons buttons,
                           StandardButton defaultButton) override
    {
        qWarning().noquote() << title << ":" << text;
        return fallbackAnswer(buttons, defaultButton);
    }
    StandardButton question(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override
    {
        qInfo().noquote() << title << ":" << text;
        return fallbackAnswer(buttons, defaultButton);
    }
    StandardButton critical(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override
    {
        qCritical().noquote() << title << ":" << text;
        return fallbackAnswer(buttons, defaultButton);
    }
};

LoggingMessageBox s_loggingBox;
IMessageBox* s_pInstalled = nullptr;

} // namespace

IMessageBox* IMessageBox::instance()
{
    return s_pInstalled ? s_pInstalled : &s_loggingBox;
}

void IMessageBox::setInstance(IMessageBox* pBox)
{
    s_pInstalled = pBox;
}

IMessageBox::StandardButton IMessageBox::fallbackAnswer(StandardButtons buttons, StandardButton defaultButton)
{
    if (defaultButton != NoButton && buttons.testFlag(defaultButton))
        return defaultButton;
    // Without a person to ask, never choose the answer that overwrites or discards.
    for (StandardButton b : {Cancel, No, Abort, Close, Ok, Ignore}) {
        if (buttons.testFlag(b))
            return b;
    }
    return NoButton;
}
