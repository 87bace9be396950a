// SPDX-License-Identifier: MIT
#pragma once

// Loads one sample protocol from the staged tree, with the host's device
// database, and prepares the model and the tables for a device the way the
// page does before a protocol's dialog runs. The driver below works the
// dialog headless, as a user would.

#include "modalanswers.h"

#include <core/idecore.h>
#include <dev/devicedb.h>
#include <ipcore/ipcorefile.h>
#include <ipcore/tvmodgenproxy.h>
#include <model/serdes.h>
#include <protocol/baseprotocol.h>
#include <protocol/message.h>
#include <protocol/protocolpackage.h>
#include <translate/parser.h>
#include <utils/modulefigureview.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPluginLoader>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <vector>

using Args = QMap<QString, QVariant>;
using IPSERDESIP::serdes;

// One device of each tier, from the host's device database.
inline const char *const DEVICE_880K = "RK9C880D-FG1517-2";
inline const char *const DEVICE_370K = "RK9C370D-FG676-2";
inline const char *const DEVICE_90K = "RK9C90F-BG324-1";

class ProtocolHarness
{
public:
    ProtocolHarness()
        : m_loader(QStringLiteral(SERDES_PROTOCOL_PLUGIN))
    {
        QLocale::setDefault(QLocale::c());
        if (!m_db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &m_error))
            return;
        Core::IdeCore::setDeviceDataBase(&m_db);
        auto *package = qobject_cast<IPSERDESIP::ProtocolPackage *>(m_loader.instance());
        if (!package) {
            m_error = m_loader.errorString();
            return;
        }
        package->path = QFileInfo(m_loader.fileName()).absolutePath();
        m_protocols = package->protocols();
    }
    // "name|id|category path|version", with "+help" when the help page can be
    // read and shows a picture.
    QString identity() const
    {
        const IPSERDESIP::BaseProtocol *p = protocol();
        if (!p)
            return QString();
        QFile help(p->summaryFile());
        const QByteArray page = help.open(QIODevice::ReadOnly) ? help.readAll() : QByteArray();
        const bool picture = page.contains("<svg") || page.contains("<img");
        return QStringList({p->name(), p->id(), p->category().join('/'), p->version()}).join('|')
               + (picture ? "+help" : "");
    }

    ~ProtocolHarness()
    {
        m_held.clear();
        qDeleteAll(m_protocols);
        IPSERDESIP::parser::destory();
        IPSERDESIP::serdes::destory();
        m_loader.unload();
        Core::IdeCore::setDeviceDataBase(nullptr);
    }

    // Empty when the database and the plug-in's one protocol are loaded.
    QString loadError() const
    {
        if (m_protocols.size() == 1)
            return QString();
        return m_error + QStringLiteral(" (%1 protocols)").arg(m_protocols.size());
    }
    IPSERDESIP::BaseProtocol *protocol() const { return m_protocols.value(0); }

    // A fresh model and tables for the device, as a new page makes them.
    DEV::DeviceArg prepare(const QString &deviceId)
    {
        const DEV::DeviceArg device = m_db.findByID(deviceId);
        m_held.clear();
        IPSERDESIP::serdes::destory();
        IPSERDESIP::serdes::instance()->initilize(device.family);
        IPSERDESIP::parser::destory();
        IPSERDESIP::parser::instance()->initialize(device.family);
        for (IPSERDESIP::BaseProtocol *p : qAsConst(m_protocols))
            p->device = device;
        return device;
    }

    // Places maps as the page places confirmed ones, and keeps their requests
    // until the next prepare. Empty when all were placed. A list of texts
    // instead of a map is the rows of a request of another protocol, each
    // "LANE PLL REF FREQ RATE", the rate both ways.
    QString hold(const QVariantList &maps)
    {
        QString err;
        for (const QVariant &map : maps) {
            if (map.type() == QVariant::StringList) {
                auto *other = new IPSERDESIP::Message;
                other->name = other->module = other->file = QStringLiteral("other");
                for (const QString &row : map.toStringList()) {
                    const QStringList f = row.split(QLatin1Char(' '));
                    QStringList *columns[]
                        = {&other->lanes, &other->plls,    &other->refs,   &other->refFreqs,
                           &other->rates, &other->rxRates, &other->txRates};
                    for (int i = 0; i < 7; ++i)
                        *columns[i] << f.value(qMin(i, 4));
                }
                m_held.emplace_back(other);
            } else {
                m_held.emplace_back(protocol()->createMessage(map.toMap()));
            }
            if (!serdes::instance()->addItem(m_held.back().get(), err))
                return QStringLiteral("not placed: ") + err;
        }
        return QString();
    }

    // A directory of the current test row's own, not made yet.
    QString freshDir(const QString &suffix = QString()) const
    {
        return m_dir.filePath(QString(QTest::currentTestFunction()) + QLatin1Char('_')
                              + QString(QTest::currentDataTag()).replace(QLatin1Char(' '), '_')
                              + suffix);
    }

