// SPDX-License-Identifier: MIT
#include "views/clockgraphicview.h"

#include "views/schematiclayout.h"
#include "views/zoombuttons.h"

#include <QAction>
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
    fitAction = new QAction(tr("Fit"), this);
    fitAction->setShortcut(Qt::Key_F);
    fitAction->setToolTip(tr("Fit the whole drawing in the window (F)"));
    connect(fitAction, &QAction::triggered, this, &clockGraphicView::fit);
    // Where the view holds it, the key works anywhere in the window.
    addAction(fitAction);
    addCornerButton(fitAction, "fitButton");
}

int clockGraphicView::updateButtonGeometry(QToolButton *button, int x, int y)
{
    return zoombuttons::place(button, x, y);
}

QToolButton *clockGraphicView::addCornerButton(QAction *action, const char *objectName)
{
    auto *button = new QToolButton(this);
    button->setObjectName(QLatin1String(objectName));
    button->setDefaultAction(action);
    m_cornerButtons << button;
    return button;
}

// The scale is uniform, so the horizontal factor stands for both.
void clockGraphicView::setScale(double scale)
{
    QTransform t = transform();
    t.reset();
    t.scale(scale, scale);
    setTransform(t, false);
    m_fitted = false;
}

void clockGraphicView::zoomIn()
{
    setScale(qMin(transform().m11() * ZOOM_IN_STEP, ZOOM_MAX));
}

void clockGraphicView::zoomOut()
{
    setScale(qMax(transform().m11() * ZOOM_OUT_STEP, ZOOM_MIN));
}

// The room is that of a viewport without scroll bars: a scene that fills it
// exactly needs none.
void clockGraphicView::fit()
{
    const QRectF rect = sceneRect();
    const QSize room = maximumViewportSize();
    if (rect.isEmpty() || room.isEmpty())
        return;
    setScale(qMin(room.width() / rect.width(), room.height() / rect.height()));
    centerOn(rect.center());
    m_fitted = true;
}

void clockGraphicView::resizeEvent(QResizeEvent *event)
{
    viewSize = event->size();
    int x = 0;
    int y = 0;
    zoombuttons::corner(this, x, y);
    y = updateButtonGeometry(zoomOutButton, x, y);
    y = updateButtonGeometry(zoomInButton, x, y);
    for (QToolButton *button : qAsConst(m_cornerButtons))
        y = updateButtonGeometry(button, x, y);
    QGraphicsView::resizeEvent(event);
    if (m_fitted)
        fit();
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
