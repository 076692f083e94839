// SPDX-License-Identifier: BSD-3-Clause
// Measures a system of 64 cameras: memory of the viewer with the plug-in, and processor time of
// the simulated cameras alone.
#include "benchmarks/support/BenchmarkMain.h"
#include "benchmarks/support/SimulatedCameras.h"

#include "OrvCPP/OrvSystem.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QThread>

#include <sys/resource.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

constexpr int cameraCount = 64;
constexpr double memoryLimitMegabytes = 200.0;
constexpr double loadLimitPercent = 15.0;
/// Nominal rate of the cameras, and the share of it that must arrive for the load to count.
constexpr double framesPerSecond = 30.0;
constexpr double deliveredShare = 0.98;
constexpr int streamingSeconds = 5;

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

rusage usageOf(int who) {
    rusage usage{};
    getrusage(who, &usage);
    return usage;
}

double processorSeconds() {
    const rusage usage = usageOf(RUSAGE_SELF);
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Runs the viewer's dialog through a benchmark of 64 cameras; the exit code.
int runViewer() {
    const QTemporaryDir folder;
    QProcess viewer;
    viewer.setProgram(QCoreApplication::applicationDirPath() + QStringLiteral("/spanlet-viewer"));
    viewer.setArguments({QStringLiteral("--config"), QStringLiteral(":sixty-four"),
                         QStringLiteral("--benchmark"), QStringLiteral("3"),
                         QStringLiteral("--picture"),
                         folder.filePath(QStringLiteral("dialog.png"))});
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    viewer.setProcessEnvironment(environment);
    viewer.setStandardOutputFile(QProcess::nullDevice());
    viewer.start();
    if (!viewer.waitForFinished(120'000) || viewer.exitStatus() != QProcess::NormalExit)
        return -1;
    return viewer.exitCode();
}

void viewerWith64Cameras(benchmark::State& state) {
    int exitCode = -1;
    for (auto _ : state)
        exitCode = runViewer();
    // Peak of the only child process, in units of 1024 bytes.
    const double megabytes = static_cast<double>(usageOf(RUSAGE_CHILDREN).ru_maxrss) * 1024.0 / 1e6;
    state.counters["peak_resident_MB"] = megabytes;
    judge(state, "200 MB at the peak of a benchmark", megabytes <= memoryLimitMegabytes);
    if (exitCode != 0)
        state.SkipWithError("the viewer has failed");
}

/// Hands each frame back at once.
class Requeuer : public OrvCPP::IFrameObserver {
public:
    Requeuer(OrvCPP::Camera& camera, std::atomic<int>& frames)
        : m_camera(camera), m_frames(frames) {}

    void FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) override {
        ++m_frames;
        m_camera.QueueFrame(frame);
    }

private:
    OrvCPP::Camera& m_camera;
    std::atomic<int>& m_frames;
};

std::vector<std::shared_ptr<OrvCPP::Camera>> camerasOf(OrvCPP::OrvSystem& system) {
    std::uint32_t count = 0;
    system.GetCameras(nullptr, count);
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras(count);
    system.GetCameras(cameras.data(), count);
    return cameras;
}

void start(const std::vector<std::shared_ptr<OrvCPP::Camera>>& cameras, std::atomic<int>& frames) {
    for (const auto& camera : cameras) {
        const auto observer = std::make_shared<Requeuer>(*camera, frames);
        if (camera->Open(OrvAccessModeFull) != OrvErrorSuccess ||
            camera->StartContinuousImageAcquisition(
                5, observer, OrvCPP::FrameAllocationMode::AnnounceFrame) != OrvErrorSuccess)
            throw std::runtime_error("a simulated camera does not stream");
    }
}

void simulatedCamerasStreaming(benchmark::State& state) {
    const SimulatedCameras simulated(QStringLiteral(":sixty-four"));
    const auto cameras = camerasOf(simulated.system());
    std::atomic<int> frames{0};
    start(cameras, frames);
    QThread::sleep(1);

    QElapsedTimer timer;
    double load = 0.0;
    double rate = 0.0;
    for (auto _ : state) {
        timer.start();
        const int before = frames;
        const double processorBefore = processorSeconds();
        QThread::sleep(streamingSeconds);
        const double elapsed = static_cast<double>(timer.nsecsElapsed()) / 1e9;
        load = 100.0 * (processorSeconds() - processorBefore) / elapsed;
        rate = (frames - before) / elapsed / cameraCount;
    }
    for (const auto& camera : cameras)
        camera->Close();
    state.counters["percent_of_a_core"] = load;
    state.counters["fps_per_camera"] = rate;
    judge(state, "15 % of a core at 64 x 30 frames/s", load <= loadLimitPercent);
    if (rate < deliveredShare * framesPerSecond)
        state.SkipWithError("the simulated cameras do not keep their frame rate");
}

BENCHMARK(viewerWith64Cameras)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK(simulatedCamerasStreaming)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
