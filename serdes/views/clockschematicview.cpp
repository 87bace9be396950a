// SPDX-License-Identifier: MIT
#include "views/clockschematicview.h"

#include "tiers/tierdata.h"
#include "views/boxitem.h"
#include "views/clockgraphicview.h"
#include "views/item.h"
#include "views/netitem.h"
#include "views/schematiclayout.h"

#include <utils/messages.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QImage>
#include <QImageWriter>
#include <QLineF>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPolygonF>
#include <QSaveFile>
#include <QScreen>
#include <QShortcut>
#include <QSvgGenerator>
#include <QVector>
#include <QtDebug>

#include <algorithm>

namespace IPSERDESIP {

using namespace schematic;

namespace {

const char SVG_SUFFIX[] = "svg";
const char PNG_SUFFIX[] = "png";

// The head at the end of a wire's last leg: a triangle whose tip lies one
// arrow length beyond the leg's end, in the leg's direction.
QPolygonF arrowHead(const QLineF &leg)
{
    // A leg of no length has no direction, and its head shrinks to a point.
    QLineF v = leg.length() > 0 ? leg.unitVector() : leg;
    if (!v.isNull())
        v.setLength(ARROW_LENGTH);
    v.translate(leg.dx(), leg.dy());
    QLineF n = v.normalVector();
    n.setLength(n.length() / 2);
    const QLineF n2 = n.normalVector().normalVector();
    QPolygonF head;
    head << v.p2() << n.p2() << n2.p2() << v.p2();
    return head;
}

// Where a net's wires branch: the ends of its legs from which wire runs in
// three or four of the four directions. Every branch runs out along the same
// first leg and trunk, so legs repeat and overlap, and directions are
// counted, not legs. Wires that cross meet at no leg's end and get no dot.
QList<QPointF> branchPoints(const QVector<QLineF> &legs)
{
    QList<QPointF> seen;
    QList<QPointF> points;
    for (const QLineF &leg : legs) {
        for (const QPointF &p : {leg.p1(), leg.p2()}) {
            if (seen.contains(p))
                continue;
            seen << p;
            bool left = false, right = false, up = false, down = false;
            for (const QLineF &other : legs) {
                const double x1 = qMin(other.x1(), other.x2());
                const double x2 = qMax(other.x1(), other.x2());
                const double y1 = qMin(other.y1(), other.y2());
                const double y2 = qMax(other.y1(), other.y2());
                if (y1 == y2 && y1 == p.y()) {
                    left = left || (x1 < p.x() && p.x() <= x2);
                    right = right || (x1 <= p.x() && p.x() < x2);
                } else if (x1 == x2 && x1 == p.x()) {
                    up = up || (y1 < p.y() && p.y() <= y2);
                    down = down || (y1 <= p.y() && p.y() < y2);
                }
            }
            if (int(left) + int(right) + int(up) + int(down) >= 3)
                points << p;
        }
    }
    return points;
}

void renderScene(QGraphicsScene *scene, QPainter &painter)
{
    const QRectF source = scene->sceneRect();
    const QRectF target(QPointF(0, 0), source.size());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.fillRect(target, Qt::white);
    scene->render(&painter, target, source);
}

} // namespace

clockSchematicView::clockSchematicView(const DEV::DeviceArg &device, QWidget *parent)
    : QDialog(parent)
    , device(device)
{
    setWindowTitle(tr("View Clock Schematic"));
    setWindowFlags(windowFlags() | Qt::WindowMinMaxButtonsHint);
    view = new clockGraphicView(this);
    scene = new QGraphicsScene(this);
    view->setScene(scene);
    place();
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(view);
    // Opened at the drawing's own scale where the screen has room for it,
    // else as large as the screen allows, fitted.
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QSize drawing = scene->itemsBoundingRect().size().toSize() + QSize(60, 60);
        resize(drawing.boundedTo(screen->availableGeometry().size() * 0.9));
    }

