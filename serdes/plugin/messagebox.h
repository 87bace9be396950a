// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

namespace IPSERDESIP {

// A modal box with the one button OK, in the core's look: the module window
// icon, and the exclamation picture where `icon` is NoIcon.
void showOkBox(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text);

} // namespace IPSERDESIP
