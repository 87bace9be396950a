// SPDX-License-Identifier: MIT
#include "bcdrdlg.h"

#include "../common/devicetier.h"
#include "../common/fields.h"
#include "../common/lanelist.h"
#include "../common/lanemodule.h"
#include "../common/laneplacement.h"
#include "ui_bcdrdlg.h"

#include <model/serdes.h>
#include <model/serdesip_common.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>

#include <algorithm>

namespace {

void fillCombo(QComboBox *combo, const QList<Bcdr::Choice> &choices)
{
    const QSignalBlocker block(combo);
    combo->clear();
    for (const Bcdr::Choice &choice : choices)
        combo->addItem(choice.label, choice.value);
}

QString value(const QComboBox *combo)
{
    return combo->currentData().toString();
}

// False when the combo has no such value; the selection stays then.
bool select(QComboBox *combo, const QString &value)
{
    const int index = combo->findData(value);
    if (index < 0)
        return false;
    combo->setCurrentIndex(index);
    return true;
}

QString capitalised(const QString &text)
{
    return text.left(1).toUpper() + text.mid(1);
}

QStringList laneLabels(const QStringList &lanes)
{
    QStringList labels;
    for (const QString &lane : lanes)
        labels << samples::laneLabel(lane);
    return labels;
}

} // namespace

BcdrDlg::BcdrDlg(const QString &helpFile, QWidget *parent)
    : SampleDlg(parent)
    , m_page(new samples::ClockPage({}, samples::ClockPage::Rates::RxOnly))
    , m_clock(m_page->clocks.value(QString()))
    , m_form(new Ui::BcdrOptions)
    , m_holder(new QWidget(this))
{
    m_helpFile = helpFile;
    m_form->setupUi(m_holder);
    m_holder->hide();
    uiAddTab(m_page, tr("Lanes and Clock"));
    uiAddTab(m_form->pageRx, tr("RX Settings"));
    uiSetLabelText(tr("Burst-Mode CDR Receiver"));

    // The receiver's own limits.
    m_clock.refFreq->setToolTip(tr("Frequency of the reference clock, %1 to %2 MHz.")
                                    .arg(Bcdr::Options::MIN_REF_FREQ)
                                    .arg(Bcdr::Options::MAX_REF_FREQ));
    m_page->rxRate->setToolTip(tr("Line rate of the received bursts, %1 to %2 Gbps.")
                                   .arg(Bcdr::Options::MIN_RX_RATE)
                                   .arg(Bcdr::Options::MAX_RX_RATE));
    m_clock.refFreq->addItems({QStringLiteral("100"), QStringLiteral("125"),
                               QStringLiteral("156.25"), QStringLiteral("250")});
    m_page->rxRate->addItems({QStringLiteral("1.25"), QStringLiteral("2.5"),
                              QStringLiteral("3.125"), QStringLiteral("5")});

    fillCombo(m_clock.pll, Bcdr::Options::plls());
    fillCombo(m_form->comboEncoding, Bcdr::Options::encodings());
    fillCombo(m_form->comboComma, Bcdr::Options::commas());
    fillCombo(m_form->comboCoupling, Bcdr::Options::couplings());
    fillCombo(m_form->comboSdThreshold, Bcdr::Options::sdThresholds());
    fillCombo(m_form->comboOvsMode, Bcdr::Options::ovsModes());
    fillCombo(m_form->comboOvsRatio, Bcdr::Options::ovsRatios());
    fillWidths();
    // The fields of the three groups of the RX page stand in one column.
    const QList<QLabel *> rxLabels{m_form->labelEncoding,    m_form->labelWidth,
                                   m_form->labelComma,       m_form->labelCoupling,
                                   m_form->labelSdThreshold, m_form->labelPolarity,
                                   m_form->labelOvsMode,     m_form->labelOvsRatio};
    int labelWidth = 0;
    for (const QLabel *label : rxLabels)
        labelWidth = std::max(labelWidth, label->sizeHint().width());
    for (QLabel *label : rxLabels)
        label->setMinimumWidth(labelWidth);

    const Bcdr::Settings defaults;
    select(m_clock.pll, defaults.pll);
    select(m_form->comboEncoding, defaults.encoding);
    select(m_form->comboWidth, defaults.width);
    m_form->checkWordAlign->setChecked(defaults.wordAlign);
    select(m_form->comboComma, defaults.comma);
    select(m_form->comboCoupling, defaults.coupling);
    select(m_form->comboSdThreshold, defaults.sdThreshold);
    m_form->checkPolarityInvert->setChecked(defaults.polarityInvert);
    select(m_form->comboOvsMode, defaults.ovsMode);
    select(m_form->comboOvsRatio, defaults.ovsRatio);
    updateComma();

    connect(m_page->lanes, &QListWidget::itemChanged, this, [this] {
        proposeClock();
        // While a stored map is shown, proposals wait; the ports do not.
        updatePins();
    });
    connect(m_clock.pll, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &BcdrDlg::proposeClock);
    connect(m_clock.reference, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &BcdrDlg::proposeFrequency);
    connect(m_form->comboEncoding, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        fillWidths();
        updateComma();
        updatePins();
    });
    connect(m_form->comboWidth, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &BcdrDlg::updatePins);
    connect(m_form->checkWordAlign, &QCheckBox::toggled, this, &BcdrDlg::updateComma);

    using namespace Bcdr::Key;
    const QList<QPair<const char *, QWidget *>> watched{{LANES, m_page->lanes},
                                                        {PLL, m_clock.pll},
                                                        {REF, m_clock.reference},
                                                        {REF_FREQ, m_clock.refFreq},
                                                        {RX_RATE, m_page->rxRate},
                                                        {ENCODING, m_form->comboEncoding},
                                                        {WIDTH, m_form->comboWidth},
                                                        {COUPLING, m_form->comboCoupling},
                                                        {SD_THRESHOLD, m_form->comboSdThreshold},
                                                        {OVS_MODE, m_form->comboOvsMode},
                                                        {OVS_RATIO, m_form->comboOvsRatio}};
    for (const auto &field : watched)
        watchField(QLatin1String(field.first), field.second);
}