    auto *save = new QShortcut(QKeySequence::Save, this);
    connect(save, &QShortcut::activated, this, &clockSchematicView::saveImageAs);
    labelsAction = new QAction(tr("Labels"), this);
    labelsAction->setCheckable(true);
    labelsAction->setChecked(true);
    labelsAction->setToolTip(tr("Show the reference clocks' frequencies and the lines' rates"));
    connect(labelsAction, &QAction::toggled, this, &clockSchematicView::showLabels);
    view->addCornerButton(labelsAction, "labelsButton");
}

clockSchematicView::~clockSchematicView()
{
    delete view;
    delete scene;
}

void clockSchematicView::addItem(Item *item, const QString &key, const QPointF &pos)
{
    item->setPos(pos);
    scene->addItem(item);
    items.insert(key, item);
}

void clockSchematicView::createLine(const QString &key, const QString &label, const QPointF &pos)
{
    addItem(new LineItem(label), key, pos);
}

void clockSchematicView::createPLL(const QString &key, const QString &label, const QPointF &pos)
{
    addItem(new PLLItem(label), key, pos);
}

void clockSchematicView::createMux(const QString &key, const QString &label, const QPointF &pos)
{
    addItem(new MuxItem(label), key, pos);
}

void clockSchematicView::createRefClk(const QString &key, const QString &label, const QPointF &pos)
{
    addItem(new RefClkItem(label), key, pos);
}

void clockSchematicView::createBox(const QString &label, const QRectF &rect, const QPointF &pos)
{
    auto *box = new BoxItem(label, rect);
    box->setPos(pos);
    scene->addItem(box);
}

void clockSchematicView::place()
{
    placeTier(tierData(tierOf(device.family)).drawing);
}

// Creation order is stacking order: per quad its sources, the quad's box, its
// muxes, then lanes and PLLs from the top, then the lines.
void clockSchematicView::placeTier(const TierLayout &layout)
{
    for (int q = 0; q < layout.quads; ++q) {
        const double y = QUAD_PITCH * q;
        for (std::size_t i = 0; i < layout.sourceCount; ++i) {
            const NodeRow &row = layout.sources[i];
            if (row.quad == q)
                createRefClk(QLatin1String(row.key), QLatin1String(row.label),
                             QPointF(row.x, row.y));
        }
        createBox(QLatin1String(QUAD_LABELS[q]), QRectF(0, 0, QUAD_BOX_WIDTH, QUAD_BOX_HEIGHT),
                  QPointF(QUAD_BOX_X, QUAD_BOX_Y + y));
        for (std::size_t i = 0; i < layout.muxCount; ++i) {
            const NodeRow &row = layout.muxes[i];
            if (row.quad == q)
                createMux(QLatin1String(row.key), QLatin1String(row.label), QPointF(row.x, row.y));
        }
        for (const QuadRow &row : QUAD_ROWS) {
            const QPointF pos(row.x, row.y + y);
            const QString label = QLatin1String(row.label);
            switch (row.kind) {
            case Kind::Box:
                createBox(label, QRectF(0, 0, row.width, row.height), pos);
                break;
            case Kind::Pll:
                createPLL(QLatin1String(row.key[q]), label, pos);
                break;
            case Kind::Line:
                createLine(QLatin1String(row.key[q]), label, pos);
                break;
            }
        }
    }
    scene->setSceneRect(0, 0, layout.width, layout.height);

    for (std::size_t i = 0; i < layout.offsetCount; ++i)
        items.value(QLatin1String(layout.offsets[i].key))->trunkOffset = layout.offsets[i].offset;
    for (int q = 0; q < layout.quads; ++q) {
        for (const QuadOffsetRow &row : QUAD_OFFSETS)
            items.value(QLatin1String(row.key[q]))->trunkOffset = row.offset;
    }
}

void clockSchematicView::setConnectionList(const QList<QPair<QString, QString>> &list)
{
    connections = list;
}

void clockSchematicView::setLabels(const QHash<QString, QString> &labels)
{
    this->labels = labels;
}

bool clockSchematicView::labelsShown() const
{
    return labelsAction->isChecked();
}

