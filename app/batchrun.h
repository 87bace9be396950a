// SPDX-License-Identifier: MIT
#pragma once

#include <dev/devicearg.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class CoreCatalogue;
class QDialog;

namespace IPCore {
class BaseIPCore;
}

// Regenerates a saved configuration without a person at the screen: opens it
// with the core that made it, or makes a new one, changes it when asked,
// and presses OK in the core's dialog. Every
// message box that comes up meanwhile is printed and closed with its default
// button, so nothing waits for an answer. A core's dialog may also offer the
// slots writeReport(QString) and writeSchematic(QString), which are called
// before OK when a report or a picture is asked for, and the int properties
// placedInstances and unrestoredInstances, which the closing summary counts.
// A configuration is changed as text through the slots setCoreNames,
// removeInstance, addInstance, saveConfiguration and checkConfiguration, in
// that order, before anything is written; a change that is refused ends the
// run with the file as it was.
//
// Diagnostics go to standard error, ending with that one summary line; the
// files the run wrote go to standard output, one path a line.
class BatchRun : public QObject
{
    Q_OBJECT

public:
    explicit BatchRun(const CoreCatalogue *catalogue);

    QString reportFile;
    QString schematicFile;
    bool generate = false;
    bool check = false;
    // An instance to take out, and one to add from settings "KEY=VALUE".
    QString removeName;
    QString addProtocol;
    QStringList addSettings;
    QString addName;

    // 0 when everything asked for was done, 1 when something failed or was
    // not done (an instance not restored, a warning or an error shown, a file
    // not written, a change refused), 2 when the file could not be opened at
    // all.
    int run(const QString &file);
    // As run(), on a new configuration `file` for `device`, written first
    // with no instance, its module name and language given or the core's.
    int runNew(const QString &file, const DEV::DeviceArg &device, const QString &module,
               const QString &language);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int runCore(IPCore::BaseIPCore *core, const QString &file);
    void countInstances();
    void drive();
    bool change();
    bool callWriter(const char *slot, const QString &path);
    // The answer of the core's dialog's slot, by name; false, having said so
    // about `what`, when there is no dialog or no such slot.
    bool call(const char *slot, const QString &what, QGenericArgument a = QGenericArgument(),
              QGenericArgument b = QGenericArgument(), QGenericArgument c = QGenericArgument(),
              QGenericArgument d = QGenericArgument());
    void noteWritten(const QString &path);
    void fail();
    QString summary() const;

    const CoreCatalogue *m_catalogue;
    QPointer<QDialog> m_dialog;
    // The configuration file, and for a new one its device and names.
    QString m_file;
    DEV::DeviceArg m_newDevice;
    QString m_newModule;
    QString m_newLanguage;
    bool m_opened = false;
    bool m_failed = false;
    // Whether the configuration was changed and saved.
    bool m_saved = false;
    int m_errors = 0;
    // -1 while the core's dialog has not said.
    int m_placed = -1;
    int m_unrestored = -1;
    QStringList m_written;
};
