// SPDX-License-Identifier: MIT
#pragma once

// Drives a protocol's dialog as a user would, headless: the dialog's widgets
// are set by object name from steps such as "comboPllQ0=QPLL1", read back by
// keys such as "comboPllQ0", "listLanes", "comboPllQ0#count" or
// "groupQ1?visible", and its message boxes are answered and recorded.

#include "modalanswers.h"
#include "protocolharness.h"

#include <ipcore/ipcorefile.h>
#include <ipcore/tvmodgenproxy.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace driver {

inline void apply(QWidget *dialog, const QStringList &steps)
{
    for (const QString &step : steps) {
        const QString name = step.section(QLatin1Char('='), 0, 0);
        const QString value = step.section(QLatin1Char('='), 1);
        QObject *w = dialog->findChild<QObject *>(name);
        QVERIFY2(w, qPrintable(name));
        if (auto *combo = qobject_cast<QComboBox *>(w)) {
            const int index = combo->findText(value);
            if (index >= 0)
                combo->setCurrentIndex(index);
            else
                QVERIFY2(combo->isEditable(), qPrintable(step));
            if (combo->isEditable())
                combo->setEditText(value);
        } else if (auto *check = qobject_cast<QCheckBox *>(w)) {
            check->setChecked(value == QLatin1String("true"));
        } else if (auto *list = qobject_cast<QListWidget *>(w)) {
            const QStringList wanted = value.split(QLatin1Char(','), Qt::SkipEmptyParts);
            for (int i = 0; i < list->count(); ++i)
                list->item(i)->setCheckState(
                    wanted.contains(list->item(i)->text()) ? Qt::Checked : Qt::Unchecked);
        } else if (auto *button = qobject_cast<QAbstractButton *>(w)) {
            button->click();
        } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
            edit->setText(value);
        } else {
            QFAIL(qPrintable(step));
        }
    }
}

inline QString read(QWidget *dialog, const QString &key)
{
    const QString name = key.section(QRegularExpression(QStringLiteral("[#?]")), 0, 0);
    QWidget *w = dialog->findChild<QWidget *>(name);
    if (!w)
        return QStringLiteral("<no %1>").arg(name);
    if (key.endsWith(QLatin1String("?visible")))
        return w->isVisibleTo(dialog) ? QStringLiteral("true") : QStringLiteral("false");
    const bool count = key.endsWith(QLatin1String("#count"));
    if (auto *combo = qobject_cast<QComboBox *>(w))
        return count ? QString::number(combo->count()) : combo->currentText();
    if (auto *list = qobject_cast<QListWidget *>(w)) {
        QStringList checked;
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->checkState() == Qt::Checked)
                checked << list->item(i)->text();
        }
        return count ? QString::number(list->count()) : checked.join(QLatin1Char(','));
    }
    if (auto *button = qobject_cast<QPushButton *>(w))
        return button->text();
    if (auto *label = qobject_cast<QLabel *>(w))
        return label->text();
    if (auto *check = qobject_cast<QCheckBox *>(w))
        return check->isChecked() ? QStringLiteral("true") : QStringLiteral("false");
    return QStringLiteral("<unreadable %1>").arg(name);
}

// What one pass of a protocol's dialog gave: the map, what the widgets showed
// before the steps ran, and the message boxes it raised.
struct Run
{
    QMap<QString, QVariant> args;
    QMap<QString, QString> shown;
    QList<SeenBox> boxes;
};

// Opens the dialog of `create`, reads `keys`, applies `steps` and presses
// OK. A dialog that refuses to close is cancelled, and the map is empty.
inline Run create(IPSERDESIP::BaseProtocol *protocol, const DEV::DeviceArg &device,
                  const QString &dir, const QStringList &keys, const QStringList &steps)
{
    Run run;
    MessageBoxAnswers answers;
    whenModal<QDialog>([&run, keys, steps](QDialog *dialog) {
        for (const QString &key : keys)
            run.shown.insert(key, read(dialog, key));
        apply(dialog, steps);
        auto *buttons = dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
        buttons->button(QDialogButtonBox::Ok)->click();
        if (dialog->isVisible())
            dialog->reject();
    });
    run.args = protocol->create(dir, device);
    run.boxes = answers.boxes;
    return run;
}

// Opens the dialog of `edit` on a stored map, reads `keys` and presses OK.
inline Run edit(IPSERDESIP::BaseProtocol *protocol, const QMap<QString, QVariant> &args,
                const QStringList &keys)
{
    Run run;
    MessageBoxAnswers answers;
    whenModal<QDialog>([&run, keys](QDialog *dialog) {
        for (const QString &key : keys)
            run.shown.insert(key, read(dialog, key));
        dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))
            ->button(QDialogButtonBox::Ok)
            ->click();
        if (dialog->isVisible())
            dialog->reject();
    });
    run.args = protocol->edit(args);
    run.boxes = answers.boxes;
    return run;
}

// The values a combo box offers: its items' data, or their texts.
inline QStringList offered(QComboBox *combo)
{
    QStringList values;
    for (int i = 0; i < combo->count(); ++i) {
        const QVariant data = combo->itemData(i);
        values << (data.isValid() ? data.toString() : combo->itemText(i));
    }
    return values;
}

// The map as the page stores it in a configuration file and reads it back.
inline QMap<QString, QVariant> throughIni(const QMap<QString, QVariant> &args, const QString &file,
                                          const QString &group)
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
    QMap<QString, QVariant> back;
    for (const QString &key : in.childKeys())
        back.insert(key, in.value(key));
    return back;
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

// Lets the host's module generator wrap the instance's module by its lines,
// and compiles the wrapper, the module and the device's primitives. Empty
// when all is well, else what went wrong.
inline QString compileWithWrapper(const QString &dir, const QString &module,
                                  const QStringList &modArgs, const QString &moduleFile)
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
    compile.start(iverilog,
                  {QStringLiteral("-g2005"), QStringLiteral("-Wall"), QStringLiteral("-o"),
                   dir + QStringLiteral("/top.vvp"), dir + QStringLiteral("/serdes_top.v"),
                   moduleFile, QStringLiteral(SERDES_STAGE_DIR "/data/devices/primitives_bb.v")});
    if (!compile.waitForFinished(60000))
        return QStringLiteral("iverilog did not finish");
    const QString output = QString::fromLocal8Bit(compile.readAll());
    if (compile.exitCode() != 0 || !output.isEmpty())
        return output.isEmpty() ? QStringLiteral("iverilog failed") : output;
    return QString();
}

} // namespace driver
