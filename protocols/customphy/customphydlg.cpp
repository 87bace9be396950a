// SPDX-License-Identifier: MIT
#include "customphydlg.h"

#include "../common/fields.h"
#include "../common/lanelist.h"
#include "../common/laneplacement.h"
#include "ui_customphyclocks.h"
#include "ui_customphyline.h"

#include <model/serdes.h>

namespace {

void fillPairs(QComboBox *box, const QList<QPair<QString, QString>> &pairs)
{
    for (const auto &pair : pairs)
        box->addItem(pair.first, pair.second);
}

void selectData(QComboBox *box, const QString &value)
{
    const int index = box->findData(value);
    if (index >= 0)
        box->setCurrentIndex(index);
}

void selectText(QComboBox *box, const QString &text)
{
    const int index = box->findText(text);
    if (index >= 0)
        box->setCurrentIndex(index);
    else if (box->isEditable())
        box->setEditText(text);
}

} // namespace

CustomPhyDlg::CustomPhyDlg(samples::Tier tier, QWidget *parent)
    : SampleDlg(parent)
    , m_clocks(new Ui_CustomPhyClocks)
    , m_line(new Ui_CustomPhyLine)
    , m_tier(tier)
{
    auto *clocks = new QWidget;
    m_clocks->setupUi(clocks);
    auto *line = new QWidget;
    m_line->setupUi(line);
    uiAddTab(clocks, tr("Lanes and Clocks"));
    uiAddTab(line, tr("Line"));
    uiSetLabelText(tr("Custom PHY"));
    samples::setUpField(samples::Field::Lanes, m_clocks->listLanes);
    samples::setUpField(samples::Field::TxRate, m_line->comboTxRate, m_line->labelTxRate);
    samples::setUpField(samples::Field::RxRate, m_line->comboRxRate, m_line->labelRxRate);

    m_quads.insert(QStringLiteral("Q0"),
                   {m_clocks->groupQ0, m_clocks->comboPllQ0, m_clocks->comboReferenceQ0,
                    m_clocks->comboRefFreqQ0, m_clocks->buttonShareQ0});
    m_quads.insert(QStringLiteral("Q1"),
                   {m_clocks->groupQ1, m_clocks->comboPllQ1, m_clocks->comboReferenceQ1,
                    m_clocks->comboRefFreqQ1, m_clocks->buttonShareQ1});
    samples::setUpField(samples::Field::Pll, m_clocks->comboPllQ0, m_clocks->labelPllQ0);
    samples::setUpField(samples::Field::Pll, m_clocks->comboPllQ1, m_clocks->labelPllQ1);
    samples::setUpField(samples::Field::Reference, m_clocks->comboReferenceQ0,
                        m_clocks->labelReferenceQ0);
    samples::setUpField(samples::Field::Reference, m_clocks->comboReferenceQ1,
                        m_clocks->labelReferenceQ1);
    samples::setUpField(samples::Field::RefFreq, m_clocks->comboRefFreqQ0,
                        m_clocks->labelRefFreqQ0);
    samples::setUpField(samples::Field::RefFreq, m_clocks->comboRefFreqQ1,
                        m_clocks->labelRefFreqQ1);
    const QStringList references = samples::referencePins(tier) + samples::fabricReferences(tier);
    for (auto it = m_quads.begin(); it != m_quads.end(); ++it) {
        const QString quad = it.key();
        it->pll->addItems(
            {QStringLiteral("CPLL"), QStringLiteral("QPLL0"), QStringLiteral("QPLL1")});
        it->reference->addItems(references);
        it->refFreq->addItems({QStringLiteral("100"), QStringLiteral("125"),
                               QStringLiteral("156.25"), QStringLiteral("250"),
                               QStringLiteral("312.5")});
        selectText(it->refFreq, samples::numberText(CustomPhySettings::QuadClock().refFreq));
        it->share->hide();
        connect(it->share, &QPushButton::clicked, this, [this, quad] { share(quad); });
        connect(it->pll, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateOffers);
        connect(it->reference, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateOffers);
        connect(it->reference, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateFigure);
        connect(it->pll, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateFigure);
    }
    m_clocks->groupQ1->setVisible(samples::quadsOf(tier).contains(QStringLiteral("Q1")));

    const QStringList rates{QStringLiteral("1.25"),    QStringLiteral("2.5"),
                            QStringLiteral("3.125"),   QStringLiteral("5"),
                            QStringLiteral("6.25"),    QStringLiteral("8"),
                            QStringLiteral("10.3125"), QStringLiteral("12.5")};
    m_line->comboTxRate->addItems(rates);
    m_line->comboRxRate->addItems(rates);
    m_line->comboWidth->addItems(customphy::widths());
    fillPairs(m_line->comboEncoding, customphy::encodings(tier));
    fillPairs(m_line->comboLoopback, customphy::loopbacks(tier));
    for (const QString &pattern :
         {QStringLiteral("k28.5"), QStringLiteral("k28.1"), QStringLiteral("k28.7")})
        m_line->comboAlignPattern->addItem(samples::valueText(pattern), pattern);
    m_line->comboReferenceMux->addItem(tr("Auto"), QString());
    for (const QString &mux : samples::referenceMuxes(tier))
        m_line->comboReferenceMux->addItem(mux, mux);

    showSettings(CustomPhySettings());

    connect(m_clocks->listLanes, &QListWidget::itemChanged, this, &CustomPhyDlg::updateQuads);
    connect(m_line->comboTxRate, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateOffers);
    connect(m_line->comboWidth, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateFabric);
    connect(m_line->comboEncoding, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CustomPhyDlg::updateFabric);
    connect(m_line->checkWordAlign, &QCheckBox::toggled, m_line->comboAlignPattern,
            &QWidget::setEnabled);
}

