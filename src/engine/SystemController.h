// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"
#include "engine/CameraList.h"
#include "sdk/WrapperDeclarations.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class InterfaceHandlerGigE;
class InterfaceHandlerUSB;

/// Transport-layer type to the name that is shown for it.
const std::map<OrvTransportLayerType, std::string>& transportLayerTypeNames();

/// The cameras that SystemController::enumerate() would open, in the SDK's order; opens none. Logs
/// the others, and answers none when the SDK fails.
std::vector<std::shared_ptr<OrvCameraWrapper>> managedCameras(OrvSystemWrapper& system);

/// The cameras of the host, grouped by the interface through which they stream, and the speeds of
/// those interfaces. An interface is known by its ID (the name that the SDK gives it) or by its
/// index in the interface list, which is ordered by ID. Failures are logged and leave cameras out;
/// nothing throws. Bound to the GUI thread.
class SystemController {
public:
    /// Empty handlers are replaced by new ones that ask the operating system.
    explicit SystemController(std::shared_ptr<OrvSystemWrapper> system,
                              std::shared_ptr<InterfaceHandlerGigE> gigeHandler = {},
                              std::shared_ptr<InterfaceHandlerUSB> usbHandler = {});
    ~SystemController();

    SystemController(const SystemController&) = delete;
    SystemController& operator=(const SystemController&) = delete;

    /// Finds and opens all cameras again and returns the new interface list. A handler of the old
    /// list closes its camera when its last owner releases it.
    std::vector<CameraList> enumerate();
    /// Bits per second: the user's maximum where one is set, else the host's figure; 0 when
    /// unknown.
    std::uint64_t getInterfaceSpeed(const std::string& interfaceId) const;
    /// Identifies the network adapter or USB host controller that carries an interface:
    /// interfaces with the same text share it, and its speed. Empty when it is not known.
    std::string getInterfaceLink(const std::string& interfaceId) const;
    OrvTransportLayerType getInterfaceType(const std::string& interfaceId) const;
    /// Overrides an interface's speed, in bits per second; 0 removes the override.
    void setMaxBandwidth(const std::string& interfaceId, std::uint64_t bitsPerSecond);
    void clearMaxBandwidths();

    /// Starts acquisition on the chosen cameras of an interface, after adjusting their packet
    /// sizes when asked to. An index out of range does nothing.
    void startBenchmark(int interfaceIndex, bool adjustPacketSize);
    /// Stops the chosen cameras of an interface, and those that were chosen when they were started.
    void stopBenchmark(int interfaceIndex);

    /// Divides the bandwidth of an interface among its chosen cameras. The margins are fractions
    /// (0.1 is 10 %): of the interface's bandwidth, which is left free, and of what a camera
    /// needs, which is added. \p interfaceId begins messages. An index out of range
    /// does nothing. Must not run while the cameras stream.
    void autoSetInterface(const std::string& interfaceId, int interfaceIndex, bool adjustPacketSize,
                          double interfaceSafetyMargin, double cameraSafetyMargin);

    /// "major.minor.patch" of the camera SDK; empty when it cannot be read.
    std::string getSdkVersion() const;

private:
    void addCamera(const std::shared_ptr<OrvCameraWrapper>& camera,
                   std::map<std::string, CameraList>& groups);
    void recordInterface(const OrvInterfaceWrapper& interface, const std::string& id,
                         const CameraHandler& handler);
    CameraList camerasOf(int interfaceIndex) const;

    std::shared_ptr<OrvSystemWrapper> m_system;
    std::shared_ptr<InterfaceHandlerGigE> m_gigeHandler;
    std::shared_ptr<InterfaceHandlerUSB> m_usbHandler;
    std::vector<CameraList> m_interfaces;
    std::map<std::string, OrvTransportLayerType> m_interfaceTypes;
    std::map<std::string, std::uint64_t> m_subnetAddresses;
    std::map<std::string, std::uint64_t> m_maxBandwidths;
};
