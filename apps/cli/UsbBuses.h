// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/UsbMonitor.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <memory>

/// The USB buses of this host whose transfers the kernel's module usbmon shows: "usbmon2" is bus 2,
/// as in other programs. \p root is the folder above /dev and /sys. All functions are reentrant.
namespace cli {

/// Whether this may be the name of a bus; "usbmon0" is all of them.
bool isUsbBusName(const QString& name);

/// The buses that the module shows, without "usbmon0"; none where it is not loaded.
QStringList usbBuses(const std::filesystem::path& root = "/");

/// The file of a bus.
std::filesystem::path usbBusFile(const QString& name, const std::filesystem::path& root = "/");

/// Throws a Failure that says what to do where the bus is not there or may not be observed.
std::unique_ptr<observer::UsbMonitor> openUsbBus(const QString& name,
                                                 const std::filesystem::path& root = "/");

/// A line for each USB3 Vision camera on none of the \p observed buses, with what to do.
QStringList unobservedUsbCameras(const QStringList& observed,
                                 const std::filesystem::path& root = "/");

} // namespace cli
