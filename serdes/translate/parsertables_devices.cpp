// SPDX-License-Identifier: MIT
//
// The device line of each part family, for every tier.

#include "translate/parsertables.h"

namespace IPSERDESIP {
namespace parsertables {
namespace {

constexpr DeviceLine DEVICE_LINE_ROWS[] = {
    {"RK9C-370D/RK9C-370Q", "device = \"RK9C-370\""},
    {"RK9C-880D/RK9C-880E", "device = \"RK9C-880\""},
    {"RK9PC-880D/RK9PC-880E", "device = \"RK9PC-880\""},
    {"RK9C-440D/RK9C-440E", "device = \"RK9C-440\""},
    {"RK9C-90F/RK9C-90D/RK9LC-90F/RK9LMC-90F", "device = \"RK9C-90\""},
    {"RK9MC-90F/RK9MC-90D", "device = \"RK9MC-90\""},
};

} // namespace

constexpr Rows<DeviceLine> DEVICE_LINES = DEVICE_LINE_ROWS;

} // namespace parsertables
} // namespace IPSERDESIP
