// SPDX-License-Identifier: MIT
//
// The clock schematic: its nodes per tier, the wires, branch dots, notes and
// colours drawn from a connection list and labels, the canvas's zoom, fit and
// mouse rules, and saved pictures.

#include "viewstesting.h"

#include "views/boxitem.h"
#include "views/clockgraphicview.h"
#include "views/clockschematicview.h"
#include "views/item.h"
#include "views/netitem.h"

#include <QAction>
#include <QFileDialog>
#include <QGraphicsScene>
#include <QLayout>
#include <QLocale>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace IPSERDESIP;
using namespace viewstesting;

using Connections = QList<QPair<QString, QString>>;

namespace {

const QColor IDLE(148, 181, 212);
const QColor ON_PATH(255, 230, 102);

// Node keys by the colour they show, sorted.
QStringList nodesIn(const clockSchematicView &view, const QColor &colour)
{
    QStringList keys;
    for (auto it = view.items.cbegin(); it != view.items.cend(); ++it) {
        if (it.value()->color == colour)
            keys << it.key();
    }
    keys.sort();
    return keys;
}

// A path as "M x,y L x,y ...", one letter per element: M a move, L a line.
QString pathText(const QPainterPath &path)
{
    QStringList parts;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        parts << QStringLiteral("%1 %2,%3").arg(e.isMoveTo() ? 'M' : 'L').arg(e.x).arg(e.y);
    }
    return parts.join(QLatin1Char(' '));
}

// Counts the windows that are shown while it is installed.
class ShownWindows : public QObject
{
public:
    ShownWindows() { qApp->installEventFilter(this); }
    ~ShownWindows() override { qApp->removeEventFilter(this); }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Show && object->isWidgetType()
            && static_cast<QWidget *>(object)->isWindow())
            ++count;
        return false;
    }
    int count = 0;
};

QString rectText(const QRectF &r)
{
    return QStringLiteral("%1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

template<typename T>
int countOf(const QGraphicsScene *scene)
{
    int n = 0;
    for (QGraphicsItem *item : scene->items())
        n += qgraphicsitem_cast<T *>(item) ? 1 : 0;
    return n;
}

} // namespace

class tst_ViewsSchematic : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void nodesPerTier_data();
    void nodesPerTier();
    void geometry();
    void routing_data();
    void routing();
    void notes_data();
    void notes();
    void zoom_data();
    void zoom();
    void fit_data();
    void fit();
    void mouse();
    void saveImage_data();
    void saveImage();
    void saveKeySequence();
};

void tst_ViewsSchematic::nodesPerTier_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QVector<int>>("kinds"); // sources, muxes, PLLs, lines
    QTest::addColumn<int>("boxes");
    QTest::addColumn<int>("height");
    QTest::addColumn<QStringList>("placed"); // "KEY x,y trunkOffset"

    QTest::newRow("370k") << "RK9C-370Q" << QVector<int>{8, 4, 6, 8} << 5 << 740
                          << QStringList{"Q0_GPIO1 30,190 37", "Q0_MUX3 260,577 70",
                                         "Q0_QPLL0 530,310 50"};
    QTest::newRow("90k") << "RK9MC-90D" << QVector<int>{4, 2, 6, 8} << 5 << 740
                         << QStringList{"Q0_MCLK 30,650 77"};
    QTest::newRow("880k") << "RK9C-880D" << QVector<int>{4, 4, 12, 16} << 10 << 1460
                          << QStringList{"Q1_REFCLK1 30,1264 70", "Q0_MUX1 230,464 50",
                                         "Q1_QPLL1 530,1080 60", "Q1_LANE3_RX 730,1355 0"};
    QTest::newRow("unlisted") << "RK9C-90" << QVector<int>{4, 4, 12, 16} << 10 << 1460
                              << QStringList{};
}

