// SPDX-License-Identifier: MIT
#include "ethernet10gdlg.h"

#include "../common/fields.h"
#include "../common/lanelist.h"
#include "../common/laneplacement.h"
#include "ui_ethernet10goptions.h"

#include <model/serdes.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QListWidget>

Ethernet10gDlg::Ethernet10gDlg(samples::Tier tier, QWidget *parent)
    : SampleDlg(parent)
    , m_page(new samples::ClockPage({}, samples::ClockPage::Rates::TxAndRx))
    , m_clock(m_page->clocks.value(QString()))
    , m_ui(new Ui_Ethernet10gOptions)
    , m_tier(tier)
{
    auto *options = new QGroupBox;
    m_ui->setupUi(options);
    m_page->addBelow(options);
    uiAddTab(m_page, tr("10GBASE-R"));
    uiSetLabelText(tr("10GBASE-R Ethernet PHY"));
    m_page->lanesCaption->setText(tr("One to four free lanes of one quad:"));
    m_clock.pll->addItems({QStringLiteral("QPLL0"), QStringLiteral("QPLL1")});
    m_clock.reference->addItems(samples::referencePins(tier));
    // 10GBASE-R has one rate and one reference frequency.
    const QString rate = samples::numberText(Ethernet10gSettings::LINE_RATE);
    samples::ClockPage::fix(m_page->txRate, rate, tr("10GBASE-R transmits at %1 Gbps.").arg(rate));
    samples::ClockPage::fix(m_page->rxRate, rate, tr("10GBASE-R receives at %1 Gbps.").arg(rate));
    const QString freq = samples::numberText(Ethernet10gSettings::REF_FREQ);
    samples::ClockPage::fix(m_clock.refFreq, freq,
                            tr("10GBASE-R runs its QPLL from a %1 MHz reference clock.").arg(freq));
    connect(m_clock.pll, &QComboBox::currentTextChanged, this, &Ethernet10gDlg::onPllChanged);
    connect(m_page->lanes, &QListWidget::itemChanged, this, &Ethernet10gDlg::onPllChanged);
    connect(m_page->lanes, &QListWidget::itemChanged, this, &Ethernet10gDlg::updateFigure);
    connect(m_clock.reference, &QComboBox::currentTextChanged, this, &Ethernet10gDlg::updateFigure);
    connect(m_ui->checkDrp, &QCheckBox::toggled, this, &Ethernet10gDlg::updateFigure);
    watchField(QStringLiteral("lanes"), m_page->lanes);
    watchField(QStringLiteral("pll"), m_clock.pll);
    watchField(QStringLiteral("reference"), m_clock.reference);
}

Ethernet10gDlg::~Ethernet10gDlg()
{
    delete m_ui;
}

QString Ethernet10gDlg::quad() const
{
    const QStringList lanes = samples::checkedLanes(m_page->lanes);
    return lanes.isEmpty() ? QStringLiteral("Q0") : lanes.first().left(2);
}

void Ethernet10gDlg::dialogDidPrepare()
{
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    samples::fillLaneList(m_page->lanes, free, m_opening ? QStringList() : free.mid(0, 1));
    if (!m_opening)
        propose();
    onPllChanged();
    updateFigure();
}

bool Ethernet10gDlg::restoreArgs(const QMap<QString, QVariant> &args)
{
    const Ethernet10gSettings s = Ethernet10gSettings::fromMap(args);
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    samples::fillLaneList(m_page->lanes, free, s.lanes);
    m_clock.pll->setCurrentText(s.pll);
    m_clock.reference->setCurrentText(s.reference);
    m_ui->checkDrp->setChecked(s.drp);
    onPllChanged();
    updateFigure();
    return samples::lanesStillFree(s.lanes, free);
}

