// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QMap>
#include <QString>

namespace IPSERDESIP {

class LANE;
class MUX;
class PLL;
class REF_SOURCE;

// One quad of four lanes with its PLLs, reference inputs and muxes. The maps
// are sorted by name, and searches over them run in that order, which makes
// it the tie-break between equally good routes.
class SERDESIP_EXPORT QUAD
{
public:
    explicit QUAD(const QString &name);
    // Deletes every element of the maps. The bridge between two quads stands
    // in both quads' maps, so the quads of a two-quad device must never both
    // be destroyed this way.
    ~QUAD();

    LANE *lane(const QString &name);
    PLL *pll(const QString &name);
    REF_SOURCE *ref(const QString &name);
    MUX *mux(const QString &name);

    void insertLane(const QString &name, LANE *lane);
    void insertPLL(const QString &name, PLL *pll);
    void insertREFS(const QString &name, REF_SOURCE *ref);
    void insertMux(const QString &name, MUX *mux);

    QMap<QString, REF_SOURCE *> refs;
    QMap<QString, MUX *> muxes;
    QMap<QString, PLL *> plls;
    QMap<QString, LANE *> lanes;
    // "Q0" or "Q1".
    QString name;

private:
    Q_DISABLE_COPY(QUAD)
};

} // namespace IPSERDESIP
