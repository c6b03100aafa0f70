#pragma once

#include <QObject>
#include <QStringList>

namespace ExtensionSystem {

// The interface id every plug-in of the studio declares in its metadata.
inline constexpr char kPluginIid[] = "com.KORVEL.Vetra.Plugin";

class IPlugin : public QObject
{
    Q_OBJECT
public:
    enum ShutdownFlag { SynchronousShutdown, AsynchronousShutdown };

    IPlugin();
    ~IPlugin() override;

public slots:
    virtual bool initialize(const QStringList& arguments, QString* pErrorString) = 0;
    virtual void extensionsInitialized() = 0;
    virtual bool delayedInitialize() { return false; }
    virtual ShutdownFlag aboutToShutdown() { return SynchronousShutdown; }
    virtual QObject* remoteCommand(const QStringList& options, const QString& workingDirectory,
                                   const QStringList& arguments);

public:
    // Puts the object into the shared pool now and removes and deletes it when the plug-in goes,
    // in reverse order of adding.
    void addAutoReleasedObject(QObject* pObject);

signals:
    void asynchronousShutdownFinished();

private:
    QList<QObject*> m_lstAutoReleased;
};

} // namespace ExtensionSystem

Q_DECLARE_INTERFACE(ExtensionSystem::IPlugin, "com.KORVEL.Vetra.Plugin")
