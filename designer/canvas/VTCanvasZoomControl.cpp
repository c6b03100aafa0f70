#include "VTCanvasZoomControl.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>

VTCanvasZoomControl::VTCanvasZoomControl(QWidget* parent)
    : QWidget(parent)
    , m_pCombo(new QComboBox(this))
{
    setObjectName(QStringLiteral("VTCanvasZoomControl"));
    m_pCombo->setEditable(true);
    for (int n : {25, 50, 75, 100, 150, 200, 300, 400})
        m_pCombo->addItem(QStringLiteral("%1%").arg(n), n);
    m_pCombo->setCurrentIndex(m_pCombo->findData(100));
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pCombo);
    connect(m_pCombo, QOverload<int>::of(&QComboBox::activated), this,
            [this] { emit zoomChanged(getZoomPercent()); });
    connect(m_pCombo->lineEdit(), &QLineEdit::editingFinished, this, [this] {
        const int n = getZoomPercent();
        setZoomPercent(n);
        emit zoomChanged(n);
    });
}

int VTCanvasZoomControl::getZoomPercent() const
{
    QString text = m_pCombo->currentText();
    text.remove(QLatin1Char('%'));
    bool bOk = false;
    const int n = text.trimmed().toInt(&bOk);
    return bOk ? qBound(5, n, 1000) : 100;
}

void VTCanvasZoomControl::setZoomPercent(int nPercent)
{
    m_pCombo->setEditText(QStringLiteral("%1%").arg(qBound(5, nPercent, 1000)));
}
