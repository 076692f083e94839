// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/SimulatedProvider.h"

#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/simulated/CameraFeatures.h"
#include "orvcpp/simulated/HostBuilder.h"
#include "orvcpp/simulated/SimulatedModuleFeatures.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace orv::simulated {

namespace {

[[noreturn]] void failAt(const std::string& origin, const std::string& expected,
                         const std::string& found) {
    throw FormatError(QStringLiteral("%1: expected %2, found \"%3\"")
                          .arg(QString::fromStdString(origin), QString::fromStdString(expected),
                               QString::fromStdString(found)));
}

/// The features of one camera's own modules.
struct CameraFeatureSets {
    FeatureSet camera;
    FeatureSet localDevice;
    FeatureSet stream;

    FeatureSet& named(const std::string& module) {
        if (module == "Local Device")
            return localDevice;
        return module == "Stream0" ? stream : camera;
    }
};

void addFaults(CameraFeatureSets& sets, const FaultData& faults) {
    for (const FeatureFault& fault : faults.features) {
        FeatureNode* node = sets.named(fault.module).find(fault.name);
        if (!node)
            failAt(fault.origin, "a feature of the module \"" + fault.module + "\"", fault.name);
        node->failing(fault.code, fault.onGet, fault.onSet);
    }
    for (const CommandFault& fault : faults.stuckCommands) {
        FeatureNode* node = sets.camera.find(fault.name);
        node = node ? node : sets.stream.find(fault.name);
        if (!node || node->type() != OrvFeatureDataCommand)
            failAt(fault.origin, "names of commands of the camera or its stream", fault.name);
        node->stuck();
    }
}

} // namespace

SimulatedProvider::SimulatedProvider(const Scenario& scenario, ProviderHost& host,
                                     std::shared_ptr<CallCounter> callCounter)
    : m_scenario(scenario), m_host(host),
      m_calls(std::make_shared<ProviderCalls>(
          std::move(callCounter), std::chrono::microseconds(scenario.callDelayMicroseconds))) {
    buildTransportLayers();
    buildInterfaces();
    buildCameras();
}

SimulatedProvider::~SimulatedProvider() {
    shutDown();
}

std::shared_ptr<FeatureModule> SimulatedProvider::makeModule(FeatureSet features,
                                                             std::shared_ptr<Device> device) const {
    return std::make_shared<FeatureModule>(m_calls, std::move(device), std::move(features));
}

void SimulatedProvider::buildTransportLayers() {
    for (std::size_t i = 0; i < m_scenario.transportLayers.size(); ++i)
        m_layers.push_back(std::make_shared<SimulatedTransportLayer>(
            makeModule(makeTransportLayerFeatures(m_scenario, i), std::make_shared<Device>()),
            m_scenario.transportLayers[i], m_host));
}

void SimulatedProvider::buildInterfaces() {
    for (std::size_t i = 0; i < m_scenario.interfaces.size(); ++i) {
        const InterfaceData& data = m_scenario.interfaces[i];
        const auto& layer = m_layers[data.transportLayer];
        m_interfaces.push_back(std::make_shared<SimulatedInterface>(
            makeModule(makeInterfaceFeatures(m_scenario, i), std::make_shared<Device>()), data,
            m_scenario.transportLayers[data.transportLayer].type, layer, m_host));
        layer->add(std::shared_ptr<OrvCPP::Interface>(m_interfaces.back()));
    }
}

std::shared_ptr<Link> SimulatedProvider::linkOf(const InterfaceData& data) {
    std::string key = "interface " + data.id;
    if (data.adapter)
        key = "adapter " + std::to_string(*data.adapter);
    else if (data.controller)
        key = "controller " + std::to_string(*data.controller);
    std::shared_ptr<Link>& link = m_links[key];
    if (!link)
        link = std::make_shared<Link>(data.carriedBitsPerSecond / 8);
    return link;
}

