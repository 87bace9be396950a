// SPDX-License-Identifier: MIT
#include "te/flowmanager.h"

namespace TE {

FlowManager::FlowManager(QObject *parent)
    : QObject(parent)
{}

void FlowManager::addResultFile(const QString &path, const QString &tag)
{
    const ResultFile entry(path, tag);
    if (m_results.contains(entry))
        return;
    m_results << entry;
    emit resultFileAdded(path, tag);
}

} // namespace TE
