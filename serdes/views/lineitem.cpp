// SPDX-License-Identifier: MIT
#include "views/lineitem.h"

#include "views/schematiclayout.h"

#include <QPainter>

namespace IPSERDESIP {

using namespace schematic;

LineItem::LineItem(QString label, QGraphicsItem *parent)
    : Item(parent)
    , label(std::move(label))
{
    color = QColor(NODE_IDLE);
}

QRectF LineItem::boundingRect() const
{
    return QRectF(0, 0, NODE_WIDTH, NODE_HEIGHT);
}

void LineItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    beginShape(painter);
    painter->drawRect(QRect(QPoint(0, 0), QPoint(NODE_WIDTH - 1, NODE_HEIGHT - 1)));
    endShape(painter, label, QRectF(LABEL_INSET, 0, NODE_WIDTH, NODE_HEIGHT));
}

QPointF LineItem::inPointF() const
{
    return scenePos() + QPointF(0, NODE_HEIGHT / 2);
}

QPointF LineItem::outPointF() const
{
    return scenePos() + QPointF(NODE_WIDTH, NODE_HEIGHT / 2);
}

void LineItem::setColor(QColor color)
{
    this->color = color;
    update(boundingRect());
}

} // namespace IPSERDESIP
