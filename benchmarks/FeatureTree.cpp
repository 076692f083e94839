// SPDX-License-Identifier: BSD-3-Clause
// Measures a camera's feature tree: opening it, switching its filter, expanding and scrolling it,
// by the number of features and by the time that the camera takes for a call.
#include "benchmarks/support/BenchmarkMain.h"
#include "benchmarks/support/SilencedLog.h"
#include "benchmarks/support/SimulatedCameras.h"
#include "features/FeatureController.h"
#include "sdk/OrvCameraWrapper.h"
#include "ui/features/FeatureTreeDialog.h"
#include "ui/features/FeatureTreeModel.h"

#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTreeView>

#include <malloc.h>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr double openLimitMilliseconds = 300.0;
constexpr double bytesLimit = 2048.0;
constexpr int allPages = std::numeric_limits<int>::max();
/// Instead of a number of features: those of every simulated camera.
constexpr int usual = 0;

/// Time on the clock, waiting for the camera included, and calls into the camera SDK.
struct Cost {
    double milliseconds = 0.0;
    std::uint64_t calls = 0;
};

template <class Action> Cost costOf(OrvCPP::ISimulation& simulation, Action action) {
    const std::uint64_t before = simulation.GetCallCount();
    QElapsedTimer timer;
    timer.start();
    action();
    return {static_cast<double>(timer.nsecsElapsed()) / 1e6, simulation.GetCallCount() - before};
}

/// Records the cost of listing the features, and how often each is read.
class WatchedFeatures : public FeatureController {
public:
    WatchedFeatures(OrvCPP::ISimulation& simulation, std::shared_ptr<OrvCameraWrapper> camera)
        : FeatureController(std::move(camera), "Bench"), m_simulation(simulation) {}

    std::map<std::string, std::vector<std::string>>
    getFeaturesByCategory(const std::string& module) const override {
        std::map<std::string, std::vector<std::string>> found;
        const Cost cost =
            costOf(m_simulation, [&] { found = FeatureController::getFeaturesByCategory(module); });
        m_listing.milliseconds += cost.milliseconds;
        m_listing.calls += cost.calls;
        for (const auto& [category, names] : found)
            m_listed += static_cast<int>(names.size());
        return found;
    }
    FeatureInfo getFeatureInfo(const std::string& module, const std::string& name) const override {
        m_mostReads = std::max(m_mostReads, ++m_descriptions[module + name]);
        return FeatureController::getFeatureInfo(module, name);
    }
    FeatureInfo getFeatureOutline(const std::string& module,
                                  const std::string& name) const override {
        m_mostReads = std::max(m_mostReads, ++m_outlines[module + name]);
        return FeatureController::getFeatureOutline(module, name);
    }

    /// Features that all listings so far have found.
    int listed() const { return m_listed; }
    /// Of all listings so far.
    const Cost& listing() const { return m_listing; }
    /// The most reads of one feature's description or outline.
    int mostReads() const { return m_mostReads; }
    int describedFeatures() const { return static_cast<int>(m_descriptions.size()); }

private:
    OrvCPP::ISimulation& m_simulation;
    mutable Cost m_listing;
    mutable int m_listed = 0;
    mutable std::map<std::string, int> m_descriptions;
    mutable std::map<std::string, int> m_outlines;
    mutable int m_mostReads = 0;
};

int countOf(const FeatureController& features) {
    std::size_t count = 0;
    for (const std::string& module : features.getModuleNames()) {
        for (const auto& [category, names] : features.getFeaturesByCategory(module))
            count += names.size();
    }
    return static_cast<int>(count);
}

