#include "VTCliMessageBox.h"

#include <QCoreApplication>
#include <QTextStream>

VTCliMessageBox::VTCliMessageBox(QTextStream* pStream)
    : m_pStream(pStream)
{}

IMessageBox::StandardButton VTCliMessageBox::information(const QString& title, const QString& text,
                                                         StandardButtons buttons, StandardButton)
{
    print(title, text);
    return cautiousAnswer(buttons);
}

IMessageBox::StandardButton VTCliMessageBox::warning(const QString& title, const QString& text,
                                                     StandardButtons buttons, StandardButton)
{
    print(title, text);
    return cautiousAnswer(buttons);
}

IMessageBox::StandardButton VTCliMessageBox::question(const QString& title, const QString& text,
                                                      StandardButtons buttons, StandardButton)
{
    print(title, text);
    const StandardButton answer = cautiousAnswer(buttons);
    *m_pStream << QCoreApplication::translate("VTCliMessageBox", "(answered \"%1\": no one to ask)")
                      .arg(buttonName(answer))
               << '\n';
    m_pStream->flush();
    return answer;
}

IMessageBox::StandardButton VTCliMessageBox::critical(const QString& title, const QString& text,
                                                      StandardButtons buttons, StandardButton)
{
    print(title, text);
    return cautiousAnswer(buttons);
}

IMessageBox::StandardButton VTCliMessageBox::cautiousAnswer(StandardButtons buttons)
{
    // From the answer that changes nothing to the one that changes most.
    for (StandardButton button : {Cancel, No, Abort, Close, Ok, Ignore, Retry, Open, Save, Yes, Discard}) {
        if (buttons.testFlag(button))
            return button;
    }
    return NoButton;
}

QString VTCliMessageBox::buttonName(StandardButton button)
{
    switch (button) {
    case Ok:
        return QStringLiteral("OK");
    case Save:
        return QStringLiteral("Save");
    case Open:
        return QStringLiteral("Open");
    case Yes:
        return QStringLiteral("Yes");
    case No:
        return QStringLiteral("No");
    case Abort:
        return QStringLiteral("Abort");
    case Retry:
        return QStringLiteral("Retry");
    case Ignore:
        return QStringLiteral("Ignore");
    case Close:
        return QStringLiteral("Close");
    case Cancel:
        return QStringLiteral("Cancel");
    case Discard:
        return QStringLiteral("Discard");
    case NoButton:
        break;
    }
    return QStringLiteral("none");
}

void VTCliMessageBox::print(const QString& title, const QString& text)
{
    *m_pStream << title << ": " << text << '\n';
    m_pStream->flush();
}
