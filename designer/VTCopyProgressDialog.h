#pragma once

#include "ICopyProgress.h"

#include <QProgressDialog>

// The percent dialog of long copies: imports of large media, packages. The bar never shows 0 or
// 100 while the copy runs, so a user never mistakes a running copy for a finished or stuck one.
class VTCopyProgressDialog final : public QProgressDialog, public ICopyProgress
{
    Q_OBJECT
public:
    VTCopyProgressDialog(const QString& label, QWidget* parent);

    void setTotalBytes(qint64 nTotal);
    static qint64 getMinimumDatasizeToShow();

    void addCopiedBytes(qint64 nBytes) override { onUpdateCopiedData(nBytes); }
    bool wasCanceled() const override { return QProgressDialog::wasCanceled(); }
    void setCancelHandler(std::function<void()> handler) override;

public slots:
    void onUpdateCopiedData(qint64 nBytes);

protected:
    void showEvent(QShowEvent* pEvent) override;

private:
    qint64 m_nTotalBytes = 0;
    qint64 m_nCopiedBytes = 0;
    std::function<void()> m_cancelHandler;
};
