#pragma once

#include "VTResource.h"

#include <QList>
#include <QMap>
#include <QSize>

// A sound or a video: one file per encoding, so that the page can offer each browser a format
// it plays. Repeated setFileName calls collect the encodings.
class MediaResource final : public VTResource
{
public:
    enum MediaFormat : int
    {
        NoFormat = -1,
        Mp4 = 0,
        M4v = 1,
        Webm = 2,
        Ogv = 3,
        Mp3 = 4,
        M4a = 5,
        Aac = 6,
        Wav = 7,
        Ogg = 8,
        Oga = 9,
    };
    static constexpr int s_nFormatCount = 10;

    explicit MediaResource(ResourceType type);

    VTResource* clone() const override;
    // The first encoding's file.
    QString getFileName() const override;
    QString getHashedFileName() const override;
    // Enters the name under its format; a name of no known format is ignored.
    void setFileName(const QString& fileName) override;

    static QString getExtensionOfFormat(int nFormat);
    // By the lower-cased suffix; NoFormat for any other.
    static MediaFormat getMediaFormat(const QString& fileName);

    QString getFileName(MediaFormat format) const { return m_mapFileNames.value(format); }
    QString getHashedFileName(MediaFormat format) const { return m_mapHashedFileNames.value(format); }
    // In ascending order of format.
    QStringList getFileNames() const { return m_mapFileNames.values(); }
    QStringList getHashedFileNames() const { return m_mapHashedFileNames.values(); }
    bool hasFormat(MediaFormat format) const { return m_mapFileNames.contains(format); }
    QList<MediaFormat> getExistedFormat() const { return m_mapFileNames.keys(); }
    void removeFormat(MediaFormat format);

    QSize getSize() const { return m_size; }
    void setSize(const QSize& size) { m_size = size; }
    bool hasValidSize() const { return m_size.width() > 0 && m_size.height() > 0; }

    void serialize(QJsonObject& object) const override;

private:
    MediaResource(const MediaResource& other) = default;

    QMap<MediaFormat, QString> m_mapFileNames;
    QMap<MediaFormat, QString> m_mapHashedFileNames;
    QSize m_size;
};
