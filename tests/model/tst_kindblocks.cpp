#include "VTAnchorPoint.h"
#include "VTAutoShapeProperty.h"
#include "VTAutoShapeTypes.h"
#include "VTBezierPath.h"
#include "VTBorder.h"
#include "VTCorner.h"
#include "VTDivProperty.h"
#include "VTElementPropertyInfo.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFreeFormShapeProperty.h"
#include "VTImageProperty.h"
#include "VTSceneProperty.h"
#include "VTTextProperty.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QtTest>

#include <functional>
#include <limits>
#include <memory>

namespace {

QJsonObject saved(const VTElementProperty& block)
{
    QJsonObject json;
    block.serialize(json);
    return json;
}

QJsonObject exported(const VTElementProperty& block, bool bOverride = false, QStringList* pDrop = nullptr)
{
    QJsonObject json;
    const QStringList lstDrop = block.serializeToExport(json, false, bOverride);
    if (pDrop)
        *pDrop = lstDrop;
    return json;
}

QJsonArray jsonArray(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).array();
}

QJsonObject jsonObject(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).object();
}

void setProperties(QObject* pTarget, const QList<QPair<const char*, QVariant>>& values)
{
    for (const auto& value : values)
        QVERIFY2(pTarget->setProperty(value.first, value.second), value.first);
}

// Reads the saved form of a block into a fresh block of the same class and checks that it writes
// the same form again, with no problem on the way.
template <typename T> void verifyRoundTrip(const T& block)
{
    T reread;
    QStringList lstProblems;
    QVERIFY(reread.parse(saved(block), nullptr, &lstProblems));
    QVERIFY2(lstProblems.isEmpty(), qPrintable(lstProblems.join('\n')));
    QCOMPARE(saved(reread), saved(block));
}

void fillText(VTTextProperty& block)
{
    block.setInnerHtml(QStringLiteral("<p>Hi</p>"));
    block.setFontFamily(QStringLiteral("Georgia"));
    block.setBold(true);
    block.setUnderline(true);
    block.setHAlignment(Qt::AlignJustify);
    block.setVAlignment(Qt::AlignBottom);
    // clang-format off
    setProperties(&block, {
        {"m_clForeground", QColor(1, 2, 3, 4)}, {"m_clHighlight", QColor(5, 6, 7, 8)}, {"m_nFontSize", 31},
        {"m_nLetterSpace", -2}, {"m_nWordSpace", 6}, {"m_dLineHeight", 1.75}, {"m_nTextIndent", 12},
        {"m_dSizeW", 77}});
    // clang-format on
}

VTAnchorPoint* anchor(double dX, double dY)
{
    return new VTAnchorPoint(QPointF(dX, dY), QPointF(dX - 1, dY), QPointF(dX + 1, dY));
}

std::unique_ptr<VTBezierPath> makePath(int nAnchors)
{
    auto pPath = std::make_unique<VTBezierPath>();
    for (int i = 0; i < nAnchors; ++i)
        pPath->addAnchorPoint(i, anchor(10.0 * i, 5.0 * i));
    return pPath;
}

VTElementProperty* makeBlock(const QString& kind)
{
    const QMap<QString, std::function<VTElementProperty*()>> factories{
        {"text", [] { return new VTTextProperty; }},
        {"div", [] { return new VTDivProperty; }},
        {"image", [] { return new VTImageProperty; }},
        {"shape", [] { return new VTAutoShapeProperty; }},
        {"freeform", [] { return new VTFreeFormShapeProperty; }},
        {"scene", [] { return new VTSceneProperty; }}};
    return factories.value(kind)();
}

const QList<int> kTextProperties{61, 51, 25, 23, 24, 52, 53, 54, 55, 56, 57, 28, 29, 27, 26};

} // namespace

class TestKindBlocks : public QObject
{
    Q_OBJECT
private slots:
    void textDefaultsAndRoundTrip();
    void textExport();
    void exportedFonts();
    void divCorner();
    void imagePlacement();
    void shapeTypeTable();
    void autoShapeBlock();
    void freeFormBlock();
    void freeFormExport();
    void sceneBlock();
    void hostileInput_data();
    void hostileInput();
    void oversizedAndNonFinite();
};

