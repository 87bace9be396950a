// SPDX-License-Identifier: MIT
#pragma once

#include "views/item.h"

#include <QString>

namespace IPSERDESIP {

// A reference clock source: a reference pin or a fabric clock, drawn as an
// arrow into the quad.
class SERDESIP_TEST_EXPORT RefClkItem : public Item
{
public:
    enum { Type = RefClkItemType };

    explicit RefClkItem(QString label, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QPointF inPointF() const override;
    QPointF outPointF() const override;
    void setColor(QColor color) override;

    QString label;
};

} // namespace IPSERDESIP
