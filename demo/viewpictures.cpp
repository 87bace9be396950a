// SPDX-License-Identifier: MIT
//
// viewpictures DIR: draws the pictures of the views that the README shows,
// as a user sees them, into DIR. The requests go through the transceiver
// model first, so every colour and wire in them is one the model accepts.
// Run it on a real display (scripts/pictures.sh gives it a virtual one).

#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "page/configurationreport.h"
#include "protocol/message.h"
#include "views/clockgraphicview.h"
#include "views/clockschematicview.h"
#include "views/serdesview.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QGraphicsScene>
#include <QTextStream>

#include <memory>
#include <vector>

using namespace IPSERDESIP;

namespace {

struct Row
{
    const char *lane;
    const char *pll;
    const char *ref;
    const char *freq;
    const char *rate;
};

struct Instance
{
    const char *name;
    std::vector<Row> rows;
};

struct Picture
{
    const char *file;
    const char *family;
    const char *device;
    std::vector<Instance> instances;
};

// clang-format off
const Picture FLOORPLAN =
    {"floorplan.png", "RK9C-880D", "RK9C880D", {
        {"xaui_0", {{"Q0_LANE0", "Q0_QPLL0", "Q0_REFCLK0", "156.25", "3.125"},
                    {"Q0_LANE1", "Q0_QPLL0", "Q0_REFCLK0", "156.25", "3.125"},
                    {"Q0_LANE2", "Q0_QPLL0", "Q0_REFCLK0", "156.25", "3.125"},
                    {"Q0_LANE3", "Q0_QPLL0", "Q0_REFCLK0", "156.25", "3.125"}}},
        {"sgmii_0", {{"Q1_LANE1", "Q1_CPLL1", "Q1_REFCLK0", "125", "1.25"}}},
    }};

// Routes chosen so that no wire runs through a lane's caption, as the trunk
// of a quad PLL does on its way to a lane that is not its neighbour.
const Picture SCHEMATICS[] = {
    {"schematic_880k.png", "RK9C-880D", "RK9C880D", {
        {"pcie_x1", {{"Q0_LANE1", "Q0_QPLL0", "Q0_REFCLK0", "100", "5"}}},
        {"sgmii_0", {{"Q0_LANE3", "Q0_CPLL3", "Q0_REFCLK1", "125", "1.25"}}},
        {"eth_10g", {{"Q1_LANE0", "Q1_CPLL0", "Q1_REFCLK0", "156.25", "10.3125"}}},
        {"cpri_0",  {{"Q1_LANE2", "Q1_CPLL2", "Q0_REFCLK0", "100", "2.4576"}}},
    }},
    {"schematic_370k.png", "RK9C-370D", "RK9C370D", {
        {"pcie_x1", {{"Q0_LANE1", "Q0_QPLL1", "Q0_REFCLK1", "100", "5"}}},
        {"fabric",  {{"Q0_LANE2", "Q0_CPLL2", "Q0_GPIO2", "125", "2.5"}}},
        {"sgmii_0", {{"Q0_LANE3", "Q0_CPLL3", "Q0_REFCLK3", "125", "1.25"}}},
    }},
    {"schematic_90k.png", "RK9C-90F", "RK9C90F", {
        {"eth_10g", {{"Q0_LANE1", "Q0_QPLL0", "Q0_REFCLK0", "156.25", "10.3125"}}},
        {"sgmii_0", {{"Q0_LANE2", "Q0_CPLL2", "Q0_REFCLK1", "125", "1.25"}}},
        {"fabric",  {{"Q0_LANE3", "Q0_CPLL3", "Q0_GPIO", "125", "2.5"}}},
    }},
};
// clang-format on

DEV::DeviceArg deviceOf(const Picture &picture)
{
    DEV::DeviceArg device;
    device.id = QLatin1String(picture.device);
    device.name = QLatin1String(picture.device);
    device.family = QLatin1String(picture.family);
    return device;
}

// Places the picture's instances on a fresh model, each with the hue the
// page would give it; empty when the model refuses one.
std::vector<std::unique_ptr<Message>> place(const Picture &picture, QString &error)
{
    serdes::destory();
    serdes *model = serdes::instance();
    model->initilize(QLatin1String(picture.family));
    std::vector<std::unique_ptr<Message>> messages;
    for (const Instance &instance : picture.instances) {
        auto m = std::make_unique<Message>();
        m->name = QLatin1String(instance.name);
        m->type = QStringLiteral("Picture");
        m->module = m->name;
        m->file = m->name;
        for (const Row &row : instance.rows) {
            m->lanes << QLatin1String(row.lane);
            m->plls << QLatin1String(row.pll);
            m->refs << QLatin1String(row.ref);
            m->refFreqs << QLatin1String(row.freq);
            m->rates << QLatin1String(row.rate);
            m->rxRates << QStringLiteral("0");
            m->txRates << QStringLiteral("0");
        }
        m->h = getH(int(messages.size()));
        if (!model->addItem(m.get(), error)) {
            error = QStringLiteral("%1: %2").arg(m->name, error);
            return {};
        }
        messages.push_back(std::move(m));
    }
    return messages;
}

// The page's connection list: every route from its line to its source, as
// wires from the source side, with the bridge between the quads left out.
QList<QPair<QString, QString>> connections()
{
    QList<QPair<QString, QString>> list;
    for (QStringList route : serdes::instance()->allAccess()) {
        route.removeOne(QStringLiteral("MUX_Q0_TO_Q1"));
        for (int k = 0; k + 1 < route.size(); ++k)
            list.append({route.at(k + 1), route.at(k)});
    }
    return list;
}

// Lets queued layout passes and paints run until the window has settled.
void settle(QWidget *window)
{
    window->show();
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 700)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
}

