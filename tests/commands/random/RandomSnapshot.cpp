#include "RandomSnapshot.h"

#include "VTAnimatedProperty.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementFactory.h"
#include "VTFreeFormShape.h"
#include "VTPreloader.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"

#include <QColor>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointF>
#include <QSet>

#include <algorithm>
#include <functional>
#include <memory>

namespace {

QString shortText(const QJsonValue& value)
{
    QString text;
    if (value.isObject())
        text = QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    else if (value.isArray())
        text = QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    else if (value.isUndefined())
        text = QStringLiteral("(missing)");
    else
        text = QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact))
                   .mid(1)
                   .chopped(1);
    return text.size() > 600 ? text.left(600) + QStringLiteral("...") : text;
}

QString difference(const QJsonValue& expected, const QJsonValue& actual, const QString& path,
                   const QJsonValue& expectedAround, const QJsonValue& actualAround)
{
    if (expected == actual)
        return QString();
    if (expected.isObject() && actual.isObject()) {
        const QJsonObject a = expected.toObject();
        const QJsonObject b = actual.toObject();
        QStringList keys = a.keys() + b.keys();
        keys.removeDuplicates();
        std::sort(keys.begin(), keys.end());
        for (const QString& key : qAsConst(keys)) {
            const QString found = difference(a.value(key), b.value(key), path + '/' + key, a, b);
            if (!found.isEmpty())
                return found;
        }
    } else if (expected.isArray() && actual.isArray()) {
        const QJsonArray a = expected.toArray();
        const QJsonArray b = actual.toArray();
        for (int i = 0; i < qMax(a.size(), b.size()); ++i) {
            const QString found = difference(i < a.size() ? a.at(i) : QJsonValue(QJsonValue::Undefined),
                                             i < b.size() ? b.at(i) : QJsonValue(QJsonValue::Undefined),
                                             path + '/' + QString::number(i), a, b);
            if (!found.isEmpty())
                return found;
        }
    }
    return QStringLiteral("%1: expected %2, got %3\nin: expected %4\n    got      %5")
        .arg(path, shortText(expected), shortText(actual), shortText(expectedAround),
             shortText(actualAround));
}

// Every leaf that differs between two forms, as a list of keys from their root.
void collectDifferences(const QJsonValue& a, const QJsonValue& b, const QStringList& path,
                        QList<QStringList>& lstPaths)
{
    if (a == b)
        return;
    if (a.isObject() && b.isObject()) {
        const QJsonObject first = a.toObject();
        const QJsonObject second = b.toObject();
        QStringList keys = first.keys() + second.keys();
        keys.removeDuplicates();
        for (const QString& key : qAsConst(keys))
            collectDifferences(first.value(key), second.value(key), path + QStringList{key}, lstPaths);
    } else if (a.isArray() && b.isArray() && a.toArray().size() == b.toArray().size()) {
        for (int i = 0; i < a.toArray().size(); ++i)
            collectDifferences(a.toArray().at(i), b.toArray().at(i), path + QStringList{QString::number(i)},
                               lstPaths);
    } else {
        lstPaths.append(path);
    }
}

// Values that differ from the given one, in the order they are tried: a setter may refuse some
// (a display of 2, an opacity above 1).
QVariantList otherValues(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Double:
        return {value.toDouble() + 0.37, value.toDouble() - 0.37, 0.5};
    case QMetaType::Int:
        return {value.toInt() - 1, value.toInt() + 1, 0, 1};
    case QMetaType::Bool:
        return {!value.toBool()};
    case QMetaType::QPointF:
        return {value.toPointF() + QPointF(7.0, 9.0)};
    case QMetaType::QColor: {
        const QColor color = value.value<QColor>();
        return {QColor(255 - color.red(), 255 - color.green(), 255 - color.blue(), color.alpha())};
    }
    default:
        return {};
    }
}

