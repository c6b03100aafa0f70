#pragma once

#include <QDialog>

// The dialog that collects what a new document needs before the host creates it.
class ICreateDocumentDlg : public QDialog
{
    Q_OBJECT
public:
    using QDialog::QDialog;

    virtual QString getDocumentFileName() const = 0;
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    virtual int getSceneCount() const = 0;
    virtual bool isResponsive() const = 0;
};
