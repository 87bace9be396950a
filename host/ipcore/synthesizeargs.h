// SPDX-License-Identifier: MIT
#pragma once

#include "dev/devicearg.h"

#include <QMap>
#include <QString>
#include <QVariant>

namespace IPCore {

// What one synthesis run is told. The option map takes these keys:
//     "impl_name"      QString      sub-directory of tempDir for tools that keep
//                                   their results in an implementation of their own
//     "write_vhdl"     bool         the netlist is wanted in VHDL
//     "top_module"     QString      the top module; an escaped name keeps its backslash
//     "include_paths"  QStringList  searched by `include, in order
//     "source_files"   QStringList  the Verilog sources, in order
struct SynthesizeArgs
{
    QString tempDir;     // where the tool works and leaves its results
    QString projectName; // names the tool's script and log
    QString fileName;    // base name of the netlist and the template
    DEV::DeviceArg device;
    QMap<QString, QVariant> options;
};

} // namespace IPCore
