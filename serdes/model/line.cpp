// SPDX-License-Identifier: MIT
#include "model/line.h"

namespace IPSERDESIP {

LINE::LINE(QUAD *quad, const QString &name)
    : Instance(name, quad)
    , rate(0.0)
{}

LINE::~LINE() = default;

void LINE::set(double rate, const QString &source)
{
    this->rate = rate;
    this->source = source;
    ++count;
}

void LINE::setSource(const QString &source)
{
    this->source = source;
}

void LINE::reset()
{
    if (count - 1 > 0) {
        --count;
        return;
    }
    count = 0;
    rate = 0.0;
    source = QString();
}

} // namespace IPSERDESIP
