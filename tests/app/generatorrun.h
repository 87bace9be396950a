// SPDX-License-Identifier: MIT
#pragma once

// The generator of the staged tree, run as a separate process.

#include <QProcess>
#include <QString>
#include <QStringList>

#include <algorithm>

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

inline Run runGenerator(const QString &tree, const QStringList &arguments,
                        const QProcessEnvironment &env = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(tree + QStringLiteral("/bin/ipcoregen"), arguments);
    Run run;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

// The leak checker of a sanitized build reports on standard error too; it
// is told to keep its list of suppressions to itself.
inline QProcessEnvironment quietLeakChecker()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("LSAN_OPTIONS", env.value("LSAN_OPTIONS") + ":print_suppressions=0");
    return env;
}

// Standard error without what the platform adds: not the generator's words.
inline QString generatorWords(const QByteArray &err)
{
    QStringList lines = QString::fromUtf8(err).split('\n');
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QString &l) { return l.startsWith("QStandardPaths"); }),
                lines.end());
    return lines.join('\n');
}
