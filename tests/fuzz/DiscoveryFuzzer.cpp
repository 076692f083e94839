// SPDX-License-Identifier: BSD-3-Clause
#include "gige/DiscoveredCamera.h"
#include "platform/NetworkAdapters.h"

#include <cstdlib>
#include <vector>

/// A packet that comes after the discovery command.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Of its own size, so that reading beyond its end is found.
    const std::vector<std::uint8_t> packet(data, data + size);
    const auto camera = gige::parseDiscovery(packet.data(), packet.size(), 1);
    if (!camera)
        return 0;
    if (camera->vendor.size() > 32 || camera->model.size() > 32 ||
        camera->serialNumber.size() > 16 || camera->userName.size() > 16)
        std::abort();
    if (gige::cameraId(platform::macText(camera->macAddress)).size() != 16)
        std::abort();
    return 0;
}
