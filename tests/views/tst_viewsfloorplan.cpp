// SPDX-License-Identifier: MIT
//
// The quad floorplan: its boxes per tier, the colours that requests give
// them, the strip of tiles with its menu, and the zoom limits.

#include "viewstesting.h"

#include "page/modalanswers.h"

#include "protocol/message.h"
#include "views/graphicsview.h"
#include "views/serdesitem.h"
#include "views/serdesview.h"

#include <QGraphicsScene>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QStyleOptionGraphicsItem>
#include <QToolButton>
#include <QtTest>

#include <memory>

using namespace IPSERDESIP;
using namespace viewstesting;

namespace {

std::unique_ptr<Message> request(const QString &name, const QStringList &plls,
                                 const QStringList &lanes, double h)
{
    auto m = std::make_unique<Message>();
    m->name = name;
    m->plls = plls;
    m->lanes = lanes;
    m->h = h;
    return m;
}

// An instance on QPLL0 of Quad0 from its REFCLK0 at 156.25 MHz.
std::unique_ptr<Message> onQpll0(const QString &name, const QString &type, const QStringList &lanes,
                                 const QString &tx, const QString &rx, double h)
{
    auto m = request(name, {}, lanes, h);
    m->type = type;
    for (int i = 0; i < lanes.size(); ++i) {
        m->plls << "Q0_QPLL0";
        m->refs << "Q0_REFCLK0";
        m->refFreqs << "156.25";
        m->rates << (tx == rx ? tx : "0");
        m->txRates << tx;
        m->rxRates << rx;
    }
    return m;
}

// The floorplan's boxes by model name; a quad that is not drawn has nulls.
QMap<QString, SerdesItem *> boxes(serdesView &view)
{
    QMap<QString, SerdesItem *> all;
    SerdesItem **const qplls[2] = {view.q0Qpll, view.q1Qpll};
    SerdesItem **const lanes[2] = {view.q0Lanes, view.q1Lanes};
    SerdesItem **const cplls[2] = {view.q0Cplls, view.q1Cplls};
    for (int q = 0; q < 2; ++q) {
        for (int n = 0; n < 2; ++n)
            all.insert(QStringLiteral("Q%1_QPLL%2").arg(q).arg(n), qplls[q][n]);
        for (int n = 0; n < 4; ++n) {
            all.insert(QStringLiteral("Q%1_LANE%2").arg(q).arg(n), lanes[q][n]);
            all.insert(QStringLiteral("Q%1_CPLL%2").arg(q).arg(n), cplls[q][n]);
        }
    }
    return all;
}

// Names of the boxes that show `colour`.
QStringList boxesIn(serdesView &view, const QColor &colour)
{
    QStringList names;
    const QMap<QString, SerdesItem *> all = boxes(view);
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (it.value() && it.value()->brushColor() == colour)
            names << it.key();
    }
    return names;
}

} // namespace

class tst_ViewsFloorplan : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void quadsPerTier_data();
    void quadsPerTier();
    void colours_data();
    void colours();
    void tilesInNameOrder();
    void layoutOncePerTurn();
    void whatRunsWhere_data();
    void whatRunsWhere();
    void tileActions_data();
    void tileActions();
    void paintColours_data();
    void paintColours();
    void zoomLimits_data();
    void zoomLimits();
};

void tst_ViewsFloorplan::quadsPerTier_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("quads");

    QTest::newRow("880k") << "RK9C-880D" << 2;
    QTest::newRow("370k") << "RK9C-370D" << 1;
    QTest::newRow("90k") << "RK9LMC-90F" << 1;
    QTest::newRow("unlisted") << "RK9-370D" << 2;
}

