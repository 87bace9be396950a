// SPDX-License-Identifier: MIT
#include "ipcore/verilognetlist.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace IPCore {

namespace {

struct Token
{
    enum Kind { Word, Escaped, Directive, Punct, Other };
    Kind kind;
    QString text;
    int pos;
};

bool isWordStart(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_');
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

// Splits Verilog text into tokens, dropping blanks, comments and attributes.
// Comments before the first token are kept in `leading`.
QVector<Token> tokenize(const QString &text, QStringList &leading, QString &error)
{
    QVector<Token> tokens;
    const int size = text.size();
    int i = 0;
    while (i < size) {
        const QChar c = text.at(i);
        const QChar next = i + 1 < size ? text.at(i + 1) : QChar();
        if (c.isSpace()) {
            ++i;
        } else if (c == QLatin1Char('/') && next == QLatin1Char('/')) {
            int eol = text.indexOf(QLatin1Char('\n'), i);
            if (eol < 0)
                eol = size;
            if (tokens.isEmpty())
                leading << text.mid(i + 2, eol - i - 2).trimmed();
            i = eol;
        } else if (c == QLatin1Char('/') && next == QLatin1Char('*')) {
            const int close = text.indexOf(QLatin1String("*/"), i + 2);
            if (close < 0) {
                error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                    "a comment is not closed");
                return tokens;
            }
            if (tokens.isEmpty()) {
                for (const QString &line : text.mid(i + 2, close - i - 2).split(QLatin1Char('\n')))
                    leading << line.trimmed();
            }
            i = close + 2;
        } else if (c == QLatin1Char('(') && next == QLatin1Char('*') && i + 2 < size
                   && text.at(i + 2) != QLatin1Char(')')) {
            const int close = text.indexOf(QLatin1String("*)"), i + 2);
            if (close < 0) {
                error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                    "an attribute is not closed");
                return tokens;
            }
            i = close + 2;
        } else if (c == QLatin1Char('\\')) {
            int end = i + 1;
            while (end < size && !text.at(end).isSpace())
                ++end;
            tokens.append({Token::Escaped, text.mid(i, end - i), i});
            i = end;
        } else if (c == QLatin1Char('`')) {
            int end = i + 1;
            while (end < size && isWordChar(text.at(end)))
                ++end;
            tokens.append({Token::Directive, text.mid(i, end - i), i});
            i = end;
        } else if (isWordStart(c)) {
            int end = i + 1;
            while (end < size && isWordChar(text.at(end)))
                ++end;
            tokens.append({Token::Word, text.mid(i, end - i), i});
            i = end;
        } else if (c.isDigit() || c == QLatin1Char('\'')) {
            int end = i + 1;
            while (end < size
                   && (text.at(end).isLetterOrNumber() || text.at(end) == QLatin1Char('_')
                       || text.at(end) == QLatin1Char('\'') || text.at(end) == QLatin1Char('?')))
                ++end;
            tokens.append({Token::Other, text.mid(i, end - i), i});
            i = end;
        } else if (c == QLatin1Char('"')) {
            int end = i + 1;
            while (end < size && text.at(end) != QLatin1Char('"')
                   && text.at(end) != QLatin1Char('\n'))
                end += text.at(end) == QLatin1Char('\\') ? 2 : 1;
            if (end >= size || text.at(end) != QLatin1Char('"')) {
                error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                    "a string is not closed");
                return tokens;
            }
            tokens.append({Token::Other, text.mid(i, end + 1 - i), i});
            i = end + 1;
        } else {
            tokens.append({Token::Punct, QString(c), i});
            ++i;
        }
    }
    while (!leading.isEmpty() && leading.last().isEmpty())
        leading.removeLast();
    return tokens;
}

bool isName(const Token &token)
{
    return token.kind == Token::Word || token.kind == Token::Escaped;
}

bool isDirection(const Token &token)
{
    return token.kind == Token::Word
           && (token.text == QLatin1String("input") || token.text == QLatin1String("output")
               || token.text == QLatin1String("inout"));
}

// Net kinds and signedness that may stand between a direction and its range.
bool isNetQualifier(const Token &token)
{
    static const char *const words[] = {"wire", "reg",  "logic", "tri",     "signed", "unsigned",
                                        "var",  "wand", "wor",   "supply0", "supply1"};
    if (token.kind != Token::Word)
        return false;
    for (const char *word : words) {
        if (token.text == QLatin1String(word))
            return true;
    }
    return false;
}

QString stripped(const QString &name)
{
    return name.startsWith(QLatin1Char('\\')) ? name.mid(1) : name;
}

} // namespace

