#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class QJsonObject;
class VTJsonReader;

// How a project's HTML5 export is laid out: the names of its resource folders, the values of the
// viewport meta tag, the id of the element that holds the player, and the user's own page and
// style sheet. They travel in the project file with the document's keys.
class VTOutputSettings final
{
    Q_DECLARE_TR_FUNCTIONS(VTOutputSettings)
public:
    // Viewport values besides a number of pixels.
    enum ViewportValue
    {
        ViewportDeviceHeight = -1,
        ViewportDeviceWidth = -2,
        ViewportNone = -3,
    };

    // A new project's: named folders, the device width in the viewport tag, a fresh container id.
    VTOutputSettings();

    // The keys of the document object that these settings own.
    static QStringList getKeys();
    // What a file that lacks the keys reads: every value empty or 0.
    void resetToFileDefaults();
    // What a new project starts with, and what files older than these keys get.
    void resetToNewDefaults();
    void read(const VTJsonReader& reader);
    // The container id is made here if the project has none yet.
    void write(QJsonObject& document) const;

    QString getResFolder() const { return m_strResFolder; }
    void setResFolder(const QString& name) { m_strResFolder = name; }
    QString getPreloaderResFolder() const { return m_strPreResFolder; }
    void setPreloaderResFolder(const QString& name) { m_strPreResFolder = name; }
    int getViewportWMeta() const { return m_nViewportWMeta; }
    void setViewportWMeta(int nValue) { m_nViewportWMeta = nValue; }
    int getViewportHMeta() const { return m_nViewportHMeta; }
    void setViewportHMeta(int nValue) { m_nViewportHMeta = nValue; }
    // "width=%1, " and "height=%1, " for the viewport meta tag; empty for ViewportNone.
    QString getViewportWidthTag() const;
    QString getViewportHeightTag() const;
    static QString getViewportValueText(int nValue);
    // Made on first use when the project has none.
    QString getContainerID() const;
    void setContainerID(const QString& id) { m_strContainerID = id; }
    QString getHtmlOutput() const { return m_strHtmlOutput; }
    void setHtmlOutput(const QString& html) { m_strHtmlOutput = html; }
    QString getCssDoc() const { return m_strCssDoc; }
    void setCssDoc(const QString& css) { m_strCssDoc = css; }

private:
    QString m_strResFolder;
    QString m_strPreResFolder;
    int m_nViewportWMeta = ViewportDeviceWidth;
    int m_nViewportHMeta = ViewportNone;
    mutable QString m_strContainerID;
    QString m_strHtmlOutput;
    QString m_strCssDoc;
};
