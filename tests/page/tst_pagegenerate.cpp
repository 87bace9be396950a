// SPDX-License-Identifier: MIT
//
// OK on the SerDes page: the configuration file, the protocols' outputs
// merged into the module generator's command file and the register file, the
// Upar arbiter when an instance asks for DRP, and what stays on disk when a
// step fails. Instances of the test protocol report what their "ini", "csr",
// "mod" and "fail" entries say; they are given those entries through a
// configuration file that the page opens. The register compilers are the
// repository's stand-ins, linked where the page looks for them by the build.

#include "modalanswers.h"

#include "model/serdes.h"
#include "page/serdesipdlg.h"
#include "plugin/serdesipconstants.h"

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <te/flowmanager.h>
#include <te/taskengine.h>

#include "hdlcompile.h"
#include "testfiles.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

using namespace IPSERDESIP;

namespace {

using Instances = QMap<QString, QMap<QString, QVariant>>;

QMap<QString, QVariant> coreInfo()
{
    return {{QLatin1String(IPCore::Info::KEY_ID), "SERDES_IP"},
            {QLatin1String(IPCore::Info::KEY_DATADIRECTORY),
             QStringLiteral(SERDES_STAGE_DIR "/ipcore/SERDES_IP/data")}};
}

QStringList linesOf(const QString &path)
{
    return QString::fromUtf8(readAll(path)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// An instance of the test protocol on `lane` of quad 0, reporting `entries`,
// which may name its file and module otherwise.
QMap<QString, QVariant> instance(const QString &name, int lane,
                                 const QMap<QString, QVariant> &entries = {})
{
    QMap<QString, QVariant> all{{"name", name},
                                {"module", name},
                                {"file", name},
                                {"rows", QStringList{QStringLiteral("Q0_LANE%1 Q0_QPLL0 Q0_REFCLK0 "
                                                                    "156.25 10.3125 0 0")
                                                         .arg(lane)}}};
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        all.insert(it.key(), it.value());
    return all;
}

} // namespace

class tst_PageGenerate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void mergedOutputs();
    void numberingFollowsNames();
    void failures_data();
    void failures();
    void uparArbiter_data();
    void uparArbiter();
    void vhdlCore_data();
    void vhdlCore();

private:
    // A page on a configuration of `instances` saved in the temporary
    // directory; every instance writes its own file there.
    serdesipdlg &openPage(const QString &deviceId, Instances instances, int language = 0,
                          const QMap<QString, QVariant> &config = {});
    QString path(const QString &file) const { return m_dir + '/' + file; }

    std::unique_ptr<QTemporaryDir> m_tmp;
    // The "Create In" directory and the working directory, as in the
    // generator: a folder of non-ASCII name with a blank, as users have them.
    QString m_dir;
    std::unique_ptr<MessageBoxAnswers> m_answers;
    std::unique_ptr<serdesipdlg> m_page;
};

void tst_PageGenerate::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    static DEV::DeviceDb db;
    QString error;
    QVERIFY2(db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error),
             qPrintable(error));
    Core::IdeCore::setDeviceDataBase(&db);
}

void tst_PageGenerate::init()
{
    m_tmp = std::make_unique<QTemporaryDir>();
    m_dir = m_tmp->filePath(QStringLiteral("Pr\u00fcfung \u00fc"));
    QVERIFY(QDir().mkpath(m_dir) && QDir::setCurrent(m_dir));
    m_answers = std::make_unique<MessageBoxAnswers>();
}

void tst_PageGenerate::cleanup()
{
    m_page.reset();
    m_answers.reset();
    QDir::setCurrent(QCoreApplication::applicationDirPath());
}

