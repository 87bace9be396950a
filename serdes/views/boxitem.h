// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"
#include "views/item.h"

#include <QGraphicsItem>
#include <QRectF>
#include <QString>

namespace IPSERDESIP {

// Scenery of the clock schematic: the outline of a quad or a lane, with its
// caption at the top. It goes behind everything on its first paint.
class SERDESIP_TEST_EXPORT BoxItem : public QGraphicsItem
{
public:
    enum { Type = BoxItemType };

    BoxItem(QString label, QRectF rect, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QString label;
    QRectF rect;
};

} // namespace IPSERDESIP
