#include "MediaResource.h"
#include "VTAnchorPoint.h"
#include "VTAutoShape.h"
#include "VTBackground.h"
#include "VTBezierPath.h"
#include "VTBorder.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTElementFactory.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFreeFormShape.h"
#include "VTHTMLWidget.h"
#include "VTImage.h"
#include "VTMedia.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTText.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <limits>
#include <memory>

namespace {

VTResource* addResource(VTResourceManager& manager, VTResource::ResourceType type, int nId)
{
    VTResource* pResource = (type == VTResource::Audio || type == VTResource::Video)
                                ? static_cast<VTResource*>(new MediaResource(type))
                                : new VTResource(type);
    pResource->setId(nId);
    pResource->setName(QStringLiteral("res%1").arg(nId));
    manager.addResource(pResource);
    return pResource;
}

std::unique_ptr<VTElement> make(int nType)
{
    return std::unique_ptr<VTElement>(VTElementFactory::createElement(nType));
}

QJsonObject serialized(const VTElement& element)
{
    QJsonObject json;
    element.serialize(json);
    return json;
}

QJsonObject exported(const VTElement& element, bool bSingleLayout, bool bWithEvents)
{
    QJsonObject json;
    element.serializeToExport(json, bSingleLayout, bWithEvents);
    return json;
}

QByteArray dump(const QJsonObject& json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact);
}

// A group holding the JSON of one child, read back; the child is element 0 if it stood.
struct ReadBack
{
    ReadBack() { group.initDefault(); }
    VTElement group;
    QStringList lstProblems;
    VTElement* child() const { return group.getChildByIndex(0); }
};

void readAsChild(ReadBack& readBack, const QJsonObject& child, VTResourceManager* pManager)
{
    QJsonObject json = serialized(readBack.group);
    json.insert(QStringLiteral("children"), QJsonArray{child});
    readBack.group.parse(json, pManager, &readBack.lstProblems);
}

} // namespace

class TestElementKinds : public QObject
{
    Q_OBJECT
private slots:
    void factoryDefaults_data();
    void factoryDefaults();
    void textAccessors();
    void roundTrip_data();
    void roundTrip();
    void readDefaults();
    void resourceFallback();
    void usageCounts_data();
    void usageCounts();
    void exportKeys();
    void hostileInput();
};

void TestElementKinds::factoryDefaults_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("blockClass");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<int>("fillStyle");
    QTest::addColumn<bool>("aspectLocked");

    QTest::newRow("image") << 0 << "VTImage"
                           << "VTImageProperty" << QSizeF(256, 128) << 0 << true;
    QTest::newRow("audio") << 1 << "VTMedia"
                           << "VTElementProperty" << QSizeF(460, 30) << 0 << false;
    QTest::newRow("video") << 2 << "VTMedia"
                           << "VTElementProperty" << QSizeF(460, 250) << 0 << true;
    QTest::newRow("widget") << 3 << "VTHTMLWidget"
                            << "VTElementProperty" << QSizeF(256, 128) << 0 << false;
    QTest::newRow("text") << 4 << "VTText"
                          << "VTTextProperty" << QSizeF(200, 50) << 0 << false;
    QTest::newRow("div") << 5 << "VTDiv"
                         << "VTDivProperty" << QSizeF(256, 128) << 1 << false;
    QTest::newRow("shape") << 9 << "VTAutoShape"
                           << "VTAutoShapeProperty" << QSizeF(256, 128) << 1 << false;
    QTest::newRow("freeform") << 11 << "VTFreeFormShape"
                              << "VTFreeFormShapeProperty" << QSizeF(256, 128) << 1 << false;
}

