// SPDX-License-Identifier: MIT
//
// The reconfiguration form without the task generator: what it offers, which
// widgets each task's box governs, the second quad by device family, and the
// options each task sends.

#include "reconfig/reconfiguration.h"
#include "reconfigform.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

using namespace IPSERDESIP;

namespace {

const QStringList LANES = words("checkBoxq0ln0 checkBoxq0ln1 checkBoxq0ln2 checkBoxq0ln3 "
                                "checkBoxq1ln0 checkBoxq1ln1 checkBoxq1ln2 checkBoxq1ln3");
const QStringList TASK_BOXES
    = words("checkBoxTxDataRateEnable checkBoxRxDataRateEnable "
            "checkBoxLoopbackEnable checkBoxTXAFEEnable checkBoxRXAFEEnable");
const QStringList SECOND_QUAD
    = words("groupBox_4 labelTXQ1RefMux0Freq labelTXQ1RefMux1Freq labelRXQ1RefMux0Freq "
            "labelRXQ1RefMux1Freq doubleSpinBoxTXQ1RefMux0Freq doubleSpinBoxTXQ1RefMux1Freq "
            "doubleSpinBoxRXQ1RefMux0Freq doubleSpinBoxRXQ1RefMux1Freq");

void prepare(reconfiguration &dialog, const QString &family)
{
    DEV::DeviceArg device;
    device.id = family + "-TEST";
    device.family = family;
    dialog.setDevice(device);
    dialog.dialogDidPrepare();
}

template<typename T>
T *widget(const QWidget &dialog, const QString &name)
{
    T *found = dialog.findChild<T *>(name);
    if (!found)
        qFatal("no %s named %s", T::staticMetaObject.className(), qPrintable(name));
    return found;
}

// The form's inputs below the task boxes: spin boxes and combo boxes.
QStringList enabledInputs(const QWidget &dialog)
{
    QStringList names;
    for (QWidget *input : dialog.findChildren<QWidget *>()) {
        if ((qobject_cast<QAbstractSpinBox *>(input) || qobject_cast<QComboBox *>(input))
            && input->isEnabled())
            names << input->objectName();
    }
    names.sort();
    return names;
}

} // namespace

class tst_ReconfigDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void form();
    void enableRules_data();
    void enableRules();
    void disableAll();
    void secondQuad_data();
    void secondQuad();
    void options_data();
    void options();
};

