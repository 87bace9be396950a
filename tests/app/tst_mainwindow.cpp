// SPDX-License-Identifier: MIT
//
// The generator's window with the installed tree's one core: run from the
// staged bin/ folder, where the window finds the packages and the devices.

#include "corecatalogue.h"
#include "mainwindow.h"
#include "testfiles.h"

#include <QComboBox>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void oneCore_data();
    void oneCore();
};

void tst_MainWindow::oneCore_data()
{
    QTest::addColumn<QString>("device");
    // The device of a configuration opened in the window; none when empty.
    QTest::addColumn<QString>("opened");

    QTest::newRow("supported") << "RK9C90F-CS256-2" << QString();
    QTest::newRow("not supported, then a configuration") << "RK7C60L-BG256-1"
                                                         << "RK9C370D-FG676-2";
}

void tst_MainWindow::oneCore()
{
    QFETCH(QString, device);
    QFETCH(QString, opened);

    CoreCatalogue catalogue;
    catalogue.load(CoreCatalogue::defaultRoot());
    QCOMPARE(catalogue.entries().size(), 1);
    MainWindow window(&catalogue, device);
    const auto *cores = window.findChild<QTreeWidget *>("coreTree");
    QVERIFY(cores->currentItem());
    QCOMPARE(cores->currentItem()->text(3), QString("SERDES_IP"));
    const QString page = window.findChild<QTextBrowser *>("descriptionView")->toPlainText();
    QVERIFY2(page.contains("The SerDes core configures the high-speed serial transceivers"),
             qPrintable(page));

    auto *devices = window.findChild<QComboBox *>("deviceComboBox");
    QCOMPARE(devices->currentData().toString(), device);
    if (opened.isEmpty())
        return;
    QTemporaryDir tmp;
    QVERIFY(writeFile(tmp.filePath("serdes.ipc"),
                      "[General]\ntype=SERDES_IP\nversion=1.2\ntarget_device=" + opened.toUtf8()));
    // The core's dialog is closed as soon as it shows.
    QTimer close;
    connect(&close, &QTimer::timeout, [] {
        if (QWidget *dialog = QApplication::activeModalWidget())
            dialog->close();
    });
    close.start(50);
    QVERIFY(window.openConfigurationFile(tmp.filePath("serdes.ipc")));
    QCOMPARE(devices->currentData().toString(), opened);
    QCOMPARE(cores->currentItem()->text(3), QString("SERDES_IP"));
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
