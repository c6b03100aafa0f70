#include "VTBackground.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTCorner.h"
#include "VTDocument.h"
#include "VTElementProperty.h"
#include "VTFilterEffect.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTShadow.h"
#include "VTTypes.h"

#include <QGuiApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPixmap>
#include <QPixmapCache>
#include <QTemporaryDir>
#include <QtTest>

#include <limits>
#include <memory>

namespace {

template <typename T> QJsonObject saved(const T& block)
{
    QJsonObject json;
    block.serialize(json);
    return json;
}

template <typename T> QJsonArray exported(const T& block)
{
    QJsonArray array;
    block.serializeToExport(array);
    return array;
}

QJsonArray jsonArray(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).array();
}

QJsonObject jsonObject(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).object();
}

QJsonArray allPropertyNumbers()
{
    QJsonArray array;
    for (int i = 0; i < VT::ElementPropertyCount; ++i)
        array.append(i);
    return array;
}

void setProperties(QObject* pTarget, const QList<QPair<const char*, QVariant>>& values)
{
    for (const auto& value : values)
        QVERIFY2(pTarget->setProperty(value.first, value.second), value.first);
}

// Whether a block reads back from its saved form as an equal block, and writes that form again.
template <typename T> bool roundTrips(const T& block)
{
    T copy;
    return copy.parse(saved(block)) && copy == block && saved(copy) == saved(block);
}

// A block with every value off its defaults, so that a lost field shows in a comparison.
std::unique_ptr<VTElementProperty> makeBusyBlock()
{
    auto pBlock = std::make_unique<VTElementProperty>();
    // clang-format off
    setProperties(pBlock.get(), {
        {"m_dPositionX", 0.25}, {"m_dPositionY", -12}, {"m_dSizeW", 1.5}, {"m_dSizeH", 80},
        {"m_dOriginRatioX", 0.1}, {"m_dOriginRatioY", 0.9}, {"m_dOriginZ", 4}, {"m_ptTranslateXY", QPointF(7, 8)},
        {"m_dTranslateZ", 9}, {"m_dScaleX", 2}, {"m_dScaleY", 0.5}, {"m_dScaleZ", 3}, {"m_dSkewX", 10},
        {"m_dSkewY", -10}, {"m_dRotateX", 30}, {"m_dRotateY", 60}, {"m_dRotateZ", 90}, {"m_dOpacity", 0.4},
        {"m_nDisplay", 0}});
    // clang-format on
    pBlock->setUnitX(VT::Percent);
    pBlock->setUnitW(VT::Ratio);
    pBlock->setCoordinateType(VT::RightBottom);
    pBlock->setOverflowType(VT::Scroll);
    pBlock->setTabIndex(3);
    pBlock->setCursorValue(QStringLiteral("pointer"));
    pBlock->setTitle(QStringLiteral("Tip"));
    pBlock->setClassName(QStringLiteral("a b"));
    pBlock->getBorder()->setStyle(VTBorder::Dashed);
    setProperties(pBlock->getBorder(), {{"m_nWidth", 4}, {"m_clBorderColor", QColor(1, 2, 3, 4)}});
    pBlock->getBackground()->setFillStyle(VTBackground::Gradient);
    pBlock->getBackground()->setRadialOriginY(0.75);
    pBlock->getShadow()->setStyle(VTShadow::DropShadow);
    pBlock->getShadow()->setAngle(135);
    pBlock->getFilter()->setSepia(0.3);
    pBlock->getClip()->setStyle(VTClip::Oval);
    pBlock->getClip()->setOvalVertex(20);
    pBlock->getClip()->setUnitOvalVertex(VT::Pixel);
    pBlock->setInherit(VT::PropWidth, false);
    pBlock->setInherit(VT::PropShadowColor, false);
    return pBlock;
}

} // namespace

class TestPropertyBlocks : public QObject
{
    Q_OBJECT
private slots:
    void subObjectRoundTrips();
    void newAndReadDefaults();
    void blockRoundTripAndClone();
    void olderTransformKeys();
    void inheritance();
    void backgroundUsageCounting();
    void gradientStops();
    void subObjectExportForms();
    void blockExportKeys();
    void layoutOverrideExport();
    void imageFillExport();
    void hostileInput_data();
    void hostileInput();
    void nonFiniteNumbers();
};

