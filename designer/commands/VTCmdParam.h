#pragma once

#include "VTLayoutKey.h"

#include <QBitArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVariant>

class VTAnchorPoint;
class VTAnimation;
class VTBezierPath;
class VTElement;
class VTElementProperty;
class VTEventListener;
class VTEventListenerList;
class VTFreeFormArrowStyle;
class VTFunction;
class VTFunctionManager;
class VTKeyValue;
class VTKeyframe;
class VTMotionPath;
class VTResource;
class VTResourceManager;
class VTScene;
class VTSceneManager;
class VTSymbol;
class VTTimeline;
class VTTimelineManager;

// One positional parameter of a command action: a typed value, or a pointer into the model that
// the parameter may own. What an action removes from the model lives in its parameter, owned,
// until the action puts it back or the command dies; that is the whole memory rule of undo.
class VTCmdParam
{
public:
    enum Type : int
    {
        Empty = 0,
        Int = 1,
        Double = 2,
        PointF = 3,
        Bool = 4,
        String = 5,
        StringList = 6,
        JsonObject = 7,
        JsonArray = 8,
        Variant = 9,
        BitArray = 10,
        Element = 11,
        Scene = 12,
        SceneManager = 13,
        TimelineManager = 14,
        Timeline = 15,
        Animation = 16,
        Keyframe = 17,
        KeyValue = 18,
        MotionPath = 19,
        AnchorPoint = 20,
        EventListener = 21,
        EventListenerList = 22,
        Resource = 23,
        ResourceManager = 24,
        JSFunction = 25,
        FunctionManager = 26,
        Symbol = 27,
        ElementProperty = 28,
        BezierPath = 29,
        IntPair = 30,
        ArrowStyle = 31,
        MapInherits = 32,
        IntList = 33,
    };

    VTCmdParam() = default;
    explicit VTCmdParam(int nValue);
    explicit VTCmdParam(double dValue);
    explicit VTCmdParam(const QPointF& ptValue);
    explicit VTCmdParam(bool bValue);
    explicit VTCmdParam(const QString& strValue);
    explicit VTCmdParam(const QStringList& lstValue);
    explicit VTCmdParam(const QJsonObject& value);
    explicit VTCmdParam(const QJsonArray& value);
    explicit VTCmdParam(const QVariant& value);
    explicit VTCmdParam(const QBitArray& value);
    explicit VTCmdParam(const VTLayoutKey& key);
    explicit VTCmdParam(const QMap<int, bool>& mapInherits);
    explicit VTCmdParam(const QList<int>& lstValue);
    VTCmdParam(VTElement* pObject, bool bOwned);
    VTCmdParam(VTScene* pObject, bool bOwned);
    VTCmdParam(VTSceneManager* pObject, bool bOwned);
    VTCmdParam(VTTimelineManager* pObject, bool bOwned);
    VTCmdParam(VTTimeline* pObject, bool bOwned);
    VTCmdParam(VTAnimation* pObject, bool bOwned);
    VTCmdParam(VTKeyframe* pObject, bool bOwned);
    VTCmdParam(VTKeyValue* pObject, bool bOwned);
    VTCmdParam(VTMotionPath* pObject, bool bOwned);
    VTCmdParam(VTAnchorPoint* pObject, bool bOwned);
    VTCmdParam(VTEventListener* pObject, bool bOwned);
    VTCmdParam(VTEventListenerList* pObject, bool bOwned);
    VTCmdParam(VTResource* pObject, bool bOwned);
    VTCmdParam(VTResourceManager* pObject, bool bOwned);
    VTCmdParam(VTFunction* pObject, bool bOwned);
    VTCmdParam(VTFunctionManager* pObject, bool bOwned);
    VTCmdParam(VTSymbol* pObject, bool bOwned);
    VTCmdParam(VTElementProperty* pObject, bool bOwned);
    VTCmdParam(VTBezierPath* pObject, bool bOwned);
    VTCmdParam(VTFreeFormArrowStyle* pObject, bool bOwned);
    virtual ~VTCmdParam();

    VTCmdParam(const VTCmdParam&) = delete;
    VTCmdParam& operator=(const VTCmdParam&) = delete;

    int getType() const { return m_nType; }
    bool isOwned() const { return m_bOwned; }
    void setOwned(bool bOwned) { m_bOwned = bOwned; }
    bool isPointerType() const { return isPointerType(m_nType); }
    static bool isPointerType(int nType);
    // Types whose object a parameter may own and delete.
    static bool isOwnableType(int nType);

