// SPDX-License-Identifier: MIT
#include "views/item.h"

#include "views/schematiclayout.h"

#include <QFont>
#include <QPainter>
#include <QTextOption>

namespace IPSERDESIP {

Item::Item(QGraphicsItem *parent)
    : QGraphicsItem(parent)
{}

Item::~Item() = default;

void Item::beginShape(QPainter *painter) const
{
    painter->save();
    QPen pen(QColor(schematic::WIRE));
    pen.setWidth(schematic::NODE_PEN_WIDTH);
    painter->setBrush(QBrush(color, Qt::SolidPattern));
    painter->setPen(pen);
}

void Item::endShape(QPainter *painter, const QString &label, const QRectF &textRect) const
{
    painter->setBrush(QBrush());
    QPen pen = painter->pen();
    pen.setColor(Qt::black);
    painter->setPen(pen);
    useCaptionFont(painter);
    painter->drawText(textRect, label, QTextOption(Qt::AlignHCenter | Qt::AlignVCenter));
    painter->restore();
}

void useCaptionFont(QPainter *painter)
{
    QFont font = painter->font();
    font.setPixelSize(schematic::CAPTION_PIXELS);
    painter->setFont(font);
}

} // namespace IPSERDESIP
