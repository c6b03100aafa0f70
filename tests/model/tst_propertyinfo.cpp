#include "VTBackground.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTCorner.h"
#include "VTElementProperty.h"
#include "VTElementPropertyInfo.h"
#include "VTFilterEffect.h"
#include "VTLayoutKey.h"
#include "VTShadow.h"
#include "VTTypes.h"

#include <QHash>
#include <QMap>
#include <QtTest>

class TestPropertyInfo : public QObject
{
    Q_OBJECT
private slots:
    void propertyTable_data();
    void propertyTable();
    void propertyTableTargetsExist();
    void animationRules();
    void layoutKey();
};

void TestPropertyInfo::propertyTable_data()
{
    // Qt property | label | untranslated label | export key | group | sign for pixels | sign for
    // percent | animated.
    QTest::addColumn<int>("property");
    QTest::addColumn<QString>("expected");

    QTest::newRow("right") << 1 << "m_dPositionX|Right|Right|rt|Position and Size|px|%|1";
    QTest::newRow("location") << 6 << "m_ptTranslateXY|Location|Location|pos|Transform|||1";
    QTest::newRow("border color") << 17
                                  << "m_clBorderColor|Border Color|Border Color|lc|Border|color|color|1";
    QTest::newRow("radius") << 22 << "m_dRadialRadius|Gradient Radius|Gradient Radius||Background|||0";
    QTest::newRow("letter space") << 26 << "m_nLetterSpace|Letter Spacing|Letter Space|ls|Text|px|px|1";
    QTest::newRow("word space") << 27 << "m_nWordSpace|Word Spacing|Word Space|ws|Text|px|px|1";
    QTest::newRow("corner") << 38
                            << "m_nBottomRight|Bottom Right Radius|Bottom Right Radius|brr|Corner|px|%|1";
    QTest::newRow("playback") << 39 << "|Playback|Playback||Playback|||1";
    QTest::newRow("clip style") << 62 << "|Clip Style|Clip Style|||||0";
    QTest::newRow("clip co-vertex")
        << 68 << "m_dCOvalCoVertex|Clip Oval Co-Vertex|Clip Oval Co-Vertex|coc|Clip|px|%|1";
    QTest::newRow("shadow color") << 74 << "m_shColor|Shadow Color|Shadow Color|shc|Shadow|color|color|1";
    QTest::newRow("hue") << 76 << "m_nHue|Hue Filter|Hue Filter|fhf|Filter|deg|deg|1";
    QTest::newRow("translate x") << 84 << "m_dTranslateX|Translate X|Translate X|tX||px|px|0";
    QTest::newRow("scale z") << 89 << "m_dScaleZ|Scale Z|Scale Z|sZ|Transform|%|%|1";
    QTest::newRow("unit of x") << 90 << "|||||||0";
    QTest::newRow("perspective z")
        << 96 << "m_dPerspectiveOrgZ|Perspective Origin Z|Perspective Origin Z|psoZ|Perspective|px|px|1";
    QTest::newRow("past the end") << 97 << "|||||||0";
    QTest::newRow("negative") << -1 << "|||||||0";
}

void TestPropertyInfo::propertyTable()
{
    QFETCH(int, property);
    QFETCH(QString, expected);
    const QStringList actual{VTElementPropertyInfo::getPropertyNameByType(property),
                             VTElementPropertyInfo::getNameByType(property),
                             VTElementPropertyInfo::getNameByType_NoTR(property),
                             VTElementPropertyInfo::getExportedPropertyNameByType(property),
                             VTElementPropertyInfo::getGroupNameByPropType(property, false),
                             VTElementPropertyInfo::getPropUnitSign(property, VT::Pixel),
                             VTElementPropertyInfo::getPropUnitSign(property, VT::Percent),
                             VTElementPropertyInfo::isAnimatedProp(property) ? "1" : "0"};
    QCOMPARE(actual.join('|'), expected);
}

