#include "MediaResource.h"
#include "VTAutoShape.h"
#include "VTBackground.h"
#include "VTBezierPath.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTCmdParam.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTElementActionValues.h"
#include "VTElementCommandAction.h"
#include "VTElementFactory.h"
#include "VTFilterEffect.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFreeFormShape.h"
#include "VTHTMLWidget.h"
#include "VTImage.h"
#include "VTMedia.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTShadow.h"
#include "VTSymbolElement.h"
#include "VTText.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QtTest>

#include <functional>

namespace {

using Id = VTElementCommandAction::ElementActionId;
const VTLayoutKey kBase(0, 0);
const VTLayoutKey kOther(1, 0);

int rgba(const QColor& color)
{
    return static_cast<int>(color.rgba());
}

// A scene whose element (or the scene itself, for kind 8) has the base layout and a copy of it as
// layout (1, 0), and shows the base.
struct Stage
{
    explicit Stage(int nType)
    {
        scene.initDefault();
        scene.addLayoutProperty(scene.getLayoutProperty(kBase)->clone(), kOther);
        if (nType == VT::SceneElement) {
            pElement = &scene;
            return;
        }
        pElement = VTElementFactory::createElement(nType);
        scene.addElement(pElement);
        pElement->addLayoutProperty(pElement->getLayoutProperty(kBase)->clone(), kOther);
    }
    VTScene scene;
    VTElement* pElement = nullptr;
};

// The saved form, plus the two values that files do not keep.
QJsonObject state(const VTElement* pElement)
{
    QJsonObject json;
    pElement->serialize(json);
    if (const auto* pFreeForm = qobject_cast<const VTFreeFormShape*>(pElement))
        json.insert(QStringLiteral("~editPoint"), pFreeForm->isEditPoint());
    if (const auto* pImage = qobject_cast<const VTImage*>(pElement))
        json.insert(QStringLiteral("~alt"), pImage->getAlt());
    return json;
}

// The saved form of a layout block or of a parameter.
template <typename T> QJsonObject saved(const T* pObject)
{
    QJsonObject json;
    pObject->serialize(json);
    return json;
}

QJsonObject blockState(const VTElement* pElement, const VTLayoutKey& key)
{
    return saved(pElement->getLayoutProperty(key));
}

void addTarget(VTCommandAction& action, VTElement* pElement)
{
    if (auto* pScene = qobject_cast<VTScene*>(pElement))
        action.addParam(pScene, false);
    else
        action.addParam(pElement, false);
}

struct Row
{
    const char* pszName;
    int nType;
    Id nId;
    std::function<void(VTCommandAction&)> addValues;
    // For families: whether each value reached the field of its place; reads layout (1, 0).
    std::function<bool(VTElement*)> verify = nullptr;
};

template <typename... Values> void addAll(VTCommandAction& action, const Values&... values)
{
    (action.addParam(values), ...);
}

template <typename T> T* as(VTElement* pElement)
{
    return qobject_cast<T*>(pElement);
}

// A row that carries one value.
template <typename T> std::function<void(VTCommandAction&)> one(T value)
{
    return [value](VTCommandAction& action) { action.addParam(value); };
}

const QList<Row>& rows()
{
    using A = VTCommandAction;
    using E = VTElement*;
    const int Div = VT::DivElement, Img = VT::ImageElement, Video = VT::VideoElement,
              Audio = VT::AudioElement;
    const int Scene = VT::SceneElement;
    const QString pointer = QStringLiteral("pointer"), name = QStringLiteral("Renamed"),
                  code = QStringLiteral("<p/>");
    // clang-format off
    static const QList<Row> lstRows{
        {"border", Div, Id::ChangeBorder, [](A& a) { addAll(a, 3, 2, rgba(Qt::red)); },
         [](E e) { const VTBorder* b = e->getBorder(kOther);
                   return b->getWidth() == 3 && b->getStyle() == 2 && b->getColor() == QColor(Qt::red); }},
        {"background", Div, Id::ChangeBackground,
         [](A& a) {
             addAll(a, 2, 1, static_cast<VTResource*>(nullptr), 2, rgba(Qt::green), 45, 0.25, 0.75, 1, 0,
                    QJsonArray{0.0, 0.3, 1.0}, QJsonArray{rgba(Qt::red), rgba(Qt::green), rgba(Qt::blue)});
         },
         [](E e) { const VTBackground* b = e->getBackground(kOther);
                   return b->getFillStyle() == 2 && b->getLinearGradientAngle() == 45 &&
                          b->getRadialOriginY() == 0.75 && b->getRadialShape() == 0 &&
                          b->getGradientStopFactors() == QList<double>{0.0, 0.3, 1.0} &&
                          b->getGradientStopColors().at(2) == QColor(Qt::blue); }},
        {"text", VT::TextElement, Id::ChangeText,
         [](A& a) { addAll(a, QStringLiteral("<b>x</b>"), QStringLiteral("Georgia"), 30, true, 2, 3, true, true,
                           true, rgba(Qt::red), rgba(Qt::yellow), 1.5, 10, int(Qt::AlignRight),
                           int(Qt::AlignBottom)); },
         [](E e) { const VTText* t = as<VTText>(e);
                   return t->getInnerHtml(kOther) == "<b>x</b>" && t->getFontSize(kOther) == 30 &&
                          t->getWordSpace(kOther) == 3 && t->getHighlightColor(kOther) == QColor(Qt::yellow) &&
                          t->getVAlignment(kOther) == int(Qt::AlignBottom); }},
        {"background image", Img, Id::ChangeBgImage, [](A& a) { addAll(a, 0.1, 0.2, 0.5, 0.6, 1, 1, 0, 0); },
         [](E e) { const VTImage* i = as<VTImage>(e);
                   return i->getBgImageX(kOther) == 0.1 && i->getBgImageH(kOther) == 0.6 &&
                          i->getBgImageUnitY(kOther) == 1 && i->getBgImageUnitW(kOther) == 0; }},
        {"corner", Div, Id::ChangeCorner, [](A& a) { addAll(a, 5.0, 6.0, 7.0, 8.0, 1, 1, 1, 1); },
         [](E e) { const VTCorner* c = as<VTDiv>(e)->getCorner(kOther);
                   return c->getBottomLeft() == 7.0 && c->getUnitBottomRight() == 1; }},
        {"clip", Div, Id::ChangeClip, [](A& a) { addAll(a, 1, 1.0, 2.0, 3.0, 4.0, 1, 1, 1, 1, 0.3, 0.4, 0, 0, 0.2, 0); },
         [](E e) { const VTClip* c = e->getClip(kOther);
                   return c->getStyle() == 1 && c->getRectLeft() == 4.0 && c->getUnitRectTop() == 1 &&
                          c->getOvalCoVertex() == 0.4 && c->getCircleRadius() == 0.2; }},
        {"shadow", Div, Id::ChangeShadow, [](A& a) { addAll(a, 1, 7, 90, 3, rgba(Qt::blue)); },
         [](E e) { return e->getShadow(kOther)->getAngle() == 90 &&
                          e->getShadow(kOther)->getColor() == QColor(Qt::blue); }},
        {"filter", Div, Id::ChangeFilter, [](A& a) { addAll(a, 0.5, 30, 1.2, 0.8, 1.5, 0.1, 0.2, 4); },
         [](E e) { const VTFilterEffect* f = e->getFilter(kOther);
                   return f->getHue() == 30 && f->getSepia() == 0.1 && f->getBlur() == 4; }},
        {"opacity", Div, Id::ChangeOpacity, one(0.4)},
        {"class name", Div, Id::ChangeClassName, one(name)},
        {"display", Div, Id::ChangeDisplay, one(0)},
        {"overflow", Div, Id::ChangeOverflow, one(2)},
        {"title", Div, Id::ChangeTitle, one(name)},
        {"tab index", Div, Id::ChangeTabIndex, one(4)},
        {"cursor", Div, Id::ChangeCursor, one(pointer)},
        {"locked", Div, Id::SetLocked, one(true)},
        {"visible", Div, Id::SetVisible, one(false)},
        {"name", Div, Id::SetElementName, one(name)},
        {"aspect lock", Div, Id::SetLockAspectRatio, one(true)},
        {"alt", Img, Id::ChangeImageAlt, one(name)},
        {"duration", Video, Id::ChangeMediaDuration, one(1234)},
        {"volume", Video, Id::ChangeVolume, one(0.25)},
        {"autoplay", Audio, Id::SetMediaAutoplay, one(true)},
        {"loop", Audio, Id::SetMediaLoop, one(true)},
        {"controls", Video, Id::SetMediaControls, one(true)},
        {"preload", Video, Id::SetMediaPreload, one(false)},
        {"widget code", VT::HTMLWidgetElement, Id::ChangeHtmlWidgetCode, one(code)},
        {"symbol autoplay", VT::SymbolElement, Id::SetSymbolAutoplay, one(true)},
        {"edit point", VT::FreeFormElement, Id::SetFreeFormEditPoint, one(true)},
        {"auto advance", Scene, Id::SetAutoAdvance, one(false)},
        {"transition type", Scene, Id::ChangeTransitionType, one(2)},
        {"transition duration", Scene, Id::ChangeTransitionDuration, one(700)},
        {"transition easing", Scene, Id::ChangeTransitionEasing, one(3)},
        {"transition direction", Scene, Id::ChangeTransitionDirection, one(2)},
    };
    // clang-format on
    return lstRows;
}

} // namespace

