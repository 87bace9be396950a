// SPDX-License-Identifier: MIT
//
// The synthesis run of the host: yosys itself on the Upar arbiter the core
// ships, doubles of it placed beside this program where the helper looks
// first, and the netlist decoding and project list that follow a run.

#include <core/projectmanager.h>
#include <dev/devicearg.h>
#include <ipcore/ipcoreproject.h>
#include <ipcore/netlistdecode.h>
#include <ipcore/synthesishelper.h>

#include "testfiles.h"

#include <QDir>
#include <QProgressDialog>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using Tool = IPCore::SynthesisHelper::SynthesizeTool;
Q_DECLARE_METATYPE(Tool)

namespace {

const QString ARBITER = QStringLiteral(SERDES_STAGE_DIR "/ipcore/SERDES_IP/data/Upar_Arbiter");
const QString TOP = QStringLiteral("\\~upar_arbiter_wrap.mycore");
const QString DEVICE_LINE = QStringLiteral(
    "// Device: device RK9C880D, device_id RK9C880D-FG1517-2, part_number RK9C880D-2FG1517I, "
    "family RK9C-880D, package FG1517, speed 2");

// The arguments of an arbiter run in `tempDir`, with the two headers the page
// writes there.
IPCore::SynthesizeArgs arbiterArgs(const QString &tempDir, int requesters)
{
    writeFile(tempDir + "/define.vh", "`define MODULE_NAME mycore\n");
    writeFile(tempDir + "/parameter.vh",
              QByteArray("parameter DRP_NUM = ") + QByteArray::number(requesters) + ";\n");
    IPCore::SynthesizeArgs args;
    args.tempDir = tempDir;
    args.projectName = "Upar_Arbiter";
    args.fileName = "upar_arbiter";
    args.device.id = "RK9C880D-FG1517-2";
    args.device.partNumber = "RK9C880D-2FG1517I";
    args.device.family = "RK9C-880D";
    args.device.name = "RK9C880D";
    args.device.package = "FG1517";
    args.device.speed = "2";
    args.options = {{"impl_name", "rev_1"},
                    {"write_vhdl", false},
                    {"top_module", TOP},
                    {"include_paths", QStringList{tempDir, ARBITER}},
                    {"source_files",
                     QStringList{ARBITER + "/upar_arbiter.v", ARBITER + "/upar_arbiter_wrap.v"}}};
    return args;
}

// Places a stand-in for yosys beside this program, where the helper looks
// before PATH. $NETLIST is where the script asks for the netlist; a body with
// an interpreter line of its own is the whole program.
bool placeYosys(const QByteArray &body)
{
    const QString path = QCoreApplication::applicationDirPath() + "/yosys";
    const QByteArray prologue = "#!/bin/sh\nfor a; do script=$a; done\n"
                                "NETLIST=$(sed -n 's/^write_verilog -noattr \"\\(.*\\)\"$/\\1/p' "
                                "\"$script\")\n";
    return writeFile(path, body.startsWith("#!") ? body : prologue + body)
           && QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// Runs the helper to its end, pressing Cancel of its progress dialog first if
// asked; false when finished() did not come once, from the event loop.
bool run(IPCore::SynthesisHelper &helper, QWidget *window = nullptr)
{
    QSignalSpy spy(&helper, &IPCore::SynthesisHelper::finished);
    helper.start();
    if (spy.count() != 0)
        return false;
    if (window) {
        QTimer::singleShot(100, window, [window] {
            auto *progress = window->findChild<QProgressDialog *>("synthesisProgress");
            progress->findChild<QPushButton *>()->click();
        });
    }
    return spy.wait(120000) && spy.count() == 1 && spy.first().first().toInt() == helper.resultCode;
}

} // namespace

class tst_HostSynthesis : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void runs_data();
    void runs();
    void decodeFailures_data();
    void decodeFailures();
    void projectFiles();
};

