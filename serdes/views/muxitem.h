// SPDX-License-Identifier: MIT
#pragma once

#include "views/item.h"

#include <QString>

namespace IPSERDESIP {

// A reference clock mux.
class SERDESIP_TEST_EXPORT MuxItem : public Item
{
public:
    enum { Type = MuxItemType };

    explicit MuxItem(QString label, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QPointF inPointF() const override;
    QPointF outPointF() const override;
    void setColor(QColor color) override;

    QString label;
};

} // namespace IPSERDESIP