void TestElementKinds::factoryDefaults()
{
    QFETCH(int, type);
    QFETCH(QString, className);
    QFETCH(QString, blockClass);
    QFETCH(QSizeF, size);
    QFETCH(int, fillStyle);
    QFETCH(bool, aspectLocked);

    const auto pElement = make(type);
    QVERIFY(pElement);
    QCOMPARE(int(pElement->getType()), type);
    QCOMPARE(QString::fromLatin1(pElement->metaObject()->className()), className);
    VTElementProperty* pBlock = pElement->getLayoutProperty(VTLayoutKey::base());
    QVERIFY(pBlock);
    QCOMPARE(QString::fromLatin1(pBlock->metaObject()->className()), blockClass);
    QCOMPARE(pElement->getComputedSize(), size);
    QCOMPARE(pElement->getBackground()->getFillStyle(), fillStyle);
    QCOMPARE(pElement->isAspectRatioLocked(), aspectLocked);

    if (fillStyle == VTBackground::Solid) {
        QCOMPARE(pElement->getBackground()->getSolidColor(), QColor(74, 134, 232));
        QCOMPARE(static_cast<VTText*>(pElement.get())->getColor().rgba(), qRgba(255, 255, 255, 255));
    } else if (auto* pText = qobject_cast<VTText*>(pElement.get())) {
        QCOMPARE(pText->getColor().rgba(), VTTextProperty::clDefaultTextColor);
    }
    if (auto* pMedia = qobject_cast<VTMedia*>(pElement.get())) {
        QCOMPARE(pMedia->getVolume(), 1.0);
        QCOMPARE(pMedia->hasControls(), type == VT::AudioElement);
        QVERIFY(pMedia->isPreload());
        QVERIFY(!pMedia->isInfoLoaded());
        QCOMPARE(pMedia->getBorder()->getWidth(), 0);
        QVERIFY(!pMedia->getMediaResource());
    }
    if (type == VT::HTMLWidgetElement)
        QCOMPARE(pElement->getBorder()->getStyle(), int(VTBorder::Solid));
    // A shape's border lies inside its outline.
    if (qobject_cast<VTAutoShape*>(pElement.get())) {
        pElement->getBorder()->setStyle(VTBorder::Solid);
        pElement->getBorder()->setWidth(7);
        QCOMPARE(pElement->getComputedTotalW(), size.width());
    }

    // A second initDefault leaves the author's values alone.
    pElement->setSizeW(33);
    pElement->initDefault();
    QCOMPARE(pElement->getSizeW(), 33.0);

    // The copy is of the same kind, with its own blocks.
    const std::unique_ptr<VTElement> pCopy(pElement->clone());
    QCOMPARE(QString::fromLatin1(pCopy->metaObject()->className()), className);
    QCOMPARE(int(pCopy->getType()), type);
    QCOMPARE(dump(serialized(*pCopy)), dump(serialized(*pElement)));
}

void TestElementKinds::textAccessors()
{
    for (int nType : {8, 10, 12, -1})
        QVERIFY2(!make(nType), qPrintable(QString::number(nType)));

    VTDiv div;
    div.initDefault();
    div.prepareLayoutProperty({{1, 0}}, true, VTLayoutKey::base());
    div.setFontSize(40, {1, 0});
    div.setInnerHtml(QStringLiteral("<b>x</b>"));
    QCOMPARE(div.getFontSize(), 18);
    QCOMPARE(div.getFontSize({1, 0}), 40);
    QCOMPARE(div.getInnerHtml({1, 0}), QString());
    QVERIFY(div.getCorner({1, 0}) && div.getCorner({1, 0}) != div.getCorner());
    // A layout without a block reads empty and ignores writes.
    div.setFontFamily(QStringLiteral("Verdana"), {5, 5});
    QCOMPARE(div.getFontFamily({5, 5}), QString());
    QCOMPARE(div.getLineHeight({5, 5}), 0.0);
    QVERIFY(!div.getCorner({5, 5}));

    QList<VTExportedFontInfo> lstFonts;
    VTText text;
    text.initDefault();
    text.getExportedFontInfo(lstFonts);
    QCOMPARE(lstFonts.size(), 1);
    QCOMPARE(lstFonts.first().family, QStringLiteral("Arial"));

    VTFreeFormShape freeform;
    freeform.initDefault();
    freeform.setAutoShapeType(593);
    QVERIFY(!freeform.isLine());
    freeform.setAutoShapeType(591);
    QVERIFY(freeform.isLine());
    QVERIFY(freeform.getPath() && freeform.getArrowStyle());
    auto pPath = std::make_unique<VTBezierPath>();
    VTBezierPath* pNewPath = pPath.get();
    const std::unique_ptr<VTBezierPath> pOld = freeform.replacePath(std::move(pPath));
    QVERIFY(pOld && pOld.get() != pNewPath);
    QCOMPARE(freeform.getPath(), pNewPath);
    // Without a block the new object comes back to the caller.
    auto pStyle = std::make_unique<VTFreeFormArrowStyle>();
    VTFreeFormArrowStyle* pRawStyle = pStyle.get();
    QCOMPARE(freeform.replaceArrowStyle(std::move(pStyle), {4, 4}).get(), pRawStyle);
    VTAutoShape shape;
    QVERIFY(shape.getAdjustments({2, 2}).isEmpty());
}

