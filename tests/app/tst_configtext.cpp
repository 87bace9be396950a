// SPDX-License-Identifier: MIT
//
// Configurations written and changed as text: the generator's commands
// --new, --add, --remove, --check and --protocols, run as a user runs them.

#include "generatorrun.h"
#include "testfiles.h"

#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

namespace {

const QString STAGE = QStringLiteral(SERDES_STAGE_DIR);

Run generator(const QStringList &arguments)
{
    Run run = runGenerator(STAGE, arguments, quietLeakChecker());
    run.err = generatorWords(run.err.toUtf8());
    return run;
}

// The lines of one group of a configuration file as the file holds them,
// without the blank line that ends it.
QStringList groupLines(const QByteArray &file, const QString &group)
{
    QStringList lines;
    bool inside = false;
    for (const QString &line : QString::fromUtf8(file).split('\n')) {
        if (line.startsWith('['))
            inside = line == '[' + group + ']';
        else if (inside && !line.isEmpty())
            lines << line;
    }
    return lines;
}

// The block of the README that follows the comment `marker`, without its
// fences; empty when the README has no such comment.
QString readmeBlock(const QString &marker)
{
    const QString text = QString::fromUtf8(readAll(QStringLiteral(SERDES_README)));
    const int at = text.indexOf("<!-- " + marker + " -->");
    if (at < 0)
        return QString();
    const int start = text.indexOf('\n', text.indexOf("```", at)) + 1;
    return text.mid(start, text.indexOf("```", start) - start);
}

// Runs `script` with bash in `dir`, the staged generator first on the path.
Run shell(const QString &script, const QString &dir)
{
    QProcessEnvironment env = quietLeakChecker();
    env.insert("PATH", STAGE + "/bin:" + env.value("PATH"));
    QProcess process;
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(dir);
    process.start("bash", {"-e", "-c", script});
    Run run;
    if (process.waitForFinished(300000) && process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = generatorWords(process.readAllStandardError());
    return run;
}

} // namespace

class tst_ConfigText : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void sameAsTheDialogs_data();
    void sameAsTheDialogs();
    void commands();
    void checkSaysEveryProblem();
    void readmeExample();
};

void tst_ConfigText::sameAsTheDialogs_data()
{
    QTest::addColumn<QString>("example");
    QTest::addColumn<QString>("device");
    // The instance groups in the order the dialogs made them.
    QTest::addColumn<QStringList>("groups");

    QTest::newRow("880k") << "880k"
                          << "RK9C880D-FG1517-2"
                          << QStringList{"Custom%20PHY%3Acustomphy", "Custom%20PHY%3Acustomphy_1st",
                                         "BCDR%3Abcdr"};
    QTest::newRow("370k") << "370k"
                          << "RK9C370D-FG676-2"
                          << QStringList{"10GBASE-R%3Aeth10g", "10GBASE-R%3Aeth10g_1st",
                                         "Custom%20PHY%3Acustomphy"};
    QTest::newRow("90k") << "90k"
                         << "RK9C90F-BG324-1" << QStringList{"10GBASE-R%3Aeth10g", "BCDR%3Abcdr"};
}

// Every bundled example, made through the dialogs, is made again from an
// empty file by the commands alone, one --add per instance group with its
// lines as the file holds them, and comes out the same byte for byte.
void tst_ConfigText::sameAsTheDialogs()
{
    QFETCH(QString, example);
    QFETCH(QString, device);
    QFETCH(QStringList, groups);

    const QByteArray made = readAll(QStringLiteral(SERDES_EXAMPLES "/") + example + "/serdes.ipc");
    QVERIFY(!made.isEmpty());
    QTemporaryDir tmp;
    const QString file = tmp.filePath("serdes.ipc");
    Run run = generator({"--new", file, "--device", device, "--module", "SerDes_Top"});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    for (const QString &group : groups) {
        const QString decoded = QUrl::fromPercentEncoding(group.toUtf8());
        QStringList arguments{
            "--open", file, "--add", decoded.section(':', 0, 0), "--name", decoded.section(':', 1)};
        for (const QString &line : groupLines(made, group))
            arguments << "--set" << line;
        run = generator(arguments);
        QVERIFY2(run.exitCode == 0, qPrintable(group + ": " + run.err));
    }
    QCOMPARE(QString::fromUtf8(readAll(file)), QString::fromUtf8(made));
}

