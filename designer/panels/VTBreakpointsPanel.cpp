#include "VTBreakpointsPanel.h"

#include <QLabel>
#include <QVBoxLayout>

VTBreakpointsPanel::VTBreakpointsPanel(QWidget* parent)
    : QWidget(parent)
    , m_pEmptyLabel(new QLabel(tr("No breakpoints to show."), this))
{
    setObjectName(QStringLiteral("VTBreakpointsPanel"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pEmptyLabel->setWordWrap(true);
    m_pEmptyLabel->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEmptyLabel);
}
