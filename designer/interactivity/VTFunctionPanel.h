#pragma once

#include <QWidget>

class QLabel;

// The project's JavaScript functions.
class VTFunctionPanel : public QWidget
{
    Q_OBJECT
public:
    explicit VTFunctionPanel(QWidget* parent = nullptr);

protected:
    QLabel* m_pEmptyLabel;
};