// Where the value that a keyframe of the property animates sits in an element's saved form: found
// by writing that value on a fresh element of the kind and looking at what changed. A path into a
// layout's values starts with "values".
QList<QStringList> savedPathsOf(int nType, int nProperty)
{
    static QHash<QPair<int, int>, QList<QStringList>> s_hashPaths;
    const QPair<int, int> key(nType, nProperty);
    auto it = s_hashPaths.find(key);
    if (it != s_hashPaths.end())
        return it.value();
    std::unique_ptr<VTElement> pElement;
    if (nType == VT::SceneElement) {
        pElement = std::make_unique<VTScene>();
        pElement->initDefault();
    } else {
        pElement.reset(VTElementFactory::createElement(nType));
    }
    QList<QStringList> lstPaths;
    QObject* pTarget =
        pElement ? VTAnimatedProperty::getTargetObject(pElement.get(), nProperty, VTLayoutKey::base())
                 : nullptr;
    const QByteArray name = VTAnimatedProperty::getPropertyName(nProperty);
    if (pTarget && !name.isEmpty()) {
        QJsonObject before;
        pElement->serialize(before);
        QList<QStringList> lstFound;
        for (const QVariant& other : otherValues(pTarget->property(name.constData()))) {
            pTarget->setProperty(name.constData(), other);
            QJsonObject after;
            pElement->serialize(after);
            collectDifferences(before, after, {}, lstFound);
            if (!lstFound.isEmpty())
                break;
        }
        for (QStringList path : qAsConst(lstFound)) {
            if (path.size() > 3 && path.at(0) == QLatin1String("respProps") &&
                path.at(2) == QLatin1String("values"))
                path = path.mid(2);
            lstPaths.append(path);
        }
    }
    s_hashPaths.insert(key, lstPaths);
    return lstPaths;
}

void removePath(QJsonObject& object, const QStringList& path, int nFrom = 0)
{
    if (nFrom >= path.size())
        return;
    const QString& key = path.at(nFrom);
    if (nFrom == path.size() - 1) {
        object.remove(key);
        return;
    }
    if (!object.value(key).isObject())
        return;
    QJsonObject child = object.value(key).toObject();
    removePath(child, path, nFrom + 1);
    object.insert(key, child);
}

// The scenes of a snapshot, each with the name of its owner: the document, a symbol resource or
// the preloader.
void forEachScene(QJsonObject& project, const std::function<void(QJsonObject&, const QString&)>& fnVisit)
{
    const auto visitScenes = [&fnVisit](QJsonObject& owner, const QString& name) {
        QJsonArray scenes = owner.value(QLatin1String("scenes")).toArray();
        for (QJsonValueRef sceneRef : scenes) {
            QJsonObject scene = sceneRef.toObject();
            fnVisit(scene, name + '/' + QString::number(scene.value(QLatin1String("id")).toInt()));
            sceneRef = scene;
        }
        owner.insert(QLatin1String("scenes"), scenes);
    };
    QJsonObject document = project.value(QLatin1String("document")).toObject();
    visitScenes(document, QStringLiteral("document"));
    project.insert(QLatin1String("document"), document);
    QJsonObject symbols = project.value(QLatin1String("symbols of resources")).toObject();
    for (auto it = symbols.begin(); it != symbols.end(); ++it) {
        QJsonObject symbol = it.value().toObject();
        visitScenes(symbol, it.key());
        it.value() = symbol;
    }
    project.insert(QLatin1String("symbols of resources"), symbols);
    if (project.contains(QLatin1String("preloader"))) {
        QJsonObject preloader = project.value(QLatin1String("preloader")).toObject();
        QJsonObject preloaderDocument = preloader.value(QLatin1String("document")).toObject();
        visitScenes(preloaderDocument, QStringLiteral("preloader"));
        preloader.insert(QLatin1String("document"), preloaderDocument);
        project.insert(QLatin1String("preloader"), preloader);
    }
}