/// One camera, opened.
class OpenedCamera {
public:
    /// \p features is the camera's number of features, or usual.
    explicit OpenedCamera(int features, int callDelayMicroseconds = 0)
        : m_cameras(1, callDelayMicroseconds, extraFeatures(features)) {
        std::shared_ptr<OrvCPP::Camera> found;
        m_cameras.system().GetCameraByID("CAM_001", found);
        m_camera = std::make_shared<OrvCameraWrapper>(found);
        if (!found || m_camera->Open(OrvAccessModeFull) != OrvErrorSuccess)
            throw std::runtime_error("cannot open the camera");
    }
    ~OpenedCamera() { m_camera->Close(); }

    OpenedCamera(const OpenedCamera&) = delete;
    OpenedCamera& operator=(const OpenedCamera&) = delete;

    OrvCPP::ISimulation& simulation() const { return m_cameras.simulation(); }
    /// A new controller, with no feature in memory.
    std::shared_ptr<WatchedFeatures> features() const {
        return std::make_shared<WatchedFeatures>(simulation(), m_camera);
    }

private:
    static int extraFeatures(int features) {
        return features == usual ? 0 : features - countOf(*OpenedCamera(usual).features());
    }

    SimulatedCameras m_cameras;
    std::shared_ptr<OrvCameraWrapper> m_camera;
};

/// The dialog, shown and painted.
class ShownTree {
public:
    explicit ShownTree(const std::shared_ptr<WatchedFeatures>& features) : m_dialog(features) {
        m_dialog.show();
        paint();
    }