BcdrDlg::~BcdrDlg()
{
    delete m_form;
}

void BcdrDlg::dialogDidPrepare()
{
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    fillRefClocks();
    if (free.isEmpty()) {
        m_page->lanesCaption->setText(
            tr("No lane of this device is free: other instances hold them all. Delete or change "
               "one of them to make room for the receiver."));
        setOptionsAvailable(false);
    } else {
        m_page->lanesCaption->setText(tr("Each lane you tick receives; its transmitter stays "
                                         "unused and cannot be given to another instance."));
    }
    // A first proposal: the first free lane, from a reference clock of its
    // own quad.
    samples::fillLaneList(m_page->lanes, free, m_opening ? QStringList() : free.mid(0, 1));
    if (!m_opening && !free.isEmpty()) {
        m_clock.refFreq->setEditText(QStringLiteral("125"));
        m_page->rxRate->setEditText(QStringLiteral("1.25"));
        select(m_clock.reference, free.first().left(2) + QStringLiteral(" REFCLK0"));
    }
    proposeClock();
}

void BcdrDlg::fillRefClocks()
{
    QStringList options;
    const IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    for (const IPSERDESIP::QUAD *quad : model->quads) {
        for (auto it = quad->refs.cbegin(); it != quad->refs.cend(); ++it) {
            const QString option = IPSERDESIP::refsrcSerdesNameTransforOpt(it.key());
            if (!option.isEmpty())
                options << option;
        }
    }
    // The dedicated reference pads first, then the clocks from the fabric.
    std::sort(options.begin(), options.end(), [](const QString &a, const QString &b) {
        const bool padA = a.contains(QStringLiteral("REFCLK"));
        const bool padB = b.contains(QStringLiteral("REFCLK"));
        return padA != padB ? padA : a < b;
    });
    const QSignalBlocker block(m_clock.reference);
    m_clock.reference->clear();
    for (const QString &option : options)
        m_clock.reference->addItem(option, option);
}

void BcdrDlg::fillWidths()
{
    const QString before = value(m_form->comboWidth);
    fillCombo(m_form->comboWidth, Bcdr::Options::widths(value(m_form->comboEncoding)));
    const QSignalBlocker block(m_form->comboWidth);
    select(m_form->comboWidth, before);
}

void BcdrDlg::updateComma()
{
    // Commas exist only in an 8b/10b stream.
    const bool coded = value(m_form->comboEncoding) == QLatin1String("8b10b");
    m_form->checkWordAlign->setEnabled(coded);
    m_form->comboComma->setEnabled(coded && m_form->checkWordAlign->isChecked());
}

void BcdrDlg::updatePins()
{
    const Bcdr::Settings s = settings();
    uiSetFigurePins(
        samples::figurePins(samples::LaneModule(s.module, s.moduleLanes(), s.dataWidth(),
                                                s.ctrlWidth(), false, samples::Lines::ReceiverOnPll)
                                .ports()));
}

void BcdrDlg::proposeClock()
{
    if (m_restoring)
        return;
    const Bcdr::Settings s = settings();
    m_pllNote.clear();
    m_pllRef.clear();
    if (!s.lanes.isEmpty()) {
        const QString pll = s.pllOf(s.lanes.first());
        double rate = 0.0;
        const samples::PllOffer running = samples::pllState(pll, &rate);
        if (!running.reference.isEmpty()) {
            const QString freq = samples::numberText(running.refFreq);
            {
                const QSignalBlocker block(m_clock.reference);
                select(m_clock.reference, running.reference);
            }
            m_clock.refFreq->setEditText(freq);
            if (rate != 0.0)
                m_page->rxRate->setEditText(samples::numberText(rate));
            m_pllRef = running.reference;
            m_pllNote = tr("%1 already runs from %2 at %3 MHz%4 for another instance: its "
                           "settings are proposed, since lanes can share it only as it runs.")
                            .arg(capitalised(samples::pllText(pll)), running.reference, freq,
                                 rate != 0.0 ? tr(" and %1 Gbps").arg(samples::numberText(rate))
                                             : QString());
        }
    }
    proposeFrequency();
}

