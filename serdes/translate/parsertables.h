// SPDX-License-Identifier: MIT
#pragma once

// The shapes in which the parameter tables are written down: the rows that
// tiers share (parsertables_shared.h), one file per device tier with the rows
// of its own, and one of the free-valued parameters that are translated by
// rule. All of it is constant data that needs no construction at load time;
// parser expands it into its maps. Internal to the library.

#include "tiers/rows.h"

#include <cstddef>

namespace IPSERDESIP {
namespace parsertables {

// Lists of rows walked as one list: a tier names the groups it shares with
// other tiers and its own, and whoever reads the tier sees all their rows in
// turn.
template<typename T>
struct Groups
{
    class Iterator
    {
    public:
        constexpr Iterator(const Rows<T> *group, const Rows<T> *last)
            : m_group(group)
            , m_last(last)
        {
            skipEnded();
        }

        constexpr const T &operator*() const { return m_group->data[m_row]; }
        constexpr Iterator &operator++()
        {
            ++m_row;
            skipEnded();
            return *this;
        }
        constexpr bool operator!=(const Iterator &other) const
        {
            return m_group != other.m_group || m_row != other.m_row;
        }

    private:
        // Onto the next group that has a row left; an empty group is passed over.
        constexpr void skipEnded()
        {
            while (m_group != m_last && m_row == m_group->size) {
                ++m_group;
                m_row = 0;
            }
        }

        const Rows<T> *m_group;
        const Rows<T> *m_last;
        std::size_t m_row = 0;
    };

    Rows<Rows<T>> groups;

    constexpr Groups() = default;
    template<std::size_t N>
    constexpr Groups(const Rows<T> (&list)[N])
        : groups(list)
    {}

    constexpr Iterator begin() const { return {groups.begin(), groups.end()}; }
    constexpr Iterator end() const { return {groups.end(), groups.end()}; }
};

// A protocol-side value and the device-side value exactly as it stands in the
// device line, double quotes included where the device wants text.
struct ValuePair
{
    const char *protocol;
    const char *device;
};

enum class Scope {
    // q<n>_ln<m>_<name> gives [q<n>.ln<m>], for every lane of the tier's quads.
    Lane,
    // q<n>_<name> gives [q<n>], for every quad of the tier.
    Quad,
    // As Quad, but for q0 and q1 whatever the tier has: the writer drops the
    // section the tier lacks.
    BothQuads,
};

// One parameter with its device field. Each value pair gives one whole-line
// translation per lane or quad of the scope; the default gives one default row
// per lane or quad. A tier that has more values of a family than the tiers it
// shares it with gives them in a row of its own, of the same scope, name and
// field but without a default: only one row of a family carries it.
struct Family
{
    Scope scope;
    const char *name;
    // Unused by a family without pairs.
    const char *field;
    // None: the value is free and translated by rule.
    Rows<ValuePair> pairs;
    // Protocol-side default; null for a family that has none.
    const char *defaultValue;
};

// A master select of a lane: its pairs are the tier's master lane names and its
// default is the lane's own name.
struct MasterSelect
{
    const char *name;
    const char *field;
};

// A row written out whole: protocol line and device line, or parameter name
// and default.
struct Line
{
    const char *key;
    const char *value;
};

struct TierTables
{
    // Lane and quad rows exist for q0 up to q<quadCount - 1>, four lanes each.
    int quadCount;
    Groups<Family> families;
    Rows<ValuePair> masterLanes;
    Rows<MasterSelect> masterSelects;
    // Chip-wide translations and defaults.
    Groups<Line> chipLines;
    Groups<Line> chipDefaults;
};

// How a free value becomes the device value.
enum class ValueRule {
    // As it stands.
    Text,
    // In upper case.
    Upper,
    // Millivolts of output swing to the driver's level code: (mV - 180) / 48.
    Swing,
    // Millivolts of signal-detect threshold to its code: (mV - 25) / 25.
    Threshold,
    // A hexadecimal pattern written in decimal.
    Hex,
};

enum class RuleScope {
    // q<n>_ln<m>_<name> gives [q<n>.ln<m>].
    Lane,
    // q<n>_<name> gives [q<n>].
    Quad,
    // <name> gives [q0]: the chip's one input of its kind sits in q0's section.
    Chip,
};

// A free-valued parameter. Rules hold for every tier alike: a line that the
// tier lacks is dropped later, when the file is written.
struct Rule
{
    RuleScope scope;
    // Lane and quad names run over q0 up to q<quads - 1>.
    int quads;
    const char *name;
    const char *field;
    // The device value, %1 standing for the protocol value after the rule.
    const char *value;
    ValueRule rule;
};

extern const Rows<Rule> RULES;

// The name under which the register compiler knows a part: the parts, "/"-joined
// and compared whole, and the device line they get.
struct DeviceLine
{
    const char *parts;
    const char *line;
};

} // namespace parsertables
} // namespace IPSERDESIP
