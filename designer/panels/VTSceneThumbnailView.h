#pragma once

#include <QWidget>

class QLabel;

// The list of the current symbol's scenes.
class VTSceneThumbnailView : public QWidget
{
    Q_OBJECT
public:
    explicit VTSceneThumbnailView(QWidget* parent = nullptr);

protected:
    QLabel* m_pEmptyLabel;
};
