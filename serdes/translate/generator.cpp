// SPDX-License-Identifier: MIT

#include "translate/generator.h"

#include "model/serdes.h"
#include "plugin/serdesipconstants.h"
#include "tiers/tierdata.h"
#include "translate/parser.h"
#include "translate/parsertables.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>
#include <QStringMatcher>
#include <QVector>
#include <QtDebug>

#include <memory>

namespace IPSERDESIP {

using parsertables::DeviceLine;

namespace {

// The parameter file of a register build lies in the working directory, where
// the compiler, started there too, finds it by this relative name.
const char TOML_FILE[] = "serdes_tmp.toml";
const char WRITE_ERROR[] = "%1:\nFailed to write file.";
const char TOOL_MISSING[] = "Can not find %1, please check your installation.";
const char TOOL_NOT_STARTED[] = "Can not start %1: %2";

// The compiler gets this long; what it has not finished by then counts as
// done, and the page's check that the register file exists is what remains.
constexpr int TOOL_TIMEOUT_MS = 30000;

// These failures come with no output of a tool: the list dies with its
// generator, so the message handler gets them too and they are never lost.
void reportTo(QStringList &errList, const QString &error)
{
    qCritical("%s", qPrintable(error));
    errList.append(error);
}

// The tier whose register compiler reads the device line among `lines`: the
// tier whose parts get that line. Lines without a device line are built
// as 880k.
Tier tierOfLines(const QStringList &lines)
{
    for (const QString &line : lines) {
        for (const TierData *tier : allTiers()) {
            for (const DeviceLine &device : tier->deviceLines) {
                if (line == QLatin1String(device.line))
                    return tier->description.tier;
            }
        }
    }
    return Tier::T880k;
}

// The lanes whose main equaliser tap is computed, in order: q0's, then q1's.
QStringList lanesOf(Tier tier)
{
    QStringList lanes = tierSections(tier);
    return lanes.mid(tierDescription(tier).quads);
}

// The integer from a line's first blank on; 0 when there is none to read.
int valueOf(const QString &line)
{
    const int blank = line.indexOf(QLatin1Char(' '));
    return blank < 0 ? 0 : line.midRef(blank).trimmed().toInt();
}

// TX_FFE for each lane in turn, in one pass over the lines. The line added
// for one lane names no other, so no lane sees another's, and the result is
// that of one call per lane.
void completeFfe(QStringList &lines, const QStringList &lanes)
{
    struct Taps
    {
        bool c0 = false;
        bool cmFound = false;
        bool c1Found = false;
        int cm = 0;
        int c1 = 0;
    };
    QVector<Taps> taps(lanes.size());
    // Each name the lanes are looked for under ends in this stem, followed by
    // "0", "m" or "1"; a line without the stem holds none of them.
    static const QStringMatcher stem(QStringLiteral(".ffe_c"));
    constexpr int STEM_SIZE = 6;
    for (const QString &line : qAsConst(lines)) {
        for (int at = stem.indexIn(line); at >= 0; at = stem.indexIn(line, at + 1)) {
            if (at + STEM_SIZE >= line.size())
                break;
            const QChar tap = line.at(at + STEM_SIZE);
            for (int i = 0; i < lanes.size(); ++i) {
                const QString &lane = lanes.at(i);
                if (at < lane.size() || line.midRef(at - lane.size(), lane.size()) != lane)
                    continue;
                Taps &lineTaps = taps[i];
                if (tap == QLatin1Char('0')) {
                    lineTaps.c0 = true;
                } else if (tap == QLatin1Char('m') && !lineTaps.cmFound) {
                    lineTaps.cmFound = true;
                    lineTaps.cm = valueOf(line);
                } else if (tap == QLatin1Char('1') && !lineTaps.c1Found) {
                    lineTaps.c1Found = true;
                    lineTaps.c1 = valueOf(line);
                }
            }
        }
    }
    for (int i = 0; i < lanes.size(); ++i) {
        const Taps &lane = taps.at(i);
        // Every lane of a tier has both taps among its defaults; only a lane
        // that the tier lacks comes without them, and is left alone.
        if (lane.c0 || !lane.cmFound || !lane.c1Found)
            continue;
        lines.append(lanes.at(i) + QLatin1String(".ffe_c0 ")
                     + QString::number(40 - lane.cm - lane.c1));
    }
}

// Appends `part` in UTF-8 with every blank made " = ".
void appendEntry(QByteArray &out, const QStringRef &part)
{
    const int start = out.size();
    out.resize(start + 3 * part.size());
    char *end = out.data() + start;
    for (const QChar c : part) {
        const ushort code = c.unicode();
        if (code >= 0x80) {
            out.resize(start);
            out += part.toString().replace(QLatin1Char(' '), QLatin1String(" = ")).toUtf8();
            return;
        }
        if (code == ' ') {
            *end++ = ' ';
            *end++ = '=';
            *end++ = ' ';
        } else {
            *end++ = char(code);
        }
    }
    out.resize(int(end - out.constData()));
}

int joinerAt(const QString &line)
{
    static_assert(sizeof(PARAMERTER_SPLIT) == 3, "the joiner is two characters");
    const QChar amp = QLatin1Char(PARAMERTER_SPLIT[0]);
    for (int at = line.indexOf(amp); at >= 0 && at + 1 < line.size();
         at = line.indexOf(amp, at + 1)) {
        if (line.at(at + 1) == QLatin1Char(PARAMERTER_SPLIT[1]))
            return at;
    }
    return -1;
}

bool writeToml(const QString &path, const QStringList &lines, const QStringList &sections,
               QStringList &errList)
{
    const int count = sections.size();
    QString device;
    QVector<QByteArray> bodies(count);
    // The value each field of a section was given first. A second entry of a
    // field would make the file invalid TOML; it is dropped, so that a line
    // given by a protocol beats the default behind it.
    QVector<QHash<QString, QString>> firstValues(count);
    // About what a lane section of every tier holds.
    for (QByteArray &body : bodies)
        body.reserve(4096);
    // Files the part of `line` from `from` to `to` as an entry: its section
    // prefix cut off and every blank made " = ". A part of a section the tier
    // lacks, or of none, is dropped. Only the halves of a joined line are
    // trimmed first.
    const auto file = [&](const QString &line, int from, int to, bool trim) {
        while (trim && from < to && line.at(from).isSpace())
            ++from;
        while (trim && to > from && line.at(to - 1).isSpace())
            --to;
        // A header ends at its only "]", so the part's first "]" tells which
        // header it can begin with.
        const int close = line.indexOf(QLatin1Char(']'), from);
        if (close < 0 || close + 1 >= to || line.at(close + 1) != QLatin1Char('.'))
            return;
        const QStringRef header = line.midRef(from, close + 1 - from);
        for (int i = 0; i < count; ++i) {
            if (header != sections.at(i))
                continue;
            const QStringRef entry = line.midRef(close + 2, to - close - 2);
            const int blank = entry.indexOf(QLatin1Char(' '));
            const QString field = entry.left(blank).toString();
            const QString value = blank < 0 ? QString() : entry.mid(blank + 1).toString();
            const auto first = firstValues[i].constFind(field);
            if (first != firstValues[i].cend()) {
                qWarning().noquote() << QStringLiteral("%1 %2: kept %3, dropped %4")
                                            .arg(header.toString(), field, first.value(), value);
                return;
            }
            firstValues[i].insert(field, value);
            appendEntry(bodies[i], entry);
            bodies[i] += '\n';
            return;
        }
    };
    for (const QString &line : lines) {
        if (line.startsWith(QLatin1String("device ="))) {
            device = line;
            continue;
        }
        const int join = joinerAt(line);
        if (join < 0) {
            file(line, 0, line.size(), false);
            continue;
        }
        file(line, 0, join, true);
        file(line, join + 2, line.size(), true);
    }

    QByteArray text = device.toUtf8();
    int size = text.size() + 64;
    for (const QByteArray &body : bodies)
        size += body.size() + 16;
    text.reserve(size);
    text += "\n\n[regulator]\nregulator_enable = false\n\n";
    for (int i = 0; i < count; ++i) {
        text += sections.at(i).toLatin1();
        text += '\n';
        text += bodies[i];
        text += '\n';
    }

    QFile out(path);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        reportTo(errList, QString::fromLatin1(WRITE_ERROR).arg(QDir::toNativeSeparators(path)));
        return false;
    }
    out.write(text);
    out.flush();
    out.close();
    return true;
}

} // namespace