std::shared_ptr<SimulatedCamera> SimulatedProvider::makeCamera(const CameraData& data) {
    const InterfaceData& interface = m_scenario.interfaces[data.interface];
    const TransportLayerData& layer = m_scenario.layerOf(data);
    const bool isUsb = layer.type == OrvTransportLayerTypeU3V;
    const auto device =
        std::make_shared<CameraDevice>(m_calls, linkOf(interface), m_patterns, data, isUsb);
    CameraSettings& settings = device->settings();
    CameraFeatureSets sets{makeCameraFeatures(settings, device->statistics(), isUsb),
                           makeLocalDeviceFeatures(m_scenario, settings),
                           makeStreamFeatures(settings, device->statistics(), isUsb)};
    addFaults(sets, data.faults);
    SimulatedCameraParts parts;
    parts.device = device;
    parts.localDevice = makeModule(std::move(sets.localDevice), device);
    parts.stream = makeModule(std::move(sets.stream), device);
    parts.layer = m_layers[interface.transportLayer];
    parts.interface = m_interfaces[data.interface];
    parts.type = layer.type;
    parts.extendedId = layer.id + ':' + interface.id + ':' + data.id;
    // A call may outlive the provider, so it does not capture it.
    parts.openStateChanged = [events = m_events, &host = m_host](const auto& camera) {
        events->post(
            [camera, &host] { host.cameraListChanged(camera, OrvUpdateTriggerOpenStateChanged); });
    };
    return std::make_shared<SimulatedCamera>(makeModule(std::move(sets.camera), device),
                                             std::move(parts));
}

void SimulatedProvider::buildCameras() {
    m_cameras.reserve(m_scenario.cameras.size());
    for (const CameraData& data : m_scenario.cameras) {
        const InterfaceData& interface = m_scenario.interfaces[data.interface];
        const std::shared_ptr<SimulatedCamera> camera = makeCamera(data);
        m_cameras.push_back(camera);
        m_interfaces[data.interface]->add(camera);
        m_layers[interface.transportLayer]->add(camera);
    }
}

OrvErrorType SimulatedProvider::start() {
    for (const auto& camera : m_cameras) {
        if (const auto seconds = camera->device().data().faults.vanishAfterSeconds)
            m_events->post([this, camera] { setPlugged(camera, false); },
                           Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                              std::chrono::duration<double>(*seconds)));
    }
    return OrvErrorSuccess;
}

void SimulatedProvider::shutDown() {
    m_calls->end();
    for (const auto& camera : m_cameras)
        camera->device().close();
    m_events->stop();
    // Ends the threads here: cameras may keep their links alive.
    for (const auto& [key, link] : m_links)
        link->stop();
}

std::vector<Listed<OrvCPP::TransportLayer>> SimulatedProvider::transportLayers() const {
    std::vector<Listed<OrvCPP::TransportLayer>> listed;
    for (std::size_t i = 0; i < m_layers.size(); ++i)
        listed.push_back({m_layers[i], m_scenario.transportLayers[i].id, {}});
    return listed;
}

std::vector<Listed<OrvCPP::Interface>> SimulatedProvider::interfaces() const {
    std::vector<Listed<OrvCPP::Interface>> listed;
    for (std::size_t i = 0; i < m_interfaces.size(); ++i)
        listed.push_back({m_interfaces[i], m_scenario.interfaces[i].id, {}});
    return listed;
}

std::vector<Listed<OrvCPP::Camera>> SimulatedProvider::cameras() const {
    std::vector<Listed<OrvCPP::Camera>> listed;
    for (const auto& camera : m_cameras) {
        if (camera->device().isPlugged())
            listed.push_back({camera, camera->device().data().id, camera->extendedId()});
    }
    return listed;
}

OrvCPP::SimulatedHost SimulatedProvider::simulatedHost() const {
    return buildHost(m_scenario);
}

void SimulatedProvider::setPlugged(const std::shared_ptr<SimulatedCamera>& camera, bool plugged) {
    if (!camera->device().setPlugged(plugged))
        return;
    const OrvUpdateTriggerType reason =
        plugged ? OrvUpdateTriggerPluggedIn : OrvUpdateTriggerPluggedOut;
    m_events->post([this, camera, reason] { m_host.cameraListChanged(camera, reason); });
}

bool SimulatedProvider::setCameraPlugged(const std::string& id, bool plugged) {
    const auto found = std::find_if(m_cameras.begin(), m_cameras.end(), [&](const auto& camera) {
        return camera->device().data().id == id;
    });
    if (found == m_cameras.end())
        return false;
    setPlugged(*found, plugged);
    return true;
}

} // namespace orv::simulated
