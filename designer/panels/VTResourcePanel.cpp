#include "VTResourcePanel.h"

#include <QLabel>
#include <QVBoxLayout>

VTResourcePanel::VTResourcePanel(QWidget* parent)
    : QWidget(parent)
    , m_pEmptyLabel(new QLabel(tr("No resources to show."), this))
{
    setObjectName(QStringLiteral("VTResourcePanel"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pEmptyLabel->setWordWrap(true);
    m_pEmptyLabel->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEmptyLabel);
}
