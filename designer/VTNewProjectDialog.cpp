#include "VTNewProjectDialog.h"

#include "DocumentManager.h"
#include "IMessageBox.h"
#include "IUtils.h"
#include "VTLocationManager.h"
#include "VTProjectPaths.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int s_nMaxStageSize = 10000;
constexpr int s_nMaxSceneCount = 1000;
constexpr int s_nDefaultWidth = 800;
constexpr int s_nDefaultHeight = 600;
constexpr int s_nDefaultSceneCount = 1;

// Characters that no file system of a desktop system accepts in a folder name.
const char s_szNamePattern[] = R"(^[^//\\:*?"<>|]*$)";

bool isUsableName(const QString& baseName)
{
    // "." and ".." pass the pattern but name the location itself or its parent.
    return !baseName.isEmpty() && baseName.count(QLatin1Char('.')) != baseName.size();
}

} // namespace

VTNewProjectDialog::VTNewProjectDialog(QWidget* parent)
    : ICreateDocumentDlg(parent)
{
    setWindowTitle(tr("New Project"));
    BreakpointList h = DocumentManager::getHBreakpoints();
    BreakpointList v = DocumentManager::getVBreakpoints();
    if (h.isEmpty() && v.isEmpty()) {
        DocumentManager::initBreakpoints(h, v, true);
        DocumentManager::setHBreakpoints(h);
        DocumentManager::setVBreakpoints(v);
        DocumentManager::saveSettings();
    }
    const QString location =
        VTLocationManager::getInstance()->getHistoryLocation(VTLocationManager::NewProject);
    buildUi(QStringLiteral("untitled"), QDir::toNativeSeparators(location));
}

VTNewProjectDialog::VTNewProjectDialog(const QString& title, const QString& name, const QString& location,
                                       QWidget* parent)
    : ICreateDocumentDlg(parent)
    , m_bShortForm(true)
{
    setWindowTitle(title);
    buildUi(name, QDir::toNativeSeparators(location));
}

VTNewProjectDialog::~VTNewProjectDialog() = default;

QList<QSize> VTNewProjectDialog::getPresetSizes()
{
    return {{400, 300}, {640, 480}, {720, 480}, {800, 600}, {1024, 768}, {1080, 720}, {1920, 1080}};
}

