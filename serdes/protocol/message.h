// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// A protocol instance's request to the transceiver model: parallel lists, one
// row per lane or line it takes. Numbers stand as text, as they come from the
// dialogs and the configuration file.
class SERDESIP_EXPORT Message
{
public:
    ~Message();

    // True when the seven row lists have one size; otherwise says so on the
    // critical log.
    bool check();

    // The rate of row `row`'s TX or RX line as the model sets it: a row of one
    // line has its own rate and none for the other line; a row of a whole
    // lane has its common rate, or the line's own where that is 0.
    QString txRate(int row) const;
    QString rxRate(int row) const;

    QString type;    // the protocol's name; "BCDR" hangs RX lines on PLLs too
    QString name;    // the instance's name
    QString file;    // the instance's file name
    QString module;  // the instance's module name
    QStringList plls;     // PLL model name per row; "0" in an RX row for none
    QStringList refs;     // reference source model name per row
    QStringList refFreqs; // reference frequency per row
    QStringList lanes;    // lane ("Q0_LANE0") or line ("Q0_LANE0_TX") per row
    QStringList rates;    // rate of both lines; "0" to use rxRates and txRates
    QStringList rxRates;
    QStringList txRates;
    QMap<QString, QString> muxOptions; // row's lane name -> "REFMUX0", optional
    double h = 0.0;       // hue on the floorplan, given by the page
};

} // namespace IPSERDESIP
