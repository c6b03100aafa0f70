#pragma once

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

// Typed reads from one JSON object of a project file. A missing key gives the default quietly;
// a key of the wrong type gives the default too, and the reader notes what it dropped, so a
// damaged file still opens and the user can be told what was lost.
class VTJsonReader final
{
    Q_DECLARE_TR_FUNCTIONS(VTJsonReader)
public:
    // pProblems may be null; context names the object in the notes ("document").
    VTJsonReader(const QJsonObject& object, const QString& context, QStringList* pProblems);

    bool has(const QString& key) const { return m_joObject.contains(key); }
    // A whole number within the range of int.
    int readInt(const QString& key, int nDefault) const;
    bool readBool(const QString& key, bool bDefault) const;
    QString readString(const QString& key, const QString& defaultValue = QString()) const;
    QJsonObject readObject(const QString& key) const;
    QJsonArray readArray(const QString& key) const;

    // True when the value is a whole number that fits an int.
    static bool isInt(const QJsonValue& value);
    // "a string", "an array"...: how the notes name what was found.
    static QString describeType(const QJsonValue& value);

    void reportWrongType(const QString& key, const QString& expected, const QString& fallback) const;
    // For a value that is left out altogether rather than replaced.
    void reportDropped(const QString& key, const QString& expected) const;
    void report(const QString& text) const;

private:
    QJsonObject m_joObject;
    QString m_strContext;
    QStringList* m_pProblems = nullptr;
};
