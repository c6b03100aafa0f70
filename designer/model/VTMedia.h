#pragma once

#include "VTElement.h"
#include "VTElementResourceLink.h"

class QJsonObject;

// A sound (kind audio) or a film (kind video) played by the page's media player. The resource and
// the playback settings hold for all layouts and live on the element; the blocks are plain ones.
//
// The element holds one use of its resource while it is part of the project (see
// VTElementResourceLink). Either kind accepts a resource of either media type: a film may be used
// for its sound track and a sound shown with the player's controls.
class VTMedia : public VTElement
{
    Q_OBJECT
    // The volume is animated like a block value.
    Q_PROPERTY(double m_dVolume READ getVolume WRITE setVolume)
public:
    // Any kind but audio makes a video.
    explicit VTMedia(VT::ElementType type);
    VTMedia(const VTMedia& other) = default;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return m_nType; }
    // A player bar 460 wide: 30 high for sound, 250 for film, without border. A film keeps its
    // aspect ratio, and sound shows its controls, having nothing else to show.
    void initDefault() override;

    void prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const override;
    void updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources) override;
    void attachResources() override;
    void detachResources() override;

    // Adds the resource id and the playback keys.
    void serialize(QJsonObject& json) const override;
    // Adds "rs", "vol", "ap", "lo", "ct" and "pl". The stage never plays by itself and always
    // preloads, so that it can measure the media.
    void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const override;
    // A "resourceId" that names no media of the project falls back to the last resource of the
    // element's own type in id order; without any the element cannot stand and false is returned.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;

    // Milliseconds, as the stage reports them; negative values are ignored.
    int getDuration() const { return m_nDuration; }
    void setDuration(int nDuration);
    // From 0 to 1; other values are clamped, non-finite ones ignored.
    double getVolume() const { return m_dVolume; }
    void setVolume(double dVolume);
    bool isAutoplay() const { return m_bAutoplay; }
    void setAutoplay(bool bAutoplay) { m_bAutoplay = bAutoplay; }
    bool isLoop() const { return m_bLoop; }
    void setLoop(bool bLoop) { m_bLoop = bLoop; }
    bool hasControls() const { return m_bControls; }
    void setControls(bool bControls) { m_bControls = bControls; }
    bool isPreload() const { return m_bPreload; }
    void setPreload(bool bPreload) { m_bPreload = bPreload; }
    // Whether the stage has reported the media's size and duration.
    bool isInfoLoaded() const { return m_bInfoLoaded; }
    void setInfoLoaded(bool bLoaded) { m_bInfoLoaded = bLoaded; }

    VTResource* getMediaResource() const { return m_resource.get(); }
    // Moves the use from the old resource to the new one; the element counts from now on.
    void setMediaResource(VTResource* pResource) { m_resource.set(pResource); }
    bool isResourceAttached() const { return m_resource.isAttached(); }

private:
    VT::ElementType m_nType;
    VTElementResourceLink m_resource;
    int m_nDuration = 0;
    double m_dVolume = 1.0;
    bool m_bAutoplay = false;
    bool m_bLoop = false;
    bool m_bControls = false;
    bool m_bPreload = true;
    bool m_bInfoLoaded = false;
};
