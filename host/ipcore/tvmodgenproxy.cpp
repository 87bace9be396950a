// SPDX-License-Identifier: MIT
#include "ipcore/tvmodgenproxy.h"

#include "utils/messages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>
#include <QVector>

#include <limits>

namespace IPCore {

namespace {

// The widest vector that every Verilog tool must support.
constexpr int MAX_PORT_WIDTH = 65536;

const char *const REQUIRED_KEYS[] = {"type", "path", "file_type", "file_name", "mod_name"};
// The lines IPCore::modfileHeader writes, in its order.
const char *const DEVICE_KEYS[]
    = {"device", "device_id", "part_number", "family", "package", "speed"};

template<size_t N>
bool isKey(const char *const (&keys)[N], const QString &key)
{
    for (const char *known : keys) {
        if (key == QLatin1String(known))
            return true;
    }
    return false;
}

struct Port
{
    QString direction;
    int width = 1;
    QString name;
};

struct Param
{
    QString name;
    QString value;
};

struct Instance
{
    QString module;
    QVector<Port> ports;
    QVector<Param> params;
};

struct Design
{
    QMap<QString, QString> header;
    QVector<Instance> instances;
    bool vhdl = false;

    QString value(const char *key) const { return header.value(QLatin1String(key)); }
    QString topPort(const Instance &instance, const Port &port) const
    {
        return QString(instance.module + QLatin1Char('_') + port.name);
    }
    static QString instanceName(const Instance &instance)
    {
        return QString(QLatin1String("u_") + instance.module);
    }
};

bool isIdentifier(const QString &name, bool vhdl)
{
    static const QRegularExpression verilog(QStringLiteral("^[A-Za-z_][A-Za-z0-9_$]*$"));
    static const QRegularExpression vhdlName(QStringLiteral("^[A-Za-z](_?[A-Za-z0-9])*$"));
    return (vhdl ? vhdlName : verilog).match(name).hasMatch();
}

// The keywords of IEEE 1800-2017, which hold all of 1364-2005's. The outputs
// are plain Verilog, but tools commonly read .v files as SystemVerilog and the
// template gets included in SystemVerilog sources, where these words break it.
const char *const VERILOG_KEYWORDS
    = "accept_on alias always always_comb always_ff always_latch and assert assign assume "
      "automatic before begin bind bins binsof bit break buf bufif0 bufif1 byte case casex "
      "casez cell chandle checker class clocking cmos config const constraint context continue "
      "cover covergroup coverpoint cross deassign default defparam design disable dist do edge "
      "else end endcase endchecker endclass endclocking endconfig endfunction endgenerate "
      "endgroup endinterface endmodule endpackage endprimitive endprogram endproperty "
      "endspecify endsequence endtable endtask enum event eventually expect export extends "
      "extern final first_match for force foreach forever fork forkjoin function generate "
      "genvar global highz0 highz1 if iff ifnone ignore_bins illegal_bins implements implies "
      "import incdir include initial inout input inside instance int integer interconnect "
      "interface intersect join join_any join_none large let liblist library local localparam "
      "logic longint macromodule matches medium modport module nand negedge nettype new "
      "nexttime nmos nor noshowcancelled not notif0 notif1 null or output package packed "
      "parameter pmos posedge primitive priority program property protected pull0 pull1 "
      "pulldown pullup pulsestyle_ondetect pulsestyle_onevent pure rand randc randcase "
      "randsequence rcmos real realtime ref reg reject_on release repeat restrict return rnmos "
      "rpmos rtran rtranif0 rtranif1 s_always s_eventually s_nexttime s_until s_until_with "
      "scalared sequence shortint shortreal showcancelled signed small soft solve specify "
      "specparam static string strong strong0 strong1 struct super supply0 supply1 "
      "sync_accept_on sync_reject_on table tagged task this throughout time timeprecision "
      "timeunit tran tranif0 tranif1 tri tri0 tri1 triand trior trireg type typedef union "
      "unique unique0 unsigned until until_with untyped use uwire var vectored virtual void "
      "wait wait_order wand weak weak0 weak1 while wildcard wire with within wor xnor xor";

// The reserved words of VHDL-2008, the PSL ones included.
const char *const VHDL_RESERVED
    = "abs access after alias all and architecture array assert assume assume_guarantee "
      "attribute begin block body buffer bus case component configuration constant context "
      "cover default disconnect downto else elsif end entity exit fairness file for force "
      "function generate generic group guarded if impure in inertial inout is label library "
      "linkage literal loop map mod nand new next nor not null of on open or others out package "
      "parameter port postponed procedure process property protected pure range record register "
      "reject release rem report restrict restrict_guarantee return rol ror select sequence "
      "severity shared signal sla sll sra srl strong subtype then to transport type unaffected "
      "units until use variable vmode vprop vunit wait when while with xnor xor";

QSet<QString> wordSet(const char *words)
{
    const QStringList list = QString::fromLatin1(words).split(QLatin1Char(' '));
    return QSet<QString>(list.cbegin(), list.cend());
}

// No word of either list begins with "u_", so the instance names u_<module>
// need no check of their own.
//
// Only the words of the language written count: no tool of the other language
// reads these files, and a port "signal" is as good a Verilog name as "wire"
// is a VHDL one.
bool isReserved(const QString &name, bool vhdl)
{
    static const QSet<QString> verilog = wordSet(VERILOG_KEYWORDS);
    static const QSet<QString> vhdlWords = wordSet(VHDL_RESERVED);
    return vhdl ? vhdlWords.contains(name.toLower()) : verilog.contains(name);
}

} // namespace

bool isReservedWord(const QString &name)
{
    return isReserved(name, false) || isReserved(name, true);
}

namespace {

// A generic of type integer takes no more than 32 bits: VHDL tools refuse a
// wider value when they elaborate the top, long after it was written.
bool isVhdlInteger(const QString &digits)
{
    bool ok = false;
    const qlonglong value = digits.toLongLong(&ok);
    return ok && value >= std::numeric_limits<qint32>::min()
           && value <= std::numeric_limits<qint32>::max();
}

// VHDL names are case-insensitive, so clashes are found on folded names there.
QString scopeKey(const QString &name, bool vhdl)
{
    return vhdl ? name.toLower() : name;
}

class Parser
{
    Q_DECLARE_TR_FUNCTIONS(IPCore::TvModGenProxy)

public:
    Parser(const QString &fileName, bool vhdl)
        : m_fileName(fileName)
    {
        m_design.vhdl = vhdl;
    }

