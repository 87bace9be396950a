// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

namespace TE {

class FlowManager;

class HOSTPLATFORM_EXPORT TaskEngine
{
public:
    static TaskEngine *instance();
    FlowManager *flowManager();

private:
    TaskEngine();
    FlowManager *m_flowManager;
};

} // namespace TE
