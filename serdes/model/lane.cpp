// SPDX-License-Identifier: MIT
#include "model/lane.h"

namespace IPSERDESIP {

LANE::LANE(QUAD *quad, const QString &name)
    : Instance(name, quad)
    , tx(nullptr)
    , rx(nullptr)
{
    rx = new LINE(quad, name + QLatin1String("_RX"));
    tx = new LINE(quad, name + QLatin1String("_TX"));
}

LANE::~LANE()
{
    delete rx;
    delete tx;
}

void LANE::set(double rate, const QString &source)
{
    rx->set(rate, source);
    tx->set(rate, source);
}

void LANE::reset()
{
    rx->reset();
    tx->reset();
}

int LANE::getLaneStatus()
{
    int status = 0;
    if (tx->enable())
        status |= 1;
    if (rx->enable())
        status |= 2;
    return status;
}

double LANE::getLaneRate()
{
    if (rx->enable() && rx->rate != 0.0)
        return rx->rate;
    if (tx->enable() && tx->rate != 0.0)
        return tx->rate;
    return 0.0;
}

} // namespace IPSERDESIP
