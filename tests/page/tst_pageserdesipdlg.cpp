// SPDX-License-Identifier: MIT
//
// The SerDes page with a real protocol plug-in found where an installed
// generator keeps them (tests/ipcore/SERDES_IP/IPlib/testprotocol): instances
// created, edited and deleted, the configuration file written and read back,
// and the older layouts of that file.

#include "modalanswers.h"

#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "page/serdesipdlg.h"
#include "plugin/serdesipconstants.h"
#include "protocol/m_treecomboboxwidget.h"
#include "protocol/message.h"
#include "reconfig/reconfiguration.h"
#include "views/clockschematicview.h"

#include <core/idecore.h>
#include <dev/devicedb.h>

#include "testfiles.h"

#include <QDesktopServices>
#include <QDir>
#include <QLibraryInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QWebPage>
#include <QWebView>
#include <QtTest>

using namespace IPSERDESIP;

namespace {

QMap<QString, QVariant> coreInfo()
{
    return {{QLatin1String(IPCore::Info::KEY_ID), "SERDES_IP"}};
}

DEV::DeviceArg deviceOf(const QString &id)
{
    return Core::IdeCore::deviceDataBase()->findByID(id);
}

// An instance group as the test protocol writes it.
QMap<QString, QVariant> instanceArgs(const QString &name, const QStringList &rows)
{
    return {{"name", name}, {"module", name}, {"file", name}, {"rows", rows}};
}

void writeIni(const QString &path, const QMap<QString, QVariant> &top,
              const QMap<QString, QMap<QString, QVariant>> &groups)
{
    QSettings settings(path, QSettings::IniFormat);
    for (auto it = top.cbegin(); it != top.cend(); ++it)
        settings.setValue(it.key(), it.value());
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        settings.beginGroup(group.key());
        for (auto it = group.value().cbegin(); it != group.value().cend(); ++it)
            settings.setValue(it.key(), it.value());
        settings.endGroup();
    }
}

} // namespace

class tst_PageSerdesIpDlg : public QObject
{
    Q_OBJECT

public slots:
    void openUrl(const QUrl &url) { m_opened << url; }

private slots:
    void initTestCase();
    void init();
    void discovery();
    void hueWalk();
    void editAndDelete();
    void saveAndReopen();
    void leavingAsks_data();
    void leavingAsks();
    void reopenKeepsEveryInstance();
    void olderLayouts();
    void incompatibleFile();
    void buttons();

private:
    QString m_ipLib;
    std::unique_ptr<QTemporaryDir> m_tmp;
    QList<QUrl> m_opened;
};

void tst_PageSerdesIpDlg::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    m_ipLib = QDir::cleanPath(QCoreApplication::applicationDirPath()
                              + QStringLiteral("/../ipcore/SERDES_IP/IPlib"));
    QVERIFY(QFile::exists(m_ipLib + QStringLiteral("/testprotocol/libtestprotocol.so")));
    QString error;
    static DEV::DeviceDb db;
    QVERIFY2(db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
    Core::IdeCore::setDeviceDataBase(&db);
}

void tst_PageSerdesIpDlg::init()
{
    m_tmp = std::make_unique<QTemporaryDir>();
    QVERIFY(m_tmp->isValid());
}

