#include "VTCopyProgressDialog.h"
#include "VTResourceManager.h"

#include <QPushButton>
#include <QtTest>

class TestCopyProgressDialog : public QObject
{
    Q_OBJECT
private slots:
    void percentStaysInsideTheBar();
    void abortReachesTheCopy();
};

void TestCopyProgressDialog::percentStaysInsideTheBar()
{
    VTCopyProgressDialog dialog(QStringLiteral("Copying..."), nullptr);
    QCOMPARE(dialog.windowFlags() & Qt::WindowCloseButtonHint, Qt::WindowCloseButtonHint);
    QCOMPARE(VTCopyProgressDialog::getMinimumDatasizeToShow(), qint64(20 * 1024 * 1024));
    dialog.setTotalBytes(1000);
    QCOMPARE(dialog.value(), 0);
    dialog.show();
    QCOMPARE(dialog.value(), 1);
    dialog.onUpdateCopiedData(2);
    // Rounds to 0%, but a running copy never shows an empty bar.
    QCOMPARE(dialog.value(), 1);
    dialog.onUpdateCopiedData(500);
    QCOMPARE(dialog.value(), 50);
    dialog.onUpdateCopiedData(498);
    // All bytes through, and still not 100 until the dialog closes.
    QCOMPARE(dialog.value(), 99);
    dialog.setTotalBytes(0);
    dialog.onUpdateCopiedData(10);
    QCOMPARE(dialog.value(), 1);
}

void TestCopyProgressDialog::abortReachesTheCopy()
{
    VTResourceManager manager(nullptr);
    VTCopyProgressDialog dialog(QStringLiteral("Copying..."), nullptr);
    ICopyProgress* pProgress = &dialog;
    pProgress->setCancelHandler([&manager]() { manager.cancelCopyingData(); });
    QVERIFY(!manager.isCopyCancelled());
    // The Abort button, as the user presses it.
    auto* pAbort = dialog.findChild<QPushButton*>();
    QVERIFY(pAbort);
    QCOMPARE(pAbort->text(), QStringLiteral("Abort"));
    pAbort->click();
    QVERIFY(pProgress->wasCanceled());
    QVERIFY(manager.isCopyCancelled());

    // A copy driven through the dialog stops at the chunk after the user aborted.
    QByteArray data(3 * VTResourceManager::s_nChunkSize, 'x');
    QBuffer source(&data);
    QByteArray copied;
    QBuffer target(&copied);
    QVERIFY(source.open(QIODevice::ReadOnly));
    QVERIFY(target.open(QIODevice::WriteOnly));
    VTCopyProgressDialog running(QStringLiteral("Copying..."), nullptr);
    running.setTotalBytes(data.size());
    running.setCancelHandler([&manager]() { manager.cancelCopyingData(); });
    connect(&manager, &VTResourceManager::bytesWritten, &running, [&running](qint64 n) {
        running.addCopiedBytes(n);
        running.findChild<QPushButton*>()->click();
    });
    QVERIFY(!manager.copyResourceData(&source, &target));
    QCOMPARE(copied.size(), int(VTResourceManager::s_nChunkSize));
}

QTEST_MAIN(TestCopyProgressDialog)
#include "tst_copyprogressdialog.moc"
