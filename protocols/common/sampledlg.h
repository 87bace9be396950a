// SPDX-License-Identifier: MIT
#pragma once

#include "fields.h"

#include <protocol/protocolgendlg.h>

#include <QList>
#include <QPair>

namespace samples {

// The frame of the sample protocols' dialogs: how a dialog is run for a new
// or a stored instance, the checks of every field as it changes, and the
// order in which OK checks what the user gave. A protocol supplies its
// parameter map, the problems of its fields and its own confirmation.
//
// While a field has a problem, it is shown at the field and OK cannot be
// pressed; the checks at OK stay, for what only OK can ask (an existing
// file) and as the last guard.
class SampleDlg : public IPSERDESIP::protocolGenDlg
{
    Q_OBJECT

public:
    explicit SampleDlg(QWidget *parent = nullptr);
    ~SampleDlg() override;

    // The parameter map of what the dialog shows.
    virtual QMap<QString, QVariant> args() const = 0;
    // The identifier of the device the instance is for.
    QString deviceId() const;

    // A new instance below `createPath`, its file and module names proposed
    // from `baseName`. An empty map: the user cancelled.
    QMap<QString, QVariant> runCreating(const QString &baseName, const QString &createPath,
                                        const DEV::DeviceArg &device);
    // A stored instance. An empty map: the map cannot be shown, or the user
    // cancelled.
    QMap<QString, QVariant> runOpening(const QMap<QString, QVariant> &stored);

    // What stands against the frame's names: empty, or another instance's.
    // Under the keys "module" and "file".
    QList<Problem> nameProblems() const;

public slots:
    // Empty file fields first; an existing file last, so that the user is
    // asked about overwriting only once nothing else stands in the way.
    void accept() final;
    // Shows each watched field's first problem at it, and lets OK be pressed
    // only when there is none. Every change of a watched field calls it.
    void recheck();

protected:
    // The protocol's checks between those two. False keeps the dialog open,
    // once the user has been told why.
    virtual bool confirm() = 0;
    // What stands against the values shown, each under the key of its
    // field. A key that no field is watched for is shown at "lanes".
    virtual QList<Problem> fieldProblems() const = 0;
    // Shows the problems of `key` at `field`, which gets a problem line. A
    // number field that holds no number has that problem first.
    void watchField(const QString &key, QWidget *field);

private:
    // Once the dialog is filled, before it shows: the checks begin.
    void startChecking();

    QList<QPair<QString, QWidget *>> m_fields;
    // Off until the dialog is filled: the fields change while they are made.
    bool m_checking = false;
};

} // namespace samples
