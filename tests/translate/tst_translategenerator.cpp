// SPDX-License-Identifier: MIT
//
// The parameter file and the register build: the file a design gives on every
// tier, read back as TOML and as INI; the register compiler stand-ins
// accepting what the writer makes and refusing what it cannot; the equaliser
// tap; and every failure of the build, with doubles of the compiler placed
// where the program looks for it.

#include "model/serdes.h"
#include "plugin/serdesipconstants.h"
#include "translate/generator.h"
#include "translate/parser.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <toml++/toml.h>

using namespace IPSERDESIP;

namespace {

const QStringList SECTIONS_880K{"q0",     "q1",     "q0.ln0", "q0.ln1", "q0.ln2",
                                "q0.ln3", "q1.ln0", "q1.ln1", "q1.ln2", "q1.ln3"};
const QStringList SECTIONS_ONE_QUAD{"q0", "q0.ln0", "q0.ln1", "q0.ln2", "q0.ln3"};

void prepare(const QString &device)
{
    serdes::destory();
    serdes::instance()->initilize(device);
    parser::destory();
    parser::instance()->initialize(device);
}

MUX *selectOf(const QString &name)
{
    Instance *element = serdes::instance()->instances.value(name);
    if (auto *pll = dynamic_cast<PLL *>(element))
        return pll->Mux();
    return dynamic_cast<MUX *>(element);
}

QStringList readLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {QStringLiteral("<unreadable>")};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    // The last line ends with a newline too.
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

// The file has the regulator and `sections`, in this order, as TOML tables;
// every "field = value" is a TOML key and reads back through QSettings, as the
// page reads it, as the text that stands in the file.
void checkReadable(const QString &path, const QStringList &sections)
{
    const toml::parse_result parsed = toml::parse_file(path.toStdString());
    QVERIFY2(parsed, parsed ? "" : std::string(parsed.error().description()).c_str());
    const toml::table &root = parsed.table();
    QSettings ini(path, QSettings::IniFormat);
    QCOMPARE(ini.status(), QSettings::NoError);

    QString section;
    QStringList headers;
    int entries = 0;
    for (const QString &line : readLines(path)) {
        if (line.startsWith('[')) {
            section = line.mid(1, line.size() - 2);
            headers.append(section);
            QVERIFY2(root.at_path(section.toStdString()).is_table(), qPrintable(section));
            continue;
        }
        if (line.isEmpty())
            continue;
        const QString field = line.section(QStringLiteral(" = "), 0, 0);
        const QString value = line.section(QStringLiteral(" = "), 1);
        const QString key = section.isEmpty() ? field : section + '/' + field;
        QString unquoted = value;
        if (value.startsWith('"'))
            unquoted = value.mid(1, value.size() - 2);
        QCOMPARE(ini.value(key).toString(), unquoted);

        const std::string dotted
            = (section.isEmpty() ? field : section + '.' + field).toStdString();
        QVERIFY2(root.at_path(dotted).node(), dotted.c_str());
        ++entries;
    }
    QCOMPARE(headers, QStringList{"regulator"} + sections);
    QVERIFY(entries > 0);
}

// A small program standing in for the register compiler.
void placeDouble(const QString &tool, const QByteArray &script)
{
    const QString path = QCoreApplication::applicationDirPath() + '/' + tool;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    // A script with an interpreter line of its own keeps it.
    file.write((script.startsWith("#!") ? QByteArray() : "#!/bin/sh\n") + script + '\n');
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

QString standIn(const QString &tool)
{
    return QStringLiteral(SERDES_STAGE_DIR "/bin/") + tool;
}

// A design that uses every lane of the tier, with a line for a lane of q1
// that the one-quad tiers drop.
QStringList fullDesign(int quads)
{
    QStringList lines{"q0_refclk0_freq 125"};
    for (int q = 0; q < quads; ++q) {
        lines << QStringLiteral("q%1_enable true").arg(q);
        for (int m = 0; m < 4; ++m) {
            const QString lane = QStringLiteral("q%1_ln%2_").arg(q).arg(m);
            lines << lane + "enable true" << lane + "pll_sel qpll0" << lane + "tx_rate 2.5"
                  << lane + "rx_rate 2.5" << lane + "cdr_refclk_sel refmux1"
                  << lane + "tx_differential_swing 804mV";
        }
    }
    lines << (quads == 2 ? "common_clk_src_sel q1" : "q1_ln0_tx_rate 5");
    // Two ways to one field twice: a line given twice, and a second name of a
    // field whose default is added as well. The first entry stands.
    lines << "q0_ln0_tx_rate 5"
          << "q0_ln1_pcs_tx_reset_src_sel csr";
    return lines;
}

void expectDuplicatesDropped()
{
    QTest::ignoreMessage(QtWarningMsg, "[q0.ln0] tx_data_rate: kept \"2.5G\", dropped \"5G\"");
    QTest::ignoreMessage(QtWarningMsg, "[q0.ln1] pcs_tx_reset_by_fabric: kept false, dropped true");
}

} // namespace

class tst_Generator : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void workedExample();
    void designOnEveryTier_data();
    void designOnEveryTier();
    void standInRefuses_data();
    void standInRefuses();
    void writer();
    void txFfe_data();
    void txFfe();
    void registerBuild_data();
    void registerBuild();

private:
    QString m_tools;
    QScopedPointer<QTemporaryDir> m_work;
};

