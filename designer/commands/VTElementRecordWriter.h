#pragma once

#include <QJsonArray>
#include <QList>

class VTCmdParam;

// The entries of the element records (ids of 1000 and up): the values the element now has in its
// current layout, so the page can redraw what the action touched.
class VTElementRecordWriter final
{
public:
    VTElementRecordWriter() = delete;

    // Appends the entries of nId; false for the ids that are sent in the action's own form.
    static bool writeEntries(int nId, const QList<VTCmdParam*>& lstParams, QJsonArray& entries);
};