void tst_ViewsSchematic::nodesPerTier()
{
    QFETCH(QString, family);
    QFETCH(QVector<int>, kinds);
    QFETCH(int, boxes);
    QFETCH(int, height);
    QFETCH(QStringList, placed);

    clockSchematicView view(deviceOf(family));
    QVector<int> counted(4);
    for (Item *item : qAsConst(view.items))
        ++counted[item->type() == RefClkItemType ? 0
                  : item->type() == MuxItemType  ? 1
                  : item->type() == PLLItemType  ? 2
                                                 : 3];
    QCOMPARE(counted, kinds);
    QCOMPARE(countOf<BoxItem>(view.scene), boxes);
    QCOMPARE(view.scene->sceneRect(), QRectF(0, 0, 930, height));
    QCOMPARE(view.scene->items().size(), view.items.size() + boxes);
    for (const QString &place : placed) {
        const QStringList f = place.split(QRegularExpression("[ ,]"));
        const Item *item = view.items.value(f.at(0));
        QVERIFY2(item, qPrintable(place));
        QCOMPARE(item->pos(), QPointF(f.at(1).toInt(), f.at(2).toInt()));
        QCOMPARE(item->trunkOffset, f.at(3).toInt());
    }
}

// A 370k device and the pair (Q0_REFCLK0, Q0_MUX0), point for point.
void tst_ViewsSchematic::geometry()
{
    clockSchematicView view(deviceOf("RK9C-370D"));
    view.setConnectionList({{"Q0_REFCLK0", "Q0_MUX0"}});
    view.updateView();

    QCOMPARE(view.nets.size(), 1);
    QCOMPARE(pathText(view.nets.first()->path),
             QStringLiteral("M 130,60 L 160,60 L 160,133 L 250,133 "
                            "M 260,133 L 250,128 L 250,138 L 260,133"));
    QCOMPARE(view.nets.first()->boundingRect(), QRectF(128, 58, 134, 82));

    // The arrow's head reaches above its shaft; a straight wire keeps an area.
    QCOMPARE(RefClkItem("r").boundingRect(), QRectF(0, -10, 100, 40));
    QPainterPath straight(QPointF(10, 20));
    straight.lineTo(50, 20);
    NetItem net(straight);
    QCOMPARE(net.boundingRect(), QRectF(8, 18, 44, 4));
    QVERIFY(net.shape().contains(QPointF(30, 23.5)));
    QVERIFY(!net.shape().contains(QPointF(30, 24.5)));
}

// The dots where a net branches are worked out by hand from the layout: a
// node's out point is its right edge at mid-height, its trunk stands its
// offset further right, and a branch turns off the trunk at its target's
// mid-height.
void tst_ViewsSchematic::routing_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<Connections>("pairs");
    QTest::addColumn<int>("unknown");
    QTest::addColumn<QStringList>("onPath");
    QTest::addColumn<QStringList>("fanOut"); // key:outs, for every node with outs
    QTest::addColumn<QStringList>("dots");

    const QString ref0 = "Q0_REFCLK0", mux0 = "Q0_MUX0", mux1 = "Q0_MUX1", qpll0 = "Q0_QPLL0",
                  tx0 = "Q0_LANE0_TX", rx0 = "Q0_LANE0_RX", gpio1 = "Q0_GPIO1";

    // REFCLK0 out at 130,60, trunk at 160, branches to MUX0 at 133 and
    // turns to MUX1 at 276.
    QTest::newRow("one source, two targets, one net")
        << "RK9C-370D" << Connections{{ref0, mux0}, {ref0, mux1}} << 0
        << QStringList{mux0, mux1, ref0} << QStringList{"Q0_REFCLK0:2"} << QStringList{"160,133"};
    // MUX0 out at 330,267, trunk at 370, up to RX0 (120) and down to QPLL0
    // (325); REFCLK0 out at 130,187, trunk at 170, branches to MUX0 (267) on
    // its way over the bridge to Quad1's MUX1 (1194).
    QTest::newRow("a route from line to source")
        << "RK9C-880D"
        << Connections{{qpll0, tx0}, {mux0, qpll0}, {ref0, mux0}, {mux0, rx0}, {ref0, "Q1_MUX1"}}
        << 0 << QStringList{rx0, tx0, mux0, qpll0, ref0, "Q1_MUX1"}
        << QStringList{"Q0_MUX0:2", "Q0_QPLL0:1", "Q0_REFCLK0:2"}
        << QStringList{"170,267", "370,267"};
    QTest::newRow("repeated pair, one branch")
        << "RK9C-90F" << Connections{{ref0, mux0}, {ref0, mux0}} << 0 << QStringList{mux0, ref0}
        << QStringList{"Q0_REFCLK0:1"} << QStringList{};
    // GPIO1 out at 130,200, trunk at 167: its wire crosses REFCLK0's trunk
    // (160, from 60 to 276) without a dot.
    QTest::newRow("two sources of one target, a crossing")
        << "RK9C-370D" << Connections{{ref0, mux0}, {gpio1, mux0}, {ref0, mux1}} << 0
        << QStringList{gpio1, mux0, mux1, ref0} << QStringList{"Q0_GPIO1:1", "Q0_REFCLK0:2"}
        << QStringList{"160,133"};
    QTest::newRow("unknown ends and boxes leave the other end idle")
        << "RK9C-90F" << Connections{{"Q1_MUX0", qpll0}, {mux0, "Lane0"}, {ref0, mux1}} << 2
        << QStringList{mux1, ref0} << QStringList{"Q0_REFCLK0:1"} << QStringList{};
}

