#pragma once

#include <QJsonObject>
#include <QList>
#include <QObject>

class VTCmdParam;
class VTDocument;
class VTResourceManager;

// What a view learns of one action that ran: the action's id, its parameters (the action's own
// list while a command runs, so receivers copy what they keep), the direction and, on the first
// redo only, the view that made the command. The stage page receives the JSON form.
class VTUpdateViewInfo final : public QObject
{
    Q_OBJECT
public:
    explicit VTUpdateViewInfo(QObject* pParent = nullptr);
    ~VTUpdateViewInfo() override;

    int getId() const { return m_nId; }
    void setId(int nId) { m_nId = nId; }
    // Borrowed from the action; a record made by parse() owns its list.
    QList<VTCmdParam*>* getParams() const { return m_pParams; }
    void setParams(QList<VTCmdParam*>* pParams);
    bool isUndoCmd() const { return m_bUndoCmd; }
    void setUndoCmd(bool bUndo) { m_bUndoCmd = bUndo; }
    QObject* getSender() const { return m_pSender; }
    void setSender(QObject* pSender) { m_pSender = pSender; }

    // {"cmd": id, "isUndoCmd": bool, "params": [...]}; the entries are read from the model now
    // for most ids. pDocument reaches the preloader; pResourceManager is the current symbol's.
    void serialize(QJsonObject& json, VTDocument* pDocument, VTResourceManager* pResourceManager) const;
    void parse(const QJsonObject& json, VTResourceManager* pResourceManager);

private:
    void clearOwnedParams();

    int m_nId = 0;
    QList<VTCmdParam*>* m_pParams = nullptr;
    bool m_bOwnsParams = false;
    bool m_bUndoCmd = false;
    QObject* m_pSender = nullptr;
};