void tst_ViewsFloorplan::quadsPerTier()
{
    QFETCH(QString, family);
    QFETCH(int, quads);

    serdesView view;
    view.setDevice(deviceOf(family));
    view.initDisplayView();

    const auto topLevel = [&view] {
        int n = 0;
        for (QGraphicsItem *item : view.floorplanScene->items())
            n += item->parentItem() ? 0 : 1;
        return n;
    };
    QCOMPARE(topLevel(), quads);
    QCOMPARE(view.floorplanScene->itemsBoundingRect(), QRectF(0, 0, quads == 2 ? 700 : 340, 360));

    const QMap<QString, SerdesItem *> all = boxes(view);
    for (auto it = all.cbegin(); it != all.cend(); ++it)
        QCOMPARE(it.value() == nullptr, it.key().startsWith(QLatin1String("Q1")) && quads == 1);

    // Boxes stand where the quad's table puts them, relative to their parent.
    QCOMPARE(view.q0Qpll[1]->scenePos(), QPointF(175, 90));
    QCOMPARE(view.q0Lanes[2]->scenePos(), QPointF(175, 170));
    QCOMPARE(view.q0Cplls[3]->scenePos(), QPointF(265, 185));
    QCOMPARE(view.q0Cplls[3]->boundingRect(), QRectF(0, 0, 50, 45));
    if (quads == 2) {
        QCOMPARE(view.q1Qpll[0]->scenePos(), QPointF(435, 90));
        QCOMPARE(view.q1Cplls[0]->scenePos(), QPointF(385, 185));
    }

    // A second call draws nothing twice.
    const int drawn = view.floorplanScene->items().size();
    view.initDisplayView();
    QCOMPARE(topLevel(), quads);
    QCOMPARE(view.floorplanScene->items().size(), drawn);
}

void tst_ViewsFloorplan::colours_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QStringList>("plls");
    QTest::addColumn<QStringList>("lanes");
    QTest::addColumn<QStringList>("coloured");

    QTest::newRow("lanes on a quad PLL")
        << "RK9C-880D" << QStringList{"Q0_QPLL1", "Q0_QPLL1"} << QStringList{"Q0_LANE0", "Q0_LANE1"}
        << QStringList{"Q0_LANE0", "Q0_LANE1", "Q0_QPLL1"};
    QTest::newRow("line names colour their lane")
        << "RK9C-880D" << QStringList{"Q1_CPLL3", "0"} << QStringList{"Q1_LANE3_TX", "Q1_LANE3_RX"}
        << QStringList{"Q1_CPLL3", "Q1_LANE3"};
    QTest::newRow("unknown PLLs ignored, names match whole")
        << "RK9C-880D" << QStringList{"Q0_CPLL4", "Q0_QPLL0_X"}
        << QStringList{"Q0_LANE2", "Q0_LANE1"} << QStringList{"Q0_LANE1", "Q0_LANE2"};
    QTest::newRow("case matters") << "RK9C-880D" << QStringList{"q0_qpll0"}
                                  << QStringList{"q0_lane0"} << QStringList{};
    QTest::newRow("second quad absent")
        << "RK9C-90F" << QStringList{"Q1_QPLL0", "Q0_CPLL0"} << QStringList{"Q1_LANE0", "Q0_LANE0"}
        << QStringList{"Q0_CPLL0", "Q0_LANE0"};
}

void tst_ViewsFloorplan::colours()
{
    QFETCH(QString, family);
    QFETCH(QStringList, plls);
    QFETCH(QStringList, lanes);
    QFETCH(QStringList, coloured);

    serdesView view;
    view.setDevice(deviceOf(family));
    view.initDisplayView();
    auto m = request("inst", plls, lanes, 0.3);
    const QColor colour = QColor::fromHsvF(0.3, 0.5, 0.9, 1.0);
    view.addItem(m.get());
    QCOMPARE(boxesIn(view, colour), coloured);
    QCOMPARE(view.editItems.keys(), QStringList{"inst"});
    SerdesItem *tile = view.editItems.value("inst");
    QCOMPARE(tile->brushColor(), colour);
    QCOMPARE(tile->scene(), view.stripScene);
    QCOMPARE(tile->boundingRect(), QRectF(0, 0, 170, 60));

    view.deleteItem(m.get());
    QCOMPARE(boxesIn(view, colour), QStringList{});
    QCOMPARE(boxesIn(view, Qt::transparent).size(), family == QLatin1String("RK9C-90F") ? 10 : 20);
    QVERIFY(view.editItems.isEmpty());
    QVERIFY(view.stripScene->items().isEmpty());
}

