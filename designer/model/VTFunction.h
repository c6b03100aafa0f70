#pragma once

#include "VTFunctionData.h"

#include <QUuid>

#include <memory>

class QJsonObject;

// One user JavaScript function of a project. Action 103 ("Run JavaScript") names it by id; the
// UUID tells whether two documents hold the same, unchanged function, which is what decides
// between reusing and copying it when content moves from one document to another.
class VTFunction
{
    Q_DECLARE_TR_FUNCTIONS(VTFunction)
public:
    // A new function has a fresh UUID and no id yet (-1): the manager gives the id on adding.
    VTFunction();
    VTFunction(const VTFunction& other) = default;
    VTFunction& operator=(const VTFunction&) = delete;
    virtual ~VTFunction();

    // A deep copy that keeps the id and the UUID; whoever adds it to another manager decides
    // whether those stay.
    virtual std::unique_ptr<VTFunction> clone() const;

    // Kind 0 starts without parameters; every event handler kind gets the ("doc", "e") pair with
    // which the player calls it.
    static std::unique_ptr<VTFunction> createFunction(VTFunctionData::FunctionType nType);

    const VTFunctionData& getData() const { return m_data; }
    void setData(const VTFunctionData& data) { m_data = data; }

    QString getName() const { return m_data.getName(); }
    void setName(const QString& strName) { m_data.setName(strName); }
    QString getContent() const { return m_data.getContent(); }
    void setContent(const QString& strContent) { m_data.setContent(strContent); }
    QStringList getParams() const { return m_data.getParams(); }
    void setParams(const QStringList& lstParams) { m_data.setParams(lstParams); }
    VTFunctionData::FunctionType getType() const { return m_data.getType(); }
    void setType(VTFunctionData::FunctionType nType) { m_data.setType(nType); }

    int getId() const { return m_nId; }
    void setId(int nId) { m_nId = nId; }
    QUuid getUuid() const { return m_uuid; }
    void setUuid(const QUuid& uuid) { m_uuid = uuid; }

    // A negative index, or one at or past the end, appends.
    void addParam(const QString& strParam, int nIndex = -1);
    // Indexes out of range do nothing (or give an empty name).
    void setParamAt(int nIndex, const QString& strParam);
    QString getParamAt(int nIndex) const;
    void removeParamAt(int nIndex);

    // "function name(a, b) {\n<content>\n}"; without the name the function is anonymous and the
    // parenthesis follows the keyword directly.
    QString toString(bool bWithName) const;

    // Keys "id", "uuid" (with braces), "name", "content", "type", "params".
    void serialize(QJsonObject& json) const;
    // Replaces every field. Missing keys give the defaults (id -1, null UUID, empty texts, kind 0);
    // values of the wrong type, unknown kinds, a malformed UUID or an oversized parameter list are
    // replaced by those defaults and noted. Returns false when something was replaced.
    bool parse(const QJsonObject& json, QStringList* pWarnings = nullptr);

    // More parameters than this in a file are refused; no hand-written function comes near it.
    static constexpr int kMaxParamCount = 1000;

private:
    VTFunctionData m_data;
    int m_nId = -1;
    QUuid m_uuid;
};