void clockSchematicView::showLabels(bool shown)
{
    labelsAction->setChecked(shown);
    for (NoteItem *note : qAsConst(notes))
        note->setVisible(shown);
}

void clockSchematicView::updateView()
{
    for (NetItem *net : qAsConst(nets))
        scene->removeItem(net);
    qDeleteAll(nets);
    nets.clear();
    for (NoteItem *note : qAsConst(notes))
        scene->removeItem(note);
    qDeleteAll(notes);
    notes.clear();

    for (Item *item : qAsConst(items)) {
        item->outs.clear();
        item->ins.clear();
        item->color = QColor(NODE_IDLE);
    }
    initConnection();
    route();
    placeNotes();
    // The colours were written past setColor(), so the nodes repaint here.
    scene->update();
    update();
}

void clockSchematicView::initConnection()
{
    for (const QPair<QString, QString> &pair : qAsConst(connections)) {
        Item *a = items.value(pair.first);
        Item *b = items.value(pair.second);
        if (!a || !b) {
            qCritical("unknown item");
            continue;
        }
        a->color = QColor(NODE_ON_PATH);
        b->color = QColor(NODE_ON_PATH);
        if (!a->outs.contains(b))
            a->outs.append(b);
        if (!b->ins.contains(a))
            b->ins.append(a);
    }
}

// One net per source node, its branches sharing one path: out of the source,
// along to the source's trunk, up or down the trunk, and along to just short
// of the target, where the arrowhead ends.
void clockSchematicView::route()
{
    // Name order, so that overlapping nets stack the same way in every run
    // and saved files come out alike.
    QStringList keys = items.keys();
    std::sort(keys.begin(), keys.end());
    for (const QString &key : qAsConst(keys)) {
        Item *source = items.value(key);
        if (source->outs.isEmpty())
            continue;
        QPainterPath path;
        QVector<QLineF> legs;
        for (Item *target : qAsConst(source->outs)) {
            const QPointF p = source->outPointF();
            const QPointF in = target->inPointF();
            const double trunk = p.x() + source->trunkOffset;
            const QPointF legEnd(in.x() - ARROW_LENGTH, in.y());
            path.moveTo(p);
            path.lineTo(trunk, p.y());
            path.lineTo(trunk, in.y());
            path.lineTo(legEnd);
            path.addPolygon(arrowHead(QLineF(QPointF(trunk, in.y()), legEnd)));
            legs << QLineF(p, QPointF(trunk, p.y())) << QLineF(trunk, p.y(), trunk, in.y())
                 << QLineF(QPointF(trunk, in.y()), legEnd);
        }
        auto *net = new NetItem(path, branchPoints(legs));
        nets.append(net);
        scene->addItem(net);
    }
}

// Notes stand beside their nodes as schematiclayout.h says, out of the way of
// captions and wires; a node of another kind has no room for one.
void clockSchematicView::placeNotes()
{
    // In name order, as the wires, so that saved files come out alike.
    QStringList keys = labels.keys();
    std::sort(keys.begin(), keys.end());
    for (const QString &key : qAsConst(keys)) {
        const Item *node = items.value(key);
        const QString text = labels.value(key);
        if (!node || text.isEmpty())
            continue;
        QRectF rect;
        Qt::Alignment alignment;
        if (node->type() == RefClkItemType) {
            rect = QRectF(LABEL_INSET, -NOTE_GAP - NOTE_HEIGHT, REFCLK_TEXT_WIDTH - LABEL_INSET,
                          NOTE_HEIGHT);
            alignment = Qt::AlignLeft | Qt::AlignBottom;
        } else if (node->type() == LineItemType) {
            const bool below = key.endsWith(QLatin1String("_RX"));
            rect = QRectF(0, below ? NODE_HEIGHT + NOTE_GAP : -NOTE_GAP - NOTE_HEIGHT, NODE_WIDTH,
                          NOTE_HEIGHT);
            alignment = Qt::AlignRight | (below ? Qt::AlignTop : Qt::AlignBottom);
        } else {
            continue;
        }
        auto *note = new NoteItem(text, rect, alignment);
        note->setPos(node->pos());
        note->setVisible(labelsShown());
        notes << note;
        scene->addItem(note);
    }
}

