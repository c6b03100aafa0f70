#pragma once

#include <QDialog>

class IOptionPage;

// The preferences dialog a plug-in provides; the host only opens it.
class IOptionsDlg : public QDialog
{
    Q_OBJECT
public:
    using QDialog::QDialog;

    virtual QList<IOptionPage*> getPages() const = 0;
};
