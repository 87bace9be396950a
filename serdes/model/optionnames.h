// SPDX-License-Identifier: MIT
#pragma once

// The rows of the option dictionary. Internal to the library.

#include "plugin/serdesipconstants.h"

namespace IPSERDESIP {
namespace optionnames {

struct RefRow
{
    const char *option;
    const char *name;
    // False for an alias that is accepted but never given back.
    bool reverse;
};

// Searched in this order both ways; the fabric clock inputs with a number come
// before Q0_GPIO, which every one of their names contains.
// clang-format off
constexpr RefRow REFS[] = {
    {"Q0 REFCLK0", Q0_REF0, true},  {"Q0 REFCLK1", Q0_REF1, true},
    {"Q0 REFCLK2", Q0_REF2, true},  {"Q0 REFCLK3", Q0_REF3, true},
    {"Q1 REFCLK0", Q1_REF0, true},  {"Q1 REFCLK1", Q1_REF1, true},
    {"Q0 REFIN0", Q0_GPIO0, true},  {"Q0 REFIN1", Q0_GPIO1, true},
    {"Q0 REFIN2", Q0_GPIO2, true},  {"Q0 REFIN3", Q0_GPIO3, true},
    {"Q0 REFIN", Q0_GPIO, true},    {"GPIO", Q0_GPIO, false},
    {"MCLK", Q0_MCLK, true},
};

// Lane labels, numbered over both quads.
constexpr const char *LANES[] = {
    "Q0 Lane0", "Q0 Lane1", "Q0 Lane2", "Q0 Lane3",
    "Q1 Lane0", "Q1 Lane1", "Q1 Lane2", "Q1 Lane3",
};
// clang-format on

} // namespace optionnames
} // namespace IPSERDESIP