bool save(QWidget *window, const QString &path, QTextStream &err)
{
    if (window->grab().save(path))
        return true;
    err << "Cannot write " << path << "\n";
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream err(stderr);
    if (argc != 2) {
        err << "usage: viewpictures DIR\n";
        return 2;
    }
    const QDir dir(QString::fromLocal8Bit(argv[1]));
    if (!QDir().mkpath(dir.path())) {
        err << "Cannot make " << dir.path() << "\n";
        return 1;
    }

    bool ok = true;
    QString error;
    {
        const std::vector<std::unique_ptr<Message>> messages = place(FLOORPLAN, error);
        if (messages.empty()) {
            err << FLOORPLAN.file << ": the model refuses " << error << "\n";
            return 1;
        }
        serdesView floorplan;
        floorplan.resize(840, 560);
        floorplan.setDevice(deviceOf(FLOORPLAN));
        floorplan.initDisplayView();
        for (const auto &m : messages)
            floorplan.addItem(m.get());
        settle(&floorplan);
        ok = save(&floorplan, dir.filePath(QLatin1String(FLOORPLAN.file)), err) && ok;
    }
    for (const Picture &picture : SCHEMATICS) {
        const std::vector<std::unique_ptr<Message>> messages = place(picture, error);
        if (messages.empty()) {
            err << picture.file << ": the model refuses " << error << "\n";
            return 1;
        }
        QMap<QString, Message *> instances;
        for (const auto &m : messages)
            instances.insert(m->name, m.get());
        clockSchematicView schematic(deviceOf(picture));
        schematic.setConnectionList(connections());
        schematic.setLabels(schematicLabels(instances));
        schematic.updateView();
        settle(&schematic);
        // Exactly the whole drawing, which the window keeps fitted: at its
        // own scale.
        const QSize frame = schematic.size() - schematic.view->viewport()->size();
        schematic.resize(schematic.scene->sceneRect().size().toSize() + frame);
        settle(&schematic);
        ok = save(&schematic, dir.filePath(QLatin1String(picture.file)), err) && ok;
    }
    serdes::destory();
    return ok ? 0 : 1;
}
