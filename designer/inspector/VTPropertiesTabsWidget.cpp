#include "VTPropertiesTabsWidget.h"

#include <QLabel>
#include <QVBoxLayout>

VTPropertiesTabsWidget::VTPropertiesTabsWidget(QWidget* parent)
    : QWidget(parent)
    , m_pEmptyLabel(new QLabel(tr("No properties to show."), this))
{
    setObjectName(QStringLiteral("VTPropertiesTabsWidget"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pEmptyLabel->setWordWrap(true);
    m_pEmptyLabel->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEmptyLabel);
}