void VTNewProjectDialog::buildUi(const QString& name, const QString& location)
{
    auto* pForm = new QFormLayout;

    m_pNameEdit = new QLineEdit(name, this);
    m_pNameEdit->setObjectName(QStringLiteral("nameEdit"));
    m_pNameEdit->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QString::fromLatin1(s_szNamePattern)), m_pNameEdit));
    connect(m_pNameEdit, &QLineEdit::editingFinished, this, &VTNewProjectDialog::normalizeName);
    connect(m_pNameEdit, &QLineEdit::textChanged, this, &VTNewProjectDialog::updateAcceptable);
    pForm->addRow(tr("Name:"), m_pNameEdit);

    m_pLocationEdit = new QLineEdit(location, this);
    m_pLocationEdit->setObjectName(QStringLiteral("locationEdit"));
    connect(m_pLocationEdit, &QLineEdit::textChanged, this, &VTNewProjectDialog::updateAcceptable);
    m_pBrowseButton = new QPushButton(tr("Browse..."), this);
    m_pBrowseButton->setObjectName(QStringLiteral("browseButton"));
    connect(m_pBrowseButton, &QPushButton::clicked, this, &VTNewProjectDialog::browseLocation);
    auto* pLocationRow = new QHBoxLayout;
    pLocationRow->addWidget(m_pLocationEdit, 1);
    pLocationRow->addWidget(m_pBrowseButton);
    pForm->addRow(tr("Location:"), pLocationRow);

    if (!m_bShortForm) {
        m_pDefaultLocationCheck = new QCheckBox(tr("Use this location as the default"), this);
        m_pDefaultLocationCheck->setObjectName(QStringLiteral("defaultLocationCheck"));
        pForm->addRow(QString(), m_pDefaultLocationCheck);

        m_pWidthSpin = new QSpinBox(this);
        m_pWidthSpin->setObjectName(QStringLiteral("widthSpin"));
        m_pWidthSpin->setRange(0, s_nMaxStageSize);
        m_pWidthSpin->setValue(s_nDefaultWidth);
        m_pWidthSpin->setSuffix(tr(" px"));
        m_pHeightSpin = new QSpinBox(this);
        m_pHeightSpin->setObjectName(QStringLiteral("heightSpin"));
        m_pHeightSpin->setRange(0, s_nMaxStageSize);
        m_pHeightSpin->setValue(s_nDefaultHeight);
        m_pHeightSpin->setSuffix(tr(" px"));
        m_pSizeButton = new QToolButton(this);
        m_pSizeButton->setObjectName(QStringLiteral("sizeMenuButton"));
        m_pSizeButton->setText(tr("Presets"));
        m_pSizeButton->setPopupMode(QToolButton::InstantPopup);
        auto* pSizeMenu = new QMenu(m_pSizeButton);
        const QList<QSize> sizes = getPresetSizes();
        for (const QSize& size : sizes) {
            QAction* pAction = pSizeMenu->addAction(tr("%1 x %2").arg(size.width()).arg(size.height()));
            pAction->setData(size);
        }
        connect(pSizeMenu, &QMenu::triggered, this, [this](QAction* pAction) {
            const QSize size = pAction->data().toSize();
            m_pWidthSpin->setValue(size.width());
            m_pHeightSpin->setValue(size.height());
        });
        m_pSizeButton->setMenu(pSizeMenu);
        auto* pSizeRow = new QHBoxLayout;
        pSizeRow->addWidget(new QLabel(tr("W:"), this));
        pSizeRow->addWidget(m_pWidthSpin);
        pSizeRow->addWidget(new QLabel(tr("H:"), this));
        pSizeRow->addWidget(m_pHeightSpin);
        pSizeRow->addWidget(m_pSizeButton);
        pSizeRow->addStretch(1);
        pForm->addRow(tr("Size:"), pSizeRow);

        m_pSceneCountSpin = new QSpinBox(this);
        m_pSceneCountSpin->setObjectName(QStringLiteral("sceneCountSpin"));
        m_pSceneCountSpin->setRange(0, s_nMaxSceneCount);
        m_pSceneCountSpin->setValue(s_nDefaultSceneCount);
        pForm->addRow(tr("Blank scenes:"), m_pSceneCountSpin);

        m_pResponsiveCheck = new QCheckBox(tr("Responsive"), this);
        m_pResponsiveCheck->setObjectName(QStringLiteral("responsiveCheck"));
        m_pBreakpointsButton = new QPushButton(tr("Breakpoints..."), this);
        m_pBreakpointsButton->setObjectName(QStringLiteral("breakpointsButton"));
        m_pBreakpointsButton->setEnabled(false);
        connect(m_pResponsiveCheck, &QCheckBox::toggled, m_pBreakpointsButton, &QPushButton::setEnabled);
        connect(m_pBreakpointsButton, &QPushButton::clicked, this, &VTNewProjectDialog::breakpointsRequested);
        auto* pResponsiveRow = new QHBoxLayout;
        pResponsiveRow->addWidget(m_pResponsiveCheck);
        pResponsiveRow->addWidget(m_pBreakpointsButton);
        pResponsiveRow->addStretch(1);
        pForm->addRow(QString(), pResponsiveRow);
    }

    m_pButtonBox = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(m_pButtonBox, &QDialogButtonBox::accepted, this, &VTNewProjectDialog::accept);
    connect(m_pButtonBox, &QDialogButtonBox::rejected, this, &VTNewProjectDialog::reject);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addLayout(pForm);
    pLayout->addWidget(m_pButtonBox);
    updateAcceptable();
}

