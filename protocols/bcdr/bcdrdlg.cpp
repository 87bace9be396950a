// SPDX-License-Identifier: MIT
#include "bcdrdlg.h"

#include "../common/devicetier.h"
#include "bcdrmodule.h"
#include "ui_bcdrdlg.h"

#include <model/serdes.h>
#include <model/serdesip_common.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpressionValidator>
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

// "QPLL0 of Q0", "the CPLL of Q0 Lane1": a PLL in the user's words.
QString pllWords(const QString &pll)
{
    const QString quad = pll.left(2);
    if (pll.contains(QStringLiteral("QPLL")))
        return QStringLiteral("%1 of %2").arg(pll.mid(3), quad);
    return QStringLiteral("the CPLL of %1 Lane%2").arg(quad, pll.right(1));
}

QString capitalised(const QString &text)
{
    return text.left(1).toUpper() + text.mid(1);
}

QString number(double value)
{
    return QString::number(value, 'g', 12);
}

} // namespace

BcdrDlg::BcdrDlg(const QString &helpFile, QWidget *parent)
    : SampleDlg(parent)
    , m_form(new Ui::BcdrOptions)
    , m_holder(new QWidget(this))
{
    m_helpFile = helpFile;
    m_form->setupUi(m_holder);
    m_holder->hide();
    uiAddTab(m_form->pageClock, QStringLiteral("Lanes and Clock"));
    uiAddTab(m_form->pageRx, QStringLiteral("RX Settings"));
    uiSetLabelText(QStringLiteral("Burst-Mode CDR Receiver"));
    // The instance's directory is named after its file, as on reopening.
    fileNameConnectCreatIn();
    // The module is written in Verilog only.
    if (auto *language = findChild<QComboBox *>(QStringLiteral("comboBoxLanguage"))) {
        language->setCurrentIndex(0);
        language->setEnabled(false);
    }

    const QRegularExpression decimal(QStringLiteral("[0-9]{1,4}(\\.[0-9]{0,6})?"));
    m_form->editRefFreq->setValidator(new QRegularExpressionValidator(decimal, this));
    m_form->editRxRate->setValidator(new QRegularExpressionValidator(decimal, this));

    fillCombo(m_form->comboPll, Bcdr::Options::plls());
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
    select(m_form->comboPll, defaults.pll);
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

    connect(m_form->comboPll, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &BcdrDlg::proposeClock);
    connect(m_form->comboRefClk, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &BcdrDlg::proposeFrequency);
    connect(m_form->comboEncoding, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        fillWidths();
        updateComma();
        updatePins();
    });
    connect(m_form->comboWidth, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &BcdrDlg::updatePins);
    connect(m_form->checkWordAlign, &QCheckBox::toggled, this, &BcdrDlg::updateComma);
}

BcdrDlg::~BcdrDlg()
{
    delete m_form;
}

void BcdrDlg::dialogDidPrepare()
{
    fillLanes();
    fillRefClocks();
    if (!m_opening) {
        // A first proposal: the first free lane, from a reference clock of
        // its own quad.
        m_form->editRefFreq->setText(QStringLiteral("125"));
        m_form->editRxRate->setText(QStringLiteral("1.25"));
        for (QCheckBox *lane : qAsConst(m_lanes)) {
            if (!lane->isEnabled())
                continue;
            const QString quad = lane->text().left(2);
            const int ref = m_form->comboRefClk->findText(quad + QStringLiteral(" REFCLK0"));
            if (ref >= 0)
                m_form->comboRefClk->setCurrentIndex(ref);
            const QSignalBlocker block(lane);
            lane->setChecked(true);
            break;
        }
    }
    proposeClock();
}

void BcdrDlg::fillLanes()
{
    qDeleteAll(m_lanes);
    m_lanes.clear();
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const QStringList free = model->notOccupiedLanes();
    QStringList all = free + model->occupiedLanes();
    all.sort();
    // One row a quad, one column a lane number.
    QStringList quads;
    for (const QString &label : qAsConst(all)) {
        const QString quad = label.left(2);
        if (!quads.contains(quad))
            quads << quad;
        auto *lane = new QCheckBox(label, m_form->laneGrid);
        lane->setObjectName(QStringLiteral("lane_") + samples::laneModelName(label));
        if (!free.contains(label)) {
            lane->setEnabled(false);
            lane->setToolTip(QStringLiteral("Held by another instance."));
        }
        m_form->laneGridLayout->addWidget(lane, quads.indexOf(quad),
                                          samples::laneInQuad(samples::laneModelName(label)));
        connect(lane, &QCheckBox::toggled, this, [this] {
            proposeClock();
            // While a stored map is shown, proposals wait; the ports do not.
            updatePins();
        });
        m_lanes << lane;
    }
    if (free.isEmpty()) {
        m_form->labelLanes->setText(
            QStringLiteral("No lane of this device is free: other instances hold them all. "
                           "Delete or change one of them to make room for the receiver."));
        setOptionsAvailable(false);
    } else {
        m_form->labelLanes->setText(QStringLiteral(
            "Each lane you tick receives; its transmitter stays unused and cannot be given "
            "to another instance."));
    }
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
    const QSignalBlocker block(m_form->comboRefClk);
    m_form->comboRefClk->clear();
    for (const QString &option : options)
        m_form->comboRefClk->addItem(option, option);
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
    // Commas exist only in an 8B/10B stream.
    const bool coded = value(m_form->comboEncoding) == QLatin1String("8b10b");
    m_form->checkWordAlign->setEnabled(coded);
    m_form->comboComma->setEnabled(coded && m_form->checkWordAlign->isChecked());
}