using PrepareFunction = void (VTElementCommandAction::*)(VTElement*);
Q_DECLARE_METATYPE(PrepareFunction)

class TestElementActions : public QObject
{
    Q_OBJECT
private slots:
    void swapsRestoreExactly_data();
    void swapsRestoreExactly();
    void geometry();
    void prepare_data();
    void prepare();
    void resources();
    void adjustments();
    void inheritsAndPropertyValue();
    void exchangesOwnedObjects();
    void perspective();
};

void TestElementActions::swapsRestoreExactly_data()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < rows().size(); ++i)
        QTest::newRow(rows().at(i).pszName) << i;
}

void TestElementActions::swapsRestoreExactly()
{
    QFETCH(int, row);
    const Row& test = rows().at(row);
    Stage stage(test.nType);
    VTElement* pElement = stage.pElement;
    const bool bLayout = VTElementCommandAction::isLayoutBound(test.nId);

    VTElementCommandAction action(test.nId, nullptr);
    addTarget(action, pElement);
    test.addValues(action);
    QCOMPARE(action.paramCount() - 1, VTElementActionValues::valueCount(test.nId));
    if (bLayout) {
        addAll(action, QMap<int, bool>{{VT::PropClassName, false}}, kOther.getHorizontalId(),
               kOther.getVerticalId());
    }
    const QJsonObject before = state(pElement);
    const QJsonObject baseBefore = blockState(pElement, kBase);

    // One parameter short: nothing happens, and the parameters keep their values.
    VTElementCommandAction shortened(test.nId, nullptr);
    addTarget(shortened, pElement);
    if (bLayout) {
        test.addValues(shortened);
        addAll(shortened, QMap<int, bool>{{VT::PropClassName, false}}, kOther.getHorizontalId());
    }
    shortened.redo();
    QCOMPARE(state(pElement), before);

    action.redo();
    const QJsonObject after = state(pElement);
    QVERIFY(after != before);
    if (test.verify)
        QVERIFY(test.verify(pElement));
    // Reading the model back gives what was written.
    VTElementCommandAction written(test.nId, nullptr);
    test.addValues(written);
    VTElementCommandAction present(test.nId, nullptr);
    QVERIFY(VTElementActionValues::collect(test.nId, pElement, bLayout ? kOther : VTLayoutKey::current(),
                                           present));
    QCOMPARE(present.paramCount(), written.paramCount());
    for (int i = 0; i < written.paramCount(); ++i)
        QCOMPARE(saved(present.getParam(i)), saved(written.getParam(i)));
    if (bLayout) {
        // Only the action's layout changes, and the element keeps showing its own.
        QCOMPARE(blockState(pElement, kBase), baseBefore);
        QVERIFY(!pElement->isInherit(VT::PropClassName, kOther));
        QVERIFY(pElement->isInherit(VT::PropClassName, kBase));
    }
    QCOMPARE(pElement->getCurrentLayoutID(), kBase);

    action.undo();
    QCOMPARE(state(pElement), before);
    action.redo();
    QCOMPARE(state(pElement), after);
    action.redo();
    QCOMPARE(state(pElement), before);
}