void BcdrDlg::proposeFrequency()
{
    if (m_restoring)
        return;
    const QString ref = value(m_clock.reference);
    const double held = IPSERDESIP::serdes::instance()->getFreqByRefsrc(ref);
    QString refNote;
    // A running PLL's proposal has named the frequency of its own reference.
    if (held != 0.0 && ref != m_pllRef) {
        m_clock.refFreq->setEditText(samples::numberText(held));
        refNote = tr("%1 already runs at %2 MHz for another instance, and a reference clock "
                     "input has one frequency.")
                      .arg(ref, samples::numberText(held));
    }
    QStringList notes{m_pllNote, refNote};
    notes.removeAll(QString());
    samples::showNote(m_page->note, notes.join(QLatin1Char(' ')));
    // A proposal may have changed the reference clock, and with it the ports.
    updatePins();
}

Bcdr::Settings BcdrDlg::settings() const
{
    Bcdr::Settings s;
    s.name = moduleName();
    s.file = fileName();
    s.module = moduleName();
    s.device = m_device.id;
    s.dir = createPath();
    for (const QString &label : samples::checkedLanes(m_page->lanes))
        s.lanes << samples::laneModelName(label);
    s.lanes.sort();
    s.pll = value(m_clock.pll);
    s.ref = value(m_clock.reference);
    // Text that is no number stays as typed, for check() to name it.
    const auto numberText = [](const QString &text) {
        const QString normal = Bcdr::normalNumber(text);
        return normal.isNull() ? text : normal;
    };
    s.refFreq = numberText(m_clock.refFreq->currentText());
    s.rxRate = numberText(m_page->rxRate->currentText());
    s.encoding = value(m_form->comboEncoding);
    s.width = value(m_form->comboWidth);
    s.wordAlign = m_form->checkWordAlign->isChecked();
    s.comma = value(m_form->comboComma);
    s.coupling = value(m_form->comboCoupling);
    s.sdThreshold = value(m_form->comboSdThreshold);
    s.polarityInvert = m_form->checkPolarityInvert->isChecked();
    s.ovsMode = value(m_form->comboOvsMode);
    s.ovsRatio = value(m_form->comboOvsRatio);
    return s;
}

QMap<QString, QVariant> BcdrDlg::args() const
{
    return settings().toMap();
}

bool BcdrDlg::restoreArgs(const QMap<QString, QVariant> &args)
{
    const Bcdr::Settings s = Bcdr::Settings::fromMap(args);
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    m_restoring = true;
    // A lane that another instance took meanwhile cannot be shown.
    bool shown = samples::lanesStillFree(laneLabels(s.lanes), free);
    samples::fillLaneList(m_page->lanes, free, laneLabels(s.lanes));
    shown = select(m_clock.pll, s.pll) && shown;
    shown = select(m_clock.reference, s.ref) && shown;
    m_clock.refFreq->setEditText(s.refFreq);
    m_page->rxRate->setEditText(s.rxRate);
    shown = select(m_form->comboEncoding, s.encoding) && shown;
    shown = select(m_form->comboWidth, s.width) && shown;
    m_form->checkWordAlign->setChecked(s.wordAlign);
    shown = select(m_form->comboComma, s.comma) && shown;
    shown = select(m_form->comboCoupling, s.coupling) && shown;
    shown = select(m_form->comboSdThreshold, s.sdThreshold) && shown;
    m_form->checkPolarityInvert->setChecked(s.polarityInvert);
    shown = select(m_form->comboOvsMode, s.ovsMode) && shown;
    shown = select(m_form->comboOvsRatio, s.ovsRatio) && shown;
    m_restoring = false;
    // The notes told of what was proposed while the form held its first
    // values; what is shown now is the instance's own.
    m_pllNote.clear();
    m_pllRef.clear();
    samples::showNote(m_page->note, QString());
    updateComma();
    updatePins();
    return shown;
}

QList<samples::Problem> BcdrDlg::fieldProblems() const
{
    const Bcdr::Settings s = settings();
    return samples::placementProblems(
        s.check(), s.rows(),
        [](const samples::Refusal &refusal) {
            using namespace Bcdr::Key;
            switch (refusal.cause) {
            case samples::Cause::Pll:
                return QLatin1String(PLL);
            case samples::Cause::Reference:
            case samples::Cause::ReferenceMux:
                return QLatin1String(REF);
            case samples::Cause::RefFreq:
                return QLatin1String(REF_FREQ);
            case samples::Cause::Rate:
                return QLatin1String(RX_RATE);
            case samples::Cause::Lanes:
                break;
            }
            return QLatin1String(LANES);
        },
        samples::Lines::ReceiverOnPll);
}

bool BcdrDlg::confirm()
{
    const Bcdr::Settings s = settings();
    return samples::confirmLanes(this, tr("BCDR"), s.check(), s.rows(),
                                 samples::Lines::ReceiverOnPll);
}
