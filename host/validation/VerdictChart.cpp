// Paints the bars of the verdicts.
#include "host/validation/VerdictChart.h"

#include <QLocale>
#include <QPainter>
#include <QStringList>
#include <algorithm>

#include "address/VerdictTexts.h"
#include "host/AttentionColour.h"
#include "host/GroupedNumber.h"

namespace host {
namespace {

constexpr int gap = 10;      // between title, bar and count
constexpr int rowMargin = 4; // above and below a row's letters
constexpr int shortestBar = 120;
constexpr double roundness = 3;

} // namespace

VerdictChart::VerdictChart(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("GVeredictos"));
    setAccessibleName(tr("Filas por veredicto"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void VerdictChart::setTotals(const ambrel::AddressFileTotals& totals) {
    bars_.clear();
    QStringList read;
    const QLocale locale;
    for (std::size_t i = ambrel::verdictCount; i-- > 0;) {
        const auto verdict = static_cast<ambrel::Verdict>(i);
        const std::uint64_t count = totals.of(verdict);
        if (count == 0) {
            continue;
        }
        const double share = static_cast<double>(count) / static_cast<double>(totals.rows);
        const std::string_view title = ambrel::verdictTitle(verdict);
        Bar bar{QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())),
                tr("%1 (%2 %)").arg(groupedNumber(count), locale.toString(100 * share, 'f', 1)), share,
                ambrel::isSettled(verdict)};
        read << bar.title + QLatin1Char(' ') + bar.count;
        bars_.push_back(std::move(bar));
    }
    setAccessibleDescription(read.join(QStringLiteral("; ")));
    updateGeometry();
    update();
}

int VerdictChart::lineHeight() const { return fontMetrics().height() + 2 * rowMargin; }

int VerdictChart::widest(QString Bar::*text) const {
    int width = 0;
    for (const Bar& bar : bars_) {
        width = std::max(width, fontMetrics().horizontalAdvance(bar.*text));
    }
    return width;
}

QSize VerdictChart::sizeHint() const {
    const QSize least = minimumSizeHint();
    return {least.width() + shortestBar, least.height()};
}

QSize VerdictChart::minimumSizeHint() const {
    return {widest(&Bar::title) + widest(&Bar::count) + shortestBar + 2 * gap,
            static_cast<int>(bars_.size()) * lineHeight()};
}

void VerdictChart::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int titles = widest(&Bar::title), counts = widest(&Bar::count);
    const double room = width() - titles - counts - 2.0 * gap;
    double largest = 0;
    for (const Bar& bar : bars_) {
        largest = std::max(largest, bar.share);
    }
    int top = 0;
    for (const Bar& bar : bars_) {
        const QRect line(0, top, width(), lineHeight());
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(line.adjusted(0, 0, titles - width(), 0), Qt::AlignLeft | Qt::AlignVCenter,
                         bar.title);
        const double length = std::max(2.0, room * bar.share / largest);
        painter.setPen(Qt::NoPen);
        painter.setBrush(bar.isSettled ? palette().color(QPalette::Highlight) : attentionColour(palette()));
        const QRectF shape(titles + gap, top + rowMargin, length, lineHeight() - 2 * rowMargin);
        painter.drawRoundedRect(shape, roundness, roundness);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QRectF(shape.right() + gap, top, counts, lineHeight()),
                         Qt::AlignLeft | Qt::AlignVCenter, bar.count);
        top += lineHeight();
    }
}

} // namespace host