// The same walk that only reads.
void forEachScene(const QJsonObject& project,
                  const std::function<void(const QJsonObject&, const QString&)>& fnVisit)
{
    const auto visitScenes = [&fnVisit](const QJsonObject& owner, const QString& name) {
        for (const QJsonValue& scene : owner.value(QLatin1String("scenes")).toArray())
            fnVisit(scene.toObject(),
                    name + '/' + QString::number(scene.toObject().value(QLatin1String("id")).toInt()));
    };
    visitScenes(project.value(QLatin1String("document")).toObject(), QStringLiteral("document"));
    const QJsonObject symbols = project.value(QLatin1String("symbols of resources")).toObject();
    for (auto it = symbols.begin(); it != symbols.end(); ++it)
        visitScenes(it.value().toObject(), it.key());
    visitScenes(
        project.value(QLatin1String("preloader")).toObject().value(QLatin1String("document")).toObject(),
        QStringLiteral("preloader"));
}

QString keyOf(const QString& scene, int nElement, int nProperty)
{
    return QStringLiteral("%1/%2/%3").arg(scene).arg(nElement).arg(nProperty);
}

// An element of a scene without the values of its masked properties, in every layout: a value
// that the element holds itself goes to the block of whatever layout the element shows, which
// need not be the layout of the keyframe.
void maskElement(QJsonObject& element, const QString& scene, const RandomSnapshot::Animated& setMask)
{
    const int nType = element.value(QLatin1String("type")).toInt();
    const int nId = element.value(QLatin1String("id")).toInt();
    QJsonArray layouts = element.value(QLatin1String("respProps")).toArray();
    for (int nProperty = 0; nProperty < VT::ElementPropertyCount; ++nProperty) {
        if (!setMask.contains(keyOf(scene, nId, nProperty)))
            continue;
        for (const QStringList& path : savedPathsOf(nType, nProperty)) {
            if (path.first() != QLatin1String("values")) {
                removePath(element, path);
                continue;
            }
            for (QJsonValueRef layoutRef : layouts) {
                QJsonObject layout = layoutRef.toObject();
                removePath(layout, path);
                layoutRef = layout;
            }
        }
    }
    element.insert(QLatin1String("respProps"), layouts);
    if (!element.contains(QLatin1String("children")))
        return;
    QJsonArray children = element.value(QLatin1String("children")).toArray();
    for (QJsonValueRef childRef : children) {
        QJsonObject child = childRef.toObject();
        maskElement(child, scene, setMask);
        childRef = child;
    }
    element.insert(QLatin1String("children"), children);
}

QJsonObject masked(QJsonObject project, const RandomSnapshot::Animated& setMask)
{
    if (!setMask.isEmpty())
        forEachScene(project, [&setMask](QJsonObject& scene, const QString& name) {
            maskElement(scene, name, setMask);
        });
    return project;
}

QJsonArray sortedBy(const QJsonArray& array, const QLatin1String& key)
{
    QList<QJsonValue> lstItems(array.begin(), array.end());
    std::stable_sort(lstItems.begin(), lstItems.end(), [&key](const QJsonValue& a, const QJsonValue& b) {
        return a.toObject().value(key).toInt() < b.toObject().value(key).toInt();
    });
    QJsonArray sorted;
    for (const QJsonValue& item : qAsConst(lstItems))
        sorted.append(item);
    return sorted;
}