    void parseLine(int number, const QString &text);
    void finish();

    const Design &design() const { return m_design; }
    const QStringList &errors() const { return m_errors; }

private:
    void fail(int number, const QString &text, const QString &why)
    {
        m_errors << tr("%1 line %2: %3: \"%4\"").arg(m_fileName).arg(number).arg(why, text);
    }
    // Why `name` cannot be the `what` of the line, or empty when it can.
    QString badName(const QString &what, const QString &name) const
    {
        if (!isIdentifier(name, m_design.vhdl))
            return tr("%1 is no identifier").arg(what);
        return reservedName(what, name);
    }
    QString reservedName(const QString &what, const QString &name) const
    {
        if (!isReserved(name, m_design.vhdl))
            return QString();
        return tr("%1 \"%2\" is a reserved word of %3")
            .arg(what, name, m_design.vhdl ? QStringLiteral("VHDL") : QStringLiteral("Verilog"));
    }
    void parseHeader(int number, const QString &text, const QString &key, const QString &value);
    void parseInstanceLine(int number, const QString &text, const QString &key,
                           const QString &value);

    QString m_fileName;
    Design m_design;
    QSet<QString> m_given; // the header keys given, whether accepted or not
    QStringList m_errors;
};

void Parser::parseLine(int number, const QString &text)
{
    const QString line = text.trimmed();
    if (line.isEmpty())
        return;
    static const QRegularExpression form(
        QStringLiteral("^-([A-Za-z_][A-Za-z0-9_]*)(?:\\s+(.*))?$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch()) {
        fail(number, text, tr("not of the form \"-key value\""));
        return;
    }
    const QString key = match.captured(1);
    const QString value = match.captured(2).trimmed();

    static const QRegularExpression instanceStart(QStringLiteral("^protocol_module_name([0-9]+)$"));
    const QRegularExpressionMatch start = instanceStart.match(key);
    if (start.hasMatch()) {
        const int index = m_design.instances.size();
        Instance instance;
        instance.module = value;
        const QString badModule = badName(tr("module name"), value);
        if (start.captured(1) != QString::number(index))
            fail(number, text, tr("instance number %1 expected").arg(index));
        else if (!badModule.isEmpty())
            fail(number, text, badModule);
        for (const Instance &other : qAsConst(m_design.instances)) {
            if (scopeKey(other.module, m_design.vhdl) == scopeKey(value, m_design.vhdl))
                fail(number, text, tr("module named by an earlier instance"));
        }
        // The instance is kept even when refused, so that its own lines are
        // checked against its name rather than reported as strays.
        m_design.instances << instance;
        return;
    }
    if (m_design.instances.isEmpty())
        parseHeader(number, text, key, value);
    else
        parseInstanceLine(number, text, key, value);
}

void Parser::parseHeader(int number, const QString &text, const QString &key, const QString &value)
{
    if (!isKey(REQUIRED_KEYS, key) && !isKey(DEVICE_KEYS, key)) {
        fail(number, text, tr("unknown header key"));
        return;
    }
    if (m_given.contains(key)) {
        fail(number, text, tr("\"-%1\" given twice").arg(key));
        return;
    }
    // A refused line was still given: it is not reported again as missing.
    m_given.insert(key);
    if (key == QLatin1String("mod_name")) {
        const QString why = badName(tr("top module name"), value);
        if (!why.isEmpty()) {
            fail(number, text, why);
            return;
        }
    }
    bool ok = true;
    if (key == QLatin1String("type"))
        ok = value == QLatin1String("SERDES");
    else if (key == QLatin1String("file_type"))
        ok = value == QLatin1String("vlg") || value == QLatin1String("vhdl");
    else if (key == QLatin1String("file_name"))
        ok = !value.isEmpty() && !value.contains(QLatin1Char('/'))
             && !value.contains(QLatin1Char('\\'));
    else if (key == QLatin1String("path"))
        ok = !value.isEmpty();
    if (!ok) {
        fail(number, text, tr("invalid value"));
        return;
    }
    m_design.header.insert(key, value);
}

void Parser::parseInstanceLine(int number, const QString &text, const QString &key,
                               const QString &value)
{
    Instance &instance = m_design.instances.last();
    if (!key.startsWith(instance.module)) {
        fail(number, text, tr("not a line of instance \"%1\"").arg(instance.module));
        return;
    }
    const QString item = key.mid(instance.module.size());
    const QStringList words
        = value.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);

    if (item == QLatin1String("_port")) {
        static const QStringList directions
            = {QStringLiteral("input"), QStringLiteral("output"), QStringLiteral("inout")};
        bool widthOk = false;
        const int width = words.value(1).toInt(&widthOk);
        if (words.size() != 3) {
            fail(number, text, tr("a port takes a direction, a width and a name"));
            return;
        }
        const Port port{words.at(0), width, words.at(2)};
        // Module and port name may each be fine and still join to a keyword at
        // the top, as "pulsestyle" and "onevent" do.
        QString why = badName(tr("port name"), port.name);
        if (why.isEmpty())
            why = reservedName(tr("top port"), m_design.topPort(instance, port));
        if (!directions.contains(port.direction))
            fail(number, text, tr("direction must be input, output or inout"));
        else if (!widthOk || width < 1 || width > MAX_PORT_WIDTH)
            fail(number, text, tr("width must be 1 to %1").arg(MAX_PORT_WIDTH));
        else if (!why.isEmpty())
            fail(number, text, why);
        else
            instance.ports << port;
        return;
    }
    if (item == QLatin1String("_param")) {
        static const QRegularExpression literal(QStringLiteral("^(-?[0-9]+|\"[^\"\\\\]*\")$"));
        const QString name = words.value(0);
        const QString literalText = value.mid(name.size()).trimmed();
        const QString why = badName(tr("parameter name"), name);
        if (!why.isEmpty())
            fail(number, text, why);
        else if (!literal.match(literalText).hasMatch())
            fail(number, text, tr("value must be an integer or a quoted string"));
        else if (m_design.vhdl && !literalText.startsWith(QLatin1Char('"'))
                 && !isVhdlInteger(literalText))
            fail(number, text, tr("value must lie from -2147483648 to 2147483647 in VHDL"));
        else
            instance.params << Param{name, literalText};
        return;
    }
    if (item == QLatin1String("EnableDRP")) {
        if (value != QLatin1String("true") && value != QLatin1String("false"))
            fail(number, text, tr("EnableDRP takes true or false"));
        return;
    }
    fail(number, text, tr("unknown instance line"));
}

void Parser::finish()
{
    for (const char *key : REQUIRED_KEYS) {
        if (!m_given.contains(QLatin1String(key)))
            m_errors << tr("%1: no \"-%2\" line").arg(m_fileName, QLatin1String(key));
    }
    const QString fileType = m_design.value("file_type");
    if (!fileType.isEmpty() && (fileType == QLatin1String("vhdl")) != m_design.vhdl) {
        m_errors << tr("%1: \"-file_type %2\" contradicts the requested %3")
                        .arg(m_fileName, fileType,
                             m_design.vhdl ? QStringLiteral("VHDL") : QStringLiteral("Verilog"));
    }

    // Every name declared in the top's scope must be unique there.
    const bool vhdl = m_design.vhdl;
    QHash<QString, QString> scope;
    auto declare = [&](const QString &name, const QString &what) {
        const QString key = scopeKey(name, vhdl);
        if (scope.contains(key)) {
            m_errors << tr("%1: %2 \"%3\" clashes with %4")
                            .arg(m_fileName, what, name, scope.value(key));
        } else {
            scope.insert(key, QString(what + QStringLiteral(" \"") + name + QLatin1Char('"')));
        }
    };
    declare(m_design.value("mod_name"), tr("top module"));
    QStringList modules;
    for (const Instance &instance : qAsConst(m_design.instances)) {
        // A module named twice was reported with its line already.
        if (modules.contains(scopeKey(instance.module, vhdl)))
            continue;
        modules << scopeKey(instance.module, vhdl);
        if (scopeKey(instance.module, vhdl) != scopeKey(m_design.value("mod_name"), vhdl))
            declare(instance.module, tr("module"));
        else
            m_errors << tr("%1: instance module \"%2\" is the top module")
                            .arg(m_fileName, instance.module);
        declare(Design::instanceName(instance), tr("instance"));
        QStringList seen;
        for (const Param &param : instance.params) {
            if (seen.contains(scopeKey(param.name, vhdl)))
                m_errors << tr("%1: parameter \"%2\" of \"%3\" set twice")
                                .arg(m_fileName, param.name, instance.module);
            seen << scopeKey(param.name, vhdl);
        }
        for (const Port &port : instance.ports)
            declare(m_design.topPort(instance, port), tr("port"));
    }
}

QString verilogRange(int width)
{
    return width == 1 ? QString() : QStringLiteral("[%1:0] ").arg(width - 1);
}

QString vhdlType(int width)
{
    return width == 1 ? QStringLiteral("std_logic")
                      : QStringLiteral("std_logic_vector(%1 downto 0)").arg(width - 1);
}

QString vhdlDirection(const QString &direction)
{
    if (direction == QLatin1String("input"))
        return QStringLiteral("in");
    if (direction == QLatin1String("output"))
        return QStringLiteral("out");
    return QStringLiteral("inout");
}

QStringList banner(const Design &design, const QString &comment)
{
    QStringList lines;
    lines << QString(comment
                     + QStringLiteral(" Written by the module generator from its command "
                                      "file; changes are lost when it runs again."));
    QStringList device;
    for (const char *key : DEVICE_KEYS) {
        const QString value = design.value(key);
        if (!value.isEmpty())
            device << QStringLiteral("%1 %2").arg(QLatin1String(key), value);
    }
    if (!device.isEmpty())
        lines << QString(comment + QStringLiteral(" Device: ") + device.join(QStringLiteral(", ")));
    return lines;
}

// Joins items with a separator after all but the last, as port and
// connection lists need.
QStringList separated(const QStringList &items, const QString &separator)
{
    QStringList lines;
    for (int i = 0; i < items.size(); ++i)
        lines << (i + 1 < items.size() ? QString(items.at(i) + separator) : items.at(i));
    return lines;
}

QStringList verilogTop(const Design &design)
{
    QStringList lines = banner(design, QStringLiteral("//"));
    const QString top = design.value("mod_name");
    QStringList ports;
    for (const Instance &instance : design.instances) {
        for (const Port &port : instance.ports)
            ports << QStringLiteral("    %1 wire %2%3")
                         .arg(port.direction, verilogRange(port.width),
                              design.topPort(instance, port));
    }
    lines << QString();
    if (ports.isEmpty()) {
        lines << QStringLiteral("module %1;").arg(top);
    } else {
        lines << QStringLiteral("module %1 (").arg(top) << separated(ports, QStringLiteral(","))
              << QStringLiteral(");");
    }
    for (const Instance &instance : design.instances) {
        lines << QString();
        QString head = QStringLiteral("    %1").arg(instance.module);
        if (!instance.params.isEmpty()) {
            QStringList params;
            for (const Param &param : instance.params)
                params << QStringLiteral("        .%1(%2)").arg(param.name, param.value);
            lines << QString(head + QStringLiteral(" #("))
                  << separated(params, QStringLiteral(","));
            head = QStringLiteral("    )");
        }
        QStringList connections;
        for (const Port &port : instance.ports)
            connections
                << QStringLiteral("        .%1(%2)").arg(port.name, design.topPort(instance, port));
        lines << QStringLiteral("%1 %2 (").arg(head, Design::instanceName(instance))
              << separated(connections, QStringLiteral(",")) << QStringLiteral("    );");
    }
    lines << QString() << QStringLiteral("endmodule");
    return lines;
}

QStringList verilogTemplate(const Design &design)
{
    QStringList lines = banner(design, QStringLiteral("//"));
    const QString top = design.value("mod_name");
    QStringList connections;
    QStringList notes;
    for (const Instance &instance : design.instances) {
        for (const Port &port : instance.ports) {
            const QString name = design.topPort(instance, port);
            connections << QStringLiteral("    .%1(%1)").arg(name);
            notes << QString(QStringLiteral(" // ") + port.direction + QLatin1Char(' ')
                             + verilogRange(port.width))
                         .trimmed()
                         .prepend(QLatin1Char(' '));
        }
    }
    lines << QString() << QStringLiteral("%1 u_%1 (").arg(top);
    const QStringList body = separated(connections, QStringLiteral(","));
    for (int i = 0; i < body.size(); ++i)
        lines << QString(body.at(i) + notes.at(i));
    lines << QStringLiteral(");");
    return lines;
}

QStringList vhdlPorts(const QVector<QPair<QString, Port>> &ports, const QString &indent)
{
    QStringList items;
    for (const auto &named : ports)
        items << QStringLiteral("%1    %2 : %3 %4")
                     .arg(indent, named.first, vhdlDirection(named.second.direction),
                          vhdlType(named.second.width));
    if (items.isEmpty())
        return {};
    return QStringList{QString(indent + QStringLiteral("port ("))}
           + separated(items, QStringLiteral(";"))
           + QStringList{QString(indent + QStringLiteral(");"))};
}

QVector<QPair<QString, Port>> topPorts(const Design &design)
{
    QVector<QPair<QString, Port>> ports;
    for (const Instance &instance : design.instances) {
        for (const Port &port : instance.ports)
            ports << qMakePair(design.topPort(instance, port), port);
    }
    return ports;
}

QStringList vhdlComponent(const QString &name, const QVector<QPair<QString, Port>> &ports,
                          const QVector<Param> &params)
{
    QStringList lines;
    lines << QStringLiteral("    component %1 is").arg(name);
    if (!params.isEmpty()) {
        QStringList generics;
        for (const Param &param : params)
            generics << QStringLiteral("            %1 : %2")
                            .arg(param.name, param.value.startsWith(QLatin1Char('"'))
                                                 ? QStringLiteral("string")
                                                 : QStringLiteral("integer"));
        lines << QStringLiteral("        generic (") << separated(generics, QStringLiteral(";"))
              << QStringLiteral("        );");
    }
    lines << vhdlPorts(ports, QStringLiteral("        ")) << QStringLiteral("    end component;");
    return lines;
}

QStringList vhdlHead()
{
    return {QString(), QStringLiteral("library ieee;"),
            QStringLiteral("use ieee.std_logic_1164.all;"), QString()};
}

QStringList vhdlTop(const Design &design)
{
    QStringList lines = banner(design, QStringLiteral("--"));
    const QString top = design.value("mod_name");
    lines << vhdlHead() << QStringLiteral("entity %1 is").arg(top)
          << vhdlPorts(topPorts(design), QStringLiteral("    "))
          << QStringLiteral("end entity %1;").arg(top) << QString()
          << QStringLiteral("architecture structure of %1 is").arg(top);
    for (const Instance &instance : design.instances) {
        QVector<QPair<QString, Port>> own;
        for (const Port &port : instance.ports)
            own << qMakePair(port.name, port);
        lines << vhdlComponent(instance.module, own, instance.params);
    }
    lines << QStringLiteral("begin");
    for (const Instance &instance : design.instances) {
        lines << QStringLiteral("    %1 : %2").arg(Design::instanceName(instance), instance.module);
        if (!instance.params.isEmpty()) {
            QStringList generics;
            for (const Param &param : instance.params)
                generics << QStringLiteral("            %1 => %2").arg(param.name, param.value);
            lines << QStringLiteral("        generic map (")
                  << separated(generics, QStringLiteral(",")) << QStringLiteral("        )");
        }
        if (!instance.ports.isEmpty()) {
            QStringList map;
            for (const Port &port : instance.ports)
                map << QStringLiteral("            %1 => %2")
                           .arg(port.name, design.topPort(instance, port));
            lines << QStringLiteral("        port map (") << separated(map, QStringLiteral(","))
                  << QStringLiteral("        )");
        }
        lines.last().append(QLatin1Char(';'));
    }
    lines << QStringLiteral("end architecture structure;");
    return lines;
}

QStringList vhdlTemplate(const Design &design)
{
    QStringList lines = banner(design, QStringLiteral("--"));
    const QString top = design.value("mod_name");
    const QVector<QPair<QString, Port>> ports = topPorts(design);
    lines << QString() << vhdlComponent(top, ports, {}) << QString();
    QStringList map;
    for (const auto &named : ports)
        map << QStringLiteral("        %1 => %1").arg(named.first);
    if (map.isEmpty()) {
        lines << QStringLiteral("    u_%1 : %1;").arg(top);
    } else {
        lines << QStringLiteral("    u_%1 : %1").arg(top) << QStringLiteral("    port map (")
              << separated(map, QStringLiteral(",")) << QStringLiteral("    );");
    }
    return lines;
}

// Writes `lines` to the staging file of `file`, which replaces its target
// only at commit().
bool stage(QSaveFile &file, const QStringList &lines)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream out(&file);
    out.setCodec("UTF-8");
    for (const QString &line : lines)
        out << line << '\n';
    out.flush();
    return out.status() == QTextStream::Ok;
}

// Puts `path` back as it was: with its old contents `previous`, or gone when
// it did not exist.
bool restore(const QString &path, bool existed, const QByteArray &previous, QString *error)
{
    if (!existed) {
        QFile file(path);
        if (file.remove())
            return true;
        *error = file.errorString();
        return false;
    }
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(previous) == previous.size() && file.commit())
        return true;
    *error = file.errorString();
    return false;
}