void TestElementKinds::roundTrip_data()
{
    QTest::addColumn<int>("type");
    for (int nType : {0, 1, 2, 3, 4, 5, 9, 11})
        QTest::newRow(qPrintable(VTElement::mapType2DefaultName(nType))) << nType;
}

void TestElementKinds::roundTrip()
{
    QFETCH(int, type);
    VTResourceManager manager(nullptr);
    addResource(manager, VTResource::Image, 2);
    VTResource* pVideo = addResource(manager, VTResource::Video, 3);
    VTResource* pHtml = addResource(manager, VTResource::Html, 4);
    VTResource* pPicture = manager.findResourceById(2);

    const auto pElement = make(type);
    pElement->setName(QStringLiteral("kind"));
    pElement->setId(12);
    pElement->prepareLayoutProperty({{1, 0}}, true, VTLayoutKey::base());
    pElement->setSizeW(77, {1, 0});
    if (auto* pText = qobject_cast<VTText*>(pElement.get())) {
        pText->setInnerHtml(QStringLiteral("<p>hi</p>"), {1, 0});
        pText->setFontFamily(QStringLiteral("Courier"));
        pText->setBold(true);
        pText->setLineHeight(2.5);
        pText->setHighlightColor(QColor(1, 2, 3, 4));
    }
    if (auto* pDiv = qobject_cast<VTDiv*>(pElement.get()))
        pDiv->getCorner()->setTopLeft(6);
    if (auto* pShape = qobject_cast<VTAutoShape*>(pElement.get())) {
        pShape->setAutoShapeType(23);
        pShape->setAdjustments({0.25, -3.5}, {1, 0});
    }
    if (auto* pFreeform = qobject_cast<VTFreeFormShape*>(pElement.get())) {
        auto pPath = std::make_unique<VTBezierPath>();
        pPath->addAnchorPoint(0, new VTAnchorPoint(QPointF(1, 2), QPointF(3, 4), QPointF(5, 6)));
        pFreeform->replacePath(std::move(pPath), {1, 0}).reset();
        pFreeform->replaceArrowStyle(std::make_unique<VTFreeFormArrowStyle>(1, 2, 3, 9)).reset();
    }
    if (auto* pImage = qobject_cast<VTImage*>(pElement.get())) {
        pImage->setImageResource(pPicture);
        pImage->setBgImageX(0.5, {1, 0});
        pImage->setBgImageUnitX(1, {1, 0});
    }
    if (auto* pMedia = qobject_cast<VTMedia*>(pElement.get())) {
        pMedia->setMediaResource(pVideo);
        pMedia->setDuration(1234);
        pMedia->setVolume(0.25);
        pMedia->setAutoplay(true);
        pMedia->setLoop(true);
        pMedia->setControls(!pMedia->hasControls());
        pMedia->setPreload(false);
        pMedia->setInfoLoaded(true);
    }
    if (auto* pWidget = qobject_cast<VTHTMLWidget*>(pElement.get())) {
        pWidget->setHTMLResource(pHtml);
        pWidget->setUseResource(true);
        pWidget->setSrcHTML(QStringLiteral("<i>inline</i>"));
    }

    const QJsonObject json = serialized(*pElement);
    const auto pRead = make(type);
    QStringList lstProblems;
    QVERIFY(pRead->parse(json, &manager, &lstProblems));
    QVERIFY2(lstProblems.isEmpty(), qPrintable(lstProblems.join('\n')));
    QCOMPARE(dump(serialized(*pRead)), dump(json));
    QCOMPARE(dump(exported(*pRead, false, true)), dump(exported(*pElement, false, true)));

    if (auto* pMedia = qobject_cast<VTMedia*>(pRead.get())) {
        QCOMPARE(pMedia->getMediaResource(), pVideo);
        QCOMPARE(pMedia->getDuration(), 1234);
        QCOMPARE(pMedia->getVolume(), 0.25);
        QVERIFY(pMedia->isAutoplay() && pMedia->isLoop() && !pMedia->isPreload() && pMedia->isInfoLoaded());
        QCOMPARE(pMedia->hasControls(), type != VT::AudioElement);
    }
    if (auto* pWidget = qobject_cast<VTHTMLWidget*>(pRead.get())) {
        QCOMPARE(pWidget->getHTMLResource(), pHtml);
        QVERIFY(pWidget->isUseResource());
        QVERIFY(!json.contains(QStringLiteral("url")));
        QCOMPARE(pWidget->getSrcHTML(), QStringLiteral("<i>inline</i>"));
    }
    if (auto* pImage = qobject_cast<VTImage*>(pRead.get())) {
        QCOMPARE(pImage->getImageResource(), pPicture);
        QCOMPARE(pImage->getBgImageX({1, 0}), 0.5);
    }
    if (auto* pShape = qobject_cast<VTAutoShape*>(pRead.get())) {
        QCOMPARE(pShape->getAutoShapeType(), 23);
        QCOMPARE(pShape->getAdjustments({1, 0}), QVector<double>({0.25, -3.5}));
    }
    if (auto* pFreeform = qobject_cast<VTFreeFormShape*>(pRead.get())) {
        QCOMPARE(pFreeform->getPath({1, 0})->getAnchorPoints().size(), 1);
        QCOMPARE(pFreeform->getArrowStyle()->getEndArrowSize(), 9);
        QCOMPARE(pFreeform->getPath()->getAnchorPoints().size(), 0);
    }
    if (auto* pText = qobject_cast<VTText*>(pRead.get())) {
        QCOMPARE(pText->getInnerHtml({1, 0}), QStringLiteral("<p>hi</p>"));
        QCOMPARE(pText->getLineHeight(), 2.5);
        QCOMPARE(pText->getHighlightColor(), QColor(1, 2, 3, 4));
    }

    // Reading the same file twice leaves exactly one use per element.
    QVERIFY(pRead->parse(json, &manager, nullptr));
    QCOMPARE(pPicture->getUsageCount(), type == VT::ImageElement ? 2 : 0);
    QCOMPARE(pVideo->getUsageCount(), (type == VT::AudioElement || type == VT::VideoElement) ? 2 : 0);
}

