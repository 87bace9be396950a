// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QString>

namespace IPCore {

// Turns the netlist a synthesis run wrote at `input` into the netlist file a
// design uses, at `output`. Relative paths are taken below `base`, the core's
// directory. The input must be a synthesised Verilog netlist: complete
// modules and no compiler directive left. The output holds a header that
// names the modules, the device the run was made for and the input, then the
// modules as the tool wrote them.
//
// Returns 0 on success. Otherwise `error` says why, and the output is left
// as it was.
HOSTPLATFORM_EXPORT int decode(const QString &base, const QString &input, const QString &output,
                               QString &error);

} // namespace IPCore
