// SPDX-License-Identifier: MIT
#include "sampledlg.h"

#include <model/serdes.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QSet>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>

namespace samples {

SampleDlg::SampleDlg(QWidget *parent)
    : protocolGenDlg(parent)
{
    // The sample protocols write their modules in Verilog only; a choice of
    // VHDL here would be one the files do not follow.
    if (auto *language = findChild<QComboBox *>(QStringLiteral("comboBoxLanguage"))) {
        language->setCurrentIndex(0);
        language->setEnabled(false);
    }
    // An instance's directory is named after its file, as on reopening.
    fileNameConnectCreatIn();
    const QList<QPair<const char *, QString>> tips{
        {"editFileName", tr("Name of the instance's files, and of the folder they are written to "
                            "inside the core's folder.")},
        {"editModuleName", tr("Name of the instance's Verilog module, and of the instance in the "
                              "configuration.")},
        {"editCreateIn", tr("The folder the instance's files are written to; it follows the file "
                            "name.")},
        {"comboBoxLanguage", tr("The sample protocols write their modules in Verilog.")},
        {"synToolComboBox", tr("The synthesis tool the generated files are meant for.")}};
    for (const auto &tip : tips) {
        if (auto *field = findChild<QWidget *>(QLatin1String(tip.first)))
            field->setToolTip(tip.second);
    }
    // The frame keeps room for pages of a fixed width; the sample pages say
    // by their layouts how much they need, as the clocks of two quads side by
    // side do.
    if (auto *general = findChild<QWidget *>(QStringLiteral("general")))
        general->setMinimumWidth(0);
    watchField(QStringLiteral("file"), findChild<QLineEdit *>(QStringLiteral("editFileName")));
    watchField(QStringLiteral("module"), findChild<QLineEdit *>(QStringLiteral("editModuleName")));
}

SampleDlg::~SampleDlg() = default;

QString SampleDlg::deviceId() const
{
    return m_device.id;
}

QMap<QString, QVariant> SampleDlg::runCreating(const QString &baseName, const QString &createPath,
                                               const DEV::DeviceArg &device)
{
    uiSetDefaultFileName(baseName);
    uiSetModuleName(baseName);
    setCreating(createPath, device);
    startChecking();
    if (exec() != QDialog::Accepted)
        return {};
    return args();
}

QMap<QString, QVariant> SampleDlg::runOpening(const QMap<QString, QVariant> &stored)
{
    if (!setOpening(stored))
        return {};
    startChecking();
    if (exec() != QDialog::Accepted)
        return {};
    return args();
}

void SampleDlg::startChecking()
{
    // A field is never narrower than its longest entry, whatever the room.
    for (const auto &field : qAsConst(m_fields)) {
        auto *combo = qobject_cast<QComboBox *>(field.second);
        if (!combo)
            continue;
        int text = 0;
        for (int i = 0; i < combo->count(); ++i)
            text = std::max(text, combo->fontMetrics().horizontalAdvance(combo->itemText(i)));
        // The text, the arrow beside it and the frame's padding.
        combo->setMinimumWidth(text + combo->style()->pixelMetric(QStyle::PM_ScrollBarExtent)
                               + 4 * combo->style()->pixelMetric(QStyle::PM_ComboBoxFrameWidth)
                               + 16);
    }
    m_checking = true;
    recheck();
}

QList<Problem> SampleDlg::nameProblems() const
{
    // An instance being edited is out of the model while its dialog runs, so
    // its own names are free here.
    const IPSERDESIP::serdes *model = IPSERDESIP::serdes::instance();
    QList<Problem> found;
    const QString module = moduleName();
    const QString file = fileName();
    if (module.isEmpty())
        found.append({QStringLiteral("module"), tr("Type a module name.")});
    else if (model->moduleNames.contains(module))
        found.append(
            {QStringLiteral("module"), tr("Another instance is named \"%1\".").arg(module)});
    if (file.isEmpty())
        found.append({QStringLiteral("file"), tr("Type a file name.")});
    else if (model->fileNames.contains(file))
        found.append(
            {QStringLiteral("file"), tr("Another instance writes the file \"%1\".").arg(file)});
    return found;
}

void SampleDlg::watchField(const QString &key, QWidget *field)
{
    if (!field)
        return;
    m_fields.append({key, field});
    addProblemLine(field);
    if (auto *combo = qobject_cast<QComboBox *>(field))
        connect(combo, &QComboBox::currentTextChanged, this, &SampleDlg::recheck);
    else if (auto *list = qobject_cast<QListWidget *>(field))
        connect(list, &QListWidget::itemChanged, this, &SampleDlg::recheck);
    else if (auto *edit = qobject_cast<QLineEdit *>(field))
        connect(edit, &QLineEdit::textChanged, this, &SampleDlg::recheck);
    else if (auto *button = qobject_cast<QAbstractButton *>(field))
        connect(button, &QAbstractButton::toggled, this, &SampleDlg::recheck);
}

void SampleDlg::recheck()
{
    if (!m_checking)
        return;
    QMap<QString, QString> shown;
    QStringList keys;
    for (const auto &field : qAsConst(m_fields))
        keys << field.first;
    const auto add = [&shown, &keys](const Problem &problem) {
        const QString key = keys.contains(problem.key) ? problem.key : QStringLiteral("lanes");
        if (!shown.contains(key))
            shown.insert(key, problem.text);
    };
    for (const auto &field : qAsConst(m_fields)) {
        if (!isNumberField(field.second))
            continue;
        const auto *combo = qobject_cast<const QComboBox *>(field.second);
        const auto *edit = qobject_cast<const QLineEdit *>(field.second);
        const QString text = combo ? combo->currentText() : edit ? edit->text() : QString();
        bool number = false;
        text.toDouble(&number);
        if (text.trimmed().isEmpty())
            add({field.first, tr("Type a number.")});
        else if (!number)
            add({field.first, tr("\"%1\" is no number.").arg(text)});
    }
    for (const Problem &problem : nameProblems())
        add(problem);
    for (const Problem &problem : fieldProblems())
        add(problem);

    // A problem on a page the user does not see is told by the page's tab.
    auto *tabs = findChild<QTabWidget *>(QStringLiteral("tabOptions"));
    QSet<int> troubled;
    for (const auto &field : qAsConst(m_fields)) {
        const QString text = shown.value(field.first);
        showProblem(field.second, text);
        for (int i = 0; tabs && !text.isEmpty() && i < tabs->count(); ++i) {
            if (tabs->widget(i)->isAncestorOf(field.second))
                troubled.insert(i);
        }
    }
    for (int i = 0; tabs && i < tabs->count(); ++i) {
        tabs->tabBar()->setTabTextColor(i, troubled.contains(i) ? QColor(0xc0, 0, 0) : QColor());
    }
    // A frame without options to offer keeps OK off whatever the fields say.
    uiSetButtonOKEnabled(shown.isEmpty() && (!tabs || tabs->isEnabled()));
}

void SampleDlg::accept()
{
    const QStringList empty = checkFileOptions();
    if (!empty.isEmpty()) {
        showErrorMsg(empty);
        return;
    }
    if (!confirm() || !checkFileExisting())
        return;
    QDialog::accept();
}

} // namespace samples
