// SPDX-License-Identifier: MIT
#include "fields.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

#include <algorithm>

namespace samples {

namespace {

struct Fields
{
    Q_DECLARE_TR_FUNCTIONS(Fields)
};

// The dynamic properties by which a field knows its problem line, and the
// tooltip it has without a problem.
const char PROBLEM_LINE[] = "samplesProblemLine";
const char PROBLEM_FRAME[] = "samplesProblemFrame";
const char PLAIN_TIP[] = "samplesPlainTip";
const char NUMBER[] = "samplesNumber";

const char FRAME_STYLE[] = "QFrame#problemFrame { border: 1px solid %1; }";

QLabel *problemLine(const QWidget *field)
{
    return qobject_cast<QLabel *>(field->property(PROBLEM_LINE).value<QObject *>());
}

// The layout, `layout` or one inside it, that holds `widget` itself.
QLayout *layoutOf(QLayout *layout, QWidget *widget)
{
    if (layout->indexOf(widget) >= 0)
        return layout;
    for (int i = 0; i < layout->count(); ++i) {
        if (QLayout *inner = layout->itemAt(i)->layout()) {
            if (QLayout *found = layoutOf(inner, widget))
                return found;
        }
    }
    return nullptr;
}

// Puts `line` into `layout` under `frame`, which took its field's place:
// in a grid a row of its own below, from the column of the field's words to
// that of the field, so that a reason has the width of both; in a form a row
// of both columns; in a box the next place.
void placeLine(QLayout *layout, QWidget *frame, QLabel *label, QLabel *line)
{
    if (auto *grid = qobject_cast<QGridLayout *>(layout)) {
        int row = 0, column = 0, rowSpan = 0, columnSpan = 0;
        grid->getItemPosition(grid->indexOf(frame), &row, &column, &rowSpan, &columnSpan);
        int first = column;
        if (label && grid->indexOf(label) >= 0) {
            int labelRow = 0, labelSpan = 0;
            grid->getItemPosition(grid->indexOf(label), &labelRow, &first, &labelSpan, &labelSpan);
            first = std::min(first, column);
        }
        // The rows below move down by one, unless a field beside this one
        // made its line's row already.
        const char rowsKey[] = "samplesProblemRows";
        QList<QVariant> rows = grid->property(rowsKey).toList();
        const int below = row + rowSpan;
        if (!rows.contains(below)) {
            QList<QPair<QLayoutItem *, QList<int>>> moved;
            for (int i = grid->count() - 1; i >= 0; --i) {
                int r = 0, c = 0, rs = 0, cs = 0;
                grid->getItemPosition(i, &r, &c, &rs, &cs);
                if (r >= below)
                    moved.append({grid->takeAt(i), {r + 1, c, rs, cs}});
            }
            for (const auto &item : moved) {
                grid->addItem(item.first, item.second.at(0), item.second.at(1), item.second.at(2),
                              item.second.at(3));
            }
            for (QVariant &r : rows)
                r = r.toInt() >= below ? r.toInt() + 1 : r.toInt();
            rows.append(below);
            grid->setProperty(rowsKey, rows);
        }
        grid->addWidget(line, below, first, 1, column + columnSpan - first);
    } else if (auto *form = qobject_cast<QFormLayout *>(layout)) {
        int row = 0;
        QFormLayout::ItemRole role;
        form->getWidgetPosition(frame, &row, &role);
        form->insertRow(row + 1, line);
    } else if (auto *box = qobject_cast<QBoxLayout *>(layout)) {
        box->insertWidget(box->indexOf(frame) + 1, line);
    }
}

// A dialog that is open grows to the room its fields, notes and problem
// lines ask for, and never shrinks under the user's hands: its layout does
// not count the lines of wrapping labels in its least size, and would
// squeeze the fields instead.
void makeRoom(QWidget *widget)
{
    QWidget *window = widget->window();
    if (!window->isVisible())
        return;
    const QSize room = window->size().expandedTo(window->sizeHint());
    if (room != window->size())
        window->resize(room);
}

} // namespace

QStringList problemTexts(const QList<Problem> &problems)
{
    QStringList texts;
    for (const Problem &problem : problems)
        texts << problem.text;
    return texts;
}

void setUpField(Field field, QWidget *widget, QLabel *label)
{
    QString words;
    QString tip;
    bool number = true;
    switch (field) {
    case Field::Lanes:
        words = Fields::tr("Lanes:");
        tip = Fields::tr("The lanes the instance takes. Lanes that other instances hold are not "
                         "offered.");
        number = false;
        break;
    case Field::Pll:
        words = Fields::tr("PLL:");
        tip = Fields::tr("The PLL that clocks the lanes: each lane's own CPLL, or a QPLL that "
                         "the lanes of a quad share.");
        number = false;
        break;
    case Field::Reference:
        words = Fields::tr("Reference clock:");
        tip = Fields::tr("The reference clock input that feeds the PLL: a dedicated pin pair, "
                         "or a clock from the fabric.");
        number = false;
        break;
    case Field::RefFreq:
        words = Fields::tr("Reference frequency (MHz):");
        tip = Fields::tr("Frequency of the reference clock, in MHz. An input that another "
                         "instance uses runs at its frequency.");
        break;
    case Field::TxRate:
        words = Fields::tr("TX rate (Gbps):");
        tip = Fields::tr("Line rate of the transmitters, in Gbps.");
        break;
    case Field::RxRate:
        words = Fields::tr("RX rate (Gbps):");
        tip = Fields::tr("Line rate of the receivers, in Gbps.");
        break;
    }
    widget->setToolTip(tip);
    if (label) {
        label->setText(words);
        label->setToolTip(tip);
        label->setBuddy(widget);
    }
    if (!number)
        return;
    widget->setProperty(NUMBER, true);
    // Numbers are typed with a point whatever the user's locale, as the
    // parameter files write them.
    auto *validator = new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[0-9]{1,5}(\\.[0-9]{0,6})?")), widget);
    if (auto *combo = qobject_cast<QComboBox *>(widget))
        combo->setValidator(validator);
    else if (auto *edit = qobject_cast<QLineEdit *>(widget))
        edit->setValidator(validator);
}

bool isNumberField(const QWidget *widget)
{
    return widget->property(NUMBER).toBool();
}

void addProblemLine(QWidget *field)
{
    QWidget *parent = field->parentWidget();
    QLayout *layout = parent && parent->layout() ? layoutOf(parent->layout(), field) : nullptr;
    if (!layout || problemLine(field))
        return;
    // A frame of the field's own takes its place, transparent while there is
    // no problem, so that the field stays where it is when it turns red.
    auto *frame = new QFrame(parent);
    frame->setObjectName(QStringLiteral("problemFrame"));
    frame->setStyleSheet(QString::fromLatin1(FRAME_STYLE).arg(QLatin1String("transparent")));
    auto *frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(1, 1, 1, 1);
    delete layout->replaceWidget(field, frame);
    frameLayout->addWidget(field);
    QLabel *label = nullptr;
    for (QLabel *candidate : parent->findChildren<QLabel *>()) {
        if (candidate->buddy() == field)
            label = candidate;
    }
    auto *line = new QLabel(parent);
    line->setObjectName(field->objectName() + QStringLiteral("Problem"));
    // One line, as wide as the reason: a wrapped line asks its layout for the
    // height of one and would be drawn over the field below it.
    line->setStyleSheet(QStringLiteral("color: #c00000;"));
    QFont small = line->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    line->setFont(small);
    line->setMinimumHeight(line->fontMetrics().height());
    placeLine(layout, frame, label, line);
    field->setProperty(PROBLEM_LINE, QVariant::fromValue<QObject *>(line));
    field->setProperty(PROBLEM_FRAME, QVariant::fromValue<QObject *>(frame));
}

void showProblem(QWidget *field, const QString &text)
{
    QLabel *line = problemLine(field);
    if (!line || line->text() == text)
        return;
    line->setText(text);
    makeRoom(line);
    if (auto *frame = qobject_cast<QWidget *>(field->property(PROBLEM_FRAME).value<QObject *>()))
        frame->setStyleSheet(QString::fromLatin1(FRAME_STYLE)
                                 .arg(QLatin1String(text.isEmpty() ? "transparent" : "#d00000")));
    // The tooltip the field has without a problem is kept, and the problem
    // added to it while it stands.
    if (!field->property(PLAIN_TIP).isValid())
        field->setProperty(PLAIN_TIP, field->toolTip());
    const QString plain = field->property(PLAIN_TIP).toString();
    field->setToolTip(text.isEmpty() ? plain : plain + QStringLiteral("\n\n") + text);
    if (text.isEmpty())
        field->setProperty(PLAIN_TIP, QVariant());
}

QString problemShown(const QWidget *field)
{
    const QLabel *line = problemLine(field);
    return line ? line->text() : QString();
}

void showNote(QLabel *label, const QString &text)
{
    label->setText(text);
    label->setVisible(!text.isEmpty());
    // A label that wraps asks its layout for one line only, and a dialog that
    // is already open does not grow for it: the lines it needs at its width
    // are reserved, so that none is cut off.
    const int width = label->width() > 0 ? label->width() : label->sizeHint().width();
    label->setMinimumHeight(text.isEmpty() ? 0 : label->heightForWidth(width));
    makeRoom(label);
}

QString valueText(const QString &value)
{
    if (value == QLatin1String("none") || value == QLatin1String("off"))
        return Fields::tr("None");
    static const QRegularExpression coding(QStringLiteral("^(\\d+)b(\\d+)b$"));
    const QRegularExpressionMatch match = coding.match(value);
    if (match.hasMatch())
        return QStringLiteral("%1b/%2b").arg(match.captured(1), match.captured(2));
    if (value.startsWith(QLatin1Char('k')))
        return value.toUpper();
    return value;
}

} // namespace samples