void TX_FFE(QStringList &lines, const QString &lane)
{
    completeFfe(lines, {lane});
}

QStringList generator::getErrStringList() const
{
    return errList;
}

bool generator::generateTomlFile(const QStringList &iniLines, const QString &path)
{
    errList.clear();
    QStringList lines = parser::instance()->converIniToToml(iniLines, errList);
    // A 90k part is written with the sections of 880k here: this file is only
    // read back for its enable and clock keys, never compiled.
    Tier tier = tierOfLines(lines);
    if (tier == Tier::T90k)
        tier = Tier::T880k;
    completeFfe(lines, lanesOf(tier));
    lines += getSerdesRouteToml();
    lines += getAdditonalToml();
    const bool written = writeToml(path, lines, tierSections(tier), errList);
    return written && errList.isEmpty();
}

bool generator::generate(const QStringList &iniLines, const QString &csrPath,
                         const QStringList &csrLines)
{
    errList.clear();
    QStringList lines = parser::instance()->converIniToToml(iniLines, errList);
    const Tier tier = tierOfLines(lines);
    completeFfe(lines, lanesOf(tier));
    lines += getSerdesRouteToml();
    lines += getAdditonalToml();

    const QString tomlPath = QString::fromLatin1(TOML_FILE);
    const bool written = writeToml(tomlPath, lines, tierSections(tier), errList);
    // A file with untranslated parameters stays for the user to read, but is
    // not compiled, and the register file is left as it was.
    if (!written || !errList.isEmpty())
        return false;

    return generateCSR(tierDescription(tier).registerCompiler, tomlPath, csrPath, csrLines);
}

