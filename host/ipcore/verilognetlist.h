// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace IPCore {

// What the host needs to know of a synthesised Verilog netlist: its modules,
// where each stands in the text, and their ports. It reads structure only;
// whether the logic inside makes sense is the synthesis tool's business.
class VerilogNetlist
{
public:
    struct Port
    {
        QString direction; // input, output or inout; empty when never declared
        QString range;     // "[3:0]", or empty for one bit
        QString name;      // as written, escaped names with their backslash
    };

    struct Module
    {
        QString name;
        QVector<Port> ports; // in the order of the module's port list
        int begin = 0;       // offset of "module"
        int end = 0;         // offset just after "endmodule"
    };

    // Reads `text`. A text that is no netlist leaves error() set, with the
    // modules that were read up to the fault.
    explicit VerilogNetlist(const QString &text);

    QString error() const { return m_error; }
    QVector<Module> modules() const { return m_modules; }
    // The comment lines before the first module, without their markers.
    QStringList leadingComments() const { return m_comments; }

    // The module named `name`; a leading backslash is ignored on both sides,
    // since an escaped name and its plain spelling are the same identifier.
    const Module *module(const QString &name) const;

    // `name` as it must be written in Verilog source: simple identifiers as
    // they are, anything else escaped and ended by a blank.
    static QString verilogName(const QString &name);

private:
    QString m_error;
    QVector<Module> m_modules;
    QStringList m_comments;
};

} // namespace IPCore