void TestKindBlocks::textDefaultsAndRoundTrip()
{
    VTTextProperty block;
    QCOMPARE(block.getFontFamily(), QStringLiteral("Arial"));
    QCOMPARE(block.getFontSize(), 18);
    QCOMPARE(block.getHAligment(), int(Qt::AlignHCenter));
    QCOMPARE(block.getVAlignment(), int(Qt::AlignVCenter));
    QCOMPARE(block.getLineHeight(), 1.2);
    QCOMPARE(block.getColor(), QColor(67, 67, 67, 255));
    QCOMPARE(block.getHighlightColor().alpha(), 0);
    // The base block's new values stay those of a new block.
    QCOMPARE(block.getSizeW(), 256.0);

    fillText(block);
    verifyRoundTrip(block);
    QCOMPARE(saved(block).value("text").toObject().value("lineHeight").toDouble(), 1.75);

    // A missing "text" reads the defaults of a file, which are those of a new block here; the
    // base keys of the same object are read too.
    QVERIFY(block.parse(jsonObject(R"({"path": {"w": 40}, "text": {"fontSize": 9}})"), nullptr));
    QCOMPARE(block.getFontSize(), 9);
    QCOMPARE(block.getLineHeight(), 1.2);
    QCOMPARE(block.getColor(), QColor(67, 67, 67, 255));
    QCOMPARE(block.getSizeW(), 40.0);
    QCOMPARE(block.getSizeH(), 50.0);

    // A clone is deep and keeps its class.
    fillText(block);
    std::unique_ptr<VTElementProperty> pClone(block.clone());
    auto* pText = qobject_cast<VTTextProperty*>(pClone.get());
    QVERIFY(pText);
    QCOMPARE(saved(*pText), saved(block));
    pText->setFontSize(3);
    pText->getBorder()->setWidth(44);
    QCOMPARE(block.getFontSize(), 31);
    QVERIFY(block.getBorder()->getWidth() != 44);
}

void TestKindBlocks::textExport()
{
    VTTextProperty block;
    fillText(block);
    block.setItalic(true);
    QJsonObject json = exported(block);
    QCOMPARE(json.value("txt").toArray(),
             jsonArray(R"(["<p>Hi</p>", "'Georgia'", 31, [1, 2, 3, 4], [5, 6, 7, 8],
                                                         "bold", true, true, false, 8, 64, 175, 12, 6, -2])"));
    QVERIFY(json.contains("r"));
    block.setBold(false);
    QCOMPARE(exported(block).value("txt").toArray().at(5).toString(), QStringLiteral("normal"));

    // A layout that inherits all of the text leaves it to the base layout; overriding any one of
    // the text properties brings the whole array.
    QStringList lstDrop;
    QVERIFY(!exported(block, true).contains("txt"));
    for (int nProperty : kTextProperties) {
        block.setInherits(true);
        block.setInherit(nProperty, false);
        json = exported(block, true, &lstDrop);
        QVERIFY2(json.contains("txt"), qPrintable(QString::number(nProperty)));
        QCOMPARE(json.keys(), QStringList{"txt"});
        QVERIFY(lstDrop.isEmpty());
    }
    block.setInherits(true);
    block.setInherit(VT::PropOpacity, false);
    QVERIFY(!exported(block, true).contains("txt"));

    // A single family is quoted so that blanks and digits stay one name; a list is the author's.
    const QList<QPair<QString, QString>> lstFamilies{{"Arial", "'Arial'"},
                                                     {"\"Open Sans\"", "'Open Sans'"},
                                                     {"'Open Sans'", "'Open Sans'"},
                                                     {"\"Bob's\"", "Bob's"},
                                                     {"\"Open Sans\", serif", "\"Open Sans\", serif"}};
    for (const auto& family : lstFamilies) {
        block.setFontFamily(family.first);
        QCOMPARE(exported(block).value("txt").toArray().at(1).toString(), family.second);
    }
}

