// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

class CoreCatalogue;
class QComboBox;
class QListWidget;
class QTabWidget;
class QTreeWidget;

namespace DEV {
class DeviceDb;
}

// The generator's window: a device chooser, the catalogue of cores for that
// device, the files the cores opened, and the results they gave the flow.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(const CoreCatalogue *catalogue, const QString &deviceId,
               QWidget *parent = nullptr);
    ~MainWindow() override;

    static QStringList deviceIds(const DEV::DeviceDb &db);

private:
    void fillCatalogue();
    void showFile(const QString &fileName);
    void addResult(const QString &path, const QString &tag);

    const CoreCatalogue *m_catalogue;
    QComboBox *m_devices;
    QTreeWidget *m_cores;
    QTabWidget *m_editors;
    QListWidget *m_results;
};
