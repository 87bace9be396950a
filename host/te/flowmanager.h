// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QString>

namespace TE {

// The results of the design flow: files that later steps of the flow take up,
// each with the tag that says what it is.
class HOSTPLATFORM_EXPORT FlowManager : public QObject
{
    Q_OBJECT

public:
    using ResultFile = QPair<QString, QString>; // path, tag

    explicit FlowManager(QObject *parent = nullptr);

    // A path registered again under the same tag replaces nothing: the flow
    // keeps one entry per pair.
    void addResultFile(const QString &path, const QString &tag);
    QList<ResultFile> resultFiles() const { return m_results; }

signals:
    void resultFileAdded(const QString &path, const QString &tag);

private:
    QList<ResultFile> m_results;
};

} // namespace TE
