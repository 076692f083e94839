// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "viewer/ThroughputHistory.h"
#include "viewer/ThroughputPlot.h"

#include <QDockWidget>
#include <QElapsedTimer>
#include <QHash>

#include <functional>

class QAction;
class QLabel;

namespace viewer {

/// The throughput of the last minute as a plot with its legend, which can be saved. Bound to the
/// GUI thread.
class ThroughputDock : public QDockWidget {
    Q_OBJECT

public:
    /// MB/s of the interface of this name; nothing where it is not known.
    using LinkSpeed = std::function<std::optional<double>(const QString&)>;

    /// \p linkSpeed is asked whenever cameras begin to stream through another interface.
    explicit ThroughputDock(LinkSpeed linkSpeed, QWidget* parent = nullptr);

    /// Adds what was counted until now of the cameras that stream.
    void addSample(const std::vector<CountedCamera>& cameras);
    /// Writes the last minute as SVG, also while the dock is hidden. \return why the file cannot be
    /// written; empty when it was.
    QString save(const QString& file);
    /// Saves the last minute; for a menu.
    QAction& saveAction() { return *m_saveAction; }
    const ThroughputPlot& plot() const { return *m_plot; }

private:
    /// Asks for a file, and writes it.
    void saveAs();
    /// MB/s for each sample of the history; 0 where it is not known.
    std::vector<double> linkSpeeds();

    const LinkSpeed m_linkSpeed;
    QElapsedTimer m_clock;
    ThroughputHistory m_history;
    /// MB/s for each sample of the history.
    std::vector<double> m_links;
    /// By the name of the interface, and that of the last sample.
    QHash<QString, double> m_speeds;
    QString m_lastInterface;
    ThroughputPlot* m_plot;
    QLabel* m_legend;
    QAction* m_saveAction;
};

} // namespace viewer
