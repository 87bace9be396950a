// SPDX-License-Identifier: MIT
#include "model/serdes.h"

#include "model/serdesip_common.h"
#include "plugin/serdesipconstants.h"

#include <QLatin1String>

namespace IPSERDESIP {

namespace {

serdes *theModel = nullptr;

} // namespace

serdes::serdes() = default;

serdes::~serdes() = default;

serdes *serdes::instance()
{
    if (!theModel)
        theModel = new serdes;
    return theModel;
}

void serdes::destory()
{
    delete theModel;
    theModel = nullptr;
}

QString serdes::workingDir() const
{
    return m_workingDir;
}

void serdes::setWorkingDir(const QString &dir)
{
    m_workingDir = dir;
}

QVariant serdes::getData(const QString &key)
{
    const QVariant value = data.value(key);
    if (!value.isValid() || value.isNull())
        return QVariant();
    return value;
}

void serdes::setData(const QString &key, QVariant value)
{
    data.insert(key, value);
}

void serdes::removeData(const QString &key)
{
    data.remove(key);
}

void serdes::parseGlobalData(const QMap<QString, QVariant> &data)
{
    this->data = data;
}

bool serdes::instanceEnable(const QString &name)
{
    Instance *element = instances.value(name, nullptr);
    return element && element->count != 0;
}

QMap<QString, Instance *> serdes::allInstance()
{
    return instances;
}

QMap<QString, QStringList> serdes::allAccess()
{
    return access;
}

void serdes::clearAccess()
{
    forgetLastRequest();
    access.clear();
}

LANE *serdes::FormStringToLanePtr(const QString &name)
{
    static const char *const q0Lanes[] = {Q0_LANE0, Q0_LANE1, Q0_LANE2, Q0_LANE3};
    static const char *const q1Lanes[] = {Q1_LANE0, Q1_LANE1, Q1_LANE2, Q1_LANE3};
    const struct
    {
        const char *quad;
        const char *const *lanes;
    } order[] = {{Q0, q0Lanes}, {Q1, q1Lanes}};

    for (const auto &entry : order) {
        QUAD *quad = quads.value(QLatin1String(entry.quad), nullptr);
        if (!quad)
            continue;
        for (int i = 0; i < 4; ++i) {
            const QLatin1String lane(entry.lanes[i]);
            if (name.contains(lane))
                return quad->lane(lane);
        }
    }
    return nullptr;
}

REF_SOURCE *serdes::FormStringToREFSPtr(const QString &name)
{
    return dynamic_cast<REF_SOURCE *>(instances.value(name, nullptr));
}

MUX *serdes::FormStringToMuxSPtr(const QString &name)
{
    return dynamic_cast<MUX *>(instances.value(name, nullptr));
}

REF_SOURCE *serdes::findRefsource(const QString &name)
{
    // The network has no cycles, so the chain always ends.
    QString current = name;
    for (;;) {
        Instance *element = instances.value(current, nullptr);
        if (auto *ref = dynamic_cast<REF_SOURCE *>(element))
            return ref;
        auto *mux = dynamic_cast<MUX *>(element);
        if (!mux)
            return nullptr;
        current = mux->point();
    }
}

double serdes::getH(int index)
{
    return IPSERDESIP::getH(index);
}

QString serdes::getMuxNamefromOption(const QString &quad, const QString &option)
{
    QUAD *found = quads.value(quad, nullptr);
    if (!found)
        return QString();
    // Every key contains an empty option, so an empty one gives the first.
    const QStringList names = found->muxes.keys();
    for (const QString &name : names) {
        if (name.contains(option, Qt::CaseInsensitive))
            return name;
    }
    return QString();
}

double serdes::getFreqByRefsrc(const QString &option)
{
    const QString name = refsrcOptTransforSerdesName(option);
    if (name.isEmpty())
        return 0.0;
    REF_SOURCE *ref = FormStringToREFSPtr(name);
    if (!ref || ref->count == 0)
        return 0.0;
    return ref->freq;
}

} // namespace IPSERDESIP
