#include "VTPreviewCommand.h"

#include "VTCliProject.h"
#include "VTDocument.h"
#include "VTHttpServer.h"
#include "VTPreview.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>
#include <QTextStream>

#include <memory>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace {

struct Options
{
    QString file;
    quint16 nPort = VTHttpServer::s_nDefaultPort;
    bool bSceneOnly = false;
};

// Empty on success, else the message.
QString parseOptions(const QStringList& arguments, Options& options)
{
    QStringList positional;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--port")) {
            bool bOk = false;
            const uint nPort = i + 1 < arguments.size() ? arguments.at(i + 1).toUInt(&bOk) : 0;
            if (!bOk || nPort > 65535)
                return VTPreviewCommand::tr("--port needs a number from 0 to 65535");
            options.nPort = quint16(nPort);
            ++i;
        } else if (argument == QLatin1String("--scene-only")) {
            options.bSceneOnly = true;
        } else if (argument.startsWith(QLatin1String("--")) || argument.isEmpty()) {
            return VTPreviewCommand::tr("unknown argument \"%1\"").arg(argument);
        } else {
            positional.append(argument);
        }
    }
    if (positional.size() != 1)
        return VTPreviewCommand::tr("FILE is required");
    options.file = positional.first();
    return QString();
}

#ifdef Q_OS_UNIX
int s_nSignalFd = -1;

void onStopSignal(int)
{
    // Only what is safe in a signal handler: the event loop reads the byte.
    const char c = 1;
    if (s_nSignalFd >= 0) {
        const ssize_t nWritten = ::write(s_nSignalFd, &c, 1);
        Q_UNUSED(nWritten)
    }
}

// While it lives, SIGINT and SIGTERM end the event loop instead of the process, so the server
// stops and the preview files go.
class StopSignals final
{
public:
    StopSignals()
    {
        if (::socketpair(AF_UNIX, SOCK_STREAM, 0, m_fds) != 0)
            return;
        s_nSignalFd = m_fds[0];
        struct sigaction action = {};
        action.sa_handler = onStopSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        sigaction(SIGINT, &action, &m_oldInt);
        sigaction(SIGTERM, &action, &m_oldTerm);
        m_pNotifier = std::make_unique<QSocketNotifier>(m_fds[1], QSocketNotifier::Read);
        QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, m_pNotifier.get(), [this]() {
            char c = 0;
            const ssize_t nRead = ::read(m_fds[1], &c, 1);
            Q_UNUSED(nRead)
            QCoreApplication::quit();
        });
    }
    ~StopSignals()
    {
        if (m_fds[0] < 0)
            return;
        sigaction(SIGINT, &m_oldInt, nullptr);
        sigaction(SIGTERM, &m_oldTerm, nullptr);
        m_pNotifier.reset();
        s_nSignalFd = -1;
        ::close(m_fds[0]);
        ::close(m_fds[1]);
    }
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

private:
    int m_fds[2] = {-1, -1};
    struct sigaction m_oldInt = {};
    struct sigaction m_oldTerm = {};
    std::unique_ptr<QSocketNotifier> m_pNotifier;
};
#else
class StopSignals final
{
};
#endif

} // namespace

QString VTPreviewCommand::getSummary() const
{
    return tr("Serve the preview of a project on 127.0.0.1 and print its URL, until interrupted");
}

int VTPreviewCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const QString usage = getUsage();
    if (answerHelp(arguments, out))
        return s_nExitSuccess;
    Options options;
    const QString error = parseOptions(arguments, options);
    if (!error.isEmpty()) {
        err << "vetra preview: " << error << '\n' << usage << '\n';
        return s_nExitUsage;
    }

    const VTCliProject project(options.file, err);
    if (!project.isOpen())
        return s_nExitFailure;
    VTDocument& document = project.getDocument();

    VTPreview preview(&document);
    preview.setPort(options.nPort);
    // Nobody here to look at a browser: the URL is the result.
    preview.setUrlOpener([&out](const QUrl& url) {
        out << QString::fromLatin1(url.toEncoded()) << '\n';
        out.flush();
        return true;
    });
    const bool bFolderExisted = QFileInfo(preview.getPreviewFolderPath()).isDir();
    // Installed before the server starts, so that an early interrupt still cleans up.
    const StopSignals stopSignals;
    VTHttpServer* pServer = VTHttpServer::getInstance();
    int nExitCode = s_nExitSuccess;
    if (preview.previewProject(options.bSceneOnly)) {
        // What the studio serves for each open project: the page finds the resources there.
        pServer->addAllowedDir(document.getResourceFolderPath());
        err << tr("vetra preview: serving on 127.0.0.1:%1; stop with Ctrl+C").arg(pServer->getPort()) << '\n';
        err.flush();
        QCoreApplication::exec();
    } else {
        err << project.getShownPath() << ": " << tr("no preview") << '\n';
        nExitCode = s_nExitFailure;
    }
    pServer->stop();
    pServer->removeAllowedDir(document.getResourceFolderPath());
    pServer->removeAllowedDir(preview.getPreviewFolderPath());

    // The project is left as it was found.
    const QStringList written = preview.getWrittenFiles();
    for (const QString& filePath : written)
        QFile::remove(filePath);
    if (!bFolderExisted)
        QDir().rmdir(preview.getPreviewFolderPath());
    return nExitCode;
}