void TestPropertyBlocks::subObjectRoundTrips()
{
    VTBorder border;
    border.setStyle(VTBorder::Dotted);
    setProperties(&border, {{"m_nWidth", 7}, {"m_clBorderColor", QColor(200, 100, 50, 25)}});
    QVERIFY(roundTrips(border));

    VTCorner corner;
    setProperties(&corner, {{"m_nTopRight", 0.25}, {"m_nBottomLeft", 12}, {"m_nBottomRight", 3}});
    corner.setUnitTopRight(VT::Percent);
    QVERIFY(roundTrips(corner));

    VTClip clip;
    clip.setStyle(VTClip::Rectangle);
    setProperties(
        &clip,
        {{"m_dCRectLeft", -3}, {"m_dCRectBottom", 0.2}, {"m_dCCircleRadius", 40}, {"m_dCOvalCoVertex", 0.1}});
    clip.setUnitRectBottom(VT::Percent);
    clip.setUnitCircleRadius(VT::Pixel);
    QVERIFY(roundTrips(clip));

    VTShadow shadow;
    shadow.applyPreset(VTShadow::getPresets().at(7));
    QCOMPARE(shadow.getAngle(), 180);
    setProperties(&shadow, {{"m_nShBlurRadius", 9}, {"m_nShDistance", -2}, {"m_shColor", QColor(Qt::white)}});
    QVERIFY(roundTrips(shadow));

    VTFilterEffect filter;
    QVERIFY(filter.isDefault());
    filter.applyPreset(VTFilterEffect::getPresets().at(2));
    QCOMPARE(filter.getContrast(), 0.9);
    setProperties(&filter, {{"m_nHue", -20}, {"m_nBlur", 3}, {"m_dInvert", 0.5}, {"m_dGrayscale", 0.2}});
    QVERIFY(roundTrips(filter));
    filter.applyPreset(VTFilterEffect::getPresets().first());
    QVERIFY(filter.isDefault());

    // The file's form of what we write is stable: reading it and writing again gives the same.
    const QJsonObject background = saved(VTBackground(VTBackground::Solid));
    VTBackground backgroundCopy;
    QVERIFY(backgroundCopy.parse(background, nullptr));
    QCOMPARE(saved(backgroundCopy), background);
    // Opaque colours are saved as signed 32-bit numbers, like keyframe colours.
    QCOMPARE(saved(border).value("color").toDouble(), static_cast<double>(0x19c86432));
    QCOMPARE(saved(VTBorder()).value("color").toDouble(), -16777216.0);
}

void TestPropertyBlocks::newAndReadDefaults()
{
    VTBorder border;
    QCOMPARE(border.getWidth(), 1);
    QVERIFY(border.parse({}));
    QCOMPARE(border.getWidth(), 0);
    QCOMPARE(border.getColor(), QColor(Qt::black));

    VTBackground background(VTBackground::NoFill);
    QCOMPARE(background.getFillStyle(), 0);
    QCOMPARE(background.getRadialOriginX(), 0.5);
    QCOMPARE(background.getRadialShape(), int(VTBackground::Ellipse));
    QCOMPARE(background.getRadialSizeParam(), int(VTBackground::FarthestCorner));
    QCOMPARE(background.getGradientStopColors(), (QList<QColor>{Qt::black, Qt::white}));
    QVERIFY(background.parse({}, nullptr));
    QCOMPARE(background.getFillStyle(), int(VTBackground::Solid));
    QCOMPARE(background.getRadialOriginX(), 0.0);
    QCOMPARE(background.getRadialOriginY(), 0.0);
    QCOMPARE(background.getRadialShape(), int(VTBackground::Circle));
    QCOMPARE(background.getRadialSizeParam(), int(VTBackground::ClosestSide));
    QCOMPARE(background.getSolidColor(), QColor(74, 134, 232));
    QCOMPARE(background.getGradientStopFactors(), (QList<double>{0, 1}));
    QCOMPARE(VTBackground(VTBackground::Image).getFillStyle(), 3);
    QCOMPARE(VTBackground(9).getFillStyle(), 0);

    // Shadow, clip and filter read what a new one has.
    VTShadow shadow;
    shadow.parse({});
    QVERIFY(shadow == VTShadow());
    QCOMPARE(shadow.getColor().rgba(), 0x80000000u);
    VTClip clip;
    clip.setStyle(VTClip::Circle);
    clip.parse({});
    QVERIFY(clip == VTClip());
    QCOMPARE(clip.getUnitOvalCoVertex(), int(VT::Percent));
    QCOMPARE(clip.getOvalVertex(), 0.25);

    VTElementProperty block;
    QCOMPARE(block.getSizeW(), 256.0);
    QCOMPARE(block.getPositionY(), 300.0);
    QCOMPARE(block.getBackground()->getFillStyle(), 0);
    QCOMPARE(block.getTabIndex(), -2);
    QCOMPARE(block.getCursorValue(), QStringLiteral("auto"));
    block.getBorder()->setWidth(9);
    QVERIFY(block.parse(jsonObject(R"({"path": {"l": 5}})"), nullptr));
    QCOMPARE(block.getPositionX(), 5.0);
    QCOMPARE(block.getPositionY(), 0.0);
    QCOMPARE(block.getSizeW(), 100.0);
    QCOMPARE(block.getSizeH(), 50.0);
    // An absent sub-object reads as an empty one: its read defaults, not what it held.
    QCOMPARE(block.getBorder()->getWidth(), 0);
    QCOMPARE(block.getBackground()->getFillStyle(), 1);
    QCOMPARE(block.getDisplay(), 1);
    QVERIFY(!block.isPreserved3D());
}

