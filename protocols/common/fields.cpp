// SPDX-License-Identifier: MIT
#include "fields.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace samples {

namespace {

struct Fields
{
    Q_DECLARE_TR_FUNCTIONS(Fields)
};

} // namespace

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
    case Field::LineRate:
        words = Fields::tr("Line rate:");
        tip = Fields::tr("Line rate of the lanes, both ways, in Gbps.");
        number = false;
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
    // Numbers are typed with a point whatever the user's locale, as the
    // parameter files write them.
    auto *validator = new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[0-9]{1,5}(\\.[0-9]{0,6})?")), widget);
    if (auto *combo = qobject_cast<QComboBox *>(widget))
        combo->setValidator(validator);
    else if (auto *edit = qobject_cast<QLineEdit *>(widget))
        edit->setValidator(validator);
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