void tst_PageSerdesIpDlg::discovery()
{
    // A library directly in IPlib is not looked at; one that is no protocol
    // package and a file that is no library are passed over with a word.
    const QString loose = m_ipLib + QStringLiteral("/libloose.so");
    const QString other = m_ipLib + QStringLiteral("/zz_other/libqgif.so");
    const QString broken = m_ipLib + QStringLiteral("/zz_broken/libbroken.so");
    // What a failed run left behind goes first.
    QFile::remove(loose);
    QFile::remove(other);
    QVERIFY(QFile::copy(m_ipLib + QStringLiteral("/testprotocol/libtestprotocol.so"), loose));
    QVERIFY(QDir().mkpath(m_ipLib + QStringLiteral("/zz_other")));
    QVERIFY(QDir().mkpath(m_ipLib + QStringLiteral("/zz_broken")));
    QVERIFY(QFile::copy(QLibraryInfo::location(QLibraryInfo::PluginsPath)
                            + QStringLiteral("/imageformats/libqgif.so"),
                        other));
    QVERIFY(writeFile(broken, "no library"));

    QTest::ignoreMessage(
        QtCriticalMsg,
        qPrintable(QStringLiteral("No IP Pakcgae entry found in file:  \"%1\"").arg(other)));
    QTest::ignoreMessage(QtCriticalMsg,
                         qPrintable(QStringLiteral("Can not load IP file:  \"%1\"").arg(broken)));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Can not load IP file:  \".*\"$"));
    {
        serdesipdlg page(coreInfo());
        page.setCreating(m_tmp->path(), deviceOf(QStringLiteral("RK9C880D-FG1517-2")));
        auto *tree = page.findChild<M_TreeComboBoxWidget *>();
        QVERIFY(tree);
        QStringList rows;
        for (QTreeWidgetItemIterator it(tree); *it; ++it) {
            if ((*it)->type() != M_TreeComboBoxWidget::FolderItem)
                rows << (*it)->text(0);
        }
        rows.sort();
        // A plug-in that failed to load is a greyed row of its file's name.
        QCOMPARE(rows, QStringList({"TestProtocol", "XAUI", "eDP RX", "eDP TX", "libbroken.so",
                                    "libqgif.so"}));
        QVERIFY(tree->getIPCoreByName(QStringLiteral("TestProtocol")));
        QVERIFY(!tree->getIPCoreByName(QStringLiteral("XAUI")));
    }
    QVERIFY(QFile::remove(loose));
    QVERIFY(QDir(m_ipLib + QStringLiteral("/zz_other")).removeRecursively());
    QVERIFY(QDir(m_ipLib + QStringLiteral("/zz_broken")).removeRecursively());
}

void tst_PageSerdesIpDlg::hueWalk()
{
    serdesipdlg page(coreInfo());
    page.setCreating(m_tmp->path(), deviceOf(QStringLiteral("RK9C880D-FG1517-2")));
    for (int n = 0; n < 4; ++n)
        page.createIP(QStringLiteral("TestProtocol"));
    QCOMPARE(page.instanceArgs().keys(), QStringList({"test_1", "test_2", "test_3", "test_4"}));
    QList<double> hues;
    for (const Message *msg : page.instanceMessages())
        hues << msg->h;
    QCOMPARE(hues, QList<double>({getH(0), getH(1), getH(2), getH(3)}));
    QCOMPARE(serdes::instance()->occupiedLanes().size(), 4);

    // The freed second hue is not taken again: the walk counts every message
    // it passes, and the clash with the fourth jumps to the seventh hue.
    page.deleteIP(QStringLiteral("test_2"));
    QCOMPARE(serdes::instance()->occupiedLanes().size(), 3);
    page.createIP(QStringLiteral("TestProtocol"));
    QCOMPARE(page.instanceMessages().value("test_2")->h, getH(6));

    // Help rows and protocols the device cannot run create nothing.
    page.createIP(QStringLiteral("XAUI"));
    page.createIP(QStringLiteral("NoSuchProtocol"));
    QCOMPARE(page.instanceArgs().size(), 4);
}

