// SPDX-License-Identifier: MIT
#include "views/refclkitem.h"

#include "views/schematiclayout.h"

#include <QPainter>
#include <QPolygonF>

namespace IPSERDESIP {

using namespace schematic;

RefClkItem::RefClkItem(QString label, QGraphicsItem *parent)
    : Item(parent)
    , label(std::move(label))
{
    color = QColor(NODE_IDLE);
}

// The head reaches above the shaft, so the rectangle starts above 0.
QRectF RefClkItem::boundingRect() const
{
    return QRectF(0, REFCLK_TOP, NODE_WIDTH, REFCLK_HEIGHT);
}

void RefClkItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    QPolygonF arrow;
    for (const auto &point : REFCLK_ARROW)
        arrow << QPointF(point[0], point[1]);
    beginShape(painter);
    painter->drawPolygon(arrow, Qt::OddEvenFill);
    endShape(painter, label, QRectF(LABEL_INSET, 0, REFCLK_TEXT_WIDTH, REFCLK_SHAFT));
}

QPointF RefClkItem::inPointF() const
{
    return scenePos() + QPointF(0, REFCLK_SHAFT / 2);
}

QPointF RefClkItem::outPointF() const
{
    return scenePos() + QPointF(NODE_WIDTH, REFCLK_SHAFT / 2);
}

void RefClkItem::setColor(QColor color)
{
    this->color = color;
    update(boundingRect());
}

} // namespace IPSERDESIP