void tst_ViewsSchematic::routing()
{
    QFETCH(QString, family);
    QFETCH(Connections, pairs);
    QFETCH(int, unknown);
    QFETCH(QStringList, onPath);
    QFETCH(QStringList, fanOut);
    QFETCH(QStringList, dots);

    clockSchematicView view(deviceOf(family));
    view.setConnectionList(pairs);
    for (int i = 0; i < unknown; ++i)
        QTest::ignoreMessage(QtCriticalMsg, "unknown item");
    view.updateView();

    QCOMPARE(nodesIn(view, ON_PATH), onPath);
    QCOMPARE(nodesIn(view, IDLE).size(), view.items.size() - onPath.size());
    QStringList outs;
    int ins = 0, elements = 0;
    for (auto it = view.items.cbegin(); it != view.items.cend(); ++it) {
        if (!it.value()->outs.isEmpty())
            outs << QStringLiteral("%1:%2").arg(it.key()).arg(it.value()->outs.size());
        ins += it.value()->ins.size();
    }
    outs.sort();
    QCOMPARE(outs, fanOut);
    QCOMPARE(countOf<NetItem>(view.scene), fanOut.size());
    // Each branch is three legs and a head, eight path elements, and one in.
    QStringList found;
    for (NetItem *net : qAsConst(view.nets)) {
        elements += net->path.elementCount();
        for (const QPointF &p : net->junctions) {
            found << QStringLiteral("%1,%2").arg(p.x()).arg(p.y());
            QVERIFY(net->boundingRect().contains(QRectF(p.x() - 3, p.y() - 3, 6, 6)));
        }
    }
    QCOMPARE(elements, 8 * ins);
    found.sort();
    QCOMPARE(found, dots);

    // A new list draws nothing until the next update, which clears the old one.
    view.setConnectionList({});
    QCOMPARE(countOf<NetItem>(view.scene), fanOut.size());
    view.updateView();
    QCOMPARE(countOf<NetItem>(view.scene), 0);
    QVERIFY(view.nets.isEmpty());
    QCOMPARE(nodesIn(view, IDLE).size(), view.items.size());
    for (const Item *item : qAsConst(view.items))
        QVERIFY(item->outs.isEmpty() && item->ins.isEmpty());
}

