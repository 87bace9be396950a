// SPDX-License-Identifier: MIT
#pragma once

#include "model/instance.h"

namespace IPSERDESIP {

// A reference clock input: a REFCLK pin, a fabric clock or the master clock.
// While anybody holds it, it runs at one frequency.
class SERDESIP_EXPORT REF_SOURCE : public Instance
{
public:
    REF_SOURCE(QUAD *quad, const QString &name);
    ~REF_SOURCE() override;

    // Takes the source at `freq`; refused if it is held at any other value.
    // Frequencies are compared exactly: the model has no tolerance.
    bool set(double freq);
    void reset();

    // In the protocol's units; 0 while free.
    double freq;
};

} // namespace IPSERDESIP