QString VTNewProjectDialog::getBaseName() const
{
    return VTProjectPaths::stripProjectSuffix(m_pNameEdit->text());
}

QString VTNewProjectDialog::getLocation() const
{
    return QDir::fromNativeSeparators(m_pLocationEdit->text().trimmed());
}

QString VTNewProjectDialog::getDocumentFileName() const
{
    const QString baseName = getBaseName();
    QDir(getLocation()).mkpath(baseName);
    return VTProjectPaths::getProjectFilePath(getLocation(), baseName);
}

int VTNewProjectDialog::getWidth() const
{
    return m_pWidthSpin ? m_pWidthSpin->value() : s_nDefaultWidth;
}

int VTNewProjectDialog::getHeight() const
{
    return m_pHeightSpin ? m_pHeightSpin->value() : s_nDefaultHeight;
}

int VTNewProjectDialog::getSceneCount() const
{
    return m_pSceneCountSpin ? m_pSceneCountSpin->value() : s_nDefaultSceneCount;
}

bool VTNewProjectDialog::isResponsive() const
{
    return m_pResponsiveCheck && m_pResponsiveCheck->isChecked();
}

void VTNewProjectDialog::normalizeName()
{
    const QString name = getBaseName();
    if (name != m_pNameEdit->text())
        m_pNameEdit->setText(name);
}

void VTNewProjectDialog::browseLocation()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Select Location"), getLocation());
    if (!folder.isEmpty())
        m_pLocationEdit->setText(QDir::toNativeSeparators(folder));
}

void VTNewProjectDialog::updateAcceptable()
{
    if (QPushButton* pOk = m_pButtonBox ? m_pButtonBox->button(QDialogButtonBox::Ok) : nullptr)
        pOk->setEnabled(isUsableName(getBaseName()) && !getLocation().isEmpty());
}

void VTNewProjectDialog::accept()
{
    const QString location = getLocation();
    if (!QFileInfo(location).isDir()) {
        warn(tr("The selected directory doesn't exist."));
        return;
    }
    const QString baseName = getBaseName();
    if (!isUsableName(baseName))
        return;
    if (!QDir(location).mkpath(baseName)) {
        warn(tr("Could not create folder to store project files."));
        return;
    }
    const QString filePath = VTProjectPaths::getProjectFilePath(location, baseName);
    if (QFileInfo::exists(filePath)) {
        const auto answer = IMessageBox::instance()->question(
            IUtils::getApplicationName(),
            tr("The folder contains an existing project.\nDo you want to overwrite it?"),
            IMessageBox::Yes | IMessageBox::No, IMessageBox::No);
        if (answer != IMessageBox::Yes)
            return;
        if (DocumentManager::findDocumentByPath(filePath)) {
            warn(tr("Could not overwrite an opening project."));
            return;
        }
        const VTProjectPaths paths(filePath);
        bool bRemoved = QFile::remove(filePath);
        if (bRemoved && QFileInfo::exists(paths.getBackupFilePath()))
            bRemoved = QFile::remove(paths.getBackupFilePath());
        if (bRemoved)
            bRemoved = IUtils::removeDir(paths.getResourceFolderPath());
        if (!bRemoved) {
            warn(tr("Unable to overwrite an existing project."));
            return;
        }
    }
    if (m_pDefaultLocationCheck && m_pDefaultLocationCheck->isChecked()) {
        VTLocationManager* pLocations = VTLocationManager::getInstance();
        pLocations->setHistoryLocation(VTLocationManager::NewProject, location);
        pLocations->saveSettings();
    }
    QDialog::accept();
}

void VTNewProjectDialog::warn(const QString& text)
{
    IMessageBox::instance()->warning(IUtils::getApplicationName(), text, IMessageBox::Ok);
}
