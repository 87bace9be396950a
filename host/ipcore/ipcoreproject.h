// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QStringList>

namespace IPCore {

// Adds a core's generated files to the environment's current project; see
// Core::ProjectManager::addFiles.
HOSTPLATFORM_EXPORT bool addFilesToProject(const QStringList &files);

} // namespace IPCore
