// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AddressPlan.h"

#include "cli/Failure.h"
#include "cli/NameChoice.h"
#include "gige/Subnet.h"
#include "platform/Ipv4Address.h"

#include <algorithm>

namespace cli {

namespace {

using gige::DiscoveredCamera;
using gige::Subnet;
using platform::NetworkAdapter;

constexpr int largestPrefix = 30;

std::uint32_t requireAddress(const QString& given) {
    const auto address = platform::parseAddress(given.toStdString());
    if (!address)
        throw Failure(QStringLiteral("\"%1\" is not an IPv4 address like 192.168.1.10.").arg(given),
                      ExitCode::WrongUse);
    return *address;
}

std::uint32_t requireMask(const QString& prefix) {
    bool isNumber = false;
    const int bits = prefix.toInt(&isNumber);
    if (!isNumber || bits < 1 || bits > largestPrefix)
        throw Failure(QStringLiteral("The prefix \"%1\" is not a number from 1 to %2.")
                          .arg(prefix, QString::number(largestPrefix)),
                      ExitCode::WrongUse);
    return gige::maskOfPrefix(bits);
}

/// All answers of the one camera that has the name: one for each adapter on which it answered.
std::vector<DiscoveredCamera> chooseCamera(const QString& wanted, const KnownNetwork& network) {
    std::vector<DiscoveredCamera> different;
    QVector<Names> names;
    for (const DiscoveredCamera& camera : network.cameras) {
        const bool isKnown =
            std::any_of(different.begin(), different.end(), [&](const DiscoveredCamera& known) {
                return known.macAddress == camera.macAddress;
            });
        if (isKnown)
            continue;
        different.push_back(camera);
        names.append(
            cameraNames(shownId(camera).toStdString(), camera.userName, camera.serialNumber));
    }
    const std::uint64_t mac = platform::macNumber(wanted.toStdString());
    const auto same =
        std::find_if(different.begin(), different.end(),
                     [&](const DiscoveredCamera& each) { return each.macAddress == mac; });
    // A serial number may look like a MAC address.
    const bool isMac = mac != 0 && same != different.end() && !isCalled(names, wanted);
    const DiscoveredCamera chosen =
        isMac ? *same : different[chooseByName(QStringLiteral("camera"), names, wanted)];
    std::vector<DiscoveredCamera> answers;
    for (const DiscoveredCamera& camera : network.cameras)
        if (camera.macAddress == chosen.macAddress)
            answers.push_back(camera);
    return answers;
}

/// The addresses that are in use on the adapter's network as far as is known.
std::vector<std::uint32_t> usedAddresses(const KnownNetwork& network) {
    std::vector<std::uint32_t> used;
    for (const DiscoveredCamera& camera : network.cameras) {
        used.push_back(camera.address);
        used.push_back(camera.gateway);
    }
    for (const NetworkAdapter& adapter : network.adapters)
        used.push_back(adapter.address);
    return used;
}

QString rangeText(const NetworkAdapter& adapter, const KnownNetwork& network) {
    const Subnet subnet(adapter);
    const auto range = subnet.longestFree(usedAddresses(network));
    const QString subnetText =
        QStringLiteral("%1 has the subnet %2")
            .arg(QString::fromStdString(adapter.name), QString::fromStdString(subnet.text()));
    if (!range)
        return subnetText + QStringLiteral(", which has no free address");
    return subnetText + QStringLiteral(", where %1 to %2 seem free")
                            .arg(shownAddress(range->first), shownAddress(range->last));
}

/// Places in which the camera may get its address: its answers with this host's addresses there.
std::vector<AddressPlan> placesOf(const std::vector<DiscoveredCamera>& answers,
                                  const KnownNetwork& network) {
    std::vector<AddressPlan> places;
    for (const DiscoveredCamera& camera : answers)
        for (const NetworkAdapter& adapter : network.adapters)
            if (adapter.name == camera.adapter && adapter.isUp)
                places.push_back({camera, adapter, {}});
    return places;
}

AddressPlan choosePlace(const AddressRequest& request, const std::vector<AddressPlan>& all,
                        const KnownNetwork& network) {
    std::vector<AddressPlan> places;
    QStringList ranges;
    for (const AddressPlan& place : all) {
        if (!request.address || Subnet(place.adapter).contains(*request.address))
            places.push_back(place);
        ranges.append(rangeText(place.adapter, network));
    }
    if (places.empty())
        throw Failure(
            QStringLiteral("This host could not reach the camera at %1: %2.")
                .arg(shownAddress(request.address.value_or(0)), ranges.join(QStringLiteral("; "))));
    for (const AddressPlan& place : places)
        if (place.adapter.name != places.front().adapter.name)
            throw Failure(QStringLiteral("The camera %1 answers on %2 and on %3: choose an address "
                                         "that only one of them has in its subnet. %4.")
                              .arg(shownId(place.camera),
                                   QString::fromStdString(places.front().adapter.name),
                                   QString::fromStdString(place.adapter.name),
                                   ranges.join(QStringLiteral("; "))));
    return places.front();
}

/// Why the camera cannot have the address; empty when it can.
QString faultOf(const AddressPlan& plan, const KnownNetwork& network) {
    const std::uint32_t address = plan.settings.address;
    for (const Subnet& subnet :
         {Subnet(plan.adapter), Subnet(plan.adapter.address, plan.settings.mask)})
        if (!subnet.contains(address))
            return QStringLiteral("With this prefix, the camera could not reach this host, %1")
                .arg(shownAddress(plan.adapter.address));
        else if (!subnet.isHost(address))
            return QStringLiteral("%1 is the %2 address of the subnet")
                .arg(shownAddress(address), address == subnet.network()
                                                ? QStringLiteral("network")
                                                : QStringLiteral("broadcast"));
    for (const NetworkAdapter& adapter : network.adapters)
        if (adapter.address == address)
            return QStringLiteral("%1 is this host's own address").arg(shownAddress(address));
    for (const DiscoveredCamera& other : network.cameras)
        if (other.address == address && other.macAddress != plan.camera.macAddress)
            return QStringLiteral("The camera %1 has %2")
                .arg(shownId(other), shownAddress(address));
    const std::uint32_t gateway = plan.settings.gateway;
    if (gateway != 0 &&
        (gateway == address || !Subnet(address, plan.settings.mask).isHost(gateway)))
        return QStringLiteral("%1 is no gateway for a camera at %2")
            .arg(shownAddress(gateway), shownAddress(address));
    return {};
}

std::uint32_t freeAddress(const NetworkAdapter& adapter, const KnownNetwork& network,
                          const std::vector<std::uint32_t>& taken) {
    std::vector<std::uint32_t> used = usedAddresses(network);
    used.insert(used.end(), taken.begin(), taken.end());
    const auto range = Subnet(adapter).longestFree(used);
    if (!range)
        throw Failure(rangeText(adapter, network) + QLatin1Char('.'));
    return range->first;
}

} // namespace

AddressRequest addressRequest(const QString& camera, const QString& address,
                              const QString& gateway) {
    AddressRequest request;
    request.camera = camera;
    if (address != QLatin1String("auto")) {
        request.address = requireAddress(address.section(QLatin1Char('/'), 0, 0));
        if (address.contains(QLatin1Char('/')))
            request.mask = requireMask(address.section(QLatin1Char('/'), 1));
    }
    if (!gateway.isEmpty())
        request.gateway = requireAddress(gateway);
    return request;
}

AddressPlan planAddress(const AddressRequest& request, const KnownNetwork& network,
                        const std::vector<std::uint32_t>& taken) {
    const auto places = placesOf(chooseCamera(request.camera, network), network);
    AddressPlan plan = choosePlace(request, places, network);
    if (request.isPersistent && !plan.camera.supported.persistent)
        throw Failure(
            QStringLiteral("The camera %1 keeps no persistent address.").arg(shownId(plan.camera)));
    plan.settings = {request.address ? *request.address : freeAddress(plan.adapter, network, taken),
                     request.mask.value_or(plan.adapter.mask), request.gateway};
    const QString fault = faultOf(plan, network);
    if (!fault.isEmpty())
        throw Failure(QStringLiteral("%1: %2.").arg(fault, rangeText(plan.adapter, network)));
    return plan;
}

QString shownAddress(std::uint32_t address) {
    return QString::fromStdString(platform::addressText(address));
}

QString shownId(const gige::DiscoveredCamera& camera) {
    return QString::fromStdString(gige::cameraId(platform::macText(camera.macAddress)));
}

} // namespace cli
