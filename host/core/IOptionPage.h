#pragma once

#include <QIcon>
#include <QWidget>

// One page of the preferences dialog.
class IOptionPage : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    virtual QString getTitle() const = 0;
    virtual QIcon getIcon() const { return {}; }
    // Writes the page's values to where they live; false keeps the dialog open.
    virtual bool apply() = 0;
    virtual void reset() {}
};
