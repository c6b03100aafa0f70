#pragma once

#include "IOptionsDlg.h"

class QComboBox;
class QTabWidget;

// The Preferences window. Each page reads the service it edits and writes it back on OK.
class VTOptionsDlg final : public IOptionsDlg
{
    Q_OBJECT
public:
    explicit VTOptionsDlg(QWidget* parent = nullptr);

    QList<IOptionPage*> getPages() const override { return {}; }

public slots:
    void accept() override;

private:
    void updateFromConfig();

    QTabWidget* m_pTabs;
    QComboBox* m_pLanguageCombo;
    QComboBox* m_pThemeCombo;
};
