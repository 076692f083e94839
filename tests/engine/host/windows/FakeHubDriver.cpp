// SPDX-License-Identifier: BSD-3-Clause
// A kernel driver for Wine in place of that of USB hubs: answers what a test has set.
#include <intrin.h>
// The kernel's header defines two functions of the header above again.
#define InterlockedBitTestAndSet kernelInterlockedBitTestAndSet
#define InterlockedBitTestAndReset kernelInterlockedBitTestAndReset
#include <ddk/wdm.h>

#include "tests/engine/host/windows/FakeHub.h"

namespace {

constexpr ULONG firstStructure = 0x220448;
constexpr ULONG secondStructure = 0x22045C;

#pragma pack(push, 1)
/// The fixed part of the first structure; pipes follow it.
struct Connection {
    ULONG port;
    UCHAR deviceDescriptor[18];
    UCHAR configuration;
    UCHAR speed;
    UCHAR isHub;
    USHORT address;
    ULONG openPipes;
    ULONG status;
};
struct ConnectionV2 {
    ULONG port;
    ULONG length;
    ULONG supportedProtocols;
    ULONG flags;
};
#pragma pack(pop)
static_assert(sizeof(Connection) == 35);
static_assert(sizeof(ConnectionV2) == 16);

/// The driver's state besides its devices: one device per hub, and the control device, which is the
/// last in the system's list.
LONG openHandles = 0;

/// The control device has a hub without a path.
fakehub::Hub& hubOf(DEVICE_OBJECT* device) {
    return *static_cast<fakehub::Hub*>(device->DeviceExtension);
}

bool isHub(DEVICE_OBJECT* device) {
    return hubOf(device).path[0] != L'\0';
}

NTSTATUS addDevice(DRIVER_OBJECT* driver, const wchar_t* path) {
    // "\\?\name" is "\??\name" to the kernel.
    wchar_t name[sizeof(fakehub::Hub::path) / sizeof(wchar_t)] = L"\\??\\";
    constexpr unsigned prefix = 4;
    for (unsigned i = prefix; path[i] != L'\0'; ++i)
        name[i] = path[i];
    UNICODE_STRING text;
    RtlInitUnicodeString(&text, name);
    DEVICE_OBJECT* device = nullptr;
    const NTSTATUS status =
        IoCreateDevice(driver, sizeof(fakehub::Hub), &text, FILE_DEVICE_UNKNOWN, 0, FALSE, &device);
    if (status == STATUS_SUCCESS)
        device->Flags &= ~DO_DEVICE_INITIALIZING;
    return status;
}

NTSTATUS plugIn(DRIVER_OBJECT* driver, const fakehub::Hub& hub) {
    const NTSTATUS status = addDevice(driver, hub.path);
    if (status == STATUS_SUCCESS)
        hubOf(driver->DeviceObject) = hub;
    return status;
}

void unplug(DRIVER_OBJECT* driver, bool controlDeviceToo) {
    while (driver->DeviceObject != nullptr && (controlDeviceToo || isHub(driver->DeviceObject)))
        IoDeleteDevice(driver->DeviceObject);
}

NTSTATUS askHub(const fakehub::Hub& hub, const IO_STACK_LOCATION& request, void* buffer) {
    const auto& parameters = request.Parameters.DeviceIoControl;
    const ULONG port = *static_cast<ULONG*>(buffer);
    const auto hasSize = [&](ULONG size) {
        return parameters.InputBufferLength == size && parameters.OutputBufferLength == size;
    };
    if (port == 0 || port >= fakehub::portCount)
        return STATUS_INVALID_PARAMETER;
    const fakehub::Port& answer = hub.ports[port];

    if (parameters.IoControlCode == firstStructure && hasSize(sizeof(Connection)) &&
        answer.answersFirst) {
        auto& connection = *static_cast<Connection*>(buffer);
        connection.status = answer.status;
        connection.speed = answer.speed;
        return STATUS_SUCCESS;
    }
    if (parameters.IoControlCode == secondStructure && hasSize(sizeof(ConnectionV2)) &&
        answer.answersSecond) {
        auto& connection = *static_cast<ConnectionV2*>(buffer);
        constexpr ULONG usb3 = 4;
        if (connection.length != sizeof connection || connection.supportedProtocols != usb3)
            return STATUS_INVALID_PARAMETER;
        connection.flags = answer.flags;
        return STATUS_SUCCESS;
    }
    return STATUS_UNSUCCESSFUL;
}

/// A hub can be opened only with FILE_SHARE_WRITE. (Wine does not pass the requested access.)
NTSTATUS open(const IO_STACK_LOCATION& request) {
    if (request.Parameters.Create.ShareAccess != FILE_SHARE_WRITE)
        return STATUS_SHARING_VIOLATION;
    ++openHandles;
    return STATUS_SUCCESS;
}

NTSTATUS control(DRIVER_OBJECT* driver, ULONG code, void* buffer) {
    switch (code) {
    case fakehub::plugIn:
        return plugIn(driver, *static_cast<fakehub::Hub*>(buffer));
    case fakehub::unplugAll:
        unplug(driver, false);
        return STATUS_SUCCESS;
    case fakehub::countHandles:
        *static_cast<LONG*>(buffer) = openHandles;
        return STATUS_SUCCESS;
    default:
        return STATUS_NOT_SUPPORTED;
    }
}

NTSTATUS WINAPI dispatch(DEVICE_OBJECT* device, IRP* irp) {
    const IO_STACK_LOCATION& request = *IoGetCurrentIrpStackLocation(irp);
    NTSTATUS status = STATUS_SUCCESS;
    irp->IoStatus.Information = 0;
    if (request.MajorFunction == IRP_MJ_DEVICE_CONTROL) {
        const auto& parameters = request.Parameters.DeviceIoControl;
        void* buffer = irp->AssociatedIrp.SystemBuffer;
        status = isHub(device) ? askHub(hubOf(device), request, buffer)
                               : control(device->DriverObject, parameters.IoControlCode, buffer);
        if (status == STATUS_SUCCESS)
            irp->IoStatus.Information = parameters.OutputBufferLength;
    } else if (isHub(device) && request.MajorFunction == IRP_MJ_CREATE) {
        status = open(request);
    } else if (isHub(device)) {
        --openHandles;
    }
    irp->IoStatus.Status = status;
    IoCompleteRequest(irp, IO_NO_INCREMENT);
    return status;
}

void WINAPI unload(DRIVER_OBJECT* driver) {
    unplug(driver, true);
}

} // namespace

extern "C" NTSTATUS WINAPI DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING*) {
    driver->DriverUnload = unload;
    driver->MajorFunction[IRP_MJ_CREATE] = dispatch;
    driver->MajorFunction[IRP_MJ_CLOSE] = dispatch;
    driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = dispatch;
    return addDevice(driver, fakehub::controlPath);
}
