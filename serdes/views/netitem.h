// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"
#include "views/item.h"

#include <QColor>
#include <QGraphicsItem>
#include <QPainterPath>
#include <QRectF>

namespace IPSERDESIP {

// The wires leaving one node of the clock schematic, with their arrowheads,
// as one path. Drawn red and on top while selected.
class SERDESIP_TEST_EXPORT NetItem : public QGraphicsItem
{
public:
    enum { Type = NetItemType };

    explicit NetItem(QPainterPath path, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QColor m_color;
    QPainterPath path;
    QRectF bounds;
    QPainterPath strokeShape;
};

} // namespace IPSERDESIP