// A QPLL of the quad that runs 10GBASE-R already, else a free one; a
// reference pin that runs at 156.25 MHz already, else a free one.
void Ethernet10gDlg::propose()
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const QString q = quad();
    for (const samples::PllOffer &offer : samples::runningPlls(q, Ethernet10gSettings::LINE_RATE)) {
        if (offer.refFreq == Ethernet10gSettings::REF_FREQ) {
            m_clock.pll->setCurrentText(offer.pll);
            m_clock.reference->setCurrentText(offer.reference);
            return;
        }
    }
    for (const QString &pll : {QStringLiteral("QPLL0"), QStringLiteral("QPLL1")}) {
        if (!model->checkPllEnable(QString(q + QLatin1Char('_') + pll))) {
            m_clock.pll->setCurrentText(pll);
            break;
        }
    }
    const QStringList pins = samples::referencePins(m_tier);
    for (const double wanted : {Ethernet10gSettings::REF_FREQ, 0.0}) {
        for (const QString &pin : pins) {
            if (pin.startsWith(q) && model->getFreqByRefsrc(pin) == wanted) {
                m_clock.reference->setCurrentText(pin);
                return;
            }
        }
    }
}

// Says what the chosen QPLL does already. A running QPLL that can be shared
// brings its reference pin with it.
void Ethernet10gDlg::onPllChanged()
{
    const QString pll = QString(quad() + QLatin1Char('_') + m_clock.pll->currentText());
    double rate = 0.0;
    const samples::PllOffer running = samples::pllState(pll, &rate);
    QString note;
    if (running.reference.isEmpty()) {
        note = tr("%1 is free and will run at 10.3125 Gbps.").arg(samples::pllText(pll));
    } else if (rate == Ethernet10gSettings::LINE_RATE
               && running.refFreq == Ethernet10gSettings::REF_FREQ) {
        m_clock.reference->setCurrentText(running.reference);
        note = tr("%1 already runs at 10.3125 Gbps from %2 and is shared.")
                   .arg(samples::pllText(pll), running.reference);
    }
    // A QPLL that runs otherwise is a problem of the PLL field, told there.
    samples::showNote(m_page->note, note);
}

void Ethernet10gDlg::updateFigure()
{
    const Ethernet10gSettings s = settings();
    uiSetFigurePins(samples::figurePins(samples::LaneModule(s.module, s.moduleLanes(),
                                                            Ethernet10gSettings::DATA_BITS,
                                                            Ethernet10gSettings::CTRL_BITS, s.drp)
                                            .ports()));
}

Ethernet10gSettings Ethernet10gDlg::settings() const
{
    Ethernet10gSettings s;
    samples::readFrame(s, *this, m_page->lanes);
    s.pll = m_clock.pll->currentText();
    s.reference = m_clock.reference->currentText();
    s.drp = m_ui->checkDrp->isChecked();
    return s;
}

QMap<QString, QVariant> Ethernet10gDlg::args() const
{
    return settings().toMap();
}

bool Ethernet10gDlg::confirm()
{
    const Ethernet10gSettings s = settings();
    return samples::confirmLanes(this, tr("10GBASE-R"), s.problems(m_tier), s.rows());
}

QList<samples::Problem> Ethernet10gDlg::fieldProblems() const
{
    const Ethernet10gSettings s = settings();
    // The rate and the reference frequency are fixed: a QPLL at another rate
    // is left by choosing the other, a reference at another frequency by
    // choosing another pin.
    return samples::placementProblems(s.problems(m_tier), s.rows(),
                                      [](const samples::Refusal &refusal) {
                                          switch (refusal.cause) {
                                          case samples::Cause::Pll:
                                          case samples::Cause::Rate:
                                              return QStringLiteral("pll");
                                          case samples::Cause::Reference:
                                          case samples::Cause::RefFreq:
                                          case samples::Cause::ReferenceMux:
                                              return QStringLiteral("reference");
                                          case samples::Cause::Lanes:
                                              break;
                                          }
                                          return QStringLiteral("lanes");
                                      });
}
