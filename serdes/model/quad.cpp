// SPDX-License-Identifier: MIT
#include "model/quad.h"

#include "model/lane.h"
#include "model/pll.h"
#include "model/ref_source.h"

namespace IPSERDESIP {

QUAD::QUAD(const QString &name)
    : name(name)
{}

QUAD::~QUAD()
{
    qDeleteAll(refs);
    qDeleteAll(muxes);
    qDeleteAll(plls);
    qDeleteAll(lanes);
    refs.clear();
    muxes.clear();
    plls.clear();
    lanes.clear();
}

LANE *QUAD::lane(const QString &name)
{
    return lanes.value(name, nullptr);
}

PLL *QUAD::pll(const QString &name)
{
    return plls.value(name, nullptr);
}

REF_SOURCE *QUAD::ref(const QString &name)
{
    return refs.value(name, nullptr);
}

MUX *QUAD::mux(const QString &name)
{
    return muxes.value(name, nullptr);
}

void QUAD::insertLane(const QString &name, LANE *lane)
{
    lanes.insert(name, lane);
}

void QUAD::insertPLL(const QString &name, PLL *pll)
{
    plls.insert(name, pll);
}

void QUAD::insertREFS(const QString &name, REF_SOURCE *ref)
{
    refs.insert(name, ref);
}

void QUAD::insertMux(const QString &name, MUX *mux)
{
    muxes.insert(name, mux);
}

} // namespace IPSERDESIP
