// SPDX-License-Identifier: MIT
#include "utils/modulefigureview.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <QVector>
#include <QtMath>

#include <algorithm>

namespace Utils {

namespace {

// Lengths in pixels of the symbol's own coordinates.
const qreal kMargin = 12;
const qreal kPad = 8;  // between the box's edge and a pin's name
const qreal kGap = 20; // between the names of the two sides
const qreal kMark = 5; // half the height of a direction mark
const qreal kWire = 1.5;
const qreal kBus = 4.0;
const qreal kMinBoxWidth = 120;

QColor mix(const QColor &a, const QColor &b, qreal t)
{
    return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * t,
                            a.greenF() + (b.greenF() - a.greenF()) * t,
                            a.blueF() + (b.blueF() - a.blueF()) * t);
}

QString directionText(PinFigure::Direction direction)
{
    switch (direction) {
    case PinFigure::Input:
        return QCoreApplication::translate("Utils::ModuleFigureView", "input");
    case PinFigure::Output:
        return QCoreApplication::translate("Utils::ModuleFigureView", "output");
    case PinFigure::Inout:
        return QCoreApplication::translate("Utils::ModuleFigureView", "inout");
    }
    return QString();
}

} // namespace

struct ModuleFigureView::Layout
{
    QSizeF size;
    QRectF box;
    QRectF title;
    qreal stub = 0;
    QVector<QLineF> wires;  // per pin: outer end first, then the point on the box
    QVector<QRectF> labels; // per pin: the cell its name is drawn in
    QFont titleFont;
    QFont widthFont;
};

ModuleFigureView::ModuleFigureView(QWidget *parent)
    : QFrame(parent)
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

ModuleFigureView::~ModuleFigureView() = default;

void ModuleFigureView::setPins(const QList<PinFigure> &pins)
{
    m_pins = pins;
    updateGeometry();
    update();
}

void ModuleFigureView::setModuleName(const QString &name)
{
    if (name == m_moduleName)
        return;
    m_moduleName = name;
    updateGeometry();
    update();
}

ModuleFigureView::Layout ModuleFigureView::layout() const
{
    Layout l;
    l.titleFont = font();
    l.titleFont.setBold(true);
    l.titleFont.setPointSizeF(font().pointSizeF() * 1.15);
    l.widthFont = font();
    l.widthFont.setPointSizeF(font().pointSizeF() * 0.8);
    const QFontMetricsF fm(font());
    const QFontMetricsF tfm(l.titleFont);
    const QFontMetricsF wfm(l.widthFont);

    QList<int> left;
    QList<int> right;
    for (int i = 0; i < m_pins.size(); ++i) {
        if (m_pins.at(i).direction == PinFigure::Input)
            left << i;
    }
    // Outputs first, then bidirectional ports, each in the order given.
    for (PinFigure::Direction d : {PinFigure::Output, PinFigure::Inout}) {
        for (int i = 0; i < m_pins.size(); ++i) {
            if (m_pins.at(i).direction == d)
                right << i;
        }
    }
    const auto widest = [&](const QList<int> &side) {
        qreal w = 0;
        for (int i : side)
            w = qMax(w, fm.horizontalAdvance(m_pins.at(i).label()));
        return w;
    };
    const qreal leftWidth = widest(left);
    const qreal rightWidth = widest(right);

    const qreal pitch = qMax<qreal>(fm.height() * 1.6, 18);
    l.stub = qMax<qreal>(30, wfm.horizontalAdvance(QStringLiteral("888")) + 12);
    const qreal titleHeight = tfm.height() + 12;
    const qreal boxWidth = std::max(
        {kMinBoxWidth,
         2 * kPad + leftWidth + rightWidth + (left.isEmpty() || right.isEmpty() ? 0 : kGap),
         tfm.horizontalAdvance(m_moduleName) + 4 * kPad});
    const int rows = qMax(1, qMax(left.size(), right.size()));
    l.box = QRectF(kMargin + l.stub, kMargin, boxWidth, titleHeight + (rows + 0.4) * pitch);
    l.title = QRectF(l.box.left(), l.box.top(), boxWidth, titleHeight);
    l.size = QSizeF(l.box.right() + l.stub + kMargin, l.box.bottom() + kMargin);

    l.wires.resize(m_pins.size());
    l.labels.resize(m_pins.size());
    const qreal half = boxWidth / 2;
    for (int row = 0; row < left.size(); ++row) {
        const qreal y = l.title.bottom() + (row + 0.7) * pitch;
        l.wires[left.at(row)] = QLineF(l.box.left() - l.stub, y, l.box.left(), y);
        l.labels[left.at(row)] = QRectF(l.box.left() + kPad, y - pitch / 2, half, pitch);
    }
    for (int row = 0; row < right.size(); ++row) {
        const qreal y = l.title.bottom() + (row + 0.7) * pitch;
        l.wires[right.at(row)] = QLineF(l.box.right() + l.stub, y, l.box.right(), y);
        l.labels[right.at(row)] = QRectF(l.box.right() - kPad - half, y - pitch / 2, half, pitch);
    }
    return l;
}