void TestPropertyBlocks::blockRoundTripAndClone()
{
    const std::unique_ptr<VTElementProperty> pBlock = makeBusyBlock();
    QVERIFY(pBlock->isPreserved3D());
    const QJsonObject json = saved(*pBlock);
    QVERIFY(json.value("transform").toObject().contains("rotate"));
    QCOMPARE(json.value("inherit").toArray(), jsonArray("[4, 74]"));

    VTElementProperty reread;
    QStringList lstProblems;
    QVERIFY(reread.parse(json, nullptr, &lstProblems));
    QVERIFY2(lstProblems.isEmpty(), qPrintable(lstProblems.join('\n')));
    QCOMPARE(saved(reread), json);
    QCOMPARE(reread.getUnitW(), int(VT::Ratio));
    QCOMPARE(reread.getBackground()->getRadialOriginY(), 0.75);
    QCOMPARE(reread.getClip()->getUnitOvalVertex(), int(VT::Pixel));

    // A clone owns copies of the sub-objects; changing it leaves the original as it was.
    std::unique_ptr<VTElementProperty> pClone(pBlock->clone());
    QCOMPARE(saved(*pClone), json);
    QVERIFY(pClone->getBorder() != pBlock->getBorder());
    QCOMPARE(pClone->getBorder()->parent(), pClone.get());
    QCOMPARE(pClone->getClip()->parent(), pClone.get());
    QVERIFY(!pClone->parent());
    pClone->getBorder()->setWidth(99);
    pClone->getFilter()->setBlur(12);
    pClone->setInherit(VT::PropTitle, false);
    QCOMPARE(pBlock->getBorder()->getWidth(), 4);
    QCOMPARE(pBlock->getFilter()->getBlur(), 0);
    QVERIFY(pBlock->isInherit(VT::PropTitle));

    // Each third-dimension value alone makes the block 3D.
    const QList<const char*> lstThreeD{"m_dOriginZ", "m_dTranslateZ", "m_dRotateX", "m_dRotateY"};
    for (const char* name : lstThreeD) {
        VTElementProperty flat;
        flat.setProperty(name, 1.0);
        QVERIFY2(flat.isPreserved3D(), name);
    }
    VTElementProperty flat;
    flat.setScaleZ(0.5);
    QVERIFY(flat.isPreserved3D());
}

void TestPropertyBlocks::olderTransformKeys()
{
    VTElementProperty block;
    QVERIFY(
        block.parse(jsonObject(R"({"transform2d": {"rotate": 10, "rotateZ": 20, "scaleX": 2}})"), nullptr));
    QCOMPARE(block.getRotateZ(), 20.0);
    QCOMPARE(block.getScaleX(), 2.0);
    QVERIFY(
        block.parse(jsonObject(R"({"transform": {"rotate": 15}, "transform2d": {"rotate": 99}})"), nullptr));
    QCOMPARE(block.getRotateZ(), 15.0);
    // Written back under the current names only.
    const QJsonObject json = saved(block);
    QVERIFY(!json.contains("transform2d"));
    QCOMPARE(json.value("transform").toObject().value("rotate").toDouble(), 15.0);
    QVERIFY(!json.value("transform").toObject().contains("rotateZ"));
}