void TestElementActions::geometry()
{
    Stage stage(VT::DivElement);
    VTElement* pDiv = stage.pElement;
    const QJsonObject before = state(pDiv);
    const QJsonObject baseBefore = blockState(pDiv, kBase);

    VTElementCommandAction action(Id::ChangeGeometry, nullptr);
    action.prepareChangeGeometryParams(pDiv);
    QCOMPARE(action.paramCount(), 5);
    action.getParam(1)->setValue(kOther.getHorizontalId());
    action.getParam(3)->setValue(QMap<int, bool>{{VT::PropWidth, false}});
    action.setChangeGeometryProperty(VT::PropLeft, 10.0);
    action.setChangeGeometryProperty(VT::PropWidth, 50.0);
    action.setChangeGeometryProperty(VT::PropUnitW, 1);
    action.setChangeGeometryProperty(VT::PropCoordinateType, 2);
    action.setChangeGeometryProperty(VT::PropHeight, 70); // an int for a double value
    action.setChangeGeometryProperty(VT::PropLeft, 20.0);
    QCOMPARE(action.paramCount(), 10);
    QCOMPARE(action.getChangeGeometryPropertyParamIndex(VT::PropLeft), 5);
    QCOMPARE(action.getChangeGeometryPropertyParamIndex(VT::PropTop), -1);
    QVERIFY(!action.getChangeGeometryPropertyParam(VT::PropTop));
    QCOMPARE(action.getChangeGeometryPropertyParam(VT::PropLeft)->getAsDouble(), 20.0);

    action.redo();
    QCOMPARE(pDiv->getPositionX(kOther), 20.0);
    QCOMPARE(pDiv->getSizeW(kOther), 50.0);
    QCOMPARE(pDiv->getSizeH(kOther), 70.0);
    QCOMPARE(pDiv->getCoordinateType(kOther), 2);
    QVERIFY(!pDiv->isInherit(VT::PropWidth, kOther));
    QCOMPARE(blockState(pDiv, kBase), baseBefore);
    QCOMPARE(pDiv->getCurrentLayoutID(), kBase);
    // The replaced values keep their natural types.
    QCOMPARE(action.getParam(7)->getType(), int(VTCmdParam::Int));
    QCOMPARE(action.getParam(5)->getType(), int(VTCmdParam::Double));
    const QJsonObject after = state(pDiv);
    action.undo();
    QCOMPARE(state(pDiv), before);
    action.redo();
    QCOMPARE(state(pDiv), after);

    // A list out of step with its values is refused as a whole.
    VTElementCommandAction broken(Id::ChangeGeometry, nullptr);
    broken.prepareChangeGeometryParams(pDiv);
    broken.getParam(4)->setValue(QList<int>{VT::PropLeft, VT::PropTop});
    broken.addParam(99.0);
    QCOMPARE(broken.getChangeGeometryPropertyParamIndex(VT::PropTop), -1);
    broken.redo();
    QCOMPARE(state(pDiv), after);
}

