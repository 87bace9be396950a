// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

class QWidget;

namespace Core {

class HOSTPLATFORM_EXPORT ViewManager
{
public:
    // The window that dialogs of plug-ins are parented to: the application's
    // main window, or null while there is none.
    static QWidget *dialogParent();
    static void setDialogParent(QWidget *parent);
};

} // namespace Core
