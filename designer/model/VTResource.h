#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUuid>

class VTResourceManager;

// One asset of a project. Elements and fills refer to it by id in saved data and by pointer at
// run time; the file itself is a private copy in the project's resource folder. A resource that
// the user removes stays registered, marked deleted, until the project is saved clean or closed,
// so that undo can bring it back.
class VTResource
{
    Q_DECLARE_TR_FUNCTIONS(VTResource)
public:
    enum ResourceType : int
    {
        NoType = -1,
        Image = 0,
        Audio = 1,
        Video = 2,
        Symbol = 3,
        Font = 4,
        Script = 5,
        StyleSheet = 6,
        Html = 7,
        Other = 8,
    };

    explicit VTResource(ResourceType type = NoType);
    virtual ~VTResource();
    VTResource& operator=(const VTResource&) = delete;

    // A copy with the same uuid that is not registered anywhere: id -1, no uses.
    virtual VTResource* clone() const;
    // The name the exported page knows the file by: the display name with the file's suffix.
    virtual QString getFileName4Export() const;
    virtual QString getFileName() const { return m_strFileName; }
    virtual QString getHashedFileName() const { return m_strHashedFileName; }
    virtual void setFileName(const QString& fileName);
    // Whether the resource panel may drop it on the stage.
    virtual bool acceptDrag() const { return m_nType != Other; }

    int getId() const { return m_nId; }
    void setId(int nId) { m_nId = nId; }
    QUuid getUuid() const { return m_uuid; }
    void setUuid(const QUuid& uuid) { m_uuid = uuid; }
    ResourceType getType() const { return m_nType; }
    void setType(ResourceType type) { m_nType = type; }
    QString getTypeName() const { return getTypeName(m_nType); }
    static QString getTypeName(int nType);
    // Lower-case suffixes that import accepts for the type; empty for "other", which takes all.
    static QStringList getSupportedExtensions(int nType);
    // A type number read from a file, checked: NoType for anything unknown.
    static ResourceType toResourceType(int nValue);

    QString getName() const { return m_strName; }
    void setName(const QString& name) { m_strName = name; }

    bool isDeleted() const { return m_bDeleted; }
    // A symbol resource also takes back or gives up the uses of what its symbol holds.
    void setDeleted(bool bDeleted);

    int getUsageCount() const { return m_nUsageCount; }
    void setUsageCount(int nCount) { m_nUsageCount = nCount; }
    void increaseUsageCount() { ++m_nUsageCount; }
    void decreaseUsageCount() { --m_nUsageCount; }

    qint64 getDataSize() const { return m_nDataSize; }
    void setDataSize(qint64 nSize) { m_nDataSize = nSize; }

    VTResourceManager* getManager() const { return m_pManager; }
    void setManager(VTResourceManager* pManager) { m_pManager = pManager; }

    // The keys of the resource's entry in the project's `resources` list.
    virtual void serialize(QJsonObject& object) const;

    // A name that the exported folder can hold: no separators or reserved characters, never
    // "." or "..".
    static QString makeExportSafe(const QString& name);

    // hex MD5 of the UTF-8 name, "." and the suffix; symbols add "_".
    static QString hashFileName(const QString& fileName, ResourceType type);

protected:
    VTResource(const VTResource& other);

private:
    int m_nId = -1;
    QUuid m_uuid;
    ResourceType m_nType = NoType;
    QString m_strName;
    QString m_strFileName;
    QString m_strHashedFileName;
    bool m_bDeleted = false;
    int m_nUsageCount = 0;
    qint64 m_nDataSize = 0;
    VTResourceManager* m_pManager = nullptr;
};
