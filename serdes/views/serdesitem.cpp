// SPDX-License-Identifier: MIT
#include "views/serdesitem.h"

#include <QCursor>
#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace IPSERDESIP {

namespace {

constexpr double CORNER_RADIUS = 10;
// A tile that its label overfills grows to the label's width plus this.
constexpr int LABEL_ROOM = 11;
// Where one stripe of a shared box ends before the next begins, as a share
// of the width: small enough to draw a sharp edge.
constexpr double STRIPE_EDGE = 1e-6;
// The outline of a tile under the mouse (dashed) or with the keyboard's focus
// (solid). Black, and thick, because every instance's fill is light: no fill
// can be taken for it.
constexpr int HIGHLIGHT_WIDTH = 3;

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
    // Tab reaches the tiles (the strip's view steps through them).
    setFlag(QGraphicsItem::ItemIsFocusable, enable);
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
    setBrushColors({color});
}

void SerdesItem::setBrushColors(const QList<QColor> &colors)
{
    const QColor first = colors.value(0, Qt::transparent);
    const QList<QColor> split = colors.size() > 1 ? colors : QList<QColor>();
    if (m_brushColor == first && stripes == split)
        return;
    m_brushColor = first;
    stripes = split;
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
    // Floorplan boxes keep their own colours; only tiles answer the mouse and
    // the keyboard.
    QColor pen = Qt::black;
    QBrush brush(m_brushColor, Qt::SolidPattern);
    if (!enable)
        pen = penColor;
    else if (configured)
        brush = QBrush(Qt::darkGreen, Qt::SolidPattern);
    if (!stripes.isEmpty() && !(enable && configured)) {
        QLinearGradient split(0, 0, width, 0);
        const int n = stripes.size();
        for (int i = 0; i < n; ++i) {
            split.setColorAt(double(i) / n, stripes.at(i));
            split.setColorAt((i + 1.0) / n - STRIPE_EDGE, stripes.at(i));
        }
        brush = QBrush(split);
    }

    const QRect shape(0, 0, width, height);
    painter->save();
    painter->setPen(pen);
    painter->setBrush(brush);
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

    const bool hover = option->state & QStyle::State_MouseOver;
    const bool focus = option->state & QStyle::State_HasFocus;
    if (enable && (hover || focus)) {
        painter->save();
        painter->setPen(QPen(Qt::black, HIGHLIGHT_WIDTH, focus ? Qt::SolidLine : Qt::DashLine));
        painter->setBrush(Qt::NoBrush);
        const double inset = HIGHLIGHT_WIDTH / 2.0;
        painter->drawRect(QRectF(inset, inset, width - 2 * inset, height - 2 * inset));
        painter->restore();
    }

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

void SerdesItem::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (enable && (key == Qt::Key_Return || key == Qt::Key_Enter))
        emit onEditActionClicked(name);
    else if (enable && key == Qt::Key_Delete)
        emit onDelActionClicked(name);
    else
        QGraphicsObject::keyPressEvent(event);
}

void SerdesItem::focusInEvent(QFocusEvent *event)
{
    // A tile reached by Tab may stand beyond the strip's edge.
    ensureVisible();
    update();
    QGraphicsObject::focusInEvent(event);
}

void SerdesItem::focusOutEvent(QFocusEvent *event)
{
    update();
    QGraphicsObject::focusOutEvent(event);
}

} // namespace IPSERDESIP
