// SPDX-License-Identifier: MIT
#include "mainwindow.h"

#include "corecatalogue.h"

#include <core/editormanager.h>
#include <core/idecore.h>
#include <core/projectmanager.h>
#include <core/viewmanager.h>
#include <dev/devicedb.h>
#include <ipcore/baseipcore.h>
#include <te/flowmanager.h>
#include <te/taskengine.h>
#include <utils/messages.h>

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTextStream>
#include <QToolBar>
#include <QTreeWidget>
#include <QUrl>

namespace {
enum Column { NameColumn, VersionColumn, CategoryColumn, IdColumn };
}

MainWindow::MainWindow(const CoreCatalogue *catalogue, const QString &deviceId, QWidget *parent)
    : QMainWindow(parent)
    , m_catalogue(catalogue)
    , m_devices(new QComboBox)
    , m_cores(new QTreeWidget)
    , m_editors(new QTabWidget)
    , m_description(new QTextBrowser)
    , m_results(new QListWidget)
    , m_project(new QListWidget)
    , m_recentMenu(new QMenu(tr("Open &Recent"), this))
{
    setWindowTitle(tr("IP Core Generator"));
    resize(1100, 700);

    QMenu *fileMenu = menuBar()->addMenu(tr("&File"));
    QAction *newAction
        = fileMenu->addAction(tr("&New Core..."), this, &MainWindow::newCore, QKeySequence::New);
    newAction->setObjectName(QStringLiteral("newAction"));
    QAction *openAction = fileMenu->addAction(tr("&Open Configuration..."), this,
                                              &MainWindow::openConfiguration, QKeySequence::Open);
    openAction->setObjectName(QStringLiteral("openAction"));
    m_recentMenu->setObjectName(QStringLiteral("recentMenu"));
    fileMenu->addMenu(m_recentMenu);
    fileMenu->addSeparator();
    fileMenu->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence::Quit);
    fillRecentMenu();

    auto *toolBar = addToolBar(tr("Device"));
    toolBar->setObjectName(QStringLiteral("deviceToolBar"));
    toolBar->setMovable(false);
    toolBar->addWidget(new QLabel(tr(" Device: ")));
    m_devices->setObjectName(QStringLiteral("deviceComboBox"));
    m_devices->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    const DEV::DeviceDb *db = Core::IdeCore::deviceDataBase();
    for (const DEV::DeviceArg &device : db->devices())
        m_devices->addItem(QStringLiteral("%1   %2").arg(device.id, device.family), device.id);
    m_devices->setCurrentIndex(qMax(0, m_devices->findData(deviceId)));
    toolBar->addWidget(m_devices);
    toolBar->addSeparator();
    toolBar->addAction(newAction);
    toolBar->addAction(openAction);

    m_cores->setObjectName(QStringLiteral("coreTree"));
    m_cores->setHeaderLabels({tr("Name"), tr("Version"), tr("Category"), tr("ID")});
    m_cores->setRootIsDecorated(false);
    m_cores->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(m_cores, &QTreeWidget::itemDoubleClicked, this, &MainWindow::newCore);
    connect(m_cores, &QTreeWidget::currentItemChanged, this, &MainWindow::showDescription);

    m_editors->setObjectName(QStringLiteral("editorTabs"));
    m_editors->setTabsClosable(true);
    m_editors->setDocumentMode(true);
    connect(m_editors, &QTabWidget::tabCloseRequested, this, [this](int index) {
        delete m_editors->widget(index);
    });
    // The first page is the selected core's description; it stays.
    m_description->setObjectName(QStringLiteral("descriptionView"));
    m_editors->addTab(m_description, tr("Description"));
    m_editors->tabBar()->setTabButton(0, QTabBar::RightSide, nullptr);

    auto *splitter = new QSplitter;
    splitter->addWidget(m_cores);
    splitter->addWidget(m_editors);
    splitter->setSizes({520, 580});
    setCentralWidget(splitter);

    m_results->setObjectName(QStringLiteral("resultList"));
    auto *dock = new QDockWidget(tr("Flow Results"), this);
    dock->setObjectName(QStringLiteral("resultDock"));
    dock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    dock->setWidget(m_results);
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    resizeDocks({dock}, {140}, Qt::Vertical);

    // What the cores added to the project; a double click shows the file.
    m_project->setObjectName(QStringLiteral("projectList"));
    auto *projectDock = new QDockWidget(tr("Project Files"), this);
    projectDock->setObjectName(QStringLiteral("projectDock"));
    projectDock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    projectDock->setWidget(m_project);
    addDockWidget(Qt::BottomDockWidgetArea, projectDock);
    splitDockWidget(dock, projectDock, Qt::Horizontal);
    Core::ProjectManager *project = Core::ProjectManager::instance();
    connect(project, &Core::ProjectManager::filesAdded, this, &MainWindow::addProjectFiles);
    addProjectFiles(project->files());
    connect(m_project, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem *item) {
        showFile(item->data(Qt::UserRole).toString());
    });

    connect(m_devices, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &MainWindow::fillCatalogue);
    connect(Core::EditorManager::instance(), &Core::EditorManager::editorOpened, this,
            &MainWindow::showFile);
    TE::FlowManager *flow = TE::TaskEngine::instance()->flowManager();
    connect(flow, &TE::FlowManager::resultFileAdded, this, &MainWindow::addResult);
    for (const TE::FlowManager::ResultFile &result : flow->resultFiles())
        addResult(result.first, result.second);

    Core::ViewManager::setDialogParent(this);
    fillCatalogue();
    if (!m_catalogue->problems().isEmpty()) {
        auto *problems = new QLabel(m_catalogue->problems().join(QLatin1Char('\n')));
        problems->setObjectName(QStringLiteral("problemLabel"));
        problems->setStyleSheet(QStringLiteral("color: #b00000"));
        statusBar()->addPermanentWidget(problems);
    }
}

