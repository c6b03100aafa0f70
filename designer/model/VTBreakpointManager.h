#pragma once

#include "VTLayoutKey.h"

#include <QCoreApplication>
#include <QList>
#include <QPair>
#include <QStringList>
#include <QVector>

#include <memory>

class QJsonObject;

// The breakpoints of one symbol: values in pixels that cut the container's width (horizontal)
// and height (vertical) into ranges. Every pair of a horizontal and a vertical range is a layout,
// named by the ids of the two breakpoints that open them. Id 0 in a position of a layout key means
// that the direction has no breakpoints at all; as soon as it has some, its first entry has value 0
// and opens the range below the first real breakpoint.
//
// Ids come from one counter for both directions that only grows, so a removed breakpoint's id is
// never given to another one while blocks or animations might still be filed under it. Undo puts a
// breakpoint back with its old id.
//
// Each list is kept in ascending order of value by add(); update() does not reorder, it is the
// caller's business (validate()) to keep a value between its neighbours.
class VTBreakpointManager final
{
    Q_DECLARE_TR_FUNCTIONS(VTBreakpointManager)
public:
    enum Direction : int
    {
        Horizontal = 0,
        Vertical = 1,
    };
    // (id, value): what add() and remove() give back, (-1, -1) when they refuse.
    using Entry = QPair<int, int>;
    using EntryList = QVector<Entry>;
    // An entry of the host's preset lists: (value, enabled).
    using PresetList = QList<QPair<int, bool>>;

    // A file may hold no more per direction; far above what anyone designs for, and it keeps the
    // layout count (horizontal times vertical) within reach.
    static constexpr int kMaxBreakpointsPerDirection = 1000;

    VTBreakpointManager() = default;
    std::unique_ptr<VTBreakpointManager> clone() const;

    // Both lists become the default phone, tablet and desktop widths that fit into nWidth,
    // horizontally, behind a base entry; none at all when even the smallest does not fit.
    void initDefault(int nWidth);
    // Both lists become the enabled entries of the presets, each direction behind a base entry
    // when it gets any. Values below 1 are passed over.
    void init(const PresetList& lstHorizontal, const PresetList& lstVertical);

    // Inserts the value in order. An id below 1 takes the next id. Refused with (-1, -1), and the
    // counter untouched, for a value the direction has already, a negative value, an id the
    // direction has already, or when the counter has run out.
    Entry add(Direction direction, int nValue, int nId = -1);
    Entry addHorizontal(int nValue, int nId = -1) { return add(Horizontal, nValue, nId); }
    Entry addVertical(int nValue, int nId = -1) { return add(Vertical, nValue, nId); }
    // Sets the value of that id where it stands; false for an unknown id.
    bool update(Direction direction, int nId, int nValue);
    bool updateHorizontal(int nId, int nValue) { return update(Horizontal, nId, nValue); }
    bool updateVertical(int nId, int nValue) { return update(Vertical, nId, nValue); }
    // The removed (id, value), or (-1, -1) for an unknown id.
    Entry remove(Direction direction, int nId);
    Entry removeHorizontal(int nId) { return remove(Horizontal, nId); }
    Entry removeVertical(int nId) { return remove(Vertical, nId); }

    // The stored pair survives leaving responsive mode; bForShow asks what the stage shows, which
    // is the base layout while the mode is off.
    VTLayoutKey getCurrentId(bool bForShow) const;
    // (-1, -1) names no layout and is ignored.
    void setCurrentId(const VTLayoutKey& key);
    bool isResponsiveMode() const { return m_bResponsiveMode; }
    void setResponsiveMode(bool bResponsive) { m_bResponsiveMode = bResponsive; }
    // The id the next new breakpoint gets.
    int getNextId() const { return m_nNextId; }

