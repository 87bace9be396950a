// SPDX-License-Identifier: MIT
#pragma once

#include "model/instance.h"

namespace IPSERDESIP {

// One direction of a lane, "<lane>_TX" or "<lane>_RX": what a route ends on
// and what a protocol instance reserves.
class SERDESIP_EXPORT LINE : public Instance
{
public:
    LINE(QUAD *quad, const QString &name);
    ~LINE() override;

    // Adds a holder; the last holder's rate and source win.
    void set(double rate, const QString &source);
    void setSource(const QString &source);
    void reset();

    // In the protocol's units; 0 while free.
    double rate;
    // TX: the PLL. RX: the mux that clocks the CDR, a reference source clocked
    // directly, or a PLL where RX lines hang on PLLs. Empty until chosen.
    QString source;
};

} // namespace IPSERDESIP
