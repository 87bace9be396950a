// SPDX-License-Identifier: MIT
#include "views/boxitem.h"

#include "views/schematiclayout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>

namespace IPSERDESIP {

BoxItem::BoxItem(QString label, QRectF rect, QGraphicsItem *parent)
    : QGraphicsItem(parent)
    , label(std::move(label))
    , rect(rect)
{}

QRectF BoxItem::boundingRect() const
{
    return rect;
}

void BoxItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    setZValue(schematic::BOX_Z);
    QPen pen(Qt::black);
    pen.setWidth(schematic::BOX_PEN_WIDTH);
    beginShape(painter, pen, Qt::NoBrush);
    painter->drawRect(rect);
    endShape(painter, label, rect, Qt::AlignHCenter | Qt::AlignTop);
}

namespace {

QFont noteFont(QFont font)
{
    font.setPixelSize(schematic::NOTE_PIXELS);
    return font;
}

} // namespace

NoteItem::NoteItem(QString text, QRectF rect, Qt::Alignment alignment, QGraphicsItem *parent)
    : QGraphicsItem(parent)
    , text(std::move(text))
    , rect(rect)
    , alignment(alignment)
{
    // A text longer than its box runs over it and must still be repainted.
    m_bounds = QFontMetricsF(noteFont(QFont()))
                   .boundingRect(rect, static_cast<int>(alignment), this->text)
                   .united(rect);
}

QRectF NoteItem::boundingRect() const
{
    return m_bounds;
}

void NoteItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->save();
    painter->setPen(QColor(schematic::NOTE));
    painter->setFont(noteFont(painter->font()));
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::NoWrap);
    painter->drawText(rect, text, option);
    painter->restore();
}

} // namespace IPSERDESIP
