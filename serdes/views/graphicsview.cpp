// SPDX-License-Identifier: MIT
#include "views/graphicsview.h"

#include "views/zoombuttons.h"

#include <QFocusEvent>
#include <QGraphicsItem>
#include <QResizeEvent>
#include <QToolButton>

#include <algorithm>

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

// The scene steps the focus through widgets only; the strip's tiles are plain
// items, so Tab and Backtab are walked here, then leave the strip.
void GraphicsView::focusInEvent(QFocusEvent *event)
{
    QGraphicsView::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    if (scene() && !scene()->focusItem()
        && (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason))
        stepTile(reason == Qt::TabFocusReason);
}

bool GraphicsView::focusNextPrevChild(bool next)
{
    if (hasFocus() && stepTile(next))
        return true;
    return QGraphicsView::focusNextPrevChild(next);
}

bool GraphicsView::stepTile(bool next)
{
    if (type != StripViewType || !scene())
        return false;
    QList<QGraphicsItem *> tiles;
    for (QGraphicsItem *item : scene()->items()) {
        if (!item->parentItem() && (item->flags() & QGraphicsItem::ItemIsFocusable))
            tiles << item;
    }
    std::sort(tiles.begin(), tiles.end(),
              [](const QGraphicsItem *a, const QGraphicsItem *b) { return a->x() < b->x(); });
    const int at = tiles.indexOf(scene()->focusItem());
    const int to = at < 0 ? (next ? 0 : tiles.size() - 1) : at + (next ? 1 : -1);
    if (to < 0 || to >= tiles.size())
        return false;
    tiles.at(to)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

} // namespace IPSERDESIP
