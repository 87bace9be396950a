// SPDX-License-Identifier: MIT
#pragma once

#include "../common/devicetier.h"
#include "../common/sampledlg.h"
#include "ethernet10gsettings.h"

class Ui_Ethernet10gOptions;

// The 10GBASE-R dialog: the lanes, the QPLL and the reference pin. A QPLL
// that another instance runs at 10.3125 Gbps from 156.25 MHz is proposed
// first, so that instances on one quad share it.
class Ethernet10gDlg : public samples::SampleDlg
{
    Q_OBJECT

public:
    explicit Ethernet10gDlg(samples::Tier tier, QWidget *parent = nullptr);
    ~Ethernet10gDlg() override;

    void dialogDidPrepare() override;
    bool restoreArgs(const QMap<QString, QVariant> &args) override;
    QMap<QString, QVariant> args() const override;

protected:
    bool confirm() override;

private:
    Ethernet10gSettings settings() const;
    void propose();
    void onPllChanged();
    void updateFigure();
    QString quad() const;

    Ui_Ethernet10gOptions *m_ui;
    samples::Tier m_tier;
};
