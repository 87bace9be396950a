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

#include <algorithm>

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

QColor colourOf(const Message &m)
{
    return QColor::fromHsvF(m.h, INSTANCE_SATURATION, INSTANCE_VALUE, INSTANCE_ALPHA);
}

// The values of a request's rows, each once and in row order; "0" and empty
// rows stand for none.
QStringList distinct(const QStringList &rows)
{
    QStringList values;
    for (const QString &row : rows) {
        if (!row.isEmpty() && row != QLatin1String("0") && !values.contains(row))
            values << row;
    }
    return values;
}

bool byName(const Message *a, const Message *b)
{
    return a->name < b->name;
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

// What an instance is, in a few lines for a tooltip.
QString serdesView::instanceText(const Message &m)
{
    QStringList tx;
    QStringList rx;
    for (int i = 0; i < m.lanes.size(); ++i) {
        tx << m.txRate(i);
        rx << m.rxRate(i);
    }
    QStringList refs;
    for (int i = 0; i < m.refs.size(); ++i)
        refs << tr("%1 at %2 MHz").arg(m.refs.at(i), m.refFreqs.value(i));
    const auto listed = [](const QStringList &values, const QString &unit) {
        const QStringList shown = distinct(values);
        return shown.isEmpty() ? tr("none") : unit.arg(shown.join(QLatin1String(", ")));
    };
    return tr("Instance %1, protocol %2\nLanes: %3\nPLL: %4\nReference: %5\nTX %6, RX %7")
        .arg(m.name, m.type, listed(m.lanes, QStringLiteral("%1")),
             listed(m.plls, QStringLiteral("%1")), listed(refs, QStringLiteral("%1")),
             listed(tx, tr("%1 Gbps")), listed(rx, tr("%1 Gbps")));
}

void serdesView::showPlaced()
{
    QMap<SerdesItem *, QList<const Message *>> onBox;
    for (const Message &m : qAsConst(placed)) {
        const auto put = [&onBox, &m](SerdesItem *box) {
            if (box && !onBox[box].contains(&m))
                onBox[box] << &m;
        };
        for (const QString &pll : m.plls)
            put(formStringToPLLItem(pll));
        for (const QString &lane : m.lanes)
            put(formStringToLaneItem(lane));
    }
    const auto show = [&onBox](SerdesItem *box, bool pll) {
        if (!box)
            return;
        QList<const Message *> on = onBox.value(box);
        QList<QColor> fills{on.isEmpty() ? QColor(Qt::transparent) : colourOf(*on.last())};
        std::sort(on.begin(), on.end(), byName);
        QStringList texts;
        for (const Message *m : qAsConst(on))
            texts << instanceText(*m);
        if (pll && on.size() > 1) {
            fills.clear();
            for (const Message *m : qAsConst(on))
                fills << colourOf(*m);
        }
        box->setBrushColors(fills);
        box->setToolTip(texts.join(QLatin1String("\n\n")));
    };
    SerdesItem **const qplls[2] = {q0Qpll, q1Qpll};
    SerdesItem **const lanes[2] = {q0Lanes, q1Lanes};
    SerdesItem **const cplls[2] = {q0Cplls, q1Cplls};
    for (int q = 0; q < 2; ++q) {
        for (int n = 0; n < 2; ++n)
            show(qplls[q][n], true);
        for (int n = 0; n < 4; ++n) {
            show(lanes[q][n], false);
            show(cplls[q][n], true);
        }
    }
}

void serdesView::addItem(Message *m)
{
    if (!m)
        return;
    removePlaced(m->name);
    placed << *m;
    showPlaced();

    // The tile gets its place from the layout pass that its first paint asks
    // for.
    auto *tile
        = new SerdesItem(TILE_WIDTH, TILE_HEIGHT, true, false, Qt::black, colourOf(*m), m->name);
    tile->setToolTip(instanceText(*m));
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

void serdesView::removePlaced(const QString &name)
{
    placed.erase(std::remove_if(placed.begin(), placed.end(),
                                [&name](const Message &m) { return m.name == name; }),
                 placed.end());
}

void serdesView::deleteItem(Message *m)
{
    if (!m)
        return;
    removePlaced(m->name);
    showPlaced();
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
    if (Utils::ask(this, tr("Delete Instance"), tr("Delete instance %1?").arg(name),
                   QMessageBox::Ok | QMessageBox::Cancel)
        == QMessageBox::Ok)
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
