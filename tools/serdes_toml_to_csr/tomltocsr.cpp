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

// Far beyond anything the writer makes: its lines are short and its keys have
// at most two parts.
constexpr int LINE_LIMIT = 4096;
constexpr int KEY_PART_LIMIT = 64;

void report(const QString &text)
{
    std::fprintf(stderr, "Error: %s\n", qPrintable(text));
}

// toml++ 3.3.0 is not safe on every input: a non-ASCII byte outside a string
// or comment reaches a point it takes for unreachable, and a dotted key takes
// a stack frame per part. So the text is screened before the parser sees it,
// which needs no more of TOML than where strings and comments are. Dots are
// counted between the separators of TOML; apart from keys, such a stretch is a
// value with one point at most. False, with the place (line and column from 1)
// and the reason, for a text refused.
bool screen(const QByteArray &text, int &line, int &column, QString &reason)
{
    enum class State { Bare, Comment, Basic, Literal, MultiBasic, MultiLiteral };
    State state = State::Bare;
    const int size = text.size();
    const auto run = [&text, size](int at) {
        int end = at;
        while (end < size && text.at(end) == text.at(at))
            ++end;
        return end - at;
    };
    // toml++ reads past a byte order mark.
    int at = text.startsWith("\xef\xbb\xbf") ? 3 : 0;
    int lineBytes = 0;
    int dots = 0;
    int skip = 0;
    bool escaped = false;
    line = 1;
    column = 0;
    for (; at < size; ++at) {
        const char c = text.at(at);
        if (c == '\n') {
            ++line;
            column = lineBytes = dots = 0;
            escaped = false;
            // A string left open on its line is for the parser to report.
            if (state != State::MultiBasic && state != State::MultiLiteral)
                state = State::Bare;
            continue;
        }
        // Columns count characters, as the parser's do; the limit counts bytes.
        if ((uchar(c) & 0xc0) != 0x80)
            ++column;
        if (++lineBytes > LINE_LIMIT) {
            reason = QStringLiteral("line longer than %1 bytes").arg(LINE_LIMIT);
            return false;
        }
        if (skip > 0) {
            --skip;
            continue;
        }
        switch (state) {
        case State::Bare:
            if (uchar(c) >= 0x80) {
                reason = QStringLiteral("non-ASCII byte 0x%1 outside a string or comment")
                             .arg(uint(uchar(c)), 2, 16, QLatin1Char('0'));
                return false;
            }
            if (c == '#') {
                state = State::Comment;
            } else if (c == '"' || c == '\'') {
                const bool multi = run(at) >= 3;
                skip = multi ? 2 : 0;
                if (c == '"')
                    state = multi ? State::MultiBasic : State::Basic;
                else
                    state = multi ? State::MultiLiteral : State::Literal;
            } else if (c == '.') {
                if (++dots >= KEY_PART_LIMIT) {
                    reason = QStringLiteral("key of more than %1 dotted parts").arg(KEY_PART_LIMIT);
                    return false;
                }
            } else if (c == '=' || c == ',' || c == '[' || c == ']' || c == '{' || c == '}') {
                dots = 0;
            }
            break;
        case State::Comment:
            break;
        case State::Basic:
        case State::MultiBasic:
            if (escaped) {
                escaped = false;
            } else if (c == '\\') {
                escaped = true;
            } else if (c == '"' && state == State::Basic) {
                state = State::Bare;
            } else if (c == '"' && run(at) >= 3) {
                // Up to two quotes of the string's own may come before the closing three.
                skip = run(at) - 1;
                state = State::Bare;
            }
            break;
        case State::Literal:
        case State::MultiLiteral:
            if (c == '\'' && state == State::Literal) {
                state = State::Bare;
            } else if (c == '\'' && run(at) >= 3) {
                skip = run(at) - 1;
                state = State::Bare;
            }
            break;
        }
    }
    return true;
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

int runTomlToCsr(Tier tier, const QStringList &args)
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
    int faultLine = 0;
    int faultColumn = 0;
    QString reason;
    if (!screen(text, faultLine, faultColumn, reason)) {
        report(QStringLiteral("%1:%2:%3: %4")
                   .arg(tomlPath)
                   .arg(faultLine)
                   .arg(faultColumn)
                   .arg(reason));
        return EXIT_FAULTS;
    }
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