void TestKindBlocks::exportedFonts()
{
    VTTextProperty block;
    block.setFontFamily(QStringLiteral("\"Open Sans\", serif"));
    block.setItalic(true);
    QList<VTExportedFontInfo> lstFonts;
    block.getExportedFontInfo(lstFonts);
    QCOMPARE(lstFonts.size(), 1);
    QCOMPARE(lstFonts.first().family, QStringLiteral("Open Sans"));
    QVERIFY(!lstFonts.first().bold);
    QVERIFY(lstFonts.first().italic);

    block.setInnerHtml(QStringLiteral("<p>plain <b>bold</b> "
                                      "<span style=\"font-family:'Fira Code', monospace\"><i>x</i></span> "
                                      "<span style=\"font-family:Lobster; font-weight:700\">y</span></p>"));
    lstFonts.clear();
    block.getExportedFontInfo(lstFonts);
    // Family, then bold and italic as letters.
    QMap<QString, QString> styles;
    for (const VTExportedFontInfo& info : qAsConst(lstFonts))
        styles.insert(info.family, QString(info.bold ? "b" : "") + (info.italic ? "i" : ""));
    QCOMPARE(styles, (QMap<QString, QString>{{"Open Sans", "i"}, {"Fira Code", "i"}, {"Lobster", "b"}}));
    QCOMPARE(lstFonts.first().family, QStringLiteral("Open Sans"));
}

void TestKindBlocks::divCorner()
{
    VTDivProperty block;
    QVERIFY(block.getCorner());
    QCOMPARE(block.getCorner()->parent(), &block);
    QVERIFY(!exported(block).contains("lr"));
    QStringList lstDrop;
    exported(block, false, &lstDrop);
    QVERIFY(lstDrop.contains("lr"));

    fillText(block);
    setProperties(block.getCorner(), {{"m_nTopLeft", 0.25}, {"m_nBottomRight", 6}});
    block.getCorner()->setUnitTopLeft(VT::Percent);
    verifyRoundTrip(block);
    QCOMPARE(saved(block).value("corner").toObject().value("unitTL").toInt(), 1);
    QCOMPARE(exported(block).value("lr").toArray(), jsonArray(R"(["25%", 0, 0, 6])"));
    QVERIFY(exported(block).contains("txt"));
    QCOMPARE(block.getPropertyUnit(VT::PropTopLeftRadius), int(VT::Percent));
    QCOMPARE(block.getPropertyUnit(VT::PropBottomRightRadius), int(VT::Pixel));
    QCOMPARE(VTElementPropertyInfo::getPropUnitSign(VT::PropTopLeftRadius, &block), QStringLiteral("%"));

    // The copy owns a corner of its own.
    std::unique_ptr<VTElementProperty> pClone(block.clone());
    auto* pDiv = qobject_cast<VTDivProperty*>(pClone.get());
    QVERIFY(pDiv);
    QVERIFY(pDiv->getCorner() != block.getCorner());
    QCOMPARE(pDiv->getCorner()->parent(), pDiv);
    pDiv->getCorner()->setTopRight(9);
    QCOMPARE(block.getCorner()->getTopRight(), 0.0);

    // Only the corner is overridden in this layout; back to square, it drops the base's corners.
    block.setInherits(true);
    block.setInherit(VT::PropBottomLeftRadius, false);
    QCOMPARE(exported(block, true).keys(), QStringList{"lr"});
    block.getCorner()->parse({});
    QVERIFY(exported(block, true, &lstDrop).isEmpty());
    QCOMPARE(lstDrop, QStringList{"lr"});
    block.setInherit(VT::PropBottomLeftRadius, true);
    QVERIFY(exported(block, true, &lstDrop).isEmpty());
    QVERIFY(lstDrop.isEmpty());

    // A file without a corner gives square corners whatever the block held.
    block.getCorner()->setTopLeft(4);
    QVERIFY(block.parse(jsonObject(R"({"text": {}})"), nullptr));
    QVERIFY(block.getCorner()->isAllZero());
}

