#include "VTElementReader.h"

#include "VTBackground.h"
#include "VTElement.h"
#include "VTElementFactory.h"
#include "VTElementProperty.h"
#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonObject>

#include <memory>

namespace {

// Element reads in progress on this thread.
thread_local int t_nDepth = 0;
// Set when a read had to stop at the nesting limit, for the scene to refuse the whole tree.
thread_local bool t_bDepthExceeded = false;

const QString kRespProps = QStringLiteral("respProps");

// Adds the block, or deletes it when the element refuses it.
void adopt(VTElement& element, std::unique_ptr<VTElementProperty> pBlock, const VTLayoutKey& key)
{
    if (pBlock && element.addLayoutProperty(pBlock.get(), key))
        pBlock.release();
}

} // namespace

VTElementReader::DepthGuard::DepthGuard()
{
    ++t_nDepth;
}

VTElementReader::DepthGuard::~DepthGuard()
{
    --t_nDepth;
}

bool VTElementReader::takeDepthExceeded()
{
    const bool bExceeded = t_bDepthExceeded;
    t_bDepthExceeded = false;
    return bExceeded;
}

void VTElementReader::report(QStringList* pProblems, const QString& strContext, const QString& text)
{
    VTJsonReader(QJsonObject(), strContext, pProblems).report(text);
}

void VTElementReader::appendProblems(QStringList* pProblems, const QString& strContext,
                                     const QStringList& lstLines)
{
    // The part logged its lines already; they only need the element's name here.
    if (!pProblems)
        return;
    for (const QString& line : lstLines)
        pProblems->append(QStringLiteral("%1: %2").arg(strContext, line));
}

void VTElementReader::readLayouts(VTElement& element, const QJsonObject& json, VTResourceManager* pManager,
                                  const QString& strContext, QStringList* pProblems)
{
    const QString noBlockClass =
        tr("this version has no layout values for kind %1; the element has no size.").arg(element.getType());
    const QJsonValue value = json.value(kRespProps);
    if (!value.isArray()) {
        const VTJsonReader reader(json, strContext, pProblems);
        if (!value.isUndefined())
            reader.reportWrongType(kRespProps, VTJsonReader::tr("a list"),
                                   tr("the older form of one layout"));
        std::unique_ptr<VTElementProperty> pBlock(element.createLayoutBlock());
        if (!pBlock) {
            reader.report(noBlockClass);
            return;
        }
        QStringList lstBlockProblems;
        pBlock->parse(json, pManager, &lstBlockProblems);
        appendProblems(pProblems, strContext, lstBlockProblems);
        adopt(element, std::move(pBlock), VTLayoutKey::base());
        return;
    }

    const QJsonArray array = value.toArray();
    if (array.size() > VTElement::kMaxLayoutCount)
        report(pProblems, strContext,
               tr("\"respProps\" holds %1 layouts, more than %2; the rest are left out.")
                   .arg(array.size())
                   .arg(VTElement::kMaxLayoutCount));
    const int nCount = qMin(array.size(), VTElement::kMaxLayoutCount);
    for (int i = 0; i < nCount; ++i) {
        const QJsonValue entry = array.at(i);
        if (!entry.isObject()) {
            report(pProblems, strContext,
                   tr("layout %1 should be an object but is %2; it is left out.")
                       .arg(i)
                       .arg(VTJsonReader::describeType(entry)));
            continue;
        }
        const QJsonObject object = entry.toObject();
        const QJsonValue horizontal = object.value(QStringLiteral("hLayoutId"));
        const QJsonValue vertical = object.value(QStringLiteral("vLayoutId"));
        const VTLayoutKey key(VTJsonReader::isInt(horizontal) ? horizontal.toInt() : -1,
                              VTJsonReader::isInt(vertical) ? vertical.toInt() : -1);
        // Breakpoint ids count from 0; a negative one names no layout.
        if (key.first < 0 || key.second < 0) {
            report(pProblems, strContext,
                   tr("layout %1 has no valid \"hLayoutId\" and \"vLayoutId\"; it is left out.").arg(i));
            continue;
        }
        const QString layoutContext =
            tr("%1, layout (%2, %3)").arg(strContext).arg(key.first).arg(key.second);
        if (element.getLayoutProperty(key)) {
            report(pProblems, layoutContext, tr("the layout appears twice; the later entry is left out."));
            continue;
        }
        std::unique_ptr<VTElementProperty> pBlock(element.createLayoutBlock());
        if (!pBlock) {
            report(pProblems, strContext, noBlockClass);
            return;
        }
        const QJsonObject values =
            VTJsonReader(object, layoutContext, pProblems).readObject(QStringLiteral("values"));
        QStringList lstBlockProblems;
        pBlock->parse(values, pManager, &lstBlockProblems);
        appendProblems(pProblems, layoutContext, lstBlockProblems);
        adopt(element, std::move(pBlock), key);
    }

    if (element.getLayoutProperty(VTLayoutKey::base()))
        return;
    // Every other layout inherits from the base one, and the stage shows it outside responsive
    // mode; without it the element would have no size there.
    const QList<VTLayoutKey> lstKeys = element.getAllLayoutIds();
    std::unique_ptr<VTElementProperty> pBase;
    if (lstKeys.isEmpty()) {
        report(pProblems, strContext,
               tr("no layout could be read; the base layout (0, 0) takes the values of a new element."));
        pBase.reset(element.createLayoutBlock());
    } else {
        const VTLayoutKey source = lstKeys.first();
        report(pProblems, strContext,
               tr("the base layout (0, 0) is missing; it takes the values of layout (%1, %2).")
                   .arg(source.first)
                   .arg(source.second));
        pBase.reset(element.getLayoutProperty(source)->clone());
        pBase->setInherits(true);
        // Read blocks count their images at once; the copy must too.
        pBase->getBackground()->attachResources();
    }
    adopt(element, std::move(pBase), VTLayoutKey::base());
}

