// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraHandler.h"
#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/SystemController.h"
#include "tests/support/CameraParts.h"
#include "tests/support/FakeFeatureController.h"

#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

/// Properties of a fake camera, and records of the calls to it.
struct FakeCamera {
    std::string interfaceName;
    OrvTransportLayerType type = OrvTransportLayerTypeGEV;
    std::string model = "Cam";
    std::string id = "1";
    bool opened = true;
    std::string warning;
    std::int64_t bandwidth = 100'000'000;
    bool locked = false;
    /// What its own Auto Set finds, in bytes per second, whatever the margin.
    std::int64_t need = 0;
    AutosetStatus status = AutosetStatus::None;
    FrameStatistics statistics;

    int starts = 0;
    int stops = 0;
    int adjustments = 0;
    int bandwidthReads = 0;
    int bandwidthWrites = 0;
    double margin = 0.0;
    std::uint64_t requested = 0;
};

/// The one feature of a fake camera: its bandwidth.
class FakeBandwidth : public FakeFeatureController {
public:
    explicit FakeBandwidth(const std::shared_ptr<FakeCamera>& camera) : m_camera(camera) {
        if (camera->opened)
            putLimit(camera->bandwidth, 1'000'000, 500'000'000, 1);
    }

    FeatureValue getFeatureValue(const std::string&, const std::string&) const override {
        ++m_camera->bandwidthReads;
        return m_camera->bandwidth;
    }
    bool setFeatureValue(const std::string&, const std::string&,
                         const FeatureValue& value) override {
        ++m_camera->bandwidthWrites;
        m_camera->bandwidth = std::get<std::int64_t>(value);
        return true;
    }

private:
    const std::shared_ptr<FakeCamera> m_camera;
};

/// A handler that is a FakeCamera and asks no SDK.
class FakeCameraHandler : public CameraHandler {
public:
    explicit FakeCameraHandler(const std::shared_ptr<FakeCamera>& camera)
        : CameraHandler(makeCamera(), std::make_shared<FakeBandwidth>(camera)), m_camera(camera) {}

    CameraInfo getCameraInfo() const override {
        CameraInfo info;
        info.modelName = m_camera->model;
        info.serialNumber = "S";
        info.cameraId = m_camera->id;
        info.interfaceName = m_camera->interfaceName;
        info.transportLayerType = m_camera->type;
        return info;
    }
    FrameStatistics getFrameStatistics() const override { return m_camera->statistics; }
    void startAcquisition() override { ++m_camera->starts; }
    bool adjustPacketSize(bool enabled) override {
        m_camera->adjustments += enabled ? 1 : 0;
        return enabled;
    }
    void stopAcquisition() override { ++m_camera->stops; }
    bool isOpened() const override { return m_camera->opened; }
    void setOpened(bool opened) override { m_camera->opened = opened; }
    void setLocked(bool locked) override { m_camera->locked = locked; }
    bool isLocked() const override { return m_camera->locked; }
    std::int64_t getBandwidth() const override { return m_camera->bandwidth; }
    AutosetStatus getAutosetStatus() const override { return m_camera->status; }
    std::int64_t autoSet(double margin) override {
        m_camera->margin = margin;
        return m_camera->need;
    }
    std::int64_t setBandwidth(std::uint64_t value, std::uint64_t requested) override {
        m_camera->bandwidth = static_cast<std::int64_t>(value);
        m_camera->requested = requested;
        return m_camera->bandwidth;
    }
    std::string getWarningText() const override { return m_camera->warning; }
    void checkUsbSpeedLimit() const override {}
    void checkLinkSpeed(std::uint64_t) const override {}

private:
    std::shared_ptr<FakeCamera> m_camera;
};

/// The network adapter that every fake GigE interface hangs on: 1 Gbit/s.
class FakeGigESpeed : public InterfaceHandlerGigE {
public:
    FakeGigESpeed() : InterfaceHandlerGigE(host::HostNetworks()) {}
    std::uint64_t GetLinkSpeed(std::uint64_t) const override { return 1'000'000'000; }
};

/// The controller that every fake USB interface is: 5 Gbit/s.
class FakeUsbSpeed : public InterfaceHandlerUSB {
public:
    FakeUsbSpeed() : InterfaceHandlerUSB(host::HostUsbTrees()) {}
    std::optional<std::uint64_t> GetSpeed(const std::string&) const override {
        return 5'000'000'000;
    }
};

/// A system of fake cameras, in the order in which the SDK would list them.
class FakeSystem : public testing::NiceMock<MockSystem> {
public:
    using FakeList = std::vector<std::shared_ptr<FakeCamera>>;

    explicit FakeSystem(FakeList fakes) : m_fakes(std::move(fakes)) {
        ON_CALL(*this, GetCameras).WillByDefault([this](Cameras& cameras) {
            cameras.clear();
            m_byWrapper.clear();
            for (const auto& fake : m_fakes) {
                cameras.push_back(makeWrapper(*fake));
                m_byWrapper[cameras.back().get()] = fake;
            }
            return OrvErrorType{OrvErrorSuccess};
        });
        ON_CALL(*this, CreateCameraHandler)
            .WillByDefault([this](const std::shared_ptr<OrvCameraWrapper>& camera) {
                return std::make_shared<FakeCameraHandler>(m_byWrapper.at(camera.get()));
            });
    }

    void setCameras(FakeList cameras) { m_fakes = std::move(cameras); }

private:
    static std::shared_ptr<OrvCameraWrapper> makeWrapper(const FakeCamera& fake) {
        // A layer of any type is let through; the tree shows the type of the interface.
        const CameraParts parts(OrvTransportLayerTypeGEV);
        ON_CALL(*parts.interface, GetType).WillByDefault(answer(fake.type));
        parts.interface->addFeature("GevInterfaceSubnetIPAddress", makeIntFeature(1));
        return parts.camera;
    }

    FakeList m_fakes;
    std::map<const OrvCameraWrapper*, std::shared_ptr<FakeCamera>> m_byWrapper;
};

inline std::shared_ptr<FakeCamera> makeFake(const std::string& interfaceName,
                                            OrvTransportLayerType type, const std::string& model) {
    auto camera = std::make_shared<FakeCamera>();
    camera->interfaceName = interfaceName;
    camera->type = type;
    camera->model = model;
    return camera;
}

inline std::shared_ptr<SystemController> makeController(std::shared_ptr<FakeSystem> system) {
    return std::make_shared<SystemController>(std::move(system), std::make_shared<FakeGigESpeed>(),
                                              std::make_shared<FakeUsbSpeed>());
}
