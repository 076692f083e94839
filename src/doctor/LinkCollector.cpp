// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/LinkCollector.h"

#include "engine/CameraHandler.h"
#include "engine/SystemController.h"
#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "features/OptionalFeatures.h"
#include "losses/CameraAdapter.h"

#include <algorithm>
#include <map>

namespace doctor {

namespace {

/// Nothing for a camera without a limit, without a message.
Number limitOf(const CameraHandler& camera) {
    if (!camera.isOpened() || !BandwidthLimit(camera.getFeatureController()).find())
        return std::nullopt;
    const std::int64_t limit = camera.getBandwidth();
    return limit > 0 ? Number(static_cast<std::uint64_t>(limit)) : std::nullopt;
}

StreamingCamera readCamera(const CameraHandler& camera) {
    const FeatureController& features = *camera.getFeatureController();
    StreamingCamera it;
    it.id = camera.getCameraInfo().cameraId;
    it.isOpened = camera.isOpened();
    it.warning = camera.getWarningText();
    it.limit = limitOf(camera);
    it.packetSize = readCount(features, firstStreamModule, "GVSPPacketSize");
    it.usbSpeed = readCount(features, localDeviceModule, "DeviceConnectionSpeed");
    return it;
}

void addInterface(LinkEvidence& link, const SystemController& controller,
                  const InterfaceCameras& interface) {
    const CameraList& cameras = interface.cameras;
    const CameraInfo info = cameras.front()->getCameraInfo();
    link.interfaces.push_back(info.interfaceId.empty() ? info.interfaceName : info.interfaceId);
    link.isUsb = controller.getInterfaceType(info.interfaceName) == OrvTransportLayerTypeU3V;
    link.speed = std::max(link.speed, controller.getInterfaceSpeed(info.interfaceName));
    link.otherTraffic += interface.otherTraffic;
    for (const auto& camera : cameras) {
        if (link.adapter.empty())
            link.adapter = adapterOf(*camera->getFeatureController());
        link.cameras.push_back(readCamera(*camera));
        if (!link.mtu)
            link.mtu =
                readCount(*camera->getFeatureController(), interfaceModule, "GevInterfaceMTU");
    }
}

} // namespace

std::vector<LinkEvidence> readLinks(const SystemController& controller,
                                    const std::vector<InterfaceCameras>& interfaces) {
    std::vector<LinkEvidence> links;
    std::map<std::string, std::size_t> positions;
    for (const InterfaceCameras& interface : interfaces) {
        const std::string key =
            controller.getInterfaceLink(interface.cameras.front()->getCameraInfo().interfaceName);
        // An interface whose link is not known shares it with none.
        const auto known = key.empty() ? positions.end() : positions.find(key);
        const std::size_t position = known == positions.end() ? links.size() : known->second;
        if (position == links.size())
            links.emplace_back();
        if (!key.empty())
            positions[key] = position;
        addInterface(links[position], controller, interface);
    }
    return links;
}

} // namespace doctor