void tst_HostSynthesis::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QVERIFY(QFile::exists(ARBITER + "/upar_arbiter_wrap.v"));
    QVERIFY2(!QFile::exists(QCoreApplication::applicationDirPath() + "/yosys"),
             "a yosys double was left beside the test program");
}

// Runs of yosys itself with each tool's layout, and of doubles that fail in
// each way the helper tells apart.
void tst_HostSynthesis::runs_data()
{
    QTest::addColumn<Tool>("tool");
    QTest::addColumn<QByteArray>("program"); // the double's script; "" none at all, null yosys
    QTest::addColumn<QString>("change");     // "vhdl" (and a source missing), or "cancel"
    QTest::addColumn<QStringList>("errors"); // %1 the run's directory, %2 this program's

    const Tool own = IPCore::SynthesisHelper::TarvexSynthesis;
    QTest::newRow("own tool, 4 requesters") << own << QByteArray() << QString() << QStringList();
    QTest::newRow("implementation directory, 8 requesters")
        << IPCore::SynthesisHelper::SynplifyPro << QByteArray() << QString() << QStringList();
    QTest::newRow("fails with a message")
        << own
        << QByteArray("echo 'reading sources' >&2\n"
                      "echo \"ERROR: Can't open include file 'define.vh'\" >&2\nexit 1\n")
        << QString()
        << QStringList{"yosys ended with exit code 1.",
                       "ERROR: Can't open include file 'define.vh'"};
    QTest::newRow("fails without an error line")
        << own << QByteArray("echo 'out of memory' >&2\nexit 3\n") << QString()
        << QStringList{"yosys ended with exit code 3.", "out of memory"};
    QTest::newRow("writes no netlist")
        << own << QByteArray("exit 0\n") << QString()
        << QStringList{"yosys wrote no netlist \"%1/upar_arbiter.vg\"."};
    QTest::newRow("netlist of another module")
        << own << QByteArray("echo 'module other (a); input a; endmodule' > \"$NETLIST\"\n")
        << QString()
        << QStringList{"The netlist \"%1/upar_arbiter.vg\" has no module " + TOP + "."};
    QTest::newRow("cannot be started")
        << own << QByteArray("#!/nonexistent/interpreter\n") << QString()
        << QStringList{
               "yosys at \"%2/yosys\" could not be started: execvp: No such file or directory"};
    QTest::newRow("no program") << own << QByteArray("") << QString()
                                << QStringList{"The synthesis program yosys not found: neither "
                                               "beside the application in \"%2\" nor on PATH."};
    QTest::newRow("VHDL and a missing source")
        << own << QByteArray("exit 0\n") << "vhdl"
        << QStringList{"The source file \"%1/gone.v\" does not exist.",
                       "yosys writes no VHDL netlist; generate the core in Verilog."};
    QTest::newRow("canceled") << own << QByteArray("exec sleep 60\n") << "cancel"
                              << QStringList{"The synthesis was canceled."};
}

