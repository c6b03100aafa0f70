#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

class VTCmdParam;
class VTDocument;
class VTElement;
class VTResource;
class VTResourceManager;

// The parameter entries that the stage page reads for one record. The page keeps no model, so
// for most ids the entries are fresh values read from the model after the action ran; the other
// ids send the action's own parameters.
class VTRecordWriter final
{
public:
    VTRecordWriter() = delete;

    // pDocument reaches the preloader; pResourceManager exports resources and falls back to the
    // document's when null.
    static QJsonArray writeEntries(int nId, const QList<VTCmdParam*>& lstParams, bool bUndo,
                                   VTDocument* pDocument, VTResourceManager* pResourceManager);
    // Every parameter in order through VTCmdParam::serialize.
    static QJsonArray writeOwnForm(const QList<VTCmdParam*>& lstParams);

    // One entry each, with the type code of what it carries.
    static QJsonObject intEntry(int nValue);
    static QJsonObject doubleEntry(double dValue);
    static QJsonObject boolEntry(bool bValue);
    static QJsonObject textEntry(const QString& text);
    static QJsonObject objectEntry(const QJsonObject& object);
    static QJsonObject arrayEntry(const QJsonArray& array);
    static QJsonObject emptyEntry();

    // The id the page knows an element by: 0 for a scene, -1 for none.
    static int pageElementId(const VTElement* pElement);
    // The parameter at nIndex, or null past the end.
    static const VTCmdParam* param(const QList<VTCmdParam*>& lstParams, int nIndex)
    {
        return lstParams.value(nIndex, nullptr);
    }
    // The page's resource list form of one resource: an array holding its entry, empty for null.
    static QJsonArray exportResource(VTResourceManager* pManager, const VTResource* pResource);
};
