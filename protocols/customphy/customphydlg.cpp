// SPDX-License-Identifier: MIT
#include "customphydlg.h"

#include "../common/fields.h"
#include "../common/lanelist.h"
#include "../common/laneplacement.h"
#include "ui_customphyline.h"

#include <model/serdes.h>

#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>
#include <QScopedValueRollback>

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
    , m_clocks(new samples::ClockPage({QStringLiteral("Q0"), QStringLiteral("Q1")},
                                      samples::ClockPage::Rates::TxAndRx))
    , m_line(new Ui_CustomPhyLine)
    , m_tier(tier)
{
    auto *line = new QWidget;
    m_line->setupUi(line);
    uiAddTab(m_clocks, tr("Lanes and Clocks"));
    uiAddTab(line, tr("Line"));
    uiSetLabelText(tr("Custom PHY"));
    m_clocks->lanesCaption->setText(tr("Free lanes of the device:"));

    for (auto it = m_clocks->clocks.cbegin(); it != m_clocks->clocks.cend(); ++it) {
        auto *share = new QPushButton(tr("Share a running QPLL"));
        share->setObjectName(QStringLiteral("buttonShare") + it.key());
        share->setToolTip(tr("Take the PLL, reference clock and frequency of a QPLL that another "
                             "instance runs at the wanted TX rate."));
        // The offer comes and goes with the rate; its room stays.
        QSizePolicy keep = share->sizePolicy();
        keep.setRetainSizeWhenHidden(true);
        share->setSizePolicy(keep);
        it->grid->addWidget(share, it->grid->rowCount(), 0, 1, 2);
        m_quads.insert(it.key(), {it->group, it->pll, it->reference, it->refFreq, share});
    }
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
    m_quads.value(QStringLiteral("Q1"))
        .group->setVisible(samples::quadsOf(tier).contains(QStringLiteral("Q1")));

    const QStringList rates{QStringLiteral("1.25"),    QStringLiteral("2.5"),
                            QStringLiteral("3.125"),   QStringLiteral("5"),
                            QStringLiteral("6.25"),    QStringLiteral("8"),
                            QStringLiteral("10.3125"), QStringLiteral("12.5")};
    m_clocks->txRate->addItems(rates);
    m_clocks->rxRate->addItems(rates);
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

    connect(m_clocks->lanes, &QListWidget::itemChanged, this, &CustomPhyDlg::updateQuads);
    connect(m_clocks->txRate, &QComboBox::currentTextChanged, this, [this](const QString &rate) {
        if (!m_rxFollows)
            return;
        const QScopedValueRollback<bool> following(m_settingRx, true);
        selectText(m_clocks->rxRate, rate);
    });
    connect(m_clocks->rxRate, &QComboBox::currentTextChanged, this,
            [this] { m_rxFollows = m_rxFollows && m_settingRx; });
    connect(m_clocks->txRate, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateOffers);
    connect(m_line->comboWidth, &QComboBox::currentTextChanged, this, &CustomPhyDlg::updateFabric);
    connect(m_line->comboEncoding, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CustomPhyDlg::updateFabric);
    connect(m_line->checkWordAlign, &QCheckBox::toggled, m_line->comboAlignPattern,
            &QWidget::setEnabled);

    watchField(QStringLiteral("lanes"), m_clocks->lanes);
    for (auto it = m_quads.cbegin(); it != m_quads.cend(); ++it) {
        watchField(it.key() + QStringLiteral("_pll"), it->pll);
        watchField(it.key() + QStringLiteral("_reference"), it->reference);
        watchField(it.key() + QStringLiteral("_refFreq"), it->refFreq);
    }
    watchField(QStringLiteral("txRate"), m_clocks->txRate);
    watchField(QStringLiteral("rxRate"), m_clocks->rxRate);
    watchField(QStringLiteral("width"), m_line->comboWidth);
    watchField(QStringLiteral("encoding"), m_line->comboEncoding);
    watchField(QStringLiteral("loopback"), m_line->comboLoopback);
    watchField(QStringLiteral("referenceMux"), m_line->comboReferenceMux);
}

CustomPhyDlg::~CustomPhyDlg()
{
    delete m_line;
}

void CustomPhyDlg::dialogDidPrepare()
{
    const QStringList free = IPSERDESIP::serdes::instance()->notOccupiedLanes();
    samples::fillLaneList(m_clocks->lanes, free, m_opening ? QStringList() : free.mid(0, 1));
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
        samples::fillLaneList(m_clocks->lanes, IPSERDESIP::serdes::instance()->notOccupiedLanes(),
                              s.lanes);
    }
    for (auto it = s.clocks.cbegin(); it != s.clocks.cend(); ++it) {
        const QuadWidgets w = m_quads.value(it.key());
        if (!w.group)
            continue;
        selectText(w.pll, it->pll);
        selectText(w.reference, it->reference);
        selectText(w.refFreq, samples::numberText(it->refFreq));
    }
    {
        const QScopedValueRollback<bool> shown(m_settingRx, true);
        selectText(m_clocks->txRate, samples::numberText(s.txRate));
        selectText(m_clocks->rxRate, samples::numberText(s.rxRate));
    }
    m_rxFollows = s.rxRate == s.txRate;
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
    samples::showNote(m_clocks->note,
                      tr("%1 of %2 is shared with another instance that runs it at %3 Gbps.")
                          .arg(offers.first().pll, quad, samples::numberText(txRate())));
    updateOffers();
}

double CustomPhyDlg::txRate() const
{
    return m_clocks->txRate->currentText().toDouble();
}

void CustomPhyDlg::updateQuads()
{
    const QStringList lanes = samples::checkedLanes(m_clocks->lanes);
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
    const QStringList lanes = samples::checkedLanes(m_clocks->lanes);
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
        samples::showNote(m_clocks->note, QString());
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
    samples::readFrame(s, *this, m_clocks->lanes);
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
    s.rxRate = m_clocks->rxRate->currentText().toDouble();
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

QList<samples::Problem> CustomPhyDlg::fieldProblems() const
{
    const CustomPhySettings s = settings();
    return samples::placementProblems(
        s.problems(m_tier), s.rows(), [](const samples::Refusal &refusal) {
            const QString quad = samples::quadOfLane(refusal.lane) + QLatin1Char('_');
            switch (refusal.cause) {
            case samples::Cause::Pll:
                return QString(quad + QStringLiteral("pll"));
            case samples::Cause::Reference:
                return QString(quad + QStringLiteral("reference"));
            case samples::Cause::RefFreq:
                return QString(quad + QStringLiteral("refFreq"));
            case samples::Cause::Rate:
                return QStringLiteral("txRate");
            case samples::Cause::ReferenceMux:
                return QStringLiteral("referenceMux");
            case samples::Cause::Lanes:
                break;
            }
            return QStringLiteral("lanes");
        });
}
