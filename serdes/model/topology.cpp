// SPDX-License-Identifier: MIT

// Builds the network of a device tier from its rows. A mux's wiring reaches
// the search only through the two plain function pointers of MUX, which carry
// no context; each row therefore gets its own pair of small functions,
// instantiated from the templates below, that read that row and nothing else.

#include "model/topology.h"
#include "model/serdes.h"
#include "model/topology_370k.h"
#include "model/topology_880k.h"
#include "model/topology_90k.h"

#include <QLatin1String>

#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

namespace IPSERDESIP {

namespace topology {

Tier tierOf(const QString &device)
{
    const QChar split(QLatin1Char('/'));
    if (QString::fromLatin1(DEVICES_370K).split(split).contains(device))
        return Tier::T370k;
    if (QString::fromLatin1(DEVICES_90K).split(split).contains(device))
        return Tier::T90k;
    return Tier::T880k;
}

} // namespace topology

namespace {

using namespace topology;

using PointFn = QString (*)(int, int);
using OptionFn = QStringList (*)(MUX *);


QString nameAt(const Positions &wiring, int sel, int dir)
{
    if (sel < 0 || sel >= wiring.selCount || dir < 0 || dir >= wiring.dirCount)
        return QString();
    return QString::fromLatin1(wiring.at[dir][sel]);
}

QStringList selectLine(const char *pattern, MUX *mux)
{
    return {QString::fromLatin1(pattern).arg(mux->sel())};
}

// Both quads learn the direction of the bridge, 1 for a clock of quad 0 and 2
// for one of quad 1; only the feeding quad's output select carries `sel`.
QStringList bridgeLines(MUX *mux)
{
    const int dir = mux->dir();
    const int sel = mux->sel();
    const int propagation = dir == 1 ? 2 : 1;
    return {QStringLiteral("[q0].ref_prop_dir %1").arg(propagation),
            QStringLiteral("[q1].ref_prop_dir %1").arg(propagation),
            QStringLiteral("[q0].refomux0_sel %1").arg(dir == 0 ? sel : 0),
            QStringLiteral("[q1].refomux0_sel %1").arg(dir != 0 ? sel : 0)};
}

QStringList linesOf(const MuxRow &row, MUX *mux)
{
    return row.kind == MuxKind::Bridge ? bridgeLines(mux) : selectLine(row.line, mux);
}

QStringList linesOf(const PllRow &row, MUX *mux)
{
    return selectLine(row.line, mux);
}


template<const auto &Rows, std::size_t I>
QString rowPoint(int sel, int dir)
{
    return nameAt(Rows[I].wiring, sel, dir);
}

template<const auto &Rows, std::size_t I>
QStringList rowLines(MUX *mux)
{
    return linesOf(Rows[I], mux);
}

template<const auto &Rows, std::size_t... I>
constexpr std::array<PointFn, sizeof...(I)> pointFns(std::index_sequence<I...>)
{
    return {{&rowPoint<Rows, I>...}};
}

template<const auto &Rows, std::size_t... I>
constexpr std::array<OptionFn, sizeof...(I)> optionFns(std::index_sequence<I...>)
{
    return {{&rowLines<Rows, I>...}};
}

template<const auto &Rows>
constexpr auto pointFnsOf()
{
    return pointFns<Rows>(std::make_index_sequence<std::size(Rows)>());
}

template<const auto &Rows>
constexpr auto optionFnsOf()
{
    return optionFns<Rows>(std::make_index_sequence<std::size(Rows)>());
}

// A row must fit the position array it is written in.
template<const auto &Rows>
constexpr bool wiringFits()
{
    for (const auto &row : Rows) {
        if (row.wiring.selCount < 1 || row.wiring.selCount > 4 || row.wiring.dirCount < 1
            || row.wiring.dirCount > 2)
            return false;
    }
    return true;
}


QUAD *quadNamed(const QList<QUAD *> &quads, const char *name)
{
    for (QUAD *quad : quads) {
        if (quad && quad->name == QLatin1String(name))
            return quad;
    }
    return nullptr;
}

template<std::size_t N>
QList<QUAD *> startTopology(serdes &model, const char *const (&names)[N])
{
    model.quads.clear();
    model.instances.clear();
    model.access.clear();
    QList<QUAD *> quads;
    for (const char *name : names) {
        auto *quad = new QUAD(QString::fromLatin1(name));
        model.quads.insert(quad->name, quad);
        quads.append(quad);
    }
    return quads;
}

template<std::size_t N>
void addLanes(serdes &model, const QList<QUAD *> &quads, const ElementRow (&rows)[N])
{
    for (const ElementRow &row : rows) {
        QUAD *quad = quadNamed(quads, row.quad);
        if (!quad)
            continue;
        auto *lane = new LANE(quad, QString::fromLatin1(row.name));
        quad->insertLane(lane->name, lane);
        model.instances.insert(lane->name, lane);
        model.instances.insert(lane->rx->name, lane->rx);
        model.instances.insert(lane->tx->name, lane->tx);
    }
}

template<const auto &Rows>
void addMuxes(serdes &model, const QList<QUAD *> &quads)
{
    static_assert(wiringFits<Rows>(), "a mux row does not fit its positions");
    constexpr auto points = pointFnsOf<Rows>();
    constexpr auto options = optionFnsOf<Rows>();
    for (std::size_t i = 0; i < std::size(Rows); ++i) {
        const MuxRow &row = Rows[i];
        QUAD *home = quadNamed(quads, row.quad);
        if (!home)
            continue;
        auto *mux = new MUX(home, QString::fromLatin1(row.name), options[i], row.wiring.selCount,
                            row.wiring.dirCount, points[i]);
        if (row.kind == MuxKind::Bridge) {
            for (QUAD *quad : quads) {
                if (quad)
                    quad->insertMux(mux->name, mux);
            }
        } else {
            home->insertMux(mux->name, mux);
        }
        model.instances.insert(mux->name, mux);
    }
}

template<const auto &Selects, const auto &Plls>
void addPlls(serdes &model, const QList<QUAD *> &quads)
{
    static_assert(wiringFits<Selects>(), "a PLL select row does not fit its positions");
    constexpr auto points = pointFnsOf<Selects>();
    constexpr auto options = optionFnsOf<Plls>();
    for (std::size_t i = 0; i < std::size(Plls); ++i) {
        const PllRow &row = Plls[i];
        QUAD *quad = quadNamed(quads, row.quad);
        if (!quad)
            continue;
        for (std::size_t s = 0; s < std::size(Selects); ++s) {
            if (QLatin1String(Selects[s].quad) != QLatin1String(row.quad))
                continue;
            const Positions &wiring = Selects[s].wiring;
            auto *pll = new PLL(quad, QString::fromLatin1(row.name), options[i], wiring.selCount,
                                wiring.dirCount, points[s]);
            quad->insertPLL(pll->name, pll);
            model.instances.insert(pll->name, pll);
            break;
        }
    }
}

template<std::size_t N>
void addRefs(serdes &model, const QList<QUAD *> &quads, const ElementRow (&rows)[N])
{
    for (const ElementRow &row : rows) {
        QUAD *quad = quadNamed(quads, row.quad);
        if (!quad)
            continue;
        auto *ref = new REF_SOURCE(quad, QString::fromLatin1(row.name));
        quad->insertREFS(ref->name, ref);
        model.instances.insert(ref->name, ref);
    }
}

} // namespace

void serdes::initilize(const QString &device)
{
    forgetLastRequest();
    this->device = device;
    switch (tierOf(device)) {
    case Tier::T370k:
        init370k();
        break;
    case Tier::T90k:
        init90k();
        break;
    case Tier::T880k:
        init880k();
        break;
    }
}

void serdes::init880k()
{
    const QList<QUAD *> quads = startTopology(*this, t880k::QUADS);
    init880kLANE(quads.at(0), quads.at(1));
    init880kMUX(quads.at(0), quads.at(1));
    init880kPLL(quads.at(0), quads.at(1));
    init880kREFS(quads.at(0), quads.at(1));
}

void serdes::init880kLANE(QUAD *q0, QUAD *q1)
{
    addLanes(*this, {q0, q1}, t880k::LANES);
}

void serdes::init880kMUX(QUAD *q0, QUAD *q1)
{
    addMuxes<t880k::MUXES>(*this, {q0, q1});
}

void serdes::init880kPLL(QUAD *q0, QUAD *q1)
{
    addPlls<t880k::PLL_SELECTS, t880k::PLLS>(*this, {q0, q1});
}

void serdes::init880kREFS(QUAD *q0, QUAD *q1)
{
    addRefs(*this, {q0, q1}, t880k::REFS);
}

void serdes::init370k()
{
    const QList<QUAD *> quads = startTopology(*this, t370k::QUADS);
    init370kLANE(quads.at(0));
    init370kMUX(quads.at(0));
    init370kPLL(quads.at(0));
    init370kREFSandGPIO(quads.at(0));
}

void serdes::init370kLANE(QUAD *q0)
{
    addLanes(*this, {q0}, t370k::LANES);
}

void serdes::init370kMUX(QUAD *q0)
{
    addMuxes<t370k::MUXES>(*this, {q0});
}

void serdes::init370kPLL(QUAD *q0)
{
    addPlls<t370k::PLL_SELECTS, t370k::PLLS>(*this, {q0});
}

void serdes::init370kREFSandGPIO(QUAD *q0)
{
    addRefs(*this, {q0}, t370k::REFS);
}

void serdes::init90k()
{
    const QList<QUAD *> quads = startTopology(*this, t90k::QUADS);
    init90kLANE(quads.at(0));
    init90kMUX(quads.at(0));
    init90kPLL(quads.at(0));
    init90kREFSandGPIO(quads.at(0));
}

void serdes::init90kLANE(QUAD *q0)
{
    addLanes(*this, {q0}, t90k::LANES);
}

void serdes::init90kMUX(QUAD *q0)
{
    addMuxes<t90k::MUXES>(*this, {q0});
}

void serdes::init90kPLL(QUAD *q0)
{
    addPlls<t90k::PLL_SELECTS, t90k::PLLS>(*this, {q0});
}

void serdes::init90kREFSandGPIO(QUAD *q0)
{
    addRefs(*this, {q0}, t90k::REFS);
}

} // namespace IPSERDESIP
