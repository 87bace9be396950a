// SPDX-License-Identifier: MIT
//
// A stand-in for the device maker's reconfiguration task generator, which
// comes only with the maker's own installation. It keeps the generator's
// contract (command line, exit code, error report, the place of address and
// data in its register write lines) and checks its command line for real, but
// it knows no register of the device: its writes come from an illustrative map
// of its own, and its output says so.

#include "csrtaskgen.h"

#include "registermap.h"
#include "taskcommand.h"

#include <QFile>

#include <cstdio>

namespace IPSERDESIP {

namespace {

constexpr int EXIT_FAULTS = 1;
constexpr int EXIT_USAGE = 2;

const char NOTICE[] = "stand-in task generator with an illustrative register map, "
                      "not the device's";

void report(const QStringList &faults)
{
    for (const QString &fault : faults)
        std::fprintf(stderr, "%s\n", qPrintable(fault));
}

} // namespace

int runCsrTaskGen(const QStringList &args, const QString &mapPath)
{
    taskcommand command;
    const bool parsed = command.parse(args);
    registermap map;
    if (!map.load(mapPath)) {
        report(command.faults());
        report(map.faults());
        return parsed ? EXIT_FAULTS : EXIT_USAGE;
    }
    // Only the map knows how large a value may be. A refused command line is
    // encoded as far as it goes, so that such a fault comes with the others.
    QStringList writes;
    const bool encoded = map.writes(command, writes);
    const QStringList refused = command.faults() + map.valueFaults();
    report(refused);
    report(map.faults());
    if (!refused.isEmpty())
        return EXIT_USAGE;
    if (!encoded)
        return EXIT_FAULTS;

    QByteArray text = QStringLiteral("# %1: register writes from the map %2\n"
                                     "# task %3, lane mask %4\n")
                          .arg(QLatin1String(NOTICE), mapPath, command.task())
                          .arg(command.laneMask())
                          .toUtf8();
    for (const QString &line : qAsConst(writes))
        text += line.toUtf8() + '\n';
    QFile output(command.outputPath());
    if (!output.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || output.write(text) != text.size() || !output.flush()) {
        report({QStringLiteral("Error: %1: cannot write: %2")
                    .arg(command.outputPath(), output.errorString())});
        return EXIT_FAULTS;
    }
    std::printf("csr_task_gen.bin, %s: %d register writes of task %s to %s\n", NOTICE,
                int(writes.size()), qPrintable(command.task()), qPrintable(command.outputPath()));
    return 0;
}

} // namespace IPSERDESIP
