#include "DocumentManager.h"
#include "MessageRecorder.h"
#include "PluginManager.h"
#include "VTDocument.h"
#include "VTLocationManager.h"
#include "VTNewProjectDialog.h"
#include "VTProjectDialogs.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QValidator>
#include <QtTest>

namespace {

bool writeBytes(const QString& filePath, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size();
}

} // namespace

class TestNewProjectDialog : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void defaultsAndNameRules();
    void sizeMenuFillsSizes();
    void acceptChecksLocationAndName();
    void acceptOverwritesOnlyWhatMayGo();
    void shortFormServesProjectDialogs();
    void recoveryBoxMapsButtons();

private:
    QString location(const QString& name) const;

    QTemporaryDir m_dir;
};

void TestNewProjectDialog::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qputenv("HOME", QDir(m_dir.path()).filePath(QStringLiteral("home")).toLocal8Bit());
}

QString TestNewProjectDialog::location(const QString& name) const
{
    const QString path = QDir(m_dir.path()).filePath(name);
    QDir().mkpath(path);
    return path;
}

void TestNewProjectDialog::defaultsAndNameRules()
{
    DocumentManager::setHBreakpoints({});
    DocumentManager::setVBreakpoints({});
    VTLocationManager::getInstance()->setHistoryLocation(VTLocationManager::NewProject, location("defaults"));

    VTNewProjectDialog dialog;
    // Empty preset lists are filled once and stored.
    QVERIFY(!DocumentManager::getHBreakpoints().isEmpty());
    QVERIFY(!DocumentManager::getVBreakpoints().isEmpty());
    QVERIFY(ExtensionSystem::PluginManager::settings()->contains(QStringLiteral("Documents/HBreakpoints")));

    auto* pName = dialog.findChild<QLineEdit*>(QStringLiteral("nameEdit"));
    QVERIFY(pName);
    QCOMPARE(pName->text(), QStringLiteral("untitled"));
    QCOMPARE(dialog.getLocation(), location("defaults"));
    QCOMPARE(dialog.getWidth(), 800);
    QCOMPARE(dialog.getHeight(), 600);
    QCOMPARE(dialog.getSceneCount(), 1);
    QVERIFY(!dialog.isResponsive());
    auto* pWidth = dialog.findChild<QSpinBox*>(QStringLiteral("widthSpin"));
    auto* pScenes = dialog.findChild<QSpinBox*>(QStringLiteral("sceneCountSpin"));
    QVERIFY(pWidth && pScenes);
    QCOMPARE(pWidth->maximum(), 10000);
    QCOMPARE(pWidth->minimum(), 0);
    QCOMPARE(pScenes->maximum(), 1000);

    // Characters no folder may have are refused as they are typed.
    int nPos = 0;
    for (const char* pszBad : {"a/b", "a\\b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b"}) {
        QString text = QString::fromLatin1(pszBad);
        QCOMPARE(pName->validator()->validate(text, nPos), QValidator::Invalid);
    }
    QString good = QStringLiteral("My project (2).v2");
    QCOMPARE(pName->validator()->validate(good, nPos), QValidator::Acceptable);
    pName->clear();
    QTest::keyClicks(pName, QStringLiteral("a/b:c"));
    QCOMPARE(pName->text(), QStringLiteral("abc"));

    // Leaving the field cuts the project extension and the blanks.
    pName->setText(QStringLiteral("  Banner.VETRA "));
    QTest::keyClick(pName, Qt::Key_Return);
    QCOMPARE(pName->text(), QStringLiteral("Banner"));
    pName->setText(QStringLiteral("Banner.vetra.bak"));
    dialog.normalizeName();
    QCOMPARE(pName->text(), QStringLiteral("Banner.vetra.bak"));

    // No name, or one that is only dots, cannot be accepted.
    QPushButton* pOk = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    QVERIFY(pOk->isEnabled());
    for (const char* pszUnusable : {"", "   ", ".", "..", ".vetra"}) {
        pName->setText(QString::fromLatin1(pszUnusable));
        QVERIFY2(!pOk->isEnabled(), pszUnusable);
    }

    // The breakpoint button follows the responsive box.
    auto* pResponsive = dialog.findChild<QCheckBox*>(QStringLiteral("responsiveCheck"));
    auto* pBreakpoints = dialog.findChild<QPushButton*>(QStringLiteral("breakpointsButton"));
    QVERIFY(pResponsive && pBreakpoints);
    QVERIFY(!pBreakpoints->isEnabled());
    pResponsive->setChecked(true);
    QVERIFY(pBreakpoints->isEnabled());
    QVERIFY(dialog.isResponsive());
    QSignalSpy requested(&dialog, &VTNewProjectDialog::breakpointsRequested);
    pBreakpoints->click();
    QCOMPARE(requested.count(), 1);
    pResponsive->setChecked(false);
    QVERIFY(!pBreakpoints->isEnabled());

    // Lists the user already has are left alone.
    const BreakpointList mine = {{333, false}};
    DocumentManager::setHBreakpoints(mine);
    DocumentManager::setVBreakpoints({});
    VTNewProjectDialog second;
    QCOMPARE(DocumentManager::getHBreakpoints(), mine);
    QVERIFY(DocumentManager::getVBreakpoints().isEmpty());
}

