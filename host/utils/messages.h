// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QMessageBox>
#include <QString>
#include <QStringList>

class QWidget;

namespace Utils {

// Where a message box puts the lines listed below its text: in sight under
// the text, or behind the box's "Show Details..." button.
enum class ListShown { UnderText, OnRequest };

// Tells the user something in a modal box with the one button OK over
// `parent`, whose window icon the box carries: `text` under `title`, with
// `icon`, where NoIcon stands for the generator's exclamation picture, and
// `list` one item a line below the text.
//
// A process without widgets (a command-line run) can show no box: the text
// and the list, one item a line and indented, go to the message handler
// instead. Where widgets run on a platform without a screen the box comes up
// all the same, for the program that drives the run to answer (a batch run
// prints it on standard error).
HOSTPLATFORM_EXPORT void showMessage(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                     const QString &text, const QStringList &list = QStringList(),
                                     ListShown shown = ListShown::OnRequest);

// Asks `text` under `title` with the standard `buttons` and returns the one
// pressed. Without widgets the question goes to the message handler and the
// answer is `defaultButton`.
HOSTPLATFORM_EXPORT QMessageBox::StandardButton
ask(QWidget *parent, const QString &title, const QString &text,
    QMessageBox::StandardButtons buttons,
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

// What showMessage() does without widgets: a critical message for Critical
// and NoIcon, a warning for Warning, information otherwise.
HOSTPLATFORM_EXPORT void printMessage(QMessageBox::Icon icon, const QString &text,
                                      const QStringList &list = QStringList());

// Whether anybody could see a box shown now: not without widgets, nor on a
// platform that draws to no screen (offscreen, minimal).
HOSTPLATFORM_EXPORT bool hasDisplay();

} // namespace Utils
