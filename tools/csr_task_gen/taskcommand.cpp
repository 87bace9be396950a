// SPDX-License-Identifier: MIT
#include "taskcommand.h"

#include <QRegularExpression>

namespace IPSERDESIP {

namespace {

enum class Kind {
    Rate,      // Gbps, a decimal number above 0
    Frequency, // MHz, a decimal number; 0 stands for a reference mux not in use
    Integer,   // 0 to `maximum`
    Word,      // one of `words`
};

struct Rule
{
    const char *task;
    const char *flag;
    Kind kind;
    int maximum;
    const char *words;
    bool required;
};

const Rule RULES[] = {
    {"cfg_tx_dr", "tx_data_rate", Kind::Rate, 0, nullptr, true},
    {"cfg_tx_dr", "pcs_tx_clk_src", Kind::Word, 0, "0 1 2", true},
    {"cfg_tx_dr", "pll_ref_sel", Kind::Word, 0, "0 1", true},
    {"cfg_tx_dr", "q0_refmux0_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_tx_dr", "q0_refmux1_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_tx_dr", "q1_refmux0_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_tx_dr", "q1_refmux1_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_tx_dr", "width_mode", Kind::Word, 0, "8 10 16 20", true},
    {"cfg_rx_dr", "rx_data_rate", Kind::Rate, 0, nullptr, true},
    {"cfg_rx_dr", "cdr_calc_src", Kind::Word, 0, "0 1", true},
    {"cfg_rx_dr", "q0_refmux0_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_rx_dr", "q0_refmux1_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_rx_dr", "q1_refmux0_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_rx_dr", "q1_refmux1_freq", Kind::Frequency, 0, nullptr, false},
    {"cfg_lb", "lb_state", Kind::Word, 0, "ON OFF", true},
    {"cfg_lb", "lb_mode", Kind::Word, 0, "LB_NES LB_ENC", true},
    {"cfg_tx_afe", "ffe_manual", Kind::Word, 0, "0 1", true},
    {"cfg_tx_afe", "txlev", Kind::Integer, 15, nullptr, true},
    {"cfg_tx_afe", "ffe_cm", Kind::Integer, 19, nullptr, true},
    {"cfg_tx_afe", "ffe_c1", Kind::Integer, 19, nullptr, true},
    {"cfg_rx_afe", "rx_eq_bias", Kind::Integer, 15, nullptr, true},
    {"cfg_rx_afe", "dr_rx_att_boost", Kind::Integer, 2, nullptr, true},
    {"cfg_rx_afe", "eq_manual", Kind::Word, 0, "0 1", true},
    {"cfg_rx_afe", "dr_rx_att", Kind::Integer, 15, nullptr, true},
    {"cfg_rx_afe", "dr_rx_boost", Kind::Integer, 15, nullptr, true},
};

// The rate tasks pick the reference mux of each lane's quad by one flag.
struct Selector
{
    const char *task;
    const char *flag;
};
const Selector SELECTORS[] = {
    {"cfg_tx_dr", "pll_ref_sel"},
    {"cfg_rx_dr", "cdr_calc_src"},
};

const Rule *ruleOf(const QString &task, const QString &flag)
{
    for (const Rule &rule : RULES) {
        if (task == QLatin1String(rule.task) && flag == QLatin1String(rule.flag))
            return &rule;
    }
    return nullptr;
}

QString selectorOf(const QString &task)
{
    for (const Selector &selector : SELECTORS) {
        if (task == QLatin1String(selector.task))
            return QLatin1String(selector.flag);
    }
    return {};
}

bool isDecimal(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^[0-9]+(\\.[0-9]+)?$"));
    return form.match(text).hasMatch();
}

bool isPositive(const QString &text)
{
    return text.contains(QRegularExpression(QStringLiteral("[1-9]")));
}

QString dashed(const QString &flag)
{
    return QStringLiteral("--") + flag;
}

} // namespace

QStringList taskcommand::tasks()
{
    QStringList names;
    for (const Rule &rule : RULES) {
        if (!names.contains(QLatin1String(rule.task)))
            names.append(QLatin1String(rule.task));
    }
    return names;
}

QStringList taskcommand::flagsOf(const QString &task)
{
    QStringList flags;
    for (const Rule &rule : RULES) {
        if (task == QLatin1String(rule.task))
            flags.append(QLatin1String(rule.flag));
    }
    return flags;
}

QString taskcommand::unitOf(const QString &task, const QString &flag)
{
    const Rule *rule = ruleOf(task, flag);
    if (rule && rule->kind == Kind::Rate)
        return QStringLiteral("Gbps");
    if (rule && rule->kind == Kind::Frequency)
        return QStringLiteral("MHz");
    return {};
}

bool taskcommand::selectsReference(const QString &task)
{
    return !selectorOf(task).isEmpty();
}

QString taskcommand::usage()
{
    QString text = QStringLiteral("usage: csr_task_gen.bin --task <task> --lane <mask> "
                                  "[--<option> <value>]... -o <file>\n"
                                  "  <mask>: 1 to 255; bits 0-3 lanes 0-3 of Q0, bits 4-7 those "
                                  "of Q1\n");
    for (const QString &task : tasks()) {
        QStringList options;
        for (const QString &flag : flagsOf(task)) {
            const Rule *rule = ruleOf(task, flag);
            QString value;
            switch (rule->kind) {
            case Kind::Rate:
                value = QStringLiteral("<Gbps>");
                break;
            case Kind::Frequency:
                value = QStringLiteral("<MHz>");
                break;
            case Kind::Integer:
                value = QStringLiteral("<0-%1>").arg(rule->maximum);
                break;
            case Kind::Word:
                value
                    = QString::fromLatin1(rule->words).replace(QLatin1Char(' '), QLatin1Char('|'));
                break;
            }
            const QString option = dashed(flag) + QLatin1Char(' ') + value;
            options.append(rule->required ? option : QLatin1Char('[') + option + QLatin1Char(']'));
        }
        text += QStringLiteral("  %1: %2\n").arg(task, options.join(QLatin1Char(' ')));
    }
    return text;
}

QString taskcommand::referenceFlag(int quad) const
{
    const QString selector = selectorOf(m_task);
    if (selector.isEmpty())
        return {};
    return QStringLiteral("q%1_refmux%2_freq").arg(quad).arg(value(selector));
}

void taskcommand::fault(const QString &text)
{
    m_faults.append(QStringLiteral("Error: ") + text);
}

bool taskcommand::parse(const QStringList &args)
{
    m_task.clear();
    m_laneMask = 0;
    m_output.clear();
    m_values.clear();
    m_refused.clear();
    m_valueless.clear();
    m_faults.clear();

    if (args.isEmpty()) {
        fault(QStringLiteral("no arguments\n") + usage());
        return false;
    }

    // Everything given, flag as written to its value, in order.
    QStringList given;
    QMap<QString, QString> values;
    for (int i = 0; i < args.size(); ++i) {
        const QString &argument = args.at(i);
        if (!argument.startsWith(QLatin1String("--")) && argument != QLatin1String("-o")) {
            fault(QStringLiteral("unexpected argument \"%1\"").arg(argument));
            continue;
        }
        if (i + 1 >= args.size()) {
            fault(QStringLiteral("%1 has no value").arg(argument));
            m_valueless.append(argument);
            break;
        }
        if (values.contains(argument))
            fault(QStringLiteral("%1 is given more than once").arg(argument));
        given.append(argument);
        values.insert(argument, args.at(++i));
    }

    // A flag that came last without its value has its fault already.
    const auto missing = [&values, this](const QString &argument) {
        return !values.contains(argument) && !m_valueless.contains(argument);
    };
    const QString task = values.value(QStringLiteral("--task"));
    if (missing(QStringLiteral("--task")))
        fault(
            QStringLiteral("--task is missing; one of %1").arg(tasks().join(QStringLiteral(", "))));
    else if (values.contains(QStringLiteral("--task")) && !tasks().contains(task))
        fault(QStringLiteral("--task %1: unknown task; one of %2")
                  .arg(task, tasks().join(QStringLiteral(", "))));
    else
        m_task = task;

    if (missing(QStringLiteral("--lane")))
        fault(QStringLiteral("--lane is missing"));
    else if (values.contains(QStringLiteral("--lane")))
        checkLane(values.value(QStringLiteral("--lane")));

    m_output = values.value(QStringLiteral("-o"));
    if (m_output.isEmpty() && !m_valueless.contains(QStringLiteral("-o")))
        fault(QStringLiteral("-o is missing: the file to write"));

    // Without a known task the options cannot be judged.
    if (m_task.isEmpty())
        return false;

    for (const QString &argument : qAsConst(given)) {
        if (argument == QLatin1String("--task") || argument == QLatin1String("--lane")
            || argument == QLatin1String("-o"))
            continue;
        const QString flag = argument.mid(2);
        if (!ruleOf(m_task, flag)) {
            fault(QStringLiteral("%1 is not an option of task %2").arg(argument, m_task));
            continue;
        }
        m_values.insert(flag, values.value(argument));
        if (!checkValue(flag, values.value(argument)))
            m_refused.insert(flag);
    }
    for (const QString &flag : flagsOf(m_task)) {
        if (ruleOf(m_task, flag)->required && missing(dashed(flag)))
            fault(QStringLiteral("task %1 needs %2").arg(m_task, dashed(flag)));
    }
    // Which reference a quad uses is known only from an accepted selector.
    const QString selector = selectorOf(m_task);
    if (!selector.isEmpty() && !value(selector).isNull())
        checkReferences();
    return m_faults.isEmpty();
}

void taskcommand::checkLane(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,3}$"));
    const int mask = digits.match(text).hasMatch() ? text.toInt() : -1;
    if (mask == 0) {
        fault(QStringLiteral("--lane 0 selects no lane"));
    } else if (mask < 0 || mask > 255) {
        fault(QStringLiteral("--lane %1: expected a lane mask from 1 to 255").arg(text));
    } else {
        m_laneMask = mask;
    }
}

