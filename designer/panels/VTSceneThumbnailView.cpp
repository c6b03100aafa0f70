#include "VTSceneThumbnailView.h"

#include <QLabel>
#include <QVBoxLayout>

VTSceneThumbnailView::VTSceneThumbnailView(QWidget* parent)
    : QWidget(parent)
    , m_pEmptyLabel(new QLabel(tr("No scenes to show."), this))
{
    setObjectName(QStringLiteral("VTSceneThumbnailView"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pEmptyLabel->setWordWrap(true);
    m_pEmptyLabel->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEmptyLabel);
}
