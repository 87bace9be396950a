// SPDX-License-Identifier: MIT
#pragma once

#include "../common/clockpage.h"
#include "../common/sampledlg.h"
#include "bcdroptions.h"
#include "bcdrsettings.h"

namespace Ui {
class BcdrOptions;
}

// The dialog of a BCDR instance: on the frame's general fields, a page with
// the lanes and their clock and a page with the RX settings. It offers what
// the model says is free, proposes the settings of a PLL or reference clock
// that another instance already runs, and closes only on a selection that
// the model can place: it places it for a moment and gives it back.
class BcdrDlg : public samples::SampleDlg
{
    Q_OBJECT

public:
    // `helpFile`: the protocol's help page.
    explicit BcdrDlg(const QString &helpFile, QWidget *parent = nullptr);
    ~BcdrDlg() override;

    void dialogDidPrepare() override;
    // False when the map is no BCDR instance's, or names a lane or a choice
    // that this device does not offer now.
    bool restoreArgs(const QMap<QString, QVariant> &args) override;

    QMap<QString, QVariant> args() const override;

protected:
    bool confirm() override;
    QList<samples::Problem> fieldProblems() const override;

private:
    Bcdr::Settings settings() const;
    void fillRefClocks();
    void fillWidths();
    // On a change of lanes or PLL: the settings of a PLL that already runs.
    void proposeClock();
    // On a change of reference clock too: the frequency of one in use.
    void proposeFrequency();
    void updateComma();
    void updatePins();

    samples::ClockPage *m_page;
    samples::ClockPage::Clock m_clock;
    Ui::BcdrOptions *m_form;
    QWidget *m_holder;
    // While a stored map is shown, no proposal overwrites it.
    bool m_restoring = false;
    // What the last proposal of a running PLL said, and the reference clock
    // it proposed.
    QString m_pllNote;
    QString m_pllRef;
};
