// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QGraphicsView>
#include <QSize>

class QToolButton;

namespace IPSERDESIP {

enum ViewType {
    // The floorplan, with zoom buttons.
    FloorplanViewType = 0,
    // The strip of instance tiles.
    StripViewType = 1,
};

// A view of the quad floorplan page.
class SERDESIP_TEST_EXPORT GraphicsView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit GraphicsView(ViewType type, QWidget *parent = nullptr);

    // Returns the y for the next button above it.
    int updateButtonGeometry(QToolButton *button, int x, int y);

    QSize viewSize;
    QToolButton *zoomOutButton = nullptr;
    QToolButton *zoomInButton = nullptr;
    ViewType type;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    // Gives the keyboard's focus to the next (or previous) tile of the strip,
    // left to right; false when there is none.
    bool stepTile(bool next);
};

} // namespace IPSERDESIP