CustomPhyDlg::~CustomPhyDlg()
{
    delete m_clocks;
    delete m_line;
}

void CustomPhyDlg::dialogDidPrepare()
{
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    samples::fillLaneList(m_clocks->listLanes, free, m_opening ? QStringList() : free.mid(0, 1));
    // An edited instance's own quads get their stored clocks back right after
    // this; the proposals serve the quads it may be extended to.
    for (const QString &quad : m_quads.keys())
        proposeClock(quad);
    updateQuads();
}

bool CustomPhyDlg::restoreArgs(const QMap<QString, QVariant> &args)
{
    const CustomPhySettings stored = CustomPhySettings::fromMap(args);
    showSettings(stored);
    // Lanes another instance took since are not offered: the map cannot be
    // shown as it is.
    return samples::lanesStillFree(stored.lanes,
                                   IPSERDESIP::serdes::instance()->notOccupiedLanes());
}

void CustomPhyDlg::showSettings(const CustomPhySettings &s)
{
    if (!s.lanes.isEmpty()) {
        samples::fillLaneList(m_clocks->listLanes,
                              IPSERDESIP::serdes::instance()->notOccupiedLanes(), s.lanes);
    }
    for (auto it = s.clocks.cbegin(); it != s.clocks.cend(); ++it) {
        const QuadWidgets w = m_quads.value(it.key());
        if (!w.group)
            continue;
        selectText(w.pll, it->pll);
        selectText(w.reference, it->reference);
        selectText(w.refFreq, samples::numberText(it->refFreq));
    }
    selectText(m_line->comboTxRate, samples::numberText(s.txRate));
    selectText(m_line->comboRxRate, samples::numberText(s.rxRate));
    selectText(m_line->comboWidth, QString::number(s.width));
    selectData(m_line->comboEncoding, s.encoding);
    m_line->checkWordAlign->setChecked(s.wordAlign);
    m_line->comboAlignPattern->setEnabled(s.wordAlign);
    selectData(m_line->comboAlignPattern, s.alignPattern);
    m_line->checkTxPolarity->setChecked(s.txPolarityInvert);
    m_line->checkRxPolarity->setChecked(s.rxPolarityInvert);
    selectData(m_line->comboLoopback, s.loopback);
    selectData(m_line->comboReferenceMux, s.referenceMux);
    updateQuads();
    updateFabric();
}

// A new quad group gets a running QPLL of the wanted rate, else a PLL and a
// reference input that nobody holds.
void CustomPhyDlg::proposeClock(const QString &quad)
{
    const QuadWidgets w = m_quads.value(quad);
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const QList<samples::PllOffer> offers = samples::runningPlls(quad, txRate());
    if (!offers.isEmpty()) {
        share(quad);
        return;
    }
    QString pll = QStringLiteral("CPLL");
    for (const QString &qpll : {QStringLiteral("QPLL0"), QStringLiteral("QPLL1")}) {
        if (!model->checkPllEnable(QString(quad + QLatin1Char('_') + qpll))) {
            pll = qpll;
            break;
        }
    }
    selectText(w.pll, pll);
    // The quad's own inputs first: they need no bridge between quads. Failing
    // a free one, the first is proposed at the frequency it runs at.
    QStringList own;
    QStringList other;
    for (int i = 0; i < w.reference->count(); ++i) {
        const QString ref = w.reference->itemText(i);
        (ref.startsWith(quad) ? own : other) << ref;
    }
    const QStringList candidates = own + other;
    for (const QString &ref : candidates) {
        if (model->getFreqByRefsrc(ref) == 0.0) {
            selectText(w.reference, ref);
            return;
        }
    }
    selectText(w.reference, candidates.value(0));
    selectText(w.refFreq, samples::numberText(model->getFreqByRefsrc(candidates.value(0))));
}