void tst_ConfigText::commands()
{
    QTemporaryDir tmp;
    const QString file = tmp.filePath("link.ipc");
    Run run = generator({"--new", file, "--device", "RK9C370D-FG676-2", "--language", "vhdl"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out, file + '\n');
    QCOMPARE(groupLines(readAll(file), "Config"),
             QStringList(
                 {"LANG=1", "Synthesis_tool=TarvexSynthesis", "file=link", "module=SerDes_Top"}));

    const QStringList customPhy{"--add", "Custom PHY",
                                "--set", "LANG=1",
                                "--set", "target_device=RK9C370D-FG676-2",
                                "--set", "Q0_pll=CPLL",
                                "--set", "Q0_refFreq=156.25",
                                "--set", "Q0_reference=Q0 REFCLK1",
                                "--set", "alignPattern=k28.5",
                                "--set", "encoding=8b10b",
                                "--set", "file=phy",
                                "--set", "lanes=Q0 Lane3",
                                "--set", "loopback=off",
                                "--set", "module=phy",
                                "--set", "name=phy",
                                "--set", "referenceMux=",
                                "--set", "rxPolarityInvert=false",
                                "--set", "rxRate=2.5",
                                "--set", "txPolarityInvert=false",
                                "--set", "txRate=2.5",
                                "--set", "width=20",
                                "--set", "wordAlign=true"};
    run = generator(QStringList{"--open", file} + customPhy);
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY(groupLines(readAll(file), "Custom%20PHY%3Aphy").contains("LANG=1"));
    QVERIFY(groupLines(readAll(file), "All_access")
                .contains("Q0_LANE3_TX=Q0_LANE3_TX -> Q0_CPLL3 -> Q0_MUX0 -> Q0_REFCLK1"));

    // Refusals leave the file byte for byte as it was, and say why.
    const QByteArray before = readAll(file);
    struct Refusal
    {
        QStringList arguments;
        int exitCode;
        QString words;
    };
    const Refusal refusals[] = {
        {{"--new", file, "--device", "RK9C370D-FG676-2"}, 2, "exists already"},
        {QStringList{"--open", file} + QStringList(customPhy).replaceInStrings("=phy", "=phy2"), 1,
         "No instance of Custom PHY was added:\nQ0 Lane3 is already held by phy.\n"},
        {QStringList{"--open", file} + QStringList(customPhy).replaceInStrings("=20", "=12"), 1,
         "No instance of Custom PHY was added:\nwidth \"12\": not one of 8, 10, 16, 20\n"},
        {{"--open", file, "--add", "PCIe"}, 1, "No protocol of that name is installed"},
        {{"--open", file, "--add", "10GBASE-R", "--set", "lanes"},
         1,
         "\"lanes\" is no setting KEY=VALUE on one line."},
        {{"--open", file, "--remove", "phy2"}, 1, "No instance phy2 to remove; there are phy."},
        {{"--open", file, "--set", "name=x"}, 2, "--set goes with --add only."},
    };
    for (const Refusal &refusal : refusals) {
        run = generator(refusal.arguments);
        QVERIFY2(run.exitCode == refusal.exitCode && run.err.contains(refusal.words),
                 qPrintable(refusal.arguments.join(' ') + ": " + run.err));
        QCOMPARE(readAll(file), before);
    }

    run = generator({"--open", file, "--remove", "phy"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(groupLines(readAll(file), "Custom%20PHY%3Aphy"), QStringList());
    QCOMPARE(groupLines(readAll(file), "All_access"), QStringList());

    // 10GBASE-R has no place on the two-quad tier.
    run = generator({"--protocols", "--device", "RK9C880D-FG1517-2"});
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = run.out.split('\n');
    QCOMPARE(lines.first(), QString("Protocols on RK9C880D-FG1517-2 (RK9C880D, RK9C-880D):"));
    QVERIFY2(lines.contains("  10GBASE-R   1.0  not available on the RK9C-880D family"),
             qPrintable(run.out));
    QVERIFY2(lines.contains("  Custom PHY  1.0  available"), qPrintable(run.out));
    // The parameters with the values of the device's tier.
    const QRegularExpression encoding("^  encoding +choice +off\\|8b10b +8b10b +The line coding.*");
    QVERIFY2(lines.indexOf(encoding) > 0, qPrintable(run.out));
}

// Three instances that cannot be placed, each for a reason of its own, and a
// name that cannot be written: all of them in one run, and nothing written.
void tst_ConfigText::checkSaysEveryProblem()
{
    QTemporaryDir tmp;
    const QString file = tmp.filePath("serdes.ipc");
    QByteArray text = readAll(QStringLiteral(SERDES_EXAMPLES "/370k/serdes.ipc"));
    text.replace("[10GBASE-R%3Aeth10g_1st]", "[PCIe%3Aeth10g_1st]")
        .replace("module=eth10g\n", "module=eth 10g\n")
        .replace("lanes=Q0 Lane3\n", "lanes=Q0 Lane0\n");
    QVERIFY(writeFile(file, text));
    const Run run = generator({"--open", file, "--check"});
    QCOMPARE(run.exitCode, 1);
    const QStringList lines = run.err.split('\n');
    for (const char *problem :
         {"PCIe:eth10g_1st: The protocol PCIe is not installed.",
          "Custom PHY:customphy: Q0 Lane0 is already held by eth10g.",
          "Instance eth10g: module \"eth 10g\" is no Verilog or VHDL identifier"})
        QVERIFY2(lines.contains(problem), qPrintable(run.err));
    QCOMPARE(run.out, QString());
    QCOMPARE(readAll(file), text);
}

// The README's worked example runs as written, and its failing check prints
// what the README shows.
void tst_ConfigText::readmeExample()
{
    QTemporaryDir tmp;
    const QString script = readmeBlock("worked example");
    QVERIFY(!script.isEmpty());
    Run run = shell(script, tmp.path());
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY(QFile::exists(tmp.filePath("link.v")));

    QStringList shown = readmeBlock("failing check").split('\n');
    const QString command = shown.takeFirst().mid(int(strlen("$ ")));
    QByteArray text = readAll(tmp.filePath("link.ipc"));
    text.replace("lanes=Q0 Lane2\n", "lanes=Q0 Lane1\n").replace("module=eth1\n", "module=1eth\n");
    QVERIFY(writeFile(tmp.filePath("link.ipc"), text));
    run = shell(command, tmp.path());
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.err, shown.join('\n'));
}

QTEST_MAIN(tst_ConfigText)
#include "tst_configtext.moc"
