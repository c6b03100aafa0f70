#include "VTCopyProgressDialog.h"

#include "VTResourceManager.h"

#include <QtMath>

VTCopyProgressDialog::VTCopyProgressDialog(const QString& label, QWidget* parent)
    : QProgressDialog(label, tr("Abort"), 0, 100, parent, Qt::Dialog | Qt::WindowCloseButtonHint)
{
    setWindowTitle(QStringLiteral("Vetra Studio"));
    // Modal, so that each update lets the Abort button through while the copy runs on.
    setWindowModality(Qt::ApplicationModal);
    setAutoClose(false);
    setAutoReset(false);
    connect(this, &QProgressDialog::canceled, this, [this]() {
        if (m_cancelHandler)
            m_cancelHandler();
    });
}

qint64 VTCopyProgressDialog::getMinimumDatasizeToShow()
{
    return VTResourceManager::getMinimumDatasizeToShow();
}

void VTCopyProgressDialog::setTotalBytes(qint64 nTotal)
{
    m_nTotalBytes = nTotal;
    setMinimumDuration(0);
    setValue(0);
    m_nCopiedBytes = 0;
}

void VTCopyProgressDialog::setCancelHandler(std::function<void()> handler)
{
    m_cancelHandler = std::move(handler);
}

void VTCopyProgressDialog::onUpdateCopiedData(qint64 nBytes)
{
    m_nCopiedBytes += nBytes;
    const double dPercent = m_nTotalBytes > 0 ? 100.0 * m_nCopiedBytes / m_nTotalBytes : 0.0;
    setValue(qBound(1, qRound(dPercent), 99));
}

void VTCopyProgressDialog::showEvent(QShowEvent* pEvent)
{
    QProgressDialog::showEvent(pEvent);
    setValue(1);
}