MainWindow::~MainWindow()
{
    Core::ViewManager::setDialogParent(nullptr);
}

QStringList MainWindow::deviceIds(const DEV::DeviceDb &db)
{
    QStringList ids;
    for (const DEV::DeviceArg &device : db.devices())
        ids << device.id;
    return ids;
}

void MainWindow::fillCatalogue()
{
    const DEV::DeviceArg device
        = Core::IdeCore::deviceDataBase()->findByID(m_devices->currentData().toString());
    // The selection outlives a change of device; a catalogue of one core
    // has it selected from the start.
    const QTreeWidgetItem *selected = m_cores->currentItem();
    const QString selectedId = selected ? selected->text(IdColumn) : QString();
    m_cores->clear();
    for (const CoreCatalogue::Entry &entry : m_catalogue->entries()) {
        const IPCore::BaseIPCore *core = entry.core;
        auto *item = new QTreeWidgetItem(m_cores);
        item->setText(NameColumn, core->name());
        item->setText(VersionColumn, core->version());
        item->setText(CategoryColumn, core->category().join(QStringLiteral(", ")));
        item->setText(IdColumn, core->id());
        const bool supported = core->isSupported(device);
        // Greyed, not disabled: a core the device may not use can still be
        // selected, to read its description.
        if (!supported) {
            for (int column = NameColumn; column <= IdColumn; ++column)
                item->setForeground(column, palette().brush(QPalette::Disabled, QPalette::Text));
        }
        item->setToolTip(NameColumn,
                         supported ? tr("Available for %1.").arg(device.name)
                                   : tr("Not available for the %1 family.").arg(device.family));
        if (core->id() == selectedId || m_catalogue->entries().size() == 1)
            m_cores->setCurrentItem(item);
    }
    QString summary = tr("%1   part number %2").arg(device.name, device.partNumber);
    if (!device.version.isEmpty())
        summary += tr("   version %1").arg(device.version);
    statusBar()->showMessage(summary);
}

void MainWindow::showDescription()
{
    const IPCore::BaseIPCore *core = selectedCore();
    m_description->clear();
    if (!core)
        return;
    for (const CoreCatalogue::Entry &entry : m_catalogue->entries()) {
        if (entry.core != core)
            continue;
        QString error;
        const QString path = CoreCatalogue::descriptionFile(entry, &error);
        if (path.isEmpty())
            m_description->setPlainText(error);
        else
            m_description->setSource(QUrl::fromLocalFile(path));
        return;
    }
}

