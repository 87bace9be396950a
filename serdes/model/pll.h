// SPDX-License-Identifier: MIT
#pragma once

#include "model/mux.h"

namespace IPSERDESIP {

// A transceiver PLL. Its reference select is a mux of the same name inside it;
// whether the PLL is in use is that mux's state, and the PLL's own count stays
// 0. The inner mux stands in no map: quads and `serdes` know only the PLL.
class SERDESIP_EXPORT PLL : public Instance
{
public:
    PLL(QUAD *quad, const QString &name, QStringList (*optionFn)(MUX *), int selCount, int dirCount,
        QString (*pointFn)(int, int));
    ~PLL() override;

    MUX *Mux();

    // Owned.
    MUX *mux;

private:
    Q_DISABLE_COPY(PLL)
};

} // namespace IPSERDESIP
