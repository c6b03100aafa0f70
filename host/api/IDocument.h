#pragma once

#include <QObject>
#include <QString>

class QUndoCommand;
class QUndoStack;

// One open document as the host manages it. The undo stack's clean state is the saved state.
class IDocument : public QObject
{
    Q_OBJECT
public:
    explicit IDocument(QObject* parent = nullptr);
    ~IDocument() override;

    QString getFileName() const { return m_strFileName; }
    virtual void setFileName(const QString& fileName);
    QUndoStack* getUndoStack() const { return m_pUndoStack; }
    void setTempDocument(bool bTemp) { m_bTemp = bTemp; }
    bool isOpenAsBackup() const { return m_bOpenAsBackup; }
    void setOpenAsBackup(bool bBackup) { m_bOpenAsBackup = bBackup; }

    // Asks the host to drop this document and its editor. With bCloseWindow the host also closes
    // the editor's window; without it the window is closing already.
    void requestClosing(bool bCloseWindow);

public slots:
    virtual bool isModified() const;
    virtual void submitCommand(QUndoCommand* pCommand);
    virtual bool openTempDocument(int nWidth, int nHeight, int nSceneCount, bool bResponsive);
    virtual bool isTempDocument() const { return m_bTemp; }
    virtual bool open() = 0;
    // Offers to save unsaved changes; on success announces aboutToClose and returns true.
    virtual bool close();
    virtual bool save() = 0;
    virtual bool save(const QString& filePath) = 0;
    virtual bool saveAs() = 0;
    virtual bool revert() { return true; }
    virtual bool cleanTempDir() { return true; }
    virtual bool saveBackup() { return true; }

signals:
    void statusChanged(const QString& text);
    void titleChanged();
    void modifyChanged(bool bModified);
    void undoStackChanged();
    void dataChanged(QObject* pInfo);
    void aboutToClose();
    void closingRequested(bool bCloseWindow);

private:
    QString m_strFileName;
    QUndoStack* m_pUndoStack = nullptr;
    bool m_bTemp = false;
    bool m_bOpenAsBackup = false;
};