void TestNewProjectDialog::sizeMenuFillsSizes()
{
    VTNewProjectDialog dialog;
    auto* pButton = dialog.findChild<QToolButton*>(QStringLiteral("sizeMenuButton"));
    QVERIFY(pButton && pButton->menu());
    const QList<QAction*> actions = pButton->menu()->actions();
    QStringList texts;
    for (QAction* pAction : actions)
        texts << pAction->text();
    QCOMPARE(texts, (QStringList{"400 x 300", "640 x 480", "720 x 480", "800 x 600", "1024 x 768",
                                 "1080 x 720", "1920 x 1080"}));
    const QList<QSize> sizes = VTNewProjectDialog::getPresetSizes();
    QCOMPARE(sizes.size(), actions.size());
    for (int i = actions.size() - 1; i >= 0; --i) {
        actions.at(i)->trigger();
        QCOMPARE(QSize(dialog.getWidth(), dialog.getHeight()), sizes.at(i));
    }
    QCOMPARE(QSize(dialog.getWidth(), dialog.getHeight()), QSize(400, 300));
}

void TestNewProjectDialog::acceptChecksLocationAndName()
{
    MessageRecorder messages;
    const QString root = location("accept");
    VTNewProjectDialog dialog;
    auto* pName = dialog.findChild<QLineEdit*>(QStringLiteral("nameEdit"));
    auto* pLocation = dialog.findChild<QLineEdit*>(QStringLiteral("locationEdit"));

    pLocation->setText(QDir(root).filePath(QStringLiteral("missing")));
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(messages.getTexts(MessageRecorder::Warning),
             QStringList{"The selected directory doesn't exist."});
    QCOMPARE(messages.m_lstTitles, QStringList{"Vetra Studio"});

    // A file in the way of the project folder.
    messages.clear();
    QVERIFY(writeBytes(QDir(root).filePath(QStringLiteral("blocked")), "file"));
    pLocation->setText(root);
    pName->setText(QStringLiteral("blocked"));
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(messages.getTexts(), QStringList{"Could not create folder to store project files."});

    // A good name makes its folder; the extension typed by the user is not part of it.
    messages.clear();
    pName->setText(QStringLiteral("Show.vetra"));
    dialog.findChild<QCheckBox*>(QStringLiteral("defaultLocationCheck"))->setChecked(true);
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(messages.m_lstMessages.isEmpty());
    QVERIFY(QFileInfo(QDir(root).filePath(QStringLiteral("Show"))).isDir());
    QCOMPARE(dialog.getDocumentFileName(), QDir(root).filePath(QStringLiteral("Show/Show.vetra")));
    // The box made this location the one to start from next time, and stored it.
    QCOMPARE(VTLocationManager::getInstance()->getHistoryLocation(VTLocationManager::NewProject), root);
}

