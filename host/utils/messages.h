// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

namespace Utils {

// Tells the user of a failure: a modal message box where the process has
// widgets, the message handler where it has none (command-line runs).
void showError(QWidget *parent, const QString &text);

} // namespace Utils
