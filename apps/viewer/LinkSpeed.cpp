// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/LinkSpeed.h"

#include "OrvCPP/Feature.h"
#include "OrvCPP/Interface.h"
#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/host/Host.h"
#include "sdk/SdkQuery.h"
#include "sdk/SimulatedHost.h"

namespace viewer {

namespace {

constexpr double bitsPerMegabyte = 8e6;

/// Bits per second; 0 when it is not known.
std::uint64_t adapterSpeed(const SimulatedHost& simulated, const OrvCPP::Interface& interface) {
    std::shared_ptr<OrvCPP::Feature> feature;
    std::int64_t address = 0;
    if (interface.GetFeatureByName("GevInterfaceSubnetIPAddress", feature) != OrvErrorSuccess ||
        !feature || feature->GetValue(address) != OrvErrorSuccess)
        return 0;
    const InterfaceHandlerGigE adapters(host::makeNetworks(simulated));
    return adapters.GetLinkSpeed(static_cast<std::uint64_t>(address));
}

/// Bits per second of the controller whose PCI location the interface's name or ID has; 0 when it
/// is not known.
std::uint64_t controllerSpeed(const SimulatedHost& simulated, const OrvCPP::Interface& interface) {
    InterfaceHandlerUSB controllers(host::makeUsbTrees(simulated));
    controllers.rebuild();
    for (const auto ask : {&OrvCPP::Interface::GetName, &OrvCPP::Interface::GetID}) {
        std::string text;
        SdkQuery::text(&interface, text, ask);
        if (const auto speed = controllers.GetSpeed(text))
            return *speed;
    }
    return 0;
}

} // namespace

std::optional<double> linkMegabytesPerSecond(const OrvCPP::OrvSystem& system,
                                             const OrvCPP::Interface& interface) {
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
    interface.GetType(type);
    std::uint64_t bitsPerSecond = 0;
    if (type == OrvTransportLayerTypeGEV)
        bitsPerSecond = adapterSpeed(simulatedHost(system), interface);
    else if (type == OrvTransportLayerTypeU3V)
        bitsPerSecond = controllerSpeed(simulatedHost(system), interface);
    if (bitsPerSecond == 0)
        return std::nullopt;
    return static_cast<double>(bitsPerSecond) / bitsPerMegabyte;
}

} // namespace viewer
