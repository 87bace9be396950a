// SPDX-License-Identifier: MIT
#pragma once

// A protocol instance's lanes as the model sees them, and the proof, before a
// dialog closes, that the generator will be able to place them.

#include <QList>
#include <QString>
#include <QStringList>

namespace IPSERDESIP {
class Message;
}

namespace samples {

// Which lines of its lanes an instance takes, and what clocks them.
enum class Lines {
    // Both: the transmitter runs from the row's PLL, the receiver from a
    // reference mux, its CDR's reference.
    Both,
    // The receiver alone, clocked by the row's PLL: an oversampling receiver
    // needs no CDR. The transmitter stays unused.
    ReceiverOnPll,
};

// One lane of an instance and what clocks its lines.
struct LaneRow
{
    QString lane;         // model name, "Q0_LANE1"
    QString pll;          // model name of the transmitter's PLL, "Q0_QPLL0" or "Q0_CPLL1"
    QString reference;    // option string, "Q0 REFCLK0"
    double refFreq = 0.0; // MHz
    double txRate = 0.0;  // Gbps; 0 for a receiver on its PLL
    double rxRate = 0.0;  // Gbps
    QString referenceMux; // "" for any, or "REFMUX1" to pin the receiver's clock route
};

// The row of the lane that the dialogs show as `label` ("Q0 Lane1"), its
// transmitter on the PLL option `pll` ("CPLL", "QPLL0", "QPLL1") of its quad.
LaneRow laneRow(const QString &label, const QString &pll, const QString &reference, double refFreq,
                double txRate, double rxRate, const QString &referenceMux = QString());

// The request of an instance; the caller owns it.
IPSERDESIP::Message *makeMessage(const QString &type, const QString &name, const QString &file,
                                 const QString &module, const QList<LaneRow> &rows,
                                 Lines lines = Lines::Both);

// What a refusal of the trial placement is about: the field of a dialog
// that the user changes to overcome it.
enum class Cause {
    Lanes,        // no lane, or one the model refuses
    Pll,          // a PLL asked for two rates or references at once
    Reference,    // a PLL runs from another reference, or no route from it
    RefFreq,      // a reference input runs at another frequency
    Rate,         // a PLL runs at another rate
    ReferenceMux, // the chosen mux cannot bring the reference
};
struct Refusal
{
    Cause cause = Cause::Lanes;
    QString lane; // model name of the row the refusal is about, if one
    QString why;  // for the user, what stands in the way
};

// Places the rows on the model as the generator will place the request, and
// gives back everything the trial took, so the model is as before. On a
// refusal `refusal` says what stands in the way, and where.
bool provePlacement(const QList<LaneRow> &rows, Refusal &refusal, Lines lines = Lines::Both);

// A QPLL that another instance already runs at a rate, with its reference.
struct PllOffer
{
    QString pll;       // "QPLL0" or "QPLL1"
    QString reference; // option string
    double refFreq = 0.0;
};
QList<PllOffer> runningPlls(const QString &quad, double rate);

// What a PLL of a quad runs at now: its rate (0 while free), reference and
// frequency. This is what every dialog proposes when a lane meets a running
// PLL, and what the trial compares with.
PllOffer pllState(const QString &pllModel, double *rate);

// A PLL in the user's words: "QPLL1 of Q0", "the CPLL of Q0 Lane2".
QString pllText(const QString &pllModel);

// The display text of a number of MHz or Gbps: no trailing zeros.
QString numberText(double value);

} // namespace samples
