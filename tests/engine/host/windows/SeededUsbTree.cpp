// SPDX-License-Identifier: BSD-3-Clause
// The order of these headers is the platform's: initguid.h makes the next ones define their GUIDs
// and property keys.
#include <windows.h>

#include <initguid.h>

#include <devguid.h>
#include <devpkey.h>
#include <usbioctl.h>
#include <usbiodef.h>

#include "tests/engine/host/windows/SeededUsbTree.h"

#include <algorithm>
#include <array>
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
    require(RegSetKeyValueW(HKEY_LOCAL_MACHINE, interfaceKey.c_str(), L"Linked", REG_DWORD,
                            &present, sizeof present) == ERROR_SUCCESS,
            "RegSetKeyValueW");
}

/// Below the interfaces' classes, a device's key is its path without backslashes.
std::wstring interfaceKeyOf(const std::wstring& path) {
    std::wstring name = path;
    std::replace(name.begin(), name.end(), L'\\', L'#');
    const std::wstring interfaceClass = path.substr(path.rfind(L'{'));
    return LR"(System\CurrentControlSet\Control\DeviceClasses\)" + interfaceClass + L'\\' + name +
           LR"(\#\Control)";
}

/// Paths of the hubs that can be opened. Never destroyed: handles are closed until the program
/// ends.
std::map<std::string, Ports>& hubs() {
    static auto& instance = *new std::map<std::string, Ports>;
    return instance;
}

unsigned openHubs = 0;

/// The handle of a hub is the address of its ports.
const Ports* hubOf(HANDLE handle) {
    for (const auto& [path, ports] : hubs())
        if (&ports == handle)
            return &ports;
    return nullptr;
}

} // namespace

// Wine has no CM_Get_Parent and no USB hubs: the linker redirects the calls to the functions below
// (--wrap).
extern "C" {
extern decltype(&CreateFileA) __real___imp_CreateFileA;
extern decltype(&DeviceIoControl) __real___imp_DeviceIoControl;
extern decltype(&CloseHandle) __real___imp_CloseHandle;
}

namespace {

HANDLE WINAPI openHub(LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                      DWORD disposition, DWORD flags, HANDLE like) {
    const auto hub = hubs().find(path);
    if (hub == hubs().end())
        return __real___imp_CreateFileA(path, access, share, security, disposition, flags, like);
    if (access != GENERIC_WRITE || share != FILE_SHARE_WRITE || disposition != OPEN_EXISTING)
        return INVALID_HANDLE_VALUE;
    ++openHubs;
    return &hub->second;
}

BOOL WINAPI askHub(HANDLE handle, DWORD code, void* input, DWORD inputSize, void* output,
                   DWORD outputSize, DWORD* returned, OVERLAPPED* overlapped) {
    const Ports* hub = hubOf(handle);
    if (hub == nullptr)
        return __real___imp_DeviceIoControl(handle, code, input, inputSize, output, outputSize,
                                            returned, overlapped);
    const auto port = hub->find(*static_cast<ULONG*>(input));
    const auto asksFor = [&](DWORD wanted, std::size_t size) {
        return port != hub->end() && code == wanted && inputSize == size && outputSize == size;
    };
    auto& first = *static_cast<USB_NODE_CONNECTION_INFORMATION_EX*>(output);
    if (asksFor(0x220448, sizeof first) && port->second.answersFirst) {
        first.ConnectionStatus = static_cast<USB_CONNECTION_STATUS>(port->second.status);
        first.Speed = port->second.speed;
        return TRUE;
    }
    auto& second = *static_cast<USB_NODE_CONNECTION_INFORMATION_EX_V2*>(output);
    constexpr ULONG usb3 = 4;
    if (!asksFor(0x22045C, sizeof second) || !port->second.answersSecond ||
        second.Length != sizeof second || second.SupportedUsbProtocols.ul != usb3)
        return FALSE;
    second.Flags.ul = port->second.flags;
    return TRUE;
}

BOOL WINAPI closeHub(HANDLE handle) {
    if (hubOf(handle) == nullptr)
        return __real___imp_CloseHandle(handle);
    --openHubs;
    return TRUE;
}

} // namespace

extern "C" {
decltype(&CM_Get_Parent) __wrap___imp_CM_Get_Parent = parentOf;
decltype(&CreateFileA) __wrap___imp_CreateFileA = openHub;
decltype(&DeviceIoControl) __wrap___imp_DeviceIoControl = askHub;
decltype(&CloseHandle) __wrap___imp_CloseHandle = closeHub;
}

SeededUsbTree::SeededUsbTree() : m_set(SetupDiCreateDeviceInfoList(nullptr, nullptr)) {
    require(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr, "Wine");
    require(m_set != INVALID_HANDLE_VALUE, "SetupDiCreateDeviceInfoList");
}

SeededUsbTree::~SeededUsbTree() {
    for (Device& device : m_devices)
        SetupDiRemoveDevice(m_set, &device.data);
    SetupDiDestroyDeviceInfoList(m_set);
    parents().clear();
    hubs().clear();
}

DEVINST SeededUsbTree::addController(const std::wstring& name, std::optional<UINT32> bus,
                                     std::optional<UINT32> address) {
    Device& device = add(LR"(PCI\VEN_8086&DEV_A36D\)" + name, std::nullopt);
    setProperty(m_set, device.data, DEVPKEY_Device_BusNumber, bus);
    setProperty(m_set, device.data, DEVPKEY_Device_Address, address);
    return device.data.DevInst;
}

DEVINST SeededUsbTree::addHub(std::optional<DEVINST> parent, const std::wstring& name,
                              const Ports& ports, bool opens) {
    Device& device = add(LR"(USB\ROOT_HUB30\)" + name, parent);
    const std::wstring path = offer(device, GUID_DEVINTERFACE_USB_HUB);
    if (opens)
        hubs()[std::string(path.begin(), path.end())] = ports;
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
    return openHubs;
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
