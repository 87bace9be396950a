// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

// Everything a protocol plug-in calls across the library boundary carries this
// macro; the rest of libSERDES_IP.so stays hidden.
#if defined(SERDES_IP_LIBRARY)
#define SERDESIP_EXPORT Q_DECL_EXPORT
#else
#define SERDESIP_EXPORT Q_DECL_IMPORT
#endif

// Classes that the product keeps to itself but the test programs drive
// directly. Builds without tests keep them hidden.
#if defined(SERDES_IP_LIBRARY) && defined(SERDESIP_WITH_TESTS)
#define SERDESIP_TEST_EXPORT Q_DECL_EXPORT
#elif defined(SERDESIP_WITH_TESTS)
#define SERDESIP_TEST_EXPORT Q_DECL_IMPORT
#else
#define SERDESIP_TEST_EXPORT
#endif
