// SPDX-License-Identifier: MIT
#include "views/muxitem.h"

#include "views/schematiclayout.h"

#include <QPainter>

namespace IPSERDESIP {

using namespace schematic;

MuxItem::MuxItem(QString label, QGraphicsItem *parent)
    : Item(parent)
    , label(std::move(label))
{
    color = QColor(NODE_IDLE);
}

QRectF MuxItem::boundingRect() const
{
    return QRectF(0, 0, NODE_WIDTH, MUX_HEIGHT);
}

void MuxItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    beginShape(painter);
    painter->drawRect(QRect(QPoint(0, 0), QPoint(NODE_WIDTH - 1, MUX_HEIGHT - 1)));
    endShape(painter, label, QRectF(LABEL_INSET, 0, NODE_WIDTH, MUX_HEIGHT));
}

QPointF MuxItem::inPointF() const
{
    return scenePos() + QPointF(0, MUX_HEIGHT / 2);
}

QPointF MuxItem::outPointF() const
{
    return scenePos() + QPointF(NODE_WIDTH, MUX_HEIGHT / 2);
}

void MuxItem::setColor(QColor color)
{
    this->color = color;
    update(boundingRect());
}

} // namespace IPSERDESIP