void TestElementKinds::readDefaults()
{
    VTResourceManager manager(nullptr);
    VTResource* pAudio = addResource(manager, VTResource::Audio, 1);
    const QJsonObject bare{{QStringLiteral("type"), 1}, {QStringLiteral("resourceId"), 1}};
    VTMedia media(VT::AudioElement);
    media.initDefault();
    QStringList lstProblems;
    QVERIFY(media.parse(bare, &manager, &lstProblems));
    QCOMPARE(media.getMediaResource(), pAudio);
    QCOMPARE(media.getVolume(), 0.0);
    QVERIFY(!media.hasControls());
    QVERIFY(!media.isPreload());
    QCOMPARE(media.getDuration(), 0);
    QVERIFY(lstProblems.isEmpty());

    VTHTMLWidget widget;
    QVERIFY(widget.parse(QJsonObject{{QStringLiteral("url"), QStringLiteral("https://example.org")}}, nullptr,
                         &lstProblems));
    QCOMPARE(widget.getUrl(), QStringLiteral("https://example.org"));
    QVERIFY(!widget.isUseResource());
    QVERIFY(!widget.getHTMLResource());
    QVERIFY(lstProblems.isEmpty());
}

void TestElementKinds::resourceFallback()
{
    VTResourceManager manager(nullptr);
    VTResource* pImage3 = addResource(manager, VTResource::Image, 3);
    VTResource* pImage7 = addResource(manager, VTResource::Image, 7);
    VTResource* pAudio8 = addResource(manager, VTResource::Audio, 8);
    VTResource* pVideo9 = addResource(manager, VTResource::Video, 9);
    VTResource* pAudio10 = addResource(manager, VTResource::Audio, 10);
    VTResource* pHtml11 = addResource(manager, VTResource::Html, 11);
    VTResource* pCss12 = addResource(manager, VTResource::StyleSheet, 12);
    Q_UNUSED(pCss12)

    struct Case
    {
        int nType;
        QJsonObject extra;
        VTResource* pExpected;
        bool bReported;
    };
    const QList<Case> cases{
        {VT::ImageElement, {{"resourceId", -1}}, pImage7, true},
        {VT::ImageElement, {{"resourceId", 3}}, pImage3, false},
        {VT::ImageElement, {{"resourceId", 8}}, pImage7, true},
        {VT::ImageElement, {}, pImage7, true},
        {VT::VideoElement, {{"resourceId", 8}}, pAudio8, false},
        {VT::AudioElement, {{"resourceId", 9}}, pVideo9, false},
        {VT::AudioElement, {{"resourceId", 99}}, pAudio10, true},
        {VT::VideoElement, {{"resourceId", 3}}, pVideo9, true},
        {VT::HTMLWidgetElement, {{"useresource", true}, {"resourceId", 11}}, pHtml11, false},
        {VT::HTMLWidgetElement, {{"useresource", true}, {"resourceId", 3}}, pImage3, false},
        {VT::HTMLWidgetElement, {{"useresource", true}, {"resourceId", 12}}, pImage7, true},
        {VT::HTMLWidgetElement, {{"useresource", false}, {"resourceId", 11}}, nullptr, false},
    };
    for (const Case& test : cases) {
        QJsonObject json = serialized(*make(test.nType));
        json.remove(QStringLiteral("url"));
        json.remove(QStringLiteral("resourceId"));
        for (auto it = test.extra.begin(); it != test.extra.end(); ++it)
            json.insert(it.key(), it.value());
        const QString what =
            QStringLiteral("kind %1, %2").arg(test.nType).arg(QString::fromUtf8(dump(test.extra)));
        const int nBefore = test.pExpected ? test.pExpected->getUsageCount() : 0;
        ReadBack readBack;
        readAsChild(readBack, json, &manager);
        VTElement* pChild = readBack.child();
        QVERIFY2(pChild, qPrintable(what));
        VTResource* pGot = nullptr;
        if (auto* pImage = qobject_cast<VTImage*>(pChild))
            pGot = pImage->getImageResource();
        else if (auto* pMedia = qobject_cast<VTMedia*>(pChild))
            pGot = pMedia->getMediaResource();
        else if (auto* pWidget = qobject_cast<VTHTMLWidget*>(pChild))
            pGot = pWidget->getHTMLResource();
        QVERIFY2(pGot == test.pExpected, qPrintable(what));
        QVERIFY2(readBack.lstProblems.isEmpty() != test.bReported, qPrintable(what));
        if (test.pExpected)
            QCOMPARE(test.pExpected->getUsageCount(), nBefore + 1);
        pChild->detachResources();
    }

    // Without any resource of the kind the element goes, named in a problem line; its siblings stay.
    VTResourceManager empty(nullptr);
    addResource(empty, VTResource::Audio, 1);
    for (int nType : {VT::ImageElement, VT::VideoElement, VT::HTMLWidgetElement}) {
        VTElement group;
        QJsonObject json = serialized(group);
        const QJsonObject lost{
            {"type", nType}, {"name", "lost"}, {"resourceId", 5}, {"useresource", true}, {"url", "x"}};
        json.insert(QStringLiteral("children"), QJsonArray{QJsonObject{{"type", 5}, {"name", "first"}}, lost,
                                                           QJsonObject{{"type", 4}, {"name", "last"}}});
        QStringList lstProblems;
        QVERIFY(group.parse(json, &empty, &lstProblems));
        QCOMPARE(group.getChildren().size(), 2);
        QCOMPARE(group.getChildByIndex(0)->getName(), QStringLiteral("first"));
        QCOMPARE(group.getChildByIndex(1)->getName(), QStringLiteral("last"));
        QVERIFY2(lstProblems.join('\n').contains(QStringLiteral("\"lost\"")),
                 qPrintable(lstProblems.join('\n')));
    }
    // A video finds no video to fall back on, only audio: it goes.
    {
        VTMedia video(VT::VideoElement);
        QStringList lstProblems;
        QVERIFY(!video.parse(QJsonObject{{"resourceId", 40}}, &empty, &lstProblems));
        QCOMPARE(lstProblems.size(), 1);
    }
    QVERIFY(!VTImage().parse(QJsonObject{}, nullptr, nullptr));
}

