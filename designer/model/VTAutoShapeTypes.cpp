#include "VTAutoShapeTypes.h"

#include "VTTypes.h"

const QVector<VTAutoShapeTypes::ShapeInfo>& VTAutoShapeTypes::getShapes()
{
    // clang-format off
    static const QVector<ShapeInfo> shapes{
        {Rectangle, QT_TR_NOOP("Rectangle"), BasicShapes, "rectangle"},
        {RoundRect, QT_TR_NOOP("Rounded Rect"), BasicShapes, "roundrect"},
        {Triangle, QT_TR_NOOP("Triangle"), BasicShapes, "triangle"},
        {Diamond, QT_TR_NOOP("Diamond"), BasicShapes, "diamond"},
        {Oval, QT_TR_NOOP("Oval"), BasicShapes, "oval"},
        {Heart, QT_TR_NOOP("Heart"), BasicShapes, "heart"},
        {Cross, QT_TR_NOOP("Cross"), BasicShapes, "cross"},
        {Plaque, QT_TR_NOOP("Plaque"), BasicShapes, "plaque"},
        {Trapezoid, QT_TR_NOOP("Trapezoid"), BasicShapes, "trapezoid"},
        {Moon, QT_TR_NOOP("Moon"), BasicShapes, "moon"},
        {Polygon5, QT_TR_NOOP("5 Polygons"), BasicShapes, "polygon_5"},
        {Polygon6, QT_TR_NOOP("6 Polygons"), BasicShapes, "polygon_6"},
        {Polygon8, QT_TR_NOOP("8 Polygons"), BasicShapes, "polygon_8"},
        {RightTriangle, QT_TR_NOOP("Right Triangle"), BasicShapes, "righttriangle"},
        {Data, QT_TR_NOOP("Data"), BasicShapes, "data"},
        {OffpageConnector, QT_TR_NOOP("Offpage Connector"), BasicShapes, "connector"},
        {Display, QT_TR_NOOP("Display"), BasicShapes, "display"},
        {Card, QT_TR_NOOP("Card"), BasicShapes, "card"},
        {StoredData, QT_TR_NOOP("Stored Data"), BasicShapes, "storedata"},
        {Wave, QT_TR_NOOP("Wave"), BasicShapes, "wave"},
        {Pentagon, QT_TR_NOOP("Pentagon"), BlockArrows, "pentagon"},
        {RectCallout, QT_TR_NOOP("Rectangle Callout"), Callouts, "rectcallout"},
        {RoundedRectCallout, QT_TR_NOOP("Rounded Rect Callout"), Callouts, "roundedrectcallout"},
        {OvalCallout, QT_TR_NOOP("Oval Callout"), Callouts, "ovalcallout"},
        {RightArrow, QT_TR_NOOP("Right Arrow"), BlockArrows, "rightarrow"},
        {LeftArrow, QT_TR_NOOP("Left Arrow"), BlockArrows, "leftarrow"},
        {UpArrow, QT_TR_NOOP("Up Arrow"), BlockArrows, "uparrow"},
        {DownArrow, QT_TR_NOOP("Down Arrow"), BlockArrows, "downarrow"},
        {UpDownArrow, QT_TR_NOOP("Up Down Arrow"), BlockArrows, "updownarrow"},
        {LeftRightArrow, QT_TR_NOOP("Left Right Arrow"), BlockArrows, "leftrightarrow"},
        {NotchedRightArrow, QT_TR_NOOP("Notched Right Arrow"), BlockArrows, "notchedrightarrow"},
        {LeftArrowCallout, QT_TR_NOOP("Left Arrow Callout"), BlockArrows, "leftarrowcallout"},
        {RightArrowCallout, QT_TR_NOOP("Right Arrow Callout"), BlockArrows, "rightarrowcallout"},
        {UpArrowCallout, QT_TR_NOOP("Up Arrow Callout"), BlockArrows, "uparrowcallout"},
        {DownArrowCallout, QT_TR_NOOP("Down Arrow Callout"), BlockArrows, "downarrowcallout"},
        {Chevron, QT_TR_NOOP("Chevron"), BlockArrows, "chevron"},
        {Star4, QT_TR_NOOP("4 Stars"), Stars, "star_4"},
        {Star5, QT_TR_NOOP("5 Stars"), Stars, "star_5"},
        {Star6, QT_TR_NOOP("6 Stars"), Stars, "star_6"},
        {Star8, QT_TR_NOOP("8 Stars"), Stars, "star_8"},
        {Star12, QT_TR_NOOP("12 Stars"), Stars, "star_12"},
        {Star24, QT_TR_NOOP("24 Stars"), Stars, "star_24"},
        {Line, QT_TR_NOOP("Line"), Freeforms, "line"},
        {Arrow, QT_TR_NOOP("Arrow"), Freeforms, "arrow"},
        {DoubleArrow, QT_TR_NOOP("Double Arrow"), Freeforms, "double_arrow"},
        {Curve, QT_TR_NOOP("Curve"), Freeforms, "curve"},
        {FreeFormShape, QT_TR_NOOP("Freeform: Shape"), Freeforms, "freeform"},
        {FreeFormScribble, QT_TR_NOOP("Freeform: Scribble"), Freeforms, "scribble"},
    };
    // clang-format on
    return shapes;
}

const VTAutoShapeTypes::ShapeInfo* VTAutoShapeTypes::findShape(int nType)
{
    for (const ShapeInfo& info : getShapes()) {
        if (info.nType == nType)
            return &info;
    }
    return nullptr;
}

QString VTAutoShapeTypes::getName(int nType)
{
    const ShapeInfo* pInfo = findShape(nType);
    return pInfo ? tr(pInfo->name) : QString();
}

int VTAutoShapeTypes::getGroup(int nType)
{
    const ShapeInfo* pInfo = findShape(nType);
    return pInfo ? pInfo->group : -1;
}

QString VTAutoShapeTypes::getImageName(int nType)
{
    const ShapeInfo* pInfo = findShape(nType);
    return pInfo ? QString::fromLatin1(pInfo->image) : QString();
}

QString VTAutoShapeTypes::getAutoShapeGroupName(int nGroup)
{
    switch (nGroup) {
    case BasicShapes:
        return tr("Basic Shapes");
    case Callouts:
        return tr("Callouts");
    case Freeforms:
        return tr("Freeforms");
    case BlockArrows:
        return tr("Block Arrows");
    case Stars:
        return tr("Stars");
    default:
        return tr("Unknown");
    }
}

int VTAutoShapeTypes::getElementType(int nType)
{
    return isFreeFormType(nType) ? VT::FreeFormElement : VT::ShapeElement;
}
