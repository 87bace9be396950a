// SPDX-License-Identifier: MIT
//
// The generator as a user without a display meets it: the program of the
// installed tree, run as a separate process, printing its catalogue and
// regenerating the bundled example configurations.

#include "generatorrun.h"
#include "hdlcompile.h"
#include "testfiles.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const char serdesLine[] = "SERDES_IP\tSerDes\t1.2\tInterface, High Speed Transceiver\t";

} // namespace

class tst_IpCoreGen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void listsForDevice_data();
    void listsForDevice();
    void listsDevices();
    void withoutDisplay();
    void movedTree();
    void regenerateExamples_data();
    void regenerateExamples();
    void regenerationFailures_data();
    void regenerationFailures();
};

void tst_IpCoreGen::listsForDevice_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    QTest::newRow("default device")
        << QStringList{"--list"} << 0
        << QString("Device: RK9C880D-FG1517-2 (RK9C880D, RK9C-880D)\n%1supported\n").arg(serdesLine)
        << QString();
    QTest::newRow("no transceivers")
        << QStringList{"--list", "--device", "RK7C60L-BG256-1"} << 0
        << QString("Device: RK7C60L-BG256-1 (RK7C60L, RK7C-60L)\n%1not supported\n")
               .arg(serdesLine)
        << QString();
    QTest::newRow("unknown device") << QStringList{"--list", "--device", "RK9C880D"} << 2
                                    << QString() << "Unknown device \"RK9C880D\". Known devices: ";
}

void tst_IpCoreGen::listsForDevice()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);

    const Run run = runGenerator(QStringLiteral(SERDES_STAGE_DIR), arguments);
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.out, out);
    if (err.isEmpty())
        QCOMPARE(run.err, QString());
    else
        QVERIFY2(run.err.startsWith(err), qPrintable(run.err));
}

void tst_IpCoreGen::listsDevices()
{
    // The header and some rows, their fields separated by one space: one
    // device of each tier and one without transceivers.
    const QStringList rows{"Identifier Family Name Quads", "RK9C880D-FG1517-2 RK9C-880D RK9C880D 2",
                           "RK9C370D-FG676-2 RK9C-370D RK9C370D 1",
                           "RK9C90F-CS256-2 RK9C-90F RK9C90F 1",
                           "RK7C60L-BG256-1 RK7C-60L RK7C60L 0"};
    const Run run = runGenerator(SERDES_STAGE_DIR, {"--list-devices"}, quietLeakChecker());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QString());
    const QStringList lines = run.out.split('\n');
    const QStringList header = rows.first().split(' ');
    for (const QString &row : rows) {
        const QStringList fields = row.split(' ');
        const auto line = std::find_if(lines.begin(), lines.end(), [&](const QString &l) {
            return l.startsWith(fields.first() + ' ');
        });
        QVERIFY2(line != lines.end(), qPrintable(row));
        QCOMPARE(line->simplified(), row);
        // Every field starts in its header's column.
        for (int i = 1, at = 0; i < fields.size(); ++i) {
            at = line->indexOf(' ' + fields.at(i), at) + 1;
            QCOMPARE(at, lines.first().indexOf(header.at(i)));
        }
    }
}

void tst_IpCoreGen::withoutDisplay()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        env.remove(QLatin1String(name));
    const Run run = runGenerator(QStringLiteral(SERDES_STAGE_DIR), {}, env);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.err, QStringLiteral("No display is available: printing the catalogue instead.\n"));
    QVERIFY2(run.out.contains(QLatin1String(serdesLine)), qPrintable(run.out));
}

void tst_IpCoreGen::movedTree()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString tree = tmp.filePath(QStringLiteral("moved"));
    QVERIFY(copyTree(QStringLiteral(SERDES_STAGE_DIR), tree));

    // Packages that are not: a library without plug-in metadata, and a file
    // that is no library at all. Both are passed over with a word.
    QVERIFY(QDir().mkpath(tree + "/ipcore/HOST"));
    QVERIFY(QFile::copy(tree + "/lib/libhostplatform.so", tree + "/ipcore/HOST/libhost.so"));
    QVERIFY(QDir().mkpath(tree + "/ipcore/BROKEN"));
    QFile broken(tree + "/ipcore/BROKEN/libbroken.so");
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("not a library");
    broken.close();

    const Run run = runGenerator(tree, {"--list", "--device", "RK9C370Q-FG676-2"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out, QString("Device: RK9C370Q-FG676-2 (RK9C370Q, RK9C-370Q)\n%1supported\n")
                          .arg(serdesLine));
    const QStringList warnings = run.err.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(warnings.size(), 2);
    QVERIFY2(warnings.at(0).startsWith("warning: Cannot load \"" + tree
                                       + "/ipcore/BROKEN/libbroken.so\": "),
             qPrintable(warnings.at(0)));
    QVERIFY2(warnings.at(1).startsWith("warning: Cannot load \"" + tree
                                       + "/ipcore/HOST/libhost.so\": "),
             qPrintable(warnings.at(1)));
}