bool taskcommand::checkValue(const QString &flag, const QString &text)
{
    const int before = m_faults.size();
    const Rule *rule = ruleOf(m_task, flag);
    const QString head = dashed(flag) + QLatin1Char(' ') + text + QStringLiteral(": ");
    switch (rule->kind) {
    case Kind::Rate:
        if (!isDecimal(text))
            fault(head + QStringLiteral("expected a data rate in Gbps"));
        else if (!isPositive(text))
            fault(head + QStringLiteral("the data rate must be above 0"));
        break;
    case Kind::Frequency:
        if (!isDecimal(text))
            fault(head + QStringLiteral("expected a frequency in MHz"));
        break;
    case Kind::Integer: {
        static const QRegularExpression digits(QStringLiteral("^[0-9]{1,9}$"));
        if (!digits.match(text).hasMatch() || text.toInt() > rule->maximum)
            fault(head + QStringLiteral("expected an integer from 0 to %1").arg(rule->maximum));
        break;
    }
    case Kind::Word: {
        const QStringList words = QString::fromLatin1(rule->words).split(QLatin1Char(' '));
        if (!words.contains(text))
            fault(head
                  + QStringLiteral("expected one of %1").arg(words.join(QStringLiteral(", "))));
        break;
    }
    }
    return m_faults.size() == before;
}

// A rate task needs, for every quad it touches, the frequency of the
// reference mux that it selects; the other quad's may be left out or be 0.
void taskcommand::checkReferences()
{
    const QString selector = selectorOf(m_task);
    if (selector.isEmpty())
        return;
    for (int quad = 0; quad < 2; ++quad) {
        if (!(m_laneMask & (0xf << (4 * quad))))
            continue;
        const QString flag = referenceFlag(quad);
        const QString why = QStringLiteral("lanes of Q%1 are chosen and --%2 %3 selects REFMUX%3")
                                .arg(quad)
                                .arg(selector, value(selector));
        // A value given but refused, or a flag without one, has its fault.
        if (m_refused.contains(flag) || m_valueless.contains(dashed(flag)))
            continue;
        if (!m_values.contains(flag))
            fault(QStringLiteral("%1 is missing: %2").arg(dashed(flag), why));
        else if (!isPositive(value(flag)))
            fault(QStringLiteral("%1 %2: must be above 0: %3").arg(dashed(flag), value(flag), why));
    }
}

} // namespace IPSERDESIP
