// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "engine/FrameObserver.h"
#include "engine/GigEStream.h"
#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "logging/Log.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvStreamWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"

#include <vector>

namespace {

struct UsbLocation {
    std::string bus;
    std::string port;
};

/// Reads "bus/port/..." behind a prefix of two characters; what is missing stays empty.
UsbLocation parseUsbLocation(const std::string& text) {
    constexpr std::size_t prefix = 2;
    if (text.size() <= prefix)
        return {};
    const std::size_t busEnd = text.find('/', prefix);
    if (busEnd == std::string::npos)
        return {text.substr(prefix), {}};
    const std::size_t portEnd = text.find('/', busEnd + 1);
    return {text.substr(prefix, busEnd - prefix), text.substr(busEnd + 1, portEnd - busEnd - 1)};
}

} // namespace

CameraHandler::CameraHandler(std::shared_ptr<OrvCameraWrapper> camera,
                             std::shared_ptr<FeatureController> features,
                             std::chrono::milliseconds packetSizeLimit)
    : m_camera(camera ? std::move(camera) : std::make_shared<OrvCameraWrapper>()),
      m_packetSizeLimit(packetSizeLimit), m_features(std::move(features)) {
    readIdentity();
    openCamera();
    // A controller of a camera that is not open would log a warning for each module.
    const bool ownsFeatures = !m_features;
    if (ownsFeatures)
        m_features =
            std::make_shared<FeatureController>(m_opened ? m_camera : nullptr, displayName());

    // How the interface is read depends on the type of the transport layer.
    auto layer = std::make_shared<OrvTransportLayerWrapper>();
    const OrvErrorType layerFound = m_camera->GetTransportLayer(layer);
    OrvErrorType typeRead = layerFound;
    if (layerFound == OrvErrorSuccess)
        typeRead = layer->GetType(m_info.transportLayerType);

    readInterface();
    // The display name of a USB camera begins with its port, which is read from a feature.
    if (ownsFeatures)
        m_features->setMessagePrefix(displayName());
    readTransportLayer(layerFound, *layer, typeRead);

    const bool isGigE = m_info.transportLayerType == OrvTransportLayerTypeGEV;
    if (m_opened && isGigE)
        findStream();
    m_bandwidthLimit = std::make_unique<BandwidthLimit>(m_features);
    m_observer =
        std::make_shared<FrameObserver>(m_camera, firstFrameIdOf(m_info.transportLayerType));
}

std::string CameraHandler::displayName() const {
    const bool anonymous =
        m_info.modelName.empty() && m_info.serialNumber.empty() && m_info.cameraId.empty();
    return anonymous ? m_info.cameraName : cameraDisplayText(m_info);
}

void CameraHandler::readIdentity() {
    OrvErrorType result = m_camera->GetName(m_info.cameraName);
    if (result != OrvErrorSuccess)
        logWarning("Cannot get camera name", result);
    result = m_camera->GetModel(m_info.modelName);
    if (result != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get model name.", result);
    result = m_camera->GetID(m_info.cameraId);
    if (result != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get camera ID.", result);
    // A camera without an ID has no usable serial number either, so the ID's result decides.
    m_camera->GetSerialNumber(m_info.serialNumber);
    if (result != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get serial number.", result);
}

void CameraHandler::openCamera() {
    const OrvErrorType result = m_camera->Open(OrvAccessModeFull);
    m_opened = result == OrvErrorSuccess;
    m_openedHere = m_opened;
    if (m_opened)
        return;

    OrvAccessModeType permitted = OrvAccessModeNone;
    const bool known = m_camera->GetPermittedAccess(permitted) == OrvErrorSuccess;
    if (known && (permitted & OrvAccessModeFull) == 0) {
        m_warningText = "Camera cannot be opened in FULL ACCESS mode, maybe it has already been "
                        "opened by another application.";
        logWarning(displayName() + ": Cannot open the camera, full access denied.");
    } else {
        m_warningText = "Camera cannot be opened";
        logWarning(displayName() + ": Cannot open the camera.", result);
    }
}

void CameraHandler::readInterface() {
    auto interface = std::make_shared<OrvInterfaceWrapper>();
    const OrvErrorType found = m_camera->GetInterface(interface);
    if (found != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get interface ptr.", found);
    if (m_info.transportLayerType == OrvTransportLayerTypeU3V)
        readUsbLocation();
    if (found != OrvErrorSuccess)
        return;

    OrvErrorType result = interface->GetName(m_info.interfaceName);
    if (result != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get interface name.", result);
    result = interface->GetID(m_info.interfaceId);
    if (result != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get interface ID.", result);
}

void CameraHandler::readUsbLocation() {
    const FeatureValue value =
        m_openedHere ? m_features->getFeatureValue(localDeviceModule, "DeviceLocation")
                     : FeatureValue();
    const UsbLocation location = parseUsbLocation(textOf(value).value_or(std::string()));
    if (!location.bus.empty())
        m_info.interfaceName = "USB bus " + location.bus;
    if (location.port.empty())
        logWarning(displayName() + ": Cannot find USB port path.");
    else
        m_info.portPath = "Port " + location.port;
}

void CameraHandler::readTransportLayer(OrvErrorType found, const OrvTransportLayerWrapper& layer,
                                       OrvErrorType typeRead) {
    if (found != OrvErrorSuccess) {
        logWarning(displayName() + ": Cannot get transport layer ptr. for camera.", found);
        return;
    }
    OrvErrorType result = layer.GetName(m_info.transportLayerName);
    if (result != OrvErrorSuccess)
        logDebug(displayName() + ": Cannot get transport layer name.", result);
    result = layer.GetID(m_info.transportLayerId);
    if (result != OrvErrorSuccess)
        logDebug(displayName() + ": Cannot get transport layer ID.", result);
    result = layer.GetPath(m_info.transportLayerPath);
    if (result != OrvErrorSuccess)
        logDebug(displayName() + ": Cannot get transport layer path.", result);
    result = layer.GetVendor(m_info.transportLayerVendor);
    if (result != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get transport layer vendor.", result);
    if (typeRead != OrvErrorSuccess)
        logWarning(displayName() + ": Cannot get transport layer type.", typeRead);
}

void CameraHandler::findStream() {
    std::vector<std::shared_ptr<OrvStreamWrapper>> streams;
    const OrvErrorType result = m_camera->GetStreams(streams);
    if (result != OrvErrorSuccess || streams.empty()) {
        logError(displayName() + ": Cannot get streams.", result);
        return;
    }
    m_stream = std::make_unique<GigEStream>(streams.front(), displayName(), m_packetSizeLimit);
    checkDriver();
}