void TestPropertyBlocks::inheritance()
{
    VTElementProperty block;
    QVERIFY(block.isInheritAll());
    QVERIFY(block.isInherit(VT::PropOpacity));
    block.setInherit(VT::PropOpacity, false);
    QVERIFY(!block.isInherit(VT::PropOpacity));
    QVERIFY(!block.isInheritAll());
    block.setInherit(VT::PropOpacity, true);
    QVERIFY(block.isInheritAll());
    // Numbers outside the table would be written and then refused on reading.
    block.setInherit(VT::ElementPropertyCount, false);
    block.setInherit(-1, false);
    QVERIFY(block.isInheritAll());

    block.setInherits(false);
    QCOMPARE(block.getInherits().size(), VT::ElementPropertyCount);
    QJsonArray array;
    VTElementProperty::serializeInherit(block.getInherits(), array);
    QCOMPARE(array, allPropertyNumbers());
    block.setInherits(true);
    QVERIFY(block.isInheritAll());

    block.addInherits({{5, false}, {2, false}, {7, true}});
    block.addInherits({{5, true}});
    QCOMPARE(block.getInherits(), (QMap<int, bool>{{2, false}}));

    QMap<int, bool> map;
    VTElementProperty::updateInherit(map, 40, false);
    VTElementProperty::updateInherit(map, 3, false);
    VTElementProperty::updateInherit(map, 40, true);
    QCOMPARE(map, (QMap<int, bool>{{3, false}}));
    // Written in ascending order whatever the order of insertion, and only the false entries of
    // property numbers: a map filled by other code may hold anything.
    map.insert(1, false);
    map.insert(9, true);
    map.insert(VT::ElementPropertyCount, false);
    array = QJsonArray();
    VTElementProperty::serializeInherit(map, array);
    QCOMPARE(array, jsonArray("[1, 3]"));

    QStringList lstProblems;
    QVERIFY(!block.parse(jsonObject(R"({"inherit": [96, 97, 3, -1, "4", 2.5, 3, 1000]})"), nullptr,
                         &lstProblems));
    QCOMPARE(block.getInherits(), (QMap<int, bool>{{3, false}, {96, false}}));
    QCOMPARE(lstProblems.size(), 1);
    QVERIFY2(lstProblems.first().contains("97"), qPrintable(lstProblems.first()));
}

void TestPropertyBlocks::backgroundUsageCounting()
{
    VTResourceManager manager(nullptr);
    auto* pImage = new VTResource(VTResource::Image);
    auto* pOther = new VTResource(VTResource::Image);
    auto* pScript = new VTResource(VTResource::Script);
    manager.addResource(pImage);
    manager.addResource(pOther);
    manager.addResource(pScript);

    VTBackground background(VTBackground::NoFill);
    QVERIFY(background.isAttached());
    background.setImageResource(pImage);
    QCOMPARE(pImage->getUsageCount(), 0);
    background.setFillStyle(VTBackground::Image);
    QCOMPARE(pImage->getUsageCount(), 1);
    background.setFillStyle(VTBackground::Image);
    background.setFillStyle(17);
    QCOMPARE(pImage->getUsageCount(), 1);
    background.setImageResource(pOther);
    QCOMPARE(pImage->getUsageCount(), 0);
    QCOMPARE(pOther->getUsageCount(), 1);
    background.detachResources();
    background.detachResources();
    QCOMPARE(pOther->getUsageCount(), 0);
    background.setFillStyle(VTBackground::Solid);
    background.setFillStyle(VTBackground::Image);
    QCOMPARE(pOther->getUsageCount(), 0);
    background.attachResources();
    background.attachResources();
    QCOMPARE(pOther->getUsageCount(), 1);
    background.setFillStyle(VTBackground::Gradient);
    QCOMPARE(pOther->getUsageCount(), 0);

    // A copy waits for whoever adds it to the project.
    background.setFillStyle(VTBackground::Image);
    {
        VTBackground copy(background);
        QVERIFY(!copy.isAttached());
        QCOMPARE(copy.getImageResource(), pOther);
        QCOMPARE(pOther->getUsageCount(), 1);
        copy.attachResources();
        QCOMPARE(pOther->getUsageCount(), 2);
        copy.detachResources();
    }
    QCOMPARE(pOther->getUsageCount(), 1);

    // Reading moves the use to the resource of the file.
    QJsonObject json = saved(background);
    json.insert("imageResourceId", pImage->getId());
    QVERIFY(background.parse(json, &manager));
    QCOMPARE(pOther->getUsageCount(), 0);
    QCOMPARE(pImage->getUsageCount(), 1);
    QCOMPARE(background.getImageResource(), pImage);

    // Only an image resource is taken.
    QStringList lstProblems;
    json.insert("imageResourceId", pScript->getId());
    QVERIFY(!background.parse(json, &manager, &lstProblems));
    QVERIFY(!background.getImageResource());
    QCOMPARE(pImage->getUsageCount(), 0);
    QCOMPARE(pScript->getUsageCount(), 0);
    json.insert("imageResourceId", 4711);
    QVERIFY(!background.parse(json, &manager, &lstProblems));
    QVERIFY(!background.getImageResource());
    QCOMPARE(lstProblems.size(), 2);

    // A removed block whose resource was removed too: saved as no image, still held for undo.
    VTBackground gradient(VTBackground::Gradient);
    gradient.setImageResource(pImage);
    pImage->setDeleted(true);
    QCOMPARE(saved(gradient).value("imageResourceId").toInt(), pImage->getId());
    gradient.detachResources();
    QCOMPARE(saved(gradient).value("imageResourceId").toInt(), -1);
    QCOMPARE(gradient.getImageResource(), pImage);
    pImage->setDeleted(false);
    QCOMPARE(saved(gradient).value("imageResourceId").toInt(), pImage->getId());
}

