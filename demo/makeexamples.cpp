// SPDX-License-Identifier: MIT
//
// Makes the example configurations of examples/ as a user makes them: for
// each device tier a SerDes page on a device of that tier, the sample
// protocols' dialogs filled in and confirmed, and OK pressed, which writes
// the configuration file and generates everything. The older layouts "1.1"
// and "1.0" are then written from the instances of the one-quad example, the
// way those versions stored them: one file per instance beside a list.
//     makeexamples <examples dir> [<pictures dir>]
// With a pictures directory, each protocol dialog is saved there as a PNG
// just before its OK, and the page before the configuration's OK: the way to
// look at them all, best on a display with a real font. It runs from the
// staged tree's bin/, where the page finds the protocols, the device database
// and the register compilers.

#include "pagedriver.h"

#include "page/serdesipdlg.h"
#include "plugin/serdesipconstants.h"

#include <core/idecore.h>
#include <dev/devicedb.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <functional>

using IPSERDESIP::serdesipdlg;

namespace {

struct Instance
{
    const char *protocol;
    QStringList steps; // "objectName=value" on the protocol's dialog
};

struct Example
{
    const char *folder;
    const char *device;
    QList<Instance> instances;
};

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

QString g_pictures;

void savePicture(QWidget *widget, const QString &name)
{
    if (g_pictures.isEmpty())
        return;
    QDir().mkpath(g_pictures);
    const QString file = g_pictures + QLatin1Char('/') + name + QStringLiteral(".png");
    if (!widget->grab().save(file))
        err() << "cannot save " << file << '\n';
}

// Answers the next modal widget: a protocol's dialog with `steps` and OK, a
// message box (a refusal) by printing it and closing it.
void answerNext(const QStringList &steps, const QString &picture, bool *ok)
{
    auto *timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, steps, picture, ok] {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            err() << box->windowTitle() << ": " << box->text() << '\n';
            *ok = false;
            box->reject();
            return;
        }
        auto *dialog = qobject_cast<QDialog *>(modal);
        if (!dialog || !dialog->isVisible() || dialog->property("answered").toBool())
            return;
        dialog->setProperty("answered", true);
        QString failed;
        if (!applySteps(dialog, steps, &failed)) {
            err() << "cannot set " << failed << '\n';
            *ok = false;
            dialog->reject();
            return;
        }
        savePicture(dialog, picture);
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        if (dialog->isVisible()) {
            *ok = false;
            dialog->reject();
        }
        timer->stop();
        timer->deleteLater();
    });
    timer->start(20);
}

// The protocols' ids, by which the older layouts named them.
const QMap<QString, QString> PROTOCOL_IDS{{"Custom PHY", "SERDES_CUSTOM_PHY"},
                                          {"10GBASE-R", "SERDES_ETHERNET_10GBASE_R"},
                                          {"BCDR", "SERDES_BCDR_RX"}};

// Runs one example through the page; its instances' maps come back in `args`
// and their protocols' ids in `ids`.
bool make(const Example &example, const QString &outDir,
          QMap<QString, QMap<QString, QVariant>> *args, QMap<QString, QString> *ids)
{
    QTemporaryDir work;
    serdesipdlg page(coreInfo());
    const DEV::DeviceArg device
        = Core::IdeCore::deviceDataBase()->findByID(QLatin1String(example.device));
    page.setCreating(work.path(), device);
    for (const Instance &instance : example.instances) {
        bool ok = true;
        const QStringList before = page.instanceArgs().keys();
        answerNext(instance.steps,
                   QStringLiteral("%1_%2").arg(QLatin1String(example.folder)).arg(before.size()),
                   &ok);
        page.createIP(QLatin1String(instance.protocol));
        if (!ok || page.instanceArgs().size() != before.size() + 1) {
            err() << example.folder << ": " << instance.protocol << " was not placed\n";
            return false;
        }
        for (const QString &name : page.instanceArgs().keys()) {
            if (!before.contains(name))
                ids->insert(name, PROTOCOL_IDS.value(QLatin1String(instance.protocol)));
        }
    }
    QDir().mkpath(page.createPath());
    page.show();
    savePicture(&page, QStringLiteral("%1_page").arg(QLatin1String(example.folder)));
    page.accept();
    if (page.result() != QDialog::Accepted) {
        err() << example.folder << ": generation failed\n";
        return false;
    }
    *args = page.instanceArgs();
    const QString target = outDir + QLatin1Char('/') + QLatin1String(example.folder);
    QDir().mkpath(target);
    const QString file = target + QStringLiteral("/serdes.ipc");
    QFile::remove(file);
    if (!QFile::copy(page.createPath() + QStringLiteral("/serdes.ipc"), file))
        return false;
    // The directory the dialogs proposed was this run's temporary one; an
    // opened configuration puts the instances' files below its own folder.
    QSettings settings(file, QSettings::IniFormat);
    for (const QString &key : settings.allKeys()) {
        if (key.endsWith(QLatin1String("/dir")))
            settings.remove(key);
    }
    return true;
}

