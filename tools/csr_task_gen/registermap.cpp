// SPDX-License-Identifier: MIT
#include "registermap.h"

#include "taskcommand.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>

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

bool registermap::encode(const Field &field, const QString &value, quint32 &code)
{
    static const QRegularExpression decimal(QStringLiteral("^[0-9]+(\\.[0-9]+)?$"));
    quint64 number = 0;
    bool numeric = true;
    switch (field.encoding) {
    case Encoding::Integer:
        number = value.toULongLong(&numeric);
        break;
    case Encoding::Micro: {
        numeric = decimal.match(value).hasMatch();
        // Decimal arithmetic on the text: the value may carry more digits
        // than a double holds exactly.
        const QString whole = value.section(QLatin1Char('.'), 0, 0);
        const QString fraction
            = QString(value.section(QLatin1Char('.'), 1) + QStringLiteral("0000000")).left(7);
        number = whole.toULongLong() * 1000000 + fraction.left(6).toULongLong();
        if (fraction.at(6) >= QLatin1Char('5'))
            ++number;
        break;
    }
    case Encoding::Words:
        if (!field.words.contains(value)) {
            fault(field.line, QStringLiteral("no code for --%1 %2 of task %3")
                                  .arg(field.source, value, field.task));
            return false;
        }
        number = field.words.value(value);
        break;
    }
    if (!numeric) {
        fault(field.line, QStringLiteral("--%1 %2 of task %3 is no number; its field needs "
                                         "WORD=code,...")
                              .arg(field.source, value, field.task));
        return false;
    }
    if (number > fieldLimit(field.width)) {
        fault(field.line, QStringLiteral("--%1 %2 of task %3 does not fit the %4 bits of its field")
                              .arg(field.source, value, field.task)
                              .arg(field.width));
        return false;
    }
    code = quint32(number);
    return true;
}

bool registermap::writes(const taskcommand &command, QStringList &lines)
{
    bool good = true;
    for (int bit = 0; bit < 8; ++bit) {
        if (!(command.laneMask() & (1 << bit)))
            continue;
        const int quad = bit / 4;
        // Offsets in the order of the map, each with the data of its fields.
        QVector<quint32> offsets;
        QMap<quint32, quint32> data;
        for (const Field &field : qAsConst(m_fields)) {
            if (field.task != command.task())
                continue;
            const QString flag = field.source == QLatin1String(REFERENCE_SOURCE)
                                     ? command.referenceFlag(quad)
                                     : field.source;
            const QString value = command.value(flag);
            // An option left out, such as the frequency of a quad not in use.
            if (value.isNull())
                continue;
            quint32 code = 0;
            if (!encode(field, value, code)) {
                good = false;
                continue;
            }
            if (!offsets.contains(field.offset))
                offsets.append(field.offset);
            data[field.offset] |= code << field.low;
        }
        const quint32 base = m_laneBase.value(laneName(bit));
        for (quint32 offset : qAsConst(offsets)) {
            lines.append(QStringLiteral("upar_write_driver 0x%1 0x%2")
                             .arg(base + offset, 6, 16, QLatin1Char('0'))
                             .arg(data.value(offset), 8, 16, QLatin1Char('0')));
        }
    }
    if (!good)
        lines.clear();
    return good;
}

} // namespace IPSERDESIP
