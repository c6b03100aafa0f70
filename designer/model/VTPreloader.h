#pragma once

#include "VTDocument.h"
#include "VTLoadIndicatorProps.h"

// The custom preloader: a project of its own that the exported page plays until the main
// content has loaded. It lives in the owner's resource folder as preloader/preloader.vetra and
// is loaded by its owner on demand (VTDocument::initPreloaderDocument).
class VTPreloader : public VTDocument
{
    Q_OBJECT
public:
    explicit VTPreloader(QObject* parent = nullptr);
    ~VTPreloader() override;

    bool isPreloader() const override { return true; }

    // While the preloader's own resources load, the page may show the built-in indicator.
    bool isUseLoadingIndicator() const { return m_bUseLoadingIndicator; }
    void setUseLoadingIndicator(bool bUse) { m_bUseLoadingIndicator = bUse; }
    VTLoadIndicatorProps* getLoadingIndicatorProps() { return m_pLoadingIndicatorProps; }
    const VTLoadIndicatorProps* getLoadingIndicatorProps() const { return m_pLoadingIndicatorProps; }

    // The owner's file format plus `loadingIndicatorProps` and `useLoadingIndicator` at the top.
    bool loadData(const QJsonObject& object) override;
    bool saveData(QJsonObject& object) const override;

public slots:
    // Closes without the save-discard-cancel choice of an ordinary close: the user has already
    // chosen to drop the custom preloader and may only keep its last changes.
    virtual bool forceClose();

private:
    VTLoadIndicatorProps* m_pLoadingIndicatorProps = nullptr;
    bool m_bUseLoadingIndicator = true;
};
