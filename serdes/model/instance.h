// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QString>

namespace IPSERDESIP {

class QUAD;

// A named element of the clock network. The kinds are told apart by
// dynamic_cast, which is why the destructor is the one virtual and lives in
// the library: protocol plug-ins cast the pointers they get from `serdes`.
class SERDESIP_EXPORT Instance
{
public:
    Instance(const QString &name, QUAD *quad);
    virtual ~Instance();

    bool enable();

    // Number of routes or requests holding the element; 0 means free.
    int count;
    QString name;
    // Not owned.
    QUAD *quad;

private:
    Q_DISABLE_COPY(Instance)
};

} // namespace IPSERDESIP