    // Each setter replaces the value and the type; an owned object held before is deleted first.
    void setValue(int nValue);
    void setValue(double dValue);
    void setValue(const QPointF& ptValue);
    void setValue(bool bValue);
    void setValue(const QString& strValue);
    void setValue(const QStringList& lstValue);
    void setValue(const QJsonObject& value);
    void setValue(const QJsonArray& value);
    void setValue(const QVariant& value);
    void setValue(const QBitArray& value);
    void setValue(const VTLayoutKey& key);
    void setValue(const QMap<int, bool>& mapInherits);
    void setValue(const QList<int>& lstValue);
    void setValue(VTElement* pObject, bool bOwned);
    void setValue(VTScene* pObject, bool bOwned);
    void setValue(VTSceneManager* pObject, bool bOwned);
    void setValue(VTTimelineManager* pObject, bool bOwned);
    void setValue(VTTimeline* pObject, bool bOwned);
    void setValue(VTAnimation* pObject, bool bOwned);
    void setValue(VTKeyframe* pObject, bool bOwned);
    void setValue(VTKeyValue* pObject, bool bOwned);
    void setValue(VTMotionPath* pObject, bool bOwned);
    void setValue(VTAnchorPoint* pObject, bool bOwned);
    void setValue(VTEventListener* pObject, bool bOwned);
    void setValue(VTEventListenerList* pObject, bool bOwned);
    void setValue(VTResource* pObject, bool bOwned);
    void setValue(VTResourceManager* pObject, bool bOwned);
    void setValue(VTFunction* pObject, bool bOwned);
    void setValue(VTFunctionManager* pObject, bool bOwned);
    void setValue(VTSymbol* pObject, bool bOwned);
    void setValue(VTElementProperty* pObject, bool bOwned);
    void setValue(VTBezierPath* pObject, bool bOwned);
    void setValue(VTFreeFormArrowStyle* pObject, bool bOwned);

    // Deletes an owned object of an ownable type with its own destructor; leaves type Empty.
    void clearValue();
    // Gives up the pointer without deleting it (ownership goes to the caller or the model).
    void release() { m_bOwned = false; }

    // A getter on another type answers its type's default (0, false, null, empty).
    int getAsInt() const;
    double getAsDouble() const;
    QPointF getAsPointF() const;
    bool getAsBool() const;
    QString getAsString() const;
    QStringList getAsStringList() const;
    QJsonObject getAsJsonObject() const;
    QJsonArray getAsJsonArray() const;
    QVariant getAsVariant() const;
    QBitArray getAsBitArray() const;
    VTLayoutKey getAsIntPair() const;
    QMap<int, bool> getAsMapInherits() const;
    QList<int> getAsIntList() const;
    VTElement* getAsElement() const;
    VTScene* getAsScene() const;
    VTSceneManager* getAsSceneManager() const;
    VTTimelineManager* getAsTimelineManager() const;
    VTTimeline* getAsTimeline() const;
    VTAnimation* getAsAnimation() const;
    VTKeyframe* getAsKeyframeAnimation() const;
    VTKeyValue* getAsKeyValueAnimation() const;
    VTMotionPath* getAsMotionPath() const;
    VTAnchorPoint* getAsAnchorPoint() const;
    VTEventListener* getAsEventListener() const;
    VTEventListenerList* getAsEventListenerList() const;
    VTResource* getAsResource() const;
    VTResourceManager* getAsResourceManager() const;
    VTFunction* getAsJSFunction() const;
    VTFunctionManager* getAsFunctionManager() const;
    VTSymbol* getAsSymbol() const;
    VTElementProperty* getAsElementProperty() const;
    VTBezierPath* getAsBezierPath() const;
    VTFreeFormArrowStyle* getAsArrowStyle() const;
    // The raw pointer of any pointer type, for code that only compares identities.
    void* getObject() const { return m_pObject; }

    // The record form: {"type": code, "value": ...}, see VTUpdateViewInfo.
    void serialize(QJsonObject& json) const;
    void parse(const QJsonObject& json, VTResourceManager* pResourceManager);

private:
    void setPointer(int nType, void* pObject, bool bOwned);

    int m_nType = Empty;
    QVariant m_value;
    void* m_pObject = nullptr;
    bool m_bOwned = false;
};