void tst_HostSynthesis::runs()
{
    QFETCH(Tool, tool);
    QFETCH(QByteArray, program);
    QFETCH(QString, change);
    QFETCH(QStringList, errors);

    QTemporaryDir dir;
    const QString temp = dir.filePath("core dir/temp/Upar_Arbiter"); // a blank on the way
    QVERIFY(QDir().mkpath(temp));
    const bool synplify = tool == IPCore::SynthesisHelper::SynplifyPro;
    const int requesters = synplify ? 8 : 4;
    IPCore::SynthesizeArgs args = arbiterArgs(temp, requesters);
    // What an earlier run left must not pass for this run's netlist.
    QVERIFY(writeFile(temp + "/upar_arbiter.vg", "module stale; endmodule\n"));
    if (change == "vhdl") {
        args.options.insert("write_vhdl", true);
        args.options.insert("source_files", QStringList{temp + "/gone.v"});
    }
    const QByteArray path = qgetenv("PATH");
    const auto restore = qScopeGuard([path] {
        QFile::remove(QCoreApplication::applicationDirPath() + "/yosys");
        qputenv("PATH", path);
    });
    if (!program.isNull() && program.isEmpty())
        qputenv("PATH", dir.path().toUtf8());
    else if (!program.isNull())
        QVERIFY(placeYosys(program));

    QWidget page;
    auto *helper = new IPCore::SynthesisHelper(&page);
    helper->setSynthesizeTool(tool);
    helper->setProgressDlgWindowTitle("SerDes Upar Arbiter");
    helper->showProgressDlg();
    helper->setArgs(args);
    auto *progress = page.findChild<QProgressDialog *>("synthesisProgress");
    QVERIFY(progress && progress->isVisible());
    QCOMPARE(progress->windowTitle(), QStringLiteral("SerDes Upar Arbiter"));
    QVERIFY(run(*helper, change == "cancel" ? &page : nullptr));
    // Named once the run is under way.
    if (change == "cancel")
        QCOMPARE(progress->labelText(), QStringLiteral("Synthesizing %1...").arg(TOP));

    for (QString &error : errors)
        error.replace("%1", temp).replace("%2", QCoreApplication::applicationDirPath());
    QCOMPARE(helper->errorList, errors);
    QCOMPARE(helper->resultCode, errors.isEmpty() ? 0 : 1);
    QCOMPARE(helper->messageTitle,
             errors.isEmpty() ? QString() : QString("The synthesis of %1 failed.").arg(TOP));
    const QString tmpl = temp + "/upar_arbiter_tmp.v";
    QCOMPARE(QFile::exists(tmpl), errors.isEmpty());
    if (!errors.isEmpty())
        return;

    const QString netlist = synplify ? "rev_1/upar_arbiter.vm" : "upar_arbiter.vg";
    const QString netlistPath = temp + "/" + netlist;
    const QStringList lines = QString::fromUtf8(readAll(netlistPath)).split('\n');
    QCOMPARE(lines.value(0), DEVICE_LINE);
    QVERIFY(lines.contains("module \\~upar_arbiter_wrap.mycore (upar_clk, upar_rst, drp_req, "
                           "drp_wr, drp_addr, drp_wdata, drp_grant, drp_ready, drp_rdata, upar_wr, "
                           "upar_rd, upar_addr, upar_wdata, upar_rdata, upar_ready);"));
    QCOMPARE(QString::fromUtf8(readAll(tmpl)),
             QString("// Instantiation template of \\~upar_arbiter_wrap.mycore, made with its "
                     "netlist %1.\n"
                     "\\~upar_arbiter_wrap.mycore u_upar_arbiter (\n"
                     "    .upar_clk(upar_clk),     // input\n"
                     "    .upar_rst(upar_rst),     // input\n"
                     "    .drp_req(drp_req),       // input [%2:0]\n"
                     "    .drp_wr(drp_wr),         // input [%2:0]\n"
                     "    .drp_addr(drp_addr),     // input [%3:0]\n"
                     "    .drp_wdata(drp_wdata),   // input [%4:0]\n"
                     "    .drp_grant(drp_grant),   // output [%2:0]\n"
                     "    .drp_ready(drp_ready),   // output [%2:0]\n"
                     "    .drp_rdata(drp_rdata),   // output [31:0]\n"
                     "    .upar_wr(upar_wr),       // output\n"
                     "    .upar_rd(upar_rd),       // output\n"
                     "    .upar_addr(upar_addr),   // output [23:0]\n"
                     "    .upar_wdata(upar_wdata), // output [31:0]\n"
                     "    .upar_rdata(upar_rdata), // input [31:0]\n"
                     "    .upar_ready(upar_ready)  // input\n"
                     ");\n")
                 .arg(QFileInfo(netlistPath).fileName())
                 .arg(requesters - 1)
                 .arg(requesters * 24 - 1)
                 .arg(requesters * 32 - 1));

    // Decoding keeps the device the run was made for, and the tool's banner.
    const QString vo = dir.filePath("core dir/upar_arbiter.vo");
    QString error;
    QCOMPARE(IPCore::decode(dir.filePath("core dir"), netlistPath, vo, error), 0);
    QCOMPARE(error, QString());
    const QString banner = lines.value(1);
    QVERIFY2(banner.startsWith("/* ") && banner.endsWith(" */"), qPrintable(banner));
    QCOMPARE(QString::fromUtf8(readAll(vo)).split('\n').mid(0, 5),
             QStringList({"// Netlist of \\~upar_arbiter_wrap.mycore", DEVICE_LINE,
                          "// Decoded from temp/Upar_Arbiter/" + netlist + " ("
                              + banner.mid(3, banner.size() - 6)
                              + "); changes are lost when the core is generated again.",
                          "", lines.value(3)}));
}

