// SPDX-License-Identifier: MIT
#pragma once

// What the demo programs share to drive the SerDes page as a user does: the
// core's description as the generator hands it to the page, and the setting
// of a dialog's fields by their object names. They run from the staged
// tree's bin/, where the page finds the protocols and the device database.

#include "plugin/serdesipconstants.h"

#include <ipcore/ipinfospec.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMap>
#include <QStringList>
#include <QVariant>
#include <QWidget>

inline QMap<QString, QVariant> coreInfo()
{
    const QString core
        = QCoreApplication::applicationDirPath() + QStringLiteral("/../ipcore/SERDES_IP");
    QMap<QString, QVariant> info
        = IPCore::processIPInfoSpec(core + QStringLiteral("/serdesip.ipspec"));
    info.insert(QLatin1String(IPCore::Info::KEY_DATADIRECTORY),
                QString(core + QStringLiteral("/data")));
    return info;
}

// Sets the named widgets of `dialog` as a user would, each step
// "objectName=value": a combo's entry or typed text, a check box's "true", a
// list's checked items "a,b", a line edit's text. False, with the step that
// could not be done in `failed`, when a widget is missing or has no such
// entry.
inline bool applySteps(QWidget *dialog, const QStringList &steps, QString *failed)
{
    for (const QString &step : steps) {
        const QString name = step.section(QLatin1Char('='), 0, 0);
        const QString value = step.section(QLatin1Char('='), 1);
        QWidget *w = dialog->findChild<QWidget *>(name);
        if (auto *combo = qobject_cast<QComboBox *>(w)) {
            const int index = combo->findText(value);
            if (index < 0 && !combo->isEditable())
                w = nullptr;
            else if (index >= 0)
                combo->setCurrentIndex(index);
            else
                combo->setEditText(value);
        } else if (auto *check = qobject_cast<QCheckBox *>(w)) {
            check->setChecked(value == QLatin1String("true"));
        } else if (auto *list = qobject_cast<QListWidget *>(w)) {
            const QStringList wanted = value.split(QLatin1Char(','));
            for (int i = 0; i < list->count(); ++i)
                list->item(i)->setCheckState(
                    wanted.contains(list->item(i)->text()) ? Qt::Checked : Qt::Unchecked);
        } else if (auto *edit = qobject_cast<QLineEdit *>(w)) {
            edit->setText(value);
        } else {
            w = nullptr;
        }
        if (!w) {
            *failed = step;
            return false;
        }
    }
    return true;
}