void normalize(QJsonValue& value)
{
    if (value.isArray()) {
        QJsonArray array = value.toArray();
        for (QJsonValueRef item : array) {
            QJsonValue copy = item;
            normalize(copy);
            item = copy;
        }
        value = array;
        return;
    }
    if (!value.isObject())
        return;
    QJsonObject object = value.toObject();
    for (const char* pszKey : {"nextChildId", "nextId", "current_id"})
        object.remove(QLatin1String(pszKey));
    if (object.contains(QLatin1String("respAnims")))
        object.remove(QLatin1String("duration"));
    for (auto it = object.begin(); it != object.end(); ++it) {
        // Element trees and layout blocks hold nothing of the above, and most of the project.
        if (it.key() == QLatin1String("children") || it.key() == QLatin1String("respProps"))
            continue;
        QJsonValue copy = it.value();
        normalize(copy);
        if (it.key() == QLatin1String("animations") && copy.isArray()) {
            copy = sortedBy(copy.toArray(), QLatin1String("element_id"));
        } else if (it.key() == QLatin1String("keyframes") && copy.isArray()) {
            copy = sortedBy(copy.toArray(), QLatin1String("type"));
        } else if (it.key() == QLatin1String("triggers") && copy.isArray()) {
            QList<QJsonValue> lstTriggers(copy.toArray().begin(), copy.toArray().end());
            const auto text = [](const QJsonValue& trigger) {
                return QJsonDocument(trigger.toArray()).toJson(QJsonDocument::Compact);
            };
            std::stable_sort(lstTriggers.begin(), lstTriggers.end(),
                             [&text](const QJsonValue& a, const QJsonValue& b) { return text(a) < text(b); });
            QJsonArray triggers;
            for (const QJsonValue& trigger : qAsConst(lstTriggers))
                triggers.append(trigger);
            copy = triggers;
        } else if (it.key() == QLatin1String("playback") && copy.isArray()) {
            QJsonArray marks = copy.toArray();
            for (QJsonValueRef markRef : marks) {
                QJsonObject mark = markRef.toObject();
                QJsonObject data = mark.value(QLatin1String("action_data")).toObject();
                data.remove(QLatin1String("duration"));
                mark.insert(QLatin1String("action_data"), data);
                markRef = mark;
            }
            copy = marks;
        } else if (it.key() == QLatin1String("respAnims") && copy.isArray()) {
            QJsonArray layouts;
            for (const QJsonValue& layout : copy.toArray()) {
                if (!layout.toObject().value(QLatin1String("animations")).toArray().isEmpty())
                    layouts.append(layout);
            }
            copy = layouts;
        }
        it.value() = copy;
    }
    value = object;
}

// Where the user works, which undo and redo restore though no file holds it: the symbols being
// edited, the elements selected in each scene and the freeforms whose points are being edited.
QJsonObject editingState(const VTDocument& document)
{
    const VTResourceManager* pResources = document.getResourceManager();
    const auto ownerOf = [pResources](VTSymbol* pSymbol) {
        const VTResource* pResource = pResources->getResourceForSymbol(pSymbol);
        return pResource ? QString::number(pResource->getId()) : QStringLiteral("document");
    };
    QJsonArray editing;
    for (VTSymbol* pSymbol : document.getEditingSymbolStack())
        editing.append(ownerOf(pSymbol));
    QJsonObject selected;
    QJsonObject pointEditing;
    QList<VTSymbol*> lstSymbols = pResources->getResourceSymbolMap().values();
    lstSymbols.prepend(const_cast<VTDocument*>(&document));
    for (VTSymbol* pSymbol : qAsConst(lstSymbols)) {
        for (const VTScene* pScene : pSymbol->getSceneManager()->getScenes()) {
            QJsonArray ids;
            QJsonArray editedPaths;
            std::function<void(const VTElement*)> collect = [&](const VTElement* pParent) {
                for (const VTElement* pChild : pParent->getChildren()) {
                    if (pChild->isSelected())
                        ids.append(pChild->getId());
                    const auto* pFreeForm = qobject_cast<const VTFreeFormShape*>(pChild);
                    if (pFreeForm && pFreeForm->isEditPoint())
                        editedPaths.append(pChild->getId());
                    collect(pChild);
                }
            };
            collect(pScene);
            const QString scene = QStringLiteral("%1/%2").arg(ownerOf(pSymbol)).arg(pScene->getId());
            selected.insert(scene, ids);
            pointEditing.insert(scene, editedPaths);
        }
    }
    return QJsonObject{{QStringLiteral("edited symbols"), editing},
                       {QStringLiteral("selected elements"), selected},
                       {QStringLiteral("freeforms in point editing"), pointEditing}};
}

} // namespace