void tst_Generator::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    m_tools = QCoreApplication::applicationDirPath() + "/serdes_toml_to_csr.dist";
}

void tst_Generator::init()
{
    QDir(m_tools).removeRecursively();
    m_work.reset(new QTemporaryDir);
    QVERIFY(m_work->isValid());
    QVERIFY(QDir::setCurrent(m_work->path()));
}

void tst_Generator::cleanup()
{
    QDir(m_tools).removeRecursively();
    parser::destory();
    serdes::destory();
}

void tst_Generator::workedExample()
{
    prepare("RK9C-370D");
    selectOf(Q0_QPLL0)->m_sel = 1;
    const QStringList design{"q0_enable true",       "q0_ln0_enable true",
                             "q0_ln0_pll_sel qpll0", "q0_ln0_tx_rate 2.5",
                             "q0_refclk0_freq 125",  "q0_ln0_tx_differential_swing 804mV",
                             "q0_ln0_tx_ffe_cm 4",   "q0_ln0_tx_ffe_c1 6"};

    generator writer;
    QVERIFY(writer.generateTomlFile(design, "serdes_tmp.toml"));
    QCOMPARE(writer.getErrStringList(), QStringList());

    const QStringList lines = readLines("serdes_tmp.toml");
    QCOMPARE(lines.size(), 369);
    // Given lines first, then the defaults, then the selects of the network.
    QCOMPARE(lines.mid(0, 9),
             (QStringList{"device = \"RK9C-370\"", "", "[regulator]", "regulator_enable = false",
                          "", "[q0]", "enable = true", "ref_pad0_freq = \"125M\"",
                          "quad_clk_to_mac_sel = \"CM0\""}));
    QCOMPARE(
        lines.mid(25, 17),
        (QStringList{"refimux0_sel = 0", "refimux1_sel = 0", "refimux2_sel = 0", "refimux3_sel = 0",
                     "qpll0_ref_sel = 1", "qpll1_ref_sel = 0", "refmux_scheme = \"USER_DEFINED\"",
                     "", "[q0.ln0]", "enable = true", "pcs_tx_clk_src = 1",
                     "tx_data_rate = \"2.5G\"", "txlev = 13", "ffe_cm = 4", "ffe_c1 = 6",
                     "chbond_align_pattern1 = 124", "chbond_align_pattern1_is_kcode = false"}));

    const int lane1 = lines.indexOf("[q0.ln1]");
    QCOMPARE(lines.mid(lane1 - 5, 5),
             (QStringList{"comma = \"K28.5\"", "comma_mask = \"1111111111\"", "ffe_c0 = 30",
                          "cpll_ref_sel = 0", ""}));
    const int lane2 = lines.indexOf("[q0.ln2]");
    QCOMPARE(lines.mid(lane2 - 3, 3), (QStringList{"ffe_c0 = 40", "cpll_ref_sel = 0", ""}));
    checkReadable("serdes_tmp.toml", SECTIONS_ONE_QUAD);
}

void tst_Generator::designOnEveryTier_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("deviceLine");

    QTest::newRow("880D") << "RK9C-880D" << APP_SERDES_TOML_TO_CSR_880K << "device = \"RK9C-880\"";
    QTest::newRow("no device line") << "RK9-370D" << APP_SERDES_TOML_TO_CSR_880K << "";
    QTest::newRow("370Q") << "RK9C-370Q" << APP_SERDES_TOML_TO_CSR_370K << "device = \"RK9C-370\"";
    QTest::newRow("90F") << "RK9C-90F" << APP_SERDES_TOML_TO_CSR_90K << "device = \"RK9C-90\"";
}

