// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QGraphicsView>
#include <QPointF>
#include <QSize>

class QToolButton;

namespace IPSERDESIP {

// The canvas of the clock schematic: zoom by its buttons or Ctrl and the
// wheel, pan by dragging with the middle button. It keeps every other press
// from the scene, so the drawing cannot be changed with the mouse.
class SERDESIP_TEST_EXPORT clockGraphicView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit clockGraphicView(QWidget *parent = nullptr);

    // Returns the y for the next button above it.
    int updateButtonGeometry(QToolButton *button, int x, int y);

    QToolButton *zoomOutButton;
    QToolButton *zoomInButton;
    QSize viewSize;
    // Where the middle button last held the drawing, in scene coordinates.
    QPointF lastScenePos;

public slots:
    void zoomIn();
    void zoomOut();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void setScale(double scale);
};

} // namespace IPSERDESIP
