// SPDX-License-Identifier: MIT
//
// The export of a register script: doubles of the task generator placed where
// the dialog looks for it (missing, failing, leaving no file, writing odd
// lines), the file dialog answered or cancelled, exports refused or not
// writable, and the stand-in generator both behind the dialog and on its own
// command line.

#include "plugin/serdesipconstants.h"
#include "reconfig/reconfiguration.h"
#include "reconfigform.h"

#include "testfiles.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace IPSERDESIP;

namespace {

const char STAND_IN[] = SERDES_STAGE_DIR "/bin/serdes_toml_to_csr.dist/csr_task_gen.bin";
// Where scripts are exported to: a folder of non-ASCII name with a blank.
const QString FOLDER = QStringLiteral("Pr\u00fcfung \u00fc");

QString toolPath()
{
    return QCoreApplication::applicationDirPath() + '/' + APP_SERDES_CSR_TASK_GEN;
}

void placeTool(const QByteArray &script)
{
    QDir().mkpath(QFileInfo(toolPath()).path());
    QFile file(toolPath());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("#!/bin/sh\n" + script + '\n');
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

// A generator that logs its command line to "calls.log" and then acts by its
// task, as `cases` (the branches of a shell case on the task) say.
QByteArray loggingTool(const QByteArray &cases)
{
    return "printf '%s\\n' \"$*\" >> calls.log\n"
           "for out; do :; done\n"
           "case \"$2\" in\n"
           + cases + "\nesac";
}

QStringList calls()
{
    QFile log(QStringLiteral("calls.log"));
    if (!log.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(log.readAll()).split('\n', Qt::SkipEmptyParts);
}

// Answers the modal windows of an export as they come up: the file dialog
// with `saveAs`, or cancels it when that is empty; every message box with Ok.
class ModalAnswers : public QObject
{
public:
    explicit ModalAnswers(const QString &saveAs)
        : m_saveAs(saveAs)
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalAnswers::answer);
        m_timer.start(10);
    }

    QString proposal;
    int fileDialogs = 0;
    QStringList messages;

private:
    void answer()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *files = qobject_cast<QFileDialog *>(modal)) {
            ++fileDialogs;
            proposal = files->selectedFiles().value(0);
            if (m_saveAs.isEmpty()) {
                files->reject();
            } else {
                files->selectFile(m_saveAs);
                // QFileDialog keeps its override of accept() protected.
                static_cast<QDialog *>(files)->accept();
            }
        } else if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            messages << box->text();
            box->button(QMessageBox::Ok)->click();
        }
    }

    QString m_saveAs;
    QTimer m_timer;
};

// Exports from a form for `family` (none: not prepared) holding `settings`.
void exportFrom(const QString &family, const QStringList &settings, const QString &exportDir = {})
{
    reconfiguration dialog;
    if (!family.isEmpty()) {
        DEV::DeviceArg device;
        device.family = family;
        dialog.setDevice(device);
        dialog.dialogDidPrepare();
    }
    if (!exportDir.isEmpty())
        dialog.setExportDirectory(exportDir);
    dialog.show();
    for (const QString &setting : settings)
        setInput(dialog, setting);
    QTest::mouseClick(dialog.findChild<QPushButton *>("pushButtonExport"), Qt::LeftButton);
}

} // namespace

class tst_ReconfigExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void withDoubles_data();
    void withDoubles();
    void runsNothing_data();
    void runsNothing();
    void standIn_data();
    void standIn();
    void standInRefuses_data();
    void standInRefuses();

private:
    QScopedPointer<QTemporaryDir> m_work;
};

void tst_ReconfigExport::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QVERIFY2(QFileInfo(QString::fromLatin1(STAND_IN)).isExecutable(), STAND_IN);
}

void tst_ReconfigExport::init()
{
    QFile::remove(toolPath());
    m_work.reset(new QTemporaryDir);
    QVERIFY(m_work->isValid());
    QVERIFY(QDir::setCurrent(m_work->path()));
}