VerilogNetlist::VerilogNetlist(const QString &text)
{
    const QVector<Token> tokens = tokenize(text, m_comments, m_error);
    if (!m_error.isEmpty())
        return;

    const int count = tokens.size();
    int i = 0;
    const auto at = [&](int index) -> const Token & {
        static const Token end{Token::Other, QString(), -1};
        return index < count ? tokens.at(index) : end;
    };
    // Reads "direction [qualifiers] [range]" from `i`; returns the range text.
    const auto readRange = [&]() {
        while (isNetQualifier(at(i)))
            ++i;
        QString range;
        if (at(i).text == QLatin1String("[")) {
            while (i < count && at(i).text != QLatin1String("]"))
                range += at(i++).text;
            range += QLatin1Char(']');
            ++i;
        }
        return range;
    };

    while (i < count) {
        const Token &token = at(i);
        if (token.kind == Token::Directive) {
            m_error = QCoreApplication::translate(
                          "IPCore::VerilogNetlist",
                          "it holds the compiler directive %1, so it has not been "
                          "through synthesis")
                          .arg(token.text);
            return;
        }
        if (token.kind != Token::Word || token.text != QLatin1String("module")) {
            m_error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                  "\"%1\" stands outside any module")
                          .arg(token.text);
            return;
        }

        Module module;
        module.begin = token.pos;
        ++i;
        if (!isName(at(i))) {
            m_error = QCoreApplication::translate("IPCore::VerilogNetlist", "a module has no name");
            return;
        }
        module.name = at(i++).text;
        if (at(i).text == QLatin1String("#")) {
            int depth = 0;
            for (++i; i < count; ++i) {
                if (at(i).text == QLatin1String("("))
                    ++depth;
                else if (at(i).text == QLatin1String(")") && --depth == 0)
                    break;
            }
            ++i;
        }
        if (at(i).text == QLatin1String("(")) {
            ++i;
            QString direction;
            QString range;
            while (i < count && at(i).text != QLatin1String(")")) {
                if (isDirection(at(i))) {
                    direction = at(i++).text;
                    range = readRange();
                }
                if (!isName(at(i))) {
                    m_error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                          "the port list of %1 cannot be read")
                                  .arg(module.name);
                    return;
                }
                module.ports.append({direction, range, at(i++).text});
                if (at(i).text == QLatin1String(","))
                    ++i;
            }
            ++i;
        }
        if (at(i).text != QLatin1String(";")) {
            m_error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                  "the header of %1 does not end with \";\"")
                          .arg(module.name);
            return;
        }
        ++i;

        bool statementStart = true;
        bool ended = false;
        while (i < count && !ended) {
            const Token &body = at(i);
            if (body.kind == Token::Directive) {
                m_error = QCoreApplication::translate(
                              "IPCore::VerilogNetlist",
                              "it holds the compiler directive %1, so it has not been "
                              "through synthesis")
                              .arg(body.text);
                return;
            }
            if (body.kind == Token::Word && body.text == QLatin1String("endmodule")) {
                module.end = body.pos + body.text.size();
                ended = true;
            } else if (body.kind == Token::Word && body.text == QLatin1String("module")) {
                break;
            } else if (statementStart && isDirection(body)) {
                const QString direction = body.text;
                ++i;
                const QString range = readRange();
                while (i < count && at(i).text != QLatin1String(";")) {
                    if (isName(at(i))) {
                        for (Port &port : module.ports) {
                            if (port.name == at(i).text) {
                                port.direction = direction;
                                port.range = range;
                            }
                        }
                    }
                    ++i;
                }
            }
            statementStart = at(i).text == QLatin1String(";");
            ++i;
        }
        if (!ended) {
            m_error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                  "module %1 has no endmodule")
                          .arg(module.name);
            return;
        }
        for (const Port &port : qAsConst(module.ports)) {
            if (port.direction.isEmpty()) {
                m_error = QCoreApplication::translate("IPCore::VerilogNetlist",
                                                      "port %1 of %2 has no direction")
                              .arg(port.name, module.name);
                return;
            }
        }
        m_modules.append(module);
    }
    if (m_modules.isEmpty())
        m_error = QCoreApplication::translate("IPCore::VerilogNetlist", "it holds no module");
}

const VerilogNetlist::Module *VerilogNetlist::module(const QString &name) const
{
    for (const Module &candidate : m_modules) {
        if (stripped(candidate.name) == stripped(name))
            return &candidate;
    }
    return nullptr;
}

QString VerilogNetlist::verilogName(const QString &name)
{
    static const QRegularExpression simple(QStringLiteral("^[A-Za-z_][A-Za-z0-9_$]*$"));
    const QString plain = stripped(name);
    if (simple.match(plain).hasMatch())
        return plain;
    return QString(QLatin1Char('\\') + plain + QLatin1Char(' '));
}

} // namespace IPCore
