#include "VTElementsPanel.h"

#include <QLabel>
#include <QVBoxLayout>

VTElementsPanel::VTElementsPanel(QWidget* parent)
    : QWidget(parent)
    , m_pEmptyLabel(new QLabel(tr("No elements to show."), this))
{
    setObjectName(QStringLiteral("VTElementsPanel"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pEmptyLabel->setWordWrap(true);
    m_pEmptyLabel->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEmptyLabel);
}
