// SPDX-License-Identifier: MIT
//
// Shows the reconfiguration dialog on its own, with the transmit rate task
// filled in, so that its look can be judged without the generator around it.
//     reconfig_demo [part family [bottom]]     (default RK9C-880D, top)

#include "reconfig/reconfiguration.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QScrollArea>
#include <QScrollBar>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    DEV::DeviceArg device;
    device.family = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("RK9C-880D");

    IPSERDESIP::reconfiguration dialog;
    dialog.setDevice(device);
    dialog.dialogDidPrepare();
    for (const char *lane : {"checkBoxq0ln0", "checkBoxq0ln1"})
        dialog.findChild<QCheckBox *>(QLatin1String(lane))->setChecked(true);
    dialog.findChild<QCheckBox *>(QStringLiteral("checkBoxTxDataRateEnable"))->setChecked(true);
    dialog.findChild<QDoubleSpinBox *>(QStringLiteral("doubleSpinBoxTXDataRate"))
        ->setValue(10.3125);
    dialog.findChild<QComboBox *>(QStringLiteral("comboBoxTXPLL"))
        ->setCurrentText(QStringLiteral("QPLL0"));
    dialog.findChild<QDoubleSpinBox *>(QStringLiteral("doubleSpinBoxTXQ0RefMux0Freq"))
        ->setValue(156.25);
    dialog.findChild<QComboBox *>(QStringLiteral("comboBoxPMAWidth"))
        ->setCurrentText(QStringLiteral("20"));
    dialog.show();
    if (argc > 2 && QLatin1String(argv[2]) == QLatin1String("bottom")) {
        QScrollBar *bar = dialog.findChild<QScrollArea *>()->verticalScrollBar();
        bar->setValue(bar->maximum());
    }
    return app.exec();
}
