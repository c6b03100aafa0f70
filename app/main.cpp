#include "DialogMessageBox.h"
#include "DocumentManager.h"
#include "ICore.h"
#include "IMessageBox.h"
#include "LanguageManager.h"
#include "MainWindow.h"
#include "PluginManager.h"
#include "ThemesManager.h"
#include "VTStudioApplication.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv)
{
    // The web views of the welcome page and the stage share GL contexts with the widgets.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication app(argc, argv);
    QApplication::setApplicationName(ICore::applicationName());
    QApplication::setOrganizationName(QStringLiteral("Vetra"));
    QApplication::setApplicationVersion(QStringLiteral(VETRA_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Vetra Studio, the HTML5 animation studio."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("project"), QStringLiteral("Project (.vetra) or package (.vetrapack) to open."),
                                 QStringLiteral("[project...]"));
    QCommandLineOption quitAfter(QStringLiteral("quit-after"),
                                 QStringLiteral("Close the studio after <ms> milliseconds (for scripted runs)."),
                                 QStringLiteral("ms"));
    parser.addOption(quitAfter);
    parser.process(app);

    DialogMessageBox messageBox;
    IMessageBox::setInstance(&messageBox);
    ExtensionSystem::PluginManager::settings();
    DocumentManager::readSettings();
    ThemesManager::instance()->applySaved();
    LanguageManager::instance()->applySaved();

    int nResult = 0;
    {
        MainWindow window;
        QStringList errors;
        if (!VTStudioApplication::loadPlugins(window, &errors)) {
            const QString text = errors.join(QLatin1Char('\n'));
            std::fprintf(stderr, "%s\n", qPrintable(text));
            IMessageBox::instance()->critical(ICore::applicationName(), text);
            IMessageBox::setInstance(nullptr);
            ExtensionSystem::PluginManager::shutdown();
            return 1;
        }
        for (const QString& error : qAsConst(errors))
            std::fprintf(stderr, "%s\n", qPrintable(error));
        window.show();
        for (const QString& path : parser.positionalArguments()) {
            const QString filePath = QFileInfo(path).absoluteFilePath();
            QTimer::singleShot(0, &window, [&window, filePath] { window.openFile(filePath); });
        }
        if (parser.isSet(quitAfter))
            QTimer::singleShot(parser.value(quitAfter).toInt(), &window, &QWidget::close);
        nResult = app.exec();
        VTStudioApplication::shutdown();
    }
    IMessageBox::setInstance(nullptr);
    return nResult;
}
