// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ThroughputDock.h"

#include "chart/StackedChart.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QSaveFile>
#include <QScrollArea>
#include <QStandardPaths>

#include <utility>

namespace viewer {

namespace {

/// Widths of the legend, in characters.
constexpr int leastLegend = 18;
constexpr int usualLegend = 38;
constexpr int plotShare = 2;

} // namespace

ThroughputDock::ThroughputDock(LinkSpeed linkSpeed, QWidget* parent)
    : QDockWidget(tr("Throughput"), parent), m_linkSpeed(std::move(linkSpeed)),
      m_plot(new ThroughputPlot), m_legend(new QLabel),
      m_saveAction(new QAction(tr("&Save Throughput as SVG..."), this)) {
    setObjectName(QStringLiteral("dockThroughput"));
    m_clock.start();
    m_legend->setObjectName(QStringLiteral("labelThroughput"));
    m_legend->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* legend = new QScrollArea;
    legend->setWidget(m_legend);
    legend->setWidgetResizable(true);
    legend->setFrameShape(QFrame::NoFrame);
    legend->setMinimumWidth(leastLegend * fontMetrics().averageCharWidth());
    legend->setMaximumWidth(usualLegend * fontMetrics().averageCharWidth());
    connect(m_saveAction, &QAction::triggered, this, &ThroughputDock::saveAs);
    m_plot->addAction(m_saveAction);
    m_plot->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* contents = new QWidget;
    auto* layout = new QHBoxLayout(contents);
    layout->addWidget(m_plot, plotShare);
    layout->addWidget(legend, 1);
    setWidget(contents);
}

void ThroughputDock::addSample(const std::vector<CountedCamera>& cameras) {
    m_history.add(static_cast<double>(m_clock.nsecsElapsed()) / 1e9, cameras);
    m_links = linkSpeeds();
    if (!isVisible())
        return;
    m_plot->showHistory(m_history, m_links);
    m_legend->setText(m_plot->legend());
}

std::vector<double> ThroughputDock::linkSpeeds() {
    const std::vector<QString> names = m_history.interfaceNames();
    if (names.back() != m_lastInterface) {
        m_lastInterface = names.back();
        if (!m_lastInterface.isEmpty())
            m_speeds[m_lastInterface] = m_linkSpeed(m_lastInterface).value_or(0.0);
    }
    std::vector<double> speeds;
    for (const QString& name : names)
        speeds.push_back(m_speeds.value(name, 0.0));
    return speeds;
}

QString ThroughputDock::save(const QString& file) {
    // A hidden dock has an old minute.
    m_plot->showHistory(m_history, m_links);
    QSaveFile target(file);
    const QByteArray svg = chart::toSvg(m_plot->stackedChart());
    if (target.open(QIODevice::WriteOnly) && target.write(svg) == svg.size() && target.commit())
        return {};
    return tr("%1 cannot be written: %2").arg(QDir::toNativeSeparators(file), target.errorString());
}

void ThroughputDock::saveAs() {
    const QDir pictures(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    const QString file =
        QFileDialog::getSaveFileName(this, tr("Save the Throughput"),
                                     pictures.filePath(tr("throughput") + QStringLiteral(".svg")),
                                     tr("Vector graphics (*.svg)"));
    const QString error = file.isEmpty() ? QString() : save(file);
    if (!error.isEmpty())
        QMessageBox::warning(this, tr("Throughput"), error);
}

} // namespace viewer
