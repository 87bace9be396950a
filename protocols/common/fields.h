// SPDX-License-Identifier: MIT
#pragma once

// The fields that the sample dialogs share, made alike in each: the same
// words, units and tooltips, the same entry of numbers, and one spelling of
// the values they show. What is stored stays the parameter maps' own value.

#include <QList>
#include <QString>
#include <QStringList>

class QLabel;
class QWidget;

namespace samples {

enum class Field {
    Lanes,     // the lanes an instance takes
    Pll,       // the PLL that clocks them
    Reference, // the reference clock input of that PLL
    RefFreq,   // its frequency, MHz
    TxRate,    // Gbps
    RxRate,    // Gbps
};

// A problem of what a dialog shows, and the field it belongs to: the key of
// the parameter map that the field sets ("txRate", "Q0_refFreq"), or empty
// for one of the whole instance.
struct Problem
{
    QString key;
    QString text;
};
// The words of the problems, one each.
QStringList problemTexts(const QList<Problem> &problems);

// Gives `widget` the field's tooltip and, where the field is a number that
// can be typed, an entry of decimal numbers with a point; `label` gets the
// field's words and unit.
void setUpField(Field field, QWidget *widget, QLabel *label = nullptr);
// Whether setUpField made `widget` an entry of numbers.
bool isNumberField(const QWidget *widget);

// Puts a line for a problem under `field`, in the layout that holds it; the
// line keeps its height while empty, so that the fields do not move when a
// problem comes or goes.
void addProblemLine(QWidget *field);
// Shows `text` under the field, frames the field red and adds the text to
// its tooltip; an empty text takes all that back.
void showProblem(QWidget *field, const QString &text);
// The text shown under the field; empty when there is none.
QString problemShown(const QWidget *field);

// Shows `text` in a note under a dialog's fields, or hides the note when the
// text is empty. The note keeps the height of all its lines.
void showNote(QLabel *label, const QString &text);

// The words a dialog shows for a value of a parameter map: "8b/10b" for
// "8b10b", "K28.5" for "k28.5", "None" for "none" and "off".
QString valueText(const QString &value);

} // namespace samples
