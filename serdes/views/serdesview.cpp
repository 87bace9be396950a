// SPDX-License-Identifier: MIT
#include "views/serdesview.h"

#include "protocol/message.h"
#include "tiers/tier.h"
#include "views/floorplanlayout.h"
#include "views/graphicsview.h"
#include "views/serdesitem.h"

#include <utils/messages.h>

#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QMessageBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace IPSERDESIP {

using namespace floorplan;

namespace {

SerdesItem *floorplanBox(const Box &box, const QString &label, QGraphicsItem *parent)
{
    auto *item = new SerdesItem(box.width, box.height, false, false, Qt::black, Qt::transparent,
                                label, parent);
    item->setPos(box.x, box.y);
    return item;
}

void caption(const char *text, double x, double y, QGraphicsItem *parent)
{
    auto *item = new QGraphicsTextItem(QLatin1String(text), parent);
    item->setPos(x, y);
}

} // namespace

serdesView::serdesView(QWidget *parent)
    : QWidget(parent)
    , floorplanView(new GraphicsView(FloorplanViewType, this))
    , stripView(new GraphicsView(StripViewType, this))
    , floorplanScene(new QGraphicsScene(this))
    , stripScene(new QGraphicsScene(this))
{
    floorplanView->setScene(floorplanScene);
    stripView->setScene(stripScene);
    // Tiles line up from the left edge, where the first instance's stands,
    // however much room deleted tiles left in the scene.
    stripView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);
    layout->addWidget(stripView, 1);
    layout->addWidget(floorplanView, 5);

    connect(floorplanView->zoomInButton, &QToolButton::clicked, this, &serdesView::zoomIn);
    connect(floorplanView->zoomOutButton, &QToolButton::clicked, this, &serdesView::zoomOut);
    // Queued, so that tiles move after the paint that asked for it, once
    // however many tiles painted.
    connect(this, &serdesView::updateEditItemLayout, this, &serdesView::paintEditItem,
            Qt::QueuedConnection);
}

// The scenes are children of this widget and go with it, after the views.
serdesView::~serdesView()
{
    delete floorplanView;
    delete stripView;
}

void serdesView::setDevice(const DEV::DeviceArg &device)
{
    this->device = device;
}

void serdesView::initDisplayView()
{
    if (q0Qpll[0])
        return;
    initQuad0();
    if (tierDescription(tierOf(device.family)).quads > 1)
        initQuad1();
}

void serdesView::initQuad0()
{
    initQuad(0, q0Qpll, q0Lanes, q0Cplls);
}

void serdesView::initQuad1()
{
    initQuad(1, q1Qpll, q1Lanes, q1Cplls);
}

void serdesView::initQuad(int quad, SerdesItem *qplls[2], SerdesItem *lanes[4],
                          SerdesItem *cplls[4])
{
    SerdesItem *quadBox = floorplanBox(QUAD_BOXES[quad], QString(), nullptr);
    caption(QUAD_CAPTIONS[quad], QUAD_CAPTION_X, QUAD_CAPTION_Y, quadBox);
    for (int n = 0; n < 4; ++n) {
        lanes[n] = floorplanBox(LANE_BOXES[n], QString(), quadBox);
        cplls[n] = floorplanBox(CPLL_BOX, QLatin1String(CPLL_LABEL), lanes[n]);
        caption(LANE_CAPTIONS[n], LANE_CAPTION_X, LANE_CAPTION_Y, lanes[n]);
    }
    for (int n = 0; n < 2; ++n)
        qplls[n] = floorplanBox(QPLL_BOXES[n], QLatin1String(QPLL_LABELS[n]), quadBox);
    floorplanScene->addItem(quadBox);
}

SerdesItem *serdesView::formStringToPLLItem(const QString &name)
{
    SerdesItem **const qplls[2] = {q0Qpll, q1Qpll};
    SerdesItem **const cplls[2] = {q0Cplls, q1Cplls};
    for (int q = 0; q < 2; ++q) {
        for (int n = 0; n < 2; ++n) {
            if (name == QLatin1String(QPLL_NAMES[q][n]))
                return qplls[q][n];
        }
        for (int n = 0; n < 4; ++n) {
            if (name == QLatin1String(CPLL_NAMES[q][n]))
                return cplls[q][n];
        }
    }
    return nullptr;
}

