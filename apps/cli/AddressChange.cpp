// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AddressChange.h"

#include "cli/AddressPlan.h"
#include "gige/AddressProbe.h"
#include "gige/BootstrapRegisters.h"
#include "gige/DiscoveryBroadcast.h"
#include "gige/Gvcp.h"
#include "gige/PersistentIp.h"
#include "gige/Subnet.h"
#include "platform/HostCommands.h"
#include "platform/Ipv4Address.h"

#include <algorithm>
#include <chrono>

namespace cli {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using gige::DiscoveredCamera;

/// A camera may delay its discovery answer by a second (GigE Vision 2.2, 16.1.1).
constexpr std::chrono::milliseconds searchTime{1000};
/// Cameras restart their network, which takes some seconds.
constexpr std::chrono::seconds moveTime{15};
constexpr std::chrono::milliseconds repeatTime{500};
constexpr std::chrono::milliseconds answerTime{250};
constexpr int answerTries = 2;
/// Addresses that "auto" tries.
constexpr std::size_t mostProbes = 16;

QString withPrefix(std::uint32_t address, std::uint32_t mask) {
    return QStringLiteral("%1/%2").arg(shownAddress(address)).arg(gige::prefixOfMask(mask));
}

AddressRequest readRequest(const Arguments& arguments) {
    const QString configuration = arguments.value(QStringLiteral("config"));
    if (arguments.value(QStringLiteral("cameras")) == QLatin1String("simulated") ||
        (!configuration.isEmpty() && configuration != QLatin1String(":genicam")))
        throw Failure(QStringLiteral("Simulated cameras have no IPv4 address."),
                      ExitCode::WrongUse);
    const QStringList operands = arguments.operands();
    AddressRequest request =
        addressRequest(operands[0], operands[1], arguments.value(QStringLiteral("gateway")));
    request.isPersistent = arguments.has(QStringLiteral("persistent"));
    return request;
}

KnownNetwork search() {
    return {gige::discoverCameras(searchTime),
            platform::networkAdapters().value_or(std::vector<platform::NetworkAdapter>())};
}

/// Why cameras of other subnets may be missing; empty where they are found.
QString hiddenCameras(const KnownNetwork& network) {
    const bool isChecked =
        std::any_of(network.adapters.begin(), network.adapters.end(), [](const auto& adapter) {
            return !adapter.isLoopback && platform::checksWayBack(adapter.name);
        });
    if (!isChecked || platform::mayOpenPacketSockets())
        return {};
    return QStringLiteral(" The kernel discards answers of cameras of other subnets (rp_filter). "
                          "This lets Spanlet receive them: %1")
        .arg(QString::fromStdString(platform::packetSocketCommand(platform::programFile())));
}

AddressPlan planOrExplain(const AddressRequest& request, const KnownNetwork& network,
                          const std::vector<std::uint32_t>& taken) {
    try {
        return planAddress(request, network, taken);
    } catch (const Failure& failure) {
        throw Failure(QString::fromUtf8(failure.what()) + hiddenCameras(network), failure.code());
    }
}

/// The MAC address of a host that has the address of the plan; a camera that was found has another
/// one now, whatever the kernel remembers.
std::optional<std::uint64_t> hostInTheWay(const AddressPlan& plan, const KnownNetwork& network) {
    if (plan.camera.address == plan.settings.address)
        return std::nullopt;
    const auto mac = gige::hostWithAddress(plan.adapter, plan.settings.address);
    const auto& cameras = network.cameras;
    const bool isCamera =
        std::any_of(cameras.begin(), cameras.end(), [&](const DiscoveredCamera& camera) {
            return mac && camera.macAddress == *mac;
        });
    return isCamera ? std::nullopt : mac;
}

/// The plan with a free address.
AddressPlan planFreeAddress(const AddressRequest& request, const KnownNetwork& network) {
    std::vector<std::uint32_t> taken;
    for (;;) {
        AddressPlan plan = planOrExplain(request, network, taken);
        const auto mac = hostInTheWay(plan, network);
        if (!mac)
            return plan;
        taken.push_back(plan.settings.address);
        if (request.address || taken.size() == mostProbes)
            throw Failure(QStringLiteral("Another host has %1: its MAC address is %2.")
                              .arg(shownAddress(plan.settings.address),
                                   QString::fromStdString(platform::macText(*mac))));
    }
}

/// Whether registers can be read at the camera's address, and it is this camera that answers.
bool isReachable(const AddressPlan& plan, const KnownNetwork& network) {
    const auto& cameras = network.cameras;
    const auto count =
        std::count_if(cameras.begin(), cameras.end(), [&](const DiscoveredCamera& other) {
            return other.address == plan.camera.address && other.adapter == plan.camera.adapter;
        });
    return count == 1 && gige::Subnet(plan.adapter).contains(plan.camera.address);
}

Failure inUse(const DiscoveredCamera& camera, const QString& by) {
    return Failure(QStringLiteral("The camera %1 is in use by %2. Close it there first.")
                       .arg(shownId(camera), by));
}

/// Throws a Failure when the camera tells that a program controls it.
void requireFree(const AddressPlan& plan, const KnownNetwork& network) {
    if (!isReachable(plan, network))
        return;
    const gige::Gvcp camera(plan.camera.address, answerTime, answerTries);
    const auto privilege = camera.readRegister(gige::privilegeRegister);
    const auto state = privilege ? gige::controlState(*privilege) : gige::ControlState::Unknown;
    if (state != gige::ControlState::Controlled && state != gige::ControlState::Exclusive)
        return;
    const auto answer = camera.readRegister(gige::controllerAddressRegister);
    const std::uint32_t controller =
        answer ? gige::Gvcp::value(*answer).value_or(0) : std::uint32_t{0};
    throw inUse(plan.camera, controller == 0
                                 ? QStringLiteral("another program")
                                 : QStringLiteral("a program on %1").arg(shownAddress(controller)));
}

void force(const AddressPlan& plan) {
    const auto status = gige::forceIp(plan.adapter, plan.camera.macAddress, plan.settings);
    if (status == gige::accessDenied)
        throw inUse(plan.camera, QStringLiteral("another program"));
    if (status.value_or(0) != 0)
        throw Failure(QStringLiteral("The camera %1 refuses the address %2 (status 0x%3).")
                          .arg(shownId(plan.camera), shownAddress(plan.settings.address))
                          .arg(*status, 4, 16, QLatin1Char('0')));
}

/// Waits until the camera answers a search with the new address, and then a question there.
void awaitCamera(const AddressPlan& plan, const Context& context) {
    const gige::DiscoveryBroadcast call(gige::Reach::AllSubnets);
    std::uint32_t latest = 0;
    auto repeat = Clock::now() + repeatTime;
    for (const auto end = Clock::now() + moveTime; Clock::now() < end;) {
        context.checkInterruption();
        if (Clock::now() >= repeat) {
            call.sendAgain();
            repeat += repeatTime;
        }
        call.wait(repeatTime / 2);
        for (const DiscoveredCamera& camera : call.answers())
            if (camera.macAddress == plan.camera.macAddress)
                latest = camera.address;
        if (latest == plan.settings.address &&
            gige::Gvcp(latest, answerTime, answerTries).readRegister(gige::privilegeRegister))
            return;
    }
    throw Failure(QStringLiteral("The camera %1 does not answer at %2 after %3 s; %4.")
                      .arg(shownId(plan.camera), shownAddress(plan.settings.address))
                      .arg(moveTime.count())
                      .arg(latest == 0
                               ? QStringLiteral("it does not answer at all")
                               : QStringLiteral("its address is %1").arg(shownAddress(latest))));
}

void keep(const AddressPlan& plan) {
    const auto reason = [&] {
        switch (gige::writePersistentIp(plan.settings.address, plan.settings)) {
        case gige::PersistentResult::Written:
            return QString();
        case gige::PersistentResult::NoAnswer:
            return QStringLiteral("does not answer");
        case gige::PersistentResult::Controlled:
            return QStringLiteral("is in use by another program");
        case gige::PersistentResult::Refused:
            return QStringLiteral("refuses its persistent settings");
        case gige::PersistentResult::NotKept:
            break;
        }
        return QStringLiteral("reports other persistent settings than were written");
    }();
    if (!reason.isEmpty())
        throw Failure(QStringLiteral("The camera %1 has %2 only until it is restarted: it %3.")
                          .arg(shownId(plan.camera), shownAddress(plan.settings.address), reason));
}

QJsonObject describe(const gige::IpSettings& settings) {
    return {{QStringLiteral("address"), shownAddress(settings.address)},
            {QStringLiteral("mask"), shownAddress(settings.mask)},
            {QStringLiteral("gateway"), shownAddress(settings.gateway)}};
}

Report makeReport(const AddressPlan& plan, bool isPersistent, bool isDone) {
    const DiscoveredCamera& camera = plan.camera;
    Report report;
    report.text = QStringLiteral("%1 on %2: %3 -> %4, %5%6\n")
                      .arg(shownId(camera), QString::fromStdString(camera.adapter),
                           withPrefix(camera.address, camera.mask),
                           withPrefix(plan.settings.address, plan.settings.mask),
                           isPersistent ? QStringLiteral("also after a restart of the camera")
                                        : QStringLiteral("until the camera is restarted"),
                           isDone ? QString() : QStringLiteral(" (not done: dry run)"));
    report.document = {
        {QStringLiteral("camera"), shownId(camera)},
        {QStringLiteral("macAddress"),
         QString::fromStdString(platform::macText(camera.macAddress))},
        {QStringLiteral("serialNumber"), QString::fromStdString(camera.serialNumber)},
        {QStringLiteral("name"), QString::fromStdString(camera.userName)},
        {QStringLiteral("adapter"), QString::fromStdString(camera.adapter)},
        {QStringLiteral("before"), describe({camera.address, camera.mask, camera.gateway})},
        {QStringLiteral("after"), describe(plan.settings)},
        {QStringLiteral("persistent"), isPersistent},
        {QStringLiteral("done"), isDone}};
    return report;
}

} // namespace

Report changeAddress(Context& context) {
    const AddressRequest request = readRequest(context.arguments);
    const KnownNetwork network = search();
    context.checkInterruption();
    const AddressPlan plan = planFreeAddress(request, network);
    requireFree(plan, network);
    context.checkInterruption();
    const bool isDone = !context.arguments.has(QStringLiteral("dry-run"));
    if (isDone) {
        force(plan);
        awaitCamera(plan, context);
        if (request.isPersistent)
            keep(plan);
    }
    return makeReport(plan, request.isPersistent, isDone);
}

} // namespace cli