private:
    DEV::DeviceDb m_db;
    QString m_error;
    QPluginLoader m_loader;
    QList<IPSERDESIP::BaseProtocol *> m_protocols;
    std::vector<std::unique_ptr<IPSERDESIP::Message>> m_held;
    QTemporaryDir m_dir;
};

namespace driver {

// A dialog's widgets are driven by a script of entries:
//   "name=value"   sets a widget: a combo box by text or data, a check box,
//                  a list's or a box of check boxes' ticked items ("a,b"),
//                  a line edit; "=click" presses a button;
//   "key==value"   reads a key and expects the value;
//   "key"          reads a key only, for the test to use.
// Keys are a widget's name, with "#count" (items offered), "#items" (their
// values), "?visible", "?enabled" or "?tip" (its tooltip), "untipped", or
// "OK?enabled". An entry may join keys, with their values, or steps by "|".

inline void apply(QWidget *dialog, const QString &step)
{
    const QString name = step.section(QLatin1Char('='), 0, 0);
    const QString value = step.section(QLatin1Char('='), 1);
    QWidget *w = dialog->findChild<QWidget *>(name);
    QVERIFY2(w, qPrintable(name));
    const QStringList wanted = value.split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (auto *combo = qobject_cast<QComboBox *>(w)) {
        int index = combo->findText(value);
        if (index < 0)
            index = combo->findData(value);
        if (index >= 0)
            combo->setCurrentIndex(index);
        else
            QVERIFY2(combo->isEditable(), qPrintable(step));
        if (combo->isEditable())
            combo->setEditText(value);
    } else if (auto *check = qobject_cast<QCheckBox *>(w)) {
        check->setChecked(value == QLatin1String("true"));
    } else if (auto *list = qobject_cast<QListWidget *>(w)) {
        for (int i = 0; i < list->count(); ++i)
            list->item(i)->setCheckState(wanted.contains(list->item(i)->text()) ? Qt::Checked
                                                                                : Qt::Unchecked);
    } else if (auto *button = qobject_cast<QAbstractButton *>(w)) {
        button->click();
    } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
        edit->setText(value);
    } else {
        QVERIFY2(!w->findChildren<QCheckBox *>().isEmpty(), qPrintable(step));
        for (QCheckBox *box : w->findChildren<QCheckBox *>())
            box->setChecked(wanted.contains(box->text()));
    }
}