void tst_ReconfigDialog::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_ReconfigDialog::form()
{
    reconfiguration dialog;
    prepare(dialog, "RK9C-880D");
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QString("Reconfiguration"));
    QCOMPARE(dialog.findChildren<QCheckBox *>().size(), 13);
    for (const QString &name : LANES + TASK_BOXES)
        QVERIFY2(!widget<QCheckBox>(dialog, name)->isChecked(), qPrintable(name));

    const QList<QDoubleSpinBox *> reals = dialog.findChildren<QDoubleSpinBox *>();
    QCOMPARE(reals.size(), 10);
    for (const QDoubleSpinBox *real : reals) {
        QCOMPARE(real->decimals(), 8);
        QCOMPARE(real->minimum(), 0.0);
        QCOMPARE(real->maximum(), 999999.0);
        QCOMPARE(real->text(), QString("0.00000000"));
    }
    const QMap<QString, int> maxima{{"spinBoxTXSwingLevel", 15}, {"spinBoxFFECM", 19},
                                    {"spinBoxFFEC1", 19},        {"spinBoxBIAS", 15},
                                    {"spinBoxATTBOOST", 2},      {"spinBoxATT", 15},
                                    {"spinBoxBoost", 15}};
    QCOMPARE(dialog.findChildren<QSpinBox *>().size(), maxima.size());
    for (auto it = maxima.cbegin(); it != maxima.cend(); ++it) {
        const QSpinBox *box = widget<QSpinBox>(dialog, it.key());
        QCOMPARE(box->minimum(), 0);
        QCOMPARE(box->maximum(), it.value());
        QCOMPARE(box->value(), 0);
    }

    const QMap<QString, QStringList> items{{"comboBoxTXPLL", {"CPLL", "QPLL0", "QPLL1"}},
                                           {"comboBoxTXRefClkMux", {"REFMUX0", "REFMUX1"}},
                                           {"comboBoxPMAWidth", {"8", "10", "16", "20"}},
                                           {"comboBoxRXRefclkMux", {"REFMUX0", "REFMUX1"}},
                                           {"comboBoxLoopBackMode", {"OFF", "LB_NES", "LB_ENC"}},
                                           {"comboBoxTXAFEMode", {"Auto", "Manual"}},
                                           {"comboBoxRXAFEEQMode", {"Auto", "Manual"}}};
    QCOMPARE(dialog.findChildren<QComboBox *>().size(), items.size());
    for (auto it = items.cbegin(); it != items.cend(); ++it) {
        const QComboBox *combo = widget<QComboBox>(dialog, it.key());
        QStringList texts;
        for (int i = 0; i < combo->count(); ++i)
            texts << combo->itemText(i);
        QCOMPARE(texts, it.value());
        QCOMPARE(combo->currentIndex(), 0);
    }

    // The receive front end stays hidden, whatever the device.
    QVERIFY(!widget<QGroupBox>(dialog, "groupBox_9")->isVisible());
    QVERIFY(widget<QGroupBox>(dialog, "groupBox_8")->isVisible());

    const QDialogButtonBox *buttons = widget<QDialogButtonBox>(dialog, "buttonBox");
    QCOMPARE(buttons->standardButtons(),
             QDialogButtonBox::StandardButtons(QDialogButtonBox::Cancel));
    QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void tst_ReconfigDialog::enableRules_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QStringList>("governed");
    const auto row = [](const char *name, const char *box, const char *governed) {
        QTest::newRow(name) << QString(box) << words(governed);
    };
    row("TX data rate", "checkBoxTxDataRateEnable",
        "doubleSpinBoxTXDataRate doubleSpinBoxTXQ0RefMux0Freq doubleSpinBoxTXQ0RefMux1Freq "
        "doubleSpinBoxTXQ1RefMux0Freq doubleSpinBoxTXQ1RefMux1Freq comboBoxPMAWidth comboBoxTXPLL "
        "comboBoxTXRefClkMux");
    row("RX data rate", "checkBoxRxDataRateEnable",
        "doubleSpinBoxRXDataRate doubleSpinBoxRXQ0RefMux0Freq doubleSpinBoxRXQ0RefMux1Freq "
        "doubleSpinBoxRXQ1RefMux0Freq doubleSpinBoxRXQ1RefMux1Freq comboBoxRXRefclkMux");
    row("loopback", "checkBoxLoopbackEnable", "comboBoxLoopBackMode");
    row("TX AFE", "checkBoxTXAFEEnable",
        "comboBoxTXAFEMode spinBoxFFECM spinBoxTXSwingLevel spinBoxFFEC1");
    row("RX AFE", "checkBoxRXAFEEnable",
        "spinBoxBIAS spinBoxATTBOOST spinBoxATT spinBoxBoost comboBoxRXAFEEQMode");
}

void tst_ReconfigDialog::enableRules()
{
    QFETCH(QString, box);
    QFETCH(QStringList, governed);
    governed.sort();

    reconfiguration dialog;
    dialog.show();
    QCOMPARE(enabledInputs(dialog), QStringList());

    QCheckBox *enable = widget<QCheckBox>(dialog, box);
    // Hidden for good, the receive front end's box is driven by the program.
    if (enable->isVisible())
        QTest::keyClick(enable, Qt::Key_Space);
    else
        enable->setChecked(true);
    QVERIFY(enable->isChecked());
    QCOMPARE(enabledInputs(dialog), governed);
    for (QLabel *label : dialog.findChildren<QLabel *>())
        QVERIFY2(label->isEnabled(), qPrintable(label->objectName()));

    enable->setChecked(false);
    QCOMPARE(enabledInputs(dialog), QStringList());
}

