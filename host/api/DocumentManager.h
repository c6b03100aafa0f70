#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>

class IDocument;
class QTimer;
class QUndoGroup;

using Breakpoint = QPair<int, bool>;
using BreakpointList = QList<Breakpoint>;

// Process-wide registry of open documents, their shared undo group, the auto-backup timers
// and the user's breakpoint presets. All of it is static: there is one per process.
class DocumentManager final : public QObject
{
    Q_OBJECT
public:
    static DocumentManager* instance();

    static QList<IDocument*> getDocuments();
    // The open document whose file has this canonical path, or null.
    static IDocument* findDocumentByPath(const QString& filePath);
    static QUndoGroup* getUndoGroup();

    static bool isAutobackupEnabled();
    static void setAutoBackupEnabled(bool bEnabled);
    static int getAutobackupTimeout();
    static void setAutobackupTimeout(int nSeconds);
    static void startWaitingBackup(IDocument* pDocument);
    static void stopWaitingBackup(IDocument* pDocument);
    static bool isWaitingBackup(IDocument* pDocument);

    static BreakpointList getHBreakpoints();
    static BreakpointList getVBreakpoints();
    static void setHBreakpoints(const BreakpointList& list);
    static void setVBreakpoints(const BreakpointList& list);
    // Fills both lists with the built-in presets, each marked with bEnabled.
    static void initBreakpoints(BreakpointList& h, BreakpointList& v, bool bEnabled);

    static void readSettings();
    static void saveSettings();

    static void registerDocument(IDocument* pDocument);
    static void unregisterDocument(IDocument* pDocument);

signals:
    void documentAdded(IDocument* pDocument);
    void documentRemoved(IDocument* pDocument);

private:
    DocumentManager();
    void onTimeout(IDocument* pDocument);

    QList<IDocument*> m_lstDocuments;
    QUndoGroup* m_pUndoGroup = nullptr;
    QHash<IDocument*, QTimer*> m_mapBackupTimers;
    bool m_bAutobackup = true;
    int m_nAutobackupTimeout = 300;
    BreakpointList m_lstHBreakpoints;
    BreakpointList m_lstVBreakpoints;
};