void tst_ReconfigExport::cleanup()
{
    QFile::remove(toolPath());
    QVERIFY(QDir::setCurrent(QCoreApplication::applicationDirPath()));
}

void tst_ReconfigExport::withDoubles_data()
{
    QTest::addColumn<QByteArray>("cases"); // null: no generator installed
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("messages"); // %1: the file chosen
    QTest::addColumn<QStringList>("calls");
    // What stands at the file's folder and the file; see makeEntries.
    QTest::addColumn<QStringList>("existing");
    const auto row = [](const char *name, const QByteArray &cases, const QStringList &settings,
                        const char *file, const QStringList &messages, const QStringList &calls,
                        const QStringList &existing = {FOLDER + '/'}) {
        QTest::newRow(name) << cases << settings << QByteArray(file) << messages << calls
                            << existing;
    };

    const QStringList lanes = words("checkBoxq0ln0=1 checkBoxq0ln1=1");
    const QStringList both = lanes
                             + words("checkBoxLoopbackEnable=1 checkBoxTXAFEEnable=1 "
                                     "comboBoxLoopBackMode=LB_NES spinBoxTXSwingLevel=9");
    const QString loopback
        = "--task cfg_lb --lane 3 --lb_state ON --lb_mode LB_NES -o config_tmp.csr";
    const QString txAfe = "--task cfg_tx_afe --lane 3 --ffe_manual 0 --txlev 9 --ffe_cm 0 "
                          "--ffe_c1 0 -o config_tmp.csr";

    row("writes in task order",
        "cfg_lb) printf '# made by a double\\nupar_write_driver 0x010120 0x00000003\\n"
        "upar_write_driver 0x010920 0x00000003\\n' > \"$out\";;\n"
        "cfg_tx_afe) printf 'upar_write_driver 0x010130 0x00000090\\n' > \"$out\";;",
        both, "01012000000003\n01092000000003\n01013000000090\n",
        {"Exported 3 register writes to \"%1\"."}, {loopback, txAfe});
    row("odd lines",
        "cfg_lb) printf 'upar_write_driverX 0xabcdef 0x12345678\\nupar_write_driver\\n"
        "upar_write_driver 0x0101\\n upar_write_driver 0x010120 0x00000003\\n"
        "UPAR_WRITE_DRIVER 0x010120 0x00000003\\n"
        "upar_write_driver 0x0a0b0c 0x0d0e0f00 ; last\\n' > \"$out\";;",
        lanes + words("checkBoxLoopbackEnable=1 comboBoxLoopBackMode=LB_NES"),
        "xabcdex1234567\n\n0101\n0a0b0c0d0e0f00\n", {"Exported 4 register writes to \"%1\"."},
        {loopback});
    row("no generator", QByteArray(), both, "",
        {QString("Can not find %1, please check your installation.")
             .arg(QDir::toNativeSeparators(QDir::cleanPath(toolPath())))},
        {});
    row("failing: the report from Error on, later tasks skipped",
        QByteArray("cfg_lb) printf 'reading\\nException: in step 2\\nError: --lb_mode is "
                   "bad\\n\\0after the NUL' >&2; exit 3;;"),
        both, "", {"Error: --lb_mode is bad\n"}, {loopback});
    row("second task failing without a marker, first task kept",
        "cfg_lb) printf 'upar_write_driver 0x010120 0x00000003\\n' > \"$out\";;\n"
        "cfg_tx_afe) printf 'Segmentation fault\\n' >&2; exit 139;;",
        both, "01012000000003\n", {"Segmentation fault\n"}, {loopback, txAfe});
    row("failing with an Exception only",
        "cfg_tx_afe) printf 'task 4: Exception raised\\n' >&2; exit 1;;",
        lanes + words("checkBoxTXAFEEnable=1 spinBoxTXSwingLevel=9"), "", {"Exception raised\n"},
        {txAfe});
    row("no file from the first task",
        "cfg_tx_afe) printf 'upar_write_driver 0x010130 0x00000090\\n' > \"$out\";;", both,
        "01013000000090\n", {"Exported 1 register write to \"%1\"."}, {loopback, txAfe});
    // The receive front end's task stays in the export, though no user can
    // enable it.
    row("every task, the hidden one too", "",
        words("checkBoxq1ln0=1 checkBoxTxDataRateEnable=1 checkBoxRxDataRateEnable=1 "
              "checkBoxLoopbackEnable=1 checkBoxTXAFEEnable=1 checkBoxRXAFEEnable=1 "
              "doubleSpinBoxTXDataRate=1.25"),
        "", {"Exported 0 register writes to \"%1\"."},
        {"--task cfg_tx_dr --lane 16 --tx_data_rate 1.25000000 --pcs_tx_clk_src 0 "
         "--pll_ref_sel 0 --q0_refmux0_freq 0.00000000 --q0_refmux1_freq 0.00000000 "
         "--q1_refmux0_freq 0.00000000 --q1_refmux1_freq 0.00000000 --width_mode 8 "
         "-o config_tmp.csr",
         "--task cfg_rx_dr --lane 16 --rx_data_rate 0.00000000 --cdr_calc_src 0 "
         "--q0_refmux0_freq 0.00000000 --q0_refmux1_freq 0.00000000 "
         "--q1_refmux0_freq 0.00000000 --q1_refmux1_freq 0.00000000 -o config_tmp.csr",
         "--task cfg_lb --lane 16 --lb_state OFF --lb_mode LB_NES -o config_tmp.csr",
         "--task cfg_tx_afe --lane 16 --ffe_manual 0 --txlev 0 --ffe_cm 0 --ffe_c1 0 "
         "-o config_tmp.csr",
         "--task cfg_rx_afe --lane 16 --rx_eq_bias 0 --dr_rx_att_boost 0 --eq_manual 0 "
         "--dr_rx_att 0 --dr_rx_boost 0 -o config_tmp.csr"});
    // The file dialog takes the name of a file in a folder that does not exist,
    // or below a file, which is left as it was.
    const QByteArray writes
        = "cfg_lb) printf 'upar_write_driver 0x010120 0x00000003\\n' > \"$out\";;";
    row("folder missing", writes, both, "", {"Failed to write \"%1\": No such file or directory"},
        {loopback, txAfe}, {});
    row("below a file", writes, both, "", {"Failed to write \"%1\": Not a directory"},
        {loopback, txAfe}, {FOLDER});
}

