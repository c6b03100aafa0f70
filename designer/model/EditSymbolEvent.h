#pragma once

#include <QEvent>

// Posted to a document to open the symbol of a symbol resource for editing. Views post it rather
// than open the symbol at once, because they ask from inside their own event handling (a double
// click in the resource panel, a call from the stage page) and the switch rebuilds those views.
class EditSymbolEvent final : public QEvent
{
public:
    explicit EditSymbolEvent(int nResourceId)
        : QEvent(type())
        , m_nResourceId(nResourceId)
    {}

    // Registered with Qt once per process.
    static QEvent::Type type();
    int getResourceId() const { return m_nResourceId; }

private:
    int m_nResourceId;
};
