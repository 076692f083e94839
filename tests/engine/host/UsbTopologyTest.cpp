// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/UsbTopology.h"

#include <gmock/gmock.h>
#include <tuple>

namespace {

TEST(UsbTopology, readsVendorProductAndSerialOfAPath) {
    using Number = std::optional<std::uint32_t>;
    const std::tuple<const char*, Number, Number, std::optional<std::string>> cases[] = {
        {R"(\\?\USB#VID_4D52&PID_0001#50A1Z#{a5dcbf10-6530})", 0x4D52, 1, "50A1Z"},
        {"USB#VID_FFFF&PID_ABCD#5&2A&0#", 0xFFFF, 0xABCD, std::nullopt},
        {"USB#VID_4D52&PID_00012#A#", 0x4D52, 1, std::nullopt},
        {"USB#VID_4D52&MI_00&PID_0001#A#", 0x4D52, 1, std::nullopt},
        {"VID_1111&VID_2222", 0x1111, std::nullopt, std::nullopt},
        {R"(\\?\usb#vid_4d52&pid_abcd#50a1z#{a5dc})", 0x4D52, 0xABCD, "50a1z"},
    };
    for (const auto& [path, vendor, product, serial] : cases)
        EXPECT_THAT(host::parseDevicePath(path), testing::FieldsAre(vendor, product, serial))
            << path;
}

TEST(UsbTopology, readsThePortOfALocation) {
    const std::pair<std::u16string, std::optional<std::uint32_t>> cases[] = {
        {u"Port_#0003.Hub_#0001", 3},
        {u"Port_#0012.Hub_#0001", 12},
        {u"\u00dcber Port_#7", 7},
        {u"Port_#.Port_#5", 5},
        {u"Port_#\u0131\u0132", std::nullopt}, // low bytes are digits, the units are none
        {u"port_#0003", std::nullopt},
        {u"Hub_#0001", std::nullopt},
        {u"", std::nullopt},
        {u"Port_#99999999999", std::nullopt},
    };
    for (const auto& [location, port] : cases)
        EXPECT_EQ(host::portNumber(location), port);
}

TEST(UsbTopology, namesAControllerByItsDecimalPciLocation) {
    EXPECT_EQ(host::controllerKey(0, 0x00140000), "0-20-0");
    EXPECT_EQ(host::controllerKey(0xFFFFFFFF, 0xFFFFFFFF), "4294967295-65535-65535");
}

} // namespace
