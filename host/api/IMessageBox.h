#pragma once

#include <QFlags>
#include <QString>

// Message boxes as the model sees them. The studio installs a real dialog implementation,
// the command-line tool one that prints, and tests a recorder, so no model code ever blocks on
// a modal dialog it cannot see. Button values equal QMessageBox's so the UI can cast them.
class IMessageBox
{
public:
    enum StandardButton {
        NoButton = 0x00000000,
        Ok = 0x00000400,
        Save = 0x00000800,
        Open = 0x00002000,
        Yes = 0x00004000,
        No = 0x00010000,
        Abort = 0x00040000,
        Retry = 0x00080000,
        Ignore = 0x00100000,
        Close = 0x00200000,
        Cancel = 0x00400000,
        Discard = 0x00800000,
    };
    Q_DECLARE_FLAGS(StandardButtons, StandardButton)

    virtual ~IMessageBox() = default;

    virtual StandardButton information(const QString& title, const QString& text,
                                       StandardButtons buttons = Ok, StandardButton defaultButton = NoButton) = 0;
    virtual StandardButton warning(const QString& title, const QString& text, StandardButtons buttons = Ok,
                                   StandardButton defaultButton = NoButton) = 0;
    virtual StandardButton question(const QString& title, const QString& text,
                                    StandardButtons buttons = StandardButtons(Yes | No),
                                    StandardButton defaultButton = NoButton) = 0;
    virtual StandardButton critical(const QString& title, const QString& text, StandardButtons buttons = Ok,
                                    StandardButton defaultButton = NoButton) = 0;

    // The process-wide implementation. Never null: before one is installed, a logging one that
    // answers each question with its default button stands in.
    static IMessageBox* instance();
    // Does not take ownership; pass nullptr to go back to the logging stand-in.
    static void setInstance(IMessageBox* pBox);

    // The answer a non-interactive implementation gives: the default button if it is offered,
    // else the most cautious button offered.
    static StandardButton fallbackAnswer(StandardButtons buttons, StandardButton defaultButton);
};

Q_DECLARE_OPERATORS_FOR_FLAGS(IMessageBox::StandardButtons)