void tst_PageSerdesIpDlg::editAndDelete()
{
    serdesipdlg page(coreInfo());
    page.setCreating(m_tmp->path(), deviceOf(QStringLiteral("RK9C880D-FG1517-2")));
    QMap<QString, QVariant> a = instanceArgs("a", {"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 5 0 0"});
    QMap<QString, QVariant> b = instanceArgs("b", {"Q0_LANE1_TX Q0_QPLL1 Q0_REFCLK1 125 0 0 5"});
    page.parseData_v_1_2(QStringLiteral("TestProtocol:a"), a);
    page.parseData_v_1_2(QStringLiteral("TestProtocol:b"), b);
    QCOMPARE(page.instanceArgs().keys(), QStringList({"a", "b"}));

    // A cancelled edit puts the instance back as it was, flags included; the
    // mark 99 means nothing was saved and is not written back.
    serdes *model = serdes::instance();
    model->setData(QStringLiteral("sriohaveX2_trueb"), QStringLiteral("yes"));
    model->setData(QStringLiteral("jesd204bCheckDRP_b"), 99);
    model->setData(QStringLiteral("jesd204bCheckDRP_a"), 1);
    page.editIP(QStringLiteral("b"));
    QCOMPARE(page.instanceArgs().value("b"), b);
    QCOMPARE(model->getData(QStringLiteral("sriohaveX2_trueb")).toString(), QStringLiteral("yes"));
    QVERIFY(!model->getData(QStringLiteral("jesd204bCheckDRP_b")).isValid());
    QCOMPARE(model->getData(QStringLiteral("jesd204bCheckDRP_a")).toInt(), 1);

    // An edit that the model refuses is shown with the model's words and what
    // is in the way, and the instance stays as it was.
    b.insert(QStringLiteral("editRows"), QStringList{"Q0_LANE1_TX Q0_QPLL0 Q0_REFCLK0 125 0 0 5"});
    page.deleteIP(QStringLiteral("b"));
    page.parseData_v_1_2(QStringLiteral("TestProtocol:b"), b);
    {
        MessageBoxAnswers answers;
        page.editIP(QStringLiteral("b"));
        QCOMPARE(answers.boxes.size(), 1);
        QCOMPARE(answers.boxes.first().title, QStringLiteral("Error"));
        QCOMPARE(answers.boxes.first().text,
                 QStringLiteral("frequence set error\nQ0 Lane1 TX cannot use Q0 REFCLK0 at 125 "
                                "MHz: it runs at 100 MHz for a."));
    }
    QCOMPARE(page.instanceArgs().value("b"), b);
    QCOMPARE(serdes::instance()->allAccess().value("Q0_LANE1_TX"),
             QStringList({"Q0_LANE1_TX", "Q0_QPLL1", "Q0_MUX1", "Q0_REFCLK1"}));
    page.deleteIP(QStringLiteral("b"));

    // Deleting takes the instance's flags out of the store as well.
    page.deleteIP(QStringLiteral("a"));
    QVERIFY(!model->getData(QStringLiteral("jesd204bCheckDRP_a")).isValid());
    QVERIFY(page.instanceArgs().isEmpty());
    QCOMPARE(model->allAccess().size(), 0);
    page.editIP(QStringLiteral("a"));
}

void tst_PageSerdesIpDlg::saveAndReopen()
{
    const QString dir = m_tmp->filePath(QStringLiteral("serdes"));
    QMap<QString, QMap<QString, QVariant>> saved;
    QMap<QString, QStringList> routes;
    {
        serdesipdlg page(coreInfo());
        page.setCreating(m_tmp->path(), deviceOf(QStringLiteral("RK9C370D-FG676-2")));
        page.createIP(QStringLiteral("TestProtocol"));
        page.createIP(QStringLiteral("TestProtocol"));
        serdes::instance()->setData(QStringLiteral("jesd204bCheckDRP_test_2"), 1);

        // Cancel writes nothing, OK without instances neither.
        {
            MessageBoxAnswers discard(QMessageBox::Discard);
            page.reject();
        }
        QVERIFY(!QFile::exists(dir + "/serdes.ipc"));
        saved = page.instanceArgs();
        routes = serdes::instance()->allAccess();
        QVERIFY(QDir().mkpath(dir));
        page.accept();
        QCOMPARE(page.result(), int(QDialog::Accepted));
    }
    const QString file = dir + QStringLiteral("/serdes.ipc");
    QSettings written(file, QSettings::IniFormat);
    QCOMPARE(written.value("version").toString(), QStringLiteral("1.2"));
    QCOMPARE(written.value("ipc_version").toString(), QStringLiteral("4"));
    QCOMPARE(written.value("target_device").toString(), QStringLiteral("RK9C370D-FG676-2"));
    QCOMPARE(written.value("type").toString(), QStringLiteral("SERDES_IP"));
    QCOMPARE(written.childGroups(),
             QStringList({"All_access", "Config", "TestProtocol:test_1", "TestProtocol:test_2"}));
    QCOMPARE(written.value("All_access/Q0_LANE0_TX").toString(),
             QStringLiteral("Q0_LANE0_TX -> Q0_QPLL0 -> Q0_MUX0 -> Q0_REFCLK0"));

    {
        serdesipdlg page(coreInfo());
        QVERIFY(page.setOpening(dir, file));
        QCOMPARE(page.device().id, QStringLiteral("RK9C370D-FG676-2"));
        QCOMPARE(page.instanceArgs(), saved);
        QCOMPARE(serdes::instance()->allAccess(), routes);
        QCOMPARE(serdes::instance()->getData("jesd204bCheckDRP_test_2").toInt(), 1);
        QCOMPARE(page.moduleName(), QStringLiteral("SerDes_Top"));

        // The recorded module name stays what was read, though the field and
        // with it the outputs follow the user.
        page.setModuleName(QStringLiteral("Renamed_Top"));
        page.accept();
    }
    QSettings rewritten(file, QSettings::IniFormat);
    QCOMPARE(rewritten.value("Config/module").toString(), QStringLiteral("SerDes_Top"));
}

