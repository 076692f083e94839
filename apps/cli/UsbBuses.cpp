// SPDX-License-Identifier: BSD-3-Clause
#include "cli/UsbBuses.h"

#include "cli/Failure.h"
#include "platform/HostCommands.h"
#include "session/UsbAccess.h"

#include <QRegularExpression>

#include <algorithm>

namespace cli {

namespace fs = std::filesystem;

namespace {

const QLatin1String allBuses("usbmon0");

QString busName(std::int64_t bus) {
    return QStringLiteral("usbmon%1").arg(bus);
}

bool isThere(const QString& bus, const fs::path& root) {
    std::error_code none;
    return fs::exists(usbBusFile(bus, root), none);
}

/// Whether the module shows the bus to others than this program, as to a service that has a /dev of
/// its own.
bool isHidden(const QString& bus, const fs::path& root) {
    std::error_code none;
    return !isThere(bus, root) && fs::exists(root / "sys/module/usbmon", none);
}

/// Why a bus of this host cannot be observed, with the command that permits it.
QString obstacle(const QString& bus, const fs::path& root) {
    if (isHidden(bus, root))
        return QStringLiteral("This program does not see /dev/%1, although the kernel's module "
                              "usbmon is loaded. A systemd service needs "
                              "PrivateDevices=no and \"DeviceAllow=/dev/%1 r\".")
            .arg(bus);
    if (!isThere(bus, root))
        return QStringLiteral("There is no /dev/%1, where the kernel's module usbmon shows the "
                              "transfers of USB. Load it: %2")
            .arg(bus, QString::fromStdString(platform::usbMonitorCommand()));
    std::error_code error;
    observer::UsbMonitor::open(usbBusFile(bus, root), error);
    const fs::path shown = usbBusFile(bus, "/");
    return QStringLiteral("%1 cannot be read: %2. It shows what all devices of the bus send. "
                          "Permit it to yourself: %3")
        .arg(QString::fromStdString(shown.string()), QString::fromStdString(error.message()),
             QString::fromStdString(platform::usbMonitorPermissionCommand(shown)));
}

} // namespace

bool isUsbBusName(const QString& name) {
    static const QRegularExpression form(QStringLiteral("\\Ausbmon[0-9]+\\z"));
    return form.match(name).hasMatch();
}

fs::path usbBusFile(const QString& name, const fs::path& root) {
    return root / "dev" / name.toStdString();
}

QStringList usbBuses(const fs::path& root) {
    QStringList names;
    std::error_code error;
    for (fs::directory_iterator entry(root / "dev", error), end; !error && entry != end;
         entry.increment(error)) {
        const QString name = QString::fromStdString(entry->path().filename().string());
        if (isUsbBusName(name) && name != allBuses)
            names.append(name);
    }
    names.sort();
    return names;
}

std::unique_ptr<observer::UsbMonitor> openUsbBus(const QString& name, const fs::path& root) {
    std::error_code error;
    if (auto monitor = observer::UsbMonitor::open(usbBusFile(name, root), error))
        return monitor;
    const QStringList known = usbBuses(root);
    if (!known.isEmpty() && !isThere(name, root))
        throw Failure(QStringLiteral("There is no USB bus \"%1\".").arg(name) + thereIs(known),
                      ExitCode::WrongUse);
    throw Failure(obstacle(name, root));
}

QStringList unobservedUsbCameras(const QStringList& observed, const fs::path& root) {
    QStringList lines;
    for (const session::Usb3VisionCamera& camera : session::pluggedUsbCameras(root)) {
        const QString bus = busName(camera.bus);
        if (!observed.contains(bus))
            lines.append(QStringLiteral("The USB3 Vision camera \"%1\" (%2) is not observed. %3")
                             .arg(QString::fromStdString(camera.name), bus, obstacle(bus, root)));
    }
    return lines;
}

} // namespace cli