serdesipdlg &tst_PageGenerate::openPage(const QString &deviceId, Instances instances, int language,
                                        const QMap<QString, QVariant> &config)
{
    const QString file = path(QStringLiteral("serdes.ipc"));
    {
        QSettings settings(file, QSettings::IniFormat);
        settings.setValue("version", "1.2");
        settings.setValue("type", "SERDES_IP");
        settings.setValue("target_device", deviceId);
        settings.setValue("Config/file", "serdes");
        settings.setValue("Config/module", "SerDes_Top");
        settings.setValue("Config/LANG", language);
        for (auto it = config.cbegin(); it != config.cend(); ++it)
            settings.setValue("Config/" + it.key(), it.value());
        for (auto it = instances.begin(); it != instances.end(); ++it) {
            it.value().insert(QStringLiteral("dir"), m_dir);
            settings.beginGroup(QStringLiteral("TestProtocol:") + it.key());
            for (auto e = it.value().cbegin(); e != it.value().cend(); ++e)
                settings.setValue(e.key(), e.value());
            settings.endGroup();
        }
    }
    m_page = std::make_unique<serdesipdlg>(coreInfo());
    if (!m_page->setOpening(m_dir, file))
        qWarning("the configuration was not opened");
    return *m_page;
}

void tst_PageGenerate::mergedOutputs()
{
    serdesipdlg &page = openPage(
        "RK9C880D-FG1517-2",
        {{"test_1", instance("test_1", 0,
                             {{"ini", QStringList{"q0_enable true", "q0_ln0_enable true",
                                                  "q0_ln0_pll_sel qpll0"}},
                              {"csr", QStringList{"# register text"}},
                              {"mod", QStringList{"-test_1_port input 1 clk",
                                                  "-test_1_param WIDTH 16"}}})},
         {"test_2", instance("test_2", 1,
                             {{"ini", QStringList{"q0_enable true", "q0_ln1_pll_sel qpll0"}},
                              {"csr", QStringList{"# register text"}},
                              {"mod", QStringList{"-test_2_port output 8 data"}}})}});
    page.accept();
    QCOMPARE(page.result(), int(QDialog::Accepted));
    QCOMPARE(m_answers->boxes.size(), 0);

    // The command file: the header, then each instance's number and lines.
    const QStringList mod = linesOf(path("serdes.mod"));
    QCOMPARE(mod.mid(0, 5), QStringList({"-type SERDES", "-path " + m_dir + "/", "-file_type vlg",
                                         "-file_name serdes", "-mod_name SerDes_Top"}));
    const int first = mod.indexOf("-protocol_module_name0 test_1");
    QVERIFY(first > 5);
    QCOMPARE(mod.mid(first), QStringList({"-protocol_module_name0 test_1",
                                          "-test_1_port input 1 clk", "-test_1_param WIDTH 16",
                                          "-protocol_module_name1 test_2",
                                          "-test_2_port output 8 data"}));
    // The module generator made the top file from it.
    const QString top = linesOf(path("serdes.v")).join('\n');
    QVERIFY(top.contains("u_test_1"));
    QVERIFY(top.contains("test_2_data"));
    QVERIFY(QFile::exists(path("serdes_tmp.v")));

    // A parameter line sent by both instances is compiled once (twice would
    // be a key given twice, which the compiler refuses); register text is
    // appended as often as it comes.
    const QStringList csr = linesOf(path("serdes.csr"));
    QCOMPARE(csr.count("# register text"), 2);
    // The parameter file describes the wires of the enabled lane and the
    // network's PLLs and muxes in use, as the model's routes do.
    using Wires = QList<QPair<QString, QString>>;
    const Wires fromToml = page.getConnectList();
    QCOMPARE(fromToml, Wires({{"Q0_QPLL0", "Q0_LANE0_TX"},
                              {"Q0_REFCLK0", "Q0_MUX0"},
                              {"Q0_MUX0", "Q0_QPLL0"}}));
    const Wires fromModel = page.getConnectListFromToml();
    for (const auto &wire : fromToml)
        QVERIFY(fromModel.contains(wire));
    QVERIFY(!QFile::exists("serdes_tmp.toml"));
    const auto results = TE::TaskEngine::instance()->flowManager()->resultFiles();
    QVERIFY(results.contains(
        qMakePair(QFileInfo(path("serdes.csr")).canonicalFilePath(), QString("RES.serdes.csr"))));
    QVERIFY(QFile::exists(path("test_1.v")));
    QVERIFY(!QDir(path("upar_arbiter")).exists());
}