void tst_HostSynthesis::decodeFailures_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no input file at all
    QTest::addColumn<bool>("outputIsDir");
    QTest::addColumn<QString>("error"); // %1 the input's path, %2 the output's

    QTest::newRow("no input") << QByteArray() << false << "The netlist \"%1\" does not exist.";
    QTest::newRow("empty") << QByteArray("") << false << "The netlist \"%1\" is empty.";
    QTest::newRow("source, not netlist")
        << QByteArray("`include \"define.vh\"\nmodule m; endmodule\n") << false
        << "\"%1\" is no synthesised Verilog netlist: it holds the compiler directive `include, "
           "so it has not been through synthesis.";
    QTest::newRow("second module not ended")
        << QByteArray("module a (x); input x; endmodule\nmodule b (y); input y;\n") << false
        << "\"%1\" is no synthesised Verilog netlist: module b has no endmodule.";
    QTest::newRow("output cannot be written")
        << QByteArray("module a (x); input x; endmodule\n") << true
        << "Cannot write the netlist \"%2\": Filename refers to a directory";
}

void tst_HostSynthesis::decodeFailures()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, outputIsDir);
    QFETCH(QString, error);

    QTemporaryDir dir;
    const QString input = dir.filePath("temp/core.vg");
    const QString output = dir.filePath("core.vo");
    QVERIFY(QDir().mkpath(dir.filePath("temp")));
    QVERIFY(content.isNull() || writeFile(input, content));
    QVERIFY(outputIsDir ? QDir().mkpath(output) : writeFile(output, "kept"));

    QString text;
    QCOMPARE(IPCore::decode(dir.path(), input, output, text), 1);
    QCOMPARE(text, error.replace("%1", input).replace("%2", output));
    if (!outputIsDir)
        QCOMPARE(readAll(output), QByteArray("kept"));
}

void tst_HostSynthesis::projectFiles()
{
    QTemporaryDir dir;
    const QString a = dir.filePath("a.v");
    const QString b = dir.filePath("b.v");
    QVERIFY(writeFile(a, "x") && writeFile(b, "y"));
    Core::ProjectManager *project = Core::ProjectManager::instance();
    project->clear();
    QSignalSpy added(project, &Core::ProjectManager::filesAdded);

    // The good files go in once each, the bad ones are reported together.
    QTest::ignoreMessage(QtCriticalMsg,
                         qPrintable("Some files could not be added to the project.\n    \""
                                    + dir.filePath("gone.v") + "\" does not exist.\n    \""
                                    + dir.path() + "\" is no file."));
    QCOMPARE(IPCore::addFilesToProject(
                 {a, dir.filePath("gone.v"), a, dir.path(), dir.filePath("./b.v")}),
             false);
    QCOMPARE(project->files(), QStringList({a, b}));
    QCOMPARE(added.count(), 1);
    QCOMPARE(added.first().first().toStringList(), QStringList({a, b}));

    QCOMPARE(IPCore::addFilesToProject({b}), true);
    QCOMPARE(project->files(), QStringList({a, b}));
    QCOMPARE(added.count(), 1);
    project->clear();
}

QTEST_MAIN(tst_HostSynthesis)
#include "tst_hostsynthesis.moc"
