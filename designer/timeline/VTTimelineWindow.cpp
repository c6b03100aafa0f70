#include "VTTimelineWindow.h"

#include "VTTimelineCaptionPanel.h"

#include <QLabel>
#include <QVBoxLayout>

VTTimelineWindow::VTTimelineWindow(QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags)
    , m_pCaptionPanel(new VTTimelineCaptionPanel(this))
{
    setObjectName(QStringLiteral("VTTimelineWindow"));
    auto* pEmpty = new QLabel(tr("No timelines to show."), this);
    pEmpty->setAlignment(Qt::AlignCenter);
    pEmpty->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pCaptionPanel);
    pLayout->addWidget(pEmpty, 1);
}