void tst_ViewsSchematic::notes_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QRectF>("refclk0"); // where its note stands
    QTest::addRow("370k") << "RK9C-370D" << QRectF(32, 36, 88, 13);
    QTest::addRow("90k") << "RK9C-90F" << QRectF(32, 36, 88, 13);
    QTest::addRow("880k") << "RK9C-880D" << QRectF(32, 163, 88, 13);
}

// A note on every source and line stands clear of every node's shape; the
// Labels action hides and shows them.
void tst_ViewsSchematic::notes()
{
    QFETCH(QString, family);
    QFETCH(QRectF, refclk0);

    clockSchematicView view(deviceOf(family));
    QHash<QString, QString> labels{{"Q0_MUX0", "no room"}, {"Q9_NONE", "no node"}};
    QList<QRectF> shapes; // by hand: a source's shaft and head, any other node's box
    for (auto it = view.items.cbegin(); it != view.items.cend(); ++it) {
        const bool source = it.value()->type() == RefClkItemType;
        if (source || it.value()->type() == LineItemType)
            labels.insert(it.key(), source ? "156.25 MHz" : "10.3125 Gbps");
        const QPointF at = it.value()->pos();
        shapes << (source ? QRectF(at, QSizeF(90, 20)) : it.value()->sceneBoundingRect())
               << (source ? QRectF(at + QPointF(90, -10), QSizeF(10, 40)) : QRectF());
    }
    labels.insert("Q0_REFCLK1", "");
    view.setLabels(labels);
    view.updateView();
    QCOMPARE(view.notes.size(), labels.size() - 3);
    QStringList placed;
    for (const NoteItem *note : qAsConst(view.notes)) {
        const QRectF text = note->sceneBoundingRect();
        placed << rectText(note->mapRectToScene(note->rect));
        QVERIFY(view.scene->sceneRect().contains(text));
        for (const QRectF &shape : qAsConst(shapes))
            QVERIFY2(!text.intersects(shape), qPrintable(rectText(text) + " " + rectText(shape)));
    }
    // Above REFCLK0's shaft from its tail; above Lane1's TX line (730,205) and
    // below its RX line (730,240), flush with their right ends.
    for (const QString &rect :
         {rectText(refclk0), QString("730,191 100x13"), QString("730,271 100x13")})
        QVERIFY2(placed.contains(rect), qPrintable(rect));

    view.labelsAction->trigger();
    view.updateView();
    QVERIFY(!view.notes.first()->isVisible());
    view.labelsAction->trigger();
    QVERIFY(view.notes.last()->isVisible());
}

void tst_ViewsSchematic::zoom_data()
{
    QTest::addColumn<QString>("steps"); // + and - buttons; ^ and v Ctrl+wheel; s, w scroll
    QTest::addColumn<double>("scale");

    QTest::newRow("one step in") << "+" << 1.25;
    QTest::newRow("capped") << "++++++++" << 4.0;
    QTest::newRow("floored") << "------------" << 0.1;
    QTest::newRow("Ctrl+wheel at the cap") << "++++++++^" << 4.0;
    QTest::newRow("Ctrl+wheel down") << "v" << 0.8;
    QTest::newRow("Ctrl+Shift+wheel scrolls") << "s" << 1.0;
    QTest::newRow("wheel scrolls") << "w" << 1.0;
}