void tst_PageSerdesIpDlg::leavingAsks_data()
{
    QTest::addColumn<bool>("changed");
    QTest::addColumn<int>("key");
    // The button the question is answered with, empty when none is expected.
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("closed");

    QTest::newRow("nothing changed") << false << int(Qt::Key_Escape) << "" << true;
    QTest::newRow("keep editing") << true << int(Qt::Key_Escape) << "Keep Editing" << false;
    QTest::newRow("discard") << true << int(Qt::Key_Escape) << "Discard" << true;
    // The question's own Escape keeps the page.
    QTest::newRow("escape on the question") << true << int(Qt::Key_Escape) << "Escape" << false;
}

void tst_PageSerdesIpDlg::leavingAsks()
{
    QFETCH(bool, changed);
    QFETCH(int, key);
    QFETCH(QString, answer);
    QFETCH(bool, closed);

    const QString file = m_tmp->filePath(QStringLiteral("core.ipc"));
    writeIni(file, {{"version", "1.2"}, {"target_device", "RK9C880D-FG1517-2"}},
             {{"TestProtocol:a", instanceArgs("a", {"Q1_LANE0 Q1_QPLL0 Q1_REFCLK0 100 5 0 0"})}});
    serdesipdlg page(coreInfo());
    QVERIFY(page.setOpening(m_tmp->path(), file));
    if (changed)
        page.createIP(QStringLiteral("TestProtocol"));
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QStringList asked;
    if (!answer.isEmpty()) {
        whenModal<QMessageBox>([&asked, answer](QMessageBox *box) {
            asked << box->text() << box->defaultButton()->text();
            if (answer == QLatin1String("Escape")) {
                QTest::keyClick(box, Qt::Key_Escape);
                return;
            }
            for (QAbstractButton *button : box->buttons()) {
                if (button->text() == answer)
                    button->click();
            }
        });
    }
    QTest::keyClick(&page, Qt::Key(key));
    QCOMPARE(asked, answer.isEmpty() ? QStringList()
                                     : QStringList({"Discard the changes to this SerDes core?",
                                                    "Keep Editing"}));
    QCOMPARE(!page.isVisible(), closed);
    QCOMPARE(page.instanceArgs().size(), changed ? 2 : 1);
}