void TestElementActions::prepare_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("id");
    QTest::addColumn<PrepareFunction>("prepare");
    const auto add = [](const char* pszName, int nType, Id nId, PrepareFunction fnPrepare) {
        QTest::newRow(pszName) << nType << int(nId) << fnPrepare;
    };
    using A = VTElementCommandAction;
    add("border", VT::DivElement, Id::ChangeBorder, &A::prepareChangeBorderParams);
    add("background", VT::DivElement, Id::ChangeBackground, &A::prepareChangeBackgroundParams);
    add("text", VT::ShapeElement, Id::ChangeText, &A::prepareChangeTextPrams);
    add("background image", VT::ImageElement, Id::ChangeBgImage, &A::prepareChangeBgImageParams);
    add("corner", VT::DivElement, Id::ChangeCorner, &A::prepareChangeCornerParams);
    add("clip", VT::ImageElement, Id::ChangeClip, &A::prepareChangeClipParams);
    add("shadow", VT::TextElement, Id::ChangeShadow, &A::prepareChangeShadowParams);
    add("filter", VT::DivElement, Id::ChangeFilter, &A::prepareChangeFilterParams);
}

void TestElementActions::prepare()
{
    QFETCH(int, type);
    QFETCH(int, id);
    QFETCH(PrepareFunction, prepare);
    Stage stage(type);
    VTElement* pElement = stage.pElement;
    pElement->setCurrentLayoutID(kOther);
    pElement->setInherit(VT::PropOpacity, false, kOther);
    const QJsonObject before = state(pElement);

    VTElementCommandAction action(static_cast<Id>(id), nullptr);
    (action.*prepare)(pElement);
    const int nValues = VTElementActionValues::valueCount(id);
    QCOMPARE(action.paramCount(), nValues + 4);
    QCOMPARE(action.getParam(0)->getAsElement(), pElement);
    QCOMPARE(action.getParam(nValues + 1)->getAsMapInherits(), pElement->getInherits(kOther));
    QCOMPARE(action.getParam(nValues + 2)->getAsInt(), kOther.getHorizontalId());
    QCOMPARE(action.getParam(nValues + 3)->getAsInt(), kOther.getVerticalId());
    // A copy of the present state: running it changes nothing and gives back the same values.
    VTElementCommandAction copy(static_cast<Id>(id), nullptr);
    (copy.*prepare)(pElement);
    action.redo();
    QCOMPARE(state(pElement), before);
    for (int i = 1; i < action.paramCount(); ++i)
        QCOMPARE(saved(action.getParam(i)), saved(copy.getParam(i)));

    // Preparing a filled action, or an element without these values, adds nothing.
    (action.*prepare)(pElement);
    QCOMPARE(action.paramCount(), nValues + 4);
    Stage audio(VT::AudioElement); // the blocks of every kind, but no text, image placing or corners
    VTElementCommandAction wrongKind(static_cast<Id>(id), nullptr);
    (wrongKind.*prepare)(audio.pElement);
    VTElementCommandAction probe(static_cast<Id>(id), nullptr);
    const bool bCommon = VTElementActionValues::collect(id, audio.pElement, kBase, probe);
    QCOMPARE(wrongKind.paramCount(), bCommon ? nValues + 4 : 0);
}