// Replaces the top and the template together: both are staged in full before
// either target is touched, and a top already replaced gets its old contents
// back should the template's replacement still fail. Returns what went wrong,
// or an empty string.
QString writeOutputs(const QString &cmdFile, const QString &topPath, const QStringList &top,
                     const QString &templatePath, const QStringList &tmpl)
{
    const QString source = QDir::toNativeSeparators(cmdFile);
    auto failure = [&](const QSaveFile &file) {
        return QCoreApplication::translate("IPCore::TvModGenProxy",
                                           "%1: cannot write \"%2\": %3. Nothing was written.")
            .arg(source, QDir::toNativeSeparators(file.fileName()), file.errorString());
    };
    QSaveFile topFile(topPath);
    QSaveFile templateFile(templatePath);
    if (!stage(topFile, top))
        return failure(topFile);
    if (!stage(templateFile, tmpl))
        return failure(templateFile);

    // The old top is read before anything is replaced, since it cannot be
    // put back otherwise.
    QByteArray previous;
    QFile oldTop(topPath);
    const bool hadTop = oldTop.exists();
    if (hadTop) {
        if (oldTop.open(QIODevice::ReadOnly))
            previous = oldTop.readAll();
        if (!oldTop.isOpen() || oldTop.error() != QFileDevice::NoError)
            return QCoreApplication::translate(
                       "IPCore::TvModGenProxy",
                       "%1: cannot read \"%2\" to keep it until its successor is "
                       "complete: %3. Nothing was written.")
                .arg(source, QDir::toNativeSeparators(topPath), oldTop.errorString());
        oldTop.close();
    }
    if (!topFile.commit())
        return failure(topFile);
    if (!templateFile.commit()) {
        QString error;
        if (restore(topPath, hadTop, previous, &error))
            return failure(templateFile);
        return QCoreApplication::translate(
                   "IPCore::TvModGenProxy",
                   "%1: cannot write \"%2\": %3. \"%4\" was replaced already and "
                   "cannot be put back: %5.")
            .arg(source, QDir::toNativeSeparators(templatePath), templateFile.errorString(),
                 QDir::toNativeSeparators(topPath), error);
    }
    return QString();
}

} // namespace

