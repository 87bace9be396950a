// SPDX-License-Identifier: MIT
#pragma once

// The zoom buttons that both views keep in their lower right corner.

class QAbstractScrollArea;
class QString;
class QToolButton;

namespace IPSERDESIP {
namespace zoombuttons {

extern const char ZOOM_IN_ICON[];
extern const char ZOOM_OUT_ICON[];

// A button on `view`, named `objectName` so that it can be found.
QToolButton *create(QAbstractScrollArea *view, const char *icon, const QString &toolTip,
                    const char *objectName);

// The corner above which the buttons stack: clear of both scroll bars.
void corner(const QAbstractScrollArea *view, int &x, int &y);

// Puts the button's bottom right corner just above and left of (x, y) and
// returns the y for the next button above it.
int place(QToolButton *button, int x, int y);

} // namespace zoombuttons
} // namespace IPSERDESIP
