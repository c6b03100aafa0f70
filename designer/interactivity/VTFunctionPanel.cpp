#include "VTFunctionPanel.h"

#include <QLabel>
#include <QVBoxLayout>

VTFunctionPanel::VTFunctionPanel(QWidget* parent)
    : QWidget(parent)
    , m_pEmptyLabel(new QLabel(tr("No functions to show."), this))
{
    setObjectName(QStringLiteral("VTFunctionPanel"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pEmptyLabel->setWordWrap(true);
    m_pEmptyLabel->setEnabled(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEmptyLabel);
}