void tst_PageGenerate::numberingFollowsNames()
{
    serdesipdlg &page = openPage("RK9C370D-FG676-2", {});
    for (int i = 0; i < 3; ++i)
        page.createIP(QStringLiteral("TestProtocol"));
    // Made again, test_1 is the newest instance but still the first by name.
    page.deleteIP(QStringLiteral("test_1"));
    page.createIP(QStringLiteral("TestProtocol"));
    QCOMPARE(page.instanceArgs().keys(), QStringList({"test_1", "test_2", "test_3"}));
    page.accept();
    QCOMPARE(page.result(), int(QDialog::Accepted));
    const QStringList mod = linesOf(path("serdes.mod"));
    QCOMPARE(mod.mid(mod.size() - 3),
             QStringList({"-protocol_module_name0 test_1", "-protocol_module_name1 test_2",
                          "-protocol_module_name2 test_3"}));
}

void tst_PageGenerate::failures_data()
{
    QTest::addColumn<QVariantMap>("config");
    QTest::addColumn<Instances>("instances");
    // What is there after OK; "old <entry>" an earlier run left, and it stays
    // as it was (see makeEntries).
    QTest::addColumn<QStringList>("written");
    QTest::addColumn<QStringList>("notWritten");
    QTest::addColumn<QStringList>("boxes");

    QTest::newRow("no instance") << QVariantMap{} << Instances{} << QStringList{}
                                 << QStringList{"serdes.ipc", "serdes.mod"}
                                 << QStringList{"Warning: need to generate Protocol IP"};
    // The configuration is saved before any protocol is asked for its files.
    QTest::newRow("first protocol fails")
        << QVariantMap{}
        << Instances{{"test_1", instance("test_1", 0, {{"fail", true}})},
                     {"test_2", instance("test_2", 1)}}
        << QStringList{"serdes.ipc"} << QStringList{"serdes.mod", "test_2.v", "serdes.csr"}
        << QStringList{};
    QTest::newRow("later protocol fails")
        << QVariantMap{}
        << Instances{{"test_1", instance("test_1", 0)},
                     {"test_2", instance("test_2", 1, {{"fail", true}})}}
        << QStringList{"serdes.ipc", "test_1.v"} << QStringList{"serdes.mod", "serdes.csr"}
        << QStringList{};
    // The module generator reports the bad line itself.
    QTest::newRow("module generator refuses")
        << QVariantMap{}
        << Instances{{"test_1", instance("test_1", 0, {{"mod", QStringList{"-test_1_bogus 1"}}})}}
        << QStringList{"serdes.ipc", "serdes.mod", "test_1.v"}
        << QStringList{"serdes.v", "serdes.csr"}
        << QStringList{"Error: <dir>/serdes.mod line 13: unknown instance line: "
                       "\"-test_1_bogus 1\""};
    // Untranslatable parameters: the parameter file stays for reading, the
    // register file is not made.
    QTest::newRow("parameter not translated")
        << QVariantMap{}
        << Instances{{"test_1", instance("test_1", 0, {{"ini", QStringList{"q0_ln0_bogus 1"}}})}}
        << QStringList{"serdes.ipc", "serdes.mod", "serdes.v", "test_1.v"}
        << QStringList{"serdes.csr"} << QStringList{};
    // Names from the file that would write outside the core's folder, or are
    // no module name, stop OK before anything is written.
    const QString refused = "Error: Nothing was written, because these names cannot be used:\n";
    QTest::newRow("core file outside")
        << QVariantMap{{"file", "../x"}} << Instances{{"a", instance("a", 0)}} << QStringList{}
        << QStringList{"serdes.ipc", "../x.ipc", "a.v", "serdes.mod"}
        << QStringList{refused + "The core: file \"../x\" holds a path separator"};
    QTest::newRow("instance file absolute, module reserved")
        << QVariantMap{{"module", "entity"}}
        << Instances{{"a", instance("a", 0, {{"file", "/tmp/a"}})}} << QStringList{}
        << QStringList{"serdes.ipc", "a.v", "serdes.mod"}
        << QStringList{refused
                       + "The core: module \"entity\" is a reserved word of Verilog or "
                         "VHDL\nInstance a: file \"/tmp/a\" holds a path separator"};
    QTest::newRow("instance file is the parent")
        << QVariantMap{} << Instances{{"a", instance("a", 0, {{"file", ".."}})}} << QStringList{}
        << QStringList{"serdes.ipc", "serdes.mod"}
        << QStringList{refused + "Instance a: file \"..\" names a folder, not a file"};
    // A configuration file that cannot be written stops OK with the reason.
    QTest::newRow("configuration not writable")
        << QVariantMap{{"file", "locked"}} << Instances{{"a", instance("a", 0)}}
        << QStringList{"old locked.ipc/", "old locked.v", "old locked.csr"}
        << QStringList{"a.v", "locked.mod"}
        << QStringList{"Error: The configuration file <dir>/locked.ipc cannot be written: Is a "
                       "directory"};
    // The top and its template are replaced together or not at all; the
    // register file of the earlier run stays.
    QTest::newRow("top file not writable")
        << QVariantMap{} << Instances{{"a", instance("a", 0)}}
        << QStringList{"serdes.ipc",    "serdes.mod",       "a.v",
                       "old serdes.v/", "old serdes_tmp.v", "old serdes.csr"}
        << QStringList{}
        << QStringList{"Error: <dir>/serdes.mod: cannot write \"<dir>/serdes.v\": Filename refers "
                       "to a directory. Nothing was written."};
    // Without a display the register build's failures go to the message
    // handler: "logged: " marks them.
    const QString notMade = "logged: The register file <dir>/serdes.csr was not made.\n    ";
    QTest::newRow("parameter file not writable")
        << QVariantMap{} << Instances{{"a", instance("a", 0)}}
        << QStringList{"serdes.v", "serdes_tmp.v", "old serdes_tmp.toml/", "old serdes.csr"}
        << QStringList{} << QStringList{notMade + "serdes_tmp.toml:\nFailed to write file."};
    QTest::newRow("register file not writable")
        << QVariantMap{} << Instances{{"a", instance("a", 0)}}
        << QStringList{"serdes.v", "serdes_tmp.v", "old serdes.csr/"} << QStringList{}
        << QStringList{notMade + "Error: <dir>/serdes.csr: cannot write: Is a directory\n"};
}

