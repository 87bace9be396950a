// SPDX-License-Identifier: MIT
#pragma once

#include "../common/clockpage.h"
#include "../common/devicetier.h"
#include "../common/sampledlg.h"
#include "ethernet10gsettings.h"

class Ui_Ethernet10gOptions;

// The 10GBASE-R dialog: the lanes, the QPLL and the reference pin, beside
// the rate and reference frequency that 10GBASE-R fixes. A QPLL that another
// instance runs at 10.3125 Gbps from 156.25 MHz is proposed first, so that
// instances on one quad share it.
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
    QList<samples::Problem> fieldProblems() const override;

private:
    Ethernet10gSettings settings() const;
    void propose();
    void onPllChanged();
    void updateFigure();
    QString quad() const;

    samples::ClockPage *m_page;
    samples::ClockPage::Clock m_clock;
    Ui_Ethernet10gOptions *m_ui;
    samples::Tier m_tier;
};