// The whole build with the real stand-ins in place: each tier's file is
// readable, the stand-in of the tier accepts it, and the protocols' register
// text follows the stand-in's output.
void tst_Generator::designOnEveryTier()
{
    QFETCH(QString, device);
    QFETCH(QString, tool);
    QFETCH(QString, deviceLine);

    for (const char *each :
         {APP_SERDES_TOML_TO_CSR_880K, APP_SERDES_TOML_TO_CSR_370K, APP_SERDES_TOML_TO_CSR_90K}) {
        QDir().mkpath(m_tools);
        QVERIFY(QFile::link(standIn(QLatin1String(each)),
                            QCoreApplication::applicationDirPath() + '/' + QLatin1String(each)));
    }
    prepare(device);
    const bool twoQuads = tool == QLatin1String(APP_SERDES_TOML_TO_CSR_880K);
    if (twoQuads) {
        MUX *bridge = selectOf(MUX_Q0_TO_Q1);
        bridge->m_dir = 1;
        bridge->m_sel = 1;
    }

    generator builder;
    const QString csr = m_work->filePath("design.csr");
    expectDuplicatesDropped();
    const bool built
        = builder.generate(fullDesign(twoQuads ? 2 : 1), csr, {"protocol text", "more"});
    QVERIFY2(built, qPrintable(builder.getErrStringList().join('\n')));

    const QStringList toml = readLines("serdes_tmp.toml");
    QCOMPARE(toml.first(), deviceLine);
    checkReadable("serdes_tmp.toml", twoQuads ? SECTIONS_880K : SECTIONS_ONE_QUAD);
    QSettings ini("serdes_tmp.toml", QSettings::IniFormat);
    QCOMPARE(ini.value("q0.ln0/tx_data_rate").toString(), QStringLiteral("2.5G"));
    QCOMPARE(ini.value("q0.ln1/pcs_tx_reset_by_fabric").toString(), QStringLiteral("false"));
    const QString last = twoQuads ? "q1.ln3" : "q0.ln3";
    QCOMPARE(ini.value(last + "/enable").toString(), QStringLiteral("true"));
    QCOMPARE(ini.value(last + "/cdr_calib_clk_src").toString(), QStringLiteral("REFMUX1"));
    if (twoQuads) {
        // One protocol line written to both quads.
        QCOMPARE(ini.value("q0/mac_quad_clk_sel").toString(), QStringLiteral("Q1"));
        QCOMPARE(ini.value("q1/mac_quad_clk_sel").toString(), QStringLiteral("Q1"));
        QCOMPARE(ini.value("q0/ref_prop_dir").toString(), QStringLiteral("2"));
        QCOMPARE(ini.value("q1/refomux0_sel").toString(), QStringLiteral("1"));
    }

    // The parameter file alone knows no 90k: such a part gets the sections of
    // 880k, and those of q1 stay empty.
    expectDuplicatesDropped();
    QVERIFY(generator().generateTomlFile(fullDesign(twoQuads ? 2 : 1), "alone.toml"));
    const bool oneQuad = tool == QLatin1String(APP_SERDES_TOML_TO_CSR_370K);
    checkReadable("alone.toml", oneQuad ? SECTIONS_ONE_QUAD : SECTIONS_880K);

    const QStringList listing = readLines(csr);
    QVERIFY2(listing.first().contains(QFileInfo(tool).fileName() + " stand-in")
                 && listing.first().contains("not register data"),
             qPrintable(listing.first()));
    QVERIFY(listing.contains(last + "\ttx_data_rate\t\"2.5G\""));
    QCOMPARE(listing.mid(listing.size() - 2), (QStringList{"protocol text", "more"}));
    QStringList parameters = listing.mid(1, listing.size() - 3);
    QCOMPARE(parameters.size(), toml.filter(" = ").size());
    QStringList sorted = parameters;
    sorted.sort();
    QCOMPARE(parameters, sorted);
}

