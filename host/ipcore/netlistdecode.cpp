// SPDX-License-Identifier: MIT
#include "ipcore/netlistdecode.h"

#include "ipcore/verilognetlist.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

namespace IPCore {

int decode(const QString &base, const QString &input, const QString &output, QString &error)
{
    const QDir dir(base.isEmpty() ? QDir::currentPath() : base);
    const QString source = dir.filePath(input);
    const QString target = dir.filePath(output);
    const QString shown = QDir::toNativeSeparators(input.isEmpty() ? source : input);

    if (input.isEmpty()) {
        error = QCoreApplication::translate("IPCore", "No netlist is given to decode.");
        return 1;
    }
    if (!QFileInfo(source).isFile()) {
        error = QCoreApplication::translate("IPCore", "The netlist \"%1\" does not exist.")
                    .arg(shown);
        return 1;
    }
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly)) {
        error = QCoreApplication::translate("IPCore", "Cannot read the netlist \"%1\": %2")
                    .arg(shown, in.errorString());
        return 1;
    }
    const QString text = QString::fromUtf8(in.readAll());
    if (text.trimmed().isEmpty()) {
        error = QCoreApplication::translate("IPCore", "The netlist \"%1\" is empty.").arg(shown);
        return 1;
    }
    const VerilogNetlist netlist(text);
    if (!netlist.error().isEmpty()) {
        error
            = QCoreApplication::translate("IPCore", "\"%1\" is no synthesised Verilog netlist: %2.")
                  .arg(shown, netlist.error());
        return 1;
    }

    QStringList names;
    for (const VerilogNetlist::Module &module : netlist.modules())
        names << module.name;
    QString device = QStringLiteral("not recorded");
    QString origin;
    for (const QString &comment : netlist.leadingComments()) {
        if (comment.startsWith(QLatin1String("Device: ")))
            device = comment.mid(8);
        else if (origin.isEmpty() && !comment.isEmpty())
            origin = comment;
    }
    QString from = dir.relativeFilePath(source);
    if (!origin.isEmpty())
        from += QString(QStringLiteral(" (") + origin + QLatin1Char(')'));

    const int begin = netlist.modules().first().begin;
    const int end = netlist.modules().last().end;
    QSaveFile out(target);
    if (out.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream stream(&out);
        stream.setCodec("UTF-8");
        stream << "// Netlist of " << names.join(QStringLiteral(", ")) << '\n'
               << "// Device: " << device << '\n'
               << "// Decoded from " << from << "; changes are lost when the core is "
               << "generated again.\n\n"
               << text.mid(begin, end - begin) << '\n';
        stream.flush();
        if (out.commit())
            return 0;
    }
    error
        = QCoreApplication::translate("IPCore", "Cannot write the netlist \"%1\": %2")
              .arg(QDir::toNativeSeparators(output.isEmpty() ? target : output), out.errorString());
    return 1;
}

} // namespace IPCore
