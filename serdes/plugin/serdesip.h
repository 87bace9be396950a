// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <ipcore/baseipcore.h>

#include <QMap>
#include <QVariant>

namespace IPSERDESIP {

// The SerDes core as the generator's catalogue lists it. It holds only its
// description and its directory; a dialog pass owns everything else.
class SERDESIP_TEST_EXPORT serdesip : public IPCore::BaseIPCore
{
public:
    explicit serdesip(const QString &dir);
    ~serdesip() override;

    void create(const QString &path, const DEV::DeviceArg &device) override;
    void open(const QString &path, const QString &file) override;
    // Reads "serdesip.ipspec" of the core's directory.
    bool initilize() override;
    QString version() const override;
    QString id() const override;
    QString name() const override;
    QStringList category() const override;
    QString summaryFile() const override;
    bool isSupported(const DEV::DeviceArg &device) const override;

    // The description as read, with the data directory set by the core.
    const QMap<QString, QVariant> &info() const { return ipInfo; }

private:
    QMap<QString, QVariant> ipInfo;
    QString ipDir;
};

} // namespace IPSERDESIP
