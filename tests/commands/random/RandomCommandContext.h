#pragma once

#include "VTLayoutKey.h"

#include <QList>
#include <QRandomGenerator>
#include <QString>
#include <QVariant>

#include <functional>

class VTAnimation;
class VTCommand;
class VTDocument;
class VTElement;
class VTKeyframe;
class VTScene;
class VTSceneManager;
class VTSymbol;
class VTTimeline;

// What a random gesture works with: the open project, one seeded source of every choice (so a
// seed replays the same history), and the views of the model that most gestures start from.
// Gestures only read the model here; what they change, they change through the command they
// return, unless an action of that command skips its first redo.
class RandomCommandContext final
{
public:
    // One keyframe as the timeline holds it.
    struct KeyframeSlot
    {
        VTTimeline* pTimeline = nullptr;
        VTLayoutKey key;
        VTAnimation* pAnimation = nullptr;
        VTKeyframe* pKeyframe = nullptr;
    };

    RandomCommandContext(VTDocument& document, quint32 nSeed);

    VTDocument& getDocument() const { return m_document; }
    VTCommand* newCommand(const QString& name) const;

    // Both ends included.
    int intIn(int nMin, int nMax);
    double doubleIn(double dMin, double dMax);
    bool chance(int nPercent) { return intIn(0, 99) < nPercent; }
    template <typename T> T pick(const QList<T>& lst)
    {
        return lst.isEmpty() ? T() : lst.at(intIn(0, lst.size() - 1));
    }
    // Up to nMax distinct entries, in random order.
    template <typename T> QList<T> pickSome(QList<T> lst, int nMax)
    {
        QList<T> lstPicked;
        while (!lst.isEmpty() && lstPicked.size() < nMax)
            lstPicked.append(lst.takeAt(intIn(0, lst.size() - 1)));
        return lstPicked;
    }
    // A text no earlier call gave, so names stay unique in every list they go to.
    QString uniqueText(const QString& prefix);
    // A value of the same type, a little away from the given one.
    QVariant nudge(const QVariant& value);

    // The symbol being edited and its scenes; the current scene and its current timeline may be
    // missing.
    VTSymbol* getSymbol() const;
    VTSceneManager* getScenes() const;
    VTScene* getScene() const;
    VTTimeline* getTimeline() const;
    // The layouts the symbol has, base first.
    QList<VTLayoutKey> getLayouts() const;
    // The element and its subtree below it, parents first; the element itself is not listed.
    static QList<VTElement*> getElements(const VTElement* pRoot);
    // The elements of the current scene, optionally only those that pass the filter.
    QList<VTElement*> getElements(const std::function<bool(const VTElement*)>& fnFilter = {}) const;
    // The elements of the current scene that pass the filter or, when none does, those of every
    // scene of the symbol: the inspector reaches an element wherever the user selected it.
    QList<VTElement*> getElementsAnywhere(const std::function<bool(const VTElement*)>& fnFilter) const;
    // A layout of the symbol that the element holds a block for.
    VTLayoutKey pickLayout(const VTElement* pElement);
    // Every keyframe of every timeline of the current scene, optionally filtered.
    QList<KeyframeSlot> getKeyframes(const std::function<bool(const KeyframeSlot&)>& fnFilter = {}) const;

private:
    VTDocument& m_document;
    QRandomGenerator m_random;
    int m_nCounter = 0;
};
