#pragma once

#include <QWidget>

class QLabel;

// The project's imported files and symbols.
class VTResourcePanel : public QWidget
{
    Q_OBJECT
public:
    explicit VTResourcePanel(QWidget* parent = nullptr);

protected:
    QLabel* m_pEmptyLabel;
};
