// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <numeric>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// Helpers for tests that call the camera SDK.
namespace sdk {

using OrvCPP::Camera;
using OrvCPP::Feature;
using OrvCPP::FeatureContainer;
using OrvCPP::Frame;
using OrvCPP::OrvSystem;

inline OrvSystem& system() {
    return OrvSystem::GetInstance();
}

inline OrvCPP::ISimulation& simulation() {
    return dynamic_cast<OrvCPP::ISimulation&>(OrvSystem::GetInstance());
}

/// The text that \p get copies to a buffer; "error" and its code when it fails.
template <typename Get> std::string text(const Get& get) {
    std::uint32_t length = 0;
    if (const OrvErrorType error = get(nullptr, length))
        return "error " + std::to_string(error);
    std::string result(length, '\0');
    if (const OrvErrorType error = get(result.data(), length))
        return "error " + std::to_string(error);
    return result;
}

template <typename Object, typename Base>
std::string text(const Object& object, OrvErrorType (Base::*get)(char*, std::uint32_t&) const) {
    return text([&](char* buffer, std::uint32_t& length) { return (object.*get)(buffer, length); });
}

inline std::string startupError() {
    return text(system(), &OrvSystem::GetStartupError);
}

inline std::string id(const Camera& camera, bool extended = false) {
    return text([&](char* buffer, auto& length) { return camera.GetID(buffer, length, extended); });
}

/// The one result of a function of \p object, which must succeed.
template <typename Object, typename Base, typename T>
T ask(const Object& object, OrvErrorType (Base::*get)(T&) const) {
    T result{};
    EXPECT_EQ((object.*get)(result), OrvErrorSuccess);
    return result;
}

/// The list that a function of \p object copies to an array. It may grow between the two calls.
template <typename T, typename Object, typename Get>
std::vector<std::shared_ptr<T>> list(Object& object, Get get) {
    std::vector<std::shared_ptr<T>> result;
    OrvErrorType error = OrvErrorMoreData;
    while (error == OrvErrorMoreData) {
        std::uint32_t count = 0;
        EXPECT_EQ((object.*get)(nullptr, count), OrvErrorSuccess);
        if (count == 0)
            return {};
        result.assign(count, nullptr);
        error = (object.*get)(result.data(), count);
        result.resize(count);
    }
    EXPECT_EQ(error, OrvErrorSuccess);
    return result;
}

inline std::vector<std::shared_ptr<Camera>> cameras() {
    return list<Camera>(system(), &OrvSystem::GetCameras);
}

inline std::shared_ptr<Camera> camera(const std::string& id) {
    std::shared_ptr<Camera> found;
    EXPECT_EQ(system().GetCameraByID(id.c_str(), found), OrvErrorSuccess) << id;
    return found;
}

inline std::shared_ptr<Camera> openCamera(const std::string& id) {
    const std::shared_ptr<Camera> found = camera(id);
    EXPECT_EQ(found->Open(OrvAccessModeFull), OrvErrorSuccess) << id;
    return found;
}

inline std::shared_ptr<OrvCPP::Stream> stream(const Camera& camera) {
    return list<OrvCPP::Stream>(camera, &Camera::GetStreams).at(0);
}

inline std::shared_ptr<Feature> feature(const FeatureContainer& module, const char* name) {
    std::shared_ptr<Feature> found;
    EXPECT_EQ(module.GetFeatureByName(name, found), OrvErrorSuccess) << name;
    return found;
}

template <typename T> T get(const FeatureContainer& module, const char* name) {
    T value{};
    EXPECT_EQ(feature(module, name)->GetValue(value), OrvErrorSuccess) << name;
    return value;
}

/// What the reading of an integer answers.
inline OrvErrorType readInteger(const Feature& feature) {
    std::int64_t value = 0;
    return feature.GetValue(value);
}

inline std::string getText(const FeatureContainer& module, const char* name) {
    return text(*feature(module, name), &Feature::GetValue);
}

template <typename T> std::pair<T, T> range(const Feature& feature) {
    std::pair<T, T> limits;
    EXPECT_EQ(feature.GetRange(limits.first, limits.second), OrvErrorSuccess);
    return limits;
}

template <typename T> OrvErrorType set(const FeatureContainer& module, const char* name, T value) {
    return feature(module, name)->SetValue(value);
}

/// Waits until \p condition holds, at most 20 s.
template <typename Condition> bool eventually(const Condition& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

/// \p count numbers, which go up by one from \p first.
inline std::vector<std::uint64_t> gapless(std::uint64_t first, std::size_t count) {
    std::vector<std::uint64_t> ids(count);
    std::iota(ids.begin(), ids.end(), first);
    return ids;
}

inline OrvErrorType startWith(const std::string& scenario) {
    const FileTree files;
    return system().Startup(files.write("scenario.json", scenario).wstring().c_str());
}

/// Starts the SDK with a scenario or a configuration; shuts it down at the end.
class Running {
public:
    explicit Running(const std::string& scenario) {
        EXPECT_EQ(startWith(scenario), OrvErrorSuccess) << startupError();
        simulation().ResetCalls();
    }
    explicit Running(const wchar_t* configuration) {
        EXPECT_EQ(system().Startup(configuration), OrvErrorSuccess) << startupError();
    }
    ~Running() {
        simulation().FailCall(0, OrvErrorSuccess);
        EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
};

/// A scenario of one adapter ("gev", 1 Gbit/s) and one USB controller ("usb", 5 Gbit/s) with
/// \p cameras, the inside of the array.
inline std::string scenario(const std::string& cameras) {
    return R"({"host": {"adapters": [{"name": "eth0", "address": "192.168.10.1"}],
                        "usbControllers": [{"device": 20, "hubs": [{"name": "hub", "port": 4}]}]},
  "transportLayers": [{"id": "G", "type": "GigEVision"}, {"id": "U", "type": "USB3Vision"}],
  "interfaces": [{"id": "gev", "transportLayer": "G", "adapter": "eth0"},
                 {"id": "usb", "transportLayer": "U", "usbController": "0-20-0"}],
  "cameras": [)" +
           cameras + "]}";
}

/// A GigE camera of the given ID; \p more are further keys, each with a comma in front.
inline std::string gige(const std::string& id, const std::string& more = {}) {
    return R"({"id": ")" + id + R"(", "model": "M", "interface": "gev")" + more + "}";
}

inline std::string usb(const std::string& id, int port, const std::string& more = {}) {
    return R"({"id": ")" + id + R"(", "model": "M", "interface": "usb", "port": )" +
           std::to_string(port) + more + "}";
}

/// A small sensor with the given frame rate: an image has 64,000 bytes.
inline std::string sensor(double frameRate) {
    return R"(, "exposureTime": 100, "sensor": {"width": 320, "height": 200, "frameRate": )" +
           std::to_string(frameRate) + "}";
}

struct MockFrameObserver : OrvCPP::IFrameObserver {
    MOCK_METHOD(void, FrameReceived, (const std::shared_ptr<Frame>&), (override));
};

struct MockFeatureObserver : OrvCPP::IFeatureObserver {
    MOCK_METHOD(void, FeatureChanged, (const std::shared_ptr<Feature>&), (override));
};

/// Records received frames and queues them again, unless it \p keeps them.
class Receiver : public OrvCPP::IFrameObserver {
public:
    explicit Receiver(std::weak_ptr<Camera> camera, bool keeps = false)
        : m_camera(std::move(camera)), m_keeps(keeps) {}

    void FrameReceived(const std::shared_ptr<Frame>& frame) override {
        incomplete += ask(*frame, &Frame::GetReceiveStatus) == OrvFrameStatusIncomplete ? 1 : 0;
        // An incomplete frame of a real camera may have no number.
        std::uint64_t id = 0;
        frame->GetFrameID(id);
        const std::lock_guard lock(m_mutex);
        m_ids.push_back(id);
        if (m_keeps)
            m_kept.push_back(frame);
        else if (const auto camera = m_camera.lock())
            camera->QueueFrame(frame);
    }

    std::vector<std::uint64_t> ids() const {
        const std::lock_guard lock(m_mutex);
        return m_ids;
    }
    std::size_t count() const { return ids().size(); }
    std::vector<std::shared_ptr<Frame>> takeKept() {
        const std::lock_guard lock(m_mutex);
        m_keeps = false;
        return std::move(m_kept);
    }

    std::atomic<int> incomplete{0};

private:
    const std::weak_ptr<Camera> m_camera;
    mutable std::mutex m_mutex;
    std::vector<std::uint64_t> m_ids;
    bool m_keeps;
    std::vector<std::shared_ptr<Frame>> m_kept;
};

inline OrvErrorType start(Camera& camera, const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
                          int buffers = 5) {
    return camera.StartContinuousImageAcquisition(buffers, observer,
                                                  OrvCPP::FrameAllocationMode::AnnounceFrame);
}

/// Starts a camera with a receiver of its frames.
inline std::shared_ptr<Receiver> startReceiving(const std::shared_ptr<Camera>& camera,
                                                int buffers = 5, bool keeps = false) {
    auto receiver = std::make_shared<Receiver>(camera, keeps);
    EXPECT_EQ(start(*camera, receiver, buffers), OrvErrorSuccess);
    return receiver;
}

} // namespace sdk
