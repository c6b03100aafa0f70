#pragma once

#include "ICreateDocumentDlg.h"

class QCheckBox;
class QDialogButtonBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QToolButton;

// Asks for what a new project needs: its name and location, the stage size, the number of blank
// scenes and whether it starts responsive. The short form (title, name, location) asks only for
// name and location and serves "Save As" and "Import Project".
//
// Accepting makes the project folder <location>/<name>; an existing project there is replaced
// only after the user agreed and only when no open document uses it.
class VTNewProjectDialog final : public ICreateDocumentDlg
{
    Q_OBJECT
public:
    explicit VTNewProjectDialog(QWidget* parent = nullptr);
    VTNewProjectDialog(const QString& title, const QString& name, const QString& location,
                       QWidget* parent = nullptr);
    ~VTNewProjectDialog() override;

    // <location>/<name>/<name>.vetra, absolute; the folder is made when missing.
    QString getDocumentFileName() const override;
    int getWidth() const override;
    int getHeight() const override;
    int getSceneCount() const override;
    bool isResponsive() const override;

    // The name without a trailing ".vetra" and without surrounding blanks.
    QString getBaseName() const;
    QString getLocation() const;
    bool isShortForm() const { return m_bShortForm; }

    // The entries of the size menu, in menu order.
    static QList<QSize> getPresetSizes();

public slots:
    void accept() override;
    // Cuts a trailing ".vetra" from the name field and trims it, as when the field loses focus.
    void normalizeName();

signals:
    // The breakpoint button: the preset lists are edited by the breakpoint tools.
    void breakpointsRequested();

private:
    void buildUi(const QString& name, const QString& location);
    void browseLocation();
    void updateAcceptable();
    void warn(const QString& text);

    bool m_bShortForm = false;
    QLineEdit* m_pNameEdit = nullptr;
    QLineEdit* m_pLocationEdit = nullptr;
    QPushButton* m_pBrowseButton = nullptr;
    QCheckBox* m_pDefaultLocationCheck = nullptr;
    QSpinBox* m_pWidthSpin = nullptr;
    QSpinBox* m_pHeightSpin = nullptr;
    QToolButton* m_pSizeButton = nullptr;
    QSpinBox* m_pSceneCountSpin = nullptr;
    QCheckBox* m_pResponsiveCheck = nullptr;
    QPushButton* m_pBreakpointsButton = nullptr;
    QDialogButtonBox* m_pButtonBox = nullptr;
};