inline QString read(QWidget *dialog, const QString &key)
{
    // "untipped": the fields a user can change that have no tooltip.
    if (key == QLatin1String("untipped")) {
        QStringList names;
        for (QWidget *w :
             dialog->findChildren<QWidget *>(QRegularExpression(QStringLiteral("^[a-z]")))) {
            if ((qobject_cast<QComboBox *>(w) || qobject_cast<QAbstractButton *>(w)
                 || qobject_cast<QListWidget *>(w) || qobject_cast<QLineEdit *>(w))
                && w->toolTip().isEmpty() && !qobject_cast<QDialogButtonBox *>(w->parent()))
                names << w->objectName();
        }
        return names.join(QLatin1Char(','));
    }
    const QString name = key.section(QRegularExpression(QStringLiteral("[#?]")), 0, 0);
    QWidget *w = name == QLatin1String("OK")
                     ? dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))
                           ->button(QDialogButtonBox::Ok)
                     : dialog->findChild<QWidget *>(name);
    if (!w)
        return QStringLiteral("<no %1>").arg(name);
    const auto yes = [](bool on) {
        return on ? QStringLiteral("true") : QStringLiteral("false");
    };
    if (key.endsWith(QLatin1String("?visible")))
        return yes(w->isVisibleTo(dialog));
    if (key.endsWith(QLatin1String("?enabled")))
        return yes(w->isEnabled());
    if (key.endsWith(QLatin1String("?tip")))
        return w->toolTip();
    const bool count = key.endsWith(QLatin1String("#count"));
    const bool items = key.endsWith(QLatin1String("#items"));
    QStringList all, ticked;
    if (auto *combo = qobject_cast<QComboBox *>(w)) {
        for (int i = 0; i < combo->count(); ++i) {
            const QVariant data = combo->itemData(i);
            all << (data.isValid() ? data.toString() : combo->itemText(i));
        }
        const QVariant data = combo->currentData();
        ticked << (data.isValid() ? data.toString() : combo->currentText());
    } else if (auto *list = qobject_cast<QListWidget *>(w)) {
        for (int i = 0; i < list->count(); ++i) {
            all << list->item(i)->text();
            if (list->item(i)->checkState() == Qt::Checked)
                ticked << list->item(i)->text();
        }
    } else if (auto *button = qobject_cast<QPushButton *>(w)) {
        return button->text();
    } else if (auto *label = qobject_cast<QLabel *>(w)) {
        return label->text();
    } else if (auto *check = qobject_cast<QCheckBox *>(w)) {
        return yes(check->isChecked());
    } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
        return edit->text();
    } else if (auto *figure = qobject_cast<Utils::ModuleFigureView *>(w)) {
        for (const Utils::PinFigure &pin : figure->pins())
            ticked << pin.name;
    } else if (!w->findChildren<QCheckBox *>().isEmpty()) {
        // Only the boxes a user can tick are offered.
        for (const QCheckBox *box : w->findChildren<QCheckBox *>()) {
            if (box->isEnabled())
                all << box->text();
            if (box->isEnabled() && box->isChecked())
                ticked << box->text();
        }
    } else {
        return QStringLiteral("<unreadable %1>").arg(name);
    }
    if (count)
        return QString::number(all.size());
    return (items ? all : ticked).join(QLatin1Char(','));
}

// What one pass of a protocol's dialog gave: the map, the values read and
// those the script wanted ("key=value", the same for a plain read), the
// message boxes it raised ("title: text"), and whether it stayed open after OK.
struct Run
{
    Args args;
    QStringList seen;
    QStringList wanted;
    QStringList boxes;
    bool stayed = false;

    QString value(int i) const { return seen.value(i).section(QLatin1Char('='), 1); }
};

inline void play(QDialog *dialog, const QStringList &script, Run &run)
{
    for (const QString &entry : script) {
        const int split = entry.indexOf(QLatin1String("=="));
        if (split >= 0 || !entry.contains(QLatin1Char('='))) {
            const QString key = split >= 0 ? entry.left(split) : entry;
            QStringList values;
            for (const QString &one : key.split(QLatin1Char('|')))
                values << read(dialog, one);
            const QString value = values.join(QLatin1Char('|'));
            run.seen << key + QLatin1Char('=') + value;
            run.wanted << key + QLatin1Char('=') + (split >= 0 ? entry.mid(split + 2) : value);
        } else {
            for (const QString &step : entry.split(QLatin1Char('|')))
                apply(dialog, step);
        }
    }
    dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))
        ->button(QDialogButtonBox::Ok)
        ->click();
    run.stayed = dialog->isVisible();
    if (run.stayed)
        dialog->reject();
}

// Opens the dialog with `open`, plays `script` and presses OK. A dialog that
// refuses to close is cancelled, and the map is empty.
inline Run drive(const QStringList &script, const std::function<Args()> &open)
{
    Run run;
    MessageBoxAnswers answers;
    whenModal<QDialog>([&run, script](QDialog *dialog) { play(dialog, script, run); });
    run.args = open();
    for (const SeenBox &box : answers.boxes)
        run.boxes << box.title + QStringLiteral(": ") + box.text;
    return run;
}

