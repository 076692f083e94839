// SPDX-License-Identifier: BSD-3-Clause
// The order of these headers is the platform's: initguid.h makes the next ones define their GUIDs
// and property keys.
#include <windows.h>

#include <initguid.h>

#include <devguid.h>
#include <devpkey.h>
#include <usbiodef.h>

#include "tests/engine/host/windows/SeededUsbTree.h"

#include <algorithm>
#include <stdexcept>

// The compiler's headers lack it.
extern "C" WINSETUPAPI BOOL WINAPI SetupDiSetDevicePropertyW(HDEVINFO, PSP_DEVINFO_DATA,
                                                             const DEVPROPKEY*, DEVPROPTYPE,
                                                             const BYTE*, DWORD, DWORD);

namespace {

/// Device instance ID of a device to the device above it. Wine numbers a device anew in each list.
std::map<std::wstring, DEVINST>& parents() {
    static std::map<std::wstring, DEVINST> instance;
    return instance;
}

std::wstring instanceId(DEVINST device) {
    std::array<wchar_t, MAX_DEVICE_ID_LEN + 1> id{};
    CM_Get_Device_IDW(device, id.data(), MAX_DEVICE_ID_LEN, 0);
    return id.data();
}

CONFIGRET WINAPI parentOf(DEVINST* parent, DEVINST device, ULONG) {
    const auto found = parents().find(instanceId(device));
    if (found == parents().end())
        return CR_NO_SUCH_DEVNODE;
    *parent = found->second;
    return CR_SUCCESS;
}

void require(bool done, const char* what) {
    if (!done)
        throw std::runtime_error(std::string(what) + ": error " + std::to_string(GetLastError()));
}

void setProperty(HDEVINFO set, SP_DEVINFO_DATA& device, const DEVPROPKEY& key, DEVPROPTYPE type,
                 const void* value, std::size_t size) {
    require(SetupDiSetDevicePropertyW(set, &device, &key, type, static_cast<const BYTE*>(value),
                                      static_cast<DWORD>(size), 0),
            "SetupDiSetDevicePropertyW");
}

void setProperty(HDEVINFO set, SP_DEVINFO_DATA& device, const DEVPROPKEY& key,
                 std::optional<UINT32> value) {
    if (value)
        setProperty(set, device, key, DEVPROP_TYPE_UINT32, &*value, sizeof *value);
}

/// Whether a device is present is told by a value beside its interface, which its driver sets.
void setPresent(const std::wstring& interfaceKey, DWORD present) {
    const LSTATUS result = RegSetKeyValueW(HKEY_LOCAL_MACHINE, interfaceKey.c_str(), L"Linked",
                                           REG_DWORD, &present, sizeof present);
    SetLastError(static_cast<DWORD>(result));
    require(result == ERROR_SUCCESS, "RegSetKeyValueW");
}

/// Below the interfaces' classes, a device's key is its path without backslashes.
std::wstring interfaceKeyOf(const std::wstring& path) {
    std::wstring name = path;
    std::replace(name.begin(), name.end(), L'\\', L'#');
    const std::wstring interfaceClass = path.substr(path.rfind(L'{'));
    return LR"(System\CurrentControlSet\Control\DeviceClasses\)" + interfaceClass + L'\\' + name +
           LR"(\#\Control)";
}

DWORD askDriver(DWORD code, void* input, std::size_t inputSize, void* output,
                std::size_t outputSize) {
    const HANDLE control = CreateFileW(fakehub::controlPath, GENERIC_READ | GENERIC_WRITE, 0,
                                       nullptr, OPEN_EXISTING, 0, nullptr);
    if (control == INVALID_HANDLE_VALUE)
        return GetLastError();
    DWORD returned = 0;
    const BOOL done = DeviceIoControl(control, code, input, static_cast<DWORD>(inputSize), output,
                                      static_cast<DWORD>(outputSize), &returned, nullptr);
    const DWORD result = done ? ERROR_SUCCESS : GetLastError();
    CloseHandle(control);
    return result;
}

} // namespace

// Wine has no CM_Get_Parent: the linker leads the calls here (--wrap).
extern "C" {
decltype(&CM_Get_Parent) __wrap___imp_CM_Get_Parent = parentOf;
}

SeededUsbTree::SeededUsbTree() : m_set(SetupDiCreateDeviceInfoList(nullptr, nullptr)) {
    require(m_set != INVALID_HANDLE_VALUE, "SetupDiCreateDeviceInfoList");
}

