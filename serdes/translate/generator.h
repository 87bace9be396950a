// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QString>
#include <QStringList>

namespace IPSERDESIP {

// Writes the device parameter file from the protocol lines of a whole design
// and has the register compiler of the device tier turn it into the register
// file. Made for one job and dropped: it keeps nothing but the texts of what
// went wrong. Reads the parameter tables and the current selects of the clock
// network, so it belongs after allocation.
class SERDESIP_TEST_EXPORT generator
{
public:
    QStringList getErrStringList() const;

    // Translates, completes and writes the parameter file at `path`. The file
    // is written even when lines could not be translated; the result is true
    // only when it was written and nothing was reported.
    bool generateTomlFile(const QStringList &iniLines, const QString &path);

    // As generateTomlFile, to "serdes_tmp.toml" in the working directory, and
    // then, if nothing was reported, the register file at `csrPath`, with
    // `csrLines` appended behind what the compiler wrote.
    bool generate(const QStringList &iniLines, const QString &csrPath, const QStringList &csrLines);

    // The selects of every mux and PLL of the network, used or not, in the
    // ascending order of their names.
    QStringList getSerdesRouteToml() const;
    QStringList getAdditonalToml() const;

    // Each writer keeps the lines of its tier's sections and drops the rest;
    // false when the file cannot be opened.
    bool generateTOML_880k(const QString &path, const QStringList &lines);
    bool generateTOML_370k(const QString &path, const QStringList &lines);
    bool generateTOML_90k(const QString &path, const QStringList &lines);

    bool generateCSR_880k(const QString &tomlPath, const QString &csrPath,
                          const QStringList &csrLines);
    bool generateCSR_370k(const QString &tomlPath, const QString &csrPath,
                          const QStringList &csrLines);
    bool generateCSR_90k(const QString &tomlPath, const QString &csrPath,
                         const QStringList &csrLines);

    // Runs the compiler `tool`, a path relative to the application's
    // directory, on `tomlPath` and appends `csrLines` to its output.
    bool generateCSR(const char *tool, const QString &tomlPath, const QString &csrPath,
                     const QStringList &csrLines);

private:
    QStringList errList;
};

// Adds "<lane>.ffe_c0 <40 - cm - c1>" for `lane`, such as "[q0.ln0]", unless a
// line sets it already: the three taps of the transmit equaliser add up to 40.
// A lane without both other taps in `lines` is left alone.
SERDESIP_TEST_EXPORT void TX_FFE(QStringList &lines, const QString &lane);

} // namespace IPSERDESIP