void TestKindBlocks::imagePlacement()
{
    VTImageProperty block;
    QCOMPARE(block.getBgImageW(), 1.0);
    QCOMPARE(block.getBgImageUnitW(), int(VT::Percent));
    QCOMPARE(block.getBgImageUnitH(), int(VT::Percent));
    QCOMPARE(exported(block).value("ir").toArray(), jsonArray(R"([0, 0, "100%", "100%"])"));

    setProperties(&block,
                  {{"m_dBgImageX", 0.1}, {"m_dBgImageY", -4}, {"m_dBgImageW", 250}, {"m_dBgImageH", 0.5}});
    block.setBgImageUnitX(VT::Percent);
    block.setBgImageUnitW(VT::Pixel);
    block.setBgImageUnitY(VT::Ratio);
    QCOMPARE(block.getBgImageUnitY(), int(VT::Pixel));
    block.setAlt(QStringLiteral("A cat"));
    verifyRoundTrip(block);
    QCOMPARE(exported(block).value("ir").toArray(), jsonArray(R"(["10%", -4, 250, "50%"])"));
    QCOMPARE(block.getPropertyUnit(VT::PropBackgroundX), int(VT::Percent));
    QCOMPARE(block.getPropertyUnit(VT::PropBackgroundWidth), int(VT::Pixel));
    std::unique_ptr<VTElementProperty> pClone(block.clone());
    QCOMPARE(qobject_cast<VTImageProperty*>(pClone.get())->getAlt(), QStringLiteral("A cat"));

    // Files without placement keys read 0 in pixels, not the filling placement of a new image.
    VTImageProperty reread;
    QVERIFY(reread.parse(jsonObject("{}"), nullptr));
    QCOMPARE(reread.getBgImageW(), 0.0);
    QCOMPARE(reread.getBgImageUnitH(), int(VT::Pixel));
    QVERIFY(!saved(reread).contains("alt"));

    block.setInherits(true);
    QVERIFY(!exported(block, true).contains("ir"));
    block.setInherit(VT::PropBackgroundHeight, false);
    QCOMPARE(exported(block, true).keys(), QStringList{"ir"});
}

void TestKindBlocks::shapeTypeTable()
{
    const QVector<VTAutoShapeTypes::ShapeInfo>& shapes = VTAutoShapeTypes::getShapes();
    QCOMPARE(shapes.size(), 48);
    QSet<int> types;
    QSet<QString> images;
    int nParametric = 0;
    for (const VTAutoShapeTypes::ShapeInfo& info : shapes) {
        types.insert(info.nType);
        images.insert(QString::fromLatin1(info.image));
        if (VTAutoShapeTypes::getElementType(info.nType) == VT::ShapeElement)
            ++nParametric;
        QVERIFY(!VTAutoShapeTypes::getName(info.nType).isEmpty());
        QCOMPARE(VTAutoShapeTypes::getGroup(info.nType) == VTAutoShapeTypes::Freeforms,
                 VTAutoShapeTypes::isFreeFormType(info.nType));
    }
    QCOMPARE(types.size(), 48);
    QCOMPARE(images.size(), 48);
    QCOMPARE(nParametric, 42);

    // A pentagon is listed with the block arrows although it reads like a basic shape.
    QCOMPARE(VTAutoShapeTypes::getGroup(VTAutoShapeTypes::Pentagon), int(VTAutoShapeTypes::BlockArrows));
    QCOMPARE(VTAutoShapeTypes::getName(23), QString());
    QCOMPARE(VTAutoShapeTypes::getAutoShapeGroupName(5), QStringLiteral("Unknown"));
    QVERIFY(VTAutoShapeTypes::isLineType(VTAutoShapeTypes::DoubleArrow));
    QVERIFY(!VTAutoShapeTypes::isLineType(VTAutoShapeTypes::Curve));
    QCOMPARE(VTAutoShapeTypes::getElementType(VTAutoShapeTypes::FreeFormScribble), int(VT::FreeFormElement));
}

