// SPDX-License-Identifier: MIT
#include "views/boxitem.h"

#include "views/schematiclayout.h"

#include <QPainter>
#include <QTextOption>

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
    painter->save();
    setZValue(schematic::BOX_Z);
    QPen pen(Qt::black);
    pen.setWidth(schematic::BOX_PEN_WIDTH);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(rect);
    useCaptionFont(painter);
    painter->drawText(rect, label, QTextOption(Qt::AlignHCenter | Qt::AlignTop));
    painter->restore();
}

} // namespace IPSERDESIP