inline Run create(IPSERDESIP::BaseProtocol *protocol, const DEV::DeviceArg &device,
                  const QString &dir, const QStringList &script)
{
    return drive(script, [&] { return protocol->create(dir, device); });
}

inline Run edit(IPSERDESIP::BaseProtocol *protocol, const Args &args, const QStringList &script)
{
    return drive(script, [&] { return protocol->edit(args); });
}

// The columns of the rows of fieldProblem: on `device` beside the `others`
// (as ProtocolHarness::hold takes them), after the `setup` steps, `field` set
// to `bad` shows, under it and in its tooltip, a problem with every one of
// the `words` ("a|b"), and OK is off; set to `fix`, the problem goes, and
// OK, on again, closes the dialog.
inline void fieldProblemColumns()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<QVariantList>("others");
    QTest::addColumn<QStringList>("setup");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("bad");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("fix");
}

inline void fieldProblem(ProtocolHarness &harness)
{
    QFETCH(QString, device);
    QFETCH(QVariantList, others);
    QFETCH(QStringList, setup);
    QFETCH(QString, field);
    QFETCH(QString, bad);
    QFETCH(QString, words);
    QFETCH(QString, fix);

    const DEV::DeviceArg dev = harness.prepare(device);
    QCOMPARE(harness.hold(others), QString());
    const QString problem = field + QStringLiteral("Problem");
    const QString ok = QStringLiteral("OK?enabled");
    const Run run = create(harness.protocol(), dev, harness.freshDir(),
                           setup
                               + QStringList{field + QLatin1Char('=') + bad, problem,
                                             field + QStringLiteral("?tip"), ok,
                                             field + QLatin1Char('=') + fix, problem, ok});
    QCOMPARE(run.seen.mid(0, run.seen.size() - 5), run.wanted.mid(0, run.wanted.size() - 5));
    const QStringList seen = run.seen.mid(run.seen.size() - 5);
    for (const QString &word : words.split(QLatin1Char('|'))) {
        QVERIFY2(seen.value(0).contains(word), qPrintable(seen.value(0) + " lacks " + word));
        QVERIFY2(seen.value(1).contains(word), qPrintable(seen.value(1) + " lacks " + word));
    }
    QCOMPARE(seen.mid(2), (QStringList{ok + "=false", problem + "=", ok + "=true"}));
    QCOMPARE(run.boxes, QStringList());
    QVERIFY(!run.args.isEmpty());
}

// The map as the page stores it in a configuration file and reads it back.
inline Args throughIni(const Args &args, const QString &file, const QString &group)
{
    {
        QSettings out(file, QSettings::IniFormat);
        out.beginGroup(group);
        for (auto it = args.cbegin(); it != args.cend(); ++it)
            out.setValue(it.key(), it.value());
        out.endGroup();
    }
    QSettings in(file, QSettings::IniFormat);
    in.beginGroup(group);
    Args back;
    for (const QString &key : in.childKeys())
        back.insert(key, in.value(key));
    return back;
}

// `args` with `changes` made; a change to no value removes the key.
inline Args changed(Args args, const Args &changes)
{
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (it->isValid())
            args.insert(it.key(), *it);
        else
            args.remove(it.key());
    }
    return args;
}

// The rows of a request, one text per row, for comparisons.
inline QStringList rows(const IPSERDESIP::Message &msg)
{
    QStringList text;
    for (int i = 0; i < msg.lanes.size(); ++i) {
        text << QStringList{msg.lanes.value(i),   msg.plls.value(i),
                            msg.refs.value(i),    msg.refFreqs.value(i),
                            msg.rates.value(i),   msg.rxRates.value(i),
                            msg.txRates.value(i), msg.muxOptions.value(msg.lanes.value(i))}
                    .join(QLatin1Char(' '))
                    .trimmed();
    }
    return text;
}