// Groups that cannot be placed again are named once, hold nothing, and are
// written back as they were; the good ones around them are restored.
void tst_PageSerdesIpDlg::reopenKeepsEveryInstance()
{
    const QString file = m_tmp->filePath(QStringLiteral("core.ipc"));
    QMap<QString, QVariant> twice
        = instanceArgs("a", {"Q1_LANE3_TX Q1_QPLL1 Q1_REFCLK1 100 0 0 5"});
    writeIni(
        file, {{"version", "1.2"}, {"target_device", "RK9C880D-FG1517-2"}},
        {{"TestProtocol:a", instanceArgs("a", {"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 5 0 0"})},
         {"Missing:b", instanceArgs("b", {"Q1_LANE0_TX Q1_QPLL0 Q1_REFCLK0 100 0 0 5"})},
         {"TestProtocol:c", twice},
         // Its first row is placed before the second is refused.
         {"TestProtocol:d", instanceArgs("d", {"Q0_LANE2_TX Q0_QPLL1 Q0_REFCLK1 100 0 0 5",
                                               "Q0_LANE1_TX Q0_QPLL0 Q0_REFCLK1 100 0 0 5"})},
         {"TestProtocol:e", instanceArgs("e", {"Q0_LANE3 Q0_QPLL1"})},
         {"TestProtocol:f", instanceArgs("f", {"Q0_LANE0_RX 0 Q0_REFCLK0 100 0 5 0"})},
         {"TestProtocol:g", instanceArgs("g", {"Q1_LANE1_TX Q1_QPLL0 Q1_REFCLK0 125 0 0 5"})}});
    QFile original(file);
    QVERIFY(original.open(QIODevice::ReadOnly));
    const QByteArray before = original.readAll();
    original.close();

    serdesipdlg page(coreInfo());
    QTest::ignoreMessage(QtDebugMsg, "unknown group name");
    QTest::ignoreMessage(QtCriticalMsg, "List size not equal");
    {
        MessageBoxAnswers answers;
        QVERIFY(page.setOpening(m_tmp->path(), file));
        QCOMPARE(answers.boxes.size(), 1);
        QCOMPARE(answers.boxes.first().title, QStringLiteral("Warning"));
        QCOMPARE(answers.boxes.first().text,
                 QStringLiteral("5 instances of this configuration could not be restored. They "
                                "hold nothing on the device, and OK keeps them in the file as "
                                "they were:\n\n"
                                "Missing:b: The protocol Missing is not installed.\n"
                                "TestProtocol:c: The name a is taken by another instance.\n"
                                "TestProtocol:d: tx route error\n"
                                "TestProtocol:d: Q0 Lane1 TX cannot reach Q0 "
                                "REFCLK1: Q0 QPLL0 runs from Q0 REFCLK0 at 5 Gbps for a.\n"
                                "TestProtocol:e: check error\n"
                                "TestProtocol:f: Q0 Lane0 RX is already held by a."));
    }
    QCOMPARE(page.instanceArgs().keys(), QStringList({"a", "g"}));
    QCOMPARE(page.unrestoredInstances().size(), 5);
    QCOMPARE(serdes::instance()->allAccess().keys(),
             QStringList({"Q0_LANE0_RX", "Q0_LANE0_TX", "Q1_LANE1_TX"}));
    for (const char *element : {"Q0_QPLL1", "Q0_REFCLK1", "Q0_LANE2_TX", "Q0_LANE1_TX"})
        QVERIFY2(!serdes::instance()->instanceEnable(QLatin1String(element)), element);
    QCOMPARE(serdes::instance()->FormStringToREFSPtr("Q0_REFCLK0")->count, 2);
    QVERIFY(!page.hasChanges());

    // Saved again, the file holds every group as it was read.
    QVERIFY(page.setupArgs());
    const auto groupText = [](const QByteArray &text, const QByteArray &group) {
        const int from = text.indexOf("[" + group + "]");
        const int to = text.indexOf("\n[", from + 1);
        return text.mid(from, to < 0 ? -1 : to - from);
    };
    QFile saved(file);
    QVERIFY(saved.open(QIODevice::ReadOnly));
    const QByteArray after = saved.readAll();
    for (const char *group : {"Missing:b", "TestProtocol:c", "TestProtocol:d", "TestProtocol:e",
                              "TestProtocol:f", "TestProtocol:a", "TestProtocol:g"}) {
        QVERIFY2(groupText(before, group).size() > 20, group);
        QCOMPARE(groupText(after, group), groupText(before, group));
    }
}

