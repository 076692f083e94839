// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/System.h"

#include "orvcpp/core/ArrayOutput.h"
#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/core/ObserverList.h"
#include "orvcpp/core/SdkThread.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace orv {

namespace {

constexpr std::uint32_t versionMajor = 1;
constexpr std::uint32_t versionMinor = 4;
constexpr std::uint32_t versionPatch = 2;

/// Everything that the providers list through \p list, one provider after the other.
template <typename Object, typename List>
std::vector<Listed<Object>> gather(const std::vector<std::shared_ptr<Provider>>& providers,
                                   const List& list) {
    std::vector<Listed<Object>> all;
    for (const auto& provider : providers) {
        std::vector<Listed<Object>> part = ((*provider).*list)();
        std::move(part.begin(), part.end(), std::back_inserter(all));
    }
    return all;
}

template <typename Object>
OrvErrorType writeObjects(const std::vector<Listed<Object>>& listed, std::shared_ptr<Object>* array,
                          std::uint32_t& count) {
    std::vector<std::shared_ptr<Object>> objects;
    for (const Listed<Object>& element : listed)
        objects.push_back(element.object);
    return writeArray(objects, array, count);
}

template <typename Object>
OrvErrorType findById(const std::vector<Listed<Object>>& listed, const char* id,
                      std::shared_ptr<Object>& found) {
    if (!id)
        return OrvErrorBadParameter;
    for (const Listed<Object>& element : listed) {
        if (element.id == id || (!element.extendedId.empty() && element.extendedId == id)) {
            found = element.object;
            return OrvErrorSuccess;
        }
    }
    return OrvErrorNotFound;
}

} // namespace

System::System(ProviderFactory makeProviders) : m_makeProviders(makeProviders) {}

System::~System() {
    Shutdown();
}

OrvErrorType System::QueryVersion(OrvVersionInfo& version) const {
    version = {versionMajor, versionMinor, versionPatch};
    return OrvErrorSuccess;
}

OrvErrorType System::Startup() {
    return startWith({});
}

OrvErrorType System::Startup(const wchar_t* pathConfiguration) {
    if (!pathConfiguration)
        return OrvErrorBadParameter;
    return startWith(QString::fromWCharArray(pathConfiguration));
}

OrvErrorType System::make(const QString& configuration, Providers& made, std::string& error) {
    try {
        made = m_makeProviders(configuration, *this, m_callCounter);
    } catch (const FormatError& wrong) {
        error = wrong.what();
        return OrvErrorBadParameter;
    } catch (const std::exception& fault) {
        error = fault.what();
        return OrvErrorResources;
    }
    for (const auto& provider : made) {
        if (const OrvErrorType result = provider->start(); result != OrvErrorSuccess)
            return result;
    }
    return OrvErrorSuccess;
}

OrvErrorType System::startWith(const QString& configuration) {
    const std::lock_guard lifecycle(m_lifecycle);
    {
        const std::lock_guard lock(m_mutex);
        if (m_isStarted)
            return OrvErrorAlreadyDone;
    }
    // Without m_mutex: a provider may call back once it is started.
    Providers made;
    std::string error;
    const OrvErrorType result = make(configuration, made, error);
    const std::lock_guard lock(m_mutex);
    m_startupError = error;
    m_isStarted = result == OrvErrorSuccess;
    if (result == OrvErrorSuccess)
        m_providers = made;
    return result;
}

OrvErrorType System::Shutdown() {
    if (currentSdkThread() != SdkThread::Foreign)
        return OrvErrorInvalidCall;
    const std::lock_guard lifecycle(m_lifecycle);
    Providers ending;
    {
        const std::lock_guard lock(m_mutex);
        ending.swap(m_providers);
        m_isStarted = false;
    }
    for (const auto& provider : ending)
        provider->shutDown();
    // Destroyed without a lock: objects of the user may call back in their destructors.
    decltype(m_cameraObservers) cameraObservers;
    decltype(m_interfaceObservers) interfaceObservers;
    decltype(m_publicCameras) cameras;
    std::shared_ptr<OrvCPP::ICameraFactory> factory;
    {
        const std::lock_guard lock(m_mutex);
        cameraObservers.swap(m_cameraObservers);
        interfaceObservers.swap(m_interfaceObservers);
        factory.swap(m_factory);
    }
    {
        const std::lock_guard lock(m_factoryMutex);
        cameras.swap(m_publicCameras);
    }
    return OrvErrorSuccess;
}

OrvErrorType System::GetStartupError(char* buffer, std::uint32_t& length) const {
    const std::lock_guard lock(m_mutex);
    return writeArray(m_startupError, buffer, length);
}

Providers System::providers() const {
    const std::lock_guard lock(m_mutex);
    return m_providers;
}

OrvErrorType System::enter() const {
    const std::lock_guard lock(m_mutex);
    return m_isStarted ? m_callCounter->enter() : OrvErrorApiNotStarted;
}

OrvErrorType System::GetInterfaces(std::shared_ptr<OrvCPP::Interface>* interfaces,
                                   std::uint32_t& count) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    return writeObjects(gather<OrvCPP::Interface>(providers(), &Provider::interfaces), interfaces,
                        count);
}

