// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

/// Answers of a hub for one port.
struct HubPort {
    bool answersFirst;
    bool answersSecond;
    UCHAR status;
    UCHAR speed;
    ULONG flags;
};

using Ports = std::map<ULONG, HubPort>;

/// Devices that Wine's device setup and configuration manager find in the registry, their places in
/// the tree, and the answers of hubs. Removed with the object. Throws std::runtime_error on real
/// Windows, the registry of which it would change.
class SeededUsbTree {
public:
    SeededUsbTree();
    ~SeededUsbTree();
    SeededUsbTree(const SeededUsbTree&) = delete;
    SeededUsbTree& operator=(const SeededUsbTree&) = delete;

    /// \p name is the last part of the device instance ID. The controller lacks a property that is
    /// empty.
    DEVINST addController(const std::wstring& name, std::optional<UINT32> bus,
                          std::optional<UINT32> address);
    /// A hub that answers for \p ports, or that is listed and cannot be opened.
    DEVINST addHub(std::optional<DEVINST> parent, const std::wstring& name, const Ports& ports,
                   bool opens = true);
    /// \p id is the device instance ID without "USB\", for example L"VID_4D52&PID_0001\\A1".
    DEVINST addDevice(std::optional<DEVINST> parent, const std::wstring& id,
                      const std::optional<std::wstring>& location);
    /// Keeps the device registered, but not present.
    void unplug(DEVINST device);

    /// Number of open handles of hubs.
    static unsigned openHandles();

private:
    struct Device {
        SP_DEVINFO_DATA data{};
        std::wstring interfaceKey;
    };

    Device& add(const std::wstring& id, std::optional<DEVINST> parent);
    /// Answers the path under which the device is found and opened.
    std::wstring offer(Device& device, const GUID& interfaceClass);

    HDEVINFO m_set;
    std::vector<Device> m_devices;
};