void VTElementReader::readChildren(VTElement& element, const QJsonArray& array, VTResourceManager* pManager,
                                   const QString& strContext, QStringList* pProblems)
{
    if (array.isEmpty())
        return;
    if (t_nDepth >= VTElement::kMaxTreeDepth) {
        t_bDepthExceeded = true;
        report(pProblems, strContext,
               tr("children nested deeper than %1 levels are left out: %2 here, with all below them.")
                   .arg(VTElement::kMaxTreeDepth)
                   .arg(array.size()));
        return;
    }
    if (array.size() > VTElement::kMaxChildCount)
        report(pProblems, strContext,
               tr("\"children\" holds %1 elements, more than %2; the rest are left out.")
                   .arg(array.size())
                   .arg(VTElement::kMaxChildCount));
    const int nCount = qMin(array.size(), VTElement::kMaxChildCount);
    for (int i = 0; i < nCount; ++i) {
        const QJsonValue value = array.at(i);
        if (!value.isObject()) {
            report(pProblems, strContext,
                   tr("child %1 should be an object but is %2; it is left out.")
                       .arg(i)
                       .arg(VTJsonReader::describeType(value)));
            continue;
        }
        const QJsonObject object = value.toObject();
        const VTJsonReader childReader(object, tr("%1, child %2").arg(strContext).arg(i), pProblems);
        const int nType = childReader.readInt(QStringLiteral("type"), VT::DivElement);
        const QString name = object.value(QStringLiteral("name")).toString();
        const QString what = name.isEmpty() ? tr("the element") : QStringLiteral("\"%1\"").arg(name);
        std::unique_ptr<VTElement> pChild(VTElementFactory::createElement(nType));
        if (!pChild) {
            childReader.report(tr("%1 is of kind %2 (%3), which this version cannot read; it is left out.")
                                   .arg(what, QString::number(nType), VTElement::mapType2DefaultName(nType)));
            continue;
        }
        if (!pChild->parse(object, pManager, pProblems)) {
            childReader.report(tr("%1 could not be read; it is left out.").arg(what));
            continue;
        }
        if (element.addChild(pChild.get()) >= 0)
            pChild.release();
    }
}