void tst_PageSerdesIpDlg::olderLayouts()
{
    // A "1.1" project made in /old/place, moved here with its instance file.
    const QString root = m_tmp->path();
    QVERIFY(QDir().mkpath(root + "/sub"));
    const QMap<QString, QVariant> instanceConfig{
        {"rows", QStringList{"Q0_LANE2 Q0_QPLL1 Q0_REFCLK1 125 5 0 0"}},
        {"file", "inst_file"},
        {"module", "inst_module"}};
    writeIni(root + "/sub/inst1.ipc", {{"type", "TEST_PROTOCOL"}}, {{"Config", instanceConfig}});

    QMap<QString, QVariant> config{{"File_Name", "old_file"},
                                   {"Module_Name", "Old_Top"},
                                   {"CREATEIN", "/old/place"},
                                   {"KEYS", QStringList{"inst", "gone", "twin"}},
                                   {"inst", QStringList{"/old/place/sub", "inst1"}},
                                   {"gone", QStringList()},
                                   {"twin", QStringList{"/old/place/sub", "inst1"}}};
    writeIni(root + "/top.ipc", {{"version", "1.1"}, {"target_device", "RK9C90F-BG324-1"}},
             {{"Config", config}});

    serdesipdlg page(coreInfo());
    MessageBoxAnswers answers;
    QVERIFY(page.setOpening(root, root + "/top.ipc"));
    QCOMPARE(page.fileName(), QStringLiteral("old_file"));
    QCOMPARE(page.moduleName(), QStringLiteral("Old_Top"));
    QCOMPARE(page.instanceArgs().keys(), QStringList("inst"));
    const QMap<QString, QVariant> args = page.instanceArgs().value("inst");
    QCOMPARE(args.value("CREATEIN").toString(), QStringLiteral("/old/place/inst_file"));
    QCOMPARE(args.value("type").toString(), QStringLiteral("TEST_PROTOCOL"));
    QCOMPARE(serdes::instance()->occupiedLanes(), QStringList("Q0 Lane2"));
    // An instance whose lanes are taken is kept as a group of the current
    // layout; one whose file is gone has nothing left to keep.
    QCOMPARE(page.unrestoredInstances().size(), 2);
    QCOMPARE(page.unrestoredInstances().last().reason,
             QStringLiteral("Q0 Lane2 is already held by inst."));
    page.setFileName(QStringLiteral("saved"));
    QVERIFY(page.setupArgs());
    QSettings saved(root + "/saved.ipc", QSettings::IniFormat);
    QCOMPARE(saved.childGroups(),
             QStringList({"All_access", "Config", "TEST_PROTOCOL:inst", "TestProtocol:twin"}));
    QCOMPARE(saved.value("TestProtocol:twin/rows").toStringList(),
             QStringList("Q0_LANE2 Q0_QPLL1 Q0_REFCLK1 125 5 0 0"));

    // The first layout pads a short entry: an empty one names "0/0.ipc", which
    // is not there. It costs only its own instance.
    config.insert("KEYS", QStringList{"gone", "inst"});
    writeIni(root + "/first.ipc", {{"version", "1.0"}, {"target_device", "RK9C90F-BG324-1"}},
             {{"Config", config}});
    serdesipdlg firstPage(coreInfo());
    QVERIFY(firstPage.setOpening(root, root + "/first.ipc"));
    QCOMPARE(firstPage.instanceArgs().keys(), QStringList("inst"));
    QCOMPARE(firstPage.unrestoredInstances().size(), 1);
    QCOMPARE(
        firstPage.unrestoredInstances().first().reason,
        QStringLiteral("Its file %1 is missing.").arg(QDir::toNativeSeparators(root + "/0/0.ipc")));
    QCOMPARE(answers.boxes.size(), 2);
}