void BcdrDlg::updatePins()
{
    QList<Utils::PinFigure> pins;
    for (const Bcdr::Port &port : Bcdr::modulePorts(settings()))
        pins << Utils::PinFigure(port.name,
                                 port.direction == QLatin1String("input")
                                     ? Utils::PinFigure::Input
                                     : Utils::PinFigure::Output,
                                 port.width);
    uiSetFigurePins(pins);
}

void BcdrDlg::proposeClock()
{
    if (m_restoring)
        return;
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const Bcdr::Settings s = settings();
    m_pllNote.clear();
    m_pllRef.clear();
    if (!s.lanes.isEmpty()) {
        const QString pll = s.pllOf(s.lanes.first());
        if (model->checkPllEnable(pll)) {
            const QMap<QString, QVariant> running = model->getMessageByPLL(pll);
            const QString ref = running.value(QStringLiteral("Reference_Clock_Source")).toString();
            const QString freq
                = number(running.value(QStringLiteral("Reference_Clock_Frequency")).toDouble());
            QVariant rate = running.value(QStringLiteral("RX_Line_Rate"));
            if (!rate.isValid())
                rate = running.value(QStringLiteral("TX_Line_Rate"));
            {
                const QSignalBlocker block(m_form->comboRefClk);
                select(m_form->comboRefClk, ref);
            }
            m_form->editRefFreq->setText(freq);
            if (rate.isValid())
                m_form->editRxRate->setText(number(rate.toDouble()));
            m_pllRef = ref;
            m_pllNote = QStringLiteral("%1 already runs from %2 at %3 MHz%4 for another instance: "
                                       "its settings are proposed, since lanes can share it only "
                                       "as it runs.")
                            .arg(capitalised(pllWords(pll)), ref, freq,
                                 rate.isValid()
                                     ? QStringLiteral(" and %1 Gbps").arg(number(rate.toDouble()))
                                     : QString());
        }
    }
    proposeFrequency();
}

void BcdrDlg::proposeFrequency()
{
    if (m_restoring)
        return;
    const QString ref = value(m_form->comboRefClk);
    const double held = IPSERDESIP::serdes::instance()->getFreqByRefsrc(ref);
    QString refNote;
    // A running PLL's proposal has named the frequency of its own reference.
    if (held != 0.0 && ref != m_pllRef) {
        m_form->editRefFreq->setText(number(held));
        refNote = QStringLiteral("%1 already runs at %2 MHz for another instance, and a "
                                 "reference clock input has one frequency.")
                      .arg(ref, number(held));
    }
    QStringList notes{m_pllNote, refNote};
    notes.removeAll(QString());
    m_form->labelClockNote->setText(notes.join(QLatin1Char(' ')));
    m_form->labelClockNote->setVisible(!notes.isEmpty());
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
    for (const QCheckBox *lane : m_lanes) {
        if (lane->isEnabled() && lane->isChecked())
            s.lanes << samples::laneModelName(lane->text());
    }
    s.lanes.sort();
    s.pll = value(m_form->comboPll);
    s.ref = value(m_form->comboRefClk);
    // Text that is no number stays as typed, for check() to name it.
    const auto numberText = [](const QString &text) {
        const QString normal = Bcdr::normalNumber(text);
        return normal.isNull() ? text : normal;
    };
    s.refFreq = numberText(m_form->editRefFreq->text());
    s.rxRate = numberText(m_form->editRxRate->text());
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
    if (s.lanes.isEmpty())
        return false;
    m_restoring = true;
    bool shown = true;
    for (QCheckBox *lane : qAsConst(m_lanes)) {
        const bool stored = s.lanes.contains(samples::laneModelName(lane->text()));
        // A lane that another instance took meanwhile cannot be shown.
        if (stored && !lane->isEnabled())
            shown = false;
        lane->setChecked(stored && lane->isEnabled());
    }
    for (const QString &lane : s.lanes) {
        if (!findChild<QCheckBox *>(QStringLiteral("lane_") + lane))
            shown = false;
    }
    shown = select(m_form->comboPll, s.pll) && shown;
    shown = select(m_form->comboRefClk, s.ref) && shown;
    m_form->editRefFreq->setText(s.refFreq);
    m_form->editRxRate->setText(s.rxRate);
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
    updateComma();
    updatePins();
    return shown;
}

