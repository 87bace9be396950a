// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

namespace IPSERDESIP {

enum class DirectoryAnswer { Ready, Declined, NotMade };

// Where a dialog is about to write into `path`: an existing directory is
// overwritten only if the user agrees to the question titled `confirmTitle`;
// a missing one is made. Failing to make it is the caller's to tell, with the
// look of its own dialog.
DirectoryAnswer confirmDirectory(QWidget *parent, const QString &path,
                                 const QString &confirmTitle);

} // namespace IPSERDESIP
