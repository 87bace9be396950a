// SPDX-License-Identifier: MIT
#include "clockpage.h"

#include "fields.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace samples {

namespace {

// A row of `grid`: the field's words, the field, both named after `name`.
QComboBox *addRow(QGridLayout *grid, Field field, const QString &name, bool editable)
{
    const int row = grid->rowCount();
    auto *label = new QLabel;
    label->setObjectName(QStringLiteral("label") + name);
    auto *combo = new QComboBox;
    combo->setObjectName(QStringLiteral("combo") + name);
    combo->setEditable(editable);
    grid->addWidget(label, row, 0);
    grid->addWidget(combo, row, 1);
    setUpField(field, combo, label);
    return combo;
}

QGroupBox *addGroup(QBoxLayout *layout, const QString &title, const QString &name,
                    QGridLayout **grid)
{
    auto *group = new QGroupBox(title);
    group->setObjectName(name);
    *grid = new QGridLayout(group);
    (*grid)->setColumnStretch(1, 1);
    // The problem line under each field keeps the rows apart.
    (*grid)->setVerticalSpacing(1);
    layout->addWidget(group);
    return group;
}

} // namespace

ClockPage::ClockPage(const QStringList &quads, Rates rates, QWidget *parent)
    : QWidget(parent)
{
    auto *page = new QHBoxLayout(this);

    auto *lanesGroup = new QGroupBox(tr("Lanes"));
    lanesGroup->setObjectName(QStringLiteral("groupLanes"));
    lanesGroup->setMaximumWidth(170);
    auto *lanesLayout = new QVBoxLayout(lanesGroup);
    lanesCaption = new QLabel;
    lanesCaption->setObjectName(QStringLiteral("labelLanes"));
    lanesCaption->setWordWrap(true);
    lanes = new QListWidget;
    lanes->setObjectName(QStringLiteral("listLanes"));
    setUpField(Field::Lanes, lanes);
    // A lane's name, its check box and a scroll bar beside it.
    lanes->setMinimumWidth(lanes->fontMetrics().horizontalAdvance(QStringLiteral("Q0 Lane0"))
                           + 3 * lanes->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    lanesLayout->addWidget(lanesCaption);
    lanesLayout->addWidget(lanes);
    page->addWidget(lanesGroup);

    m_right = new QVBoxLayout;
    page->addLayout(m_right, 1);
    const QStringList groups = quads.isEmpty() ? QStringList{QString()} : quads;
    // The quads' clocks side by side, so that the page of a two-quad device
    // is no taller than that of a one-quad device.
    auto *clockRow = new QHBoxLayout;
    m_right->addLayout(clockRow);
    for (const QString &quad : groups) {
        Clock clock;
        const QString title = quad.isEmpty() ? tr("Clock") : tr("Quad %1 clock").arg(quad.mid(1));
        clock.group
            = addGroup(clockRow, title,
                       QStringLiteral("group") + (quad.isEmpty() ? QStringLiteral("Clock") : quad),
                       &clock.grid);
        clock.pll = addRow(clock.grid, Field::Pll, QStringLiteral("Pll") + quad, false);
        clock.reference
            = addRow(clock.grid, Field::Reference, QStringLiteral("Reference") + quad, false);
        clock.refFreq = addRow(clock.grid, Field::RefFreq, QStringLiteral("RefFreq") + quad, true);
        clocks.insert(quad, clock);
    }
    QGridLayout *rateGrid = nullptr;
    addGroup(m_right, tr("Line rate"), QStringLiteral("groupRates"), &rateGrid);
    if (rates == Rates::TxAndRx)
        txRate = addRow(rateGrid, Field::TxRate, QStringLiteral("TxRate"), true);
    rxRate = addRow(rateGrid, Field::RxRate, QStringLiteral("RxRate"), true);

    // The fields of all groups stand in one column, each with its problem
    // line, whether it is checked or fixed.
    int labelWidth = 0;
    const QList<QLabel *> labels = findChildren<QLabel *>();
    for (const QLabel *label : labels)
        labelWidth = label->buddy() ? std::max(labelWidth, label->sizeHint().width()) : labelWidth;
    for (QLabel *label : labels) {
        if (QWidget *field = label->buddy()) {
            label->setMinimumWidth(labelWidth);
            addProblemLine(field);
        }
    }
    addProblemLine(lanes);

    note = new QLabel;
    note->setObjectName(QStringLiteral("labelClockNote"));
    note->setWordWrap(true);
    note->hide();
    m_right->addWidget(note);
    m_right->addStretch(1);
}

void ClockPage::fix(QComboBox *field, const QString &value, const QString &tip)
{
    field->setEditable(false);
    field->clear();
    field->addItem(value);
    field->setEnabled(false);
    field->setToolTip(tip);
}

void ClockPage::addBelow(QWidget *widget)
{
    // Above the free space that the page ends with.
    m_right->insertWidget(m_right->count() - 1, widget);
}

} // namespace samples
