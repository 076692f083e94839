// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "viewer/CommandLine.h"
#include "viewer/Watchdog.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVector>

class QWidget;

namespace viewer {

/// Operates Spanlet's dialog in place of a user, in the event loop that the dialog runs. Waits for
/// the dialog, closes the help that opens over it (and leaves it switched on), performs the tasks
/// of the command line (Auto Set and a benchmark of each interface, pictures), and closes the
/// dialog. Finds the widgets by their object names. Bound to the GUI thread.
class DialogDriver : public QObject {
    Q_OBJECT

public:
    /// Starts at once, and works as soon as the dialog is shown.
    explicit DialogDriver(CommandLine tasks, QObject* parent = nullptr);

    /// The first columns of the statistics, the interface and the camera; figures follow.
    static constexpr int nameColumns = 2;
    /// The headings and a row per camera that took part; empty when no benchmark was run.
    const QVector<QStringList>& statistics() const;
    /// What failed or was not done; empty when everything was done.
    QStringList failures() const;

private:
    using Step = void (DialogDriver::*)();
    void then(Step step, int milliseconds);

    // The steps, in this order; each names the one that follows.
    void findDialog();
    void closeHelp();
    void autoSet();
    void openFeatures();
    void takeFeaturePicture();
    void startBenchmark();
    void awaitBenchmark();
    void showLog();
    void takePicture();
    void close();

    void savePicture(QWidget& window, const QString& file);
    void collectStatistics(const QString& interfaceName);

    const CommandLine m_tasks;
    Watchdog m_watchdog;
    QPointer<QWidget> m_dialog;
    int m_nextInterface = 0;
    QElapsedTimer m_sinceStart;
    QVector<QStringList> m_statistics;
    QStringList m_failures;
    bool m_isDone = false;
};

} // namespace viewer