void CustomPhyDlg::share(const QString &quad)
{
    const QList<samples::PllOffer> offers = samples::runningPlls(quad, txRate());
    if (offers.isEmpty())
        return;
    const QuadWidgets w = m_quads.value(quad);
    selectText(w.pll, offers.first().pll);
    selectText(w.reference, offers.first().reference);
    selectText(w.refFreq, samples::numberText(offers.first().refFreq));
    samples::showNote(m_clocks->labelClockNote,
                      tr("%1 of %2 is shared with another instance that runs it at %3 Gbps.")
                          .arg(offers.first().pll, quad, samples::numberText(txRate())));
    updateOffers();
}

double CustomPhyDlg::txRate() const
{
    return m_line->comboTxRate->currentText().toDouble();
}

void CustomPhyDlg::updateQuads()
{
    const QStringList lanes = samples::checkedLanes(m_clocks->listLanes);
    for (auto it = m_quads.cbegin(); it != m_quads.cend(); ++it) {
        bool used = false;
        for (const QString &lane : lanes)
            used = used || lane.startsWith(it.key());
        it->group->setEnabled(used);
    }
    updateOffers();
    updateFigure();
}

// The share button offers what runs at the current rate, unless it is
// already chosen.
void CustomPhyDlg::updateOffers()
{
    bool sharing = false;
    const QStringList lanes = samples::checkedLanes(m_clocks->listLanes);
    for (auto it = m_quads.cbegin(); it != m_quads.cend(); ++it) {
        const QList<samples::PllOffer> offers = samples::runningPlls(it.key(), txRate());
        const bool chosen = !offers.isEmpty() && it->pll->currentText() == offers.first().pll
                            && it->reference->currentText() == offers.first().reference;
        sharing = sharing || (chosen && !lanes.filter(it.key()).isEmpty());
        if (offers.isEmpty() || chosen) {
            it->share->hide();
            continue;
        }
        it->share->setText(tr("Share %1 (%2, %3 MHz)")
                               .arg(offers.first().pll, offers.first().reference,
                                    samples::numberText(offers.first().refFreq)));
        it->share->show();
    }
    if (!sharing)
        samples::showNote(m_clocks->labelClockNote, QString());
}

void CustomPhyDlg::updateFabric()
{
    const CustomPhySettings s = settings();
    m_line->labelFabric->setText(
        s.ctrlWidth() > 0
            ? tr("%1 data and %2 control bits per lane").arg(s.dataWidth()).arg(s.ctrlWidth())
            : tr("%1 data bits per lane").arg(s.dataWidth()));
    updateFigure();
}

void CustomPhyDlg::updateFigure()
{
    const CustomPhySettings s = settings();
    uiSetFigurePins(samples::figurePins(
        samples::LaneModule(s.module, s.moduleLanes(), s.dataWidth(), s.ctrlWidth(), false)
            .ports()));
}

CustomPhySettings CustomPhyDlg::settings() const
{
    CustomPhySettings s;
    samples::readFrame(s, *this, m_clocks->listLanes);
    for (const QString &quad : s.quads()) {
        const QuadWidgets w = m_quads.value(quad);
        CustomPhySettings::QuadClock clock;
        if (w.group) {
            clock.pll = w.pll->currentText();
            clock.reference = w.reference->currentText();
            clock.refFreq = w.refFreq->currentText().toDouble();
        }
        s.clocks.insert(quad, clock);
    }
    s.txRate = txRate();
    s.rxRate = m_line->comboRxRate->currentText().toDouble();
    s.width = m_line->comboWidth->currentText().toInt();
    s.encoding = m_line->comboEncoding->currentData().toString();
    s.wordAlign = m_line->checkWordAlign->isChecked();
    s.alignPattern = m_line->comboAlignPattern->currentData().toString();
    s.txPolarityInvert = m_line->checkTxPolarity->isChecked();
    s.rxPolarityInvert = m_line->checkRxPolarity->isChecked();
    s.loopback = m_line->comboLoopback->currentData().toString();
    s.referenceMux = m_line->comboReferenceMux->currentData().toString();
    return s;
}

QMap<QString, QVariant> CustomPhyDlg::args() const
{
    return settings().toMap();
}

bool CustomPhyDlg::confirm()
{
    const CustomPhySettings s = settings();
    return samples::confirmLanes(this, tr("Custom PHY"), s.problems(m_tier), s.rows());
}
