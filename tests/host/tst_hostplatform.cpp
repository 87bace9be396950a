// SPDX-License-Identifier: MIT
//
// The host platform library as the plug-in sees it: the device database, the
// description files of cores, the support rule and the file operations.

#include <core/editormanager.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefile.h>
#include <ipcore/ipinfospec.h>
#include <te/flowmanager.h>
#include <te/taskengine.h>
#include <utils/fileutils.h>

#include "testfiles.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class tst_HostPlatform : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void deviceLookups();
    void badDeviceDatabase_data();
    void badDeviceDatabase();

    void supportRule_data();
    void supportRule();
    void descriptionFile_data();
    void descriptionFile();

    void generateFile();
    void makeDirsAndCopy();
    void editorAndFlow();

private:
    DEV::DeviceDb m_db;
    QTemporaryDir m_tmp;
};

void tst_HostPlatform::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QVERIFY(m_tmp.isValid());
    QString error;
    QVERIFY2(m_db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
}

void tst_HostPlatform::deviceLookups()
{
    // Every family shows up, the one without transceivers too, and a filter by
    // family yields its devices whole.
    QStringList families;
    for (const DEV::DeviceArg &device : m_db.devices()) {
        if (!families.contains(device.family))
            families << device.family;
    }
    families.sort();
    QCOMPARE(families, QStringList({"RK7C-60L", "RK9-370D", "RK9C-370D", "RK9C-370Q", "RK9C-440D",
                                    "RK9C-440E", "RK9C-880D", "RK9C-880E", "RK9C-90D", "RK9C-90F",
                                    "RK9LC-90F", "RK9LMC-90F", "RK9MC-90D", "RK9MC-90F",
                                    "RK9PC-880D", "RK9PC-880E"}));
    int total = 0;
    for (const QString &family : qAsConst(families)) {
        DEV::ChipFilter filter;
        filter.family = family;
        for (const DEV::DeviceArg &device : m_db.filterDevice(filter)) {
            QCOMPARE(device.family, family);
            QCOMPARE(m_db.findByID(device.id).partNumber, device.partNumber);
            QVERIFY(!device.partNumber.isEmpty() && !device.name.isEmpty());
            ++total;
        }
    }
    QCOMPARE(total, 21);
    QVERIFY(!m_db.findByID(QStringLiteral("RK9C880D-FG9999-9")).isValid());
    QVERIFY(!m_db.findByID(QString()).isValid());

    // The older configuration files name a device by chip, package and speed.
    DEV::ChipFilter filter;
    filter.id = QStringLiteral("RK9C880D");
    filter.package = QStringLiteral("FG1517");
    filter.speed = QStringLiteral("3");
    const QList<DEV::DeviceArg> exact = m_db.filterDevice(filter);
    QCOMPARE(exact.size(), 1);
    QCOMPARE(exact.first().id, QStringLiteral("RK9C880D-FG1517-3"));
    QCOMPARE(exact.first().partNumber, QStringLiteral("RK9C880D-3FG1517C"));
    QCOMPARE(exact.first().version, QStringLiteral("B"));
    filter.speed.clear();
    QCOMPARE(m_db.filterDevice(filter).size(), 2);

    // Some devices have one silicon version only, and show none.
    QVERIFY(m_db.findByID(QStringLiteral("RK9C880D-FG1156-2")).version.isEmpty());

    QCOMPARE(m_db.primitiveNames().size(), 45);
    QVERIFY(m_db.primitiveNames().contains(QStringLiteral("LUT6")));
}

void tst_HostPlatform::badDeviceDatabase_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::newRow("not json") << QByteArray("{ devices: ") << "is not valid JSON";
    QTest::newRow("no device") << QByteArray("{\"devices\": []}") << "lists no device";
    QTest::newRow("no family") << QByteArray(R"({"devices": [{"id": "A", "name": "A"}]})")
                               << "Device 1 of";
    QTest::newRow("twice")
        << QByteArray(R"({"devices": [{"id": "A", "name": "A", "family": "F"},
                                      {"id": "A", "name": "B", "family": "F"}]})")
        << "Device id \"A\" stands twice";
    QTest::newRow("missing") << QByteArray() << "Cannot read the device database";
}

