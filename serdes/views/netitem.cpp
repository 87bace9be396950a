// SPDX-License-Identifier: MIT
#include "views/netitem.h"

#include "views/schematiclayout.h"

#include <QPainter>
#include <QPainterPathStroker>

namespace IPSERDESIP {

using namespace schematic;

NetItem::NetItem(QPainterPath path, QList<QPointF> junctions, QGraphicsItem *parent)
    : QGraphicsItem(parent)
    , path(std::move(path))
    , junctions(std::move(junctions))
{
    setFlag(QGraphicsItem::ItemIsSelectable, true);
    // Room for the pen, so that a straight wire still has an area, and for
    // the dots, which lie on the path.
    const double margin = this->junctions.isEmpty() ? 2 : qMax(2.0, JUNCTION_DIAMETER / 2);
    bounds = this->path.boundingRect().adjusted(-margin, -margin, margin, margin);
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
    // The dots go over the wires, in their colour.
    painter->setPen(Qt::NoPen);
    painter->setBrush(pen.color());
    for (const QPointF &dot : qAsConst(junctions))
        painter->drawEllipse(dot, JUNCTION_DIAMETER / 2, JUNCTION_DIAMETER / 2);
    painter->restore();
}

} // namespace IPSERDESIP
