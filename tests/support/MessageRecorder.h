#pragma once

#include "IMessageBox.h"

#include <QList>
#include <QPair>
#include <QStringList>

// Stands in for the message boxes while it lives: records each message with its kind and answers
// questions from a queue, or with the cautious answer once the queue is empty.
class MessageRecorder final : public IMessageBox
{
public:
    enum Kind
    {
        Information,
        Warning,
        Question,
        Critical
    };

    MessageRecorder() { IMessageBox::setInstance(this); }
    ~MessageRecorder() override { IMessageBox::setInstance(nullptr); }
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;

    QList<QPair<Kind, QString>> m_lstMessages;
    QList<StandardButton> m_lstAnswers;
    QStringList m_lstTitles;

    // The texts received, of one kind or (with -1) of all.
    QStringList getTexts(int nKind = -1) const
    {
        QStringList texts;
        for (const auto& message : m_lstMessages) {
            if (nKind < 0 || message.first == nKind)
                texts << message.second;
        }
        return texts;
    }
    void clear()
    {
        m_lstMessages.clear();
        m_lstAnswers.clear();
        m_lstTitles.clear();
    }

    StandardButton information(const QString& title, const QString& text, StandardButtons buttons,
                               StandardButton defaultButton) override
    {
        return record(Information, title, text, buttons, defaultButton);
    }
    StandardButton warning(const QString& title, const QString& text, StandardButtons buttons,
                           StandardButton defaultButton) override
    {
        return record(Warning, title, text, buttons, defaultButton);
    }
    StandardButton question(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override
    {
        return record(Question, title, text, buttons, defaultButton);
    }
    StandardButton critical(const QString& title, const QString& text, StandardButtons buttons,
                            StandardButton defaultButton) override
    {
        return record(Critical, title, text, buttons, defaultButton);
    }

private:
    StandardButton record(Kind kind, const QString& title, const QString& text, StandardButtons buttons,
                          StandardButton defaultButton)
    {
        m_lstMessages.append({kind, text});
        m_lstTitles.append(title);
        return m_lstAnswers.isEmpty() ? fallbackAnswer(buttons, defaultButton) : m_lstAnswers.takeFirst();
    }
};