void tst_ReconfigExport::withDoubles()
{
    QFETCH(QByteArray, cases);
    QFETCH(QStringList, settings);
    QFETCH(QByteArray, file);
    QFETCH(QStringList, messages);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, existing);

    if (!cases.isNull())
        placeTool(loggingTool(cases));
    const QString target = m_work->filePath(FOLDER + "/script.csr");
    QVERIFY(makeEntries(m_work->path(), existing));
    for (QString &message : messages)
        message.replace("%1", QDir::toNativeSeparators(target));
    ModalAnswers answers(target);
    exportFrom("RK9C-880D", settings);

    QCOMPARE(answers.fileDialogs, 1);
    QCOMPARE(answers.messages, messages);
    QCOMPARE(::calls(), calls);
    // Written after a failure too, with what the tasks before it gave.
    QCOMPARE(readAll(target), file);
    QCOMPARE(QDir(m_work->filePath(FOLDER)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             existing.value(0).endsWith('/') ? QStringList{"script.csr"} : QStringList());
    QVERIFY(entriesKept(m_work->path(), existing));
    QVERIFY(!QFile::exists("config_tmp.csr"));
}

void tst_ReconfigExport::runsNothing_data()
{
    QTest::addColumn<QString>("family"); // none: not prepared
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("exportDirectory");
    QTest::addColumn<QString>("proposal"); // none: no file dialog
    QTest::addColumn<QStringList>("messages");
    const auto row
        = [](const char *name, const char *family, const char *settings,
             const char *exportDirectory, const char *proposal, const QStringList &messages) {
              QTest::newRow(name) << QString(family) << words(settings) << QString(exportDirectory)
                                  << QString(proposal) << messages;
          };
    const QString noLane
        = "No lane is checked. Check at least one lane under \"Channel\" to export.";
    const QString noTask = "No task is enabled. Check \"Enable\" for at least one task to export.";

    row("cancelled, current directory", "", "checkBoxq0ln0=1 checkBoxLoopbackEnable=1", "",
        "%1/reconfigure.csr", {});
    row("cancelled, the core's directory", "", "checkBoxq0ln0=1 checkBoxLoopbackEnable=1",
        "%1/core", "%1/core/reconfigure.csr", {});
    row("no lane checked", "RK9C-880D", "checkBoxLoopbackEnable=1 checkBoxTXAFEEnable=1", "%1/core",
        "", {noLane});
    // The lanes of a quad the device lacks are not sent, checked or not.
    row("only lanes of a hidden quad", "RK9C-370D",
        "checkBoxq1ln0=1 checkBoxq1ln3=1 checkBoxLoopbackEnable=1", "%1/core", "", {noLane});
    row("no task enabled", "RK9C-880D",
        "checkBoxq0ln0=1 checkBoxq1ln2=1 comboBoxLoopBackMode=LB_ENC spinBoxTXSwingLevel=9",
        "%1/core", "", {noTask});
    row("neither", "RK9C-880D", "", "%1/core", "", {noLane + '\n' + noTask});
}

