// SPDX-License-Identifier: MIT
//
// The clock schematic: its nodes per tier, the wires and colours drawn from a
// connection list, the canvas's zoom and mouse rules, and saved pictures.

#include "viewstesting.h"

#include "views/boxitem.h"
#include "views/clockgraphicview.h"
#include "views/clockschematicview.h"
#include "views/item.h"
#include "views/netitem.h"

#include <QFileDialog>
#include <QGraphicsScene>
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
    void zoom_data();
    void zoom();
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

void tst_ViewsSchematic::routing_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<Connections>("pairs");
    QTest::addColumn<int>("unknown");
    QTest::addColumn<QStringList>("onPath");
    QTest::addColumn<QStringList>("fanOut"); // key:outs, for every node with outs

    const QString ref0 = "Q0_REFCLK0", mux0 = "Q0_MUX0", mux1 = "Q0_MUX1", qpll0 = "Q0_QPLL0",
                  tx0 = "Q0_LANE0_TX", rx0 = "Q0_LANE0_RX";

    QTest::newRow("one source, two targets, one net")
        << "RK9C-370D" << Connections{{ref0, mux0}, {ref0, mux1}} << 0
        << QStringList{mux0, mux1, ref0} << QStringList{"Q0_REFCLK0:2"};
    QTest::newRow("a route from line to source")
        << "RK9C-880D" << Connections{{qpll0, tx0}, {mux0, qpll0}, {ref0, mux0}, {mux0, rx0}} << 0
        << QStringList{rx0, tx0, mux0, qpll0, ref0}
        << QStringList{"Q0_MUX0:2", "Q0_QPLL0:1", "Q0_REFCLK0:1"};
    QTest::newRow("repeated pair, one branch")
        << "RK9C-90F" << Connections{{ref0, mux0}, {ref0, mux0}} << 0 << QStringList{mux0, ref0}
        << QStringList{"Q0_REFCLK0:1"};
    QTest::newRow("two sources of one target")
        << "RK9C-370D" << Connections{{ref0, mux0}, {"Q0_GPIO1", mux0}} << 0
        << QStringList{"Q0_GPIO1", mux0, ref0} << QStringList{"Q0_GPIO1:1", "Q0_REFCLK0:1"};
    QTest::newRow("unknown ends and boxes leave the other end idle")
        << "RK9C-90F" << Connections{{"Q1_MUX0", qpll0}, {mux0, "Lane0"}, {ref0, mux1}} << 2
        << QStringList{mux1, ref0} << QStringList{"Q0_REFCLK0:1"};
}

void tst_ViewsSchematic::routing()
{
    QFETCH(QString, family);
    QFETCH(Connections, pairs);
    QFETCH(int, unknown);
    QFETCH(QStringList, onPath);
    QFETCH(QStringList, fanOut);

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
    for (NetItem *net : qAsConst(view.nets))
        elements += net->path.elementCount();
    QCOMPARE(elements, 8 * ins);

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
    QTest::ignoreMessage(QtCriticalMsg, "unknown item");
    QString error;
    if (windowless) {
        ShownWindows shown;
        QCOMPARE(clockSchematicView::saveSchematic(deviceOf("RK9C-370D"), pairs, path, error),
                 saved);
        QCOMPARE(shown.count, 0);
    } else {
        clockSchematicView view(deviceOf("RK9C-370D"));
        view.setConnectionList(pairs);
        view.updateView();
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