void tst_ViewsFloorplan::tilesInNameOrder()
{
    serdesView view;
    view.resize(800, 500);
    view.setDevice(deviceOf("RK9C-880D"));
    view.initDisplayView();
    const QString longName = "an_instance_whose_name_does_not_fit_on_one_tile";
    std::vector<std::unique_ptr<Message>> messages;
    for (const QString &name : {QString("x9"), longName, QString("x10")}) {
        messages.push_back(request(name, {}, {}, 0.1));
        view.addItem(messages.back().get());
    }
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    // Tiles stand side by side in QString order, each as wide as it grew.
    const auto positions = [&view] {
        QStringList placed;
        for (SerdesItem *tile : view.editItems)
            placed << QStringLiteral("%1@%2").arg(tile->name).arg(tile->x());
        return placed.join(QLatin1Char(' '));
    };
    SerdesItem *wide = view.editItems.value(longName);
    QTRY_COMPARE(
        positions(),
        QStringLiteral("%1@0 x10@%2 x9@%3").arg(longName).arg(wide->width).arg(wide->width + 170));

    // Deleting the first tile closes the gap.
    view.deleteItem(messages.at(1).get());
    QTRY_COMPARE(positions(), QStringLiteral("x10@0 x9@170"));
}

void tst_ViewsFloorplan::layoutOncePerTurn()
{
    serdesView view;
    QSignalSpy requests(&view, &serdesView::updateEditItemLayout);
    for (int i = 0; i < 5; ++i)
        view.onPaintEditItemEvent();
    QCOMPARE(requests.count(), 1);
    QCoreApplication::processEvents();
    view.onPaintEditItemEvent();
    QCOMPARE(requests.count(), 2);
}

void tst_ViewsFloorplan::whatRunsWhere_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<bool>("xauiDeleted");
    QTest::addColumn<QList<QColor>>("stripes");
    QTest::addColumn<QString>("tooltip");

    const QColor red(230, 115, 115);
    const QColor blue(115, 115, 230);
    const QString xaui = "Instance xaui, protocol XAUI\nLanes: Q0_LANE0, Q0_LANE1\nPLL: "
                         "Q0_QPLL0\nReference: Q0_REFCLK0 at 156.25 MHz\nTX 3.125 Gbps, RX "
                         "3.125 Gbps";
    const QString bcdr = "Instance bcdr, protocol BCDR\nLanes: Q0_LANE2_RX\nPLL: Q0_QPLL0\n"
                         "Reference: Q0_REFCLK0 at 156.25 MHz\nTX none, RX 1.25 Gbps";
    QTest::newRow("lane") << "Q0_LANE1" << false << QList<QColor>{blue} << xaui;
    QTest::newRow("shared PLL, in name order")
        << "Q0_QPLL0" << false << QList<QColor>{red, blue} << bcdr + "\n\n" + xaui;
    QTest::newRow("tile") << "bcdr" << false << QList<QColor>{red} << bcdr;
    QTest::newRow("PLL left to one") << "Q0_QPLL0" << true << QList<QColor>{red} << bcdr;
    QTest::newRow("lane left empty") << "Q0_LANE1" << true << QList<QColor>{Qt::white} << "";
}

