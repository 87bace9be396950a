// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// One request to the task generator, read from its command line
//     --task <task> --lane <mask> [--<flag> <value>]... -o <file>
// and checked against what each task accepts. Flags may come in any order;
// each is given once and carries a value.
class taskcommand
{
public:
    // Reads `args`, the arguments after the program's name. False when
    // anything was refused; faults() then holds one text per fault, each with
    // "Error" in it and naming the flag or argument at fault.
    bool parse(const QStringList &args);
    QStringList faults() const { return m_faults; }

    QString task() const { return m_task; }
    // Bits 0 to 3: lanes 0 to 3 of Q0; bits 4 to 7: those of Q1.
    int laneMask() const { return m_laneMask; }
    QString outputPath() const { return m_output; }
    // The value given for `flag`, without its dashes; null when not given.
    QString value(const QString &flag) const { return m_values.value(flag); }
    // The flag, without dashes, of the reference frequency that a rate task
    // uses in `quad`, by the reference mux it selects; empty for other tasks.
    QString referenceFlag(int quad) const;

    static QStringList tasks();
    // Whether `task` picks a reference mux, and so needs a reference frequency.
    static bool selectsReference(const QString &task);
    // The flags of `task` without their dashes, in the order the usage gives.
    static QStringList flagsOf(const QString &task);
    static QString usage();

private:
    void checkLane(const QString &text);
    void checkValue(const QString &flag, const QString &text);
    void checkReferences();
    void fault(const QString &text);

    QString m_task;
    int m_laneMask = 0;
    QString m_output;
    QMap<QString, QString> m_values;
    QStringList m_faults;
};

} // namespace IPSERDESIP
