// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/host/HostNetwork.h"
#include "engine/host/HostUsbTree.h"
#include "engine/host/UsbTopology.h"

#include <iostream>

namespace {

std::string dotted(std::uint64_t address) {
    std::string text = std::to_string(address & 0xFFU);
    for (const unsigned bits : {8U, 16U, 24U})
        text = std::to_string(address >> bits & 0xFFU) + '.' + text;
    return text;
}

void showAdapters() {
    const auto network = host::makeSystemNetwork();
    const InterfaceHandlerGigE handler({network});
    std::vector<host::AddressRow> rows;
    network->addressTable(rows);
    for (const host::AddressRow& row : rows) {
        const auto adapter = makeNetworkAdapter(row, network->interfaceEntry(row.interfaceIndex));
        std::cout << dotted(adapter.address) << "  " << handler.GetLinkSpeed(adapter.address)
                  << " bit/s  \"" << adapter.alias << "\"\n";
    }
}

/// Devices above a device, up to the controller.
void showAncestors(host::HostUsbTree& tree, host::DeviceInstance device) {
    auto ancestor = tree.parent(device);
    for (; ancestor; ancestor = tree.parent(*ancestor)) {
        const std::string id = tree.instanceId(*ancestor);
        std::cout << "    on " << id << '\n';
        if (host::isOnPciBus(id))
            break;
    }
    if (!ancestor)
        return;
    const auto bus = tree.busNumber(*ancestor);
    const auto address = tree.address(*ancestor);
    std::cout << "    controller " << host::controllerKey(bus.value, address.value) << " (results "
              << bus.result << ", " << address.result << ")\n";
}

void showUsbDevices() {
    const auto tree = host::makeSystemUsbTree();
    for (const host::DeviceInterface& hub : tree->hubs())
        std::cout << "hub " << hub.instanceId << "\n    " << hub.path
                  << (tree->openHub(hub.path) ? "" : "  cannot be opened") << '\n';
    for (const host::DeviceInterface& device : tree->devices()) {
        const bool isCamera = host::isCamera(host::parseDevicePath(device.path));
        const auto port = host::portNumber(tree->locationInfo(device.instance).value);
        std::cout << (isCamera ? "camera " : "device ") << device.path << "\n    port "
                  << (port ? std::to_string(*port) : "not known") << '\n';
        showAncestors(*tree, device.instance);
    }
}

} // namespace

/// Shows the network adapters and the USB tree of this machine, and the speed that Spanlet finds
/// for the USB interface that the argument names.
int main(int argc, char** argv) {
    if (argc > 2) {
        std::cerr << "Usage: " << argv[0] << " [USB INTERFACE ID]\n";
        return 2;
    }
    showAdapters();
    showUsbDevices();
    if (argc == 2) {
        InterfaceHandlerUSB usb;
        usb.rebuild();
        std::cout << argv[1] << "  " << usb.GetSpeed(argv[1]).value_or(0) << " bit/s\n";
    }
    return 0;
}
