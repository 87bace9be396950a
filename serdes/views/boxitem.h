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

// A note of the clock schematic, such as a reference's frequency beside its
// source: a short grey text aligned in `rect`, which it may outgrow.
class SERDESIP_TEST_EXPORT NoteItem : public QGraphicsItem
{
public:
    enum { Type = NoteItemType };

    NoteItem(QString text, QRectF rect, Qt::Alignment alignment, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

    QString text;
    QRectF rect;
    Qt::Alignment alignment;

private:
    QRectF m_bounds;
};

} // namespace IPSERDESIP
