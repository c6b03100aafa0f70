#pragma once

#include <QList>
#include <QSize>
#include <QString>

class VTScene;
class VTSymbol;

// The ordered scenes of one symbol and which of them are selected. The manager owns the scenes
// it lists; detachScene hands one back to the caller, which is how undo keeps a removed scene.
class VTSceneManager final
{
public:
    explicit VTSceneManager(VTSymbol* pSymbol);
    ~VTSceneManager();
    VTSceneManager(const VTSceneManager&) = delete;
    VTSceneManager& operator=(const VTSceneManager&) = delete;

    VTSymbol* getSymbol() const { return m_pSymbol; }
    const QList<VTScene*>& getScenes() const { return m_lstScenes; }
    int getSceneCount() const { return m_lstScenes.size(); }
    // In order of selection.
    const QList<VTScene*>& getSelectedScenes() const { return m_lstSelectedScenes; }
    // The first selected scene, or null.
    VTScene* getCurrentScene() const { return m_lstSelectedScenes.value(0, nullptr); }
    int getCurrentSceneIndex() const { return getSceneIndex(getCurrentScene()); }

    // Takes ownership. A scene without an id (below 1) takes the next one; a scene with an id of
    // its own keeps it and pushes the next id above it. An index from 0 to the count inserts
    // there, any other appends. Returns the index, or -1 for null or a scene listed already.
    int addScene(VTScene* pScene, int nIndex = -1);
    // The blank scenes of a new project, the first one current: each the stage size, or for a
    // responsive project the whole page, with a block for every layout of the symbol.
    void addNewScenes(int nCount, int nWidth, int nHeight, bool bResponsive);
    // Hands the scene back to the caller; its former index, or -1 when it is not listed.
    int detachScene(VTScene* pScene);
    // Deletes every scene.
    void clear();
    VTScene* getSceneById(int nId) const;
    int getSceneIndex(const VTScene* pScene) const;
    // Drop semantics: the scene lands before the scene that was at nTo, so a later target counts
    // the gap it leaves. False for indices out of range.
    bool moveSceneToIndex(int nFrom, int nTo);

    void setSceneSize(const QSize& size) { m_szScene = size; }
    QSize getSceneSize() const { return m_szScene; }

    // Exact comparison with the names of all other scenes.
    bool isDuplicatedSceneName(const QString& name, const VTScene* pExcept) const;
    // The largest scene id plus one, at least 1; files may number scenes freely.
    void updateNextSceneId();
    int getNextSceneId() const { return m_nNextSceneId; }

    // Called by a scene whose selection changed.
    void updateSelection(VTScene* pScene);

    // The length of the whole symbol in milliseconds: every main timeline and every transition.
    int getTotalTimelineDuration() const;
    // The time in the whole symbol of the first main timeline label of that name, or -1.
    int getMainTimelineLabelTime(const QString& label) const;

private:
    VTSymbol* m_pSymbol = nullptr;
    QList<VTScene*> m_lstScenes;
    QList<VTScene*> m_lstSelectedScenes;
    QSize m_szScene = QSize(800, 600);
    int m_nNextSceneId = 1;
};
