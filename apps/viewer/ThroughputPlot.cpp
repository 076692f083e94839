// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ThroughputPlot.h"

#include "chart/StackedChart.h"

#include <QEvent>

#include <algorithm>
#include <cmath>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_intervalcurve.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_picker.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_widget.h>
#include <qwt_symbol.h>
#include <qwt_text.h>
#include <set>

namespace viewer {

namespace {

/// Of the axis while there is no rate, in MB/s.
constexpr double emptyAxis = 100.0;
constexpr double axisHeadroom = 1.08;
constexpr int areaOpacity = 210;
constexpr double linkWidth = 1.5;
/// Of a triangle, in heights of a capital letter.
constexpr double markSize = 0.5;
/// Seconds between triangles of a camera: closer ones would hide its area.
constexpr double markDistance = 0.9;
/// Seconds before the first sample in which there is a tip.
constexpr double tipReach = 1.0;
/// Of a camera in the legend, in characters.
constexpr int longestName = 20;
/// Layers, from the back.
constexpr double areaLayer = 20.0;
constexpr double linkLayer = 30.0;
constexpr double lossLayer = 40.0;

QString rateText(double megabytesPerSecond) {
    return ThroughputPlot::tr("%L1 MB/s").arg(megabytesPerSecond, 0, 'f', 1);
}

QString secondsAgoText(double seconds) {
    return seconds < 0.5 ? ThroughputPlot::tr("now")
                         : ThroughputPlot::tr("%L1 s ago").arg(seconds, 0, 'f', 0);
}

/// Of the series at this place.
QString colorOf(std::size_t place) {
    return chart::seriesColor(static_cast<int>(place));
}

/// A square as rich text.
QString colorSign(std::size_t place) {
    return QStringLiteral("<font color=\"%1\">\u25a0</font>").arg(colorOf(place));
}

/// Times before now, which is at the right end.
class AgeAxis : public QwtScaleDraw {
public:
    QwtText label(double value) const override {
        return value == 0.0 ? QwtText(ThroughputPlot::tr("now"))
                            : QwtText(QStringLiteral("\u2212%1 s").arg(-value));
    }
};

/// Shows the plot's tip at the cursor.
class TipPicker : public QwtPlotPicker {
public:
    explicit TipPicker(ThroughputPlot& plot)
        : QwtPlotPicker(QwtPlot::xBottom, QwtPlot::yLeft, VLineRubberBand, AlwaysOn, plot.canvas()),
          m_plot(plot) {}

protected:
    QwtText trackerTextF(const QPointF& position) const override {
        QwtText text(m_plot.tip(-position.x()), QwtText::RichText);
        const QPalette& palette = m_plot.palette();
        text.setColor(palette.color(QPalette::ToolTipText));
        text.setBackgroundBrush(palette.color(QPalette::ToolTipBase));
        text.setBorderPen(palette.color(QPalette::Mid));
        text.setBorderRadius(3.0);
        text.setRenderFlags(Qt::AlignLeft);
        return text;
    }

private:
    const ThroughputPlot& m_plot;
};

} // namespace

ThroughputPlot::ThroughputPlot(QWidget* parent)
    : QwtPlot(parent), m_grid(std::make_unique<QwtPlotGrid>()),
      m_losses(std::make_unique<QwtPlotCurve>()) {
    setAutoDelete(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(tr("Throughput"));
    static_cast<QwtPlotCanvas*>(canvas())->setFrameStyle(QFrame::NoFrame);
    setAxisScaleDraw(xBottom, new AgeAxis);
    setAxisScale(xBottom, -ThroughputHistory::windowSeconds, 0.0, 10.0);
    setAxisScale(yLeft, 0.0, emptyAxis);
    for (const Axis axis : {xBottom, yLeft}) {
        setAxisFont(axis, font());
        setAxisMaxMinor(axis, 0);
        axisWidget(axis)->setMargin(0);
    }
    QwtText unit(QStringLiteral("MB/s"));
    unit.setFont(font());
    setAxisTitle(yLeft, unit);
    plotLayout()->setAlignCanvasToScales(true);

    m_grid->enableX(false);
    m_grid->attach(this);
    m_losses->setZ(lossLayer);
    m_losses->setStyle(QwtPlotCurve::NoCurve);
    new TipPicker(*this);
    useColors();
}

ThroughputPlot::~ThroughputPlot() = default;

QSize ThroughputPlot::sizeHint() const {
    return {60 * fontMetrics().averageCharWidth(), 11 * fontMetrics().height()};
}

QSize ThroughputPlot::minimumSizeHint() const {
    return {24 * fontMetrics().averageCharWidth(), 5 * fontMetrics().height()};
}

void ThroughputPlot::changeEvent(QEvent* event) {
    QwtPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        useColors();
}

void ThroughputPlot::useColors() {
    setCanvasBackground(palette().color(QPalette::Base));
    const QColor text = palette().color(QPalette::Text);
    QColor faint = text;
    faint.setAlphaF(0.15);
    m_grid->setPen(faint, 0.0, Qt::SolidLine);
    const auto size = static_cast<int>(fontMetrics().ascent() * markSize);
    // The colour of the text, with an edge of the ground: it differs from each area.
    m_losses->setSymbol(new QwtSymbol(QwtSymbol::DTriangle, text, palette().color(QPalette::Base),
                                      QSize(size, size)));
}

void ThroughputPlot::showHistory(const ThroughputHistory& history, std::vector<double> links) {
    m_seconds = history.seconds();
    m_series = history.series();
    m_links = std::move(links);
    for (double& second : m_seconds)
        second -= history.seconds().back();
    showAreas();
    showLinks();
    replot();
}

void ThroughputPlot::showAreas() {
    QVector<double> tops(static_cast<int>(m_seconds.size()), 0.0);
    QVector<QPointF> losses;
    m_areas.clear();
    for (std::size_t place = 0; place < m_series.size(); ++place) {
        const ThroughputHistory::Series& series = m_series[place];
        if (!series.isActive())
            continue;
        QVector<QwtIntervalSample> samples;
        double lastMark = -2.0 * ThroughputHistory::windowSeconds;
        for (std::size_t i = 0; i < m_seconds.size(); ++i) {
            double& top = tops[static_cast<int>(i)];
            const double below = top;
            top += series.megabytesPerSecond[i];
            samples.append(QwtIntervalSample(m_seconds[i], below, top));
            if (series.badFrames[i] > 0 && m_seconds[i] >= lastMark + markDistance) {
                lastMark = m_seconds[i];
                losses.append(QPointF(lastMark, top));
            }
        }
        auto area = std::make_unique<QwtPlotIntervalCurve>();
        QColor color(colorOf(place));
        color.setAlpha(areaOpacity);
        area->setBrush(color);
        area->setPen(QPen(Qt::NoPen));
        area->setZ(areaLayer);
        area->setRenderHint(QwtPlotItem::RenderAntialiased);
        area->setSamples(samples);
        area->attach(this);
        m_areas.push_back(std::move(area));
    }
    m_losses->setSamples(losses);
    m_losses->attach(losses.isEmpty() ? nullptr : this);
    scaleRates(tops.isEmpty() ? 0.0 : *std::max_element(tops.begin(), tops.end()));
}

void ThroughputPlot::showLinks() {
    m_linkLines.clear();
    for (std::size_t first = 0; first < m_links.size();) {
        std::size_t end = first + 1;
        while (end < m_links.size() && m_links[end] == m_links[first])
            ++end;
        if (const double speed = m_links[first]; speed > 0.0) {
            auto line = std::make_unique<QwtPlotCurve>();
            // A rate is that of the time before its sample.
            const std::size_t start = first == 0 ? 0 : first - 1;
            line->setSamples(
                {QPointF(m_seconds[start], speed), QPointF(m_seconds[end - 1], speed)});
            line->setPen(palette().color(QPalette::Text), linkWidth, Qt::DashLine);
            line->setZ(linkLayer);
            line->attach(this);
            m_linkLines.push_back(std::move(line));
        }
        first = end;
    }
}

void ThroughputPlot::scaleRates(double peak) {
    double most = peak > 0.0 ? peak : emptyAxis;
    for (const double link : m_links) {
        if (peak <= 0.0 || link <= chart::highestLink * peak)
            most = std::max(most, link);
    }
    setAxisScale(yLeft, 0.0, most * axisHeadroom);
}

QString ThroughputPlot::tip(double secondsAgo) const {
    if (m_seconds.empty() || -secondsAgo < m_seconds.front() - tipReach)
        return {};
    const auto distance = [secondsAgo](double time) {
        return std::abs(time + secondsAgo);
    };
    const auto nearest =
        std::min_element(m_seconds.begin(), m_seconds.end(), [&](double left, double right) {
            return distance(left) < distance(right);
        });
    const auto index = static_cast<std::size_t>(nearest - m_seconds.begin());
    QString lines = secondsAgoText(-*nearest);
    double sum = 0.0;
    // As in the plot, the last one is on top.
    for (std::size_t place = m_series.size(); place-- > 0;) {
        const ThroughputHistory::Series& series = m_series[place];
        const double rate = series.megabytesPerSecond[index];
        const std::uint64_t bad = series.badFrames[index];
        sum += rate;
        if (rate <= 0.0 && bad == 0)
            continue;
        lines += QStringLiteral("<br>%1 %2: %3")
                     .arg(colorSign(place), series.name.toHtmlEscaped(), rateText(rate));
        if (bad > 0)
            lines += QStringLiteral(", ") + tr("lost or incomplete: %L1").arg(bad);
    }
    return lines + QStringLiteral("<br>") + tr("Sum: %1").arg(rateText(sum));
}

QString ThroughputPlot::legend() const {
    QString rows;
    const auto addRow = [&rows](const QString& sign, const QString& name, const QString& rate) {
        rows += QStringLiteral("<tr><td>%1</td><td>&nbsp;%2</td><td align=\"right\">&nbsp;&nbsp;%3"
                               "</td></tr>")
                    .arg(sign, name, rate);
    };
    if (!m_links.empty() && m_links.back() > 0.0)
        addRow(QStringLiteral("- -"), tr("Link"), rateText(m_links.back()));
    // As in the plot, the last one is on top.
    for (std::size_t place = m_series.size(); place-- > 0;) {
        const ThroughputHistory::Series& series = m_series[place];
        if (!series.isActive())
            continue;
        const QString name = fontMetrics().elidedText(
            series.name, Qt::ElideMiddle, longestName * fontMetrics().averageCharWidth());
        addRow(colorSign(place), name.toHtmlEscaped(), rateText(series.megabytesPerSecond.back()));
    }
    if (m_losses->plot() != nullptr)
        addRow(QStringLiteral("\u25bc"), tr("Lost frames"), {});
    return QStringLiteral("<table cellspacing=\"0\">%1</table>").arg(rows);
}

chart::StackedChart ThroughputPlot::stackedChart() const {
    chart::StackedChart result;
    result.title = tr("Throughput of the last minute");
    result.seconds = m_seconds;
    for (std::size_t place = 0; place < m_series.size(); ++place) {
        const ThroughputHistory::Series& series = m_series[place];
        if (!series.isActive())
            continue;
        chart::Series rates;
        rates.name = series.name;
        rates.color = static_cast<int>(place);
        rates.megabytesPerSecond = series.megabytesPerSecond;
        for (std::size_t i = 0; i < m_seconds.size(); ++i) {
            if (series.badFrames[i] > 0)
                rates.lostAtSeconds.push_back(m_seconds[i]);
        }
        result.series.push_back(std::move(rates));
    }
    // The file has one line for all of its time.
    std::set<double> links(m_links.begin(), m_links.end());
    links.erase(0.0);
    if (links.size() == 1)
        result.linkMegabytesPerSecond = *links.begin();
    return result;
}

} // namespace viewer
