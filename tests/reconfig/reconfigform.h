// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QSpinBox>
#include <QWidget>

// The words of `line`, split at blanks.
inline QStringList words(const char *line)
{
    return QString(line).split(' ', Qt::SkipEmptyParts);
}

// Sets one input of the reconfiguration form from "objectName=value": a check
// box ("1" checks it), a combo box by text, or a spin box.
inline void setInput(const QWidget &form, const QString &assignment)
{
    const QString name = assignment.section('=', 0, 0);
    const QString value = assignment.section('=', 1);
    QWidget *target = form.findChild<QWidget *>(name);
    if (auto *box = qobject_cast<QCheckBox *>(target))
        box->setChecked(value == "1");
    else if (auto *combo = qobject_cast<QComboBox *>(target))
        combo->setCurrentText(value);
    else if (auto *real = qobject_cast<QDoubleSpinBox *>(target))
        real->setValue(value.toDouble());
    else if (auto *integer = qobject_cast<QSpinBox *>(target))
        integer->setValue(value.toInt());
    else
        qFatal("no input %s in the form", qPrintable(name));
}
