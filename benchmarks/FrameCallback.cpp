// SPDX-License-Identifier: BSD-3-Clause
// Compares the frame callback with its unavoidable part: reading the clock, reading the frame's
// status, size and ID from the SDK, and queueing the frame again.
#include "benchmarks/support/AllocationCounter.h"
#include "benchmarks/support/BenchmarkMain.h"
#include "benchmarks/support/Comparison.h"
#include "engine/FrameObserver.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFrameWrapper.h"

#include <chrono>

namespace {

constexpr double ratioLimit = 1.5;
constexpr int callsPerTurn = 20'000;
constexpr int turns = 50;

constexpr OrvErrorType unsupported = OrvErrorNotSupported;

/// A complete frame that answers at once.
class FakeFrame : public OrvCPP::Frame {
public:
    OrvErrorType GetReceiveStatus(OrvFrameStatusType& status) const override {
        status = OrvFrameStatusComplete;
        return OrvErrorSuccess;
    }
    OrvErrorType GetBufferSize(std::uint32_t& size) const override {
        size = 640 * 480;
        return OrvErrorSuccess;
    }
    OrvErrorType GetFrameID(std::uint64_t& id) const override {
        id = ++m_id;
        return OrvErrorSuccess;
    }
    OrvErrorType GetTimestamp(std::uint64_t&) const override { return unsupported; }
    OrvErrorType GetImage(const std::uint8_t*&) const override { return unsupported; }
    OrvErrorType GetPixelFormat(OrvPixelFormatType&) const override { return unsupported; }
    OrvErrorType GetWidth(std::uint32_t&) const override { return unsupported; }
    OrvErrorType GetHeight(std::uint32_t&) const override { return unsupported; }

private:
    mutable std::uint64_t m_id = 0;
};

/// A camera that takes frames back at once and does nothing else.
class FakeCamera : public OrvCPP::Camera {
public:
    using Text = char*;
    using Length = std::uint32_t&;
    using Observer = std::shared_ptr<OrvCPP::IFrameObserver>;

    OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>&) override {
        return OrvErrorSuccess;
    }

    OrvErrorType GetFeatureByName(const char*, std::shared_ptr<OrvCPP::Feature>&) const override {
        return unsupported;
    }
    OrvErrorType GetFeatures(std::shared_ptr<OrvCPP::Feature>*, Length) const override {
        return unsupported;
    }
    OrvErrorType Open(OrvAccessModeType) override { return unsupported; }
    OrvErrorType Close() override { return unsupported; }
    OrvErrorType GetID(Text, Length, bool) const override { return unsupported; }
    OrvErrorType GetName(Text, Length) const override { return unsupported; }
    OrvErrorType GetModel(Text, Length) const override { return unsupported; }
    OrvErrorType GetSerialNumber(Text, Length) const override { return unsupported; }
    OrvErrorType GetInterfaceType(OrvTransportLayerType&) const override { return unsupported; }
    OrvErrorType GetInterface(std::shared_ptr<OrvCPP::Interface>&) const override {
        return unsupported;
    }
    OrvErrorType GetLocalDevice(std::shared_ptr<OrvCPP::LocalDevice>&) const override {
        return unsupported;
    }
    OrvErrorType GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>&) const override {
        return unsupported;
    }
    OrvErrorType GetStreams(std::shared_ptr<OrvCPP::Stream>*, Length) const override {
        return unsupported;
    }
    OrvErrorType GetPermittedAccess(OrvAccessModeType&) const override { return unsupported; }
    OrvErrorType ReadMemory(std::uint64_t, std::uint8_t*, std::uint32_t, Length) const override {
        return unsupported;
    }
    OrvErrorType StartContinuousImageAcquisition(int, const Observer&,
                                                 OrvCPP::FrameAllocationMode) override {
        return unsupported;
    }
    OrvErrorType StopContinuousImageAcquisition() override { return unsupported; }
};

/// The callback and what it is measured against, on one frame of one camera.
class Bench {
public:
    void callback() { m_observer.FrameReceived(m_frame); }

    void baseline() {
        OrvFrameStatusType status = OrvFrameStatusInvalid;
        std::uint32_t size = 0;
        std::uint64_t id = 0;
        m_wrapper.GetReceiveStatus(status);
        m_wrapper.GetBufferSize(size);
        m_wrapper.GetFrameID(id);
        benchmark::DoNotOptimize(std::chrono::steady_clock::now());
        m_camera->QueueFrame(m_frame);
        benchmark::DoNotOptimize(status);
        benchmark::DoNotOptimize(size);
        benchmark::DoNotOptimize(id);
    }

    std::uint64_t receivedFrames() const { return m_observer.statistics().completeFrames; }

private:
    std::shared_ptr<OrvCPP::Frame> m_frame = std::make_shared<FakeFrame>();
    std::shared_ptr<OrvCameraWrapper> m_camera =
        std::make_shared<OrvCameraWrapper>(std::make_shared<FakeCamera>());
    OrvFrameWrapper m_wrapper{m_frame};
    FrameObserver m_observer{m_camera, 1};
};

void frameCallback(benchmark::State& state) {
    Bench bench;
    const std::uint64_t before = allocationCount();
    for (auto _ : state)
        bench.callback();
    const std::uint64_t allocations = allocationCount() - before;
    state.counters["allocations"] = static_cast<double>(allocations);
    if (bench.receivedFrames() != static_cast<std::uint64_t>(state.iterations()))
        state.SkipWithError("the callback has not counted every frame");
    judge(state, "0 allocations", allocations == 0);
}

void baseline(benchmark::State& state) {
    Bench bench;
    for (auto _ : state)
        bench.baseline();
    state.SetLabel("a clock read and the wrapper's reads: status, size, ID, queue");
}

void frameCallbackBesideBaseline(benchmark::State& state) {
    Bench bench;
    Comparison result;
    for (auto _ : state)
        result = compare([&bench] { bench.callback(); }, [&bench] { bench.baseline(); },
                         callsPerTurn, turns);
    state.counters["callback_ns"] = result.subject;
    state.counters["baseline_ns"] = result.baseline;
    state.counters["ratio"] = result.ratio();
    judge(state, "ratio 1.5", result.ratio() <= ratioLimit);
}

BENCHMARK(frameCallback);
BENCHMARK(baseline);
BENCHMARK(frameCallbackBesideBaseline)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv);
}
