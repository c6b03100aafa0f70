#pragma once

#include <QWidget>

class QLabel;

// The responsive breakpoints of the current symbol.
class VTBreakpointsPanel : public QWidget
{
    Q_OBJECT
public:
    explicit VTBreakpointsPanel(QWidget* parent = nullptr);

protected:
    QLabel* m_pEmptyLabel;
};
