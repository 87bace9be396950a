// SPDX-License-Identifier: MIT
#pragma once

// The page of the fields that every lane protocol's dialog has, laid out
// once so that the dialogs look and read alike: the free lanes on the left;
// on the right the clock of the lanes (PLL, reference clock, reference
// frequency), the line rates below it, and a note. A protocol fills the
// fields, adds its own widgets below them, and its own pages beside.

#include <QMap>
#include <QStringList>
#include <QWidget>

class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QListWidget;
class QVBoxLayout;

namespace samples {

class ClockPage : public QWidget
{
    Q_OBJECT

public:
    // The fields of one clock group.
    struct Clock
    {
        QGroupBox *group = nullptr;
        QGridLayout *grid = nullptr; // the rows above; a protocol may add more
        QComboBox *pll = nullptr;
        QComboBox *reference = nullptr;
        QComboBox *refFreq = nullptr;
    };
    // Which line rates the instance sets.
    enum class Rates { TxAndRx, RxOnly };

    // `quads`: a clock group for each quad that is clocked on its own ("Q0",
    // "Q1"), its widgets named after it ("comboPllQ0", "groupQ0"); none, one
    // group "Clock" for all lanes ("comboPll", "groupClock").
    ClockPage(const QStringList &quads, Rates rates, QWidget *parent = nullptr);

    // A field that the protocol fixes: it shows `value` alone and cannot be
    // changed; `tip` says why.
    static void fix(QComboBox *field, const QString &value, const QString &tip);

    // Puts `widget` below the fields, above the page's free space.
    void addBelow(QWidget *widget);

    QLabel *lanesCaption = nullptr; // what the list offers, above it
    QListWidget *lanes = nullptr;
    QMap<QString, Clock> clocks; // by quad, or "" for the one group
    QComboBox *txRate = nullptr; // none for a receiver
    QComboBox *rxRate = nullptr;
    QLabel *note = nullptr; // under the rates, hidden while empty

private:
    QVBoxLayout *m_right = nullptr;
};

} // namespace samples
