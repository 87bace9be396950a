// SPDX-License-Identifier: MIT
#include "views/serdesitem.h"

#include <QCursor>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace IPSERDESIP {

namespace {

constexpr double CORNER_RADIUS = 10;
// A tile that its label overfills grows to the label's width plus this.
constexpr int LABEL_ROOM = 11;

} // namespace

SerdesItem::SerdesItem(int width, int height, bool enable, bool rounded, QColor pen, QColor brush,
                       const QString &name, QGraphicsItem *parent)
    : QGraphicsObject(parent)
    , width(width)
    , height(height)
    , enable(enable)
    , rounded(rounded)
    , textRect(new QRect)
    , menu(new QMenu)
    , penColor(pen)
    , m_brushColor(brush)
    , name(name)
{
    setFlags(QGraphicsItem::ItemIsSelectable);
    setAcceptHoverEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton);
    editAction = menu->addAction(tr("Edit"));
    delAction = menu->addAction(tr("Delete"));
}

SerdesItem::~SerdesItem()
{
    delete textRect;
    delete menu;
}

void SerdesItem::setWidth(int width)
{
    if (this->width == width)
        return;
    prepareGeometryChange();
    this->width = width;
    update();
}

void SerdesItem::setHeight(int height)
{
    if (this->height == height)
        return;
    prepareGeometryChange();
    this->height = height;
    update();
}

void SerdesItem::setEnable(bool enable)
{
    if (this->enable == enable)
        return;
    this->enable = enable;
    update();
}

void SerdesItem::setPenColor(QColor color)
{
    if (penColor == color)
        return;
    penColor = color;
    update();
}

void SerdesItem::setBrushColor(QColor color)
{
    if (m_brushColor == color)
        return;
    m_brushColor = color;
    update();
}

void SerdesItem::setConfigured(bool configured)
{
    if (this->configured == configured)
        return;
    this->configured = configured;
    update();
}

QColor SerdesItem::brushColor() const
{
    return m_brushColor;
}

QRectF SerdesItem::boundingRect() const
{
    return QRectF(0, 0, width, height);
}

void SerdesItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    // Floorplan boxes keep their own colours; only tiles answer the mouse.
    QColor pen = Qt::black;
    QColor brush = m_brushColor;
    if (!enable)
        pen = penColor;
    else if (configured)
        brush = Qt::darkGreen;
    else if (option->state & QStyle::State_MouseOver)
        brush = Qt::cyan;

    const QRect shape(0, 0, width, height);
    painter->save();
    painter->setPen(pen);
    painter->setBrush(QBrush(brush, Qt::SolidPattern));
    if (rounded) {
        painter->drawRoundedRect(shape, CORNER_RADIUS, CORNER_RADIUS, Qt::AbsoluteSize);
    } else {
        painter->eraseRect(shape);
        painter->drawRect(shape);
    }
    painter->restore();

    painter->save();
    if (!name.isEmpty()) {
        painter->setPen(Qt::black);
        painter->drawText(QRect(QPoint(1, 1), QPoint(width - 2, height - 2)),
                          Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextWordWrap, name, textRect);
        const int drawn = textRect->right() - textRect->left();
        if (width <= drawn)
            setWidth(drawn + LABEL_ROOM);
    }
    painter->restore();

    emit paintFinished();
}

void SerdesItem::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    if (event->button() != Qt::RightButton || !enable) {
        QGraphicsObject::mousePressEvent(event);
        return;
    }
    QAction *chosen = menu->exec(QCursor::pos());
    if (chosen == editAction)
        emit onEditActionClicked(name);
    else if (chosen == delAction)
        emit onDelActionClicked(name);
}

void SerdesItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    emit onEditActionClicked(name);
    QGraphicsObject::mouseDoubleClickEvent(event);
}

} // namespace IPSERDESIP