void tst_ReconfigExport::runsNothing()
{
    QFETCH(QString, family);
    QFETCH(QStringList, settings);
    QFETCH(QString, exportDirectory);
    QFETCH(QString, proposal);
    QFETCH(QStringList, messages);

    placeTool(loggingTool("*) printf 'upar_write_driver 0x010120 0x00000003\\n' > \"$out\";;"));
    QVERIFY(QDir().mkpath(m_work->filePath("core")));
    const QString earlier = m_work->filePath("core/reconfigure.csr");
    const QByteArray content = "# kept\r\n01012000000003\n\xff";
    QVERIFY(writeFile(earlier, content));
    // Where no file dialog is expected, one that comes up all the same is
    // answered with a new file, whose export would show.
    ModalAnswers answers(proposal.isEmpty() ? m_work->filePath("core/chosen.csr") : QString());
    exportFrom(family, settings,
               exportDirectory.isEmpty() ? QString() : exportDirectory.arg(m_work->path()));

    QCOMPARE(answers.fileDialogs, proposal.isEmpty() ? 0 : 1);
    if (!proposal.isEmpty())
        QCOMPARE(answers.proposal, proposal.arg(QDir::current().canonicalPath()));
    QCOMPARE(answers.messages, messages);
    QCOMPARE(::calls(), QStringList());
    QCOMPARE(QDir::current().entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(m_work->filePath("core")).entryList(QDir::Files), QStringList{"reconfigure.csr"});
    QCOMPARE(readAll(earlier), content);
}

