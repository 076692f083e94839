// SPDX-License-Identifier: BSD-3-Clause
// The order of these headers is the platform's: initguid.h makes the next ones define their GUIDs
// and property keys, here and nowhere else.
#include <windows.h>

#include <initguid.h>

#include <devpkey.h>
#include <usbiodef.h>

#include <cfgmgr32.h>
#include <setupapi.h>
#include <usbioctl.h>

#include "engine/host/HostUsbTree.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace host {

namespace {

static_assert(IOCTL_USB_GET_NODE_CONNECTION_INFORMATION_EX == 0x220448);
static_assert(IOCTL_USB_GET_NODE_CONNECTION_INFORMATION_EX_V2 == 0x22045C);
static_assert(sizeof(USB_NODE_CONNECTION_INFORMATION_EX) == 35);
static_assert(sizeof(USB_NODE_CONNECTION_INFORMATION_EX_V2) == 16);
static_assert(noSuchDevice == CR_NO_SUCH_DEVNODE && noSuchValue == CR_NO_SUCH_VALUE);

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

class WindowsUsbHub : public UsbHub {
public:
    explicit WindowsUsbHub(Handle handle) : m_handle(std::move(handle)) {}

    std::optional<PortConnection> connection(std::uint32_t port) override {
        USB_NODE_CONNECTION_INFORMATION_EX information{};
        information.ConnectionIndex = port;
        if (!ask(IOCTL_USB_GET_NODE_CONNECTION_INFORMATION_EX, information))
            return std::nullopt;
        return PortConnection{static_cast<std::uint32_t>(information.ConnectionStatus),
                              information.Speed};
    }

    std::optional<std::uint32_t> connectionFlagsV2(std::uint32_t port) override {
        USB_NODE_CONNECTION_INFORMATION_EX_V2 information{};
        information.ConnectionIndex = port;
        information.Length = sizeof information;
        information.SupportedUsbProtocols.Usb300 = 1;
        if (!ask(IOCTL_USB_GET_NODE_CONNECTION_INFORMATION_EX_V2, information))
            return std::nullopt;
        return information.Flags.ul;
    }

private:
    template <typename Information> bool ask(DWORD code, Information& information) const {
        DWORD returned = 0;
        return DeviceIoControl(m_handle.get(), code, &information, sizeof information, &information,
                               sizeof information, &returned, nullptr) != FALSE;
    }

    Handle m_handle;
};

std::string instanceIdOf(DEVINST instance) {
    // One character more than the system may write, so that the text always ends with a zero.
    std::array<char, MAX_DEVICE_ID_LEN + 1> id{};
    CM_Get_Device_IDA(instance, id.data(), MAX_DEVICE_ID_LEN, 0);
    return id.data();
}

/// The devices that offer an interface, and their instances.
using DeviceSet = std::shared_ptr<void>;

std::optional<DeviceInterface> detail(const DeviceSet& set, SP_DEVICE_INTERFACE_DATA& entry) {
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailA(set.get(), &entry, nullptr, 0, &size, nullptr);
    if (size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A))
        return std::nullopt;

    std::vector<std::byte> buffer(size);
    auto* data = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_A*>(buffer.data());
    data->cbSize = sizeof *data;
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof device;
    if (!SetupDiGetDeviceInterfaceDetailA(set.get(), &entry, data, size, nullptr, &device))
        return std::nullopt;
    return DeviceInterface{data->DevicePath, device.DevInst, instanceIdOf(device.DevInst), {}, set};
}

std::vector<DeviceInterface> presentDevices(const GUID& interfaceClass) {
    const HDEVINFO opened = SetupDiGetClassDevsA(&interfaceClass, nullptr, nullptr,
                                                 DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
    if (opened == INVALID_HANDLE_VALUE)
        return {};
    const DeviceSet set(opened, SetupDiDestroyDeviceInfoList);

    std::vector<DeviceInterface> devices;
    SP_DEVICE_INTERFACE_DATA entry{};
    entry.cbSize = sizeof entry;
    for (DWORD index = 0;
         SetupDiEnumDeviceInterfaces(set.get(), nullptr, &interfaceClass, index, &entry); ++index)
        if (auto device = detail(set, entry))
            devices.push_back(std::move(*device));
    return devices;
}

Property<std::uint32_t> numberProperty(DEVINST instance, const DEVPROPKEY& key) {
    DEVPROPTYPE type = 0;
    ULONG value = 0;
    ULONG size = sizeof value;
    const CONFIGRET result =
        CM_Get_DevNode_PropertyW(instance, &key, &type, reinterpret_cast<PBYTE>(&value), &size, 0);
    return {result, value};
}

Property<std::u16string> textProperty(DEVINST instance, const DEVPROPKEY& key) {
    DEVPROPTYPE type = 0;
    ULONG size = 0;
    CONFIGRET result = CM_Get_DevNode_PropertyW(instance, &key, &type, nullptr, &size, 0);
    if (result != CR_BUFFER_SMALL)
        return {result, {}};

    std::u16string text((size + 1) / sizeof(char16_t), u'\0');
    result = CM_Get_DevNode_PropertyW(instance, &key, &type, reinterpret_cast<PBYTE>(text.data()),
                                      &size, 0);
    if (result != CR_SUCCESS)
        return {result, {}};
    text.resize(std::min(text.find(u'\0'), text.size()));
    return {result, text};
}

class WindowsUsbTree : public HostUsbTree {
public:
    std::vector<DeviceInterface> hubs() override {
        return presentDevices(GUID_DEVINTERFACE_USB_HUB);
    }

    std::vector<DeviceInterface> devices() override {
        return presentDevices(GUID_DEVINTERFACE_USB_DEVICE);
    }

    std::optional<DeviceInstance> parent(DeviceInstance instance) override {
        DEVINST parentInstance = 0;
        if (CM_Get_Parent(&parentInstance, instance, 0) != CR_SUCCESS)
            return std::nullopt;
        return parentInstance;
    }

    std::string instanceId(DeviceInstance instance) override { return instanceIdOf(instance); }

    Property<std::u16string> locationInfo(DeviceInstance instance) override {
        return textProperty(instance, DEVPKEY_Device_LocationInfo);
    }

    Property<std::uint32_t> busNumber(DeviceInstance instance) override {
        return numberProperty(instance, DEVPKEY_Device_BusNumber);
    }

    Property<std::uint32_t> address(DeviceInstance instance) override {
        return numberProperty(instance, DEVPKEY_Device_Address);
    }

    std::unique_ptr<UsbHub> openHub(const std::string& path) override {
        const HANDLE opened = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, 0, nullptr);
        if (opened == INVALID_HANDLE_VALUE)
            return nullptr;
        return std::make_unique<WindowsUsbHub>(Handle(opened));
    }
};

} // namespace

std::shared_ptr<HostUsbTree> makeSystemUsbTree() {
    return std::make_shared<WindowsUsbTree>();
}

} // namespace host
