#pragma once

#include <QCoreApplication>
#include <QString>
#include <QVector>

// The numbers, names, groups and pictures of the shapes that the stage can draw. Files store the
// number; the outline that belongs to it is worked out by the stage page and the player, so the
// model only has to keep numbers and adjustment values as it got them. A number that is not in
// the table is kept too: a newer stage may know it.
class VTAutoShapeTypes final
{
    Q_DECLARE_TR_FUNCTIONS(VTAutoShapeTypes)
public:
    enum AutoShapeGroup : int
    {
        BasicShapes = 0,
        Callouts = 1,
        Freeforms = 2,
        BlockArrows = 3,
        Stars = 4,
    };

    enum AutoShapeType : int
    {
        Rectangle = 11,
        RoundRect = 12,
        RectCallout = 13,
        RoundedRectCallout = 14,
        RightArrow = 15,
        LeftArrow = 16,
        UpArrow = 17,
        DownArrow = 18,
        OvalCallout = 19,
        Cross = 20,
        Oval = 21,
        Diamond = 22,
        LeftRightArrow = 25,
        UpDownArrow = 26,
        RightArrowCallout = 27,
        DownArrowCallout = 28,
        LeftArrowCallout = 29,
        UpArrowCallout = 30,
        NotchedRightArrow = 31,
        Chevron = 32,
        Triangle = 33,
        RightTriangle = 34,
        Data = 35,
        Polygon5 = 41,
        Polygon6 = 42,
        Polygon8 = 44,
        Plaque = 53,
        Heart = 56,
        Moon = 57,
        Trapezoid = 61,
        OffpageConnector = 69,
        Display = 71,
        Card = 72,
        Pentagon = 73,
        StoredData = 74,
        Wave = 75,
        Star4 = 81,
        Star5 = 82,
        Star6 = 83,
        Star8 = 85,
        Star12 = 89,
        Star24 = 101,
        Line = 590,
        Arrow = 591,
        DoubleArrow = 592,
        Curve = 593,
        FreeFormShape = 594,
        FreeFormScribble = 595,
    };

    struct ShapeInfo
    {
        int nType;
        // Untranslated; getName translates.
        const char* name;
        AutoShapeGroup group;
        // Base name of the menu picture.
        const char* image;
    };

    VTAutoShapeTypes() = delete;

    // Every known shape, in the order in which the shape menus are filled.
    static const QVector<ShapeInfo>& getShapes();
    // Null for a number that is not in the table.
    static const ShapeInfo* findShape(int nType);
    static bool isKnownType(int nType) { return findShape(nType) != nullptr; }
    // The translated name, or an empty text for an unknown number.
    static QString getName(int nType);
    // The group, or -1 for an unknown number.
    static int getGroup(int nType);
    // The base name of the menu picture, or an empty text for an unknown number.
    static QString getImageName(int nType);
    // The translated group name; "Unknown" for any other number.
    static QString getAutoShapeGroupName(int nGroup);

    // Freeforms are drawn from a path of their own and are elements of the freeform kind.
    static bool isFreeFormType(int nType) { return nType >= Line && nType <= FreeFormScribble; }
    // A line, arrow or double arrow: a stroke with no inside.
    static bool isLineType(int nType) { return nType >= Line && nType <= DoubleArrow; }
    // VT::ElementType of a shape of this number.
    static int getElementType(int nType);
};
