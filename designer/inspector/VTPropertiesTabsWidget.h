#pragma once

#include <QWidget>

class QLabel;

// The inspector's tabs: properties of the stage selection.
class VTPropertiesTabsWidget : public QWidget
{
    Q_OBJECT
public:
    explicit VTPropertiesTabsWidget(QWidget* parent = nullptr);

protected:
    QLabel* m_pEmptyLabel;
};
