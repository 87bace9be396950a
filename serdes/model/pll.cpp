// SPDX-License-Identifier: MIT
#include "model/pll.h"

namespace IPSERDESIP {

PLL::PLL(QUAD *quad, const QString &name, QStringList (*optionFn)(MUX *), int selCount,
         int dirCount, QString (*pointFn)(int, int))
    : Instance(name, quad)
    , mux(new MUX(quad, name, optionFn, selCount, dirCount, pointFn))
{}

PLL::~PLL()
{
    delete mux;
}

MUX *PLL::Mux()
{
    return mux;
}

} // namespace IPSERDESIP