void tst_HostPlatform::badDeviceDatabase()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    const QString path = m_tmp.filePath(QStringLiteral("devices.json"));
    QFile::remove(path);
    if (!content.isEmpty())
        QVERIFY(writeFile(path, content));

    DEV::DeviceDb db = m_db;
    QString error;
    QVERIFY(!db.load(path, &error));
    QVERIFY2(error.contains(message), qPrintable(error));
    QVERIFY(db.devices().isEmpty());
}

void tst_HostPlatform::supportRule_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QStringList>("unsupported");
    QTest::addColumn<QStringList>("supported");
    QTest::addColumn<bool>("expected");
    const QStringList both{"RK9C-880D", "RK9C-90F"};
    QTest::newRow("no lists") << "RK9C-880D" << QStringList() << QStringList() << true;
    QTest::newRow("refused") << "RK9C-90F" << QStringList{"RK9C-90F"} << QStringList() << false;
    QTest::newRow("refusal wins") << "RK9C-90F" << both << both << false;
    QTest::newRow("named") << "RK9C-880D" << QStringList() << both << true;
    QTest::newRow("not named") << "RK9C-440D" << QStringList() << both << false;
    QTest::newRow("case counts") << "rk9c-880d" << QStringList() << both << false;
    QTest::newRow("no part match") << "RK9C-880" << QStringList() << both << false;
}

void tst_HostPlatform::supportRule()
{
    QFETCH(QString, family);
    QFETCH(QStringList, unsupported);
    QFETCH(QStringList, supported);
    QFETCH(bool, expected);
    DEV::DeviceArg device;
    device.id = QStringLiteral("X");
    device.family = family;
    QCOMPARE(IPCore::isSupported(device, unsupported, supported), expected);
}

void tst_HostPlatform::descriptionFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("complete");
    const QByteArray full = "[General]\nipcore.id=X_IP\nipcore.name=X\nipcore.version=2.0\n"
                            "ipcore.category=Interface, Memory\n"
                            "ipcore.device.supported=RK9C-880D, RK9C-90F\n";
    QTest::newRow("complete") << full << true;
    QTest::newRow("no version") << QByteArray(full).replace("ipcore.version=2.0\n", "") << true;
    QTest::newRow("no name") << QByteArray(full).replace("ipcore.name=X\n", "") << false;
    QTest::newRow("empty id") << QByteArray(full).replace("=X_IP", "=") << false;
    QTest::newRow("no category") << QByteArray(full).replace("ipcore.category", "ipcore.c") << false;
    QTest::newRow("no file") << QByteArray() << false;
}

void tst_HostPlatform::descriptionFile()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, complete);
    const QString path = m_tmp.filePath(QStringLiteral("x.ipspec"));
    QFile::remove(path);
    if (!content.isEmpty())
        QVERIFY(writeFile(path, content));

    const QMap<QString, QVariant> info = IPCore::processIPInfoSpec(path);
    QCOMPARE(IPCore::checkCommonInfo(info), complete);
    if (content.isEmpty()) {
        QVERIFY(info.isEmpty());
        return;
    }
    if (complete) {
        QCOMPARE(info.value("ipcore.category").toStringList(),
                 QStringList({"Interface", "Memory"}));
        QCOMPARE(info.value("ipcore.device.supported").toStringList(),
                 QStringList({"RK9C-880D", "RK9C-90F"}));
    }
}