    QTreeView& view() const {
        return *m_dialog.findChild<QTreeView*>(QStringLiteral("treeFeatures"));
    }
    void setFiltered(bool filtered) {
        m_dialog.findChild<QCheckBox*>(QStringLiteral("checkFilter"))->setChecked(filtered);
        paint();
    }
    void expandAll() {
        view().expandAll();
        paint();
    }
    void collapseAll() {
        view().collapseAll();
        paint();
    }
    /// Scrolls up to \p pages pages.
    void scroll(int pages) {
        QScrollBar& bar = *view().verticalScrollBar();
        for (int page = 0; page < pages && bar.value() < bar.maximum(); ++page) {
            bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
            paint();
        }
    }
    void readAll() {
        setFiltered(false);
        expandAll();
        scroll(allPages);
    }
    bool isFilled() const { return view().isVisible() && view().model()->rowCount() > 0; }

private:
    /// Twice: the first pass may schedule a layout.
    static void paint() {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    FeatureTreeDialog m_dialog;
};

void openFiltered(benchmark::State& state) {
    const SilencedLog silence;
    const OpenedCamera camera(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    double bestBeyond = std::numeric_limits<double>::max();
    for (auto _ : state) {
        const auto features = camera.features();
        std::unique_ptr<ShownTree> tree;
        const Cost opening =
            costOf(camera.simulation(), [&] { tree = std::make_unique<ShownTree>(features); });
        const Cost& listing = features->listing();
        bestBeyond = std::min(bestBeyond, opening.milliseconds - listing.milliseconds);
        state.counters["features"] = features->listed();
        state.counters["listing_ms"] = listing.milliseconds;
        state.counters["listing_calls"] = static_cast<double>(listing.calls);
        state.counters["beyond_calls"] = static_cast<double>(opening.calls - listing.calls);
        if (!tree->isFilled())
            state.SkipWithError("the tree shows nothing");
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    state.counters["beyond_ms"] = bestBeyond;
    judge(state, "300 ms beyond listing", bestBeyond <= openLimitMilliseconds);
}

void filterOffAndOn(benchmark::State& state) {
    const SilencedLog silence;
    const OpenedCamera camera(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    ShownTree tree(camera.features());
    Cost off;
    Cost on;
    for (auto _ : state) {
        off = costOf(camera.simulation(), [&] { tree.setFiltered(false); });
        on = costOf(camera.simulation(), [&] { tree.setFiltered(true); });
    }
    state.counters["off_ms"] = off.milliseconds;
    state.counters["on_ms"] = on.milliseconds;
    state.counters["calls"] = static_cast<double>(off.calls + on.calls);
    judge(state, "0 calls", off.calls + on.calls == 0);
}

/// With a slow camera, scrolls through ten pages only: all of them take minutes.
void expandAllAndScroll(benchmark::State& state) {
    const SilencedLog silence;
    const OpenedCamera camera(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const int pages = state.range(1) == 0 ? allPages : 10;
    for (auto _ : state) {
        state.PauseTiming();
        const auto features = camera.features();
        ShownTree tree(features);
        tree.setFiltered(false);
        state.ResumeTiming();
        const Cost expanding = costOf(camera.simulation(), [&] { tree.expandAll(); });
        const Cost scrolling = costOf(camera.simulation(), [&] { tree.scroll(pages); });
        const Cost again = costOf(camera.simulation(), [&] {
            tree.collapseAll();
            tree.expandAll();
            tree.scroll(pages);
        });
        state.counters["expand_ms"] = expanding.milliseconds;
        state.counters["expand_calls"] = static_cast<double>(expanding.calls);
        state.counters["scroll_ms"] = scrolling.milliseconds;
        state.counters["scroll_calls"] = static_cast<double>(scrolling.calls);
        state.counters["described"] = features->describedFeatures();
        state.counters["again_calls"] = static_cast<double>(again.calls);
        judge(state, "none read twice", features->mostReads() == 1 && again.calls == 0);
    }
}

/// Bytes that are allocated now.
double allocatedBytes() {
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Bytes that the feature tree allocates, without those of the feature controller.
struct Memory {
    double model = 0.0;
    double opened = 0.0;
    double allRead = 0.0;
};

Memory memoryOf(int count) {
    const OpenedCamera camera(count);
    const auto features = camera.features();
    ShownTree(features).readAll();
    const double before = allocatedBytes();
    Memory memory;
    auto model = std::make_unique<FeatureTreeModel>(features);
    model->setupModelData();
    memory.model = allocatedBytes() - before;
    model.reset();
    ShownTree tree(features);
    memory.opened = allocatedBytes() - before;
    tree.readAll();
    memory.allRead = allocatedBytes() - before;
    if (features->describedFeatures() < count)
        throw std::runtime_error("not every feature was read");
    return memory;
}

/// The difference between 5,000 and 1,000 features, so that the dialog itself does not count.
void memoryPerFeature(benchmark::State& state) {
    constexpr int fewFeatures = 1'000;
    constexpr int manyFeatures = 5'000;
    const SilencedLog silence;
    for (auto _ : state) {
        const Memory few = memoryOf(fewFeatures);
        const Memory many = memoryOf(manyFeatures);
        const auto perFeature = [&](double Memory::*bytes) {
            return (many.*bytes - few.*bytes) / (manyFeatures - fewFeatures);
        };
        state.counters["model_bytes"] = perFeature(&Memory::model);
        state.counters["opened_bytes"] = perFeature(&Memory::opened);
        state.counters["all_read_bytes"] = perFeature(&Memory::allRead);
        judge(state, "2048 bytes", perFeature(&Memory::allRead) <= bytesLimit);
    }
}

void names(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"features", "call_us"})->UseRealTime()->Unit(benchmark::kMillisecond);
    benchmark->Iterations(1);
}

void cases(benchmark::internal::Benchmark* benchmark) {
    names(benchmark);
    for (const int features : {usual, 1'000, 5'000})
        benchmark->Args({features, 0});
    for (const int features : {usual, 1'000})
        benchmark->Args({features, 1'000});
}

BENCHMARK(openFiltered)->Apply(cases)->Iterations(3);
BENCHMARK(openFiltered)->Apply(names)->Args({5'000, 1'000});
BENCHMARK(filterOffAndOn)->Apply(cases);
BENCHMARK(expandAllAndScroll)->Apply(cases);
BENCHMARK(memoryPerFeature)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    // Offscreen by default, so that results do not depend on the display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
