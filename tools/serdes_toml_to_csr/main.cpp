// SPDX-License-Identifier: MIT
//
// One register compiler stand-in per device tier, named for it; the tier is
// fixed when the program is built.

#include "tomltocsr.h"

int main(int argc, char *argv[])
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args.append(QString::fromLocal8Bit(argv[i]));
    return IPSERDESIP::runTomlToCsr(IPSERDESIP::Tier::SERDES_TOOL_TIER, args);
}
