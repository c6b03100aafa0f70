#pragma once

#include "IMessageBox.h"

#include <QList>
#include <QPair>
#include <QStringList>

// Records every message and answers questions from a queue (the cautious answer when empty).
class RecordingMessageBox final : public IMessageBox
{
public:
    RecordingMessageBox() { IMessageBox::setInstance(this); }
    ~RecordingMessageBox() override { IMessageBox::setInstance(nullptr); }

    QStringList texts;
    QList<StandardButton> answers;

    StandardButton information(const QString&, const QString& t, StandardButtons b, StandardButton d) override
    {
        return record(t, b, d);
    }
    StandardButton warning(const QString&, const QString& t, StandardButtons b, StandardButton d) override
    {
        return record(t, b, d);
    }
    StandardButton question(const QString&, const QString& t, StandardButtons b, StandardButton d) override
    {
        return record(t, b, d);
    }
    StandardButton critical(const QString&, const QString& t, StandardButtons b, StandardButton d) override
    {
        return record(t, b, d);
    }

private:
    StandardButton record(const QString& text, StandardButtons buttons, StandardButton defaultButton)
    {
        texts << text;
        return answers.isEmpty() ? fallbackAnswer(buttons, defaultButton) : answers.takeFirst();
    }
};
