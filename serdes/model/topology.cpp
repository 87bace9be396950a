// SPDX-License-Identifier: MIT

// Builds the network of a device tier from the rows of the tier's file. A
// mux's wiring reaches the search only through the two plain function
// pointers of MUX, which carry no context; each row of every tier therefore
// gets its own pair of small functions, instantiated from the templates
// below, that read that row and nothing else.

#include "model/topology.h"
#include "model/serdes.h"
#include "tiers/tierlist.h"

#include <QLatin1String>

#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

namespace IPSERDESIP {

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

// The rows of tier T that a template reads: its muxes, its PLL selects, its
// PLLs.
enum class Table { Muxes, PllSelects, Plls };

template<std::size_t T, Table R>
constexpr auto rowsOf()
{
    const topology::Network &network = TIERS[T]->network;
    if constexpr (R == Table::Muxes)
        return network.muxes;
    else if constexpr (R == Table::PllSelects)
        return network.pllSelects;
    else
        return network.plls;
}

template<std::size_t T, Table R, std::size_t I>
QString rowPoint(int sel, int dir)
{
    return nameAt(rowsOf<T, R>()[I].wiring, sel, dir);
}

template<std::size_t T, Table R, std::size_t I>
QStringList rowLines(MUX *mux)
{
    return linesOf(rowsOf<T, R>()[I], mux);
}

template<std::size_t T, Table R, std::size_t... I>
constexpr std::array<PointFn, sizeof...(I)> pointFns(std::index_sequence<I...>)
{
    return {{&rowPoint<T, R, I>...}};
}

template<std::size_t T, Table R, std::size_t... I>
constexpr std::array<OptionFn, sizeof...(I)> optionFns(std::index_sequence<I...>)
{
    return {{&rowLines<T, R, I>...}};
}

template<std::size_t T, Table R>
constexpr auto pointFnsOf()
{
    return pointFns<T, R>(std::make_index_sequence<rowsOf<T, R>().size>());
}

template<std::size_t T, Table R>
constexpr auto optionFnsOf()
{
    return optionFns<T, R>(std::make_index_sequence<rowsOf<T, R>().size>());
}

// A row must fit the position array it is written in.
template<typename Row>
constexpr bool wiringFits(Rows<Row> rows)
{
    for (const auto &row : rows) {
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

QList<QUAD *> startTopology(serdes &model, Rows<const char *> names)
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

void addLanes(serdes &model, const QList<QUAD *> &quads, Rows<ElementRow> rows)
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

template<std::size_t T>
void addMuxes(serdes &model, const QList<QUAD *> &quads)
{
    constexpr auto rows = rowsOf<T, Table::Muxes>();
    static_assert(wiringFits(rows), "a mux row does not fit its positions");
    constexpr auto points = pointFnsOf<T, Table::Muxes>();
    constexpr auto options = optionFnsOf<T, Table::Muxes>();
    for (std::size_t i = 0; i < rows.size; ++i) {
        const MuxRow &row = rows[i];
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

template<std::size_t T>
void addPlls(serdes &model, const QList<QUAD *> &quads)
{
    constexpr auto selects = rowsOf<T, Table::PllSelects>();
    constexpr auto plls = rowsOf<T, Table::Plls>();
    static_assert(wiringFits(selects), "a PLL select row does not fit its positions");
    constexpr auto points = pointFnsOf<T, Table::PllSelects>();
    constexpr auto options = optionFnsOf<T, Table::Plls>();
    for (std::size_t i = 0; i < plls.size; ++i) {
        const PllRow &row = plls[i];
        QUAD *quad = quadNamed(quads, row.quad);
        if (!quad)
            continue;
        for (std::size_t s = 0; s < selects.size; ++s) {
            if (QLatin1String(selects[s].quad) != QLatin1String(row.quad))
                continue;
            const Positions &wiring = selects[s].wiring;
            auto *pll = new PLL(quad, QString::fromLatin1(row.name), options[i], wiring.selCount,
                                wiring.dirCount, points[s]);
            quad->insertPLL(pll->name, pll);
            model.instances.insert(pll->name, pll);
            break;
        }
    }
}

void addRefs(serdes &model, const QList<QUAD *> &quads, Rows<ElementRow> rows)
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

// In this order: lanes, muxes, PLLs, reference sources.
template<std::size_t T>
void buildTier(serdes &model)
{
    const Network &network = TIERS[T]->network;
    const QList<QUAD *> quads = startTopology(model, network.quads);
    addLanes(model, quads, network.lanes);
    addMuxes<T>(model, quads);
    addPlls<T>(model, quads);
    addRefs(model, quads, network.refs);
}

template<std::size_t... T>
constexpr std::array<void (*)(serdes &), sizeof...(T)> buildersOf(std::index_sequence<T...>)
{
    return {{&buildTier<T>...}};
}

constexpr auto BUILDERS = buildersOf(std::make_index_sequence<std::size(TIERS)>());

void build(serdes &model, Tier tier)
{
    BUILDERS[static_cast<std::size_t>(tier)](model);
}

constexpr std::size_t T880K = static_cast<std::size_t>(Tier::T880k);
constexpr std::size_t T370K = static_cast<std::size_t>(Tier::T370k);
constexpr std::size_t T90K = static_cast<std::size_t>(Tier::T90k);

} // namespace

void serdes::initilize(const QString &device)
{
    forgetLastRequest();
    this->device = device;
    build(*this, tierOf(device));
}

// The entries of each tier by name. The whole of a tier is built by
// initilize() from the list of tiers; these are kept for the callers that
// name a tier and build the same network.

void serdes::init880k()
{
    build(*this, Tier::T880k);
}

void serdes::init880kLANE(QUAD *q0, QUAD *q1)
{
    addLanes(*this, {q0, q1}, t880k::TIER.network.lanes);
}

void serdes::init880kMUX(QUAD *q0, QUAD *q1)
{
    addMuxes<T880K>(*this, {q0, q1});
}

void serdes::init880kPLL(QUAD *q0, QUAD *q1)
{
    addPlls<T880K>(*this, {q0, q1});
}

void serdes::init880kREFS(QUAD *q0, QUAD *q1)
{
    addRefs(*this, {q0, q1}, t880k::TIER.network.refs);
}

void serdes::init370k()
{
    build(*this, Tier::T370k);
}

void serdes::init370kLANE(QUAD *q0)
{
    addLanes(*this, {q0}, t370k::TIER.network.lanes);
}

void serdes::init370kMUX(QUAD *q0)
{
    addMuxes<T370K>(*this, {q0});
}

void serdes::init370kPLL(QUAD *q0)
{
    addPlls<T370K>(*this, {q0});
}

void serdes::init370kREFSandGPIO(QUAD *q0)
{
    addRefs(*this, {q0}, t370k::TIER.network.refs);
}

void serdes::init90k()
{
    build(*this, Tier::T90k);
}

void serdes::init90kLANE(QUAD *q0)
{
    addLanes(*this, {q0}, t90k::TIER.network.lanes);
}

void serdes::init90kMUX(QUAD *q0)
{
    addMuxes<T90K>(*this, {q0});
}

void serdes::init90kPLL(QUAD *q0)
{
    addPlls<T90K>(*this, {q0});
}

void serdes::init90kREFSandGPIO(QUAD *q0)
{
    addRefs(*this, {q0}, t90k::TIER.network.refs);
}

} // namespace IPSERDESIP