void TestPropertyBlocks::gradientStops()
{
    VTBackground background(VTBackground::Gradient);
    QJsonObject json = saved(background);
    json.insert("gradientStopFactors", jsonArray("[0.8, 0.2, 0.5, 0.2]"));
    json.insert("gradientStopColors", jsonArray("[-16777216, -1, 2147483647]"));
    QStringList lstProblems;
    background.parse(json, nullptr, &lstProblems);
    // Three colours: the fourth position has nothing to pair with.
    QCOMPARE(background.getGradientStopFactors(), (QList<double>{0.8, 0.2, 0.5}));
    QCOMPARE(background.getLastGradientStopColor(), QColor(255, 255, 255, 127));
    QCOMPARE(lstProblems.size(), 1);
    const QGradientStops sorted = background.getSortedGradientStops();
    QCOMPARE(sorted.size(), 3);
    QCOMPARE(sorted.at(0), QGradientStop(0.2, QColor(Qt::white)));
    QCOMPARE(sorted.at(2), QGradientStop(0.8, QColor(Qt::black)));

    // No pair at all keeps what there was, in the file and in code.
    json.insert("gradientStopFactors", QJsonArray());
    json.insert("gradientStopColors", QJsonArray());
    QVERIFY(background.parse(json, nullptr));
    QCOMPARE(background.getGradientStopFactors().size(), 3);
    background.setGradientStops({0.1}, {});
    QCOMPARE(background.getGradientStopFactors().size(), 3);
    background.setGradientStops({0.1, 0.9}, {Qt::red, Qt::green, Qt::blue});
    QCOMPARE(background.getGradientStopColors(), (QList<QColor>{Qt::red, Qt::green}));

    // Equal positions keep the user's order.
    background.setGradientStops({0.5, 0.5, 0.0}, {Qt::red, Qt::green, Qt::blue});
    const QGradientStops ties = background.getSortedGradientStops();
    QCOMPARE(ties.at(1).second, QColor(Qt::red));
    QCOMPARE(ties.at(2).second, QColor(Qt::green));
    QCOMPARE(background.getLastGradientStopColor(), QColor(Qt::blue));

    // Damaged stops: the pair goes, positions out of range are pulled in, a list too long is cut.
    QJsonArray factors{0.0, "x", 1.5, -0.5};
    QJsonArray colors{0, 0, 5, "y"};
    for (int i = 0; i < VTBackground::kMaxGradientStops; ++i) {
        factors.append(0.5);
        colors.append(0);
    }
    json.insert("gradientStopFactors", factors);
    json.insert("gradientStopColors", colors);
    lstProblems.clear();
    QVERIFY(!background.parse(json, nullptr, &lstProblems));
    QCOMPARE(background.getGradientStopFactors().size(), VTBackground::kMaxGradientStops - 2);
    QCOMPARE(background.getGradientStopFactors().mid(0, 3), (QList<double>{0.0, 1.0, 0.5}));
    QCOMPARE(lstProblems.size(), 4);

    // Radial origin Y comes back as saved, not as X or a default.
    VTBackground radial(VTBackground::Gradient);
    radial.setRadialOriginX(0.1);
    radial.setRadialOriginY(0.85);
    VTBackground reread;
    reread.parse(saved(radial), nullptr);
    QCOMPARE(reread.getRadialOriginY(), 0.85);
    QCOMPARE(reread.getRadialOriginX(), 0.1);
    QVERIFY(reread == radial);
}

