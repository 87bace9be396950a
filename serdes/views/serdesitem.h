// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QColor>
#include <QGraphicsObject>
#include <QString>

class QAction;
class QMenu;
class QRect;

namespace IPSERDESIP {

// A box of the quad floorplan (a quad, lane or PLL), or, when `enable` is
// set, an instance's tile in the strip, which opens the instance on a double
// click and offers "Edit" and "Delete" on the right button.
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
};

} // namespace IPSERDESIP
