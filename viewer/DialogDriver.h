// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "viewer/Watchdog.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVector>

class QWidget;

namespace viewer {

/// Operates Spanlet's dialog in place of a user, from inside the event loop that the dialog runs:
/// waits for it, closes the help that opens over it by itself (without switching it off for the
/// user), runs a benchmark on each interface, takes a picture, closes it. It finds what it
/// needs by the names of the dialog's widgets. Bound to the GUI thread.
class DialogDriver : public QObject {
    Q_OBJECT

public:
    /// \p benchmarkSeconds 0 runs none, an empty \p pictureFile takes none. Starts at once, and
    /// works as soon as the dialog is shown.
    DialogDriver(int benchmarkSeconds, QString pictureFile, QObject* parent = nullptr);

    /// A heading and a row per camera that took part; empty when no benchmark was run.
    const QVector<QStringList>& statistics() const;
    /// What went wrong, or was left undone; empty when everything was done.
    QStringList failures() const;

private:
    using Step = void (DialogDriver::*)();
    void then(Step step, int milliseconds);

    // The steps, in this order; each names the one that follows.
    void findDialog();
    void closeHelp();
    void startBenchmark();
    void awaitBenchmark();
    void showLog();
    void takePicture();
    void close();

    void collectStatistics(const QString& interfaceName);

    const int m_benchmarkSeconds;
    const QString m_pictureFile;
    Watchdog m_watchdog;
    QPointer<QWidget> m_dialog;
    int m_nextInterface = 0;
    QElapsedTimer m_sinceStart;
    QVector<QStringList> m_statistics;
    QStringList m_failures;
    bool m_isDone = false;
};

} // namespace viewer
