// SPDX-License-Identifier: MIT
#pragma once

// What the view tests share: a device record of a tier, and answering the
// modal menus and dialogs that a view opens.

#include <dev/devicearg.h>

#include <QTimer>

#include <functional>
#include <memory>

namespace viewstesting {

inline DEV::DeviceArg deviceOf(const QString &family)
{
    DEV::DeviceArg device;
    device.name = QStringLiteral("DEVICE-TEST");
    device.family = family;
    return device;
}

// Calls `step` every few milliseconds until it reports that it acted, for at
// most five seconds: how a modal menu or dialog is answered while its event
// loop runs.
inline void whenReady(const std::function<bool()> &step)
{
    auto *timer = new QTimer;
    timer->setInterval(10);
    auto tries = std::make_shared<int>(500);
    QObject::connect(timer, &QTimer::timeout, [timer, step, tries] {
        if (step() || --*tries == 0) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start();
}

} // namespace viewstesting
