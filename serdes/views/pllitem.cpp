// SPDX-License-Identifier: MIT
#include "views/pllitem.h"

#include "views/schematiclayout.h"

#include <QPainter>

namespace IPSERDESIP {

using namespace schematic;

PLLItem::PLLItem(QString label, QGraphicsItem *parent)
    : Item(parent)
    , label(std::move(label))
{
    color = QColor(NODE_IDLE);
}

QRectF PLLItem::boundingRect() const
{
    return QRectF(0, 0, NODE_WIDTH, NODE_HEIGHT);
}

void PLLItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    beginShape(painter);
    painter->drawRect(QRect(QPoint(0, 0), QPoint(NODE_WIDTH - 1, NODE_HEIGHT - 1)));
    endShape(painter, label, QRectF(LABEL_INSET, 0, NODE_WIDTH, NODE_HEIGHT));
}

QPointF PLLItem::inPointF() const
{
    return scenePos() + QPointF(0, NODE_HEIGHT / 2);
}

QPointF PLLItem::outPointF() const
{
    return scenePos() + QPointF(NODE_WIDTH, NODE_HEIGHT / 2);
}

void PLLItem::setColor(QColor color)
{
    this->color = color;
    update(boundingRect());
}

} // namespace IPSERDESIP