void tst_ReconfigExport::standIn_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QByteArray>("file");
    // The start of the one message expected; %1: the file chosen.
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const char *family, const char *settings,
                        const char *file, const char *message) {
        QTest::newRow(name) << QString(family) << words(settings) << QByteArray(file)
                            << QString(message);
    };

    row("every task on two quads", "RK9C-880D",
        "checkBoxq0ln0=1 checkBoxq1ln3=1 checkBoxTxDataRateEnable=1 "
        "doubleSpinBoxTXDataRate=10.3125 comboBoxTXPLL=QPLL0 comboBoxTXRefClkMux=REFMUX1 "
        "doubleSpinBoxTXQ0RefMux1Freq=156.25 doubleSpinBoxTXQ1RefMux1Freq=125 comboBoxPMAWidth=20 "
        "checkBoxRxDataRateEnable=1 doubleSpinBoxRXDataRate=2.5 doubleSpinBoxRXQ0RefMux0Freq=100 "
        "doubleSpinBoxRXQ1RefMux0Freq=312.5 checkBoxLoopbackEnable=1 comboBoxLoopBackMode=LB_ENC "
        "checkBoxTXAFEEnable=1 comboBoxTXAFEMode=Manual spinBoxTXSwingLevel=10 spinBoxFFECM=4 "
        "spinBoxFFEC1=6",
        "010100009d5b34\n01010409502f90\n01010800000035\n"
        "021900009d5b34\n02190407735940\n02190800000035\n"
        "010110002625a0\n01011405f5e100\n01011800000000\n"
        "021910002625a0\n02191412a05f20\n02191800000000\n"
        "01012000000005\n02192000000005\n"
        "010130000000a1\n01013400000604\n021930000000a1\n02193400000604\n",
        "Exported 18 register writes to \"%1\".");
    // The second quad's lanes and frequencies do not go out, and the generator
    // does not ask for them.
    row("one quad", "RK9C-370D",
        "checkBoxq0ln0=1 checkBoxq0ln1=1 checkBoxq0ln2=1 checkBoxq0ln3=1 checkBoxq1ln0=1 "
        "checkBoxTxDataRateEnable=1 doubleSpinBoxTXDataRate=6.25 comboBoxTXPLL=QPLL1 "
        "doubleSpinBoxTXQ0RefMux0Freq=156.25 comboBoxPMAWidth=16",
        "010100005f5e10\n01010409502f90\n01010800000022\n"
        "010900005f5e10\n01090409502f90\n01090800000022\n"
        "011100005f5e10\n01110409502f90\n01110800000022\n"
        "011900005f5e10\n01190409502f90\n01190800000022\n",
        "Exported 12 register writes to \"%1\".");
    row("rate of 0 refused", "RK9C-880D",
        "checkBoxq0ln0=1 checkBoxTxDataRateEnable=1 doubleSpinBoxTXQ0RefMux0Freq=156.25 "
        "checkBoxLoopbackEnable=1",
        "", "Error: --tx_data_rate 0.00000000: the data rate must be above 0");
    row("reference of the other quad missing", "RK9C-880D",
        "checkBoxq0ln0=1 checkBoxq1ln0=1 checkBoxRxDataRateEnable=1 doubleSpinBoxRXDataRate=5 "
        "doubleSpinBoxRXQ0RefMux0Freq=125",
        "", "Error: --q1_refmux0_freq 0.00000000: must be above 0");
}

void tst_ReconfigExport::standIn()
{
    QFETCH(QString, family);
    QFETCH(QStringList, settings);
    QFETCH(QByteArray, file);
    QFETCH(QString, message);

    placeTool(QByteArray("exec '") + STAND_IN + "' \"$@\"");
    const QString target = m_work->filePath("script.csr");
    message.replace("%1", QDir::toNativeSeparators(target));
    ModalAnswers answers(target);
    exportFrom(family, settings);

    QCOMPARE(answers.fileDialogs, 1);
    QCOMPARE(answers.messages.size(), 1);
    QVERIFY2(answers.messages.first().startsWith(message), qPrintable(answers.messages[0]));
    QCOMPARE(readAll(target), file);
    QVERIFY(!QFile::exists("config_tmp.csr"));
}