void tst_ViewsSchematic::zoom()
{
    QFETCH(QString, steps);
    QFETCH(double, scale);

    clockSchematicView view(deviceOf("RK9C-370D"));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    // From the drawing's own scale, whatever the window opened at.
    view.view->setTransform(QTransform());
    for (const char step : steps.toLatin1()) {
        if (step == '+' || step == '-') {
            QTest::mouseClick(step == '+' ? view.view->zoomInButton : view.view->zoomOutButton,
                              Qt::LeftButton);
            continue;
        }
        const bool ctrl = step == '^' || step == 'v';
        const Qt::KeyboardModifiers modifiers = step == 's'
                                                    ? Qt::ControlModifier | Qt::ShiftModifier
                                                : ctrl ? Qt::ControlModifier
                                                       : Qt::NoModifier;
        const QPointF at(view.view->viewport()->rect().center());
        QWheelEvent event(at, view.view->viewport()->mapToGlobal(at.toPoint()), QPoint(),
                          QPoint(0, step == 'v' ? -120 : 120), Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        event.setAccepted(false);
        QApplication::sendEvent(view.view->viewport(), &event);
        if (ctrl)
            QVERIFY(event.isAccepted());
    }
    const QTransform t = view.view->transform();
    QVERIFY2(t.m11() == scale && t.m22() == scale, qPrintable(QString::number(t.m11(), 'g', 17)));
}

void tst_ViewsSchematic::fit_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QSize>("window");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QRectF>("drawn");

    // The drawing is 930 wide and 740 high on one quad, 1460 on two; the
    // narrower ratio decides, and the drawing is centred the other way.
    QTest::newRow("wide") << "RK9C-370D" << QSize(930, 370) << 0.5 << QRectF(232.5, 0, 465, 370);
    QTest::newRow("tall") << "RK9C-370D" << QSize(465, 600) << 0.5 << QRectF(0, 115, 465, 370);
    QTest::newRow("two quads") << "RK9C-880D" << QSize(479, 438) << 0.3 << QRectF(100, 0, 279, 438);
    QTest::newRow("own size") << "RK9C-90F" << QSize(930, 740) << 1.0 << QRectF(0, 0, 930, 740);
}

// The window opens fitted, and the F key fits it again after a zoom.
void tst_ViewsSchematic::fit()
{
    QFETCH(QString, family);
    QFETCH(QSize, window);
    QFETCH(double, scale);
    QFETCH(QRectF, drawn);

    clockSchematicView view(deviceOf(family));
    // No margin and no frame: the viewport is the window.
    view.layout()->setContentsMargins(0, 0, 0, 0);
    view.view->setFrameShape(QFrame::NoFrame);
    view.resize(window);
    view.show();
    QApplication::setActiveWindow(&view);
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QVERIFY(view.findChild<QToolButton *>("fitButton")->toolTip().contains("(F)"));
    for (int pass = 0; pass < 2; ++pass) {
        // Scroll bars a zoom brought go; the view centres on whole pixels.
        QTRY_COMPARE(view.view->viewport()->size(), window);
        QCOMPARE(view.view->transform().m11(), scale);
        const QRectF at = view.view->viewportTransform().mapRect(view.scene->sceneRect());
        QCOMPARE(at.size(), drawn.size());
        QVERIFY2((at.topLeft() - drawn.topLeft()).manhattanLength() <= 1, qPrintable(rectText(at)));
        view.view->zoomIn();
        QTest::keyClick(&view, Qt::Key_F);
    }
}

void tst_ViewsSchematic::mouse()
{
    clockSchematicView view(deviceOf("RK9C-370D"));
    view.setConnectionList({{"Q0_REFCLK0", "Q0_MUX0"}});
    view.updateView();
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QWidget *viewport = view.view->viewport();
    NetItem *net = view.nets.first();
    const QPoint onWire = view.view->mapFromScene(QPointF(160, 100));
    QVERIFY(net->shape().contains(QPointF(160, 100)));

    // The left button reaches nothing in the scene.
    QTest::mouseClick(viewport, Qt::LeftButton, {}, onWire);
    QVERIFY(!net->isSelected());
    QCOMPARE(view.view->cursor().shape(), Qt::ArrowCursor);

    QTest::mousePress(viewport, Qt::MiddleButton, {}, onWire);
    QCOMPARE(view.view->cursor().shape(), Qt::ClosedHandCursor);
    QCOMPARE(view.view->lastScenePos, QPointF(view.view->mapToScene(onWire)));
    // Letting go of another button keeps the drag on.
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, onWire);
    QCOMPARE(view.view->cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseRelease(viewport, Qt::MiddleButton, {}, onWire);
    QCOMPARE(view.view->cursor().shape(), Qt::ArrowCursor);
    QVERIFY(!net->isSelected());
}

