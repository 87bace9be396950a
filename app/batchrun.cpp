// SPDX-License-Identifier: MIT
#include "batchrun.h"

#include "corecatalogue.h"

#include <core/editormanager.h>
#include <ipcore/baseipcore.h>
#include <te/flowmanager.h>
#include <te/taskengine.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
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
    const QFileInfo info(file);
    qApp->installEventFilter(this);
    core->open(info.absolutePath(), info.absoluteFilePath());
    qApp->removeEventFilter(this);
    if (!m_opened) {
        // The core refused the file before its dialog came up, and has said why.
        print(QStringLiteral("\"%1\" was not opened.").arg(file));
        return 2;
    }
    if (m_failed)
        return 1;
    if (generate) {
        for (const auto &result : TE::TaskEngine::instance()->flowManager()->resultFiles())
            print(QStringLiteral("Result %1: %2").arg(result.second, result.first));
    }
    return 0;
}

bool BatchRun::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show)
        return false;
    if (auto *box = qobject_cast<QMessageBox *>(watched)) {
        printBox(box);
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
        print(QStringLiteral("%1: closed unanswered in a run without a display.")
                  .arg(dialog->windowTitle()));
        QTimer::singleShot(0, dialog, &QDialog::reject);
    }
    return false;
}

bool BatchRun::callWriter(const char *slot, const QString &path)
{
    bool written = false;
    if (!QMetaObject::invokeMethod(m_dialog, slot, Qt::DirectConnection,
                                   Q_RETURN_ARG(bool, written), Q_ARG(QString, path))) {
        print(QStringLiteral("This core cannot write \"%1\".").arg(path));
        return false;
    }
    if (written)
        print(QStringLiteral("Written: %1").arg(QFileInfo(path).absoluteFilePath()));
    return written;
}

void BatchRun::drive()
{
    if (!reportFile.isEmpty() && !callWriter("writeReport", reportFile))
        m_failed = true;
    if (!schematicFile.isEmpty() && m_dialog && !callWriter("writeSchematic", schematicFile))
        m_failed = true;
    if (generate && m_dialog) {
        QMetaObject::invokeMethod(m_dialog, "accept", Qt::DirectConnection);
        // A core's OK keeps its dialog open when generation fails.
        if (m_dialog && m_dialog->isVisible()) {
            print(QStringLiteral("Generation failed."));
            m_failed = true;
        }
    }
    // Closed as it stands: a run without a person has no changes to ask about.
    if (m_dialog && m_dialog->isVisible())
        m_dialog->done(QDialog::Rejected);
}
