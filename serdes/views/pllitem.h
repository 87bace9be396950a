// SPDX-License-Identifier: MIT
#pragma once

#include "views/item.h"

#include <QString>

namespace IPSERDESIP {

// A channel or quad PLL.
class SERDESIP_TEST_EXPORT PLLItem : public Item
{
public:
    enum { Type = PLLItemType };

    explicit PLLItem(QString label, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QPointF inPointF() const override;
    QPointF outPointF() const override;
    void setColor(QColor color) override;

    QString label;
};

} // namespace IPSERDESIP
