#include "DialogMessageBox.h"

#include "ICore.h"
#include "MainWindow.h"

#include <QMessageBox>

namespace {
using Fn = QMessageBox::StandardButton (*)(QWidget*, const QString&, const QString&,
                                            QMessageBox::StandardButtons, QMessageBox::StandardButton);

IMessageBox::StandardButton show(Fn fn, const QString& title, const QString& text,
                                 IMessageBox::StandardButtons buttons, IMessageBox::StandardButton defaultButton)
{
    const auto result = fn(ICore::getMainWindow(), title, text, QMessageBox::StandardButtons(int(buttons)),
                           QMessageBox::StandardButton(int(defaultButton)));
    return IMessageBox::StandardButton(int(result));
}
} // namespace

IMessageBox::StandardButton DialogMessageBox::information(const QString& title, const QString& text,
                                                          StandardButtons buttons, StandardButton defaultButton)
{
    return show(&QMessageBox::information, title, text, buttons, defaultButton);
}

IMessageBox::StandardButton DialogMessageBox::warning(const QString& title, const QString& text,
                                                      StandardButtons buttons, StandardButton defaultButton)
{
    return show(&QMessageBox::warning, title, text, buttons, defaultButton);
}

IMessageBox::StandardButton DialogMessageBox::question(const QString& title, const QString& text,
                                                       StandardButtons buttons, StandardButton defaultButton)
{
    return show(&QMessageBox::question, title, text, buttons, defaultButton);
}

IMessageBox::StandardButton DialogMessageBox::critical(const QString& title, const QString& text,
                                                       StandardButtons buttons, StandardButton defaultButton)
{
    return show(&QMessageBox::critical, title, text, buttons, defaultButton);
}