void tst_Generator::standInRefuses_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("tool");
    // The file as the writer makes it, with the first line equal to `from`
    // after `after` replaced by `to`; without `from`, `to` alone if given.
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    // Empty: the stand-in takes the file.
    QTest::addColumn<QString>("message");

    const auto row = [](const char *tag, const char *device, const char *tool, const char *after,
                        const char *from, const char *to, const char *message) {
        QTest::newRow(tag) << QString(device) << QString(tool) << QString(after) << QString(from)
                           << QString(to) << QString(message);
    };
    const char *t880k = APP_SERDES_TOML_TO_CSR_880K;
    const char *t370k = APP_SERDES_TOML_TO_CSR_370K;
    const char *t90k = APP_SERDES_TOML_TO_CSR_90K;
    row("kind", "RK9C-370D", t370k, "[q0.ln2]", "enable = false", "enable = 0",
        "[q0.ln2] enable: expected a boolean (one of true, false), found an integer (0)");
    row("kind of a float", "RK9C-880D", t880k, "[q0.ln0]", "vddt = 900.0", "vddt = 900",
        "[q0.ln0] vddt: expected a float (900.0), found an integer (900)");
    row("regulator on", "RK9C-370D", t370k, "[regulator]", "regulator_enable = false",
        "regulator_enable = true", "[regulator] regulator_enable: expected false, found true");
    row("device of another tier", "RK9C-880D", t880k, "device = \"RK9C-880\"",
        "device = \"RK9C-880\"", "device = \"RK9C-90\"",
        "device: expected one of \"RK9C-880\", \"RK9PC-880\", \"RK9C-440\", found \"RK9C-90\"");
    row("rate not a number", "RK9C-880D", t880k, "[q1.ln2]", "tx_data_rate = \"1.25G\"",
        "tx_data_rate = \"infG\"",
        "[q1.ln2] tx_data_rate: expected a string \"<number>G\", found \"infG\"");
    row("frequency with an exponent", "RK9C-90F", t90k, "[q0]", "ref_pad0_freq = \"0M\"",
        "ref_pad0_freq = \"1e3M\"",
        "[q0] ref_pad0_freq: expected a string \"<number>M\", found \"1e3M\"");
    row("fraction passed on as it stands", "RK9C-370D", t370k, "[q0]", "rx_eq_bias = 7",
        "rx_eq_bias = 7.5", "");
    // toml++ 3.3.0 runs into undefined behaviour on the first and out of stack
    // on the second.
    row("non-ASCII outside a string", "RK9C-90F", t90k, "", "", "é",
        "serdes_tmp.toml:1:1: non-ASCII byte 0xc3 outside a string or comment");
    const QString manyParts = QString("a.").repeated(14999) + "a = 1";
    row("key of many parts", "RK9C-880D", t880k, "", "", qPrintable(manyParts),
        "serdes_tmp.toml:1:128: key of more than 64 dotted parts");
    row("value of another tier", "RK9C-880D", t880k, "[q1.ln1]", "cdr_calib_clk_src = \"AUTO\"",
        "cdr_calib_clk_src = \"REFMUX2\"",
        "[q1.ln1] cdr_calib_clk_src: expected one of \"AUTO\", \"REFMUX0\", \"REFMUX1\", "
        "found \"REFMUX2\"");
    // A value list written out by hand, so that a wrong value in the tables,
    // which the writer and the stand-in share, shows.
    row("gearbox ratio", "RK9C-370D", t370k, "[q0.ln1]", "tx_gear_rate = \"1:1\"",
        "tx_gear_rate = \"1:8\"",
        "[q0.ln1] tx_gear_rate: expected one of \"1:1\", \"1:2\", \"1:4\", found \"1:8\"");
    row("unknown field", "RK9C-90D", t90k, "[q0]", "enable = false", "enable = false\nvddt = 900.0",
        "[q0] vddt: no such field in tier 90k");
    row("select out of range", "RK9C-880E", t880k, "[q0]", "qpll1_ref_sel = 0", "qpll1_ref_sel = 2",
        "[q0] qpll1_ref_sel: expected one of 0, 1, found 2");
    row("frequency", "RK9C-370Q", t370k, "[q0]", "ref_pad2_freq = \"0M\"",
        "ref_pad2_freq = \"fastM\"",
        "[q0] ref_pad2_freq: expected a string \"<number>M\", found \"fastM\"");
    row("missing field", "RK9C-370Q", t370k, "[q0.ln3]", "ffe_c0 = 40", "",
        "[q0.ln3] ffe_c0: missing");
    row("section of another tier", "RK9C-90F", t90k, "", "[q0.ln3]", "[q1.ln3]",
        "[q1]: no such section in tier 90k");
    row("file of another tier", "RK9C-90F", t370k, "", "", "", "[q0] refimux2_sel: missing");
    row("not TOML", "RK9C-880D", t880k, "[q0.ln0]", "enable = false",
        "enable = false\nenable = true", "cannot redefine existing boolean 'enable'");
}