void tst_PageGenerate::failures()
{
    QFETCH(QVariantMap, config);
    QFETCH(Instances, instances);
    QFETCH(QStringList, written);
    QFETCH(QStringList, notWritten);
    QFETCH(QStringList, boxes);

    serdesipdlg &page = openPage("RK9C880D-FG1517-2", instances, 0, config);
    QFile::remove(path("serdes.ipc"));
    const QRegularExpression old("^old ");
    const QStringList existing = written.filter(old).replaceInStrings(old, QString());
    QVERIFY(makeEntries(m_dir, existing));
    for (const QString &logged : boxes.filter(QRegularExpression("^logged: "))) {
        QTest::ignoreMessage(QtCriticalMsg, qPrintable(logged.mid(8).replace("<dir>", m_dir)));
        boxes.removeOne(logged);
    }
    page.accept();
    QVERIFY(page.result() != QDialog::Accepted);
    QCOMPARE(page.instanceArgs().keys(), instances.keys());
    for (const QString &file : written)
        QVERIFY2(QFile::exists(path(QString(file).remove(old))), qPrintable(file));
    for (const QString &file : notWritten)
        QVERIFY2(!QFile::exists(path(file)), qPrintable(file));
    QStringList seen;
    for (const SeenBox &box : m_answers->boxes)
        seen << QString(box.title + ": " + box.text).replace(m_dir, "<dir>");
    QCOMPARE(seen, boxes);
    QVERIFY(entriesKept(m_dir, existing));
}

void tst_PageGenerate::uparArbiter_data()
{
    QTest::addColumn<QString>("deviceId");
    QTest::addColumn<Instances>("instances");
    QTest::addColumn<QString>("parameter");

    // A DRP line is looked for among the lines of every instance so far, so
    // one that an earlier instance wrote for a later one counts as well.
    QTest::newRow("later instance, 880k")
        << "RK9C880D-FG1517-2"
        << Instances{{"a", instance("a", 0, {{"mod", QStringList{"-bEnableDRP true"}}})},
                     {"b", instance("b", 1)}}
        << "parameter DRP_NUM = 8;";
    QTest::newRow("own line, 370k")
        << "RK9C370Q-FG676-2"
        << Instances{{"a", instance("a", 0)},
                     {"b", instance("b", 1, {{"mod", QStringList{"-bEnableDRP true"}}})}}
        << "parameter DRP_NUM = 4;";
    QTest::newRow("false is no request")
        << "RK9C880D-FG1517-2"
        << Instances{{"a", instance("a", 0, {{"mod", QStringList{"-aEnableDRP false"}}})}}
        << QString();
}

