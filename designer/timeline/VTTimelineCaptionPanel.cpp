#include "VTTimelineCaptionPanel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

VTTimelineCaptionPanel::VTTimelineCaptionPanel(QWidget* parent)
    : QWidget(parent)
    , m_pTitle(new QLabel(tr("Timeline"), this))
{
    setObjectName(QStringLiteral("VTTimelineCaptionPanel"));
    auto* pClose = new QToolButton(this);
    pClose->setObjectName(QStringLiteral("timelineCloseButton"));
    pClose->setText(QStringLiteral("×"));
    pClose->setAutoRaise(true);
    pClose->setToolTip(tr("Close"));
    connect(pClose, &QToolButton::clicked, this, &VTTimelineCaptionPanel::closeRequested);
    m_pCloseButton = pClose;
    m_pCloseButton->setVisible(false);
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(6, 2, 2, 2);
    pLayout->addWidget(m_pTitle);
    pLayout->addStretch();
    pLayout->addWidget(m_pCloseButton);
}

void VTTimelineCaptionPanel::topLevelChanged(bool bTopLevel)
{
    m_bFloating = bTopLevel;
    m_pCloseButton->setVisible(bTopLevel);
}