SerdesItem *serdesView::formStringToLaneItem(const QString &name)
{
    SerdesItem **const lanes[2] = {q0Lanes, q1Lanes};
    for (int q = 0; q < 2; ++q) {
        for (int n = 0; n < 4; ++n) {
            if (name.contains(QLatin1String(LANE_NAMES[q][n])))
                return lanes[q][n];
        }
    }
    return nullptr;
}

void serdesView::setColour(const Message *m, const QColor &colour)
{
    for (const QString &pll : m->plls) {
        if (SerdesItem *item = formStringToPLLItem(pll))
            item->setBrushColor(colour);
    }
    for (const QString &lane : m->lanes) {
        if (SerdesItem *item = formStringToLaneItem(lane))
            item->setBrushColor(colour);
    }
}

// Instances are not checked against each other: a box two of them share
// shows the last one's colour.
void serdesView::addItem(Message *m)
{
    if (!m)
        return;
    const QColor colour
        = QColor::fromHsvF(m->h, INSTANCE_SATURATION, INSTANCE_VALUE, INSTANCE_ALPHA);
    setColour(m, colour);

    // The tile gets its place from the layout pass that its first paint asks
    // for.
    auto *tile = new SerdesItem(TILE_WIDTH, TILE_HEIGHT, true, false, Qt::black, colour, m->name);
    stripScene->addItem(tile);
    // Queued, so that the page never deletes a tile inside its own mouse
    // handler.
    connect(tile, &SerdesItem::onDelActionClicked, this, &serdesView::deleteEditItem,
            Qt::QueuedConnection);
    connect(tile, &SerdesItem::onEditActionClicked, this, &serdesView::openEditItem,
            Qt::QueuedConnection);
    connect(tile, &SerdesItem::paintFinished, this, &serdesView::onPaintEditItemEvent);

    // One tile per name: a tile left under the same name would stand for
    // nothing.
    if (SerdesItem *old = editItems.value(m->name)) {
        stripScene->removeItem(old);
        delete old;
    }
    editItems.insert(m->name, tile);
}

void serdesView::deleteItem(Message *m)
{
    if (!m)
        return;
    setColour(m, Qt::transparent);
    if (SerdesItem *tile = editItems.take(m->name)) {
        stripScene->removeItem(tile);
        delete tile;
        // The tiles right of it close the gap, whether they repaint or not.
        onPaintEditItemEvent();
    }
}

void serdesView::scaleFloorplan(double step, double limit)
{
    QTransform transform = floorplanView->transform();
    const auto scaled = [step, limit](double scale) {
        const double next = scale * step;
        return step > 1 ? qMin(next, limit) : qMax(next, limit);
    };
    const double sx = scaled(transform.m11());
    const double sy = scaled(transform.m22());
    transform.reset();
    transform.scale(sx, sy);
    floorplanView->setTransform(transform, false);
}

void serdesView::zoomOut()
{
    scaleFloorplan(ZOOM_OUT_STEP, ZOOM_MIN);
}

void serdesView::zoomIn()
{
    scaleFloorplan(ZOOM_IN_STEP, ZOOM_MAX);
}

void serdesView::deleteEditItem(const QString &name)
{
    const QString text = tr("Delete Item");
    if (Utils::ask(this, text, text, QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok)
        emit sigDeleteItem(name);
}

void serdesView::openEditItem(const QString &name)
{
    emit sigEditItem(name);
}

void serdesView::paintEditItem()
{
    const QList<SerdesItem *> tiles = editItems.values();
    double x = 0.0;
    for (SerdesItem *tile : tiles) {
        tile->setPos(x, 0);
        x += tile->width;
    }
    layoutPending = false;
}

void serdesView::onPaintEditItemEvent()
{
    if (layoutPending)
        return;
    layoutPending = true;
    emit updateEditItemLayout();
}

} // namespace IPSERDESIP