// The layouts before "1.2": a list of instances in "Config", each naming the
// directory, below the project's, and the base name of a file of its own that
// holds the protocol's id and its parameters. "1.0" wrote only the directory.
void writeOlder(const QString &version, const QString &dir,
                const QMap<QString, QMap<QString, QVariant>> &instances,
                const QMap<QString, QString> &ids)
{
    QDir(dir).removeRecursively();
    QDir().mkpath(dir);
    // Where the project stood when it was saved; the page finds the files
    // relative to it wherever the folder has gone since.
    const QString oldCreateIn = QStringLiteral("/home/designer/projects/link/serdes");
    QSettings main(dir + QStringLiteral("/serdes.ipc"), QSettings::IniFormat);
    main.setValue(QStringLiteral("version"), version);
    main.setValue(QStringLiteral("type"), QStringLiteral("SERDES_IP"));
    main.setValue(QStringLiteral("target_device"), QStringLiteral("RK9C370D-FG676-2"));
    main.beginGroup(QStringLiteral("Config"));
    main.setValue(QStringLiteral("Synthesis_tool"), QStringLiteral("TarvexSynthesis"));
    main.setValue(QStringLiteral("LANG"), 0);
    main.setValue(QStringLiteral("File_Name"), QStringLiteral("serdes"));
    main.setValue(QStringLiteral("Module_Name"), QStringLiteral("SerDes_Top"));
    main.setValue(QStringLiteral("CREATEIN"), oldCreateIn);
    main.setValue(QStringLiteral("KEYS"), QStringList(instances.keys()));
    for (auto it = instances.cbegin(); it != instances.cend(); ++it) {
        const QString file = it.value().value(QStringLiteral("file")).toString();
        const QString instanceDir = oldCreateIn + QLatin1Char('/') + file;
        main.setValue(it.key(), version == QLatin1String("1.0")
                                    ? QStringList{instanceDir}
                                    : QStringList{instanceDir, file});
        // "1.0" knew no file name: the instance's file is "0.ipc".
        const QString base = version == QLatin1String("1.0") ? QStringLiteral("0") : file;
        QDir().mkpath(dir + QLatin1Char('/') + file);
        QSettings own(dir + QLatin1Char('/') + file + QLatin1Char('/') + base
                          + QStringLiteral(".ipc"),
                      QSettings::IniFormat);
        own.setValue(QStringLiteral("type"), ids.value(it.key()));
        own.beginGroup(QStringLiteral("Config"));
        for (auto e = it.value().cbegin(); e != it.value().cend(); ++e) {
            if (e.key() != QLatin1String("dir"))
                own.setValue(e.key(), e.value());
        }
        own.endGroup();
    }
    main.endGroup();
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc != 2 && argc != 3) {
        err() << "usage: makeexamples <examples dir> [<pictures dir>]\n";
        return 2;
    }
    if (argc == 3)
        g_pictures = QDir(QString::fromLocal8Bit(argv[2])).absolutePath();
    const QString out = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();

    const QList<Example> examples{
        {"880k",
         "RK9C880D-FG1517-2",
         {{"Custom PHY",
           {"listLanes=Q0 Lane0,Q0 Lane1,Q0 Lane2,Q0 Lane3", "comboPllQ0=QPLL0",
            "comboReferenceQ0=Q0 REFCLK0", "comboRefFreqQ0=125", "comboTxRate=5",
            "comboRxRate=5"}},
          {"Custom PHY",
           {"listLanes=Q1 Lane0,Q1 Lane1", "comboPllQ1=CPLL", "comboReferenceQ1=Q1 REFCLK1",
            "comboRefFreqQ1=156.25", "comboTxRate=3.125", "comboRxRate=3.125"}},
          {"BCDR", {"listLanes=Q1 Lane2,Q1 Lane3"}}}},
        {"370k",
         "RK9C370D-FG676-2",
         {{"10GBASE-R", {"listLanes=Q0 Lane0,Q0 Lane1", "checkDrp=true"}},
          {"10GBASE-R", {"listLanes=Q0 Lane2"}},
          {"Custom PHY", {"listLanes=Q0 Lane3", "comboPllQ0=CPLL"}}}},
        {"90k",
         "RK9C90F-BG324-1",
         {{"10GBASE-R", {"listLanes=Q0 Lane0,Q0 Lane1,Q0 Lane2"}},
          {"BCDR", {"listLanes=Q0 Lane3"}}}},
    };

    QMap<QString, QMap<QString, QVariant>> oneQuad;
    QMap<QString, QString> ids;
    for (const Example &example : examples) {
        QMap<QString, QMap<QString, QVariant>> args;
        if (!make(example, out, &args, &ids))
            return 1;
        if (QLatin1String(example.folder) == QLatin1String("370k"))
            oneQuad = args;
        err() << "made " << out << '/' << example.folder << "/serdes.ipc\n";
    }
    writeOlder(QStringLiteral("1.1"), out + QStringLiteral("/370k-v1.1"), oneQuad, ids);
    writeOlder(QStringLiteral("1.0"), out + QStringLiteral("/370k-v1.0"), oneQuad, ids);
    err() << "made the older layouts\n";
    return 0;
}
