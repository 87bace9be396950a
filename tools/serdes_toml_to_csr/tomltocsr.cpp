// SPDX-License-Identifier: MIT
//
// A stand-in for the device maker's register compiler, which comes only with
// the maker's own installation. It keeps the compiler's contract (command
// line, exit code, error report) and checks its input for real, but it knows
// no register addresses or values: what it writes is a listing of the
// parameters it accepted, and it says so in the file's first line.

#include "tomltocsr.h"

#include "tierschema.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <string>
#include <string_view>

namespace IPSERDESIP {

namespace {

constexpr int EXIT_FAULTS = 1;
constexpr int EXIT_USAGE = 2;

void report(const QString &text)
{
    std::fprintf(stderr, "Error: %s\n", qPrintable(text));
}

// "section<TAB>field<TAB>value", the section "-" for a key outside any.
void listParameters(const toml::table &table, const QString &section, QStringList &lines)
{
    for (const auto &[key, node] : table) {
        const QString name = QString::fromStdString(std::string(key.str()));
        if (const toml::table *inner = node.as_table()) {
            listParameters(*inner, section.isEmpty() ? name : section + QLatin1Char('.') + name,
                           lines);
            continue;
        }
        lines.append((section.isEmpty() ? QStringLiteral("-") : section) + QLatin1Char('\t') + name
                     + QLatin1Char('\t') + tierschema::literal(node));
    }
}

} // namespace

int runTomlToCsr(topology::Tier tier, const QStringList &args)
{
    const QString program = QFileInfo(args.value(0)).fileName();
    if (args.size() != 4 || args.at(2) != QLatin1String("-o")) {
        report(QStringLiteral("usage: %1 <parameters.toml> -o <registers.csr>").arg(program));
        return EXIT_USAGE;
    }
    const QString tomlPath = args.at(1);
    const QString csrPath = args.at(3);

    QFile input(tomlPath);
    if (!input.open(QIODevice::ReadOnly)) {
        report(QStringLiteral("%1: cannot read: %2").arg(tomlPath, input.errorString()));
        return EXIT_FAULTS;
    }
    const QByteArray text = input.readAll();
    const toml::parse_result parsed
        = toml::parse(std::string_view(text.constData(), text.size()), tomlPath.toStdString());
    if (!parsed) {
        const toml::parse_error &error = parsed.error();
        report(QStringLiteral("%1:%2:%3: %4")
                   .arg(tomlPath)
                   .arg(error.source().begin.line)
                   .arg(error.source().begin.column)
                   .arg(QString::fromStdString(std::string(error.description()))));
        return EXIT_FAULTS;
    }

    const tierschema schema(tier);
    const QStringList faults = schema.check(parsed.table());
    for (const QString &fault : faults)
        report(tomlPath + QLatin1String(": ") + fault);
    if (!faults.isEmpty())
        return EXIT_FAULTS;

    QStringList lines;
    listParameters(parsed.table(), QString(), lines);
    lines.sort();
    QFile output(csrPath);
    if (!output.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        report(QStringLiteral("%1: cannot write: %2").arg(csrPath, output.errorString()));
        return EXIT_FAULTS;
    }
    QByteArray listing = QStringLiteral("# Parameter listing from the %1 stand-in for tier %2, "
                                        "not register data: section, field, value.\n")
                             .arg(program, schema.tierName())
                             .toUtf8();
    for (const QString &line : qAsConst(lines))
        listing += line.toUtf8() + '\n';
    if (output.write(listing) != listing.size() || !output.flush()) {
        report(QStringLiteral("%1: cannot write: %2").arg(csrPath, output.errorString()));
        return EXIT_FAULTS;
    }
    std::printf("%s: %d parameters of tier %s listed in %s\n", qPrintable(program),
                int(lines.size()), qPrintable(schema.tierName()), qPrintable(csrPath));
    return 0;
}

} // namespace IPSERDESIP
