// SPDX-License-Identifier: MIT
#pragma once

// The fields that the sample dialogs share, made alike in each: the same
// words, units and tooltips, the same entry of numbers, and one spelling of
// the values they show. What is stored stays the parameter maps' own value.

#include <QString>

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
    LineRate,  // Gbps, both ways
};

// Gives `widget` the field's tooltip and, where the field is a number that
// can be typed, an entry of decimal numbers with a point; `label` gets the
// field's words and unit.
void setUpField(Field field, QWidget *widget, QLabel *label = nullptr);

// Shows `text` in a note under a dialog's fields, or hides the note when the
// text is empty. The note keeps the height of all its lines.
void showNote(QLabel *label, const QString &text);

// The words a dialog shows for a value of a parameter map: "8b/10b" for
// "8b10b", "K28.5" for "k28.5", "None" for "none" and "off".
QString valueText(const QString &value);

} // namespace samples
