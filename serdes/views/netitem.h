// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"
#include "views/item.h"

#include <QColor>
#include <QGraphicsItem>
#include <QList>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>

namespace IPSERDESIP {

// The wires leaving one node of the clock schematic, with their arrowheads,
// as one path, and a dot at each point where they branch. Drawn red and on
// top while selected.
class SERDESIP_TEST_EXPORT NetItem : public QGraphicsItem
{
public:
    enum { Type = NetItemType };

    explicit NetItem(QPainterPath path, QList<QPointF> junctions = {},
                     QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QColor m_color;
    QPainterPath path;
    // Points on the path, in scene coordinates.
    QList<QPointF> junctions;
    QRectF bounds;
    QPainterPath strokeShape;
};

} // namespace IPSERDESIP
