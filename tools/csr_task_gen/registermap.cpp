// SPDX-License-Identifier: MIT
#include "registermap.h"

#include "taskcommand.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>
#include <limits>

namespace IPSERDESIP {

namespace {

constexpr quint32 ADDRESS_LIMIT = 0xffffff;
// The source of a field that holds the frequency of the reference mux that a
// rate task selects in the lane's quad.
const char REFERENCE_SOURCE[] = "ref_freq";

QString laneName(int bit)
{
    return QStringLiteral("q%1.ln%2").arg(bit / 4).arg(bit % 4);
}

bool readNumber(const QString &text, quint32 &number)
{
    bool ok = false;
    const qulonglong value = text.startsWith(QLatin1String("0x")) ? text.mid(2).toULongLong(&ok, 16)
                                                                  : text.toULongLong(&ok, 10);
    if (!ok || value > 0xffffffffULL)
        return false;
    number = quint32(value);
    return true;
}

quint64 fieldLimit(int width)
{
    return (quint64(1) << width) - 1;
}

// Places after the point that the micro encoding keeps.
constexpr int MICRO_DIGITS = 6;

enum class Scaled { Fits, NotANumber, TooLarge };

// A decimal number times 10^digits, rounded half up; with no digits, an
// integer. Digit by digit: the text may carry more digits than a double holds
// exactly, or than 64 bits hold at all.
Scaled scale(const QString &text, int digits, quint64 &number)
{
    static const QRegularExpression decimal(QStringLiteral("^([0-9]+)(?:\\.([0-9]+))?$"));
    const QRegularExpressionMatch match = decimal.match(text);
    if (!match.hasMatch() || (digits == 0 && match.capturedLength(2) > 0))
        return Scaled::NotANumber;
    const QString fraction = match.captured(2);
    const QString kept
        = match.captured(1) + fraction.left(digits).leftJustified(digits, QLatin1Char('0'));
    constexpr quint64 most = std::numeric_limits<quint64>::max();
    number = 0;
    for (const QChar c : kept) {
        const quint64 digit = quint64(c.unicode() - '0');
        if (number > (most - digit) / 10)
            return Scaled::TooLarge;
        number = number * 10 + digit;
    }
    if (fraction.size() > digits && fraction.at(digits) >= QLatin1Char('5')) {
        if (number == most)
            return Scaled::TooLarge;
        ++number;
    }
    return Scaled::Fits;
}

// `number` divided by 10^digits, as a decimal without trailing zeros.
QString unscaled(quint64 number, int digits)
{
    QString text = QString::number(number).rightJustified(digits + 1, QLatin1Char('0'));
    if (digits == 0)
        return text;
    text.insert(text.size() - digits, QLatin1Char('.'));
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

} // namespace

void registermap::fault(int line, const QString &text)
{
    m_faults.append(line > 0 ? QStringLiteral("Error: %1:%2: %3").arg(m_path).arg(line).arg(text)
                             : QStringLiteral("Error: %1: %2").arg(m_path, text));
}

bool registermap::load(const QString &path)
{
    m_path = path;
    m_laneBase.clear();
    m_fields.clear();
    m_faults.clear();

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        fault(0, QStringLiteral("cannot read the register map: %1").arg(file.errorString()));
        return false;
    }
    QTextStream in(&file);
    in.setCodec("UTF-8");
    int line = 0;
    while (!in.atEnd()) {
        ++line;
        QString text = in.readLine();
        const int comment = text.indexOf(QLatin1Char('#'));
        if (comment >= 0)
            text.truncate(comment);
        const QStringList parts
            = text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
        if (parts.isEmpty())
            continue;
        if (parts.first() == QLatin1String("lane"))
            readLane(parts, line);
        else if (parts.first() == QLatin1String("field"))
            readField(parts, line);
        else
            fault(line, QStringLiteral("unknown entry \"%1\"").arg(parts.first()));
    }

