#pragma once

#include <QMdiSubWindow>
#include <QPointer>

class VTEditor;

// The tab of one open project; closing it asks the document first.
class VTMdiSubWindow final : public QMdiSubWindow
{
    Q_OBJECT
public:
    explicit VTMdiSubWindow(VTEditor* pEditor, QWidget* parent = nullptr);

    VTEditor* getEditor() const { return m_pEditor; }
    // Closes without asking: the document has agreed already.
    void forceClose();

protected:
    void closeEvent(QCloseEvent* pEvent) override;

private:
    QPointer<VTEditor> m_pEditor;
    bool m_bForced = false;
};
