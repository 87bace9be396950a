// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// One run of the task generator stand-in: `args` are the arguments after the
// program's name, `mapPath` the register map it ships with. Writes the
// register writes of the task to the -o file and returns 0; otherwise writes
// no file, puts one line with "Error" per fault on standard error, and returns
// 2 for a command line it refuses (a value too large for its register
// included), 1 for anything else.
int runCsrTaskGen(const QStringList &args, const QString &mapPath);

} // namespace IPSERDESIP
