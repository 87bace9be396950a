// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

class CoreCatalogue;
class QComboBox;
class QListWidget;
class QMenu;
class QTabWidget;
class QTextBrowser;
class QTreeWidget;

namespace DEV {
class DeviceDb;
}

namespace IPCore {
class BaseIPCore;
}

// The generator's window: a device chooser, the catalogue of cores for that
// device, the selected core's description page beside the files the cores
// opened, and the results they gave the flow.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(const CoreCatalogue *catalogue, const QString &deviceId,
               QWidget *parent = nullptr);
    ~MainWindow() override;

    static QStringList deviceIds(const DEV::DeviceDb &db);

public slots:
    // Runs the selected core's dialog for a new core in a chosen directory.
    void newCore();
    // Asks for a configuration file and opens it with the core it names.
    void openConfiguration();
    // Opens a configuration file with the core whose id its "type" names.
    bool openConfigurationFile(const QString &file);

private:
    void fillCatalogue();
    void showDescription();
    IPCore::BaseIPCore *selectedCore() const;
    void rememberRecent(const QString &file);
    void fillRecentMenu();
    void showFile(const QString &fileName);
    void addResult(const QString &path, const QString &tag);
    void addProjectFiles(const QStringList &files);

    const CoreCatalogue *m_catalogue;
    QComboBox *m_devices;
    QTreeWidget *m_cores;
    QTabWidget *m_editors;
    QTextBrowser *m_description;
    QListWidget *m_results;
    QListWidget *m_project;
    QMenu *m_recentMenu;
};