void TestElementKinds::usageCounts_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("image") << int(VT::ImageElement);
    QTest::newRow("audio") << int(VT::AudioElement);
    QTest::newRow("widget") << int(VT::HTMLWidgetElement);
}

void TestElementKinds::usageCounts()
{
    QFETCH(int, type);
    VTResourceManager manager(nullptr);
    const VTResource::ResourceType resourceType =
        type == VT::AudioElement ? VTResource::Audio : VTResource::Image;
    VTResource* pFirst = addResource(manager, resourceType, 1);
    VTResource* pSecond = addResource(manager, resourceType, 2);

    const auto setResource = [](VTElement* pElement, VTResource* pResource) {
        if (auto* pImage = qobject_cast<VTImage*>(pElement))
            pImage->setImageResource(pResource);
        else if (auto* pMedia = qobject_cast<VTMedia*>(pElement))
            pMedia->setMediaResource(pResource);
        else if (auto* pWidget = qobject_cast<VTHTMLWidget*>(pElement))
            pWidget->setHTMLResource(pResource);
    };

    VTElement group;
    group.initDefault();
    VTElement* pElement = VTElementFactory::createElement(type);
    group.addChild(pElement);
    setResource(pElement, pFirst);
    QCOMPARE(pFirst->getUsageCount(), 1);
    setResource(pElement, pSecond);
    QCOMPARE(pFirst->getUsageCount(), 0);
    QCOMPARE(pSecond->getUsageCount(), 1);

    // Detaching the parent reaches the child, once however often it is asked.
    group.detachResources();
    group.detachResources();
    QCOMPARE(pSecond->getUsageCount(), 0);
    group.attachResources();
    group.attachResources();
    QCOMPARE(pSecond->getUsageCount(), 1);

    // A copy shows the resource but counts only once attached.
    std::unique_ptr<VTElement> pCopy(group.clone());
    QCOMPARE(pSecond->getUsageCount(), 1);
    pCopy->attachResources();
    QCOMPARE(pSecond->getUsageCount(), 2);
    pCopy->detachResources();
    // A detached copy given a resource starts counting it, and gives back nothing it did not take.
    std::unique_ptr<VTElement> pLoose(pElement->clone());
    setResource(pLoose.get(), pFirst);
    QCOMPARE(pSecond->getUsageCount(), 1);
    QCOMPARE(pFirst->getUsageCount(), 1);
    pLoose->detachResources();
    QCOMPARE(pFirst->getUsageCount(), 0);

    // The merge of a paste: the resource is a key, and the mapped one takes over its use.
    QMap<VTResource*, VTResource*> mapResources;
    group.prepareResourceMap(mapResources);
    QCOMPARE(mapResources.keys(), QList<VTResource*>{pSecond});
    group.updateResourceMap(mapResources);
    QCOMPARE(pSecond->getUsageCount(), 1);
    mapResources.insert(pSecond, pFirst);
    group.updateResourceMap(mapResources);
    QCOMPARE(pSecond->getUsageCount(), 0);
    QCOMPARE(pFirst->getUsageCount(), 1);
    QCOMPARE(exported(*pElement, true, false).value(QStringLiteral("rs")).toInt(),
             type == VT::HTMLWidgetElement ? 0 : pFirst->getId());
    group.detachResources();
    QCOMPARE(pFirst->getUsageCount(), 0);
}

