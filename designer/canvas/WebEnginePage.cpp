#include "WebEnginePage.h"

#include <QDebug>

WebEnginePage::WebEnginePage(QObject* parent)
    : QWebEnginePage(parent)
{}

void WebEnginePage::logConsoleMessage(int nLevel, const QString& message, int nLineNumber,
                                      const QString& sourceID)
{
    const QString text = QStringLiteral("%1:%2: %3").arg(sourceID).arg(nLineNumber).arg(message);
    switch (nLevel) {
    case WarningMessageLevel:
    case ErrorMessageLevel:
        qWarning().noquote() << text;
        break;
    default:
        qInfo().noquote() << text;
        break;
    }
}

void WebEnginePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                             int nLineNumber, const QString& sourceID)
{
    emit consoleMessage(level, message, nLineNumber, sourceID);
}
