// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "viewer/ThroughputHistory.h"

#include <QString>

#include <memory>
#include <qwt_plot.h>
#include <vector>

class QwtPlotCurve;
class QwtPlotGrid;
class QwtPlotIntervalCurve;

namespace chart {
struct StackedChart;
}

namespace viewer {

/// The rates of the last minute as areas, one above the other, with the speed of the link as a line
/// and a triangle where frames were lost. A tip at the cursor has the numbers. Bound to the GUI
/// thread.
class ThroughputPlot : public QwtPlot {
    Q_OBJECT

public:
    explicit ThroughputPlot(QWidget* parent = nullptr);
    ~ThroughputPlot() override;

    /// Shows a copy of \p history. \p links has the speed of the link in MB/s at each of its
    /// samples; 0 draws no line.
    void showHistory(const ThroughputHistory& history, std::vector<double> links);
    /// What was measured nearest to a time, as rich text. \p secondsAgo is positive. Empty before
    /// the first sample.
    QString tip(double secondsAgo) const;
    /// Colours, names and the latest rates, as rich text. Long names are shortened.
    QString legend() const;
    /// What is shown, for a file.
    chart::StackedChart stackedChart() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void useColors();
    void showAreas();
    /// Draws a line for each time in which the link stayed the same.
    void showLinks();
    void scaleRates(double peak);

    std::vector<double> m_seconds;
    std::vector<ThroughputHistory::Series> m_series;
    std::vector<double> m_links;
    std::vector<std::unique_ptr<QwtPlotIntervalCurve>> m_areas;
    std::unique_ptr<QwtPlotGrid> m_grid;
    std::vector<std::unique_ptr<QwtPlotCurve>> m_linkLines;
    std::unique_ptr<QwtPlotCurve> m_losses;
};

} // namespace viewer
