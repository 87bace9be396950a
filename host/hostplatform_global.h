// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

#if defined(HOSTPLATFORM_LIBRARY)
#define HOSTPLATFORM_EXPORT Q_DECL_EXPORT
#else
#define HOSTPLATFORM_EXPORT Q_DECL_IMPORT
#endif