void tst_ViewsFloorplan::whatRunsWhere()
{
    QFETCH(QString, box);
    QFETCH(bool, xauiDeleted);
    QFETCH(QList<QColor>, stripes);
    QFETCH(QString, tooltip);

    serdesView view;
    view.setDevice(deviceOf("RK9C-880D"));
    view.initDisplayView();
    auto xaui = onQpll0("xaui", "XAUI", {"Q0_LANE0", "Q0_LANE1"}, "3.125", "3.125", 2 / 3.0);
    auto bcdr = onQpll0("bcdr", "BCDR", {"Q0_LANE2_RX"}, "0", "1.25", 0.0);
    view.addItem(xaui.get());
    view.addItem(bcdr.get());
    if (xauiDeleted)
        view.deleteItem(xaui.get());

    SerdesItem *item = boxes(view).value(box, view.editItems.value(box));
    QCOMPARE(item->toolTip(), tooltip);
    QImage image(item->boundingRect().size().toSize(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionGraphicsItem option;
    item->paint(&painter, &option, nullptr);
    painter.end();
    // Equal stripes, each sampled near both its edges, above the label.
    QList<QColor> drawn;
    const int n = stripes.size();
    for (int i = 0; i < n; ++i) {
        const QColor left(image.pixel(image.width() * i / n + 2, 5));
        const QColor right(image.pixel(image.width() * (i + 1) / n - 2, 5));
        drawn << (left == right ? left : QColor());
    }
    QCOMPARE(drawn, stripes);
}

void tst_ViewsFloorplan::tileActions_data()
{
    QTest::addColumn<QString>("gesture");
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("edits");
    QTest::addColumn<int>("deletes");

    QTest::newRow("double click") << "double" << 0 << 1 << 0;
    QTest::newRow("menu Edit") << "menu Edit" << 0 << 1 << 0;
    QTest::newRow("menu Delete, OK") << "menu Delete" << int(QMessageBox::Ok) << 0 << 1;
    QTest::newRow("menu Delete, Cancel") << "menu Delete" << int(QMessageBox::Cancel) << 0 << 0;
    QTest::newRow("Enter") << "key Enter" << 0 << 1 << 0;
    QTest::newRow("Delete key, OK") << "key Delete" << int(QMessageBox::Ok) << 0 << 1;
}

void tst_ViewsFloorplan::tileActions()
{
    QFETCH(QString, gesture);
    QFETCH(int, answer);
    QFETCH(int, edits);
    QFETCH(int, deletes);

    serdesView view;
    view.resize(600, 400);
    auto m = request("eth0", {}, {}, 0.7);
    auto other = request("eth1", {}, {}, 0.2);
    view.addItem(m.get());
    view.addItem(other.get());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QSignalSpy edited(&view, &serdesView::sigEditItem);
    QSignalSpy deleted(&view, &serdesView::sigDeleteItem);
    SerdesItem *tile = view.editItems.value("eth0");
    QTRY_COMPARE(view.editItems.value("eth1")->x(), 170.0);
    const QPoint at = view.stripView->mapFromScene(tile->sceneBoundingRect().center());

    MessageBoxAnswers answers(QMessageBox::StandardButton(answer ? answer : QMessageBox::Ok));
    int menuActions = -1;
    if (gesture == "double") {
        QTest::mouseDClick(view.stripView->viewport(), Qt::LeftButton, {}, at);
    } else if (gesture.startsWith("key")) {
        // Tab comes into the strip on the first tile and steps right, Backtab left.
        view.stripView->setFocus(Qt::TabFocusReason);
        QVERIFY(tile->hasFocus());
        QTest::keyClick(view.stripView, Qt::Key_Tab);
        QVERIFY(view.editItems.value("eth1")->hasFocus());
        QTest::keyClick(view.stripView, Qt::Key_Backtab);
        QVERIFY(tile->hasFocus());
        QTest::keyClick(view.stripView,
                        gesture.endsWith("Enter") ? Qt::Key_Return : Qt::Key_Delete);
    } else {
        const int downs = gesture.endsWith("Edit") ? 1 : 2;
        whenReady([downs, &menuActions] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return false;
            menuActions = menu->actions().size();
            for (int i = 0; i < downs; ++i)
                QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
            return true;
        });
        QTest::mouseClick(view.stripView->viewport(), Qt::RightButton, {}, at);
        QCOMPARE(menuActions, 2);
    }
    QTRY_COMPARE(answers.boxes.size(), answer ? 1 : 0);
    if (answer) {
        QCOMPARE(answers.boxes.first().title, QString("Delete Instance"));
        QCOMPARE(answers.boxes.first().text, QString("Delete instance eth0?"));
    }
    QCoreApplication::processEvents();
    QCOMPARE(edited.count(), edits);
    QCOMPARE(deleted.count(), deletes);
    for (const QSignalSpy *spy : {&edited, &deleted})
        QVERIFY(spy->isEmpty() || spy->first().first().toString() == "eth0");
    // The view only asks: the page removes the tile.
    QCOMPARE(view.editItems.keys(), QStringList({"eth0", "eth1"}));
}

void tst_ViewsFloorplan::paintColours_data()
{
    QTest::addColumn<bool>("enable");
    QTest::addColumn<bool>("configured");
    QTest::addColumn<int>("state");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<QColor>("outline");
    QTest::addColumn<QString>("highlight");

    const QColor own(200, 120, 40);
    const QColor pen(10, 20, 250);
    const int hover = QStyle::State_MouseOver;
    QTest::newRow("tile") << true << false << 0 << own << QColor(Qt::black) << "none";
    QTest::newRow("tile under the mouse")
        << true << false << hover << own << QColor(Qt::black) << "dashed";
    QTest::newRow("tile with the focus")
        << true << false << int(QStyle::State_HasFocus) << own << QColor(Qt::black) << "solid";
    QTest::newRow("configured tile")
        << true << true << hover << QColor(Qt::darkGreen) << QColor(Qt::black) << "dashed";
    QTest::newRow("floorplan box under the mouse")
        << false << false << hover << own << pen << "none";
}

void tst_ViewsFloorplan::paintColours()
{
    QFETCH(bool, enable);
    QFETCH(bool, configured);
    QFETCH(int, state);
    QFETCH(QColor, fill);
    QFETCH(QColor, outline);
    QFETCH(QString, highlight);

    SerdesItem item(40, 30, enable, false, QColor(10, 20, 250), QColor(200, 120, 40), QString());
    item.setConfigured(configured);
    QImage image(40, 30, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionGraphicsItem option;
    option.state = QStyle::State(state);
    item.paint(&painter, &option, nullptr);
    painter.end();

    QCOMPARE(QColor(image.pixel(20, 15)), fill);
    QCOMPARE(QColor(image.pixel(0, 15)), outline);
    // A highlight is a thick black ring inside the outline, never a fill.
    int black = 0;
    for (int y = 4; y < 26; ++y)
        black += QColor(image.pixel(2, y)) == QColor(Qt::black);
    QCOMPARE(QString(black == 0 ? "none" : black == 22 ? "solid" : "dashed"), highlight);
}

void tst_ViewsFloorplan::zoomLimits_data()
{
    QTest::addColumn<int>("ins");
    QTest::addColumn<int>("outs");
    QTest::addColumn<double>("scale");

    QTest::newRow("one step in") << 1 << 0 << 1.2;
    QTest::newRow("capped") << 12 << 0 << 4.0;
    QTest::newRow("floored") << 0 << 15 << 0.1;
    QTest::newRow("out from the cap") << 12 << 1 << 4.0 * 0.8;
}

void tst_ViewsFloorplan::zoomLimits()
{
    QFETCH(int, ins);
    QFETCH(int, outs);
    QFETCH(double, scale);

    serdesView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    auto *in = view.floorplanView->findChild<QToolButton *>("zoomInButton");
    auto *out = view.floorplanView->findChild<QToolButton *>("zoomOutButton");
    QVERIFY(in && out);
    QVERIFY(!view.stripView->findChild<QToolButton *>());
    for (int i = 0; i < ins; ++i)
        QTest::mouseClick(in, Qt::LeftButton);
    for (int i = 0; i < outs; ++i)
        QTest::mouseClick(out, Qt::LeftButton);

    const QTransform t = view.floorplanView->transform();
    QVERIFY2(t.m11() == scale && t.m22() == scale, qPrintable(QString::number(t.m11(), 'g', 17)));
    QCOMPARE(view.stripView->transform(), QTransform());
}

QTEST_MAIN(tst_ViewsFloorplan)
#include "tst_viewsfloorplan.moc"
