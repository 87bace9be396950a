// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QByteArray>
#include <QDialog>
#include <QString>
#include <QStringList>

namespace IPSERDESIP {

class Ui_configUI;

// Describes a change to a running device, for the lanes checked: new TX or RX
// data rates, a loopback mode, new transmit (and, dormant, receive) front-end
// settings; and exports the register writes for it, which the task generator
// computes, as a script. Its values live in its widgets only: it reads no
// model and no instance, and saves nothing.
//
// The page makes it once, with itself as parent, and keeps it:
//     m_reconfig = new reconfiguration(this);
//     m_reconfig->setDevice(device());
//     m_reconfig->setExportDirectory(createPath());   // optional
// and at every press of its button
//     m_reconfig->dialogDidPrepare();
//     m_reconfig->setVisible(true);
class SERDESIP_TEST_EXPORT reconfiguration : public QDialog
{
    Q_OBJECT

public:
    explicit reconfiguration(QWidget *parent = nullptr);
    ~reconfiguration() override;

    // Its part family string decides, in dialogDidPrepare, whether the
    // second quad is offered.
    void setDevice(const DEV::DeviceArg &device);
    // Where Export first proposes to save "reconfigure.csr"; empty, the
    // default, proposes it in the process's current directory. Once the user
    // has exported, Export proposes the file last chosen instead.
    void setExportDirectory(const QString &dir);
    // Shows or hides the second quad's lanes and reference frequencies for
    // the device. Call it before every show.
    void dialogDidPrepare();

    // Alternating flags and values of one task, values as the widgets show
    // them. A reference frequency goes out only while its box is visible.
    QStringList getTxDataRateOptions() const;
    QStringList getRxDataRateOptions() const;
    QStringList getLoopbackOptions() const;
    QStringList getTxAFEOptions() const;
    QStringList getRxAFEOptions() const;
    // One element: the mask of the checked, visible lanes in decimal, bits 0
    // to 3 for Q0's lanes and 4 to 7 for Q1's.
    QStringList getLaneOptions() const;

    // Runs the task generator once with `args` and returns the records of the
    // register writes it left in its temporary file. On a missing or failing
    // generator it tells the user, sets `ok` to false and returns nothing; it
    // never sets `ok` to true.
    QByteArray runProcessAndGetCsr(const QStringList &args, bool &ok);

public slots:
    void onTxDataRateEnableUpdate();
    void onRxDateRateEnableUpdate();
    void onLoopBackUpdate();
    void onTxAFEUpdate();
    void onRxAFEUpdate();
    void onDisableAll();
    void onExport();

private:
    // The mask of getLaneOptions.
    int laneMask() const;

    Ui_configUI *ui;
    DEV::DeviceArg device;
    QString m_exportDirectory;
    // The file of the last export, empty before the first.
    QString m_lastExport;
};

} // namespace IPSERDESIP