void TestPropertyBlocks::subObjectExportForms()
{
    VTBorder border;
    QCOMPARE(exported(border), QJsonArray());
    border.setStyle(VTBorder::Solid);
    border.setWidth(3);
    border.setColor(QColor(10, 20, 30, 40));
    QCOMPARE(exported(border), jsonArray("[1, 3, 10, 20, 30, 40]"));

    VTCorner corner;
    QCOMPARE(exported(corner), QJsonArray());
    corner.setTopLeft(0.5);
    corner.setUnitTopLeft(VT::Percent);
    corner.setBottomRight(6);
    QCOMPARE(exported(corner), jsonArray(R"(["50%", 0, 0, 6])"));

    VTShadow shadow;
    QCOMPARE(exported(shadow), QJsonArray());
    shadow.setStyle(VTShadow::DropShadow);
    QCOMPARE(exported(shadow), jsonArray("[5, 45, 5, 0, 0, 0, 128]"));

    VTFilterEffect filter;
    filter.setInvert(0.25);
    filter.setHue(90);
    filter.setGrayscale(1);
    filter.setBlur(2);
    QCOMPARE(exported(filter), jsonArray("[25, 90, 100, 100, 100, 0, 100, 2]"));

    VTClip clip;
    QCOMPARE(exported(clip), QJsonArray());
    clip.setStyle(VTClip::Rectangle);
    clip.setRectTop(0.123456789);
    clip.setUnitRectTop(VT::Percent);
    clip.setRectLeft(7.5);
    QCOMPARE(exported(clip), jsonArray(R"([1, "12.3457%", 0, 0, 7.5])"));
    clip.setStyle(VTClip::Circle);
    QCOMPARE(exported(clip), jsonArray(R"([2, "50%"])"));
    clip.setStyle(VTClip::Oval);
    clip.setUnitOvalCoVertex(VT::Pixel);
    QCOMPARE(exported(clip), jsonArray(R"([3, "25%", 0.5])"));

    VTBackground background(VTBackground::NoFill);
    QCOMPARE(exported(background), jsonArray("[0]"));
    background.setFillStyle(VTBackground::Solid);
    QCOMPARE(exported(background), jsonArray("[1, 74, 134, 232, 255]"));
    background.setFillStyle(VTBackground::Gradient);
    background.setLinearGradientAngle(30);
    background.setGradientStops({1.0, 0.25}, {QColor(1, 2, 3, 4), QColor(5, 6, 7, 8)});
    QCOMPARE(exported(background), jsonArray("[2, 0, 30, [[25, 5, 6, 7, 8], [100, 1, 2, 3, 4]]]"));
    background.setGradientType(VTBackground::Radial);
    background.setRadialOriginX(0.2);
    background.setRadialOriginY(0.6);
    background.setRadialShape(VTBackground::Circle);
    background.setRadialSizeParam(VTBackground::ClosestCorner);
    QCOMPARE(exported(background), jsonArray("[2, 1, 20, 60, [[25, 5, 6, 7, 8], [100, 1, 2, 3, 4]], 0, 2]"));
    background.setFillStyle(VTBackground::Image);
    QCOMPARE(exported(background), jsonArray("[3]"));
}

void TestPropertyBlocks::blockExportKeys()
{
    VTElementProperty block;
    block.setPositionX(0.5);
    block.setUnitX(VT::Percent);
    block.setSizeW(1.5);
    block.setUnitW(VT::Ratio);
    block.setCoordinateType(VT::RightTop);
    QJsonObject json;
    QStringList lstDrop = block.serializeToExport(json, false, false);
    QCOMPARE(json.value("r").toArray(), jsonArray(R"(["50%", 300, "150a", 128, 1])"));
    // Everything at its default: no transform, no border, shadow or clip, shown, no class.
    QVERIFY(!json.contains("t"));
    QCOMPARE(json.value("f").toArray(), jsonArray("[0]"));
    QCOMPARE(json.value("fe").toArray(), jsonArray("[0, 0, 100, 100, 100, 0, 0, 0]"));
    QCOMPARE(json.value("o").toDouble(), 100.0);
    QCOMPARE(json.value("of").toInt(-1), 0);
    QCOMPARE(QStringList(json.keys()), (QStringList{"f", "fe", "o", "of", "r"}));
    QCOMPARE(lstDrop, (QStringList{"t", "l", "sh", "wc", "d", "cl", "tb", "c", "tl"}));

    block.setTranslateX(5);
    json = QJsonObject();
    block.serializeGeomToExport(json, false);
    QCOMPARE(json.value("t").toArray(), jsonArray("[[5, 0, 0]]"));
    QCOMPARE(json.keys(), (QStringList{"r", "t"}));
    block.setTranslateX(0);
    block.setOriginRatioY(0.25);
    json = QJsonObject();
    block.serializeGeomToExport(json, false);
    QCOMPARE(json.value("t").toArray(), jsonArray("[[], [], [], [], [50, 25, 0]]"));
    block.setOriginRatioY(0.5);
    block.setScaleY(2);
    block.setRotateZ(45);
    json = QJsonObject();
    block.serializeGeomToExport(json, false);
    QCOMPARE(json.value("t").toArray(), jsonArray("[[], [100, 200, 100], [], [0, 0, 45]]"));

    block.setOpacity(0.35);
    block.setOverflowType(VT::Hidden);
    block.setDisplay(0);
    block.setClassName(QStringLiteral("big"));
    block.setTabIndex(-1);
    block.setCursorValue(QStringLiteral("pointer"));
    block.setTitle(QStringLiteral("Hello"));
    block.getBorder()->setStyle(VTBorder::Solid);
    json = QJsonObject();
    lstDrop = block.serializeToExport(json, false, false);
    QCOMPARE(json.value("o").toDouble(), 35.0);
    QCOMPARE(json.value("of").toInt(), 1);
    QCOMPARE(json.value("d").toInt(-1), 0);
    QCOMPARE(json.value("cl").toString(), QStringLiteral("big"));
    QCOMPARE(json.value("tb").toInt(), -1);
    QCOMPARE(json.value("c").toString(), QStringLiteral("pointer"));
    QCOMPARE(json.value("tl").toString(), QStringLiteral("Hello"));
    QCOMPARE(json.value("l").toArray(), jsonArray("[1, 1, 0, 0, 0, 255]"));
    QCOMPARE(lstDrop, (QStringList{"sh", "wc"}));

    // The copy at the top of an element stops after the class name.
    json = QJsonObject();
    block.serializeToExport(json, true, false);
    QVERIFY(json.contains("cl"));
    QVERIFY(!json.contains("tb") && !json.contains("c") && !json.contains("tl"));
}

