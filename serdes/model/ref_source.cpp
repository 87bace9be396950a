// SPDX-License-Identifier: MIT
#include "model/ref_source.h"

namespace IPSERDESIP {

REF_SOURCE::REF_SOURCE(QUAD *quad, const QString &name)
    : Instance(name, quad)
    , freq(0.0)
{}

REF_SOURCE::~REF_SOURCE() = default;

bool REF_SOURCE::set(double freq)
{
    if (count == 0) {
        this->freq = freq;
        count = 1;
        return true;
    }
    if (freq != this->freq)
        return false;
    ++count;
    return true;
}

void REF_SOURCE::reset()
{
    if (count - 1 < 1) {
        count = 0;
        freq = 0.0;
        return;
    }
    --count;
}

} // namespace IPSERDESIP