void TestElementKinds::exportKeys()
{
    VTResourceManager manager(nullptr);
    VTResource* pImage = addResource(manager, VTResource::Image, 5);
    VTResource* pVideo = addResource(manager, VTResource::Video, 6);

    VTImage image;
    image.initDefault();
    QCOMPARE(exported(image, false, true).value(QStringLiteral("rs")).toInt(), -1);
    image.setImageResource(pImage);
    QCOMPARE(exported(image, true, false).value(QStringLiteral("rs")).toInt(), 5);
    QVERIFY(exported(image, true, false).contains(QStringLiteral("ir")));

    VTMedia video(VT::VideoElement);
    video.initDefault();
    video.setMediaResource(pVideo);
    video.setVolume(0.4);
    video.setAutoplay(true);
    video.setLoop(true);
    video.setControls(true);
    video.setPreload(false);
    const QJsonObject player = exported(video, false, true);
    QCOMPARE(player.value(QStringLiteral("rs")).toInt(), 6);
    QCOMPARE(player.value(QStringLiteral("vol")).toDouble(), 40.0);
    QCOMPARE(player.value(QStringLiteral("ap")), QJsonValue(true));
    QCOMPARE(player.value(QStringLiteral("lo")), QJsonValue(true));
    QCOMPARE(player.value(QStringLiteral("ct")), QJsonValue(true));
    QCOMPARE(player.value(QStringLiteral("pl")), QJsonValue(false));
    QVERIFY(player.contains(QStringLiteral("rp")));
    // The stage neither plays by itself nor skips loading.
    const QJsonObject stage = exported(video, true, false);
    QCOMPARE(stage.value(QStringLiteral("ap")), QJsonValue(false));
    QCOMPARE(stage.value(QStringLiteral("pl")), QJsonValue(true));
    QCOMPARE(exported(video, false, false).value(QStringLiteral("ap")), QJsonValue(false));
    QCOMPARE(exported(video, true, true).value(QStringLiteral("ap")), QJsonValue(false));

    VTHTMLWidget widget;
    widget.initDefault();
    widget.setUrl(QStringLiteral("https://example.org"));
    widget.setSrcHTML(QStringLiteral("<p/>"));
    widget.setHTMLResource(pImage);
    QJsonObject json = exported(widget, true, false);
    QCOMPARE(json.value(QStringLiteral("useresource")), QJsonValue(false));
    QCOMPARE(json.value(QStringLiteral("url")).toString(), QStringLiteral("https://example.org"));
    QVERIFY(!json.contains(QStringLiteral("rs")));
    QCOMPARE(json.value(QStringLiteral("srcdoc")).toString(), QStringLiteral("<p/>"));
    widget.setUseResource(true);
    json = exported(widget, false, true);
    QCOMPARE(json.value(QStringLiteral("rs")).toInt(), 5);
    QVERIFY(!json.contains(QStringLiteral("url")));

    VTFreeFormShape freeform;
    freeform.initDefault();
    freeform.setEditPoint(true);
    QCOMPARE(exported(freeform, true, false).value(QStringLiteral("editPoint")), QJsonValue(true));
    QVERIFY(!serialized(freeform).contains(QStringLiteral("editPoint")));
    const std::unique_ptr<VTElement> pCopy(freeform.clone());
    QCOMPARE(exported(*pCopy, true, false).value(QStringLiteral("editPoint")), QJsonValue(false));
    QCOMPARE(exported(freeform, true, false).value(QStringLiteral("s")).toArray().first().toInt(), 0);

    VTText text;
    text.initDefault();
    const QJsonArray txt = exported(text, true, false).value(QStringLiteral("txt")).toArray();
    QCOMPARE(txt.size(), 15);
    QCOMPARE(txt.at(1).toString(), QStringLiteral("'Arial'"));
    QJsonArray direct;
    text.serializeTextToExport(direct);
    QCOMPARE(direct, txt);
    image.detachResources();
    video.detachResources();
    widget.detachResources();
}

