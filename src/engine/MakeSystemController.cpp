// SPDX-License-Identifier: BSD-3-Clause
#include "engine/MakeSystemController.h"

#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/SystemController.h"
#include "engine/host/Host.h"
#include "sdk/OrvSystemWrapper.h"
#include "sdk/SimulatedHost.h"

std::shared_ptr<SystemController> makeSystemController(OrvCPP::OrvSystem& system) {
    const SimulatedHost simulated = simulatedHost(system);
    return std::make_shared<SystemController>(
        std::make_shared<OrvSystemWrapper>(system),
        std::make_shared<InterfaceHandlerGigE>(host::makeNetworks(simulated)),
        std::make_shared<InterfaceHandlerUSB>(host::makeUsbTrees(simulated)));
}
