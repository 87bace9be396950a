// SPDX-License-Identifier: MIT
#pragma once

// The Verilog module of an instance and the lines that tell the host's module
// generator its ports, both made from one port list so that they cannot
// disagree. The module instantiates the device's transceiver primitives
// (SERDES_QUAD per quad, SERDES_LANE per lane) as black boxes.

#include "laneplacement.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace samples {

struct Port
{
    QString direction; // "input", "output" or "inout"
    int width = 1;
    QString name;
};

class LaneModule
{
public:
    struct Lane
    {
        QString lane;      // model name, "Q0_LANE1"
        QString pll;       // "CPLL", "QPLL0" or "QPLL1"
        QString reference; // option string
    };

    // `dataWidth` and `ctrlWidth` are the fabric bits per lane and clock;
    // a `ctrlWidth` of 0 gives no control ports. With `drp` the module has one
    // requester port of the Upar arbiter. A receiver on its PLL has the
    // receiving ports only, from one reference clock that all its lanes share,
    // and holds the transmitters in reset.
    LaneModule(const QString &module, const QList<Lane> &lanes, int dataWidth, int ctrlWidth,
               bool drp, Lines lines = Lines::Both);

    QList<Port> ports() const;
    // "-<module>_port <direction> <width> <name>" a port.
    QStringList portLines() const;
    // The whole file; `description` opens it as a comment, a line each.
    QString verilog(const QStringList &description) const;

private:
    bool receiverOnly() const;
    QStringList references() const;
    QStringList quads() const;
    QList<Port> transceiverPorts() const;
    QList<Port> receiverPorts() const;
    QStringList transceiverBody() const;
    QStringList receiverBody() const;

    QString m_module;
    QList<Lane> m_lanes;
    int m_dataWidth;
    int m_ctrlWidth;
    bool m_drp;
    Lines m_lines;
};

// Writes `text` to `path`, making its directory; false with the reason.
bool writeTextFile(const QString &path, const QString &text, QString &error);

// A generation has no dialog to show an instance's problems in: each goes to
// the log as "<protocol> <instance> : <problem>". True when there are none.
bool reportProblems(const QString &protocol, const QString &instance, const QStringList &problems);
// Writes `module` as "<file>.v" into the instance's directory, which
// `outputFile` names then, and gives its port lines to `modArgs`. False, once
// the log says why, when the file cannot be written.
bool writeInstanceModule(const LaneModule &module, const QStringList &description,
                         const QMap<QString, QVariant> &args, const QString &file,
                         QString &outputFile, QStringList &modArgs);

} // namespace samples
