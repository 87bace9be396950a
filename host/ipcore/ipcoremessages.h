// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QStringList>

namespace IPCore {

// Shows `errors` under the headline `title` in a modal message box. Where
// nobody could see a box (no widgets, or a platform without a display) they
// go to the message handler instead, so that batch runs still report them.
HOSTPLATFORM_EXPORT void showErrorMsgs(const QString &title, const QStringList &errors);

} // namespace IPCore