void tst_IpCoreGen::regenerateExamples_data()
{
    QTest::addColumn<QString>("example");
    QTest::addColumn<int>("instances");
    QTest::addColumn<bool>("arbiter");
    // The instances' folders, each holding the instance's module.
    QTest::addColumn<QStringList>("folders");
    // Run with --verbose when set: the register compiler's line it shows.
    QTest::addColumn<QString>("debugLine");

    QTest::newRow("two quads") << "880k" << 3 << false
                               << QStringList{"bcdr", "customphy", "customphy_1"} << QString();
    QTest::newRow("one quad, four muxes, DRP")
        << "370k" << 3 << true << QStringList{"customphy", "eth10g", "eth10g_1"} << QString();
    QTest::newRow("one quad, two muxes, verbose")
        << "90k" << 2 << false << QStringList{"bcdr", "eth10g"}
        << "<stage>/bin/serdes_toml_to_csr.dist/serdes_toml_to_csr_90k.bin serdes_tmp.toml -o "
           "<dir>/serdes.csr return 0";
    QTest::newRow("layout 1.1") << "370k-v1.1" << 3 << true
                                << QStringList{"customphy", "eth10g", "eth10g_1"} << QString();
    QTest::newRow("layout 1.0") << "370k-v1.0" << 3 << true
                                << QStringList{"customphy", "eth10g", "eth10g_1"} << QString();
}

void tst_IpCoreGen::regenerateExamples()
{
    QFETCH(QString, example);
    QFETCH(int, instances);
    QFETCH(bool, arbiter);
    QFETCH(QStringList, folders);
    QFETCH(QString, debugLine);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString dir = QFileInfo(tmp.path()).canonicalFilePath() + '/' + example;
    QVERIFY(copyTree(QStringLiteral(SERDES_EXAMPLES "/") + example, dir));
    const QString ipc = dir + "/serdes.ipc";
    const QSettings before(ipc, QSettings::IniFormat);
    const QStringList keysBefore = before.allKeys();
    // Started elsewhere: the core's files still go beside the configuration,
    // and the report where the command line meant it.
    const QString elsewhere = dir + "-start";
    QVERIFY(QDir().mkpath(elsewhere));

    QStringList arguments{"--open", ipc, "--generate", "--report", "report.json"};
    if (!debugLine.isEmpty())
        arguments << "--verbose";
    QProcess process;
    process.setWorkingDirectory(elsewhere);
    process.setProcessEnvironment(quietLeakChecker());
    process.start(QStringLiteral(SERDES_STAGE_DIR "/bin/ipcoregen"), arguments);
    QVERIFY(process.waitForFinished(120000));
    const QString err = generatorWords(process.readAllStandardError());
    QVERIFY2(process.exitCode() == 0, qPrintable(err));
    const QString summary = QString("%1 of %1 instances restored; 0 errors\n").arg(instances);
    if (debugLine.isEmpty()) {
        QCOMPARE(err, summary);
    } else {
        const QString line = QString(debugLine)
                                 .replace("<stage>", QStringLiteral(SERDES_STAGE_DIR))
                                 .replace("<dir>", dir);
        QVERIFY2(err.split('\n').contains(line), qPrintable(err));
        QVERIFY2(err.endsWith('\n' + summary), qPrintable(err));
    }

    // What was written, and only that, on standard output.
    QStringList written{elsewhere + "/report.json", dir + "/serdes.csr", dir + "/serdes.v"};
    for (const QString &folder : folders)
        written << dir + '/' + folder + '/' + folder + ".v";
    if (arbiter)
        written << dir + "/upar_arbiter/upar_arbiter.v";
    QStringList out = QString::fromUtf8(process.readAllStandardOutput()).split('\n');
    QCOMPARE(out.takeLast(), QString());
    out.sort();
    written.sort();
    QCOMPARE(out, written);

    // Everything OK makes, the instances' own files below the project.
    for (const char *file :
         {"serdes.mod", "serdes.v", "serdes_tmp.v", "serdes.csr", "serdes_tmp.toml"})
        QVERIFY2(QFile::exists(dir + '/' + file), file);
    QVERIFY(!QFile::exists(elsewhere + "/serdes_tmp.toml"));
    QCOMPARE(QFile::exists(dir + "/upar_arbiter/upar_arbiter.v"), arbiter);

    QFile reportFile(elsewhere + "/report.json");
    QVERIFY(reportFile.open(QIODevice::ReadOnly));
    const QJsonObject report = QJsonDocument::fromJson(reportFile.readAll()).object();
    const QJsonArray placed = report.value("instances").toArray();
    QCOMPARE(placed.size(), instances);
    QStringList sources{"serdes.v", QStringLiteral(SERDES_STAGE_DIR "/data/devices/primitives_bb.v")};
    for (const QJsonValue &instance : placed)
        sources << dir + '/' + instance.toObject().value("file").toString() + '/'
                       + instance.toObject().value("file").toString() + ".v";
    if (arbiter)
        sources << dir + "/upar_arbiter/upar_arbiter.v";

    // A configuration of the current layout comes back as it was: what the
    // page saves is what it read.
    if (!example.contains("-v1.")) {
        const QSettings after(ipc, QSettings::IniFormat);
        QCOMPARE(after.allKeys(), keysBefore);
        for (const QString &key : keysBefore)
            QCOMPARE(after.value(key), before.value(key));
        // Every reserved line is in the report, routed as the file says.
        QSettings saved(ipc, QSettings::IniFormat);
        saved.beginGroup("All_access");
        const QJsonObject routes = report.value("routes").toObject();
        QCOMPARE(routes.keys(), saved.childKeys());
        for (const QString &line : routes.keys()) {
            QStringList route;
            for (const QJsonValue &element : routes.value(line).toArray())
                route << element.toString();
            QCOMPARE(route.join(" -> "), saved.value(line).toString());
        }
    }

    // The top file, the instances' modules and the arbiter's netlist make
    // one design, against the device's primitives as black boxes.
    const QString compiled
        = runQuietly("iverilog", QStringList{"-g2005", "-Wall", "-o", "design.vvp"} + sources, dir);
    QVERIFY2(compiled.isEmpty(), qPrintable(compiled));
}