void clockSchematicView::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    view->fit();
}

bool clockSchematicView::saveImage(const QString &fileName, QString &error) const
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix != QLatin1String(SVG_SUFFIX) && suffix != QLatin1String(PNG_SUFFIX)) {
        error = tr("Cannot save \"%1\": the name must end in .svg or .png.")
                    .arg(QDir::toNativeSeparators(fileName));
        return false;
    }
    // Written aside and renamed at the end, so a failure never leaves half a
    // picture under the name.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        error = tr("Cannot write \"%1\": %2")
                    .arg(QDir::toNativeSeparators(fileName), file.errorString());
        return false;
    }
    const QSize size = scene->sceneRect().size().toSize();
    if (suffix == QLatin1String(SVG_SUFFIX)) {
        QSvgGenerator generator;
        generator.setOutputDevice(&file);
        generator.setSize(size);
        generator.setViewBox(QRect(QPoint(0, 0), size));
        generator.setTitle(windowTitle());
        generator.setDescription(device.name.isEmpty() ? device.family : device.name);
        QPainter painter;
        if (!painter.begin(&generator)) {
            error = tr("Cannot write \"%1\".").arg(QDir::toNativeSeparators(fileName));
            return false;
        }
        renderScene(scene, painter);
    } else {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        renderScene(scene, painter);
        painter.end();
        QImageWriter writer(&file, PNG_SUFFIX);
        if (!writer.write(image)) {
            error = tr("Cannot write \"%1\": %2")
                        .arg(QDir::toNativeSeparators(fileName), writer.errorString());
            return false;
        }
    }
    if (!file.commit()) {
        error = tr("Cannot write \"%1\": %2")
                    .arg(QDir::toNativeSeparators(fileName), file.errorString());
        return false;
    }
    return true;
}

bool clockSchematicView::saveSchematic(const DEV::DeviceArg &device,
                                       const QList<QPair<QString, QString>> &connections,
                                       const QHash<QString, QString> &labels,
                                       const QString &fileName, QString &error)
{
    clockSchematicView schematic(device);
    schematic.setConnectionList(connections);
    schematic.setLabels(labels);
    schematic.updateView();
    return schematic.saveImage(fileName, error);
}

void clockSchematicView::proposeSaveDirectory(const QString &dir)
{
    if (!m_saved)
        m_saveDirectory = dir;
}

void clockSchematicView::saveImageAs()
{
    QFileDialog dialog(this, tr("Save Clock Schematic"), m_saveDirectory);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const QString svgFilter = tr("SVG image (*.svg)");
    dialog.setNameFilters({svgFilter, tr("PNG image (*.png)")});
    // A name typed without a suffix takes that of the chosen filter.
    dialog.setDefaultSuffix(QLatin1String(SVG_SUFFIX));
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&dialog, svgFilter](const QString &filter) {
                dialog.setDefaultSuffix(
                    QLatin1String(filter == svgFilter ? SVG_SUFFIX : PNG_SUFFIX));
            });
    dialog.selectFile(QStringLiteral("clock_schematic.svg"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;

    const QString fileName = dialog.selectedFiles().constFirst();
    m_saveDirectory = QFileInfo(fileName).absolutePath();
    m_saved = true;
    QString error;
    if (!saveImage(fileName, error))
        Utils::showMessage(this, QMessageBox::Critical, tr("Error"), error);
}

void clockSchematicView::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    QAction *save = menu.addAction(tr("Save Image..."), this, &clockSchematicView::saveImageAs);
    save->setShortcut(QKeySequence::Save);
    menu.addSeparator();
    menu.addAction(view->fitAction);
    menu.addAction(labelsAction);
    menu.exec(event->globalPos());
}

} // namespace IPSERDESIP