void MainWindow::showFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        statusBar()->showMessage(tr("Cannot show \"%1\": %2")
                                     .arg(QDir::toNativeSeparators(fileName), file.errorString()));
        return;
    }
    auto *editor = new QPlainTextEdit;
    editor->setReadOnly(true);
    editor->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    QTextStream in(&file);
    in.setCodec("UTF-8");
    editor->setPlainText(in.readAll());
    const int index = m_editors->addTab(editor, QFileInfo(fileName).fileName());
    m_editors->setTabToolTip(index, QDir::toNativeSeparators(fileName));
    m_editors->setCurrentIndex(index);
}

void MainWindow::addProjectFiles(const QStringList &files)
{
    for (const QString &file : files) {
        auto *item = new QListWidgetItem(QDir::toNativeSeparators(file), m_project);
        item->setData(Qt::UserRole, file);
    }
}

void MainWindow::addResult(const QString &path, const QString &tag)
{
    m_results->addItem(QStringLiteral("%1   %2").arg(tag, QDir::toNativeSeparators(path)));
}

IPCore::BaseIPCore *MainWindow::selectedCore() const
{
    const QTreeWidgetItem *item = m_cores->currentItem();
    if (!item)
        return nullptr;
    const QString id = item->text(IdColumn);
    for (const CoreCatalogue::Entry &entry : m_catalogue->entries()) {
        if (entry.core->id() == id)
            return entry.core;
    }
    return nullptr;
}

void MainWindow::newCore()
{
    IPCore::BaseIPCore *core = selectedCore();
    const DEV::DeviceArg device
        = Core::IdeCore::deviceDataBase()->findByID(m_devices->currentData().toString());
    if (!core) {
        Utils::showMessage(this, QMessageBox::Information, tr("New Core"),
                           tr("Select a core in the catalogue first."));
        return;
    }
    if (!core->isSupported(device)) {
        Utils::showMessage(
            this, QMessageBox::Information, tr("New Core"),
            tr("%1 is not available for the %2 family.").arg(core->name(), device.family));
        return;
    }
    // Where the user last created a core, else the home folder.
    QSettings settings;
    const QString dir = QFileDialog::getExistingDirectory(
        this, tr("Create %1 In").arg(core->name()),
        settings.value(QStringLiteral("lastCreateDirectory"), QDir::homePath()).toString());
    if (dir.isEmpty())
        return;
    settings.setValue(QStringLiteral("lastCreateDirectory"), dir);
    CoreCatalogue::createCore(core, dir, device);
}

void MainWindow::openConfiguration()
{
    // Beside the configuration opened last, else in the home folder.
    const QStringList recent
        = QSettings().value(QStringLiteral("recentConfigurations")).toStringList();
    const QString start = recent.isEmpty() ? QDir::homePath() : QFileInfo(recent.first()).path();
    const QString file = QFileDialog::getOpenFileName(this, tr("Open Configuration"), start,
                                                      tr("IP configurations (*.ipc)"));
    if (!file.isEmpty())
        openConfigurationFile(file);
}

bool MainWindow::openConfigurationFile(const QString &file)
{
    QString error;
    IPCore::BaseIPCore *core = m_catalogue->coreForConfiguration(file, &error);
    if (!core) {
        Utils::showMessage(this, QMessageBox::Warning, tr("Open Configuration"), error);
        return false;
    }
    // The window shows the device the configuration was made for; the core
    // itself reads it from the file.
    const int deviceIndex = m_devices->findData(CoreCatalogue::deviceOfConfiguration(file));
    if (deviceIndex >= 0)
        m_devices->setCurrentIndex(deviceIndex);
    const QFileInfo info(file);
    rememberRecent(info.absoluteFilePath());
    CoreCatalogue::openConfiguration(core, info.absoluteFilePath());
    return true;
}

void MainWindow::rememberRecent(const QString &file)
{
    QSettings settings;
    QStringList recent = settings.value(QStringLiteral("recentConfigurations")).toStringList();
    recent.removeAll(file);
    recent.prepend(file);
    settings.setValue(QStringLiteral("recentConfigurations"), QStringList(recent.mid(0, 8)));
    fillRecentMenu();
}

void MainWindow::fillRecentMenu()
{
    m_recentMenu->clear();
    const QStringList recent = QSettings().value(QStringLiteral("recentConfigurations")).toStringList();
    for (const QString &file : recent) {
        m_recentMenu->addAction(QDir::toNativeSeparators(file), this,
                                [this, file] { openConfigurationFile(file); });
    }
    m_recentMenu->setEnabled(!recent.isEmpty());
}
