// SPDX-License-Identifier: MIT
//
// The synthesis run of a generated core, with yosys on the Upar arbiter the
// core ships: which files it takes from the run, where they go, and what the
// user is told when a step fails.

#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "plugin/serdesipconstants.h"

#include "testfiles.h"

#include <QApplication>
#include <QDir>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QtTest>

using namespace IPSERDESIP;

namespace {

const QString ARBITER = QStringLiteral(SERDES_STAGE_DIR "/ipcore/SERDES_IP/data/Upar_Arbiter");
const QString TOP = QStringLiteral("\\~upar_arbiter_wrap.mycore");

QStringList criticals;

void recordCriticals(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtCriticalMsg)
        criticals << message;
}

} // namespace

class tst_ModelSynthesisRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void cleanupTestCase() { serdes::destory(); }
    void run_data();
    void run();
};

void tst_ModelSynthesisRun::run_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QVariant>("language"); // invalid: no "LANG" entry
    QTest::addColumn<QString>("obstacle");  // a file of the core's directory made a directory
    QTest::addColumn<bool>("headers");      // the caller wrote define.vh and parameter.vh
    QTest::addColumn<QString>("message");   // %1 the core's directory, %2 the run's
    QTest::addColumn<QStringList>("files"); // in the core's directory afterwards

    const QString failed = QStringLiteral("The synthesis of %1 failed.\n    ").arg(TOP);
    const QString generation = QStringLiteral("Core generation occur errors.\n    ");
    const QStringList all = {"temp", "upar_arbiter.v", "upar_arbiter.vo", "upar_arbiter_tmp.v"};
    const QStringList temp = {"temp"};
    const QString directory = "\": Filename refers to a directory";

    QTest::newRow("own tool, no language: Verilog")
        << "TarvexSynthesis" << QVariant() << QString() << true << QString() << all;
    QTest::newRow("implementation directory")
        << "Synplify Pro" << QVariant(0) << QString() << true << QString() << all;
    QTest::newRow("run fails")
        << "TarvexSynthesis" << QVariant(0) << QString() << false
        << failed
               + "yosys ended with exit code 1.\n    ERROR: Can't open include file "
                 "`define.vh'!"
        << temp;
    QTest::newRow("VHDL asked of the tool")
        << "TarvexSynthesis" << QVariant(1) << QString() << true
        << failed + "yosys writes no VHDL netlist; generate the core in Verilog." << temp;
    QTest::newRow("netlist copy fails")
        << "TarvexSynthesis" << QVariant(0) << "upar_arbiter.v" << true
        << generation + "Cannot write \"%1/upar_arbiter.v" + directory
        << QStringList{"temp", "upar_arbiter.v"};
    QTest::newRow("decode fails") << "TarvexSynthesis" << QVariant(0) << "upar_arbiter.vo" << true
                                  << generation + "Cannot write the netlist \"%1/upar_arbiter.vo"
                                         + directory
                                  << all;
    QTest::newRow("unknown tool: no netlist to copy")
        << "Unknown Tool" << QVariant(0) << QString() << true
        << generation + "Cannot read \"\": No file name specified" << temp;
    QTest::newRow("language 2: VHDL names, Verilog run")
        << "TarvexSynthesis" << QVariant(2) << QString() << true
        << generation + "Cannot read \"%2/upar_arbiter.vhg\": No such file or directory" << temp;
}

void tst_ModelSynthesisRun::run()
{
    QFETCH(QString, tool);
    QFETCH(QVariant, language);
    QFETCH(QString, obstacle);
    QFETCH(bool, headers);
    QFETCH(QString, message);
    QFETCH(QStringList, files);

    QTemporaryDir work;
    serdes::instance()->setWorkingDir(work.path());
    const QString base = work.filePath("upar_arbiter");
    const QString temp = base + "/temp/Upar_Arbiter";
    QVERIFY(QDir().mkpath(temp));
    if (headers) {
        QFile define(temp + "/define.vh"), parameter(temp + "/parameter.vh");
        QVERIFY(define.open(QIODevice::WriteOnly) && parameter.open(QIODevice::WriteOnly));
        define.write("`define MODULE_NAME mycore\n");
        parameter.write("parameter DRP_NUM = 4;\n");
    }
    QVERIFY(obstacle.isEmpty() || QDir(base).mkdir(obstacle));

    QMap<QString, QVariant> args{
        {SYNTHESIS_TOOL, tool}, {FILE_NAME, "upar_arbiter"}, {MODULE_NAME, TOP}};
    if (language.isValid())
        args.insert(LANGUAGE, language);
    const QMap<QString, QVariant> info{{IPCore::Info::KEY_LABEL, "SerDes Upar Arbiter"},
                                       {IPCore::Info::KEY_DATADIRECTORY, ARBITER}};
    QObject owner;
    QString netlist = QStringLiteral("untouched");
    criticals.clear();
    const QtMessageHandler previous = qInstallMessageHandler(recordCriticals);
    const bool result = waitForRunSyntheSis(DEV::DeviceArg(), args, info,
                                            {"upar_arbiter.v", "upar_arbiter_wrap.v"},
                                            "Upar_Arbiter", netlist, &owner);
    qInstallMessageHandler(previous);

    message.replace("%1", base).replace("%2", temp);
    QCOMPARE(criticals, message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(result, message.isEmpty());
    QCOMPARE(QDir(base).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), files);
    for (QWidget *window : QApplication::topLevelWidgets())
        QVERIFY(!qobject_cast<QProgressDialog *>(window) || !window->isVisible());
    if (!result) {
        QCOMPARE(netlist, QStringLiteral("untouched"));
        return;
    }
    // The result is the tool's netlist as it was, not the decoded one.
    const QString toolNetlist
        = temp + (tool == "Synplify Pro" ? "/rev_1/upar_arbiter.vm" : "/upar_arbiter.vg");
    QCOMPARE(netlist, QString(base + "/upar_arbiter.v"));
    QVERIFY(!readAll(toolNetlist).isEmpty());
    QCOMPARE(readAll(netlist), readAll(toolNetlist));
    QCOMPARE(readAll(base + "/upar_arbiter_tmp.v"), readAll(temp + "/upar_arbiter_tmp.v"));
    QVERIFY(readAll(base + "/upar_arbiter.vo").startsWith("// Netlist of " + TOP.toUtf8() + "\n"));
}

QTEST_MAIN(tst_ModelSynthesisRun)
#include "tst_modelsynthesisrun.moc"
