// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AddressPlan.h"
#include "cli/Failure.h"
#include "platform/Ipv4Address.h"

#include <gmock/gmock.h>

#include <string>

using namespace testing;

namespace {

using namespace cli;

std::uint32_t parsed(const char* text) {
    return platform::parseAddress(text).value();
}

gige::DiscoveredCamera foundCamera(std::uint64_t mac, const char* itsAddress, const char* serial,
                                   const char* adapter) {
    gige::DiscoveredCamera made;
    made.macAddress = 0x02FC00000000 + mac;
    made.address = parsed(itsAddress);
    made.mask = 0xFFFFFF00;
    made.serialNumber = serial;
    made.adapter = adapter;
    made.supported.persistent = mac != 3;
    return made;
}

platform::NetworkAdapter ownAdapter(const char* name, const char* itsAddress, int prefix) {
    return {name, parsed(itsAddress), 0xFFFFFFFFU << (32 - prefix), 0, true, false};
}

/// A host with two adapters. The camera of serial number "far" has an address of another subnet,
/// "no" keeps none, "two" is reached through both adapters, and "twin" is two cameras.
KnownNetwork knownNetwork() {
    return {{foundCamera(1, "192.168.5.2", "far", "eth0"),
             foundCamera(2, "10.0.0.20", "near", "eth0"), foundCamera(3, "10.0.0.21", "no", "eth0"),
             foundCamera(4, "10.0.1.22", "two", "eth0"), foundCamera(4, "10.0.1.22", "two", "eth1"),
             foundCamera(5, "192.168.5.2", "twin", "eth1"),
             foundCamera(6, "10.0.0.24", "twin", "eth0")},
            {ownAdapter("lo", "127.0.0.1", 8), ownAdapter("eth0", "10.0.0.1", 24),
             ownAdapter("eth1", "10.0.1.1", 28)}};
}

/// "ADAPTER ADDRESS MASK", or the message of the refusal.
std::string planned(const char* name, const char* wanted, const char* gateway = "",
                    bool isPersistent = false) {
    try {
        AddressRequest request = addressRequest(
            QString::fromLatin1(name), QString::fromLatin1(wanted), QString::fromLatin1(gateway));
        request.isPersistent = isPersistent;
        const AddressPlan plan = planAddress(request, knownNetwork(), {parsed("10.0.0.25")});
        return plan.adapter.name + ' ' + platform::addressText(plan.settings.address) + ' ' +
               platform::addressText(plan.settings.mask);
    } catch (const Failure& failure) {
        return failure.what();
    }
}

TEST(AddressPlan, takesCameraAdapterAndMask) {
    for (const char* name : {"far", "DEV_02FC00000001", "02:fc:00:00:00:01", "02FC00000001"})
        EXPECT_EQ(planned(name, "10.0.0.99"), "eth0 10.0.0.99 255.255.255.0") << name;
    EXPECT_EQ(planned("far", "10.0.0.3/29"), "eth0 10.0.0.3 255.255.255.248");
    EXPECT_EQ(planned("near", "10.0.0.20"), "eth0 10.0.0.20 255.255.255.0") << "its own address";
    EXPECT_EQ(planned("far", "10.0.0.99", "10.0.0.1"), "eth0 10.0.0.99 255.255.255.0");
    EXPECT_EQ(planned("far", "10.0.0.99", "", true), "eth0 10.0.0.99 255.255.255.0");
    EXPECT_EQ(planned("two", "10.0.1.5"), "eth1 10.0.1.5 255.255.255.240") << "has that subnet";
    EXPECT_EQ(planned("far", "auto"), "eth0 10.0.0.26 255.255.255.0") << "behind a taken one";
}

TEST(AddressPlan, refusesWhatCannotWork) {
    const struct {
        const char* name;
        const char* wanted;
        const char* gateway;
        const char* message;
    } cases[] = {{"far", "10.0.2.9", "",
                  "could not reach the camera at 10.0.2.9: eth0 has the subnet "
                  "10.0.0.0/24, where 10.0.0.25 to 10.0.0.254 seem free."},
                 {"far", "10.0.1.9", "", "could not reach the camera at 10.0.1.9"},
                 {"far", "10.0.0.0", "", "10.0.0.0 is the network address"},
                 {"far", "10.0.0.255", "", "10.0.0.255 is the broadcast address"},
                 {"far", "10.0.0.7/29", "", "10.0.0.7 is the broadcast address"},
                 {"far", "10.0.0.99/29", "", "could not reach this host, 10.0.0.1"},
                 {"far", "10.0.0.1", "", "10.0.0.1 is this host's own address"},
                 {"far", "10.0.0.20", "", "The camera DEV_02FC00000002 has 10.0.0.20"},
                 {"far", "10.0.0.99", "10.0.0.99", "10.0.0.99 is no gateway"},
                 {"far", "10.0.0.99", "10.0.1.1", "10.0.1.1 is no gateway"},
                 {"two", "auto", "", "answers on eth0 and on eth1"},
                 {"twin", "auto", "", "\"twin\": DEV_02FC00000005, DEV_02FC00000006."},
                 {"02:fc:00:00:00:09", "auto", "", "There is no camera \"02:fc:00:00:00:09\""},
                 {"far", "10.0.0.300", "", "\"10.0.0.300\" is not an IPv4 address"},
                 {"far", "10.0.0.99/", "", "The prefix \"\" is not a number from 1 to 30."},
                 {"far", "10.0.0.99/31", "", "The prefix \"31\""},
                 {"far", "10.0.0.99", "eth0", "\"eth0\" is not an IPv4 address"}};
    for (const auto& [name, wanted, gateway, message] : cases)
        EXPECT_THAT(planned(name, wanted, gateway), HasSubstr(message)) << wanted;
    EXPECT_THAT(planned("no", "auto", "", true), HasSubstr("keeps no persistent address"));
}

} // namespace
