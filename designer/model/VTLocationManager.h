#pragma once

#include "ISingleton.h"

#include <QMap>
#include <QObject>
#include <QString>

class IDocument;
class QSettings;

// Remembers the folders of the file dialogs: for the application in the settings, for each
// document in its project file. A lookup without history falls back to the default of its id.
class VTLocationManager : public QObject, public ISingleton<VTLocationManager>
{
    Q_OBJECT
public:
    enum AppLocationId
    {
        NewProject = 0, // new project, save as, import of a package
        OpenProject = 1,
        AppKept = 2,
        SavePackage = 3,
    };
    Q_ENUM(AppLocationId)

    enum DocumentLocationId
    {
        ExportHTML5 = 1000,
        ExportFunction = 1001,
        ExportResources = 1002,
        ExportVideo = 1003,
        ExportAudio = 1004,
        ExportImage = 1005,
        ExportSymbol = 1006,
        ExportFont = 1007,
        ExportScript = 1008,
        ExportStyleSheet = 1009,
        ExportHTML = 1010,
        ExportOther = 1011,
        AddResourceFile = 1012,
        ImportImage = 1013,
        ImportAudio = 1014,
        ImportVideo = 1015,
        ImportSymbol = 1016,
        DocumentKept = 1017,
        AddScriptCode = 1018,
        AddStyleSheetCode = 1019,
        AddHTMLCode = 1020,
    };
    Q_ENUM(DocumentLocationId)

    static constexpr int s_nFirstAppLocation = NewProject;
    static constexpr int s_nLastAppLocation = SavePackage;
    static constexpr int s_nFirstDocumentLocation = ExportHTML5;
    static constexpr int s_nLastDocumentLocation = AddHTMLCode;

    ~VTLocationManager() override;

    // Not owned. Without settings, saveSettings() and readFromSettings() do nothing.
    void setSettings(QSettings* pSettings);
    QSettings* getSettings() const { return m_pSettings; }
    void saveSettings() const;
    void readFromSettings();

    // The stored history of a document, without defaults, as it goes into the project file.
    QMap<int, QString> getDocumentHistory(const IDocument* pDocument) const;

public slots:
    // Fills the defaults from the user's standard folders and creates Documents/"Vetra Studio".
    virtual void initDefaultLocation();
    virtual void setDefaultLocation(int nId, const QString& path);
    virtual QString getDefaultLocation(int nId) const;
    virtual QString getHistoryLocation(VTLocationManager::AppLocationId id) const;
    virtual void setHistoryLocation(VTLocationManager::AppLocationId id, const QString& path);
    virtual void setHistoryLocation(IDocument* pDocument, VTLocationManager::DocumentLocationId id,
                                    const QString& path);
    virtual QString getHistoryLocation(IDocument* pDocument, VTLocationManager::DocumentLocationId id) const;
    virtual void clearHistoryLocation(IDocument* pDocument);
    virtual void removeHistoryLocation(IDocument* pDocument, VTLocationManager::DocumentLocationId id);

private:
    friend class ISingleton<VTLocationManager>;
    VTLocationManager();

    QMap<int, QString> m_mapDefaults;
    QMap<int, QString> m_mapAppHistory;
    QMap<const IDocument*, QMap<int, QString>> m_mapDocumentHistory;
    QSettings* m_pSettings = nullptr;
};