void TestElementActions::resources()
{
    VTResourceManager manager(nullptr);
    auto* pFirst = new VTResource(VTResource::Image);
    auto* pSecond = new VTResource(VTResource::Image);
    auto* pPage = new VTResource(VTResource::Html);
    int nId = 0;
    for (VTResource* pResource : {pFirst, pSecond, pPage}) {
        pResource->setId(++nId);
        manager.addResource(pResource);
    }
    Stage stage(VT::ImageElement);
    auto* pImage = as<VTImage>(stage.pElement);
    pImage->setImageResource(pFirst);
    pImage->attachResources();
    VTBackground* pBackground = pImage->getBackground();
    pBackground->setGradientStops({0.8, 0.2, 0.5}, {Qt::red, Qt::green, Qt::blue});
    const QJsonObject before = state(pImage);

    // An image fill takes a use of its resource and gives it back on undo; the stops come back in
    // the order the user made them.
    VTElementCommandAction action(Id::ChangeBackground, nullptr);
    action.prepareChangeBackgroundParams(pImage);
    action.getParam(1)->setValue(int(VTBackground::Image));
    action.getParam(3)->setValue(pSecond, false);
    action.getParam(11)->setValue(QJsonArray{0.0, 1.0});
    action.getParam(12)->setValue(QJsonArray{rgba(Qt::black), rgba(Qt::white)});
    action.redo();
    QCOMPARE(pSecond->getUsageCount(), 1);
    QCOMPARE(action.getParam(11)->getAsJsonArray(), (QJsonArray{0.8, 0.2, 0.5}));
    QCOMPARE(action.getParam(12)->getAsJsonArray().size(), 3);
    action.undo();
    QCOMPARE(pSecond->getUsageCount(), 0);
    QCOMPARE(pBackground->getGradientStopColors(), (QList<QColor>{Qt::red, Qt::green, Qt::blue}));
    QCOMPARE(state(pImage), before);

    VTElementCommandAction image(Id::ChangeImageResource, nullptr);
    addAll(image, stage.pElement, pSecond);
    image.redo();
    QCOMPARE(image.getParam(1)->getAsResource(), pFirst);
    QCOMPARE(pFirst->getUsageCount(), 0);
    QCOMPARE(pSecond->getUsageCount(), 1);
    image.undo();
    QCOMPARE(pFirst->getUsageCount(), 1);
    QCOMPARE(pSecond->getUsageCount(), 0);

    // A widget's source: a resource parameter moves the resource, a text one the address.
    Stage widgetStage(VT::HTMLWidgetElement);
    auto* pWidget = as<VTHTMLWidget>(widgetStage.pElement);
    pWidget->setUrl(QStringLiteral("http://a.example"));
    const QJsonObject widgetBefore = state(pWidget);
    VTElementCommandAction resource(Id::ChangeHtmlWidgetSource, nullptr);
    addAll(resource, widgetStage.pElement, pPage, true);
    resource.redo();
    QVERIFY(pWidget->isUseResource());
    QCOMPARE(pPage->getUsageCount(), 1);
    resource.undo();
    QCOMPARE(pPage->getUsageCount(), 0);
    QCOMPARE(state(pWidget), widgetBefore);
    VTElementCommandAction url(Id::ChangeHtmlWidgetSource, nullptr);
    addAll(url, widgetStage.pElement, QStringLiteral("http://b.example"), false);
    url.redo();
    QCOMPARE(url.getParam(1)->getAsString(), QStringLiteral("http://a.example"));
}

