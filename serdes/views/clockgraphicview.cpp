// SPDX-License-Identifier: MIT
#include "views/clockgraphicview.h"

#include "views/schematiclayout.h"
#include "views/zoombuttons.h"

#include <QMouseEvent>
#include <QResizeEvent>
#include <QToolButton>
#include <QWheelEvent>

namespace IPSERDESIP {

using namespace schematic;

clockGraphicView::clockGraphicView(QWidget *parent)
    : QGraphicsView(parent)
    , lastScenePos(0, 0)
{
    setTransformationAnchor(QGraphicsView::AnchorUnderMouse);
    zoomInButton
        = zoombuttons::create(this, zoombuttons::ZOOM_IN_ICON, tr("Zoom in"), "zoomInButton");
    zoomOutButton
        = zoombuttons::create(this, zoombuttons::ZOOM_OUT_ICON, tr("Zoom out"), "zoomOutButton");
    connect(zoomInButton, &QToolButton::clicked, this, &clockGraphicView::zoomIn);
    connect(zoomOutButton, &QToolButton::clicked, this, &clockGraphicView::zoomOut);
}

int clockGraphicView::updateButtonGeometry(QToolButton *button, int x, int y)
{
    return zoombuttons::place(button, x, y);
}

// The scale is uniform, so the horizontal factor stands for both.
void clockGraphicView::setScale(double scale)
{
    QTransform t = transform();
    t.reset();
    t.scale(scale, scale);
    setTransform(t, false);
}

void clockGraphicView::zoomIn()
{
    setScale(qMin(transform().m11() * ZOOM_IN_STEP, ZOOM_MAX));
}

void clockGraphicView::zoomOut()
{
    setScale(qMax(transform().m11() * ZOOM_OUT_STEP, ZOOM_MIN));
}

void clockGraphicView::resizeEvent(QResizeEvent *event)
{
    viewSize = event->size();
    int x = 0;
    int y = 0;
    zoombuttons::corner(this, x, y);
    y = updateButtonGeometry(zoomOutButton, x, y);
    updateButtonGeometry(zoomInButton, x, y);
    QGraphicsView::resizeEvent(event);
}

void clockGraphicView::wheelEvent(QWheelEvent *event)
{
    if (event->modifiers() != Qt::ControlModifier) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    // The wheel's own axis: a tilted wheel turns mostly one way.
    const QPoint angle = event->angleDelta();
    const int delta = qAbs(angle.x()) > qAbs(angle.y()) ? angle.x() : angle.y();
    if (delta > 0)
        zoomIn();
    else if (delta < 0)
        zoomOut();
    event->accept();
}

// Only the middle button acts, and no press reaches the scene: nothing in
// the drawing can be selected or moved.
void clockGraphicView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::MiddleButton)
        return;
    lastScenePos = mapToScene(event->pos());
    setCursor(Qt::ClosedHandCursor);
}

void clockGraphicView::mouseMoveEvent(QMouseEvent *event)
{
    if (cursor().shape() == Qt::ClosedHandCursor) {
        const QPointF p = mapToScene(event->pos());
        translate(p.x() - lastScenePos.x(), p.y() - lastScenePos.y());
        lastScenePos = p;
    }
    QGraphicsView::mouseMoveEvent(event);
}

void clockGraphicView::mouseReleaseEvent(QMouseEvent *event)
{
    QGraphicsView::mouseReleaseEvent(event);
    if (event->button() == Qt::MiddleButton)
        setCursor(Qt::ArrowCursor);
}

} // namespace IPSERDESIP
