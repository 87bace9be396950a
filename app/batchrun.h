// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class CoreCatalogue;
class QDialog;

// Regenerates a saved configuration without a person at the screen: opens it
// with the core that made it and presses OK in the core's dialog. Every
// message box that comes up meanwhile is printed and closed with its default
// button, so nothing waits for an answer. A core's dialog may also offer the
// slots writeReport(QString) and writeSchematic(QString), which are called
// before OK when a report or a picture is asked for.
class BatchRun : public QObject
{
    Q_OBJECT

public:
    explicit BatchRun(const CoreCatalogue *catalogue);

    QString reportFile;
    QString schematicFile;
    bool generate = false;

    // 0 when everything asked for was done, 1 when something failed, 2 when
    // the file could not be opened at all.
    int run(const QString &file);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void drive();
    bool callWriter(const char *slot, const QString &path);

    const CoreCatalogue *m_catalogue;
    QPointer<QDialog> m_dialog;
    bool m_opened = false;
    bool m_failed = false;
};
