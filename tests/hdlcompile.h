// SPDX-License-Identifier: MIT
#pragma once

// Generated Verilog and VHDL checked by the compilers themselves.

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

// Runs `program` in `dir`; empty when it succeeded without a word, else what
// it said.
inline QString runQuietly(const QString &program, const QStringList &args, const QString &dir)
{
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty())
        return program + " is not installed (scripts/install-deps.sh)";
    QProcess process;
    process.setWorkingDirectory(dir);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(path, args);
    if (!process.waitForFinished(60000))
        return program + " did not finish";
    const QString output = QString::fromLocal8Bit(process.readAll()).trimmed();
    if (process.exitCode() != 0 || !output.isEmpty())
        return output.isEmpty() ? program + " failed" : output;
    return QString();
}

// Analyses `files` as VHDL-2008 into a work library in `dir` and elaborates
// `top` without simulating it: every component is bound to its entity, and
// ports of other widths than their entity's fail.
inline QString compileVhdl(const QStringList &files, const QString &top, const QString &dir)
{
    const QString analysed = runQuietly("ghdl", QStringList{"-a", "--std=08"} + files, dir);
    return analysed.isEmpty() ? runQuietly("ghdl", {"--elab-run", "--std=08", top, "--no-run"}, dir)
                              : analysed;
}

// A design that instantiates a core from its VHDL template as a user does: the
// component among the declarations, the instance among the statements, and
// `declarations` for its ports.
inline QByteArray vhdlUser(const QByteArray &tmpl, const QByteArray &declarations)
{
    const QByteArray end = "end component;";
    const int split = tmpl.indexOf(end) + end.size();
    return "library ieee;\nuse ieee.std_logic_1164.all;\nentity user is\nend entity user;\n"
           "architecture use_template of user is\n"
           + declarations + tmpl.left(split) + "\nbegin\n" + tmpl.mid(split)
           + "\nend architecture use_template;\n";
}