void tst_ReconfigDialog::disableAll()
{
    reconfiguration dialog;
    dialog.show();
    for (const QString &name : TASK_BOXES + QStringList{"checkBoxq0ln1", "checkBoxq1ln3"})
        widget<QCheckBox>(dialog, name)->setChecked(true);
    setInput(dialog, "doubleSpinBoxTXDataRate=6.25");
    setInput(dialog, "comboBoxLoopBackMode=LB_ENC");

    QTest::mouseClick(widget<QPushButton>(dialog, "pushButtonDisableAll"), Qt::LeftButton);

    for (const QString &name : TASK_BOXES)
        QVERIFY2(!widget<QCheckBox>(dialog, name)->isChecked(), qPrintable(name));
    QCOMPARE(enabledInputs(dialog), QStringList());
    QCOMPARE(dialog.getLaneOptions(), QStringList{"130"});
    QCOMPARE(widget<QDoubleSpinBox>(dialog, "doubleSpinBoxTXDataRate")->value(), 6.25);
    QCOMPARE(dialog.getLoopbackOptions().value(3), QString("LB_ENC"));
}

void tst_ReconfigDialog::secondQuad_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QStringList>("checked");
    QTest::addColumn<bool>("offered");
    QTest::addColumn<QString>("mask");
    const auto row = [](const char *name, const char *family, const QStringList &checked,
                        bool offered, const char *mask) {
        QTest::newRow(name) << QString(family) << checked << offered << QString(mask);
    };
    row("370D, all lanes", "RK9C-370D", LANES, false, "15");
    row("370Q, Q1 lanes only", "RK9C-370Q", {"checkBoxq1ln0", "checkBoxq1ln3"}, false, "0");
    row("880D, two lanes", "RK9C-880D", {"checkBoxq0ln1", "checkBoxq1ln2"}, true, "66");
    // The one-quad devices of the smallest tier keep the second quad's widgets.
    row("90F, all lanes", "RK9C-90F", LANES, true, "255");
    row("family of another series", "RK9-370D", LANES, true, "255");
    row("family in lower case", "rk9c-370d", LANES, true, "255");
    row("no device", "", {"checkBoxq1ln0"}, true, "16");
}

void tst_ReconfigDialog::secondQuad()
{
    QFETCH(QString, family);
    QFETCH(QStringList, checked);
    QFETCH(bool, offered);
    QFETCH(QString, mask);

    reconfiguration dialog;
    prepare(dialog, family);
    dialog.show();
    for (const QString &name : checked)
        widget<QCheckBox>(dialog, name)->setChecked(true);

    for (const QString &name : SECOND_QUAD)
        QCOMPARE(widget<QWidget>(dialog, name)->isVisible(), offered);
    QCOMPARE(dialog.getLaneOptions(), QStringList{mask});

    const QStringList allPairs{"--q0_refmux0_freq", "--q0_refmux1_freq", "--q1_refmux0_freq",
                               "--q1_refmux1_freq"};
    const QStringList pairs = offered ? allPairs : QStringList(allPairs.mid(0, 2));
    for (const QStringList &options :
         {dialog.getTxDataRateOptions(), dialog.getRxDataRateOptions()}) {
        QCOMPARE(options.filter("_freq"), pairs);
        for (const QString &flag : pairs)
            QCOMPARE(options.value(options.indexOf(flag) + 1), QString("0.00000000"));
    }

    // Prepared again for a device of the other kind, it follows.
    prepare(dialog, offered ? "RK9C-370D" : "RK9C-880E");
    for (const QString &name : SECOND_QUAD)
        QCOMPARE(widget<QWidget>(dialog, name)->isVisible(), !offered);
}

