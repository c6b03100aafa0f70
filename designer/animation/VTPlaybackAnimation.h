#pragma once

#include "VTAnimation.h"

#include <functional>

class QJsonArray;
class VTEventListener;
class VTPlayback;

// The animation of a media element or a symbol instance: besides keyframes, the marks that start,
// play and pause the element's own time. The playback row is the group's first child.
class VTPlaybackAnimation final : public VTAnimation
{
    Q_OBJECT
public:
    explicit VTPlaybackAnimation(VTElement* pElement);
    ~VTPlaybackAnimation() override;

    bool isPlayback() const override { return true; }
    void serialize(QJsonObject& json) const override;
    bool parse(const QJsonObject& json, VTTimeline* pTimeline, const VTLayoutKey& layoutKey,
               QStringList* pProblems = nullptr) override;

    VTPlayback* getPlayback() const { return m_pPlayback; }
    void addEventListener(VTEventListener* pListener);
    void detachEventListener(VTEventListener* pListener);
    VTEventListener* getEventlistener(int nTime) const;
    void changeActionTime(VTEventListener* pListener, int nTime);
    // How long the element plays once, in ms: the media's duration, or the played symbol's whole
    // length at the size the instance shows it; 0 when it cannot be known.
    int getPlaybackDuration() const;
    // Recomputes how long each mark's run lasts; after every change of the marks.
    void updatePlayback();
    // The player's "pb" entries.
    void appendPlaybacksData(QJsonArray& array) const;

protected:
    int getFirstTime() const override;

private:
    std::function<int(const QString&)> createLabelLookup() const;
    VTPlayback* m_pPlayback = nullptr;
};
