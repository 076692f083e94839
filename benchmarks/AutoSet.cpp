// SPDX-License-Identifier: BSD-3-Clause
// Measures Auto Set: calls into the camera SDK, and time. The simulated cameras answer at once, or
// take a millisecond for each call, as real ones do.
#include "benchmarks/support/BenchmarkMain.h"
#include "benchmarks/support/SilencedLog.h"
#include "benchmarks/support/SimulatedCameras.h"
#include "benchmarks/support/ThreadClock.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "tests/support/CapturedLog.h"

#include "OrvSimulation/Simulation.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <string>

namespace {

constexpr double cameraMargin = 0.05;
/// More than any camera can send, so the search is skipped.
constexpr double enormousMargin = 1e6;
constexpr double interfaceMargin = 0.1;
constexpr double growthLimit = 4.5;
constexpr int turns = 100;

/// Simulated cameras of one interface, found and opened.
class OpenedCameras {
public:
    explicit OpenedCameras(int count, int callDelayMicroseconds = 0)
        : m_cameras(count, callDelayMicroseconds),
          m_controller(makeSystemController(m_cameras.system())),
          m_handlers(m_controller->enumerate().at(0)) {}

    CameraHandler& first() const { return *m_handlers.front(); }

    void autoSetInterface() const {
        const std::string id = first().getCameraInfo().interfaceName;
        m_controller->autoSetInterface(id, 0, false, interfaceMargin, cameraMargin);
    }

    std::ptrdiff_t satisfied() const {
        return std::count_if(m_handlers.begin(), m_handlers.end(), [](const auto& camera) {
            return camera->getAutosetStatus() == AutosetStatus::RequestedReached;
        });
    }

    /// Calls into the SDK that a step makes.
    template <class Step> double callsOf(Step step) const {
        m_cameras.simulation().ResetCalls();
        step();
        return static_cast<double>(m_cameras.simulation().GetCallCount());
    }

private:
    SimulatedCameras m_cameras;
    std::shared_ptr<SystemController> m_controller;
    CameraList m_handlers;
};

/// Steps of the search, read from the log; 0 when it was skipped.
int searchSteps(CameraHandler& camera) {
    const std::string start = "Debug:Autoset completed in ";
    const CapturedLog log;
    camera.autoSet(cameraMargin);
    for (const std::string& line : log.lines()) {
        if (line.rfind(start, 0) == 0)
            return std::stoi(line.substr(start.size()));
    }
    return 0;
}

void cameraAutoSet(benchmark::State& state) {
    const SilencedLog silence;
    const OpenedCameras cameras(1, static_cast<int>(state.range(0)));
    const auto callsWith = [&cameras](double margin) {
        return cameras.callsOf([&] { cameras.first().autoSet(margin); });
    };
    state.counters["first_calls"] = callsWith(cameraMargin);
    const double calls = callsWith(cameraMargin);
    const double withoutSearch = callsWith(enormousMargin);
    const int steps = searchSteps(cameras.first());
    for (auto _ : state)
        cameras.first().autoSet(cameraMargin);
    // Trying the calculated bandwidth costs as much as a step.
    const double callsPerStep = (calls - withoutSearch) / (1 + steps);
    state.counters["calls"] = calls;
    state.counters["search_steps"] = steps;
    state.counters["calls_per_step"] = callsPerStep;
    judge(state, "a write and a read per step", callsPerStep <= 2.0);
    if (steps == 0)
        state.SkipWithError("the camera did not search");
}

void interfaceAutoSet(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const SilencedLog silence;
    const OpenedCameras cameras(count, static_cast<int>(state.range(1)));
    const auto autoSet = [&cameras] {
        cameras.autoSetInterface();
    };
    state.counters["first_calls_per_camera"] = cameras.callsOf(autoSet) / count;
    double calls = 0.0;
    for (auto _ : state)
        calls = cameras.callsOf(autoSet);
    state.counters["calls_per_camera"] = calls / count;
    if (cameras.satisfied() != count)
        state.SkipWithError("not every camera was given what it needs");
}

double bestMilliseconds(int count) {
    const OpenedCameras cameras(count);
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < turns; ++i)
        best = std::min(best, nanosecondsOf([&cameras] { cameras.autoSetInterface(); }) / 1e6);
    return best;
}

void interfaceAutoSetOf64Beside16(benchmark::State& state) {
    const SilencedLog silence;
    judgeGrowth(state, 16, 64, growthLimit, bestMilliseconds);
}

BENCHMARK(cameraAutoSet)
    ->ArgName("call_us")
    ->Arg(0)
    ->Arg(1000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(interfaceAutoSet)
    ->ArgNames({"cameras", "call_us"})
    ->ArgsProduct({{1, 4, 16, 64}, {0, 1000}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(interfaceAutoSetOf64Beside16)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