TvModGenProxy::TvModGenProxy(QObject *parent)
    : QObject(parent)
{}

TvModGenProxy::~TvModGenProxy() = default;

TvModGenProxy::Result TvModGenProxy::startModGen(const QString &cmdFile, FileType type,
                                                 bool verbose)
{
    m_error.clear();
    const bool vhdl = type != Verilog;
    QFile file(cmdFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        m_error = tr("Cannot read the module generator's command file \"%1\": %2")
                      .arg(QDir::toNativeSeparators(cmdFile), file.errorString());
        Utils::showMessage(nullptr, QMessageBox::Critical, tr("Error"), m_error);
        return CannotRead;
    }

    Parser parser(QDir::toNativeSeparators(cmdFile), vhdl);
    QTextStream in(&file);
    in.setCodec("UTF-8");
    for (int number = 1; !in.atEnd(); ++number)
        parser.parseLine(number, in.readLine());
    parser.finish();
    QStringList errors = parser.errors();

    const Design &design = parser.design();
    const QFileInfo commandInfo(cmdFile);
    const QDir outDir(commandInfo.absoluteDir().absoluteFilePath(design.value("path")));
    if (errors.isEmpty() && !outDir.exists())
        errors << tr("%1: the output directory \"%2\" does not exist")
                      .arg(QDir::toNativeSeparators(cmdFile),
                           QDir::toNativeSeparators(outDir.path()));
    if (!errors.isEmpty()) {
        m_error = errors.join(QLatin1Char('\n'));
        Utils::showMessage(nullptr, QMessageBox::Critical, tr("Error"), m_error);
        return Refused;
    }

    const QString suffix = vhdl ? QStringLiteral(".vhd") : QStringLiteral(".v");
    const QString base = outDir.absoluteFilePath(design.value("file_name"));
    const QString topPath = QString(base + suffix);
    const QString templatePath = QString(base + QStringLiteral("_tmp") + suffix);
    m_error = writeOutputs(cmdFile, topPath, vhdl ? vhdlTop(design) : verilogTop(design),
                           templatePath, vhdl ? vhdlTemplate(design) : verilogTemplate(design));
    if (!m_error.isEmpty()) {
        Utils::showMessage(nullptr, QMessageBox::Critical, tr("Error"), m_error);
        return CannotWrite;
    }
    if (verbose)
        qInfo("Module generator wrote %s and %s", qPrintable(QDir::toNativeSeparators(topPath)),
              qPrintable(QDir::toNativeSeparators(templatePath)));
    return Done;
}

} // namespace IPCore
