// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace samples {

// What every lane protocol's instance has besides its own settings, under
// the keys "name", "module", "file", "dir" (the instance's directory),
// "target_device", "LANG" and "lanes" ("Q0 Lane0,Q0 Lane1").
struct InstanceSettings
{
    void readFrom(const QMap<QString, QVariant> &args);
    void writeTo(QMap<QString, QVariant> &args) const;

    QString name;
    QString module;
    QString file;
    QString dir;
    QString targetDevice;
    int language = 0;
    QStringList lanes; // "Q0 Lane1", as the dialogs show them
};

} // namespace samples
