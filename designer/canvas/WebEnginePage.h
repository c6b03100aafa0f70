#pragma once

#include <QWebEnginePage>

// A page that hands its console output to the studio, so the stage page's warnings and errors
// show up in the studio's log instead of vanishing inside the browser.
class WebEnginePage final : public QWebEnginePage
{
    Q_OBJECT
public:
    explicit WebEnginePage(QObject* parent = nullptr);

    // Writes one console message to Qt's log at the matching level.
    static void logConsoleMessage(int nLevel, const QString& message, int nLineNumber,
                                  const QString& sourceID);

signals:
    void consoleMessage(int nLevel, const QString& message, int nLineNumber, const QString& sourceID);

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                  int nLineNumber, const QString& sourceID) override;
};
