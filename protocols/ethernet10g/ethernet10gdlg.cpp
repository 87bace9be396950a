// SPDX-License-Identifier: MIT
#include "ethernet10gdlg.h"

#include "../common/fields.h"
#include "../common/lanelist.h"
#include "../common/laneplacement.h"
#include "ui_ethernet10goptions.h"

#include <model/serdes.h>

Ethernet10gDlg::Ethernet10gDlg(samples::Tier tier, QWidget *parent)
    : SampleDlg(parent)
    , m_ui(new Ui_Ethernet10gOptions)
    , m_tier(tier)
{
    auto *page = new QWidget;
    m_ui->setupUi(page);
    uiAddTab(page, tr("10GBASE-R"));
    uiSetLabelText(tr("10GBASE-R Ethernet PHY"));
    samples::setUpField(samples::Field::Lanes, m_ui->listLanes);
    samples::setUpField(samples::Field::Pll, m_ui->comboPll, m_ui->labelPllTitle);
    samples::setUpField(samples::Field::Reference, m_ui->comboReference, m_ui->labelReferenceTitle);
    samples::setUpField(samples::Field::LineRate, m_ui->labelRate, m_ui->labelRateTitle);
    samples::setUpField(samples::Field::RefFreq, m_ui->labelRefFreq, m_ui->labelRefFreqTitle);
    m_ui->labelRefFreqTitle->setText(tr("Reference frequency:"));
    m_ui->comboPll->addItems({QStringLiteral("QPLL0"), QStringLiteral("QPLL1")});
    m_ui->comboReference->addItems(samples::referencePins(tier));
    m_ui->labelRate->setText(
        tr("%1 Gbps").arg(samples::numberText(Ethernet10gSettings::LINE_RATE)));
    m_ui->labelRefFreq->setText(
        tr("%1 MHz").arg(samples::numberText(Ethernet10gSettings::REF_FREQ)));
    connect(m_ui->comboPll, &QComboBox::currentTextChanged, this, &Ethernet10gDlg::onPllChanged);
    connect(m_ui->listLanes, &QListWidget::itemChanged, this, &Ethernet10gDlg::onPllChanged);
    connect(m_ui->listLanes, &QListWidget::itemChanged, this, &Ethernet10gDlg::updateFigure);
    connect(m_ui->comboReference, &QComboBox::currentTextChanged, this,
            &Ethernet10gDlg::updateFigure);
    connect(m_ui->checkDrp, &QCheckBox::toggled, this, &Ethernet10gDlg::updateFigure);
}

Ethernet10gDlg::~Ethernet10gDlg()
{
    delete m_ui;
}

QString Ethernet10gDlg::quad() const
{
    const QStringList lanes = samples::checkedLanes(m_ui->listLanes);
    return lanes.isEmpty() ? QStringLiteral("Q0") : lanes.first().left(2);
}

void Ethernet10gDlg::dialogDidPrepare()
{
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    samples::fillLaneList(m_ui->listLanes, free, m_opening ? QStringList() : free.mid(0, 1));
    if (!m_opening)
        propose();
    onPllChanged();
    updateFigure();
}

bool Ethernet10gDlg::restoreArgs(const QMap<QString, QVariant> &args)
{
    const Ethernet10gSettings s = Ethernet10gSettings::fromMap(args);
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    samples::fillLaneList(m_ui->listLanes, free, s.lanes);
    m_ui->comboPll->setCurrentText(s.pll);
    m_ui->comboReference->setCurrentText(s.reference);
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
            m_ui->comboPll->setCurrentText(offer.pll);
            m_ui->comboReference->setCurrentText(offer.reference);
            return;
        }
    }
    for (const QString &pll : {QStringLiteral("QPLL0"), QStringLiteral("QPLL1")}) {
        if (!model->checkPllEnable(QString(q + QLatin1Char('_') + pll))) {
            m_ui->comboPll->setCurrentText(pll);
            break;
        }
    }
    const QStringList pins = samples::referencePins(m_tier);
    for (const double wanted : {Ethernet10gSettings::REF_FREQ, 0.0}) {
        for (const QString &pin : pins) {
            if (pin.startsWith(q) && model->getFreqByRefsrc(pin) == wanted) {
                m_ui->comboReference->setCurrentText(pin);
                return;
            }
        }
    }
}

// Says what the chosen QPLL does already. A running QPLL that can be shared
// brings its reference pin with it.
void Ethernet10gDlg::onPllChanged()
{
    const QString pll = QString(quad() + QLatin1Char('_') + m_ui->comboPll->currentText());
    double rate = 0.0;
    const samples::PllOffer running = samples::pllState(pll, &rate);
    QString note;
    if (running.reference.isEmpty()) {
        note = tr("%1 is free and will run at 10.3125 Gbps.").arg(samples::pllText(pll));
    } else if (rate == Ethernet10gSettings::LINE_RATE
               && running.refFreq == Ethernet10gSettings::REF_FREQ) {
        m_ui->comboReference->setCurrentText(running.reference);
        note = tr("%1 already runs at 10.3125 Gbps from %2 and is shared.")
                   .arg(samples::pllText(pll), running.reference);
    } else {
        note = tr("%1 runs at %2 Gbps from %3 at %4 MHz for another instance; choose the other "
                  "QPLL.")
                   .arg(samples::pllText(pll), samples::numberText(rate), running.reference,
                        samples::numberText(running.refFreq));
    }
    samples::showNote(m_ui->labelShare, note);
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
    samples::readFrame(s, *this, m_ui->listLanes);
    s.pll = m_ui->comboPll->currentText();
    s.reference = m_ui->comboReference->currentText();
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
