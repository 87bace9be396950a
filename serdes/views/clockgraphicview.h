// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QGraphicsView>
#include <QList>
#include <QPointF>
#include <QSize>

class QAction;
class QToolButton;

namespace IPSERDESIP {

// The canvas of the clock schematic: zoom by its buttons or Ctrl and the
// wheel, fit the whole drawing by its Fit button or the F key, pan by
// dragging with the middle button. It keeps every other press from the scene,
// so the drawing cannot be changed with the mouse. Until the drawing is
// zoomed, it stays fitted when the canvas changes size.
class SERDESIP_TEST_EXPORT clockGraphicView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit clockGraphicView(QWidget *parent = nullptr);

    // Returns the y for the next button above it.
    int updateButtonGeometry(QToolButton *button, int x, int y);
    // A button for `action`, stacked above the buttons there are.
    QToolButton *addCornerButton(QAction *action, const char *objectName);

    QToolButton *zoomOutButton;
    QToolButton *zoomInButton;
    QAction *fitAction;
    QSize viewSize;
    // Where the middle button last held the drawing, in scene coordinates.
    QPointF lastScenePos;

public slots:
    void zoomIn();
    void zoomOut();
    // Scales the whole scene to fill the viewport in one direction, centred.
    void fit();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void setScale(double scale);

    // Above the zoom buttons, from the bottom.
    QList<QToolButton *> m_cornerButtons;
    bool m_fitted = false;
};

} // namespace IPSERDESIP
