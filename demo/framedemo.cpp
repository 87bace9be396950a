// SPDX-License-Identifier: MIT
//
// Shows one of the two dialog frames with an example page in it, so that a
// person can look at them:
//   framedemo host [--dark] [--page FILE]   the generator's frame, help pane
//   framedemo protocol [--dark]              a protocol dialog on the frame
// The device database is the staged tree's.

#include "model/serdes.h"
#include "page/microsysipgendlg.h"
#include "protocol/protocolgendlg.h"

#include <core/idecore.h>
#include <dev/devicedb.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyleFactory>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cstdio>

using namespace IPSERDESIP;

namespace {

const char kDevice[] = "RK9C880D-FG1517-3";

// The generator's frame with a chooser of the help-only protocols: picking
// one shows its page beside it.
class HostDemo : public MicroSysIPGenDlg
{
public:
    explicit HostDemo(const QString &page)
    {
        auto *chooser = new QWidget;
        auto *layout = new QVBoxLayout(chooser);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(new QLabel(QStringLiteral("Protocols available for this device:")));
        auto *tree = new QTreeWidget;
        tree->setHeaderLabels({QStringLiteral("Protocol"), QStringLiteral("Version")});
        tree->setColumnWidth(0, 320);
        layout->addWidget(tree);

        const struct
        {
            const char *name;
            QStringList path;
            const char *file;
        } rows[] = {
            {"XAUI", {"Serdes", "Telecommunication", "Ethernet"}, "xaui.html"},
            {"eDP RX", {"Serdes", "Video"}, "edp_rx_information.html"},
            {"eDP TX", {"Serdes", "Video"}, "edp_tx_information.html"},
        };
        QTreeWidgetItem *current = nullptr;
        for (const auto &row : rows) {
            QTreeWidgetItem *parent = tree->invisibleRootItem();
            for (const QString &folder : row.path) {
                QTreeWidgetItem *found = nullptr;
                for (int i = 0; i < parent->childCount() && !found; ++i) {
                    if (parent->child(i)->text(0) == folder)
                        found = parent->child(i);
                }
                if (!found)
                    found = new QTreeWidgetItem(parent, {folder});
                parent = found;
            }
            auto *item = new QTreeWidgetItem(parent, {QLatin1String(row.name), "1.0"});
            item->setData(0, Qt::UserRole, QLatin1String(row.file));
            // No package provides these yet: they are shown, not offered.
            item->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
            item->setForeground(1, palette().brush(QPalette::Disabled, QPalette::Text));
            if (page == QLatin1String(row.file))
                current = item;
        }
        tree->expandAll();
        connect(tree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *item) {
            const QString file = item ? item->data(0, Qt::UserRole).toString() : QString();
            if (!file.isEmpty())
                showIPView(file);
        });
        uiAddWidget(chooser);
        if (current)
            tree->setCurrentItem(current);
    }

    bool parseData(const QString &file) override
    {
        std::fprintf(stderr, "The demonstration opens no configuration (%s).\n", qPrintable(file));
        return false;
    }
};