void TestPropertyBlocks::layoutOverrideExport()
{
    VTElementProperty block;
    QJsonObject json;
    QCOMPARE(block.serializeToExport(json, false, true), QStringList());
    QVERIFY(json.isEmpty());

    // Only the border is overridden.
    block.setInherit(VT::PropBorderColor, false);
    block.getBorder()->setStyle(VTBorder::Dotted);
    QCOMPARE(block.serializeToExport(json, false, true), QStringList());
    QCOMPARE(json.keys(), QStringList{"l"});

    // A shadow overridden to none must remove the base layout's shadow.
    block.setInherits(true);
    block.setInherit(VT::PropShadowStyle, false);
    json = QJsonObject();
    QCOMPARE(block.serializeToExport(json, false, true), QStringList{"sh"});
    QVERIFY(json.isEmpty());

    // A transform overridden back to its defaults drops the base layout's transform.
    block.setInherits(true);
    block.setInherit(VT::PropOriginZ, false);
    block.setInherit(VT::PropHeight, false);
    json = QJsonObject();
    QCOMPARE(block.serializeToExport(json, false, true), QStringList{"t"});
    QCOMPARE(json.keys(), QStringList{"r"});
    json = QJsonObject();
    block.setInherit(VT::PropHeight, true);
    block.setTranslateZ(2);
    block.serializeGeomToExport(json, true);
    QCOMPARE(json.keys(), QStringList{"t"});

    // Everything overridden: the same as the base form.
    block.setInherits(false);
    QJsonObject overridden;
    QJsonObject base;
    block.serializeToExport(overridden, false, true);
    block.serializeToExport(base, false, false);
    QCOMPARE(overridden, base);
}

void TestPropertyBlocks::imageFillExport()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    VTDocument document;
    document.setFileName(dir.filePath(QStringLiteral("project.vetra")));
    VTResourceManager* pManager = document.getResourceManager();
    QVERIFY(pManager);
    QVERIFY(!pManager->getTempPath().isEmpty());

    auto* pPicture = new VTResource(VTResource::Image);
    pPicture->setFileName(QStringLiteral("picture.png"));
    QImage image(7, 3, QImage::Format_ARGB32);
    image.fill(Qt::blue);
    QVERIFY(image.save(pManager->getTempPath() + QStringLiteral("picture.png")));
    pManager->addResource(pPicture);

    VTBackground background(VTBackground::Image);
    background.setImageResource(pPicture);
    background.setImageFillType(VTBackground::Tile);
    QCOMPARE(exported(background), (QJsonArray{3, pPicture->getId(), 3, 7, 3}));

    // A file that does not tell its size: the cached pixmap of the resource does.
    auto* pBroken = new VTResource(VTResource::Image);
    pBroken->setFileName(QStringLiteral("broken.png"));
    pManager->addResource(pBroken);
    background.setImageResource(pBroken);
    QCOMPARE(exported(background), (QJsonArray{3, pBroken->getId(), 3, 0, 0}));
    QPixmap pixmap(11, 13);
    pixmap.fill(Qt::red);
    QVERIFY(QPixmapCache::insert(pBroken->getUuid().toString(), pixmap));
    QCOMPARE(exported(background), (QJsonArray{3, pBroken->getId(), 3, 11, 13}));
    background.setImageResource(nullptr);
}

void addHostileRow(const char* tag, const char* json, const char* path, const char* expected,
                   bool bNoted = true)
{
    QTest::newRow(tag) << QByteArray(json) << QString::fromLatin1(path) << QByteArray(expected) << bNoted;
}

