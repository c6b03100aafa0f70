#pragma once

#include <QWidget>

class QComboBox;

// Zoom of the stage, shown in the status bar while a project is open.
class VTCanvasZoomControl : public QWidget
{
    Q_OBJECT
public:
    explicit VTCanvasZoomControl(QWidget* parent = nullptr);

    int getZoomPercent() const;
    void setZoomPercent(int nPercent);

signals:
    void zoomChanged(int nPercent);

private:
    QComboBox* m_pCombo;
};