void tst_PageGenerate::uparArbiter()
{
    QFETCH(QString, deviceId);
    QFETCH(Instances, instances);
    QFETCH(QString, parameter);

    serdesipdlg &page = openPage(deviceId, instances);
    page.setModuleName(QStringLiteral("Link_Top"));
    page.accept();

    const QString temp = path("upar_arbiter/temp/Upar_Arbiter");
    if (parameter.isEmpty()) {
        QVERIFY(!QDir(temp).exists());
        return;
    }
    QCOMPARE(linesOf(temp + "/define.vh"), QStringList{"`define MODULE_NAME Link_Top"});
    QCOMPARE(linesOf(temp + "/parameter.vh"), QStringList{parameter});
    QMap<QString, QVariant> args;
    QMap<QString, QVariant> info;
    QVERIFY(page.prepareForUparArbiter(args, info));
    QCOMPARE(args.value("module").toString(), QStringLiteral("\\~upar_arbiter_wrap.Link_Top"));
    QCOMPARE(args.value("file").toString(), QStringLiteral("upar_arbiter"));
    QCOMPARE(info.value("ipcore.label").toString(), QStringLiteral("SerDes Upar Arbiter"));
}

void tst_PageGenerate::vhdlCore_data()
{
    QTest::addColumn<QStringList>("mod");
    // Null when the core is generated.
    QTest::addColumn<QString>("refusal");

    QTest::newRow("without DRP") << QStringList{"-a_port input 4 txd", "-a_port output 1 ready",
                                                "-a_param LANES 2"}
                                 << QString();
    QTest::newRow("DRP refused") << QStringList{"-aEnableDRP true"}
                                 << "The synthesis of \\~upar_arbiter_wrap.SerDes_Top failed.\n"
                                    "    yosys writes no VHDL netlist; generate the core in Verilog.";
}

// A configuration in VHDL keeps its language through the page: its top file
// and template are VHDL that GHDL takes, the arbiter's synthesis is asked for
// VHDL and refuses, and the file is saved in VHDL again.
void tst_PageGenerate::vhdlCore()
{
    QFETCH(QStringList, mod);
    QFETCH(QString, refusal);

    serdesipdlg &page = openPage("RK9C880D-FG1517-2", {{"a", instance("a", 0, {{"mod", mod}})}}, 1);
    if (!refusal.isNull())
        QTest::ignoreMessage(QtCriticalMsg, qPrintable(refusal));
    page.accept();
    QCOMPARE(page.result() == QDialog::Accepted, refusal.isNull());
    QCOMPARE(QSettings(path("serdes.ipc"), QSettings::IniFormat).value("Config/LANG").toInt(), 1);
    QCOMPARE(QFile::exists(path("serdes.vhd")), refusal.isNull());
    QCOMPARE(QFile::exists(path("serdes_tmp.vhd")), refusal.isNull());
    QVERIFY(!QFile::exists(path("serdes.v")));
    if (!refusal.isNull())
        return;
    // The instance's module as the protocol would write it in VHDL.
    QVERIFY(writeFile(path("a.vhd"), "library ieee;\nuse ieee.std_logic_1164.all;\nentity a is "
                                     "generic (LANES : integer); port (txd : in std_logic_vector(3 "
                                     "downto 0); ready : out std_logic); end;\n"
                                     "architecture stub of a is begin ready <= '0'; end;\n"));
    QVERIFY(writeFile(path("user.vhd"), vhdlUser(readAll(path("serdes_tmp.vhd")),
                                                 "signal a_txd : std_logic_vector(3 downto 0);\n"
                                                 "signal a_ready : std_logic;\n")));
    const QString error = compileVhdl({"a.vhd", "serdes.vhd", "user.vhd"}, "user", m_dir);
    QVERIFY2(error.isEmpty(), qPrintable(error));
}

QTEST_MAIN(tst_PageGenerate)
#include "tst_pagegenerate.moc"
