// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"
#include "utils/pinfigure.h"

#include <QFrame>
#include <QLineF>
#include <QList>
#include <QRectF>

namespace Utils {

// Draws a module as a schematic symbol: a box headed by the module's name,
// inputs entering on the left, outputs and bidirectional ports leaving on the
// right, buses drawn thicker with a slash and their width. The symbol is
// centred, and scaled down when the widget is smaller than the symbol.
class HOSTPLATFORM_EXPORT ModuleFigureView : public QFrame
{
    Q_OBJECT

public:
    explicit ModuleFigureView(QWidget *parent = nullptr);
    ~ModuleFigureView() override;

    void setPins(const QList<PinFigure> &pins);
    QList<PinFigure> pins() const { return m_pins; }

    void setModuleName(const QString &name);
    QString moduleName() const { return m_moduleName; }

    // Where the symbol stands in the widget: the box, and the wire of each
    // pin from its outer end to the box. An index out of range gives a null
    // line.
    QRectF symbolRect() const;
    QLineF pinLine(int index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Layout;
    Layout layout() const;
    // Maps the symbol's own coordinates into the widget's.
    QTransform placement(const Layout &layout) const;

    QList<PinFigure> m_pins;
    QString m_moduleName;
};

} // namespace Utils