// The stand-in takes no file but one its tier's writer could have made, and
// names the section and field of each fault; it writes nothing then.
void tst_Generator::standInRefuses()
{
    QFETCH(QString, device);
    QFETCH(QString, tool);
    QFETCH(QString, after);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, message);

    prepare(device);
    // No compiler is in place: this only writes the file.
    generator().generate({}, "unused.csr", {});
    QStringList lines = readLines("serdes_tmp.toml");
    if (!from.isEmpty()) {
        const int at = lines.indexOf(from, qMax(0, lines.indexOf(after)));
        QVERIFY(at >= 0);
        lines[at] = to;
    } else if (!to.isEmpty()) {
        lines = QStringList{to};
    }
    QFile file("serdes_tmp.toml");
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write((lines.join('\n') + '\n').toUtf8());
    file.close();

    QProcess run;
    run.start(standIn(tool), {"serdes_tmp.toml", "-o", "out.csr"});
    QVERIFY(run.waitForFinished(30000));
    const QString error = QString::fromUtf8(run.readAllStandardError());
    QCOMPARE(run.exitStatus(), QProcess::NormalExit);
    if (message.isEmpty()) {
        QVERIFY2(run.exitCode() == 0, qPrintable(error));
        QVERIFY(QFile::exists("out.csr"));
        return;
    }
    QCOMPARE(run.exitCode(), 1);
    QVERIFY2(error.startsWith("Error: ") && error.contains(message), qPrintable(error));
    QVERIFY(!QFile::exists("out.csr"));
}

// Lines are filed by their section prefix; the rest, a section the tier lacks
// included, is dropped; a joined line becomes two; the last device line wins;
// an earlier file is replaced whole.
void tst_Generator::writer()
{
    const QStringList lines{"device = \"first\"",
                            "[q0.ln1].tx_data_rate \"5G\"",
                            "",
                            "[q1.ln0].enable true",
                            "[q1].enable true",
                            "[q0]x.enable true",
                            " [q0].enable true",
                            "not a line",
                            "[q0].mac_quad_clk_sel \"Q1\" && [q1].mac_quad_clk_sel \"Q1\"",
                            "[q0.ln1].ffe_c0 40&&[q0.ln1].ffe_cm 0",
                            "device = \"last\""};
    generator writer;
    QFile old("lines.toml");
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(10000, '#'));
    old.close();
    QVERIFY(writer.generateTOML_90k("lines.toml", lines));
    QCOMPARE(readLines("lines.toml"),
             (QStringList{"device = \"last\"", "", "[regulator]", "regulator_enable = false", "",
                          "[q0]", "mac_quad_clk_sel = \"Q1\"", "", "[q0.ln0]", "", "[q0.ln1]",
                          "tx_data_rate = \"5G\"", "ffe_c0 = 40", "ffe_cm = 0", "", "[q0.ln2]", "",
                          "[q0.ln3]", ""}));
    QVERIFY(writer.generateTOML_880k("lines.toml", lines));
    const QStringList twoQuads = readLines("lines.toml");
    QCOMPARE(twoQuads.mid(5, 6), (QStringList{"[q0]", "mac_quad_clk_sel = \"Q1\"", "", "[q1]",
                                              "enable = true", "mac_quad_clk_sel = \"Q1\""}));
    QCOMPARE(twoQuads.mid(twoQuads.indexOf("[q1.ln0]"), 3),
             (QStringList{"[q1.ln0]", "enable = true", ""}));
    QCOMPARE(writer.getErrStringList(), QStringList());
}

void tst_Generator::txFfe_data()
{
    QTest::addColumn<QStringList>("lines");
    // Null when nothing is added.
    QTest::addColumn<QString>("added");

    QTest::newRow("negative") << QStringList{"[q0.ln0].ffe_c1 25", "[q0.ln0].ffe_cm 25"}
                              << "[q0.ln0].ffe_c0 -10";
    QTest::newRow("first line wins, blanks and bad text")
        << QStringList{"[q0.ln0].ffe_cm   7 ", "[q0.ln0].ffe_cm 1", "[q0.ln0].ffe_c1 abc"}
        << "[q0.ln0].ffe_c0 33";
    QTest::newRow("other lane") << QStringList{
        "[q0.ln1].ffe_cm 5", "[q0.ln1].ffe_c1 5", "[q0.ln0].ffe_cm 1", "[q0.ln0].ffe_c1 2",
        "[q0.ln1].ffe_c0 1"} << "[q0.ln0].ffe_c0 37";
    QTest::newRow("given by a protocol")
        << QStringList{"[q0.ln0].ffe_cm 25", "[q0.ln0].ffe_c1 25", "x [q0.ln0].ffe_c0 3"}
        << QString();
    QTest::newRow("no cm line") << QStringList{"[q0.ln0].ffe_c1 25"} << QString();
}

