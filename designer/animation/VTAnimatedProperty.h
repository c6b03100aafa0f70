#pragma once

#include "VTLayoutKey.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonValue>
#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

class QObject;
class VTElement;

// What the animation model knows about each VT::ElementProperty number that can occur in a
// keyframe: the Qt property a key segment writes, the object that holds it in a given layout, the
// unit and range of a key value, which element may animate it, and how a value goes to the
// player.
//
// Names, export keys and groups come from VTElementPropertyInfo, so that the timeline, the
// inspector and the export agree on them; this class narrows them to the properties that
// keyframes carry. Property numbers come from files and commands: a number outside the table gives
// empty texts, null objects and false, never a crash.
class VTAnimatedProperty final
{
    Q_DECLARE_TR_FUNCTIONS(VTAnimatedProperty)
public:
    VTAnimatedProperty() = delete;

    // The Qt property that key segments animate; empty for numbers that no keyframe carries and
    // for the playback row, which has a track but no property.
    static QByteArray getPropertyName(int nProperty);
    static QString getName(int nProperty);
    // The untranslated name; it is part of action ids, so it must not change with the language.
    static QString getName_NoTR(int nProperty);
    // The key of the player's animation data ("lt", "pos"...); empty where the player has none.
    static QString getExportName(int nProperty);
    static QString getGroupName(int nProperty, bool bTranslate);
    // The limits of a key value in the unit shown to the user (percent values times 100);
    // (INT_MIN, INT_MAX) where no limit applies.
    static QPair<int, int> getMinMax(int nProperty);
    static bool hasRange(int nProperty);
    // "px", "%", "deg", "color" or empty. Lengths whose unit the author chooses follow the unit
    // of that element's value in that layout: "%" for percent, "px" for pixels, empty for any
    // other unit or when the layout holds no such value.
    static QString getUnitSign(const VTElement* pElement, int nProperty, const VTLayoutKey& key);
    // The object whose Qt property getPropertyName(nProperty) a keyframe animates in that layout.
    // Values that the element itself carries are animated through the element, which writes its
    // current layout; values of a kind's block or of a sub-object are animated on the object of
    // the given layout. Null where there is none: a sub-object the layout lacks, a kind without
    // the value, a property without target.
    static QObject* getTargetObject(VTElement* pElement, int nProperty, const VTLayoutKey& key);

    // The animatable properties, in the order of their rows in the timeline.
    static const QVector<int>& getAnimatedProps();
    static bool isAnimatedProp(int nProperty);
    // Whether the element's kind may animate the property at all; the layout does not matter.
    static bool canAnimate(const VTElement* pElement, int nProperty);
    // Display jumps from one key to the next; every other property can move between keys.
    static bool canHaveTransition(int nProperty);
    // Whether an animation of the property can exist for the element in layout to, carried over
    // from layout from: the element's coordinate type, its fill, clip and shadow styles and the
    // units of the value in both layouts must let the track mean the same thing.
    static bool canAddAnimationType(const VTElement* pElement, int nProperty, const VTLayoutKey& from,
                                    const VTLayoutKey& to);

    // The QMetaType id of a key value: a point for the location, a colour for colours, a double
    // for everything else.
    static int getValueType(int nProperty);
    // A key value as the player's animation entries carry it: numbers for percent values the
    // player scales itself, "50%" for other percent values, [r, g, b, a] for colours, a whole
    // number for the gradient angle, [x, y] for the location and "12px" for the rest.
    static QJsonValue toExportValue(int nProperty, const QString& unit, const QVariant& value);
    // A plain value of the element in the same forms, but kept precise: the gradient angle as a
    // double and the last form with up to six significant digits instead of a whole number.
    static QJsonValue toSavedExportValue(int nProperty, const QString& unit, const QVariant& value);
};