void TestElementKinds::hostileInput()
{
    VTResourceManager manager(nullptr);
    VTResource* pVideo = addResource(manager, VTResource::Video, 2);
    addResource(manager, VTResource::Image, 3);

    struct Case
    {
        int nType;
        QJsonObject json;
        QString key;
    };
    const QString huge(VTHTMLWidget::kMaxUrlLength + 1, QLatin1Char('a'));
    const QList<Case> cases{
        {VT::VideoElement, {{"resourceId", "two"}}, "resourceId"},
        {VT::VideoElement, {{"resourceId", 2.5}}, "resourceId"},
        {VT::VideoElement, {{"resourceId", 1e300}}, "resourceId"},
        {VT::VideoElement, {{"resourceId", 2}, {"volume", "loud"}}, "volume"},
        {VT::VideoElement, {{"resourceId", 2}, {"volume", 7.0}}, "volume"},
        {VT::VideoElement,
         {{"resourceId", 2}, {"volume", std::numeric_limits<double>::quiet_NaN()}},
         "volume"},
        {VT::VideoElement, {{"resourceId", 2}, {"duration", -40}}, "duration"},
        {VT::VideoElement, {{"resourceId", 2}, {"duration", QJsonArray{1}}}, "duration"},
        {VT::VideoElement, {{"resourceId", 2}, {"loop", "yes"}}, "loop"},
        {VT::HTMLWidgetElement, {{"url", huge}}, "url"},
        {VT::HTMLWidgetElement, {{"url", 12}}, "url"},
        {VT::HTMLWidgetElement, {{"srcdoc", QJsonObject{}}}, "srcdoc"},
        {VT::HTMLWidgetElement, {{"useresource", "true"}, {"resourceId", 3}}, "useresource"},
        {VT::ImageElement, {{"resourceId", QJsonValue::Null}}, "resourceId"},
    };
    for (const Case& test : cases) {
        const QString what = QStringLiteral("%1 %2").arg(test.nType).arg(test.key);
        const auto pElement = make(test.nType);
        QStringList lstProblems;
        QVERIFY2(pElement->parse(test.json, &manager, &lstProblems), qPrintable(what));
        QVERIFY2(lstProblems.join('\n').contains(QStringLiteral("\"%1\"").arg(test.key)),
                 qPrintable(what + QLatin1Char('\n') + lstProblems.join('\n')));
        if (auto* pMedia = qobject_cast<VTMedia*>(pElement.get())) {
            QCOMPARE(pMedia->getMediaResource(), pVideo);
            QVERIFY(pMedia->getVolume() >= 0.0 && pMedia->getVolume() <= 1.0);
            QVERIFY(pMedia->getDuration() >= 0);
            QVERIFY(!pMedia->isLoop());
        }
        if (auto* pWidget = qobject_cast<VTHTMLWidget*>(pElement.get())) {
            QVERIFY(pWidget->getUrl().isEmpty() && pWidget->getSrcHTML().isEmpty());
            QVERIFY(!pWidget->isUseResource());
        }
        pElement->detachResources();
    }
    QCOMPARE(pVideo->getUsageCount(), 0);

    // Setters keep the values in their range.
    VTMedia audio(VT::AudioElement);
    audio.setVolume(std::numeric_limits<double>::infinity());
    QCOMPARE(audio.getVolume(), 1.0);
    audio.setVolume(-2.0);
    QCOMPARE(audio.getVolume(), 0.0);
    audio.setDuration(-1);
    QCOMPARE(audio.getDuration(), 0);
}

QTEST_GUILESS_MAIN(TestElementKinds)
#include "tst_elementkinds.moc"