QTransform ModuleFigureView::placement(const Layout &l) const
{
    const QRectF area = contentsRect();
    const qreal scale
        = qMin<qreal>(1.0, qMin(area.width() / l.size.width(), area.height() / l.size.height()));
    // Centred across, near the top: the symbol heads the column it stands in.
    const qreal dx = area.left() + (area.width() - l.size.width() * scale) / 2;
    const qreal dy = area.top() + qMin<qreal>(16, (area.height() - l.size.height() * scale) / 2);
    return QTransform(scale, 0, 0, scale, dx, dy);
}

QRectF ModuleFigureView::symbolRect() const
{
    const Layout l = layout();
    return placement(l).mapRect(l.box);
}

QLineF ModuleFigureView::pinLine(int index) const
{
    if (index < 0 || index >= m_pins.size())
        return QLineF();
    const Layout l = layout();
    return placement(l).map(l.wires.at(index));
}

QSize ModuleFigureView::sizeHint() const
{
    const QSizeF size = layout().size;
    const int frame = 2 * frameWidth();
    return QSize(qCeil(size.width()) + frame, qCeil(size.height()) + frame + 32);
}

QSize ModuleFigureView::minimumSizeHint() const
{
    return QSize(120, 90);
}

bool ModuleFigureView::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QFrame::event(event);

    auto *help = static_cast<QHelpEvent *>(event);
    const Layout l = layout();
    const QPointF at = placement(l).inverted().map(QPointF(help->pos()));
    for (int i = 0; i < m_pins.size(); ++i) {
        const QLineF wire = l.wires.at(i);
        const QRectF wireArea = QRectF(wire.p1(), wire.p2()).normalized().adjusted(0, -6, 0, 6);
        if (wireArea.contains(at) || l.labels.at(i).contains(at)) {
            const PinFigure &pin = m_pins.at(i);
            QString text = QStringLiteral("%1: %2").arg(pin.label(), directionText(pin.direction));
            if (pin.isBus())
                text += tr(", %1 bits").arg(pin.width);
            QToolTip::showText(help->globalPos(), text, this);
            return true;
        }
    }
    QToolTip::hideText();
    event->ignore();
    return true;
}

void ModuleFigureView::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);

    const Layout l = layout();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setClipRect(contentsRect());
    p.setTransform(placement(l));

    const QPalette &pal = palette();
    const QColor ink = pal.color(QPalette::Text);
    const QColor fill = mix(pal.color(QPalette::Base), pal.color(QPalette::Highlight), 0.12);

    p.setPen(QPen(ink, kWire));
    p.setBrush(fill);
    p.drawRect(l.box);
    p.setPen(QPen(mix(fill, ink, 0.35), 1));
    p.drawLine(QLineF(l.box.left(), l.title.bottom(), l.box.right(), l.title.bottom()));

    p.setPen(ink);
    p.setFont(l.titleFont);
    p.drawText(l.title, Qt::AlignCenter, m_moduleName);

    for (int i = 0; i < m_pins.size(); ++i) {
        const PinFigure &pin = m_pins.at(i);
        const QLineF wire = l.wires.at(i);
        const qreal y = wire.p2().y();
        // +1 on the right side, -1 on the left: which way is away from the box.
        const qreal out = wire.p1().x() > wire.p2().x() ? 1 : -1;
        const qreal edge = wire.p2().x();

        p.setPen(QPen(ink, pin.isBus() ? kBus : kWire, Qt::SolidLine, Qt::FlatCap));
        p.drawLine(wire);

        p.setPen(Qt::NoPen);
        p.setBrush(ink);
        QPainterPath mark;
        const qreal inner = edge + out;
        const qreal outer = edge + out * (2 * kMark + 1);
        if (pin.direction == PinFigure::Inout) {
            const qreal mid = (inner + outer) / 2;
            mark.moveTo(inner, y);
            mark.lineTo(mid, y - kMark);
            mark.lineTo(outer, y);
            mark.lineTo(mid, y + kMark);
        } else {
            // Inputs point into the box, outputs away from it.
            const qreal tip = pin.direction == PinFigure::Input ? inner : outer;
            const qreal base = pin.direction == PinFigure::Input ? outer : inner;
            mark.moveTo(base, y - kMark);
            mark.lineTo(tip, y);
            mark.lineTo(base, y + kMark);
        }
        mark.closeSubpath();
        p.drawPath(mark);

        if (pin.isBus()) {
            const qreal x = (wire.p1().x() + outer) / 2;
            p.setPen(QPen(ink, 1.2));
            p.drawLine(QLineF(x - 4, y + 6, x + 4, y - 6));
            p.setFont(l.widthFont);
            const QFontMetricsF wfm(l.widthFont);
            p.drawText(QRectF(x - l.stub / 2, y - 7 - wfm.height(), l.stub, wfm.height()),
                       Qt::AlignHCenter | Qt::AlignBottom, QString::number(pin.width));
        }

        p.setPen(ink);
        p.setFont(font());
        p.drawText(l.labels.at(i), Qt::AlignVCenter | (out < 0 ? Qt::AlignLeft : Qt::AlignRight),
                   pin.label());
    }
}

} // namespace Utils