void tst_IpCoreGen::regenerationFailures_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    const QString unrestored
        = "Warning: One instance of this configuration could not be restored. It holds nothing "
          "on the device, and OK keeps it in the file as it was:\n\n"
          "Nowhere:link_0: The protocol Nowhere is not installed.\n";
    QTest::newRow("no file named") << QStringList{"--generate"} << 2 << QString()
                                   << "A run without a person works on one configuration: give "
                                      "--open FILE or --new FILE, not both.\n";
    QTest::newRow("no such file") << QStringList{"--open", "missing.ipc", "--generate"} << 2
                                  << QString() << "\"missing.ipc\" does not exist.\n";
    // The one instance names a protocol that is not installed: it is named,
    // and the page has nothing to generate and says so.
    QTest::newRow("nothing to generate")
        << QStringList{"--open", "serdes.ipc", "--generate"} << 1 << QString()
        << unrestored
               + "Warning: need to generate Protocol IP\nGeneration failed.\n"
                 "0 of 1 instance restored; 3 errors\n";
    // All that was asked for is written, but the configuration is not what
    // the file holds; the debug line of the page's refusal is not shown.
    QTest::newRow("report of an unrestored instance")
        << QStringList{"--open", "serdes.ipc", "--report", "report.json"} << 1
        << "<dir>/report.json\n"
        << unrestored + "0 of 1 instance restored; 1 error\n";
}

void tst_IpCoreGen::regenerationFailures()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    {
        QSettings ipc(tmp.filePath("serdes.ipc"), QSettings::IniFormat);
        ipc.setValue("version", "1.2");
        ipc.setValue("type", "SERDES_IP");
        ipc.setValue("target_device", "RK9C90F-BG324-1");
        ipc.setValue("Nowhere:link_0/module", "link_0");
    }
    QProcess process;
    process.setWorkingDirectory(tmp.path());
    process.setProcessEnvironment(quietLeakChecker());
    process.start(QStringLiteral(SERDES_STAGE_DIR "/bin/ipcoregen"), arguments);
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), exitCode);
    QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()),
             QString(out).replace("<dir>", QFileInfo(tmp.path()).canonicalFilePath()));
    QCOMPARE(generatorWords(process.readAllStandardError()), err);
}

QTEST_GUILESS_MAIN(tst_IpCoreGen)
#include "tst_ipcoregen.moc"
