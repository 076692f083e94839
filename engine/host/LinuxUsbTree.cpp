// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/HostUsbTree.h"

namespace host {

namespace {

/// A tree without devices: on Linux the cameras are simulated ones so far, and their USB tree comes
/// from their scenario.
class LinuxUsbTree : public HostUsbTree {
public:
    std::vector<DeviceInterface> hubs() override { return {}; }
    std::vector<DeviceInterface> devices() override { return {}; }
    std::optional<DeviceInstance> parent(DeviceInstance) override { return std::nullopt; }
    std::string instanceId(DeviceInstance) override { return {}; }
    Property<std::u16string> locationInfo(DeviceInstance) override { return {noSuchDevice, {}}; }
    Property<std::uint32_t> busNumber(DeviceInstance) override { return {noSuchDevice, 0}; }
    Property<std::uint32_t> address(DeviceInstance) override { return {noSuchDevice, 0}; }
    std::unique_ptr<UsbHub> openHub(const std::string&) override { return nullptr; }
};

} // namespace

std::shared_ptr<HostUsbTree> makeSystemUsbTree() {
    return std::make_shared<LinuxUsbTree>();
}

} // namespace host
