// SPDX-License-Identifier: MIT
#include "views/zoombuttons.h"

#include <QAbstractScrollArea>
#include <QIcon>
#include <QStyle>
#include <QToolButton>

namespace IPSERDESIP {
namespace zoombuttons {

const char ZOOM_IN_ICON[] = ":/image/zoom_in.png";
const char ZOOM_OUT_ICON[] = ":/image/zoom_out.png";

QToolButton *create(QAbstractScrollArea *view, const char *icon, const QString &toolTip,
                    const char *objectName)
{
    auto *button = new QToolButton(view);
    button->setObjectName(QLatin1String(objectName));
    button->setIcon(QIcon(QLatin1String(icon)));
    button->setToolTip(toolTip);
    return button;
}

void corner(const QAbstractScrollArea *view, int &x, int &y)
{
    const int extent = view->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    x = view->rect().width() - 2 - extent;
    y = view->rect().height() - 2 - extent;
}

int place(QToolButton *button, int x, int y)
{
    const QSize size = button->sizeHint();
    button->setGeometry(QRect(QPoint(x - size.width(), y - size.height()), QPoint(x - 1, y - 1)));
    return y - size.height() - button->style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing);
}

} // namespace zoombuttons
} // namespace IPSERDESIP
