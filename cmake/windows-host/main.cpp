// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/host/Host.h"

#include <cstdlib>
#include <iostream>

/// Shows what this machine tells of an adapter and of a USB controller, for a try on Windows:
/// show_interface_speeds <IPv4 address as a number in host byte order> <USB interface ID>
int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: " << argv[0] << " ADDRESS INTERFACE_ID\n";
        return 2;
    }
    const InterfaceHandlerGigE gige(host::makeNetwork({}));
    InterfaceHandlerUSB usb(host::makeUsbTree({}));
    usb.rebuild();
    std::cout << gige.GetLinkSpeed(std::strtoull(argv[1], nullptr, 0)) << " bit/s\n"
              << usb.GetSpeed(argv[2]).value_or(0) << " bit/s\n";
    return 0;
}