QStringList generator::getSerdesRouteToml() const
{
    QStringList lines;
    const QMap<QString, Instance *> elements = serdes::instance()->allInstance();
    for (Instance *element : elements) {
        if (auto *mux = dynamic_cast<MUX *>(element)) {
            lines += mux->tomlParameter();
        } else if (auto *pll = dynamic_cast<PLL *>(element)) {
            if (MUX *select = pll->Mux())
                lines += select->tomlParameter();
        }
    }
    return lines;
}

QStringList generator::getAdditonalToml() const
{
    return {QStringLiteral("[q0].refmux_scheme \"USER_DEFINED\""),
            QStringLiteral("[q1].refmux_scheme \"USER_DEFINED\"")};
}

bool generator::generateTOML_880k(const QString &path, const QStringList &lines)
{
    return writeToml(path, lines, tierSections(Tier::T880k), errList);
}

bool generator::generateTOML_370k(const QString &path, const QStringList &lines)
{
    return writeToml(path, lines, tierSections(Tier::T370k), errList);
}

bool generator::generateTOML_90k(const QString &path, const QStringList &lines)
{
    return writeToml(path, lines, tierSections(Tier::T90k), errList);
}

bool generator::generateCSR_880k(const QString &tomlPath, const QString &csrPath,
                                 const QStringList &csrLines)
{
    return generateCSR(tierDescription(Tier::T880k).registerCompiler, tomlPath, csrPath, csrLines);
}

bool generator::generateCSR_370k(const QString &tomlPath, const QString &csrPath,
                                 const QStringList &csrLines)
{
    return generateCSR(tierDescription(Tier::T370k).registerCompiler, tomlPath, csrPath, csrLines);
}

bool generator::generateCSR_90k(const QString &tomlPath, const QString &csrPath,
                                const QStringList &csrLines)
{
    return generateCSR(tierDescription(Tier::T90k).registerCompiler, tomlPath, csrPath, csrLines);
}

bool generator::generateCSR(const char *tool, const QString &tomlPath, const QString &csrPath,
                            const QStringList &csrLines)
{
    const QString program
        = QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(tool);
    const QString cleaned = QDir::cleanPath(program);
    if (!QFileInfo::exists(cleaned)) {
        reportTo(errList, QString::fromLatin1(TOOL_MISSING).arg(QDir::toNativeSeparators(cleaned)));
        return false;
    }

    auto process = std::make_unique<QProcess>();
    process->start(program, {tomlPath, QStringLiteral("-o"), csrPath}, QIODevice::ReadWrite);
    // A tool that exists but cannot be started (no execute bit, not a program
    // of this machine) ends with no words of its own, as exit code 255, so the
    // reason is given here. A tool still running at the time limit is left to
    // the page's check that the register file exists.
    if (!process->waitForFinished(TOOL_TIMEOUT_MS)) {
        if (process->error() == QProcess::FailedToStart) {
            reportTo(errList, QString::fromLatin1(TOOL_NOT_STARTED)
                                  .arg(QDir::toNativeSeparators(cleaned), process->errorString()));
            return false;
        }
        qWarning().noquote() << program << "did not finish:" << process->errorString();
    }
    const int exitCode = process->exitCode();
    qDebug().noquote() << program << tomlPath << "-o" << csrPath
                       << QStringLiteral("return %1").arg(exitCode);
    if (exitCode != 0) {
        QByteArray report = process->readAllStandardError();
        const int nul = report.indexOf('\0');
        if (nul >= 0)
            report.truncate(nul);
        const QString text = QString::fromLocal8Bit(report);
        qCritical("%s", qPrintable(text));
        // The compiler's own words start at its error marker; what comes
        // before it is progress output.
        int from = text.indexOf(QLatin1String("Error"));
        if (from < 0)
            from = text.indexOf(QLatin1String("Exception"));
        errList.append(from < 0 ? text : text.mid(from));
        return false;
    }
    // Ends a compiler still running past the time limit.
    process.reset();

    QFile csr(csrPath);
    if (!csr.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        reportTo(errList, QString::fromLatin1(WRITE_ERROR).arg(QDir::toNativeSeparators(csrPath)));
        return false;
    }
    QByteArray text;
    for (const QString &line : csrLines)
        text += line.toUtf8() + '\n';
    csr.write(text);
    csr.flush();
    csr.close();
    return true;
}

} // namespace IPSERDESIP