void TestElementActions::adjustments()
{
    Stage stage(VT::ShapeElement);
    auto* pShape = as<VTAutoShape>(stage.pElement);
    pShape->setAdjustments({0.1, 0.2}, kOther);
    const QJsonObject before = state(pShape);

    VTElementCommandAction action(Id::ChangeAdjustments, nullptr);
    addAll(action, stage.pElement, 3, false, 1, 0, 0.5, 0.6, 0.7);
    action.redo();
    QCOMPARE(pShape->getAdjustments(kOther), (QVector<double>{0.5, 0.6, 0.7}));
    QVERIFY(!pShape->isInherit(VT::PropShape, kOther));
    // The old values travel in the action's own form: their count, then as many values.
    QCOMPARE(action.paramCount(), 7);
    QCOMPARE(action.getParam(1)->getAsInt(), 2);
    QVERIFY(action.getParam(2)->getAsBool());
    QCOMPARE(action.getParam(6)->getAsDouble(), 0.2);
    action.undo();
    QCOMPARE(state(pShape), before);

    // A count that does not match the values is ignored.
    VTElementCommandAction wrong(Id::ChangeAdjustments, nullptr);
    addAll(wrong, stage.pElement, 2, true, 1, 0, 0.9);
    wrong.redo();
    QCOMPARE(state(pShape), before);
}

void TestElementActions::inheritsAndPropertyValue()
{
    Stage stage(VT::DivElement);
    VTElement* pDiv = stage.pElement;
    const QMap<int, bool> mapOld{
        {VT::PropTop, false}, {VT::PropWidth, false}, {VT::PropGradientOriginX, false}};
    pDiv->addInherits(mapOld, kOther);

    VTElementCommandAction inherits(Id::SetInherits, nullptr);
    addAll(inherits, pDiv, kOther, QMap<int, bool>{{VT::PropScaleX, false}});
    inherits.redo();
    QCOMPARE(pDiv->getInherits(kOther), (QMap<int, bool>{{VT::PropScaleX, false}}));
    QCOMPARE(inherits.getParam(2)->getAsMapInherits(), mapOld);
    inherits.undo();
    QCOMPARE(pDiv->getInherits(kOther), mapOld);
    QVERIFY(pDiv->getInherits(kBase).isEmpty());

    // The bound property of a layout, whether the element's own or a sub-object's.
    const QJsonObject before = state(pDiv);
    VTElementCommandAction width(Id::SetPropertyValue, nullptr);
    addAll(width, pDiv, int(VT::PropWidth), kOther, QVariant(77.0));
    width.redo();
    QCOMPARE(pDiv->getSizeW(kOther), 77.0);
    QCOMPARE(pDiv->getSizeW(kBase), 256.0);
    QCOMPARE(pDiv->getCurrentLayoutID(), kBase);
    QCOMPARE(width.getParam(3)->getAsVariant().toDouble(), 256.0);

    width.undo();
    QCOMPARE(state(pDiv), before);

    // One parameter short, each does nothing.
    VTElementCommandAction shortInherits(Id::SetInherits, nullptr);
    addAll(shortInherits, pDiv, kOther);
    shortInherits.redo();
    VTElementCommandAction shortValue(Id::SetPropertyValue, nullptr);
    addAll(shortValue, pDiv, int(VT::PropWidth), QVariant(1.0));
    shortValue.redo();
    QCOMPARE(state(pDiv), before);

    // A change made before the command exists: the first redo is idle, undo puts the old value back.
    pDiv->setSizeW(300.0);
    VTElementCommandAction made(Id::SetPropertyValue, nullptr, 4, true);
    addAll(made, pDiv, int(VT::PropWidth), kBase, QVariant(256.0));
    made.redo();
    QCOMPARE(pDiv->getSizeW(), 300.0);
    made.undo();
    QCOMPARE(pDiv->getSizeW(), 256.0);
    made.redo();
    QCOMPARE(pDiv->getSizeW(), 300.0);
}

