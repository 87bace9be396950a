// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QColor>
#include <QGraphicsObject>
#include <QList>
#include <QString>

class QAction;
class QMenu;
class QRect;

namespace IPSERDESIP {

// A box of the quad floorplan (a quad, lane or PLL), or, when `enable` is
// set, an instance's tile in the strip, which opens the instance on a double
// click or Enter, offers "Edit" and "Delete" on the right button and deletes
// on the Delete key.
class SERDESIP_TEST_EXPORT SerdesItem : public QGraphicsObject
{
    Q_OBJECT

public:
    SerdesItem(int width, int height, bool enable, bool rounded, QColor pen, QColor brush,
               const QString &name, QGraphicsItem *parent = nullptr);
    ~SerdesItem() override;

    void setWidth(int width);
    void setHeight(int height);
    void setEnable(bool enable);
    void setPenColor(QColor color);
    void setBrushColor(QColor color);
    // One colour fills the box; several share it in equal vertical stripes,
    // left to right.
    void setBrushColors(const QList<QColor> &colors);
    void setConfigured(bool configured);
    QColor brushColor() const;

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

    int width;
    int height;
    bool enable;
    bool configured = false;
    bool rounded;
    // The bounding rectangle of the label as last drawn.
    QRect *textRect;
    QMenu *menu;
    QColor penColor;
    // The fill; the plain name is its accessor's.
    QColor m_brushColor;
    // The stripes of a box that several instances share; empty otherwise.
    QList<QColor> stripes;
    QString name;
    QAction *editAction;
    QAction *delAction;

signals:
    void onEditActionClicked(const QString &name);
    void onDelActionClicked(const QString &name);
    void paintFinished();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
};

} // namespace IPSERDESIP
