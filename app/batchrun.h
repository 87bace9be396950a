// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class CoreCatalogue;
class QDialog;

// Regenerates a saved configuration without a person at the screen: opens it
// with the core that made it and presses OK in the core's dialog. Every
// message box that comes up meanwhile is printed and closed with its default
// button, so nothing waits for an answer. A core's dialog may also offer the
// slots writeReport(QString) and writeSchematic(QString), which are called
// before OK when a report or a picture is asked for, and the int properties
// placedInstances and unrestoredInstances, which the closing summary counts.
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

    // 0 when everything asked for was done, 1 when something failed or was
    // not done (an instance not restored, a warning or an error shown, a file
    // not written), 2 when the file could not be opened at all.
    int run(const QString &file);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void drive();
    bool callWriter(const char *slot, const QString &path);
    void noteWritten(const QString &path);
    void fail();
    QString summary() const;

    const CoreCatalogue *m_catalogue;
    QPointer<QDialog> m_dialog;
    bool m_opened = false;
    bool m_failed = false;
    int m_errors = 0;
    // -1 while the core's dialog has not said.
    int m_placed = -1;
    int m_unrestored = -1;
    QStringList m_written;
};
