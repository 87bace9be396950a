// SPDX-License-Identifier: MIT
#include "views/boxitem.h"

#include "views/schematiclayout.h"

#include <QPainter>

namespace IPSERDESIP {

BoxItem::BoxItem(QString label, QRectF rect, QGraphicsItem *parent)
    : QGraphicsItem(parent)
    , label(std::move(label))
    , rect(rect)
{}

QRectF BoxItem::boundingRect() const
{
    return rect;
}

void BoxItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    setZValue(schematic::BOX_Z);
    QPen pen(Qt::black);
    pen.setWidth(schematic::BOX_PEN_WIDTH);
    beginShape(painter, pen, Qt::NoBrush);
    painter->drawRect(rect);
    endShape(painter, label, rect, Qt::AlignHCenter | Qt::AlignTop);
}

} // namespace IPSERDESIP
