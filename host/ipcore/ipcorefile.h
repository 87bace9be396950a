// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"
#include "dev/devicearg.h"

#include <QStringList>

class QWidget;

namespace IPCore {

// The device lines of a module generator command file, one "-key value" a
// line, joined by line feeds.
HOSTPLATFORM_EXPORT QString modfileHeader(const DEV::DeviceArg &device);

// Writes `lines` to `path`, each ended by a line feed, in `codec` (UTF-8 when
// empty). The file is replaced only once everything is written. A failure is
// shown to the user in a message box over `parent` and reported as false.
HOSTPLATFORM_EXPORT bool generateFile(const QString &path, const QStringList &lines,
                                      QWidget *parent, const QString &codec);

// Makes `path` with all missing parents. A relative path is taken below
// `base`, or below the working directory when `base` is empty.
HOSTPLATFORM_EXPORT bool makeDirs(const QString &path, const QString &base);

// The reserved cell names of the device library: no module may take one.
HOSTPLATFORM_EXPORT QStringList getPrimitiveNames();

} // namespace IPCore
