// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QObject>
#include <QString>

namespace IPCore {

// The language of generated files. Cores pass their language index as this
// type, so the values are part of the interface.
enum FileType { Verilog = 0, VHDL = 1 };

// Whether `name` is a reserved word of Verilog (case counts) or of VHDL (case
// does not), and so cannot name a module, an instance or a port in a file of
// either language.
HOSTPLATFORM_EXPORT bool isReservedWord(const QString &name);

// The module generator: reads a command file and writes the top-level wrapper
// and its instantiation template.
//
// A command file holds one "-key value" a line. First the header, each key
// once, in any order:
//     -type SERDES
//     -path <directory>/          relative paths are taken from the command file's folder
//     -file_type vlg|vhdl
//     -file_name <base name of the outputs>
//     -mod_name <top module>
//     -device, -device_id, -part_number, -family, -package, -speed   (values may be empty)
// then, per instance, numbered from 0 without gaps:
//     -protocol_module_name<i> <module>
// followed by that instance's lines, each starting with "-" and its module name:
//     -<module>_port input|output|inout <width> <name>
//     -<module>_param <name> <integer or "string">
//     -<module>EnableDRP true|false
// A port is exposed at the top as "<module>_<name>" and wired to the instance
// "u_<module>"; a parameter overrides the instance's parameter. EnableDRP only
// marks that the instance shares the Upar register port: the arbiter is a
// netlist of its own, instantiated from its own template, so it is not wired in
// here. Anything else is refused: the generator writes what the file says and
// nothing more. So is any name, as given or as exposed at the top, that is a
// reserved word of the language written.
//
// Outputs: <path><file_name>.v and <path><file_name>_tmp.v, or .vhd for VHDL,
// replaced together or not at all.
class HOSTPLATFORM_EXPORT TvModGenProxy : public QObject
{
    Q_OBJECT

public:
    // Callers test for 0, so Done must stay 0.
    enum Result {
        Done = 0,
        CannotRead,  // the command file could not be opened
        Refused,     // the command file is wrong or its output directory is missing
        CannotWrite, // an output could not be written
    };
    Q_ENUM(Result)

    explicit TvModGenProxy(QObject *parent = nullptr);
    ~TvModGenProxy() override;

    // Returns Done when both files were written. Otherwise nothing is written,
    // every problem found is reported through the host's error reporting and
    // errorString() holds the same text. `verbose` announces the written files
    // on the message handler.
    Result startModGen(const QString &cmdFile, FileType type, bool verbose);

    QString errorString() const { return m_error; }

private:
    QString m_error;
};

} // namespace IPCore