// Everything the model holds: counts, selections, line and source states
// and the routes, to show that a refused or proved request left no trace.
inline QStringList modelState()
{
    serdes *model = serdes::instance();
    QStringList state;
    for (auto it = model->instances.cbegin(); it != model->instances.cend(); ++it) {
        IPSERDESIP::Instance *element = it.value();
        QString text = QStringLiteral("%1 %2").arg(it.key()).arg(element->count);
        auto *mux = dynamic_cast<IPSERDESIP::MUX *>(element);
        if (auto *pll = dynamic_cast<IPSERDESIP::PLL *>(element))
            mux = pll->Mux();
        if (mux)
            text += QStringLiteral(" mux %1 %2 %3").arg(mux->count).arg(mux->sel()).arg(mux->dir());
        if (auto *line = dynamic_cast<IPSERDESIP::LINE *>(element))
            text += QStringLiteral(" line %1 %2").arg(line->rate).arg(line->source);
        if (auto *ref = dynamic_cast<IPSERDESIP::REF_SOURCE *>(element))
            text += QStringLiteral(" ref %1").arg(ref->freq);
        state << text;
    }
    const QMap<QString, QStringList> routes = model->allAccess();
    for (auto it = routes.cbegin(); it != routes.cend(); ++it)
        state << it.key() + QStringLiteral(": ") + it.value().join(QStringLiteral(" -> "));
    return state;
}

// The lines of the module generator an instance's file is wrapped by, taken
// from the file's own port list.
inline QStringList declaredPorts(const QString &file, const QString &module)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Text))
        return {QStringLiteral("<cannot read %1>").arg(file)};
    const QRegularExpression port(
        QStringLiteral("^ *(input|output|inout) +(?:wire +)?(?:\\[(\\d+):0\\] *)?(\\w+),?$"),
        QRegularExpression::MultilineOption);
    QStringList lines;
    for (auto it = port.globalMatch(QString::fromUtf8(in.readAll())); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const int width = m.captured(2).isEmpty() ? 1 : m.captured(2).toInt() + 1;
        lines << QStringLiteral("-%1_port %2 %3 %4")
                     .arg(module, m.captured(1), QString::number(width), m.captured(3));
    }
    return lines;
}

// Lets the host's module generator wrap the instance's module by its lines,
// and compiles the wrapper, `files` and the device's primitives, with every
// module in `files` elaborated. Empty when all is well, else what went wrong.
inline QString compileWithWrapper(const QString &dir, const QString &module,
                                  const QStringList &modArgs, const QStringList &files)
{
    const QString iverilog = QStandardPaths::findExecutable(QStringLiteral("iverilog"));
    if (iverilog.isEmpty())
        return QStringLiteral("no iverilog");
    const QString command = dir + QStringLiteral("/serdes.mod");
    const QStringList lines = QStringList{QStringLiteral("-type SERDES"),
                                          QStringLiteral("-path %1/").arg(dir),
                                          QStringLiteral("-file_type vlg"),
                                          QStringLiteral("-file_name serdes_top"),
                                          QStringLiteral("-mod_name serdes_top"),
                                          QStringLiteral("-protocol_module_name0 %1").arg(module)}
                              + modArgs;
    if (!IPCore::generateFile(command, lines, nullptr, QString()))
        return QStringLiteral("cannot write %1").arg(command);
    IPCore::TvModGenProxy proxy;
    if (proxy.startModGen(command, IPCore::Verilog, false) != 0)
        return proxy.errorString();
    QProcess compile;
    compile.setProcessChannelMode(QProcess::MergedChannels);
    compile.start(
        iverilog,
        QStringList{QStringLiteral("-g2005"), QStringLiteral("-Wall"), QStringLiteral("-o"),
                    dir + QStringLiteral("/top.vvp"), dir + QStringLiteral("/serdes_top.v")}
            + files
            + QStringList{QStringLiteral(SERDES_STAGE_DIR "/data/devices/primitives_bb.v")});
    if (!compile.waitForFinished(60000))
        return QStringLiteral("iverilog did not finish");
    const QString output = QString::fromLocal8Bit(compile.readAll());
    if (compile.exitCode() != 0 || !output.isEmpty())
        return output.isEmpty() ? QStringLiteral("iverilog failed") : output;
    return QString();
}

} // namespace driver
