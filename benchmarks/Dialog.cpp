// SPDX-License-Identifier: BSD-3-Clause
// Measures the GUI thread's time in the main dialog: a refresh, a camera's bandwidth set by its
// slider, and, during a benchmark, the statistics step (every 500 ms) and a line of the log.
#include "benchmarks/support/BenchmarkMain.h"
#include "benchmarks/support/SilencedLog.h"
#include "benchmarks/support/SimulatedCameras.h"
#include "benchmarks/support/ThreadClock.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "logging/Log.h"
#include "ui/CameraListModel.h"
#include "ui/LogTable.h"
#include "ui/SettingsKeys.h"
#include "ui/SpanletDialog.h"

#include "OrvSimulation/Simulation.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QSettings>
#include <QSlider>
#include <QTemporaryDir>
#include <QThread>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

constexpr int cameraCount = 64;
constexpr double stepLimitMilliseconds = 2.0;
constexpr double refreshLimitMilliseconds = 1000.0;
/// A write, and the value read back.
constexpr std::uint64_t callsPerDrag = 2;
constexpr double rowGrowthLimit = 1.5;
constexpr int linesPerBurst = 50;

/// Runs the event loop for a while.
void settle(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(milliseconds)) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

/// The main dialog, shown, on cameras that have streamed for a moment.
class ShownDialog {
public:
    explicit ShownDialog(int count)
        : m_cameras(count), m_controller(makeSystemController(m_cameras.system())),
          m_dialog(m_cameras.system(), false, nullptr, m_controller) {
        m_dialog.resize(1200, 900);
        m_dialog.show();
        m_controller->startBenchmark(0, false);
        settle(500);
        m_controller->stopBenchmark(0);
        settle(100);
    }

    SimulatedCameras& cameras() { return m_cameras; }
    QPushButton& refreshButton() const {
        return *m_dialog.findChild<QPushButton*>(QStringLiteral("buttonRefresh"));
    }
    QList<QSlider*> sliders() const {
        return m_dialog.findChildren<QSlider*>(QStringLiteral("sliderBandwidth"));
    }
    CameraListModel& model() const { return *m_dialog.findChild<CameraListModel*>(); }
    LogTable& log() const { return *m_dialog.findChild<LogTable*>(QStringLiteral("tableLog")); }
    void showLog() {
        m_dialog.findChild<QToolButton*>(QStringLiteral("buttonShowLogging"))->setChecked(true);
        settle(500);
    }

private:
    SimulatedCameras m_cameras;
    std::shared_ptr<SystemController> m_controller;
    SpanletDialog m_dialog;
};

/// The whole refresh, up to the painted rows with their sliders.
void refresh(benchmark::State& state) {
    const SilencedLog silence;
    const ShownDialog dialog(static_cast<int>(state.range(0)));
    double best = std::numeric_limits<double>::max();
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        dialog.refreshButton().click();
        QCoreApplication::processEvents();
        best = std::min(best, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    state.counters["rows"] = dialog.sliders().size();
    state.counters["best_ms"] = best;
    judge(state, "1 s", best <= refreshLimitMilliseconds);
    if (dialog.sliders().size() != state.range(0))
        state.SkipWithError("the tree does not show every camera");
}

/// Drags over the whole range, and ends at another value in each iteration.
void sliderDrag(benchmark::State& state) {
    const SilencedLog silence;
    ShownDialog dialog(1);
    OrvCPP::ISimulation& simulation = dialog.cameras().simulation();
    QSlider& slider = *dialog.sliders().first();
    int target = slider.minimum() + 1;
    std::uint64_t whileDragging = 0;
    std::uint64_t calls = 0;
    for (auto _ : state) {
        simulation.ResetCalls();
        slider.setSliderDown(true);
        for (int value = slider.minimum(); value <= slider.maximum(); ++value)
            slider.setSliderPosition(value);
        slider.setSliderPosition(target);
        whileDragging = std::max(whileDragging, simulation.GetCallCount());
        slider.setSliderDown(false);
        calls = std::max(calls, simulation.GetCallCount());
        target = target == slider.maximum() ? slider.minimum() : target + 1;
    }
    state.counters["calls_while_dragging"] = static_cast<double>(whileDragging);
    state.counters["calls_per_drag"] = static_cast<double>(calls);
    judge(state, "0 calls while dragging, 2 per drag", whileDragging == 0 && calls == callsPerDrag);
}

void statisticsStep(benchmark::State& state) {
    const SilencedLog silence;
    const ShownDialog dialog(cameraCount);
    double best = std::numeric_limits<double>::max();
    for (auto _ : state) {
        best = std::min(best, nanosecondsOf([&dialog] { dialog.model().updateItemData(); }) / 1e6);
    }
    state.counters["rows"] = dialog.model().cameraCount();
    state.counters["best_ms"] = best;
    judge(state, "2 ms, of a step every 500 ms", best <= stepLimitMilliseconds);
    if (dialog.model().cameraCount() != cameraCount)
        state.SkipWithError("the tree does not show every camera");
}

/// The step and the events that follow from it, mainly painting the visible rows.
void statisticsStepAndPainting(benchmark::State& state) {
    const SilencedLog silence;
    const ShownDialog dialog(cameraCount);
    for (auto _ : state) {
        dialog.model().updateItemData();
        QCoreApplication::processEvents();
    }
    state.SetLabel("for information: painting included");
}

/// Best cost in microseconds of one row, inserted into a log of this many rows.
double rowMicroseconds(const LogTable& log, int rows) {
    const auto burst = [] {
        for (int i = 0; i < linesPerBurst; ++i)
            logInfo("Camera 1: Lost frames: 0, Incomplete frames: 0");
        QCoreApplication::processEvents();
    };
    while (log.rowCount() < rows)
        burst();
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < 10; ++i)
        best = std::min(best, nanosecondsOf(burst) / 1e3 / linesPerBurst);
    return best;
}

void logRowAt10000Beside1000(benchmark::State& state) {
    const SilencedLog silence;
    ShownDialog dialog(1);
    dialog.showLog();
    double few = 0.0;
    double many = 0.0;
    for (auto _ : state) {
        few = rowMicroseconds(dialog.log(), 1'000);
        many = rowMicroseconds(dialog.log(), 10'000);
    }
    state.counters["us_at_1000"] = few;
    state.counters["us_at_10000"] = many;
    state.counters["growth"] = many / few;
    state.counters["visible_height"] = dialog.log().height();
    judge(state, "growth 1.5", many <= rowGrowthLimit * few);
    if (!dialog.log().isVisible() || dialog.log().height() < 100)
        state.SkipWithError("the log is not shown");
}

BENCHMARK(refresh)->Arg(16)->Arg(64)->Unit(benchmark::kMillisecond);
BENCHMARK(sliderDrag)->Unit(benchmark::kMicrosecond);
BENCHMARK(statisticsStep)->Unit(benchmark::kMillisecond);
BENCHMARK(statisticsStepAndPainting)->Unit(benchmark::kMillisecond);
BENCHMARK(logRowAt10000Beside1000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    // Offscreen by default, so that results do not depend on the display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Q_INIT_RESOURCE(resources);
    const QApplication application(argc, argv);
    // Default margins, and no help window at start.
    const QTemporaryDir store;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, store.path());
    QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"))
        .setValue(SettingsKeys::supportDialogActive.key, false);
    return runBenchmarks(argc, argv);
}