QJsonObject RandomSnapshot::take(const VTDocument& document)
{
    QJsonObject project;
    document.saveData(project);
    QJsonObject symbols;
    const auto& mapSymbols = document.getResourceManager()->getResourceSymbolMap();
    for (auto it = mapSymbols.cbegin(); it != mapSymbols.cend(); ++it) {
        QJsonObject symbol;
        it.value()->saveDataWithoutResource(symbol);
        QJsonObject layouts = symbol.value(QLatin1String("layoutBreakpoints")).toObject();
        layouts.remove(QLatin1String("hCurrentId"));
        layouts.remove(QLatin1String("vCurrentId"));
        symbol.insert(QLatin1String("layoutBreakpoints"), layouts);
        symbols.insert(QString::number(it.key()->getId()), symbol);
    }
    project.insert(QStringLiteral("symbols of resources"), symbols);
    project.insert(QStringLiteral("beside the file"), editingState(document));
    if (const VTPreloader* pPreloader = document.getPreloaderDoc()) {
        QJsonObject preloader;
        pPreloader->saveData(preloader);
        project.insert(QStringLiteral("preloader"), preloader);
    }
    QJsonValue value(project);
    normalize(value);
    return value.toObject();
}

QString RandomSnapshot::animatedKey(const VTDocument& document, const VTElement* pElement, int nProperty)
{
    const auto* pScene = pElement ? qobject_cast<const VTScene*>(pElement->getScene()) : nullptr;
    const VTSceneManager* pScenes = pScene ? pScene->getSceneManager() : nullptr;
    VTSymbol* pSymbol = pScenes ? pScenes->getSymbol() : nullptr;
    if (!pSymbol)
        return QString();
    QString owner = QStringLiteral("document");
    if (pSymbol == document.getPreloaderDoc()) {
        owner = QStringLiteral("preloader");
    } else if (pSymbol != &document) {
        const VTResource* pResource = document.getResourceManager()->getResourceForSymbol(pSymbol);
        owner = pResource ? QString::number(pResource->getId()) : QString();
    }
    return keyOf(owner + '/' + QString::number(pScene->getId()), pElement->getId(), nProperty);
}

RandomSnapshot::Animated RandomSnapshot::animated(const QJsonObject& snapshot)
{
    Animated setAnimated;
    forEachScene(snapshot, [&setAnimated](const QJsonObject& scene, const QString& name) {
        const QJsonArray timelines =
            scene.value(QLatin1String("timelines")).toObject().value(QLatin1String("timelines")).toArray();
        for (const QJsonValue& timeline : timelines) {
            for (const QJsonValue& layout : timeline.toObject().value(QLatin1String("respAnims")).toArray()) {
                for (const QJsonValue& animation :
                     layout.toObject().value(QLatin1String("animations")).toArray()) {
                    const int nId = animation.toObject().value(QLatin1String("element_id")).toInt();
                    for (const QJsonValue& keyframe :
                         animation.toObject().value(QLatin1String("keyframes")).toArray())
                        setAnimated.insert(
                            keyOf(name, nId, keyframe.toObject().value(QLatin1String("type")).toInt()));
                }
            }
        }
    });
    return setAnimated;
}

QString RandomSnapshot::firstDifference(const QJsonObject& expected, const QJsonObject& actual,
                                        const Animated& setMask)
{
    if (expected == actual)
        return QString();
    return difference(masked(expected, setMask), masked(actual, setMask), QString(), QJsonValue(),
                      QJsonValue());
}