void TestKindBlocks::autoShapeBlock()
{
    VTAutoShapeProperty block;
    QVERIFY(block.getAdjustments().isEmpty());
    QCOMPARE(block.getAutoShapeType(), 0);
    QCOMPARE(exported(block).value("s").toArray(), jsonArray("[0]"));

    fillText(block);
    block.setAutoShapeType(VTAutoShapeTypes::Chevron);
    block.setAdjustments({0.25, -3.5, 1e6});
    block.setAutoShapeName(QStringLiteral("Chevron"));
    block.setAutoShapeGroup(VTAutoShapeTypes::BlockArrows);
    verifyRoundTrip(block);
    QJsonObject json = saved(block);
    QCOMPARE(json.value("adjustmentCount").toInt(), 3);
    QCOMPARE(exported(block).value("s").toArray(), jsonArray("[32, [0.25, -3.5, 1e6]]"));
    QVERIFY(exported(block).contains("txt"));

    // Name and group belong to the shape table: a copy keeps them, a file does not.
    std::unique_ptr<VTElementProperty> pClone(block.clone());
    auto* pShape = qobject_cast<VTAutoShapeProperty*>(pClone.get());
    QVERIFY(pShape);
    QCOMPARE(pShape->getAutoShapeName(), QStringLiteral("Chevron"));
    QCOMPARE(pShape->getAutoShapeGroup(), int(VTAutoShapeTypes::BlockArrows));
    VTAutoShapeProperty reread;
    QVERIFY(reread.parse(json, nullptr));
    QCOMPARE(reread.getAutoShapeName(), QString());

    // The count in the file is not trusted; the list is.
    json.insert("adjustmentCount", 5);
    json.insert("adjustments", jsonArray("[1, 2]"));
    // A number that the table does not know is kept as it is.
    json.insert("autoshapeType", 23);
    QVERIFY(reread.parse(json, nullptr));
    QCOMPARE(reread.getAdjustmentCount(), 2);
    QCOMPARE(reread.getAutoShapeType(), 23);
    QCOMPARE(saved(reread).value("autoshapeType").toInt(), 23);

    reread.setInherits(true);
    QVERIFY(!exported(reread, true).contains("s"));
    reread.setInherit(VT::PropShape, false);
    QCOMPARE(exported(reread, true).keys(), QStringList{"s"});
    reread.setAdjustments({});
    QCOMPARE(exported(reread, true).value("s").toArray(), jsonArray("[23]"));
}

