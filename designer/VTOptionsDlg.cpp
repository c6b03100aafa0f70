#include "VTOptionsDlg.h"

#include "LanguageManager.h"
#include "PluginManager.h"
#include "ThemesManager.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QSettings>
#include <QTabWidget>
#include <QVBoxLayout>

VTOptionsDlg::VTOptionsDlg(QWidget* parent)
    : IOptionsDlg(parent)
    , m_pTabs(new QTabWidget(this))
    , m_pLanguageCombo(new QComboBox(this))
    , m_pThemeCombo(new QComboBox(this))
{
    setWindowTitle(tr("Preferences"));
    auto* pGeneral = new QWidget(m_pTabs);
    auto* pForm = new QFormLayout(pGeneral);
    pForm->addRow(tr("Language:"), m_pLanguageCombo);
    pForm->addRow(QString(), new QLabel(tr("A new language applies at the next start."), pGeneral));
    pForm->addRow(tr("Theme:"), m_pThemeCombo);
    m_pTabs->addTab(pGeneral, tr("General"));

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(pButtons, &QDialogButtonBox::accepted, this, &VTOptionsDlg::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pTabs);
    pLayout->addWidget(pButtons);
    updateFromConfig();
}

void VTOptionsDlg::updateFromConfig()
{
    LanguageManager* pLanguages = LanguageManager::instance();
    m_pLanguageCombo->clear();
    for (const QString& id : pLanguages->getLanguages())
        m_pLanguageCombo->addItem(pLanguages->getLanguageName(id), id);
    const QString language = pLanguages->getSavedLanguage();
    m_pLanguageCombo->setCurrentIndex(qMax(0, m_pLanguageCombo->findData(language.isEmpty() ? QStringLiteral("en") : language)));

    ThemesManager* pThemes = ThemesManager::instance();
    m_pThemeCombo->clear();
    for (const QString& id : pThemes->getThemes())
        m_pThemeCombo->addItem(pThemes->getThemeName(id), id);
    m_pThemeCombo->setCurrentIndex(qMax(0, m_pThemeCombo->findData(pThemes->getSavedTheme())));
}

void VTOptionsDlg::accept()
{
    LanguageManager::instance()->saveLanguage(m_pLanguageCombo->currentData().toString());
    ThemesManager::instance()->saveThemes(m_pThemeCombo->currentData().toString());
    if (QSettings* pSettings = ExtensionSystem::PluginManager::settings())
        pSettings->sync();
    IOptionsDlg::accept();
}