void tst_ReconfigDialog::options_data()
{
    QTest::addColumn<QString>("task");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QStringList>("expected");
    const auto row
        = [](const char *name, const char *task, const char *settings, const char *expected) {
              QTest::newRow(name) << QString(task) << words(settings) << words(expected);
          };
    row("TX rate, QPLL1 on REFMUX1", "tx",
        "doubleSpinBoxTXDataRate=10.3125 comboBoxTXPLL=QPLL1 comboBoxTXRefClkMux=REFMUX1 "
        "comboBoxPMAWidth=20 doubleSpinBoxTXQ0RefMux0Freq=156.25 doubleSpinBoxTXQ0RefMux1Freq=125 "
        "doubleSpinBoxTXQ1RefMux0Freq=100.123456789 doubleSpinBoxTXQ1RefMux1Freq=0",
        "--tx_data_rate 10.31250000 --pcs_tx_clk_src 2 --pll_ref_sel 1 "
        "--q0_refmux0_freq 156.25000000 --q0_refmux1_freq 125.00000000 "
        "--q1_refmux0_freq 100.12345679 --q1_refmux1_freq 0.00000000 --width_mode 20");
    row("TX rate, QPLL0", "tx", "comboBoxTXPLL=QPLL0 doubleSpinBoxTXDataRate=999999",
        "--tx_data_rate 999999.00000000 --pcs_tx_clk_src 1 --pll_ref_sel 0 "
        "--q0_refmux0_freq 0.00000000 --q0_refmux1_freq 0.00000000 "
        "--q1_refmux0_freq 0.00000000 --q1_refmux1_freq 0.00000000 --width_mode 8");
    row("RX rate, REFMUX1", "rx",
        "doubleSpinBoxRXDataRate=2.5 comboBoxRXRefclkMux=REFMUX1 "
        "doubleSpinBoxRXQ1RefMux1Freq=312.5 comboBoxPMAWidth=16",
        "--rx_data_rate 2.50000000 --cdr_calc_src 1 --q0_refmux0_freq 0.00000000 "
        "--q0_refmux1_freq 0.00000000 --q1_refmux0_freq 0.00000000 --q1_refmux1_freq 312.50000000");
    row("loopback off", "lb", "comboBoxLoopBackMode=OFF", "--lb_state OFF --lb_mode LB_NES");
    row("loopback far end", "lb", "comboBoxLoopBackMode=LB_ENC", "--lb_state ON --lb_mode LB_ENC");
    row("TX AFE, auto", "txafe", "spinBoxTXSwingLevel=15 spinBoxFFECM=4 spinBoxFFEC1=19",
        "--ffe_manual 0 --txlev 15 --ffe_cm 4 --ffe_c1 19");
    row("TX AFE, manual", "txafe", "comboBoxTXAFEMode=Manual spinBoxFFECM=7",
        "--ffe_manual 1 --txlev 0 --ffe_cm 7 --ffe_c1 0");
    row("RX AFE, manual", "rxafe",
        "spinBoxBIAS=3 spinBoxATTBOOST=2 comboBoxRXAFEEQMode=Manual spinBoxATT=11 spinBoxBoost=15",
        "--rx_eq_bias 3 --dr_rx_att_boost 2 --eq_manual 1 --dr_rx_att 11 --dr_rx_boost 15");
}

void tst_ReconfigDialog::options()
{
    QFETCH(QString, task);
    QFETCH(QStringList, settings);
    QFETCH(QStringList, expected);

    const QMap<QString, QStringList (reconfiguration::*)() const> builders{
        {"tx", &reconfiguration::getTxDataRateOptions},
        {"rx", &reconfiguration::getRxDataRateOptions},
        {"lb", &reconfiguration::getLoopbackOptions},
        {"txafe", &reconfiguration::getTxAFEOptions},
        {"rxafe", &reconfiguration::getRxAFEOptions}};

    reconfiguration dialog;
    prepare(dialog, "RK9C-880D");
    dialog.show();
    // Values are read whether or not their task is enabled.
    for (const QString &setting : settings)
        setInput(dialog, setting);
    QCOMPARE((dialog.*builders.value(task))(), expected);
}

QTEST_MAIN(tst_ReconfigDialog)
#include "tst_reconfigdialog.moc"