SeededUsbTree::~SeededUsbTree() {
    for (Device& device : m_devices)
        SetupDiRemoveDevice(m_set, &device.data);
    SetupDiDestroyDeviceInfoList(m_set);
    parents().clear();
    askDriver(fakehub::unplugAll, nullptr, 0, nullptr, 0);
}

DEVINST SeededUsbTree::addController(const std::wstring& name, std::optional<UINT32> bus,
                                     std::optional<UINT32> address) {
    Device& device = add(LR"(PCI\VEN_8086&DEV_A36D\)" + name, std::nullopt);
    setProperty(m_set, device.data, DEVPKEY_Device_BusNumber, bus);
    setProperty(m_set, device.data, DEVPKEY_Device_Address, address);
    return device.data.DevInst;
}

DEVINST SeededUsbTree::addHub(std::optional<DEVINST> parent, const std::wstring& name,
                              const Ports& ports) {
    Device& device = add(LR"(USB\ROOT_HUB30\)" + name, parent);
    const std::wstring path = offer(device, GUID_DEVINTERFACE_USB_HUB);
    fakehub::Hub hub{};
    path.copy(hub.path, std::size(hub.path) - 1);
    for (const auto& [number, port] : ports)
        hub.ports[number] = port;
    SetLastError(askDriver(fakehub::plugIn, &hub, sizeof hub, nullptr, 0));
    require(GetLastError() == ERROR_SUCCESS, "the fake hub driver");
    return device.data.DevInst;
}

DEVINST SeededUsbTree::addUnopenableHub(std::optional<DEVINST> parent, const std::wstring& name) {
    Device& device = add(LR"(USB\ROOT_HUB30\)" + name, parent);
    offer(device, GUID_DEVINTERFACE_USB_HUB);
    return device.data.DevInst;
}

DEVINST SeededUsbTree::addDevice(std::optional<DEVINST> parent, const std::wstring& id,
                                 const std::optional<std::wstring>& location) {
    Device& device = add(LR"(USB\)" + id, parent);
    if (location)
        setProperty(m_set, device.data, DEVPKEY_Device_LocationInfo, DEVPROP_TYPE_STRING,
                    location->c_str(), (location->size() + 1) * sizeof(wchar_t));
    offer(device, GUID_DEVINTERFACE_USB_DEVICE);
    return device.data.DevInst;
}

void SeededUsbTree::unplug(DEVINST device) {
    for (const Device& each : m_devices)
        if (each.data.DevInst == device)
            setPresent(each.interfaceKey, 0);
}

unsigned SeededUsbTree::openHandles() {
    unsigned count = ~0U;
    askDriver(fakehub::countHandles, nullptr, 0, &count, sizeof count);
    return count;
}

SeededUsbTree::Device& SeededUsbTree::add(const std::wstring& id, std::optional<DEVINST> parent) {
    Device device;
    device.data.cbSize = sizeof device.data;
    require(SetupDiCreateDeviceInfoW(m_set, id.c_str(), &GUID_DEVCLASS_USB, nullptr, nullptr, 0,
                                     &device.data),
            "SetupDiCreateDeviceInfoW");
    require(SetupDiRegisterDeviceInfo(m_set, &device.data, 0, nullptr, nullptr, nullptr),
            "SetupDiRegisterDeviceInfo");
    if (parent)
        parents()[instanceId(device.data.DevInst)] = *parent;
    m_devices.push_back(device);
    return m_devices.back();
}

std::wstring SeededUsbTree::offer(Device& device, const GUID& interfaceClass) {
    SP_DEVICE_INTERFACE_DATA offered{};
    offered.cbSize = sizeof offered;
    require(
        SetupDiCreateDeviceInterfaceW(m_set, &device.data, &interfaceClass, nullptr, 0, &offered),
        "SetupDiCreateDeviceInterfaceW");
    std::array<std::byte, 1024> buffer{};
    auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(buffer.data());
    detail->cbSize = sizeof *detail;
    require(SetupDiGetDeviceInterfaceDetailW(m_set, &offered, detail,
                                             static_cast<DWORD>(buffer.size()), nullptr, nullptr),
            "SetupDiGetDeviceInterfaceDetailW");
    const std::wstring path = detail->DevicePath;
    device.interfaceKey = interfaceKeyOf(path);
    setPresent(device.interfaceKey, 1);
    return path;
}
