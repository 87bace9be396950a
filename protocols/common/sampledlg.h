// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/protocolgendlg.h>

namespace samples {

// The frame of the sample protocols' dialogs: how a dialog is run for a new
// or a stored instance, and the order in which OK checks what the user gave.
// A protocol supplies its parameter map and its own confirmation.
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

public slots:
    // Empty file fields first; an existing file last, so that the user is
    // asked about overwriting only once nothing else stands in the way.
    void accept() final;

protected:
    // The protocol's checks between those two. False keeps the dialog open,
    // once the user has been told why.
    virtual bool confirm() = 0;
};

} // namespace samples
