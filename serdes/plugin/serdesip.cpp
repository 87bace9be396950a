// SPDX-License-Identifier: MIT
#include "plugin/serdesip.h"

#include "plugin/serdesipconstants.h"

#include "page/serdesipdlg.h"

#include <core/viewmanager.h>
#include <ipcore/ipinfospec.h>

namespace IPSERDESIP {

serdesip::serdesip(const QString &dir)
    : ipDir(dir)
{}

serdesip::~serdesip() = default;

void serdesip::create(const QString &path, const DEV::DeviceArg &device)
{
    serdesipdlg dialog(ipInfo, Core::ViewManager::dialogParent());
    dialog.setCreating(path, device);
    dialog.exec();
}

void serdesip::open(const QString &path, const QString &file)
{
    serdesipdlg dialog(ipInfo, Core::ViewManager::dialogParent());
    if (dialog.setOpening(path, file))
        dialog.exec();
}

bool serdesip::initilize()
{
    ipInfo = IPCore::processIPInfoSpec(ipDir + QStringLiteral("/serdesip.ipspec"));
    if (!IPCore::checkCommonInfo(ipInfo))
        return false;
    ipInfo.insert(QLatin1String(IPCore::Info::KEY_DATADIRECTORY),
                  QVariant(ipDir + QStringLiteral("/data")));
    return true;
}

QString serdesip::version() const
{
    return ipInfo.value(QLatin1String(IPCore::Info::KEY_VERSION)).toString();
}

QString serdesip::id() const
{
    return ipInfo.value(QLatin1String(IPCore::Info::KEY_ID)).toString();
}

QString serdesip::name() const
{
    return ipInfo.value(QLatin1String(IPCore::Info::KEY_NAME)).toString();
}

QStringList serdesip::category() const
{
    return ipInfo.value(QLatin1String(IPCore::Info::KEY_CATEGORY)).toStringList();
}

QString serdesip::summaryFile() const
{
    return ipInfo.value(QLatin1String(IPCore::Info::KEY_SUMMARY)).toString();
}

bool serdesip::isSupported(const DEV::DeviceArg &device) const
{
    const QStringList supportedList
        = ipInfo.value(QLatin1String(IPCore::Info::KEY_SUPPORTED)).toStringList();
    const QStringList unsupportedList
        = ipInfo.value(QLatin1String(IPCore::Info::KEY_UNSUPPORTED)).toStringList();
    return IPCore::isSupported(device, unsupportedList, supportedList);
}

} // namespace IPSERDESIP