void tst_HostPlatform::generateFile()
{
    const QString path = m_tmp.filePath(QStringLiteral("out.mod"));
    QVERIFY(IPCore::generateFile(path, {"-type SERDES", "-path /x/"}, nullptr, QString()));
    QCOMPARE(readAll(path), QByteArray("-type SERDES\n-path /x/\n"));

    DEV::DeviceArg device = m_db.findByID(QStringLiteral("RK9C90F-CS256-2"));
    QVERIFY(IPCore::generateFile(path, {IPCore::modfileHeader(device), "-x 1"}, nullptr,
                                 QStringLiteral("ISO-8859-1")));
    QCOMPARE(readAll(path), QByteArray("-device RK9C90F\n-device_id RK9C90F-CS256-2\n"
                                       "-part_number RK9C90F-2CS256I\n-family RK9C-90F\n"
                                       "-package CS256\n-speed 2\n-x 1\n"));

    // A failure is told, and the file already there stays as it was.
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Unknown text encoding \"no-such\""));
    QVERIFY(!IPCore::generateFile(path, {"lost"}, nullptr, QStringLiteral("no-such")));
    QCOMPARE(readAll(path).left(8), QByteArray("-device "));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Failed to write \".*/missing/a\""));
    QVERIFY(!IPCore::generateFile(m_tmp.filePath("missing/a"), {"x"}, nullptr, QString()));
}

void tst_HostPlatform::makeDirsAndCopy()
{
    QVERIFY(IPCore::makeDirs(QStringLiteral("a/b/c"), m_tmp.path()));
    QVERIFY(QDir(m_tmp.filePath(QStringLiteral("a/b/c"))).exists());
    QVERIFY(IPCore::makeDirs(m_tmp.filePath(QStringLiteral("d/e")), QString()));
    QVERIFY(QDir(m_tmp.filePath(QStringLiteral("d/e"))).exists());

    const QString source = m_tmp.filePath(QStringLiteral("a/source.v"));
    const QString target = m_tmp.filePath(QStringLiteral("a/b/target.v"));
    QVERIFY(writeFile(source, "module a; endmodule\n"));
    QVERIFY(writeFile(target, "old"));
    QString error;
    QVERIFY(Utils::FileUtils::copyFile(source, target, &error));
    QCOMPARE(readAll(target), QByteArray("module a; endmodule\n"));

    QVERIFY(!Utils::FileUtils::copyFile(m_tmp.filePath("none.v"), target, &error));
    QVERIFY2(error.startsWith("Cannot read \""), qPrintable(error));
    QCOMPARE(readAll(target), QByteArray("module a; endmodule\n"));
    QVERIFY(!Utils::FileUtils::copyFile(source, m_tmp.filePath("no/dir/t.v"), &error));
    QVERIFY2(error.startsWith("Cannot write \""), qPrintable(error));
}

void tst_HostPlatform::editorAndFlow()
{
    const QString file = m_tmp.filePath(QStringLiteral("shown.v"));
    QVERIFY(writeFile(file, "x"));
    Core::EditorManager *editors = Core::EditorManager::instance();
    QSignalSpy opened(editors, &Core::EditorManager::editorOpened);
    QVERIFY(Core::EditorManager::openEditor(file, false));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no readable file"));
    QVERIFY(!Core::EditorManager::openEditor(m_tmp.filePath("none.v"), false));
    QCOMPARE(opened.count(), 1);
    QCOMPARE(editors->openedFiles(), QStringList(file));

    TE::FlowManager *flow = TE::TaskEngine::instance()->flowManager();
    QSignalSpy added(flow, &TE::FlowManager::resultFileAdded);
    flow->addResultFile(QStringLiteral("/p/serdes.csr"), QStringLiteral("RES.serdes.csr"));
    flow->addResultFile(QStringLiteral("/p/serdes.csr"), QStringLiteral("RES.serdes.csr"));
    flow->addResultFile(QStringLiteral("/p/serdes.csr"), QStringLiteral("RES.other"));
    QCOMPARE(added.count(), 2);
    QCOMPARE(flow->resultFiles().first(),
             TE::FlowManager::ResultFile("/p/serdes.csr", "RES.serdes.csr"));
}

QTEST_GUILESS_MAIN(tst_HostPlatform)
#include "tst_hostplatform.moc"
