#pragma once

#include <QWidget>

class VTTimelineCaptionPanel;

// The timeline panel: caption strip on top, the timelines of the current scene below.
class VTTimelineWindow : public QWidget
{
    Q_OBJECT
public:
    explicit VTTimelineWindow(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    VTTimelineCaptionPanel* getCaptionPanel() const { return m_pCaptionPanel; }

private:
    VTTimelineCaptionPanel* m_pCaptionPanel;
};
