// SPDX-License-Identifier: MIT
//
// The generator's catalogue as a user without a display gets it: the program
// of the installed tree, run as a separate process.

#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

Run runGenerator(const QString &tree, const QStringList &arguments,
                 const QProcessEnvironment &env = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(tree + QStringLiteral("/bin/ipcoregen"), arguments);
    Run run;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

bool copyTree(const QString &from, const QString &to)
{
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QString target = to + source.mid(from.size());
        const bool ok = it.fileInfo().isDir() ? QDir().mkpath(target)
                                              : QFile::copy(source, target);
        if (!ok)
            return false;
    }
    return true;
}

const char serdesLine[] = "SERDES_IP\tSerDes\t1.2\tInterface, High Speed Transceiver\t";

} // namespace

class tst_IpCoreGen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void listsForDevice_data();
    void listsForDevice();
    void withoutDisplay();
    void movedTree();
};

void tst_IpCoreGen::listsForDevice_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");

    QTest::newRow("default device")
        << QStringList{"--list"} << 0
        << QString("Device: RK9C880D-FG1517-2 (RK9C880D, RK9C-880D)\n%1supported\n")
               .arg(serdesLine)
        << QString();
    QTest::newRow("90k device")
        << QStringList{"--list", "--device", "RK9LMC90F-QN88-1"} << 0
        << QString("Device: RK9LMC90F-QN88-1 (RK9LMC90F, RK9LMC-90F)\n%1supported\n")
               .arg(serdesLine)
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

QTEST_GUILESS_MAIN(tst_IpCoreGen)
#include "tst_ipcoregen.moc"
