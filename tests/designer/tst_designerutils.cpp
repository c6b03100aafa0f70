#include "Action.h"
#include "IUi.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class TestDesignerUtils : public QObject
{
    Q_OBJECT
private slots:
    void imageNames();
    void pixmapCacheKeepsOnlyLoadedImages();
    void actionReportsItsNumber();
};

void TestDesignerUtils::imageNames()
{
    QCOMPARE(IUi::fileName("undo", IUi::State_Normal, IUi::Size_None), QString("undo.png"));
    QCOMPARE(IUi::fileName("undo", IUi::State_Disabled, IUi::Size_16), QString("undo_16_d.png"));
    QCOMPARE(IUi::fileName("zoom", IUi::State_Any, IUi::Size_64), QString("zoom_64.png"));
    // Unknown sizes and states add nothing.
    QCOMPARE(IUi::fileName("zoom", 3, 9), QString("zoom.png"));
    QCOMPARE(IUi::fileName("zoom", 8, -1), QString("zoom.png"));
}

void TestDesignerUtils::pixmapCacheKeepsOnlyLoadedImages()
{
    IUi* pUi = IUi::getInstance();
    QCOMPARE(IUi::getInstance(), pUi);
    QTemporaryDir dir;
    QImage image(24, 24, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(dir.filePath("play_24.png")));
    QImage disabled(24, 24, QImage::Format_ARGB32);
    disabled.fill(Qt::gray);
    QVERIFY(disabled.save(dir.filePath("play_24_d.png")));

    for (int i = 0; i < 2; ++i) {
        const QPixmap missing = pUi->getPixmap("no_such_image", IUi::State_Normal, IUi::Size_16, dir.path());
        QCOMPARE(missing.size(), QSize(16, 16));
    }
    QCOMPARE(pUi->getCacheSize(), 0);

    const QPixmap play = pUi->getPixmap("play", IUi::State_Normal, IUi::Size_24, dir.path());
    QCOMPARE(play.size(), QSize(24, 24));
    QCOMPARE(pUi->getCacheSize(), 1);
    // Served from the cache even once the file is gone.
    QVERIFY(QFile::remove(dir.filePath("play_24.png")));
    QCOMPARE(pUi->getPixmap("play", IUi::State_Normal, IUi::Size_24, dir.path()).toImage().pixelColor(0, 0),
             QColor(Qt::red));

    const QIcon icon = pUi->getIcon("play", IUi::Size_24, dir.path());
    QCOMPARE(icon.pixmap(24, QIcon::Disabled).toImage().pixelColor(1, 1), QColor(Qt::gray));
    IUi::destroyInstance();
}

void TestDesignerUtils::actionReportsItsNumber()
{
    Action star(QStringLiteral("Star"), nullptr, 7);
    QSignalSpy spy(&star, QOverload<int>::of(&Action::triggered));
    star.trigger();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toInt(), 7);
    QCOMPARE(star.getId(), 7);
}

QTEST_MAIN(TestDesignerUtils)
#include "tst_designerutils.moc"
