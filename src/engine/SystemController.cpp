// SPDX-License-Identifier: BSD-3-Clause
#include "engine/SystemController.h"

#include "engine/CameraHandler.h"
#include "engine/InterfaceAutoSet.h"
#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/Truncation.h"
#include "logging/Log.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFeatureWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvSystemWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

/// Vendors whose transport layers are managed, and the abbreviation in their transport layers'
/// names.
const std::map<std::string, std::string>& vendorAbbreviations() {
    static const std::map<std::string, std::string> table{{"Meridane Technologies", "MRD"}};
    return table;
}

bool isSupportedType(OrvTransportLayerType type) {
    return type == OrvTransportLayerTypeGEV || type == OrvTransportLayerTypeU3V;
}

std::string cameraName(const OrvCameraWrapper& camera) {
    std::string name;
    const OrvErrorType result = camera.GetName(name);
    if (result == OrvErrorSuccess)
        return name;
    logWarning("Could not get Camera Name", result);
    return {};
}

/// Whether cameras behind this transport layer are managed; logs the layer when they are not.
bool isSupported(const OrvTransportLayerWrapper& layer) {
    std::string vendor;
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
    std::string name;
    const bool vendorRead = layer.GetVendor(vendor) == OrvErrorSuccess;
    const bool typeRead = layer.GetType(type) == OrvErrorSuccess;
    const bool nameRead = layer.GetName(name) == OrvErrorSuccess;

    const auto abbreviation = vendorAbbreviations().find(vendor);
    const bool known = abbreviation != vendorAbbreviations().end() &&
                       name.find(abbreviation->second) != std::string::npos;
    if (vendorRead && typeRead && nameRead && known && isSupportedType(type))
        return true;
    logDebug("TL not supported: [" + name +
             "] type=" + std::to_string(static_cast<std::int32_t>(type)));
    return false;
}

/// The interface of a camera that is managed; nothing, after a log line, of another one.
std::shared_ptr<OrvInterfaceWrapper> managedInterface(const OrvCameraWrapper& camera) {
    auto layer = std::make_shared<OrvTransportLayerWrapper>();
    OrvErrorType result = camera.GetTransportLayer(layer);
    if (result != OrvErrorSuccess) {
        logWarning("Could not get the TransportLayerPtr from camera: '" + cameraName(camera) + "'",
                   result);
        return {};
    }
    if (!isSupported(*layer))
        return {};
    auto interface = std::make_shared<OrvInterfaceWrapper>();
    result = camera.GetInterface(interface);
    if (result == OrvErrorSuccess)
        return interface;
    logWarning("Could not get the InterfacePtr from camera: '" + cameraName(camera) + "'", result);
    return {};
}

std::optional<std::uint64_t> known(std::uint64_t speed) {
    return speed != 0 ? std::optional(speed) : std::nullopt;
}

std::string dottedDecimal(std::uint64_t address) {
    std::string text;
    for (const int shift : {24, 16, 8, 0})
        text += (text.empty() ? "" : ".") + std::to_string((address >> shift) & 0xFF);
    return text;
}

/// Address of a GigE interface, in host byte order; nothing when it cannot be read.
std::optional<std::uint64_t> subnetAddress(const OrvInterfaceWrapper& interface,
                                           const std::string& interfaceName) {
    auto feature = std::make_shared<OrvFeatureWrapper>();
    std::int64_t value = 0;
    if (interface.GetFeatureByName("GevInterfaceSubnetIPAddress", feature) != OrvErrorSuccess ||
        feature->GetValue(value) != OrvErrorSuccess)
        return std::nullopt;
    const auto address = static_cast<std::uint64_t>(value);
    logDebug("Interface Name: '" + interfaceName + "', IP Address: '" + dottedDecimal(address) +
             "'");
    return address;
}

} // namespace

const std::map<OrvTransportLayerType, std::string>& transportLayerTypeNames() {
    static const std::map<OrvTransportLayerType, std::string> names{
        {OrvTransportLayerTypeGEV, "GigE"},
        {OrvTransportLayerTypeU3V, "USB"},
        {OrvTransportLayerTypeMixed, "Mixed"}};
    return names;
}

std::vector<std::shared_ptr<OrvCameraWrapper>> managedCameras(OrvSystemWrapper& system) {
    std::vector<std::shared_ptr<OrvCameraWrapper>> cameras;
    if (system.GetCameras(cameras) != OrvErrorSuccess)
        return {};
    cameras.erase(std::remove_if(cameras.begin(), cameras.end(),
                                 [](const auto& camera) { return !managedInterface(*camera); }),
                  cameras.end());
    return cameras;
}

SystemController::SystemController(std::shared_ptr<OrvSystemWrapper> system,
                                   std::shared_ptr<InterfaceHandlerGigE> gigeHandler,
                                   std::shared_ptr<InterfaceHandlerUSB> usbHandler)
    : m_system(std::move(system)),
      m_gigeHandler(gigeHandler ? std::move(gigeHandler)
                                : std::make_shared<InterfaceHandlerGigE>()),
      m_usbHandler(usbHandler ? std::move(usbHandler) : std::make_shared<InterfaceHandlerUSB>()) {}

SystemController::~SystemController() = default;

std::vector<CameraList> SystemController::enumerate() {
    // Types and addresses are kept: the GigE handler finds speeds by the addresses that the
    // adapters had when it was made.
    m_interfaces.clear();
    m_usbHandler->rebuild();

    std::vector<std::shared_ptr<OrvCameraWrapper>> cameras;
    if (m_system->GetCameras(cameras) != OrvErrorSuccess)
        return {};
    std::map<std::string, CameraList> groups;
    for (const auto& camera : cameras)
        addCamera(camera, groups);
    for (auto& group : groups)
        m_interfaces.push_back(std::move(group.second));
    return m_interfaces;
}