OrvErrorType System::GetInterfaceByID(const char* id, std::shared_ptr<OrvCPP::Interface>& found) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    return findById(gather<OrvCPP::Interface>(providers(), &Provider::interfaces), id, found);
}

OrvErrorType System::GetTransportLayers(std::shared_ptr<OrvCPP::TransportLayer>* layers,
                                        std::uint32_t& count) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    return writeObjects(gather<OrvCPP::TransportLayer>(providers(), &Provider::transportLayers),
                        layers, count);
}

OrvErrorType System::GetTransportLayerByID(const char* id,
                                           std::shared_ptr<OrvCPP::TransportLayer>& layer) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    return findById(gather<OrvCPP::TransportLayer>(providers(), &Provider::transportLayers), id,
                    layer);
}

OrvErrorType System::GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras, std::uint32_t& count) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    auto listed = gather<OrvCPP::Camera>(providers(), &Provider::cameras);
    if (cameras) {
        for (Listed<OrvCPP::Camera>& camera : listed)
            camera.object = publicCamera(camera.object);
    }
    return writeObjects(listed, cameras, count);
}

OrvErrorType System::GetCameraByID(const char* id, std::shared_ptr<OrvCPP::Camera>& camera) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    std::shared_ptr<OrvCPP::Camera> found;
    const auto listed = gather<OrvCPP::Camera>(providers(), &Provider::cameras);
    if (const OrvErrorType error = findById(listed, id, found); error != OrvErrorSuccess)
        return error;
    camera = publicCamera(found);
    return OrvErrorSuccess;
}

OrvErrorType
System::RegisterCameraListObserver(const std::shared_ptr<OrvCPP::ICameraListObserver>& observer) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    if (!observer)
        return OrvErrorBadParameter;
    const std::lock_guard lock(m_mutex);
    return addObserver(m_cameraObservers, observer);
}

OrvErrorType
System::UnregisterCameraListObserver(const std::shared_ptr<OrvCPP::ICameraListObserver>& observer) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    const std::lock_guard lock(m_mutex);
    return removeObserver(m_cameraObservers, observer);
}

OrvErrorType System::RegisterInterfaceListObserver(
    const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    if (!observer)
        return OrvErrorBadParameter;
    const std::lock_guard lock(m_mutex);
    return addObserver(m_interfaceObservers, observer);
}

OrvErrorType System::UnregisterInterfaceListObserver(
    const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    const std::lock_guard lock(m_mutex);
    return removeObserver(m_interfaceObservers, observer);
}

OrvErrorType System::RegisterCameraFactory(const std::shared_ptr<OrvCPP::ICameraFactory>& factory) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    if (!factory)
        return OrvErrorBadParameter;
    const std::lock_guard lock(m_mutex);
    if (m_factory)
        return OrvErrorAlreadyDone;
    m_factory = factory;
    return OrvErrorSuccess;
}

OrvErrorType System::UnregisterCameraFactory() {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    std::shared_ptr<OrvCPP::ICameraFactory> forgotten;
    const std::lock_guard lock(m_mutex);
    forgotten.swap(m_factory);
    return forgotten ? OrvErrorSuccess : OrvErrorNotFound;
}

std::shared_ptr<OrvCPP::Camera> System::publicCamera(const std::shared_ptr<OrvCPP::Camera>& found) {
    const std::lock_guard factoryLock(m_factoryMutex);
    // Inserted before the factory is called: if it asks for the camera, it gets the found one.
    const auto [entry, isNew] = m_publicCameras.emplace(found, found);
    if (!isNew)
        return entry->second;
    std::shared_ptr<OrvCPP::ICameraFactory> factory;
    {
        const std::lock_guard lock(m_mutex);
        factory = m_factory;
    }
    const std::shared_ptr<OrvCPP::Camera> made = factory ? factory->CreateCamera(found) : nullptr;
    if (!made)
        return found;
    m_publicCameras[found] = made;
    return made;
}

void System::cameraListChanged(const std::shared_ptr<OrvCPP::Camera>& found,
                               OrvUpdateTriggerType reason) {
    const std::shared_ptr<OrvCPP::Camera> camera = publicCamera(found);
    if (reason == OrvUpdateTriggerPluggedOut) {
        const std::lock_guard lock(m_factoryMutex);
        m_publicCameras.erase(found);
    }
    decltype(m_cameraObservers) observers;
    {
        const std::lock_guard lock(m_mutex);
        observers = m_cameraObservers;
    }
    for (const auto& observer : observers)
        observer->CameraListChanged(camera, reason);
}

OrvCPP::SimulatedHost System::GetHost() const {
    OrvCPP::SimulatedHost host;
    for (const auto& provider : providers()) {
        OrvCPP::SimulatedHost simulated = provider->simulatedHost();
        if (!simulated.adapters.empty() || !simulated.usbNodes.empty())
            host = std::move(simulated);
    }
    return host;
}

std::uint64_t System::GetCallCount() const {
    return m_callCounter->count();
}

void System::ResetCalls() {
    m_callCounter->reset();
}

void System::FailCall(std::uint64_t number, OrvErrorType code) {
    m_callCounter->failCall(number, code);
}

bool System::SetCameraPlugged(const std::string& id, bool plugged) {
    for (const auto& provider : providers()) {
        if (provider->setCameraPlugged(id, plugged))
            return true;
    }
    return false;
}

} // namespace orv
