// SPDX-License-Identifier: MIT
#include "te/taskengine.h"

#include "te/flowmanager.h"

namespace TE {

TaskEngine::TaskEngine()
    : m_flowManager(new FlowManager)
{}

TaskEngine *TaskEngine::instance()
{
    // Lives as long as the process: plug-ins may register results until exit.
    static TaskEngine *engine = new TaskEngine;
    return engine;
}

FlowManager *TaskEngine::flowManager()
{
    return m_flowManager;
}

} // namespace TE
