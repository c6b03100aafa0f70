#pragma once

#include "IMessageBox.h"

// Says yes to every question and acknowledges every message, for programs that load projects
// unattended and want the loader to go as far as the input lets it.
class AgreeingMessageBox final : public IMessageBox
{
public:
    StandardButton information(const QString&, const QString&, StandardButtons, StandardButton) override
    {
        return Ok;
    }
    StandardButton warning(const QString&, const QString&, StandardButtons, StandardButton) override
    {
        return Ok;
    }
    StandardButton question(const QString&, const QString&, StandardButtons buttons, StandardButton) override
    {
        return buttons.testFlag(Yes) ? Yes : Ok;
    }
    StandardButton critical(const QString&, const QString&, StandardButtons, StandardButton) override
    {
        return Ok;
    }
};
