// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class QTextStream;

namespace IPSERDESIP {

// The task generator's side of a register script export, apart from any dialog
// or process: what it is told, what is kept of what it writes, and what of its
// complaints the user is shown.

// "--task", `task`, "--lane", the lane option, then the task's own options.
// The output file is not among them: the run adds it.
SERDESIP_TEST_EXPORT QStringList csrTaskArguments(const QString &task,
                                                  const QStringList &laneOptions,
                                                  const QStringList &options);

// The register writes of the generator's output file, one record per line
// that starts with "upar_write_driver": the 6 characters of the address at
// index 20, the 8 of the data at index 29, and a line feed. Every other line
// is dropped. A short line yields whatever stands at those places.
SERDESIP_TEST_EXPORT QByteArray csrRecords(QTextStream &in);

// The generator's error output, cut to start at its first "Error", or else at
// its first "Exception"; whole when it holds neither. What comes before the
// marker is progress output.
SERDESIP_TEST_EXPORT QString csrToolReport(const QString &standardError);

} // namespace IPSERDESIP