void tst_PageSerdesIpDlg::incompatibleFile()
{
    const QString file = m_tmp->filePath(QStringLiteral("new.ipc"));
    writeIni(file, {{"ipc_version", "4"}, {"target_device", "RK9C880D-FG1517-2"}}, {});
    serdesipdlg page(coreInfo());
    MessageBoxAnswers answers;
    QVERIFY(!page.setOpening(m_tmp->path(), file));
    QCOMPARE(answers.boxes.size(), 1);
    QCOMPARE(answers.boxes.first().title, QStringLiteral("Error"));
    QCOMPARE(answers.boxes.first().text,
             QStringLiteral("This version of specified IP Config file is incompatible with "
                            "current IP Core Generator."));
    QVERIFY(!answers.boxes.first().pixmap.isNull());

    // A device the database does not know is kept in the file as it was.
    writeIni(file, {{"version", "1.2"}, {"target_device", "RK0-FUTURE"}},
             {{"TestProtocol:a", instanceArgs("a", {"Q0_LANE0 Q0_QPLL0 Q0_REFCLK0 100 5 0 0"})}});
    serdesipdlg unknown(coreInfo());
    QVERIFY(unknown.setOpening(m_tmp->path(), file));
    QCOMPARE(answers.boxes.last().text, QStringLiteral("IPC file device information is lost."));
    unknown.setFileName(QStringLiteral("new"));
    QVERIFY(unknown.setupArgs());
    QCOMPARE(QSettings(m_tmp->filePath("new.ipc"), QSettings::IniFormat)
                 .value("target_device")
                 .toString(),
             QStringLiteral("RK0-FUTURE"));
}

void tst_PageSerdesIpDlg::buttons()
{
    serdesipdlg page(coreInfo());
    page.setCreating(m_tmp->path(), deviceOf(QStringLiteral("RK9C880D-FG1517-2")));
    page.parseData_v_1_2(QStringLiteral("TestProtocol:x"),
                         instanceArgs("x", {"Q1_LANE0_TX Q1_QPLL0 Q0_REFCLK0 156.25 0 0 5"}));

    // The schematic gets the routes as wires from the source side; the bridge
    // joins its neighbours and is no node.
    const QList<QPair<QString, QString>> wires = page.getConnectListFromToml();
    QCOMPARE(wires, (QList<QPair<QString, QString>>{{"Q1_QPLL0", "Q1_LANE0_TX"},
                                                    {"Q1_MUX0", "Q1_QPLL0"},
                                                    {"Q0_REFCLK0", "Q1_MUX0"}}));

    // Both windows are made once, kept, and do not block.
    for (int press = 0; press < 2; ++press) {
        page.findChild<QPushButton *>(QStringLiteral("buttonViewClock"))->click();
        page.findChild<QPushButton *>(QStringLiteral("pushButtonReconfiguration"))->click();
    }
    const QList<clockSchematicView *> schematics = page.findChildren<clockSchematicView *>();
    QCOMPARE(schematics.size(), 1);
    QVERIFY(schematics.first()->isVisible());
    // The open schematic follows the instances created and deleted on the
    // page, with their notes; a closed one waits for its next opening.
    clockSchematicView *schematic = schematics.first();
    page.createIP(QStringLiteral("TestProtocol"));
    QCOMPARE(schematic->labels, (QHash<QString, QString>{{"Q0_REFCLK0", "156.25 MHz"},
                                                         {"Q0_LANE0_TX", "10.3125 Gbps"},
                                                         {"Q0_LANE0_RX", "10.3125 Gbps"},
                                                         {"Q1_LANE0_TX", "5 Gbps"}}));
    page.deleteIP(QStringLiteral("test_1"));
    QCOMPARE(schematic->connections, wires);
    QCOMPARE(schematic->notes.size(), 2);
    schematic->hide();
    page.createIP(QStringLiteral("TestProtocol"));
    QCOMPARE(schematic->connections, wires);
    const QList<reconfiguration *> reconfigs = page.findChildren<reconfiguration *>();
    QCOMPARE(reconfigs.size(), 1);
    QVERIFY(reconfigs.first()->isVisible());

    // A link in the help pane opens once in the browser.
    QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "openUrl");
    const QUrl link(QStringLiteral("https://example.org/datasheet"));
    emit page.findChild<QWebView *>()->page()->linkClicked(link);
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    QCOMPARE(m_opened, QList<QUrl>{link});
}

QTEST_MAIN(tst_PageSerdesIpDlg)
#include "tst_pageserdesipdlg.moc"