// A protocol dialog on the frame: four lanes of one quad on a quad PLL,
// offered from what the model has free.
class ProtocolDemo : public protocolGenDlg
{
public:
    ProtocolDemo()
    {
        auto *page = new QWidget;
        auto *form = new QFormLayout(page);
        auto *quad = new QComboBox;
        quad->addItems({QStringLiteral("Q0"), QStringLiteral("Q1")});
        form->addRow(QStringLiteral("Quad:"), quad);

        auto *lanes = new QGroupBox(QStringLiteral("Lanes"));
        auto *laneRow = new QHBoxLayout(lanes);
        for (const QString &lane : serdes::instance()->notOccupiedLanes()) {
            if (!lane.startsWith(QLatin1String("Q0")))
                continue;
            auto *box = new QCheckBox(lane);
            box->setChecked(true);
            laneRow->addWidget(box);
        }
        laneRow->addStretch();
        form->addRow(lanes);

        auto *rate = new QDoubleSpinBox;
        rate->setDecimals(4);
        rate->setRange(0.5, 12.5);
        rate->setValue(3.125);
        rate->setSuffix(QStringLiteral(" Gb/s"));
        form->addRow(QStringLiteral("Line rate:"), rate);
        auto *pll = new QComboBox;
        pll->addItems({QStringLiteral("QPLL0"), QStringLiteral("QPLL1")});
        form->addRow(QStringLiteral("PLL:"), pll);
        auto *ref = new QComboBox;
        ref->addItems({QStringLiteral("Q0 REFCLK0"), QStringLiteral("Q0 REFCLK1")});
        form->addRow(QStringLiteral("Reference clock:"), ref);
        auto *freq = new QDoubleSpinBox;
        freq->setDecimals(3);
        freq->setRange(50, 800);
        freq->setValue(156.25);
        freq->setSuffix(QStringLiteral(" MHz"));
        form->addRow(QStringLiteral("Reference frequency:"), freq);
        uiAddTab(page, QStringLiteral("Lanes and Clocks"));

        using Utils::PinFigure;
        uiSetLabelText(QStringLiteral("Four-Lane Example"));
        uiSetFigurePins({
            PinFigure(QStringLiteral("refclk"), PinFigure::Input),
            PinFigure(QStringLiteral("rst"), PinFigure::Input),
            PinFigure(QStringLiteral("tx_clk"), PinFigure::Input),
            PinFigure(QStringLiteral("tx_data"), PinFigure::Input, 64),
            PinFigure(QStringLiteral("tx_ctrl"), PinFigure::Input, 8),
            PinFigure(QStringLiteral("rx_clk"), PinFigure::Output),
            PinFigure(QStringLiteral("rx_data"), PinFigure::Output, 64),
            PinFigure(QStringLiteral("rx_ctrl"), PinFigure::Output, 8),
            PinFigure(QStringLiteral("lane_up"), PinFigure::Output, 4),
            PinFigure(QStringLiteral("mdio"), PinFigure::Inout),
        });
    }

    bool restoreArgs(const QMap<QString, QVariant> &args) override { return !args.isEmpty(); }

    void accept() override
    {
        const QStringList errors = checkFileOptions();
        if (!errors.isEmpty()) {
            showErrorMsg(errors);
            return;
        }
        if (checkModuleName() && checkFileExisting())
            QDialog::accept();
    }
};

void useDarkPalette()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(45, 47, 51));
    dark.setColor(QPalette::WindowText, QColor(225, 225, 225));
    dark.setColor(QPalette::Base, QColor(30, 32, 36));
    dark.setColor(QPalette::AlternateBase, QColor(45, 47, 51));
    dark.setColor(QPalette::Text, QColor(225, 225, 225));
    dark.setColor(QPalette::Button, QColor(55, 57, 61));
    dark.setColor(QPalette::ButtonText, QColor(225, 225, 225));
    dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Disabled, QPalette::Text, QColor(120, 120, 120));
    dark.setColor(QPalette::Disabled, QPalette::WindowText, QColor(120, 120, 120));
    dark.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(120, 120, 120));
    dark.setColor(QPalette::Disabled, QPalette::Base, QColor(40, 42, 46));
    QApplication::setPalette(dark);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    const QString which = args.value(0);
    if (which != QLatin1String("host") && which != QLatin1String("protocol")) {
        std::fprintf(stderr, "usage: framedemo host|protocol [--dark] [--page FILE]\n");
        return 2;
    }
    if (args.contains(QStringLiteral("--dark")))
        useDarkPalette();
    const int pageAt = args.indexOf(QStringLiteral("--page"));
    const QString page = pageAt > 0 ? args.value(pageAt + 1) : QStringLiteral("xaui.html");

    DEV::DeviceDb db;
    QString error;
    if (!db.load(QStringLiteral(SERDES_STAGE_DIR "/data/devices/devices.json"), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    Core::IdeCore::setDeviceDataBase(&db);
    const DEV::DeviceArg device = db.findByID(QLatin1String(kDevice));
    serdes::instance()->initilize(device.family);

    int result = 0;
    if (which == QLatin1String("host")) {
        HostDemo dialog(page);
        dialog.setCreating(QDir::homePath() + QStringLiteral("/projects/video_bridge"), device);
        dialog.show();
        result = app.exec();
    } else {
        serdes::instance()->fileNames = QStringList{QStringLiteral("example")};
        serdes::instance()->moduleNames = QStringList{QStringLiteral("example")};
        ProtocolDemo dialog;
        dialog.uiSetDefaultFileName(QStringLiteral("example"));
        dialog.uiSetModuleName(QStringLiteral("example"));
        dialog.setCreating(QDir::homePath() + QStringLiteral("/projects/video_bridge/serdes"),
                           device);
        dialog.show();
        result = app.exec();
    }
    serdes::destory();
    return result;
}