void TestKindBlocks::freeFormBlock()
{
    VTFreeFormArrowStyle style;
    QCOMPARE(style.getEndArrowSize(), 4);
    QVERIFY(VTFreeFormArrowStyle::isEqual(nullptr, nullptr));
    QVERIFY(!VTFreeFormArrowStyle::isEqual(&style, nullptr));
    QVERIFY(!VTFreeFormArrowStyle::isEqual(nullptr, &style));
    const VTFreeFormArrowStyle line(VTFreeFormArrowStyle::Arrow, 8, VTFreeFormArrowStyle::Arrow, 8);
    QVERIFY(!VTFreeFormArrowStyle::isEqual(&style, &line));
    QVERIFY(VTFreeFormArrowStyle::isEqual(line.clone().get(), &line));

    // Each absent key keeps what the style had.
    QJsonObject arrowJson;
    line.serialize(arrowJson);
    QCOMPARE(arrowJson.value("end_arrow_size").toInt(), 8);
    style.setEndArrowType(VTFreeFormArrowStyle::OvalArrow);
    QVERIFY(style.parse(jsonObject(R"({"start_arrow_type": 3, "end_arrow_size": 2})")));
    QCOMPARE(style, VTFreeFormArrowStyle(3, 4, VTFreeFormArrowStyle::OvalArrow, 2));
    QVERIFY(style.parse(arrowJson));
    QCOMPARE(style, line);

    QCOMPARE(VTFreeFormArrowStyle::getArrowTypeImageName(VTFreeFormArrowStyle::NoArrow, true),
             QStringLiteral("begin_no_arrow"));

    VTFreeFormShapeProperty block;
    QVERIFY(block.getPath() && block.getPath()->getAnchorPoints().isEmpty());

    fillText(block);
    block.setAutoShapeType(VTAutoShapeTypes::FreeFormShape);
    std::unique_ptr<VTBezierPath> pOld = block.replacePath(makePath(3));
    QVERIFY(pOld && pOld->getAnchorPoints().isEmpty());
    block.getArrowStyle()->setEndArrowType(VTFreeFormArrowStyle::OpenArrow);
    block.getArrowStyle()->setStartArrowSize(7);
    verifyRoundTrip(block);
    QJsonObject json = saved(block);
    QCOMPARE(json.value("bzpath").toObject().value("points").toArray().size(), 3);

    // The copy owns its path and arrows: editing them leaves the original alone.
    std::unique_ptr<VTElementProperty> pClone(block.clone());
    auto* pFree = qobject_cast<VTFreeFormShapeProperty*>(pClone.get());
    QVERIFY(pFree);
    QCOMPARE(saved(*pFree), json);
    pFree->getPath()->getAnchorPoints().first()->setPosition(QPointF(500, 500));
    pFree->getPath()->addAnchorPoint(9, anchor(1, 1));
    pFree->getArrowStyle()->setEndArrowType(VTFreeFormArrowStyle::NoArrow);
    QCOMPARE(saved(block), json);
    pClone.reset();
    QCOMPARE(block.getPath()->getAnchorPoints().size(), 3);

    // A layout without a path or arrows keeps those of its block; the other keys are read.
    QVERIFY(block.parse(jsonObject(R"({"autoshapeType": 593, "adjustments": [1]})"), nullptr));
    QCOMPARE(block.getPath()->getAnchorPoints().size(), 3);
    QCOMPARE(block.getArrowStyle()->getEndArrowType(), int(VTFreeFormArrowStyle::OpenArrow));
    QCOMPARE(block.getAutoShapeType(), 593);
    VTFreeFormShapeProperty fresh;
    QVERIFY(fresh.parse(jsonObject("{}"), nullptr));
    QVERIFY(fresh.getPath()->getAnchorPoints().isEmpty());

    // A null replacement leaves an empty path and default arrows, never a missing one.
    pOld = block.replacePath(nullptr);
    QCOMPARE(pOld->getAnchorPoints().size(), 3);
    QVERIFY(block.getPath()->getAnchorPoints().isEmpty());
    const std::unique_ptr<VTFreeFormArrowStyle> pOldStyle = block.replaceArrowStyle(nullptr);
    QCOMPARE(pOldStyle->getEndArrowType(), int(VTFreeFormArrowStyle::OpenArrow));
    QVERIFY(*block.getArrowStyle() == VTFreeFormArrowStyle());
}

void TestKindBlocks::freeFormExport()
{
    VTFreeFormShapeProperty block;
    block.setAutoShapeType(VTAutoShapeTypes::Line);
    block.setAdjustments({0.5});
    std::unique_ptr<VTBezierPath> pPath = makePath(2);
    pPath->getAnchorPoints().first()->setStartPoint(true);
    (void)block.replacePath(std::move(pPath));

    // The path takes the place of the adjustments.
    const QJsonArray points = jsonArray("[[0, 0, -1, 0, 1, 0, 1], [10, 5, 9, 5, 11, 5]]");
    QCOMPARE(exported(block).value("s").toArray(), (QJsonArray{590, points}));
    VTFreeFormArrowStyle* pStyle = block.getArrowStyle();
    pStyle->setEndArrowType(VTFreeFormArrowStyle::Arrow);
    pStyle->setEndArrowSize(8);
    QCOMPARE(exported(block).value("s").toArray(), (QJsonArray{590, points, 1, 8}));
    pStyle->setStartArrowType(VTFreeFormArrowStyle::DiamondArrow);
    pStyle->setStartArrowSize(2);
    QCOMPARE(exported(block).value("s").toArray(), (QJsonArray{590, points, 1, 8, 4, 2}));
    // A head at the start alone still writes the end first, as none.
    pStyle->setEndArrowType(VTFreeFormArrowStyle::NoArrow);
    QCOMPARE(exported(block).value("s").toArray(), (QJsonArray{590, points, 0, 8, 4, 2}));
    QVERIFY(exported(block).contains("txt"));

    // Any of the shape, the path or the four arrow values brings the key into a layout.
    block.setInherits(true);
    QVERIFY(!exported(block, true).contains("s"));
    for (int nProperty : {58, 60, 46, 47, 48, 49}) {
        block.setInherits(true);
        block.setInherit(nProperty, false);
        QCOMPARE(exported(block, true).keys(), QStringList{"s"});
    }
}

