// SPDX-License-Identifier: MIT
//
// Regenerating a saved configuration without a person gives the same files
// as opening it in the SerDes page and pressing OK. The program runs from the
// staged tree's bin/, where the page finds the sample protocols, the device
// database and the register compilers, as the generator does.

#include "page/serdesipdlg.h"
#include "plugin/serdesipconstants.h"

#include <ipcore/ipinfospec.h>

#include "testfiles.h"

#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Every file below `dir` with its text, the directory's own path replaced so
// that two runs in two places compare. The synthesis tool's log and script
// name their directory in ways of their own and are left out.
QMap<QString, QByteArray> outputs(const QString &dir)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(dir, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (path.endsWith(".log") || path.endsWith(".ys"))
            continue;
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            files.insert(path.mid(dir.size()), file.readAll().replace(dir.toUtf8(), "<dir>"));
    }
    return files;
}

} // namespace

class tst_Regeneration : public QObject
{
    Q_OBJECT

private slots:
    void sameAsDialog_data();
    void sameAsDialog();
};

void tst_Regeneration::sameAsDialog_data()
{
    QTest::addColumn<QString>("example");
    QTest::newRow("880k") << "880k";
    QTest::newRow("370k, with the arbiter") << "370k";
    QTest::newRow("90k") << "90k";
}

void tst_Regeneration::sameAsDialog()
{
    QFETCH(QString, example);
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString source = QStringLiteral(SERDES_EXAMPLES "/") + example;
    const QString inDialog = tmp.filePath("dialog");
    const QString inBatch = tmp.filePath("batch");
    QVERIFY(copyTree(source, inDialog));
    QVERIFY(copyTree(source, inBatch));

    {
        const QString core = QCoreApplication::applicationDirPath() + "/../ipcore/SERDES_IP";
        QMap<QString, QVariant> info = IPCore::processIPInfoSpec(core + "/serdesip.ipspec");
        info.insert(QLatin1String(IPCore::Info::KEY_DATADIRECTORY), QString(core + "/data"));
        IPSERDESIP::serdesipdlg page(info);
        QVERIFY(page.setOpening(inDialog, inDialog + "/serdes.ipc"));
        // The register compiler's parameter file is written in the working
        // directory, which the generator sets to the configuration's own
        // before it runs a core; the batch run below is started elsewhere.
        QDir::setCurrent(inDialog);
        page.accept();
        QCOMPARE(page.result(), int(QDialog::Accepted));
    }

    QProcess batch;
    batch.setWorkingDirectory(tmp.path());
    batch.start(QCoreApplication::applicationDirPath() + "/ipcoregen",
                {"--open", inBatch + "/serdes.ipc", "--generate"});
    QVERIFY(batch.waitForFinished(120000));
    // How it ended, too: a run killed from outside says nothing itself.
    QVERIFY2(
        batch.exitStatus() == QProcess::NormalExit && batch.exitCode() == 0,
        qPrintable(QStringLiteral("%1 with code %2: %3")
                       .arg(batch.exitStatus() == QProcess::NormalExit ? QStringLiteral("exited")
                                                                       : QStringLiteral("crashed"))
                       .arg(batch.exitCode())
                       .arg(QString::fromUtf8(batch.readAllStandardError()))));

    const QMap<QString, QByteArray> fromDialog = outputs(inDialog);
    const QMap<QString, QByteArray> fromBatch = outputs(inBatch);
    for (const char *made : {"/serdes.ipc", "/serdes.mod", "/serdes.v", "/serdes_tmp.v", "/serdes.csr"})
        QVERIFY2(fromDialog.contains(QLatin1String(made)), made);
    QCOMPARE(fromBatch.keys(), fromDialog.keys());
    for (auto it = fromDialog.cbegin(); it != fromDialog.cend(); ++it)
        QVERIFY2(fromBatch.value(it.key()) == it.value(), qPrintable(it.key()));
}

QTEST_MAIN(tst_Regeneration)
#include "tst_regeneration.moc"