    for (int bit = 0; bit < 8; ++bit) {
        if (!m_laneBase.contains(laneName(bit)))
            fault(0, QStringLiteral("no base address for lane %1").arg(laneName(bit)));
    }
    for (const QString &task : taskcommand::tasks()) {
        const bool mapped = std::any_of(m_fields.cbegin(), m_fields.cend(),
                                        [&task](const Field &field) { return field.task == task; });
        if (!mapped)
            fault(0, QStringLiteral("no field for task %1").arg(task));
    }
    for (const Field &field : qAsConst(m_fields)) {
        for (auto base = m_laneBase.cbegin(); base != m_laneBase.cend(); ++base) {
            if (quint64(base.value()) + field.offset > ADDRESS_LIMIT) {
                fault(field.line, QStringLiteral("register 0x%1 of lane %2 lies beyond 0xffffff")
                                      .arg(field.offset, 0, 16)
                                      .arg(base.key()));
                break;
            }
        }
    }
    return m_faults.isEmpty();
}

// lane <q>.<ln> <base>
bool registermap::readLane(const QStringList &parts, int line)
{
    static const QRegularExpression name(QStringLiteral("^q[01]\\.ln[0-3]$"));
    quint32 base = 0;
    if (parts.size() != 3 || !name.match(parts.at(1)).hasMatch() || !readNumber(parts.at(2), base)
        || base > ADDRESS_LIMIT) {
        fault(line, QStringLiteral("expected \"lane q<0-1>.ln<0-3> <address up to 0xffffff>\""));
        return false;
    }
    if (m_laneBase.contains(parts.at(1))) {
        fault(line, QStringLiteral("lane %1 is given twice").arg(parts.at(1)));
        return false;
    }
    m_laneBase.insert(parts.at(1), base);
    return true;
}

// field <task> <offset> <low bit> <width> <source> <encoding>
bool registermap::readField(const QStringList &parts, int line)
{
    if (parts.size() != 7) {
        fault(line, QStringLiteral("expected \"field <task> <offset> <low bit> <width> <source> "
                                   "<encoding>\""));
        return false;
    }
    Field field;
    field.task = parts.at(1);
    field.source = parts.at(5);
    field.line = line;
    quint32 low = 0;
    quint32 width = 0;
    bool good = true;
    if (!taskcommand::tasks().contains(field.task)) {
        fault(line, QStringLiteral("unknown task %1").arg(field.task));
        good = false;
    }
    if (!readNumber(parts.at(2), field.offset) || field.offset > ADDRESS_LIMIT) {
        fault(line, QStringLiteral("bad register offset %1").arg(parts.at(2)));
        good = false;
    }
    if (!readNumber(parts.at(3), low) || !readNumber(parts.at(4), width) || width < 1
        || low + width > 32) {
        fault(line, QStringLiteral("bits %1 to %2 do not lie within 32 bits")
                        .arg(parts.at(3), parts.at(4)));
        good = false;
    }
    field.low = int(low);
    field.width = int(width);

    const bool reference = field.source == QLatin1String(REFERENCE_SOURCE)
                           && taskcommand::selectsReference(field.task);
    if (!reference && !taskcommand::flagsOf(field.task).contains(field.source)) {
        fault(line, QStringLiteral("task %1 has no option %2").arg(field.task, field.source));
        good = false;
    }

    const QString encoding = parts.at(6);
    if (encoding == QLatin1String("int")) {
        field.encoding = Encoding::Integer;
    } else if (encoding == QLatin1String("micro")) {
        field.encoding = Encoding::Micro;
    } else {
        field.encoding = Encoding::Words;
        for (const QString &pair : encoding.split(QLatin1Char(','))) {
            const QString word = pair.section(QLatin1Char('='), 0, 0);
            quint32 code = 0;
            if (word.isEmpty() || !readNumber(pair.section(QLatin1Char('='), 1), code)
                || (good && code > fieldLimit(field.width))) {
                fault(line, QStringLiteral("bad encoding %1: expected int, micro or "
                                           "WORD=code,... with codes that fit the field")
                                .arg(encoding));
                good = false;
                break;
            }
            field.words.insert(word, code);
        }
    }
    if (good)
        m_fields.append(field);
    return good;
}

bool registermap::encode(const Field &field, const QString &flag, const QString &value,
                         quint32 &code)
{
    quint64 number = 0;
    Scaled scaled = Scaled::NotANumber;
    switch (field.encoding) {
    case Encoding::Integer:
        scaled = scale(value, 0, number);
        break;
    case Encoding::Micro:
        scaled = scale(value, MICRO_DIGITS, number);
        break;
    case Encoding::Words:
        if (!field.words.contains(value)) {
            fault(field.line,
                  QStringLiteral("no code for --%1 %2 of task %3").arg(flag, value, field.task));
            return false;
        }
        scaled = Scaled::Fits;
        number = field.words.value(value);
        break;
    }
    if (scaled == Scaled::NotANumber) {
        fault(field.line, QStringLiteral("--%1 %2 of task %3 is no number; its field needs "
                                         "WORD=code,...")
                              .arg(flag, value, field.task));
        return false;
    }
    // The user knows the value, not the map's bits: the limit is given in the
    // value's own units.
    if (scaled == Scaled::TooLarge || number > fieldLimit(field.width)) {
        const int digits = field.encoding == Encoding::Micro ? MICRO_DIGITS : 0;
        QString limit = unscaled(fieldLimit(field.width), digits);
        const QString unit = taskcommand::unitOf(field.task, flag);
        if (!unit.isEmpty())
            limit += QLatin1Char(' ') + unit;
        m_valueFaults.append(
            QStringLiteral("Error: --%1 %2: expected at most %3").arg(flag, value, limit));
        return false;
    }
    code = quint32(number);
    return true;
}

bool registermap::writes(const taskcommand &command, QStringList &lines)
{
    m_valueFaults.clear();
    // Per quad, the offsets in the order of the map, each with the data of its
    // fields: the quads differ only in the reference each selects. A value is
    // encoded once, however many lanes take it, so that its fault is told once.
    QVector<quint32> offsets[2];
    QMap<quint32, quint32> data[2];
    const auto take = [&](const Field &field, const QString &flag, int firstQuad, int lastQuad) {
        const QString value = command.value(flag);
        // An option left out, or refused and reported by the command.
        if (value.isNull())
            return true;
        quint32 code = 0;
        if (!encode(field, flag, value, code))
            return false;
        for (int quad = firstQuad; quad <= lastQuad; ++quad) {
            if (!offsets[quad].contains(field.offset))
                offsets[quad].append(field.offset);
            data[quad][field.offset] |= code << field.low;
        }
        return true;
    };
    bool good = true;
    for (const Field &field : qAsConst(m_fields)) {
        if (field.task != command.task())
            continue;
        if (field.source != QLatin1String(REFERENCE_SOURCE)) {
            good = take(field, field.source, 0, 1) && good;
            continue;
        }
        // The reference of a quad without a chosen lane is not written.
        for (int quad = 0; quad < 2; ++quad) {
            if (command.laneMask() & (0xf << (4 * quad)))
                good = take(field, command.referenceFlag(quad), quad, quad) && good;
        }
    }
    if (!good)
        return false;
    for (int bit = 0; bit < 8; ++bit) {
        if (!(command.laneMask() & (1 << bit)))
            continue;
        const int quad = bit / 4;
        const quint32 base = m_laneBase.value(laneName(bit));
        for (quint32 offset : qAsConst(offsets[quad])) {
            lines.append(QStringLiteral("upar_write_driver 0x%1 0x%2")
                             .arg(base + offset, 6, 16, QLatin1Char('0'))
                             .arg(data[quad].value(offset), 8, 16, QLatin1Char('0')));
        }
    }
    return true;
}

} // namespace IPSERDESIP