void TestKindBlocks::sceneBlock()
{
    VTSceneProperty block;
    QVERIFY(!block.isPreserved3D());
    QCOMPARE(exported(block).value("pso").toArray(), jsonArray("[50, 50, 1200]"));

    setProperties(&block,
                  {{"m_dPerspectiveOrgX", 0.25}, {"m_dPerspectiveOrgY", 1.5}, {"m_dPerspectiveOrgZ", 800}});
    verifyRoundTrip(block);
    QCOMPARE(saved(block).value("perspectiveOrgY").toDouble(), 1.5);
    QCOMPARE(exported(block).value("pso").toArray(), jsonArray("[25, 150, 800]"));
    std::unique_ptr<VTElementProperty> pClone(block.clone());
    QCOMPARE(qobject_cast<VTSceneProperty*>(pClone.get())->getPerspectiveZ(), 800.0);

    // Each perspective value alone makes the stage 3D; the base block's rule still counts.
    for (const char* name :
         {"m_dPerspectiveOrgX", "m_dPerspectiveOrgY", "m_dPerspectiveOrgZ", "m_dRotateX"}) {
        VTSceneProperty flat;
        QVERIFY(flat.setProperty(name, 1.0));
        QVERIFY2(flat.isPreserved3D(), name);
    }

    // Absent keys read the defaults of a new scene.
    QVERIFY(block.parse(jsonObject("{}"), nullptr));
    QVERIFY(!block.isPreserved3D());

    block.setInherits(true);
    QVERIFY(!exported(block, true).contains("pso"));
    block.setInherit(VT::PropPerspectiveOriginZ, false);
    QCOMPARE(exported(block, true).keys(), QStringList{"pso"});
}

void addHostileRow(const char* tag, const char* kind, const char* json, const char* path,
                   const char* expected)
{
    QTest::newRow(tag) << QString::fromLatin1(kind) << QByteArray(json) << QString::fromLatin1(path)
                       << QByteArray(expected);
}

void TestKindBlocks::hostileInput_data()
{
    // A damaged value falls back to the default of a file with one note, seen in what the block
    // writes again.
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("expected");

    addHostileRow("text not object", "text", R"({"text": "hello"})", "text/fontSize", "18");
    addHostileRow("font size negative", "text", R"({"text": {"fontSize": -3}})", "text/fontSize", "18");
    addHostileRow("blank family", "text", R"({"text": {"fontFamily": "  "}})", "text/fontFamily",
                  R"("Arial")");
    addHostileRow("alignH mixed bits", "text", R"({"text": {"alignH": 5}})", "text/alignH", "4");
    addHostileRow("alignV horizontal", "shape", R"({"text": {"alignV": 4}})", "text/alignV", "128");
    addHostileRow("line height negative", "text", R"({"text": {"lineHeight": -1}})", "text/lineHeight",
                  "1.2");
    addHostileRow("bold as number", "text", R"({"text": {"bold": 1}})", "text/bold", "false");
    addHostileRow("color text", "text", R"({"text": {"color": "red"}})", "text/color", "-12369085");
    addHostileRow("corner not object", "div", R"({"corner": [1]})", "corner/tl", "0");
    addHostileRow("corner radius negative", "div", R"({"corner": {"br": -4}})", "corner/br", "0");
    addHostileRow("image width negative", "image", R"({"bgImgWidth": -1})", "bgImgWidth", "0");
    addHostileRow("image unit ratio", "image", R"({"bgImgHUnit": 2})", "bgImgHUnit", "0");
    addHostileRow("adjustments mixed", "shape", R"({"adjustments": [1, "a", 3]})", "adjustments", "[]");
    addHostileRow("shape type negative", "shape", R"({"autoshapeType": -4})", "autoshapeType", "0");
    addHostileRow("path not object", "freeform", R"({"bzpath": [1, 2]})", "bzpath/points", "[]");
    addHostileRow("path points not list", "freeform", R"({"bzpath": {"points": 4}})", "bzpath/points", "[]");
    addHostileRow("arrow type 9", "freeform", R"({"arrow": {"end_arrow_type": 9}})", "arrow/end_arrow_type",
                  "0");
    addHostileRow("arrow size 0", "freeform", R"({"arrow": {"start_arrow_size": 0}})",
                  "arrow/start_arrow_size", "4");
    addHostileRow("perspective distance negative", "scene", R"({"perspectiveOrgZ": -10})", "perspectiveOrgZ",
                  "1200");
}

