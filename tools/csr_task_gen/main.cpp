// SPDX-License-Identifier: MIT
//
// The reconfiguration task generator stand-in. Its register map is the data
// file beside the program.

#include "csrtaskgen.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    return IPSERDESIP::runCsrTaskGen(QCoreApplication::arguments().mid(1),
                                     QCoreApplication::applicationDirPath()
                                         + QStringLiteral("/csr_task_gen_map.txt"));
}