void BcdrDlg::refuse(const QString &text)
{
    QMessageBox::critical(this, QStringLiteral("Error"), text);
}

bool BcdrDlg::confirm()
{
    const Bcdr::Settings s = settings();
    const QStringList errors = s.check();
    if (!errors.isEmpty()) {
        refuse(errors.join(QLatin1Char('\n')));
        return false;
    }
    // An instance being edited is out of the model while its dialog runs, so
    // its own names are free here.
    const IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    if (model->moduleNames.contains(s.module)) {
        refuse(
            QStringLiteral("Another instance already has the module name \"%1\".").arg(s.module));
        return false;
    }
    if (model->fileNames.contains(s.file)) {
        refuse(QStringLiteral("Another instance already has the file name \"%1\".").arg(s.file));
        return false;
    }
    return checkRunning(s) && proveRoutes(s) && checkModuleName();
}

bool BcdrDlg::checkRunning(const Bcdr::Settings &s)
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    const double freq = s.refFreq.toDouble();
    const double held = model->getFreqByRefsrc(s.ref);
    if (held != 0.0 && held != freq) {
        refuse(QStringLiteral("%1 already runs at %2 MHz for another instance, and a reference "
                              "clock input has one frequency. Use %2 MHz, or another reference "
                              "clock.")
                   .arg(s.ref, number(held)));
        return false;
    }
    const QString otherPll = s.pll == QLatin1String("QPLL0")
                                 ? QStringLiteral("the lanes' own CPLLs")
                                 : QStringLiteral("QPLL0");
    QStringList seen;
    for (const QString &lane : s.lanes) {
        const QString pll = s.pllOf(lane);
        if (seen.contains(pll) || !model->checkPllEnable(pll))
            continue;
        seen << pll;
        const QMap<QString, QVariant> running = model->getMessageByPLL(pll);
        const QString ref = running.value(QStringLiteral("Reference_Clock_Source")).toString();
        if (ref != s.ref) {
            refuse(QStringLiteral("%1 already runs from %2 for another instance. Use %2, or %3.")
                       .arg(capitalised(pllWords(pll)), ref, otherPll));
            return false;
        }
        QVariant rate = running.value(QStringLiteral("RX_Line_Rate"));
        if (!rate.isValid())
            rate = running.value(QStringLiteral("TX_Line_Rate"));
        if (rate.isValid() && rate.toDouble() != s.rxRate.toDouble()) {
            refuse(QStringLiteral("%1 already runs at %2 Gbps for another instance. Use %2 Gbps, "
                                  "or %3.")
                       .arg(capitalised(pllWords(pll)), number(rate.toDouble()), otherPll));
            return false;
        }
    }
    return true;
}

bool BcdrDlg::proveRoutes(const Bcdr::Settings &s)
{
    IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    QStringList lines;
    QStringList plls;
    QStringList refs;
    QStringList freqs;
    for (const QString &lane : s.lanes) {
        lines << lane + QStringLiteral("_RX");
        plls << s.pllOf(lane);
        refs << s.refName();
        freqs << s.refFreq;
    }
    const bool routed = model->checkRouteForRxConnectPll(lines, plls, refs, freqs);

    // Give the dry run back. Free lines have no route, so a line with one now
    // was routed by it; the first line without one is where the search
    // stopped, after it had taken the line but no mux. That line is freed
    // alone, since resetting its PLL could release what another instance
    // holds.
    const QMap<QString, QStringList> routes = model->allAccess();
    int refused = -1;
    for (int i = 0; i < lines.size(); ++i) {
        if (!routes.contains(lines.at(i))) {
            refused = i;
            break;
        }
        model->resetLane(lines.at(i), false);
    }
    if (routed)
        return true;
    if (refused < 0)
        refused = 0;
    else if (IPSERDESIP::LANE *lane = model->FormStringToLanePtr(lines.at(refused)))
        lane->rx->reset();
    refuse(QStringLiteral("%1 cannot be clocked by %2 from %3: every clock path from that input "
                          "to the PLL is held by another instance for another reference clock. "
                          "Choose another reference clock or PLL.")
               .arg(samples::laneLabel(s.lanes.at(refused)), pllWords(plls.at(refused)), s.ref));
    return false;
}
