#pragma once

#include <QHashFunctions>
#include <QString>

// One font that an export has to provide: a family and the styles it is used in. Text blocks
// report these; the export collects them into a set.
struct VTExportedFontInfo
{
    QString family;
    bool bold = false;
    bool italic = false;
    // Position in which the entry was first met, so a collected set can be listed in document
    // order; it takes no part in equality.
    int ordered = 0;

    friend bool operator==(const VTExportedFontInfo& a, const VTExportedFontInfo& b)
    {
        return a.family == b.family && a.bold == b.bold && a.italic == b.italic;
    }
    friend bool operator!=(const VTExportedFontInfo& a, const VTExportedFontInfo& b) { return !(a == b); }
};

inline uint qHash(const VTExportedFontInfo& info, uint nSeed = 0)
{
    return qHash(info.family, nSeed) ^ (info.bold ? 0x9e3779b9U : 0U) ^ (info.italic ? 0x7f4a7c15U : 0U);
}
