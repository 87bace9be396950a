// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QColor>
#include <QGraphicsItem>
#include <QList>

class QPainter;

namespace IPSERDESIP {

// QGraphicsItem::type() of the clock schematic's items.
enum SchematicItemType {
    LineItemType = QGraphicsItem::UserType + 1,
    PLLItemType,
    MuxItemType,
    RefClkItemType,
    BoxItemType,
    NetItemType,
};

// A node of the clock schematic: a fixed shape with an in point on its left
// and an out point on its right, in scene coordinates, and the nodes that
// wires join it to.
class SERDESIP_TEST_EXPORT Item : public QGraphicsItem
{
public:
    explicit Item(QGraphicsItem *parent = nullptr);
    ~Item() override;

    virtual QPointF inPointF() const = 0;
    virtual QPointF outPointF() const = 0;
    virtual void setColor(QColor color) = 0;

    QColor color;
    QList<Item *> outs;
    QList<Item *> ins;
    // Set for sources, muxes and PLLs by the schematic's placement; no wire
    // leaves a line, so a line keeps 0.
    int trunkOffset = 0;

protected:
    // Saves the painter and sets the outline and the fill.
    void beginShape(QPainter *painter) const;
    // Writes the label and restores the painter.
    void endShape(QPainter *painter, const QString &label, const QRectF &textRect) const;
};

// Sets the captions' font: a fixed size in pixels, so that a picture saved
// without a window reads as the window does, whatever the platform's fonts.
void useCaptionFont(QPainter *painter);

} // namespace IPSERDESIP
