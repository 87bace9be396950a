// SPDX-License-Identifier: MIT
#pragma once

#include "views/item.h"

#include <QString>

namespace IPSERDESIP {

// A TX or RX line of a lane: where a clock path ends.
class SERDESIP_TEST_EXPORT LineItem : public Item
{
public:
    enum { Type = LineItemType };

    explicit LineItem(QString label, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QPointF inPointF() const override;
    QPointF outPointF() const override;
    void setColor(QColor color) override;

    QString label;
};

} // namespace IPSERDESIP
