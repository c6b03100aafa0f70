#pragma once

#include <QWidget>

class QLabel;

// The element tree of the current scene.
class VTElementsPanel : public QWidget
{
    Q_OBJECT
public:
    explicit VTElementsPanel(QWidget* parent = nullptr);

protected:
    QLabel* m_pEmptyLabel;
};
