// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/CallCounter.h"
#include "orvcpp/core/ProviderFactory.h"

#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"

#include <QString>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orv {

/// The system object: combines the cameras of its providers. Thread-safe. Calls providers and
/// observers without a lock; the camera factory under m_factoryMutex only.
class System final : public OrvCPP::OrvSystem, public OrvCPP::ISimulation, private ProviderHost {
public:
    explicit System(ProviderFactory makeProviders);
    ~System() override;

    OrvErrorType QueryVersion(OrvVersionInfo& version) const override;
    OrvErrorType Startup() override;
    OrvErrorType Startup(const wchar_t* pathConfiguration) override;
    OrvErrorType Shutdown() override;
    OrvErrorType GetStartupError(char* buffer, std::uint32_t& length) const override;

    OrvErrorType GetInterfaces(std::shared_ptr<OrvCPP::Interface>* interfaces,
                               std::uint32_t& count) override;
    OrvErrorType GetInterfaceByID(const char* id,
                                  std::shared_ptr<OrvCPP::Interface>& found) override;
    OrvErrorType GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                            std::uint32_t& count) override;
    OrvErrorType GetCameraByID(const char* id, std::shared_ptr<OrvCPP::Camera>& camera) override;
    OrvErrorType GetTransportLayers(std::shared_ptr<OrvCPP::TransportLayer>* layers,
                                    std::uint32_t& count) override;
    OrvErrorType GetTransportLayerByID(const char* id,
                                       std::shared_ptr<OrvCPP::TransportLayer>& layer) override;

    OrvErrorType RegisterCameraListObserver(
        const std::shared_ptr<OrvCPP::ICameraListObserver>& observer) override;
    OrvErrorType UnregisterCameraListObserver(
        const std::shared_ptr<OrvCPP::ICameraListObserver>& observer) override;
    OrvErrorType RegisterInterfaceListObserver(
        const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer) override;
    OrvErrorType UnregisterInterfaceListObserver(
        const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer) override;
    OrvErrorType
    RegisterCameraFactory(const std::shared_ptr<OrvCPP::ICameraFactory>& factory) override;
    OrvErrorType UnregisterCameraFactory() override;

    OrvCPP::SimulatedHost GetHost() const override;
    std::uint64_t GetCallCount() const override;
    void ResetCalls() override;
    void FailCall(std::uint64_t number, OrvErrorType code) override;
    bool SetCameraPlugged(const std::string& id, bool plugged) override;

private:
    std::shared_ptr<OrvCPP::Camera>
    publicCamera(const std::shared_ptr<OrvCPP::Camera>& found) override;
    void cameraListChanged(const std::shared_ptr<OrvCPP::Camera>& found,
                           OrvUpdateTriggerType reason) override;

    OrvErrorType startWith(const QString& configuration);
    OrvErrorType make(const QString& configuration, Providers& made, std::string& error);
    /// Counts a call; the error that it has to answer, if any.
    OrvErrorType enter() const;
    Providers providers() const;

    const ProviderFactory m_makeProviders;
    const std::shared_ptr<CallCounter> m_callCounter = std::make_shared<CallCounter>();
    /// Held during start-up and shutdown.
    mutable std::mutex m_lifecycle;
    mutable std::mutex m_mutex;
    /// Until the next mutex guarded by m_mutex.
    Providers m_providers;
    bool m_isStarted = false;
    std::string m_startupError;
    std::vector<std::shared_ptr<OrvCPP::ICameraListObserver>> m_cameraObservers;
    std::vector<std::shared_ptr<OrvCPP::IInterfaceListObserver>> m_interfaceObservers;
    std::shared_ptr<OrvCPP::ICameraFactory> m_factory;
    /// Held while the factory is called, which may call back; guards m_publicCameras.
    std::recursive_mutex m_factoryMutex;
    /// The object that users get for a provider's object.
    std::map<std::shared_ptr<OrvCPP::Camera>, std::shared_ptr<OrvCPP::Camera>> m_publicCameras;
};

} // namespace orv
