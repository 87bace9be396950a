// SPDX-License-Identifier: MIT
#pragma once

#include "../common/clockpage.h"
#include "../common/devicetier.h"
#include "../common/sampledlg.h"
#include "customphysettings.h"

class Ui_CustomPhyLine;
class QComboBox;
class QPushButton;

// The Custom PHY dialog: free lanes, the clocking of each quad that has a
// selected lane, the rates, and the line settings of all selected lanes. It
// proposes what is free, offers a running QPLL of the wanted rate for
// sharing, checks every field on the model as it changes, and lets the RX
// rate follow the TX rate until the user sets it apart.
class CustomPhyDlg : public samples::SampleDlg
{
    Q_OBJECT

public:
    explicit CustomPhyDlg(samples::Tier tier, QWidget *parent = nullptr);
    ~CustomPhyDlg() override;

    void dialogDidPrepare() override;
    bool restoreArgs(const QMap<QString, QVariant> &args) override;
    QMap<QString, QVariant> args() const override;

protected:
    bool confirm() override;
    QList<samples::Problem> fieldProblems() const override;

private:
    struct QuadWidgets
    {
        QWidget *group;
        QComboBox *pll;
        QComboBox *reference;
        QComboBox *refFreq;
        QPushButton *share;
    };

    CustomPhySettings settings() const;
    void showSettings(const CustomPhySettings &settings);
    void proposeClock(const QString &quad);
    void updateQuads();
    void updateOffers();
    void updateFabric();
    void updateFigure();
    void share(const QString &quad);
    double txRate() const;

    samples::ClockPage *m_clocks;
    Ui_CustomPhyLine *m_line;
    samples::Tier m_tier;
    QMap<QString, QuadWidgets> m_quads;
    // The RX rate takes each TX rate until the user changes it himself, or a
    // stored instance has its own.
    bool m_rxFollows = true;
    bool m_settingRx = false;
};
