// SPDX-License-Identifier: MIT
#include "batchrun.h"

#include "corecatalogue.h"

#include <core/projectmanager.h>
#include <ipcore/baseipcore.h>
#include <te/flowmanager.h>
#include <te/taskengine.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTextStream>
#include <QTimer>

namespace {

void print(const QString &text)
{
    QTextStream(stderr) << text << '\n';
}

// What a box with one of these icons says is that something went wrong; a
// note, a question or a box of its own picture is no failure by itself.
bool isFailure(const QMessageBox *box)
{
    return box->icon() == QMessageBox::Warning || box->icon() == QMessageBox::Critical;
}

// As the user would read it: the title, the text, then any details.
void printBox(const QMessageBox *box)
{
    QString text = box->windowTitle() + QStringLiteral(": ") + box->text();
    if (!box->informativeText().isEmpty())
        text += QLatin1Char('\n') + box->informativeText();
    if (!box->detailedText().isEmpty())
        text += QLatin1Char('\n') + box->detailedText();
    print(text);
}

void answer(QMessageBox *box)
{
    QAbstractButton *button = box->defaultButton();
    if (!button)
        button = box->escapeButton();
    if (!button)
        button = box->buttons().value(0);
    if (button)
        button->click();
    else
        box->reject();
}

} // namespace

BatchRun::BatchRun(const CoreCatalogue *catalogue) : m_catalogue(catalogue) {}

int BatchRun::run(const QString &file)
{
    QString error;
    IPCore::BaseIPCore *core = m_catalogue->coreForConfiguration(file, &error);
    if (!core) {
        print(error);
        return 2;
    }
    return runCore(core, file);
}

int BatchRun::runNew(const QString &file, const DEV::DeviceArg &device, const QString &module,
                     const QString &language)
{
    const QFileInfo info(file);
    const QString name = QDir::toNativeSeparators(file);
    if (info.exists()) {
        print(tr("\"%1\" exists already: a new configuration is never written over a file.")
                  .arg(name));
        return 2;
    }
    if (info.suffix() != QLatin1String("ipc")) {
        print(tr("\"%1\" does not end in \".ipc\", as a configuration file does.").arg(name));
        return 2;
    }
    if (!info.absoluteDir().exists()) {
        print(tr("The directory of \"%1\" does not exist.").arg(name));
        return 2;
    }
    QList<IPCore::BaseIPCore *> cores;
    QStringList ids;
    for (const CoreCatalogue::Entry &entry : m_catalogue->entries()) {
        if (entry.core->isSupported(device)) {
            cores << entry.core;
            ids << entry.core->id();
        }
    }
    if (cores.size() != 1) {
        print(cores.isEmpty()
                  ? tr("No installed core can be used on %1.").arg(device.id)
                  : tr("Several installed cores can be used on %1 (%2); a new configuration is "
                       "made only where one can.")
                        .arg(device.id, ids.join(QStringLiteral(", "))));
        return 2;
    }
    m_newDevice = device;
    m_newModule = module;
    m_newLanguage = language;
    return runCore(cores.first(), info.absoluteFilePath());
}

int BatchRun::runCore(IPCore::BaseIPCore *core, const QString &file)
{
    m_file = QFileInfo(file).absoluteFilePath();
    // The core runs in the configuration's directory; the names given on the
    // command line keep meaning what they meant where the run was started.
    if (!reportFile.isEmpty())
        reportFile = QFileInfo(reportFile).absoluteFilePath();
    if (!schematicFile.isEmpty())
        schematicFile = QFileInfo(schematicFile).absoluteFilePath();

    // What the core hands on to the flow and the project is what it wrote.
    const QMetaObject::Connection results
        = connect(TE::TaskEngine::instance()->flowManager(), &TE::FlowManager::resultFileAdded,
                  this, [this](const QString &path) { noteWritten(path); });
    const QMetaObject::Connection project
        = connect(Core::ProjectManager::instance(), &Core::ProjectManager::filesAdded, this,
                  [this](const QStringList &files) {
                      for (const QString &path : files)
                          noteWritten(path);
                  });
    qApp->installEventFilter(this);
    if (m_newDevice.isValid())
        CoreCatalogue::createCore(core, QFileInfo(file).absolutePath(), m_newDevice);
    else
        CoreCatalogue::openConfiguration(core, file);
    qApp->removeEventFilter(this);
    disconnect(results);
    disconnect(project);

    if (!m_opened) {
        // The core refused the file before its dialog came up, and has said why.
        print(tr("\"%1\" was not opened.").arg(QDir::toNativeSeparators(file)));
        return 2;
    }
    // Even when it has said so in no box of its own, a core that left
    // instances behind has not regenerated the configuration.
    if (m_unrestored > 0)
        m_failed = true;
    QTextStream out(stdout);
    for (const QString &path : qAsConst(m_written))
        out << QDir::toNativeSeparators(path) << '\n';
    out.flush();
    print(summary());
    return m_failed ? 1 : 0;
}

void BatchRun::noteWritten(const QString &path)
{
    if (!m_written.contains(path))
        m_written << path;
}

void BatchRun::fail()
{
    m_failed = true;
    ++m_errors;
}