void SystemController::addCamera(const std::shared_ptr<OrvCameraWrapper>& camera,
                                 std::map<std::string, CameraList>& groups) {
    const std::shared_ptr<OrvInterfaceWrapper> interface = managedInterface(*camera);
    if (!interface)
        return;
    const std::shared_ptr<CameraHandler> handler = m_system->CreateCameraHandler(camera);
    handler->checkUsbSpeedLimit();
    const std::string id = handler->getCameraInfo().interfaceName;
    groups[id].push_back(handler);
    recordInterface(*interface, id, *handler);
}

void SystemController::recordInterface(const OrvInterfaceWrapper& interface, const std::string& id,
                                       const CameraHandler& handler) {
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
    if (interface.GetType(type) != OrvErrorSuccess)
        return;
    m_interfaceTypes.emplace(id, type);
    if (type != OrvTransportLayerTypeGEV)
        return;
    if (const auto address = subnetAddress(interface, id))
        m_subnetAddresses.emplace(id, *address);
    handler.checkLinkSpeed(getInterfaceSpeed(id));
}

std::uint64_t SystemController::getInterfaceSpeed(const std::string& interfaceId) const {
    const auto maximum = m_maxBandwidths.find(interfaceId);
    if (maximum != m_maxBandwidths.end() && maximum->second != 0)
        return maximum->second;

    const auto type = m_interfaceTypes.find(interfaceId);
    if (type == m_interfaceTypes.end()) {
        logDebug("Interface type not found for interface: " + interfaceId);
        return 0;
    }
    std::optional<std::uint64_t> speed;
    if (type->second == OrvTransportLayerTypeGEV) {
        const auto address = m_subnetAddresses.find(interfaceId);
        if (address != m_subnetAddresses.end())
            speed = known(m_gigeHandler->GetLinkSpeed(address->second));
    } else if (type->second == OrvTransportLayerTypeU3V) {
        speed = m_usbHandler->GetSpeed(interfaceId);
    }
    if (!speed)
        logWarning("Interface speed not found for interface '" + interfaceId + "'");
    return speed.value_or(0);
}

std::string SystemController::getInterfaceLink(const std::string& interfaceId) const {
    const auto type = m_interfaceTypes.find(interfaceId);
    if (type == m_interfaceTypes.end())
        return {};
    std::string key;
    if (type->second == OrvTransportLayerTypeGEV) {
        const auto address = m_subnetAddresses.find(interfaceId);
        if (address != m_subnetAddresses.end())
            key = m_gigeHandler->adapterKey(address->second);
    } else if (type->second == OrvTransportLayerTypeU3V) {
        key = m_usbHandler->controllerKey(interfaceId);
    }
    return key.empty() ? key : std::to_string(type->second) + ' ' + key;
}

OrvTransportLayerType SystemController::getInterfaceType(const std::string& interfaceId) const {
    const auto type = m_interfaceTypes.find(interfaceId);
    if (type != m_interfaceTypes.end())
        return type->second;
    logDebug("Interface type not found for interface: " + interfaceId);
    return OrvTransportLayerTypeUnknown;
}

void SystemController::setMaxBandwidth(const std::string& interfaceId,
                                       std::uint64_t bitsPerSecond) {
    m_maxBandwidths[interfaceId] = bitsPerSecond;
}

void SystemController::clearMaxBandwidths() {
    m_maxBandwidths.clear();
}

CameraList SystemController::camerasOf(int interfaceIndex) const {
    const auto index = static_cast<std::size_t>(interfaceIndex);
    return interfaceIndex >= 0 && index < m_interfaces.size() ? m_interfaces[index] : CameraList();
}

void SystemController::startBenchmark(int interfaceIndex, bool adjustPacketSize) {
    CameraList chosen = camerasOf(interfaceIndex);
    chosen.erase(std::remove_if(chosen.begin(), chosen.end(),
                                [](const auto& camera) { return !camera->isOpened(); }),
                 chosen.end());
    // Before the first camera streams: test packets of a negotiation need free bandwidth.
    for (const auto& camera : chosen)
        camera->adjustPacketSize(adjustPacketSize);
    for (const auto& camera : chosen)
        camera->startAcquisition();
}

void SystemController::stopBenchmark(int interfaceIndex) {
    for (const auto& camera : camerasOf(interfaceIndex)) {
        if (camera->isOpened() || camera->isAcquiring())
            camera->stopAcquisition();
    }
}

void SystemController::autoSetInterface(const std::string& interfaceId, int interfaceIndex,
                                        bool adjustPacketSize, double interfaceSafetyMargin,
                                        double cameraSafetyMargin) {
    const CameraList cameras = camerasOf(interfaceIndex);
    if (cameras.empty())
        return;
    const std::uint64_t bitsPerSecond =
        getInterfaceSpeed(cameras.front()->getCameraInfo().interfaceName);
    const auto bytesPerSecond =
        static_cast<double>(truncated(static_cast<double>(bitsPerSecond) * 0.125));
    const std::int64_t available =
        truncated(bytesPerSecond - bytesPerSecond * interfaceSafetyMargin);
    InterfaceAutoSet(interfaceId, available, cameraSafetyMargin).run(cameras, adjustPacketSize);
}

std::string SystemController::getSdkVersion() const {
    OrvVersionInfo version;
    if (m_system->QueryVersion(version) != OrvErrorSuccess)
        return {};
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.patch);
}
