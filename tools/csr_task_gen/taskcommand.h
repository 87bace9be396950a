// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QSet>
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
    // "Error" in it and naming the flag or argument at fault. Every fault is
    // reported, not only the first; only without a known task are the options
    // left unjudged.
    bool parse(const QStringList &args);
    QStringList faults() const { return m_faults; }

    QString task() const { return m_task; }
    // Bits 0 to 3: lanes 0 to 3 of Q0; bits 4 to 7: those of Q1.
    int laneMask() const { return m_laneMask; }
    QString outputPath() const { return m_output; }
    // The value given for `flag`, without its dashes; null when not given or
    // refused.
    QString value(const QString &flag) const
    {
        return m_refused.contains(flag) ? QString() : m_values.value(flag);
    }
    // The flag, without dashes, of the reference frequency that a rate task
    // uses in `quad`, by the reference mux it selects; empty for other tasks.
    QString referenceFlag(int quad) const;

    static QStringList tasks();
    // Whether `task` picks a reference mux, and so needs a reference frequency.
    static bool selectsReference(const QString &task);
    // The flags of `task` without their dashes, in the order the usage gives.
    static QStringList flagsOf(const QString &task);
    // The unit in which `flag` of `task` is given, "Gbps" or "MHz"; empty for
    // a count or a word.
    static QString unitOf(const QString &task, const QString &flag);
    static QString usage();

private:
    void checkLane(const QString &text);
    // False when the value is refused.
    bool checkValue(const QString &flag, const QString &text);
    void checkReferences();
    void fault(const QString &text);

    QString m_task;
    int m_laneMask = 0;
    QString m_output;
    QMap<QString, QString> m_values;
    // Flags without dashes whose value was refused.
    QSet<QString> m_refused;
    // Flags as written that came last and so had no value: each has its one
    // fault already, and is not missing as well.
    QStringList m_valueless;
    QStringList m_faults;
};

} // namespace IPSERDESIP
