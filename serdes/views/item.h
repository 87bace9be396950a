// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QColor>
#include <QGraphicsItem>
#include <QList>
#include <QString>

class QBrush;
class QPainter;
class QPen;

namespace IPSERDESIP {

// QGraphicsItem::type() of the clock schematic's items.
enum SchematicItemType {
    LineItemType = QGraphicsItem::UserType + 1,
    PLLItemType,
    MuxItemType,
    RefClkItemType,
    BoxItemType,
    NetItemType,
    NoteItemType,
};

// A node of the clock schematic: a fixed shape with an in point on its left
// and an out point on its right, in scene coordinates, and the nodes that
// wires join it to. The kinds of node differ only in their shape, which
// follows from the kind.
class SERDESIP_TEST_EXPORT Item : public QGraphicsItem
{
public:
    Item(SchematicItemType kind, QString label, QGraphicsItem *parent = nullptr);
    ~Item() override;

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return m_kind; }

    QPointF inPointF() const;
    QPointF outPointF() const;
    void setColor(QColor color);

    QString label;
    QColor color;
    QList<Item *> outs;
    QList<Item *> ins;
    // Set for sources, muxes and PLLs by the schematic's placement; no wire
    // leaves a line, so a line keeps 0.
    int trunkOffset = 0;

private:
    SchematicItemType m_kind;
};

// A node of one kind, with the Type that qgraphicsitem_cast asks for.
template<SchematicItemType Kind>
class NodeItem : public Item
{
public:
    enum { Type = Kind };

    explicit NodeItem(QString label, QGraphicsItem *parent = nullptr)
        : Item(Kind, std::move(label), parent)
    {}
};

// A reference clock source: a reference pin or a fabric clock, drawn as an
// arrow into the quad.
using RefClkItem = NodeItem<RefClkItemType>;
// A reference clock mux.
using MuxItem = NodeItem<MuxItemType>;
// A channel or quad PLL.
using PLLItem = NodeItem<PLLItemType>;
// A TX or RX line of a lane: where a clock path ends.
using LineItem = NodeItem<LineItemType>;

// A shape of the schematic, node or box, is drawn between these two. The
// first saves the painter and sets the outline's pen and the fill; the second
// writes `label` over `caption` in black in the captions' font and restores
// the painter.
void beginShape(QPainter *painter, const QPen &pen, const QBrush &fill);
void endShape(QPainter *painter, const QString &label, const QRectF &caption,
              Qt::Alignment alignment);

// Sets the captions' font: a fixed size in pixels, so that a picture saved
// without a window reads as the window does, whatever the platform's fonts.
void useCaptionFont(QPainter *painter);

} // namespace IPSERDESIP
