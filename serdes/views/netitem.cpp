// SPDX-License-Identifier: MIT
#include "views/netitem.h"

#include "views/schematiclayout.h"

#include <QPainter>
#include <QPainterPathStroker>

namespace IPSERDESIP {

using namespace schematic;

NetItem::NetItem(QPainterPath path, QGraphicsItem *parent)
    : QGraphicsItem(parent)
    , path(std::move(path))
{
    setFlag(QGraphicsItem::ItemIsSelectable, true);
    // Room for the pen, so that a straight wire still has an area.
    bounds = this->path.boundingRect().adjusted(-2, -2, 2, 2);
    QPainterPathStroker stroker;
    stroker.setWidth(WIRE_PICK_WIDTH);
    strokeShape = stroker.createStroke(this->path);
}

QRectF NetItem::boundingRect() const
{
    return bounds;
}

QPainterPath NetItem::shape() const
{
    return strokeShape;
}

void NetItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->save();
    QPen pen;
    if (isSelected()) {
        setZValue(1.0);
        pen.setColor(Qt::red);
        pen.setWidth(SELECTED_WIRE_PEN_WIDTH);
    } else {
        setZValue(0.0);
        pen.setColor(QColor(WIRE));
        pen.setWidth(WIRE_PEN_WIDTH);
    }
    painter->setPen(pen);
    // Arrowheads stay outlines.
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(path);
    painter->restore();
}

} // namespace IPSERDESIP