void TestNewProjectDialog::acceptOverwritesOnlyWhatMayGo()
{
    MessageRecorder messages;
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    VTLocationManager::getInstance()->setSettings(pSettings);
    const QString root = location("overwrite");
    const QString project = QDir(root).filePath(QStringLiteral("Old/Old.vetra"));
    const QString backup = QDir(root).filePath(QStringLiteral("Old/Old.vetrabak"));
    const QString resource = QDir(root).filePath(QStringLiteral("Old/Old_res/pic.png"));
    const QString keep = QDir(root).filePath(QStringLiteral("Old/notes.txt"));
    const QByteArray projectData =
        R"({"appName":"Vetra Studio","document":{"docVersion":3,"width":10,"height":10}})";
    const auto makeOldProject = [&] {
        return writeBytes(project, projectData) && writeBytes(backup, "{}") && writeBytes(resource, "png") &&
               writeBytes(keep, "mine");
    };
    QVERIFY(makeOldProject());
    const QString question =
        QStringLiteral("The folder contains an existing project.\nDo you want to overwrite it?");

    VTNewProjectDialog dialog;
    dialog.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Old"));
    dialog.findChild<QLineEdit*>(QStringLiteral("locationEdit"))->setText(root);

    // No, also the answer without a user: nothing changes, the dialog stays.
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(messages.getTexts(), QStringList{question});
    QVERIFY(QFileInfo::exists(project) && QFileInfo::exists(backup) && QFileInfo::exists(resource));

    // Yes, but the project is open.
    {
        VTDocument open;
        open.setFileName(project);
        QVERIFY(open.open());
        messages.clear();
        messages.m_lstAnswers << IMessageBox::Yes;
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(messages.getTexts(), (QStringList{question, "Could not overwrite an opening project."}));
        QVERIFY(QFileInfo::exists(project) && QFileInfo::exists(backup) && QFileInfo::exists(resource));
    }

    // Yes with the project closed: its file, backup and resource folder go, nothing else.
    messages.clear();
    messages.m_lstAnswers << IMessageBox::Yes;
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(messages.getTexts(), QStringList{question});
    QVERIFY(!QFileInfo::exists(project));
    QVERIFY(!QFileInfo::exists(backup));
    QVERIFY(!QFileInfo::exists(QFileInfo(resource).absolutePath()));
    QVERIFY(QFileInfo::exists(keep));
    // Left unchecked, the default location stays as it was.
    QVERIFY(!pSettings->contains(QStringLiteral("LocationHistory/0")));
    VTLocationManager::getInstance()->setSettings(nullptr);
}

void TestNewProjectDialog::shortFormServesProjectDialogs()
{
    MessageRecorder messages;
    const QString root = location("short");
    VTNewProjectDialog dialog(QStringLiteral("Save As"), QStringLiteral("Copy"), root);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Save As"));
    QVERIFY(dialog.isShortForm());
    QVERIFY(!dialog.findChild<QSpinBox*>(QStringLiteral("widthSpin")));
    QVERIFY(!dialog.findChild<QCheckBox*>(QStringLiteral("defaultLocationCheck")));
    QVERIFY(!dialog.findChild<QCheckBox*>(QStringLiteral("responsiveCheck")));
    QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->text(), QStringLiteral("Copy"));
    QCOMPARE(dialog.getWidth(), 800);
    QVERIFY(!dialog.isResponsive());

    // The widget implementation runs the short form modally and hands back the project path.
    VTProjectDialogs dialogs;
    QString answer;
    QTimer::singleShot(0, this, [] {
        auto* pDialog = qobject_cast<VTNewProjectDialog*>(QApplication::activeModalWidget());
        QVERIFY(pDialog);
        pDialog->findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Chosen"));
        pDialog->accept();
    });
    QVERIFY(
        dialogs.askProjectLocation(QStringLiteral("Import Project"), QStringLiteral("Pack"), root, &answer));
    QCOMPARE(answer, QDir(root).filePath(QStringLiteral("Chosen/Chosen.vetra")));
    QVERIFY(QFileInfo(QDir(root).filePath(QStringLiteral("Chosen"))).isDir());

    QTimer::singleShot(0, this, [] {
        auto* pDialog = qobject_cast<VTNewProjectDialog*>(QApplication::activeModalWidget());
        QVERIFY(pDialog);
        QCOMPARE(pDialog->windowTitle(), QStringLiteral("Save As"));
        pDialog->reject();
    });
    answer.clear();
    QVERIFY(!dialogs.askProjectLocation(QStringLiteral("Save As"), QStringLiteral("Pack"), root, &answer));
    QVERIFY(answer.isEmpty());
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestNewProjectDialog::recoveryBoxMapsButtons()
{
    using Choice = IProjectDialogs::BackupChoice;
    VTProjectDialogs dialogs;
    const QList<QPair<QString, Choice>> buttons{{QStringLiteral("Open Backup"), Choice::OpenBackup},
                                                {QStringLiteral("Open Both"), Choice::OpenBoth},
                                                {QStringLiteral("Open Last Saved"), Choice::OpenLastSaved},
                                                {QStringLiteral("Cancel"), Choice::Cancel}};
    for (const auto& button : buttons) {
        QTimer::singleShot(0, this, [&button] {
            auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(pBox);
            QCOMPARE(pBox->windowTitle(), QStringLiteral("Vetra Studio"));
            QCOMPARE(pBox->buttons().size(), 4);
            for (QAbstractButton* pButton : pBox->buttons()) {
                QVERIFY(pButton->minimumWidth() >= pButton->sizeHint().width());
                if (pButton->text().remove(QLatin1Char('&')) == button.first)
                    pButton->click();
            }
        });
        QCOMPARE(dialogs.askBackupRecovery(location("recovery")), button.second);
    }
}

QTEST_MAIN(TestNewProjectDialog)
#include "tst_newprojectdialog.moc"