void tst_ViewsSchematic::saveImage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("windowless");
    QTest::addColumn<bool>("saved");

    QTest::newRow("svg") << "schematic.svg" << false << true;
    QTest::newRow("suffix in capitals") << "SCHEMATIC.PNG" << false << true;
    QTest::newRow("without a window") << "schematic.png" << true << true;
    QTest::newRow("other suffix") << "schematic.jpg" << true << false;
    QTest::newRow("no such folder") << "missing/schematic.svg" << false << false;
}

void tst_ViewsSchematic::saveImage()
{
    QFETCH(QString, name);
    QFETCH(bool, windowless);
    QFETCH(bool, saved);

    QTemporaryDir dir;
    const QString path = dir.filePath(name);
    const Connections pairs{{"Q0_REFCLK0", "Q0_MUX0"}, {"Q2_MUX0", "Q0_QPLL0"}};
    const QHash<QString, QString> labels{{"Q0_REFCLK0", "156.25 MHz"}};
    QTest::ignoreMessage(QtCriticalMsg, "unknown item");
    QString error;
    if (windowless) {
        ShownWindows shown;
        QCOMPARE(
            clockSchematicView::saveSchematic(deviceOf("RK9C-370D"), pairs, labels, path, error),
            saved);
        QCOMPARE(shown.count, 0);
    } else {
        // Zoomed in a window with its buttons: none of that is in the picture.
        clockSchematicView view(deviceOf("RK9C-370D"));
        view.setConnectionList(pairs);
        view.setLabels(labels);
        view.updateView();
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.view->zoomIn();
        QCOMPARE(view.saveImage(path, error), saved);
    }
    QCOMPARE(error.isEmpty(), saved);
    QCOMPARE(QFileInfo::exists(path), saved);
    if (!saved) {
        QVERIFY(error.contains(QDir::toNativeSeparators(path)));
    } else if (name.endsWith(QLatin1String(".svg"))) {
        QSvgRenderer svg(path);
        QVERIFY(svg.isValid());
        QCOMPARE(svg.viewBox(), QRect(0, 0, 930, 740));
    } else {
        const QImage image(path);
        QCOMPARE(image.size(), QSize(930, 740));
        // Inside the sources' shafts, left of their labels.
        QCOMPARE(QColor(image.pixel(33, 53)), ON_PATH);
        QCOMPARE(QColor(image.pixel(33, 123)), IDLE);
        QCOMPARE(QColor(image.pixel(5, 5)), QColor(Qt::white));
        // The note is written above REFCLK0's shaft, where the corner is blank.
        QVERIFY(image.copy(32, 36, 88, 13) != image.copy(0, 0, 88, 13));
        // The same picture as without a window.
        const QString other = dir.filePath("windowless.png");
        QTest::ignoreMessage(QtCriticalMsg, "unknown item");
        QVERIFY(
            clockSchematicView::saveSchematic(deviceOf("RK9C-370D"), pairs, labels, other, error));
        QCOMPARE(image, QImage(other));
    }
}

void tst_ViewsSchematic::saveKeySequence()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("by_key.svg");
    clockSchematicView view(deviceOf("RK9C-90F"));
    view.show();
    QApplication::setActiveWindow(&view);
    QVERIFY(QTest::qWaitForWindowActive(&view));

    QString offered;
    whenReady([&path, &offered] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        offered = dialog->nameFilters().join(QLatin1Char(';'));
        dialog->selectFile(path);
        static_cast<QDialog *>(dialog)->accept();
        return true;
    });
    QTest::keySequence(&view, QKeySequence::Save);
    QCOMPARE(offered, QStringLiteral("SVG image (*.svg);PNG image (*.png)"));
    QVERIFY(QSvgRenderer(path).isValid());
}

QTEST_MAIN(tst_ViewsSchematic)
#include "tst_viewsschematic.moc"