void TestPropertyBlocks::hostileInput_data()
{
    // A damaged value falls back to the default of a file, seen in what the block writes again.
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<bool>("noted");

    addHostileRow("width negative", R"({"path": {"w": -5}})", "path/w", "100");
    addHostileRow("height text", R"({"path": {"h": "tall"}})", "path/h", "50");
    addHostileRow("unit 7", R"({"path": {"unitX": 7}})", "path/unitX", "0");
    addHostileRow("ratio on a position", R"({"path": {"unitY": 2}})", "path/unitY", "0");
    addHostileRow("both sizes ratio", R"({"path": {"unitW": 2, "unitH": 2}})", "path/unitH", "0");
    addHostileRow("coordinate type 4", R"({"path": {"coordinateType": 4}})", "path/coordinateType", "0");
    addHostileRow("opacity above one", R"({"opacity": 3})", "opacity", "1");
    addHostileRow("display two", R"({"display": 2})", "display", "1");
    addHostileRow("tab index -9", R"({"tabIndex": -9})", "tabIndex", "-2");
    addHostileRow("cursor number", R"({"valueCursor": 5})", "valueCursor", R"("auto")");
    addHostileRow("transform not object", R"({"transform": 5, "transform2d": {"scaleX": 3}})",
                  "transform/scaleX", "3");
    addHostileRow("rotate null", R"({"transform": {"rotate": null}})", "transform/rotate", "0");
    addHostileRow("border style 9", R"({"border": {"style": 9}})", "border/style", "0");
    addHostileRow("border width negative", R"({"border": {"width": -2}})", "border/width", "0");
    addHostileRow("border color text", R"({"border": {"color": "red"}})", "border/color", "-16777216");
    addHostileRow("color beyond 32 bits", R"({"border": {"color": 8589934592}})", "border/color",
                  "-16777216");
    addHostileRow("color unsigned form", R"({"border": {"color": 4278190335}})", "border/color", "-16776961",
                  false);
    addHostileRow("fill style -3", R"({"background": {"fillStyle": -3}})", "background/fillStyle", "1");
    addHostileRow("image fill 5", R"({"background": {"imageFillType": 5}})", "background/imageFillType", "0");
    addHostileRow("origin as list", R"({"background": {"radialOriginY": [1]}})", "background/radialOriginY",
                  "0");
    addHostileRow("shadow blur negative", R"({"shadow": {"br": -1}})", "shadow/br", "5");
    addHostileRow("shadow angle fraction", R"({"shadow": {"ag": 12.5}})", "shadow/ag", "45");
    addHostileRow("shadow style 2", R"({"shadow": {"st": 2}})", "shadow/st", "0");
    addHostileRow("sub-object array", R"({"shadow": [1, 2]})", "shadow/dt", "5");
    addHostileRow("filter contrast negative", R"({"filter": {"c": -0.5}})", "filter/c", "1");
    addHostileRow("clip unit 7", R"({"clip": {"ucc": 7}})", "clip/ucc", "1");
    addHostileRow("clip radius negative", R"({"clip": {"cc": -0.5}})", "clip/cc", "0.5");
    addHostileRow("inherit object", R"({"inherit": {"3": true}})", "inherit", "[]");
}

void TestPropertyBlocks::hostileInput()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, path);
    QFETCH(QByteArray, expected);
    QFETCH(bool, noted);

    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);
    VTElementProperty block;
    block.setInherit(3, false);
    QStringList lstProblems;
    QCOMPARE(block.parse(object, nullptr, &lstProblems), !noted);
    QCOMPARE(lstProblems.size(), noted ? 1 : 0);

    QJsonValue actual = saved(block);
    for (const QString& key : path.split('/'))
        actual = actual.toObject().value(key);
    QCOMPARE(QJsonDocument(QJsonArray{actual}).toJson(QJsonDocument::Compact), "[" + expected + "]");
    // The rest of the block still reads normally.
    QCOMPARE(block.getBackground()->getSolidColor(), QColor(74, 134, 232));
}

void TestPropertyBlocks::nonFiniteNumbers()
{
    // NaN and infinity cannot come from a JSON text but can from a generated object.
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double dInfinity = std::numeric_limits<double>::infinity();
    VTElementProperty block;
    QStringList lstProblems;
    const QJsonObject json{{"path", QJsonObject{{"w", dNaN}, {"t", -dInfinity}}},
                           {"filter", QJsonObject{{"s", dInfinity}, {"h", dNaN}}},
                           {"background", QJsonObject{{"solidColor", dNaN},
                                                      {"gradientStopFactors", QJsonArray{dNaN, 0.5}},
                                                      {"gradientStopColors", QJsonArray{0, 0}}}}};
    QVERIFY(!block.parse(json, nullptr, &lstProblems));
    QCOMPARE(block.getSizeW(), 100.0);
    QCOMPARE(block.getPositionY(), 0.0);
    QCOMPARE(block.getFilter()->getSaturate(), 1.0);
    QCOMPARE(block.getFilter()->getHue(), 0);
    QCOMPARE(block.getBackground()->getSolidColor(), QColor(74, 134, 232));
    QCOMPARE(block.getBackground()->getGradientStopFactors(), QList<double>{0.5});
    QCOMPARE(lstProblems.size(), 6);
}

int main(int argc, char** argv)
{
    // Pixmaps need a GUI application; off screen it runs anywhere.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    TestPropertyBlocks test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_propertyblocks.moc"
