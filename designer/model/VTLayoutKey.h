#pragma once

#include <QHashFunctions>
#include <QMetaType>
#include <QPair>

// Selects one responsive layout: the id of a horizontal breakpoint and the id of a vertical one.
// It stays a pair of ints so that saved data, command parameters and map keys built from plain
// pairs convert without ceremony.
class VTLayoutKey : public QPair<int, int>
{
public:
    constexpr VTLayoutKey() noexcept
        : QPair<int, int>(0, 0)
    {}
    constexpr VTLayoutKey(int nHorizontalId, int nVerticalId) noexcept
        : QPair<int, int>(nHorizontalId, nVerticalId)
    {}
    constexpr VTLayoutKey(const QPair<int, int>& pair) noexcept // NOLINT: converting on purpose
        : QPair<int, int>(pair)
    {}

    // The layout that always exists and that every other one inherits from.
    static constexpr VTLayoutKey base() noexcept { return VTLayoutKey(0, 0); }
    // Not a layout: given to a call, it stands for the element's current layout.
    static constexpr VTLayoutKey current() noexcept { return VTLayoutKey(-1, -1); }

    constexpr int getHorizontalId() const noexcept { return first; }
    constexpr int getVerticalId() const noexcept { return second; }
    constexpr bool isBase() const noexcept { return first == 0 && second == 0; }
    constexpr bool isCurrent() const noexcept { return first == -1 && second == -1; }

    friend constexpr bool operator==(const VTLayoutKey& a, const VTLayoutKey& b) noexcept
    {
        return a.first == b.first && a.second == b.second;
    }
    friend constexpr bool operator!=(const VTLayoutKey& a, const VTLayoutKey& b) noexcept
    {
        return !(a == b);
    }
    // By horizontal id, then by vertical id, so a map walks the layouts column by column.
    friend constexpr bool operator<(const VTLayoutKey& a, const VTLayoutKey& b) noexcept
    {
        return a.first < b.first || (a.first == b.first && a.second < b.second);
    }
};

inline uint qHash(const VTLayoutKey& key, uint nSeed = 0) noexcept
{
    return qHash(static_cast<const QPair<int, int>&>(key), nSeed);
}

Q_DECLARE_METATYPE(VTLayoutKey)
