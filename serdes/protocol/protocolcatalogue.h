// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// The protocol plug-ins installed with the core: the files "lib*.so" exactly
// one folder below the core's IPlib folder, in the order the folders are
// found.
SERDESIP_TEST_EXPORT QStringList protocolPluginFiles();

// The installed protocols for a person who writes configurations as text:
// each protocol with its version and whether `device` can use it, or the
// plug-in that could not be loaded and why; then, for each protocol, the
// parameters its plug-in's metadata describes ("parameters" of the metadata
// object: key, kind, values or form, default, per quad, meaning), with the
// values of the device's tier where they differ by tier ("valuesByTier").
SERDESIP_TEST_EXPORT QString protocolListing(const DEV::DeviceArg &device);

} // namespace IPSERDESIP
