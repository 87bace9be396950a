// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QString>

namespace Utils {

class HOSTPLATFORM_EXPORT FileUtils
{
public:
    // Copies `source` to `target`, replacing a file already there. On failure
    // the target is left as it was and `error`, when given, says why.
    static bool copyFile(const QString &source, const QString &target, QString *error);
};

} // namespace Utils
