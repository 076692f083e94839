// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/Camera.h"
#include "OrvCPP/Feature.h"
#include "OrvCPP/Frame.h"
#include "OrvCPP/OrvSystem.h"
#include "OrvCPP/Stream.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int buffers = 5;

/// Counts the frames of a camera and queues them again.
class Counter final : public OrvCPP::IFrameObserver {
public:
    explicit Counter(std::shared_ptr<OrvCPP::Camera> camera) : m_camera(std::move(camera)) {}

    void FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) override {
        OrvFrameStatusType status = OrvFrameStatusInvalid;
        frame->GetReceiveStatus(status);
        ++(status == OrvFrameStatusComplete ? complete : incomplete);
        m_camera->QueueFrame(frame);
    }

    std::atomic<unsigned> complete{0};
    std::atomic<unsigned> incomplete{0};

private:
    const std::shared_ptr<OrvCPP::Camera> m_camera;
};

bool check(OrvErrorType result, const char* what) {
    if (result != OrvErrorSuccess)
        std::fprintf(stderr, "%s: error %d\n", what, result);
    return result == OrvErrorSuccess;
}

/// Makes the camera's frames come with or without images.
bool setHeadersOnly(const OrvCPP::Camera& camera, bool headersOnly) {
    std::shared_ptr<OrvCPP::Stream> stream;
    std::uint32_t count = 1;
    std::shared_ptr<OrvCPP::Feature> feature;
    return check(camera.GetStreams(&stream, count), "stream") &&
           check(stream->GetFeatureByName("GVSPHeadersOnly", feature), "headers only") &&
           check(feature->SetValue(headersOnly), "headers only");
}

std::vector<std::shared_ptr<OrvCPP::Camera>> findCameras(OrvCPP::OrvSystem& system) {
    std::uint32_t count = 0;
    system.GetCameras(nullptr, count);
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras(count);
    system.GetCameras(cameras.data(), count);
    return cameras;
}

int receive(OrvCPP::OrvSystem& system, double seconds, bool headersOnly) {
    const auto cameras = findCameras(system);
    std::vector<std::shared_ptr<Counter>> counters;
    for (const auto& camera : cameras) {
        counters.push_back(std::make_shared<Counter>(camera));
        if (!check(camera->Open(OrvAccessModeFull), "open") ||
            !setHeadersOnly(*camera, headersOnly) ||
            !check(camera->StartContinuousImageAcquisition(
                       buffers, counters.back(), OrvCPP::FrameAllocationMode::AnnounceFrame),
                   "start"))
            return 1;
    }
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    for (const auto& camera : cameras) {
        camera->StopContinuousImageAcquisition();
        camera->Close();
    }
    for (const auto& counter : counters)
        std::printf("complete %u incomplete %u seconds %.1f\n", counter->complete.load(),
                    counter->incomplete.load(), seconds);
    return cameras.empty() ? 1 : 0;
}

} // namespace

/// Receives from all cameras through our camera SDK and nothing else, for comparison:
/// sdk-receiver SECONDS CONFIGURATION [--headers-only]
int main(int count, char** arguments) {
    if (count < 3)
        return 2;
    const std::string configuration = arguments[2];
    const bool headersOnly = count > 3 && std::string(arguments[3]) == "--headers-only";
    OrvCPP::OrvSystem& system = OrvCPP::OrvSystem::GetInstance();
    const std::wstring path(configuration.begin(), configuration.end());
    if (!check(system.Startup(path.c_str()), "start-up"))
        return 1;
    const int result = receive(system, std::atof(arguments[1]), headersOnly);
    system.Shutdown();
    return result;
}
