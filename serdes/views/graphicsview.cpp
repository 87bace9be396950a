// SPDX-License-Identifier: MIT
#include "views/graphicsview.h"

#include "views/zoombuttons.h"

#include <QResizeEvent>
#include <QToolButton>

namespace IPSERDESIP {

GraphicsView::GraphicsView(ViewType type, QWidget *parent)
    : QGraphicsView(parent)
    , type(type)
{
    if (type != FloorplanViewType)
        return;
    zoomInButton
        = zoombuttons::create(this, zoombuttons::ZOOM_IN_ICON, tr("Zoom in"), "zoomInButton");
    zoomOutButton
        = zoombuttons::create(this, zoombuttons::ZOOM_OUT_ICON, tr("Zoom out"), "zoomOutButton");
}

int GraphicsView::updateButtonGeometry(QToolButton *button, int x, int y)
{
    return zoombuttons::place(button, x, y);
}

void GraphicsView::mousePressEvent(QMouseEvent *event)
{
    QGraphicsView::mousePressEvent(event);
}

void GraphicsView::resizeEvent(QResizeEvent *event)
{
    viewSize = event->size();
    if (type == FloorplanViewType) {
        int x = 0;
        int y = 0;
        zoombuttons::corner(this, x, y);
        y = updateButtonGeometry(zoomOutButton, x, y);
        updateButtonGeometry(zoomInButton, x, y);
    }
    QGraphicsView::resizeEvent(event);
}

} // namespace IPSERDESIP
