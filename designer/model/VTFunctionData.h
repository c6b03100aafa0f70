#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

// The editable part of a user JavaScript function: what the function editor works on and what an
// undo command keeps as the before and after of an edit.
class VTFunctionData final
{
    Q_DECLARE_TR_FUNCTIONS(VTFunctionData)
public:
    // Saved as a number; the kind decides the default name and parameters of a new function and
    // the menus that offer it.
    enum FunctionType : int
    {
        NormalFunction = 0,
        DocumentEventHandler = 1,
        TimelineEventHandler = 2,
        SceneEventHandler = 3,
        ElementEventHandler = 4,
        PreloaderEventHandler = 5
    };

    VTFunctionData() = default;
    VTFunctionData(const QString& strName, const QString& strContent, const QStringList& lstParams,
                   FunctionType nType);

    const QString& getName() const { return m_strName; }
    void setName(const QString& strName) { m_strName = strName; }
    // The body between the braces, lines joined by a line feed.
    const QString& getContent() const { return m_strContent; }
    void setContent(const QString& strContent) { m_strContent = strContent; }
    const QStringList& getParams() const { return m_lstParams; }
    void setParams(const QStringList& lstParams) { m_lstParams = lstParams; }
    FunctionType getType() const { return m_nType; }
    void setType(FunctionType nType) { m_nType = nType; }

    // The kind is left out on purpose: the editor asks whether the user changed the text, and
    // the kind is not something the user edits there.
    bool operator==(const VTFunctionData& other) const;
    bool operator!=(const VTFunctionData& other) const { return !(*this == other); }

    static bool isValidType(int nType) { return nType >= NormalFunction && nType <= PreloaderEventHandler; }
    // "untitledFunction", "documentEventHandler"...; empty for a number outside the kinds.
    static QString getDefaultName(FunctionType nType);
    // The menu label; empty for the preloader kind, which no menu offers.
    static QString getTypeLabel(FunctionType nType);

private:
    QString m_strName;
    QString m_strContent;
    QStringList m_lstParams;
    FunctionType m_nType = NormalFunction;
};
