// SPDX-License-Identifier: MIT
#include "views/item.h"

#include "views/schematiclayout.h"

#include <QFont>
#include <QPainter>
#include <QPolygonF>
#include <QTextOption>

namespace IPSERDESIP {

using namespace schematic;

namespace {

// A kind of node in item coordinates: its extent, the box its caption is
// centred in, and the height at which wires meet it. A reference source is
// an arrow whose head reaches above its shaft; every other kind is a
// rectangle as large as its extent.
struct Shape
{
    QRectF bounds;
    QRectF caption;
    double wireY;
    bool arrow;
};

const Shape &shapeOf(SchematicItemType kind)
{
    static const Shape REFCLK{QRectF(0, REFCLK_TOP, NODE_WIDTH, REFCLK_HEIGHT),
                              QRectF(LABEL_INSET, 0, REFCLK_TEXT_WIDTH, REFCLK_SHAFT),
                              REFCLK_SHAFT / 2, true};
    static const Shape MUX{QRectF(0, 0, NODE_WIDTH, MUX_HEIGHT),
                           QRectF(LABEL_INSET, 0, NODE_WIDTH, MUX_HEIGHT), MUX_HEIGHT / 2, false};
    static const Shape LINE_OR_PLL{QRectF(0, 0, NODE_WIDTH, NODE_HEIGHT),
                                   QRectF(LABEL_INSET, 0, NODE_WIDTH, NODE_HEIGHT), NODE_HEIGHT / 2,
                                   false};
    return kind == RefClkItemType ? REFCLK : kind == MuxItemType ? MUX : LINE_OR_PLL;
}

} // namespace

Item::Item(SchematicItemType kind, QString label, QGraphicsItem *parent)
    : QGraphicsItem(parent)
    , label(std::move(label))
    , color(NODE_IDLE)
    , m_kind(kind)
{}

Item::~Item() = default;

QRectF Item::boundingRect() const
{
    return shapeOf(m_kind).bounds;
}

void Item::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    const Shape &shape = shapeOf(m_kind);
    QPen pen{QColor(WIRE)};
    pen.setWidth(NODE_PEN_WIDTH);
    beginShape(painter, pen, QBrush(color, Qt::SolidPattern));
    if (shape.arrow) {
        QPolygonF arrow;
        for (const auto &point : REFCLK_ARROW)
            arrow << QPointF(point[0], point[1]);
        painter->drawPolygon(arrow, Qt::OddEvenFill);
    } else {
        painter->drawRect(shape.bounds.toRect());
    }
    endShape(painter, label, shape.caption, Qt::AlignHCenter | Qt::AlignVCenter);
}

QPointF Item::inPointF() const
{
    return scenePos() + QPointF(0, shapeOf(m_kind).wireY);
}

QPointF Item::outPointF() const
{
    return scenePos() + QPointF(NODE_WIDTH, shapeOf(m_kind).wireY);
}

void Item::setColor(QColor color)
{
    this->color = color;
    update(boundingRect());
}

void beginShape(QPainter *painter, const QPen &pen, const QBrush &fill)
{
    painter->save();
    painter->setBrush(fill);
    painter->setPen(pen);
}

void endShape(QPainter *painter, const QString &label, const QRectF &caption,
              Qt::Alignment alignment)
{
    painter->setBrush(QBrush());
    QPen pen = painter->pen();
    pen.setColor(Qt::black);
    painter->setPen(pen);
    useCaptionFont(painter);
    painter->drawText(caption, label, QTextOption(alignment));
    painter->restore();
}

void useCaptionFont(QPainter *painter)
{
    QFont font = painter->font();
    font.setPixelSize(CAPTION_PIXELS);
    painter->setFont(font);
}

} // namespace IPSERDESIP
