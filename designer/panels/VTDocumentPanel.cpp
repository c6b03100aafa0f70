#include "VTDocumentPanel.h"

#include <QLabel>
#include <QVBoxLayout>

VTDocumentPanel::VTDocumentPanel(QWidget* parent)
    : QWidget(parent)
    , m_pEmptyLabel(new QLabel(tr("No project settings to show."), this))
{
    setObjectName(QStringLiteral("VTDocumentPanel"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pEmptyLabel->setWordWrap(true);
    m_pEmptyLabel->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEmptyLabel);
}
