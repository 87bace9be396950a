// SPDX-License-Identifier: MIT
#pragma once

#include "model/line.h"

namespace IPSERDESIP {

// A lane is only the pair of its lines. Its own count is never raised, so
// enable() on a lane is always false: ask getLaneStatus() instead.
class SERDESIP_EXPORT LANE : public Instance
{
public:
    LANE(QUAD *quad, const QString &name);
    ~LANE() override;

    void set(double rate, const QString &source);
    void reset();
    // 0 free, 1 only TX held, 2 only RX held, 3 both.
    int getLaneStatus();
    // The RX rate where RX runs, else the TX rate where TX runs, else 0.
    double getLaneRate();

    // Both owned.
    LINE *tx;
    LINE *rx;

private:
    Q_DISABLE_COPY(LANE)
};

} // namespace IPSERDESIP