void TestKindBlocks::hostileInput()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, json);
    QFETCH(QString, path);
    QFETCH(QByteArray, expected);

    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);
    const std::unique_ptr<VTElementProperty> pBlock(makeBlock(kind));
    QStringList lstProblems;
    QVERIFY(!pBlock->parse(object, nullptr, &lstProblems));
    QCOMPARE(lstProblems.size(), 1);

    QJsonValue actual = saved(*pBlock);
    for (const QString& key : path.split('/'))
        actual = actual.toObject().value(key);
    QCOMPARE(QJsonDocument(QJsonArray{actual}).toJson(QJsonDocument::Compact), "[" + expected + "]");
    // The base block is read past the damage.
    QCOMPARE(pBlock->getSizeW(), 100.0);
}

void TestKindBlocks::oversizedAndNonFinite()
{
    // An adjustment list far beyond any shape is cut, not taken whole.
    QJsonArray adjustments;
    for (int i = 0; i < 100000; ++i)
        adjustments.append(i);
    VTAutoShapeProperty shape;
    QStringList lstProblems;
    QVERIFY(!shape.parse(QJsonObject{{"adjustments", adjustments}}, nullptr, &lstProblems));
    QCOMPARE(shape.getAdjustmentCount(), VTAutoShapeProperty::kMaxAdjustmentCount);
    QCOMPARE(shape.getAdjustments().last(), double(VTAutoShapeProperty::kMaxAdjustmentCount - 1));
    QCOMPARE(lstProblems.size(), 1);

    // A path beyond the anchor limit is refused as a whole.
    QJsonArray points;
    for (int i = 0; i <= VTBezierPath::kMaxAnchorCount; ++i)
        points.append(QJsonObject());
    VTFreeFormShapeProperty freeForm;
    lstProblems.clear();
    QVERIFY(!freeForm.parse(QJsonObject{{"bzpath", QJsonObject{{"points", points}}}}, nullptr, &lstProblems));
    QVERIFY(freeForm.getPath()->getAnchorPoints().isEmpty());
    QCOMPARE(lstProblems.size(), 1);

    // NaN and infinity cannot come from a JSON text but can from a generated object.
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double dInfinity = std::numeric_limits<double>::infinity();
    lstProblems.clear();
    QVERIFY(!shape.parse(QJsonObject{{"adjustments", QJsonArray{1, dInfinity}}}, nullptr, &lstProblems));
    QVERIFY(shape.getAdjustments().isEmpty());
    VTSceneProperty scene;
    QVERIFY(!scene.parse(QJsonObject{{"perspectiveOrgY", dNaN}}, nullptr, &lstProblems));
    QCOMPARE(scene.getPerspectiveY(), 0.5);
    VTTextProperty text;
    QVERIFY(
        !text.parse(QJsonObject{{"text", QJsonObject{{"lineHeight", dInfinity}}}}, nullptr, &lstProblems));
    QCOMPARE(text.getLineHeight(), 1.2);
    VTImageProperty image;
    QVERIFY(!image.parse(QJsonObject{{"bgImgY", -dInfinity}}, nullptr, &lstProblems));
    QCOMPARE(image.getBgImageY(), 0.0);
    QCOMPARE(lstProblems.size(), 4);

    // Setters refuse what a file would be refused for.
    text.setLineHeight(dNaN);
    text.setHAlignment(Qt::AlignTop);
    scene.setPerspectiveZ(-1);
    QCOMPARE(text.getLineHeight(), 1.2);
    QCOMPARE(text.getHAligment(), int(Qt::AlignHCenter));
    QCOMPARE(scene.getPerspectiveZ(), 1200.0);
}

// Text documents read HTML without a GUI application, as in the command-line tool.
QTEST_GUILESS_MAIN(TestKindBlocks)

#include "tst_kindblocks.moc"
