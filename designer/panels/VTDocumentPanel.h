#pragma once

#include <QWidget>

class QLabel;

// Settings of the open project as a whole.
class VTDocumentPanel : public QWidget
{
    Q_OBJECT
public:
    explicit VTDocumentPanel(QWidget* parent = nullptr);

protected:
    QLabel* m_pEmptyLabel;
};
