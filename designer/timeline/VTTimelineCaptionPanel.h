#pragma once

#include <QWidget>

class QLabel;

// The timeline's own caption: the dock hides its title bar, so this strip names the panel and,
// while the timeline floats, shows the close button.
class VTTimelineCaptionPanel : public QWidget
{
    Q_OBJECT
public:
    explicit VTTimelineCaptionPanel(QWidget* parent = nullptr);

    bool isFloating() const { return m_bFloating; }

public slots:
    void topLevelChanged(bool bTopLevel);

signals:
    void closeRequested();

private:
    QLabel* m_pTitle;
    QWidget* m_pCloseButton;
    bool m_bFloating = false;
};