void TestElementActions::exchangesOwnedObjects()
{
    Stage stage(VT::FreeFormElement);
    auto* pShape = as<VTFreeFormShape>(stage.pElement);
    VTBezierPath* pOldPath = pShape->getPath(kOther);
    auto* pNewPath = new VTBezierPath();

    VTElementCommandAction path(Id::ChangeFreeFormPath, nullptr);
    path.addParam(stage.pElement, false);
    path.addParam(pNewPath, true);
    addAll(path, QMap<int, bool>{{VT::PropFreeFormPath, false}}, 1, 0);
    path.redo();
    QCOMPARE(pShape->getPath(kOther), pNewPath);
    QCOMPARE(path.getParam(1)->getAsBezierPath(), pOldPath);
    QVERIFY(path.getParam(1)->isOwned());
    QVERIFY(!pShape->isInherit(VT::PropFreeFormPath, kOther));
    path.undo();
    QCOMPARE(pShape->getPath(kOther), pOldPath);
    QCOMPARE(path.getParam(1)->getAsBezierPath(), pNewPath);
    QVERIFY(pShape->isInherit(VT::PropFreeFormPath, kOther));

    VTElementCommandAction arrow(Id::ChangeArrowStyle, nullptr);
    auto* pStyle = new VTFreeFormArrowStyle();
    addAll(arrow, stage.pElement, QMap<int, bool>(), 0, 0);
    arrow.getParams().insert(1, new VTCmdParam(pStyle, true));
    arrow.redo();
    QCOMPARE(pShape->getArrowStyle(kBase), pStyle);

    // What the parameter does not own it cannot hand over.
    VTBezierPath borrowed;
    VTElementCommandAction unowned(Id::ChangeFreeFormPath, nullptr);
    addAll(unowned, stage.pElement, &borrowed, QMap<int, bool>(), 0, 0);
    unowned.redo();
    QVERIFY(pShape->getPath(kBase) != &borrowed);
    QCOMPARE(unowned.getParam(1)->getAsBezierPath(), &borrowed);
}

void TestElementActions::perspective()
{
    Stage stage(VT::SceneElement);
    VTScene& scene = stage.scene;
    const QJsonObject baseBefore = blockState(&scene, kBase);
    const QJsonObject before = state(&scene);
    VTElementCommandAction action(Id::ChangePerspective, nullptr);
    addAll(action, &scene, QMap<int, bool>{{VT::PropPerspectiveOriginY, false}}, 1, 0,
           int(VT::PropPerspectiveOriginY), 0.3);
    action.redo();
    QCOMPARE(scene.getPerspectiveY(kOther), 0.3);
    QVERIFY(!scene.isInherit(VT::PropPerspectiveOriginY, kOther));
    QCOMPARE(blockState(&scene, kBase), baseBefore);
    action.undo();
    QCOMPARE(state(&scene), before);

    // Without a block in the action's layout nothing is written, not even the inherit map.
    delete scene.removeLayoutProperty(kOther);
    const QJsonObject withoutLayout = state(&scene);
    action.redo();
    QCOMPARE(state(&scene), withoutLayout);
}

QTEST_GUILESS_MAIN(TestElementActions)
#include "tst_elementactions.moc"
