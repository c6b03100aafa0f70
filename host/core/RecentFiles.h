#pragma once

#include <QObject>
#include <QStringList>

// The most recently opened projects, newest first, kept in the settings.
class RecentFiles final : public QObject
{
    Q_OBJECT
public:
    static constexpr int kMaxFiles = 10;

    explicit RecentFiles(QObject* parent = nullptr);

    QStringList getFiles() const { return m_lstFiles; }
    void add(const QString& filePath);
    void remove(const QString& filePath);
    // Drops entries whose file is gone.
    void prune();

signals:
    void changed(const QStringList& files);

private:
    void store();

    QStringList m_lstFiles;
};