void tst_ReconfigExport::standInRefuses_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const QStringList &args, const char *fault) {
        QTest::newRow(name) << args << QString(fault);
    };
    const QStringList lb
        = words("--task cfg_lb --lane 1 --lb_state ON --lb_mode LB_NES -o out.csr");
    const QStringList afe = words("--task cfg_tx_afe --lane 3 --ffe_manual 1 --txlev 15 "
                                  "--ffe_cm 19 --ffe_c1 19 -o out.csr");
    const QStringList rx = words("--task cfg_rx_dr --lane 17 --rx_data_rate 2.5 --cdr_calc_src 1 "
                                 "--q0_refmux1_freq 125 --q1_refmux1_freq 156.25 -o out.csr");
    const auto replaced = [](QStringList args, const QString &flag, const QString &value) {
        args[args.indexOf(flag) + 1] = value;
        return args;
    };
    const auto without = [](QStringList args, const QString &flag) {
        const int at = args.indexOf(flag);
        args.erase(args.begin() + at, args.begin() + at + 2);
        return args;
    };

    row("no arguments", {}, "Error: no arguments");
    row("unknown option", lb + words("--lb_speed 3"),
        "Error: --lb_speed is not an option of task cfg_lb");
    row("option of another task", rx + words("--width_mode 20"),
        "Error: --width_mode is not an option of task cfg_rx_dr");
    row("unknown task", replaced(lb, "--task", "cfg_pll"), "Error: --task cfg_pll");
    row("word in lower case", replaced(lb, "--lb_state", "on"),
        "Error: --lb_state on: expected one of ON, OFF");
    row("above its range", replaced(afe, "--txlev", "16"),
        "Error: --txlev 16: expected an integer from 0 to 15");
    row("decimal comma", replaced(rx, "--rx_data_rate", "2,5"),
        "Error: --rx_data_rate 2,5: expected a data rate in Gbps");
    row("required option missing", without(afe, "--ffe_c1"),
        "Error: task cfg_tx_afe needs --ffe_c1");
    row("reference of a chosen quad missing", without(rx, "--q1_refmux1_freq"),
        "Error: --q1_refmux1_freq is missing");
    row("lane mask beyond two quads", replaced(lb, "--lane", "256"), "Error: --lane 256");
    // The dialog refuses to send it.
    row("no lane", replaced(lb, "--lane", "0"), "Error: --lane 0 selects no lane");
    row("option twice", afe + words("--txlev 3"), "Error: --txlev is given more than once");
    row("no output", without(lb, "-o"), "Error: -o is missing");
    row("option without its value", lb + words("--lb_mode"), "Error: --lb_mode has no value");
    row("stray argument", words("cfg_lb") + lb, "Error: unexpected argument \"cfg_lb\"");
    row("rate beyond its register", replaced(rx, "--rx_data_rate", "5000"),
        "Error: --rx_data_rate 5000: expected at most 4294.967295 Gbps");
    row("-o without its value", without(lb, "-o") + QStringList{"-o"}, "Error: -o has no value");
    row("every fault at once",
        replaced(without(rx, "--q1_refmux1_freq"), "--q0_refmux1_freq", "5000")
            + words("--width_mode 20"),
        "Error: --width_mode is not an option of task cfg_rx_dr\n"
        "Error: --q1_refmux1_freq is missing: lanes of Q1 are chosen and --cdr_calc_src 1 "
        "selects REFMUX1\n"
        "Error: --q0_refmux1_freq 5000: expected at most 4294.967295 MHz\n");
    // Beyond 64 bits in micro units, and beyond them before the point.
    row("conversion beyond 64 bits",
        replaced(replaced(rx, "--rx_data_rate", "18446744073710.000001"), "--q1_refmux1_freq",
                 "100000000000000000000000"),
        "Error: --rx_data_rate 18446744073710.000001: expected at most 4294.967295 Gbps\n"
        "Error: --q1_refmux1_freq 100000000000000000000000: expected at most 4294.967295 MHz\n");
}

void tst_ReconfigExport::standInRefuses()
{
    QFETCH(QStringList, args);
    QFETCH(QString, fault);

    QProcess tool;
    tool.start(QString::fromLatin1(STAND_IN), args);
    QVERIFY(tool.waitForFinished(30000));
    const QString errors = QString::fromUtf8(tool.readAllStandardError());
    QVERIFY2(tool.exitCode() != 0, qPrintable(errors));
    QVERIFY2(errors.contains(fault), qPrintable(errors));
    // Each fault once, and no other.
    QCOMPARE(errors.count("Error: "), fault.count("Error: "));
    QVERIFY(!QFile::exists("out.csr"));
}

QTEST_MAIN(tst_ReconfigExport)
#include "tst_reconfigexport.moc"