QString BatchRun::summary() const
{
    const QString errors = m_errors == 1 ? tr("1 error") : tr("%1 errors").arg(m_errors);
    if (m_placed < 0)
        return errors;
    const int total = m_placed + m_unrestored;
    // After a change, the instances are those of the saved configuration.
    return (m_saved ? tr("%1 of %2 %3 placed; %4") : tr("%1 of %2 %3 restored; %4"))
        .arg(m_placed)
        .arg(total)
        .arg(total == 1 ? tr("instance") : tr("instances"), errors);
}

bool BatchRun::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show)
        return false;
    if (auto *box = qobject_cast<QMessageBox *>(watched)) {
        printBox(box);
        if (isFailure(box))
            fail();
        QTimer::singleShot(0, box, [box] { answer(box); });
        return false;
    }
    auto *dialog = qobject_cast<QDialog *>(watched);
    // A progress window asks nothing; it closes when its work is done.
    if (!dialog || !dialog->isModal() || qobject_cast<QProgressDialog *>(dialog))
        return false;
    if (!m_opened) {
        m_opened = true;
        m_dialog = dialog;
        QTimer::singleShot(0, this, &BatchRun::drive);
    } else {
        // Nothing in a regeneration asks the user a question of its own.
        print(tr("%1: closed unanswered in a run without a display.").arg(dialog->windowTitle()));
        QTimer::singleShot(0, dialog, &QDialog::reject);
    }
    return false;
}

bool BatchRun::callWriter(const char *slot, const QString &path)
{
    const QString name = QDir::toNativeSeparators(path);
    if (!m_dialog) {
        print(tr("\"%1\" was not written: the core's dialog has closed.").arg(name));
        return false;
    }
    bool written = false;
    if (!QMetaObject::invokeMethod(m_dialog, slot, Qt::DirectConnection,
                                   Q_RETURN_ARG(bool, written), Q_ARG(QString, path))) {
        print(tr("This core cannot write \"%1\".").arg(name));
        return false;
    }
    // A core that could not write has said why.
    if (written)
        noteWritten(path);
    return written;
}

bool BatchRun::call(const char *slot, const QString &what, QGenericArgument a, QGenericArgument b,
                    QGenericArgument c, QGenericArgument d)
{
    if (!m_dialog) {
        print(tr("%1: the core's dialog has closed.").arg(what));
        return false;
    }
    bool done = false;
    if (!QMetaObject::invokeMethod(m_dialog, slot, Qt::DirectConnection, Q_RETURN_ARG(bool, done),
                                   a, b, c, d)) {
        print(tr("%1: this core cannot do that.").arg(what));
        return false;
    }
    return done;
}

bool BatchRun::change()
{
    bool changed = false;
    if (m_newDevice.isValid()) {
        // The core's file name is the configuration's own base name, and its
        // outputs go beside it.
        const QFileInfo info(m_file);
        const QString directory = info.absolutePath();
        const QString base = info.completeBaseName();
        if (!call("setCoreNames", tr("The new configuration"), Q_ARG(QString, directory),
                  Q_ARG(QString, base), Q_ARG(QString, m_newModule), Q_ARG(QString, m_newLanguage)))
            return false;
        changed = true;
    }
    if (!removeName.isEmpty()) {
        if (!call("removeInstance", tr("Removing %1").arg(removeName), Q_ARG(QString, removeName)))
            return false;
        changed = true;
    }
    if (!addProtocol.isEmpty()) {
        if (!call("addInstance", tr("Adding %1").arg(addProtocol), Q_ARG(QString, addProtocol),
                  Q_ARG(QStringList, addSettings), Q_ARG(QString, addName)))
            return false;
        changed = true;
    }
    if (!changed)
        return true;
    if (!call("saveConfiguration", tr("Saving the configuration")))
        return false;
    m_saved = true;
    noteWritten(m_dialog->property("configurationFile").toString());
    return true;
}

void BatchRun::countInstances()
{
    // Read by name, so that any core's dialog may offer them; one without
    // both is summed up by its errors alone.
    if (!m_dialog)
        return;
    bool hasPlaced = false;
    bool hasUnrestored = false;
    const int placed = m_dialog->property("placedInstances").toInt(&hasPlaced);
    const int unrestored = m_dialog->property("unrestoredInstances").toInt(&hasUnrestored);
    if (hasPlaced && hasUnrestored && placed >= 0 && unrestored >= 0) {
        m_placed = placed;
        m_unrestored = unrestored;
    }
}

void BatchRun::drive()
{
    countInstances();
    // A change that is refused leaves the file as it was, and nothing is
    // made from a configuration that is not the one asked for.
    if (!change()) {
        fail();
        if (m_dialog)
            m_dialog->done(QDialog::Rejected);
        return;
    }
    if (m_saved)
        countInstances();
    if (check && !call("checkConfiguration", tr("The check")))
        fail();
    if (!reportFile.isEmpty() && !callWriter("writeReport", reportFile))
        fail();
    if (!schematicFile.isEmpty() && !callWriter("writeSchematic", schematicFile))
        fail();
    if (generate) {
        if (!m_dialog) {
            print(tr("Nothing was generated: the core's dialog has closed."));
            fail();
        } else {
            QMetaObject::invokeMethod(m_dialog, "accept", Qt::DirectConnection);
            // A core's OK keeps its dialog open when generation fails.
            if (m_dialog && m_dialog->isVisible()) {
                print(tr("Generation failed."));
                fail();
            }
        }
    }
    // Closed as it stands: a run without a person has no changes to ask about.
    if (m_dialog && m_dialog->isVisible())
        m_dialog->done(QDialog::Rejected);
}