void TestPropertyInfo::propertyTableTargetsExist()
{
    // Animation writes values by the names of the table; a name the target does not declare would
    // make every keyframe of that property silently do nothing.
    VTElementProperty block;
    VTCorner corner;
    const QList<QPair<const QObject*, QList<int>>> targets{
        {&block, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 83, 84, 85, 86, 87, 88, 89}},
        {block.getBorder(), {16, 17}},
        {block.getBackground(), {18, 19, 20, 21}},
        {&corner, {35, 36, 37, 38}},
        {block.getClip(), {63, 64, 65, 66, 67, 68, 69}},
        {block.getShadow(), {71, 72, 73, 74}},
        {block.getFilter(), {75, 76, 77, 78, 79, 80, 81, 82}},
    };
    for (const auto& target : targets) {
        for (int nProperty : target.second) {
            const QString name = VTElementPropertyInfo::getPropertyNameByType(nProperty);
            QVERIFY2(target.first->metaObject()->indexOfProperty(qPrintable(name)) >= 0,
                     qPrintable(QStringLiteral("%1 (%2) on %3")
                                    .arg(name)
                                    .arg(nProperty)
                                    .arg(target.first->metaObject()->className())));
        }
    }
    // Written through the Qt property, read back through the getter.
    QVERIFY(block.getShadow()->setProperty("m_shColor", QColor(9, 8, 7, 6)));
    QCOMPARE(block.getShadow()->getColor(), QColor(9, 8, 7, 6));
    QVERIFY(block.setProperty("m_ptTranslateXY", QPointF(3, 4)));
    QCOMPARE(block.getTranslateY(), 4.0);

    // Units of the block follow its fields; a missing block or a value it does not hold shows none.
    block.setUnitW(VT::Percent);
    block.getClip()->setUnitCircleRadius(VT::Pixel);
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropWidth, &block), QStringLiteral("%"));
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropHeight, &block), QStringLiteral("px"));
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropClipCircleRadius, &block), QStringLiteral("px"));
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropClipOvalVertex, &block), QStringLiteral("%"));
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropTopLeftRadius, &block), QString());
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropWidth, nullptr), QString());
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropSkewX, nullptr), QStringLiteral("deg"));
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropWidth, VT::Ratio), QString());
}

void TestPropertyInfo::animationRules()
{
    const QList<int>& lstAnimated = VTElementPropertyInfo::getAnimatedProps();
    QCOMPARE(lstAnimated.size(), 66);
    QCOMPARE(lstAnimated.first(), 14);
    for (int i = -2; i < 100; ++i)
        QCOMPARE(VTElementPropertyInfo::isAnimatedProp(i), lstAnimated.contains(i));

    QVERIFY(VTElementPropertyInfo::canAnimate(VT::TextElement, VT::PropFontSize));
    QVERIFY(VTElementPropertyInfo::canAnimate(VT::FreeFormElement, VT::PropTextColor));
    QVERIFY(!VTElementPropertyInfo::canAnimate(VT::ImageElement, VT::PropTextIndent));
    QVERIFY(!VTElementPropertyInfo::canAnimate(VT::GroupElement, VT::PropLetterSpacing));
    QVERIFY(!VTElementPropertyInfo::canAnimate(VT::VideoElement, VT::PropBackgroundColor));
    QVERIFY(!VTElementPropertyInfo::canAnimate(VT::AudioElement, VT::PropBorderWidth));
    QVERIFY(VTElementPropertyInfo::canAnimate(VT::AudioElement, VT::PropOpacity));
    QVERIFY(VTElementPropertyInfo::canAnimate(VT::ImageElement, VT::PropGradientOriginY));
    QVERIFY(VTElementPropertyInfo::canAnimate(VT::VideoElement, VT::PropGradientRadius));
    QVERIFY(!VTElementPropertyInfo::canAnimate(VT::DivElement, VT::PropTranslateY));
    QVERIFY(!VTElementPropertyInfo::canAnimate(VT::DivElement, 97));

    QVERIFY(!VTElementPropertyInfo::canHaveTransition(VT::PropDisplay));
    QVERIFY(VTElementPropertyInfo::canHaveTransition(VT::PropOpacity));
    QVERIFY(!VTElementPropertyInfo::canHaveTransition(-4));
}

void TestPropertyInfo::layoutKey()
{
    QVERIFY(VTLayoutKey().isBase());
    QVERIFY(VTLayoutKey::current().isCurrent());
    QVERIFY(!VTLayoutKey(0, 3).isBase());
    QVERIFY(!VTLayoutKey(-1, 0).isCurrent());
    // Map keys walk by horizontal id first.
    QMap<VTLayoutKey, int> map{{VTLayoutKey(2, 0), 3}, {VTLayoutKey(1, 5), 2}, {VTLayoutKey(1, 1), 1}};
    QCOMPARE(map.keys(), (QList<VTLayoutKey>{VTLayoutKey(1, 1), VTLayoutKey(1, 5), VTLayoutKey(2, 0)}));
    const VTLayoutKey fromPair = qMakePair(4, 6);
    QCOMPARE(fromPair.getVerticalId(), 6);
    QVERIFY(VTLayoutKey(4, 6) == fromPair);
    QVERIFY(VTLayoutKey(4, 6) != VTLayoutKey(6, 4));
    QHash<VTLayoutKey, int> hash{{VTLayoutKey(4, 6), 1}};
    QCOMPARE(hash.value(VTLayoutKey(4, 6)), 1);
    QVERIFY(!hash.contains(VTLayoutKey(6, 4)));
}

QTEST_GUILESS_MAIN(TestPropertyInfo)
#include "tst_propertyinfo.moc"