void tst_Generator::txFfe()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, added);

    QStringList result = lines;
    TX_FFE(result, "[q0.ln0]");
    QCOMPARE(result, added.isNull() ? lines : lines + QStringList{added});
}

void tst_Generator::registerBuild_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("design");
    QTest::addColumn<QStringList>("csrLines");
    QTest::addColumn<bool>("built");
    // "<csr>" stands for the register file's path, "<tool>" for the tool's.
    QTest::addColumn<QStringList>("errors");
    // Null when no register file is to exist.
    QTest::addColumn<QString>("csr");
    // The errors go to the message handler as well, as they stand.
    QTest::addColumn<bool>("logged");

    const auto row = [](const char *tag, const QByteArray &script, const QStringList &errors,
                        const QString &csr = QString(),
                        const QStringList &csrLines = {"csr one", "csr two"}, bool logged = false) {
        QTest::newRow(tag) << script << QStringList() << csrLines << errors.isEmpty() << errors
                           << csr << logged;
    };
    const QByteArray writes = "printf 'regs of %s %s\\n' \"$1\" \"$2\" > \"$3\"";
    row("success", writes, {}, "regs of serdes_tmp.toml -o\ncsr one\ncsr two\n");
    row("nothing to append", writes, {}, "regs of serdes_tmp.toml -o\n", {});
    row("Exception before Error", "echo 'step 1\nException: at 3\nError: bad field' >&2; exit 3",
        {"Error: bad field\n"});
    row("only Exception", "echo 'step 1\nException: at 3' >&2; exit 1", {"Exception: at 3\n"});
    row("neither word", QByteArray("printf 'it broke\\000Error: behind NUL' >&2; exit 1"),
        {"it broke"});
    row("silent failure", "exit 1", {""});
    QTest::newRow("untranslatable line")
        << QByteArray("touch started") << QStringList{"q0_ln0_vddt 950"}
        << QStringList{"csr one", "csr two"} << false
        << QStringList{"can no conver param: q0_ln0_vddt 950"} << QString() << true;
    row("register file not appendable", "mkdir \"$3\"", {"<csr>:\nFailed to write file."}, {}, {},
        true);
    row("no tool", QByteArray(), {"Can not find <tool>, please check your installation."}, {}, {},
        true);
    // The tool's own first line names an interpreter that is not there.
    row("tool cannot start", "#!/no/such/shell",
        {"Can not start <tool>: execvp: No such file or directory"}, {}, {}, true);
}

// Each outcome of the compiler step: what the result, the error texts and the
// register file say.
void tst_Generator::registerBuild()
{
    QFETCH(QByteArray, script);
    QFETCH(QStringList, design);
    QFETCH(QStringList, csrLines);
    QFETCH(bool, built);
    QFETCH(QStringList, errors);
    QFETCH(QString, csr);
    QFETCH(bool, logged);

    prepare("RK9C-370Q");
    const QString tool
        = QCoreApplication::applicationDirPath() + '/' + QLatin1String(APP_SERDES_TOML_TO_CSR_370K);
    if (!script.isEmpty())
        placeDouble(APP_SERDES_TOML_TO_CSR_370K, script);

    const QString csrPath = m_work->filePath("out.csr");
    for (QString &error : errors) {
        error.replace("<csr>", QDir::toNativeSeparators(csrPath));
        error.replace("<tool>", QDir::toNativeSeparators(tool));
        if (logged)
            QTest::ignoreMessage(QtCriticalMsg, qPrintable(error));
    }
    generator builder;
    QCOMPARE(builder.generate(design, csrPath, csrLines), built);
    QCOMPARE(builder.getErrStringList(), errors);

    QVERIFY(QFile::exists("serdes_tmp.toml"));
    QVERIFY(!QFile::exists("started"));
    if (csr.isNull()) {
        QVERIFY(!QFileInfo(csrPath).isFile());
        return;
    }
    QFile file(csrPath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), csr);
}

QTEST_GUILESS_MAIN(tst_Generator)
#include "tst_translategenerator.moc"
