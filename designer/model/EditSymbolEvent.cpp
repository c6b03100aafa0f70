#include "EditSymbolEvent.h"

QEvent::Type EditSymbolEvent::type()
{
    static const auto s_type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return s_type;
}