    // The id of a value, or -1.
    int getHorizontalId(int nValue) const { return findId(m_lstHorizontal, nValue); }
    int getVerticalId(int nValue) const { return findId(m_lstVertical, nValue); }
    // The value of an id, or -1.
    int getHBreakpoint(int nId) const { return findValue(m_lstHorizontal, nId); }
    int getVBreakpoint(int nId) const { return findValue(m_lstVertical, nId); }
    QVector<int> getHorizontalIds() const { return getIds(m_lstHorizontal); }
    QVector<int> getVerticalIds() const { return getIds(m_lstVertical); }
    const EntryList& getHBreakpoints() const { return m_lstHorizontal; }
    const EntryList& getVBreakpoints() const { return m_lstVertical; }
    const EntryList& getBreakpoints(Direction direction) const;
    int countHBreakpoints() const { return m_lstHorizontal.size(); }
    int countVBreakpoints() const { return m_lstVertical.size(); }
    bool isEmpty() const { return m_lstHorizontal.isEmpty() && m_lstVertical.isEmpty(); }

    // (own value, next value) of an id's range: the next value is -1 for the last range, and both
    // are -1 for an unknown id.
    QPair<int, int> getRange(Direction direction, int nId) const;
    QPair<int, int> getHRange(int nId) const { return getRange(Horizontal, nId); }
    QPair<int, int> getVRange(int nId) const { return getRange(Vertical, nId); }

    // The layout whose ranges hold a container of that size; a size equal to a breakpoint belongs
    // to that breakpoint's range. 0 in a direction without breakpoints or below all of them.
    VTLayoutKey getBreakpointBySize(int nWidth, int nHeight) const;
    // The layouts that the given ids of one direction open, crossed with every id of the other
    // direction (or 0 when it has none).
    QList<VTLayoutKey> getBreakpointsFromDirection(Direction direction, const QVector<int>& vecIds) const;
    // Every layout of the symbol, the base first when bWithBase.
    QList<VTLayoutKey> getAllBreakpointIds(bool bWithBase) const;
    // A container size that lies inside the id's range, the given size when it does already; the
    // size itself for id 0.
    int getBestSize(Direction direction, int nId, int nSize) const;
    // The value clamped between the neighbours of the id, so that it can take the id's place
    // without colliding or changing the order; any value for an unknown id.
    int validate(Direction direction, int nId, int nValue) const;
    // Same values in both directions; ids do not count. False for null.
    bool isSameBreakpoints(const VTBreakpointManager* pOther) const;

    // Project form: the mode, the lists (only when not empty), the current pair and the counter.
    void serialize(QJsonObject& json) const;
    // The mode when bWithMode, then the lists that are not empty.
    void serializeCommon(QJsonObject& json, bool bWithMode) const;
    // Player form: the mode only when asked for.
    void serializeToExport(QJsonObject& json, bool bWithMode) const { serializeCommon(json, bWithMode); }
    // Replaces everything with the file's content. Entries are taken in file order; entries that
    // are not [id, value] pairs of whole numbers, have an id below 1, a negative value, or an id
    // or value met before in their direction are left out, and so is everything beyond
    // kMaxBreakpointsPerDirection. The counter is raised above every id read. What was left out
    // or replaced goes to pProblems, and so does a list out of order, which is kept as it is.
    // Always true: nothing in the file keeps a project from opening.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);

private:
    EntryList& list(Direction direction) { return direction == Vertical ? m_lstVertical : m_lstHorizontal; }
    static int findIndex(const EntryList& lstBreakpoints, int nId);
    static int findId(const EntryList& lstBreakpoints, int nValue);
    static int findValue(const EntryList& lstBreakpoints, int nId);
    static QVector<int> getIds(const EntryList& lstBreakpoints);
    void addPresets(Direction direction, const PresetList& lstPresets);
    void parseList(const QJsonObject& json, Direction direction, QStringList* pProblems);

    bool m_bResponsiveMode = false;
    int m_nCurrentHId = 0;
    int m_nCurrentVId = 0;
    int m_nNextId = 1;
    EntryList m_lstHorizontal;
    EntryList m_lstVertical;
};
