// SPDX-License-Identifier: BSD-3-Clause
#include "platform/EthernetSettings.h"
#include "platform/KernelSettings.h"
#include "tests/support/FileTree.h"

#include <cstring>
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <vector>

namespace {

using namespace platform;

/// A driver whose masks of link modes have two words each.
struct FakeDriver {
    static constexpr std::int8_t words = 2;
    static constexpr std::size_t masksAt = sizeof(ethtool_link_settings);

    using Modes = std::vector<std::uint32_t>;

    std::uint32_t speed = 1000;
    std::uint8_t duplex = DUPLEX_FULL;
    Modes supported = {ETHTOOL_LINK_MODE_100baseT_Full_BIT, ETHTOOL_LINK_MODE_1000baseT_Full_BIT,
                       ETHTOOL_LINK_MODE_2500baseT_Full_BIT};
    /// Of the other end.
    Modes partner = {ETHTOOL_LINK_MODE_1000baseT_Full_BIT, ETHTOOL_LINK_MODE_2500baseT_Full_BIT,
                     ETHTOOL_LINK_MODE_10000baseT_Full_BIT};

    static void put(const Modes& modes, std::size_t mask, void* command) {
        auto* const bytes = static_cast<char*>(command) + masksAt + mask * words * 4;
        std::uint32_t values[words] = {};
        for (const std::uint32_t bit : modes)
            values[bit / 32] |= 1U << bit % 32;
        std::memcpy(bytes, values, sizeof values);
    }

    EthtoolCall call() const {
        return [this](const std::string& adapter, void* command) {
            auto* const settings = static_cast<ethtool_link_settings*>(command);
            if (adapter != "eth0" || settings->cmd != ETHTOOL_GLINKSETTINGS)
                return false;
            if (settings->link_mode_masks_nwords != words) {
                *settings = {};
                settings->link_mode_masks_nwords = -words;
                return true;
            }
            settings->speed = speed;
            settings->duplex = duplex;
            settings->autoneg = AUTONEG_ENABLE;
            put(supported, 0, command);
            put({ETHTOOL_LINK_MODE_10000baseT_Full_BIT}, 1, command);
            put(partner, 2, command);
            return true;
        };
    }
};

TEST(LinkSettings, haveTheHighestSpeedOfBothEnds) {
    FakeDriver driver;
    auto link = linkSettings("eth0", driver.call());
    ASSERT_TRUE(link);
    EXPECT_EQ(link->speed, 1'000'000'000);
    EXPECT_EQ(link->possibleSpeed, std::optional<std::int64_t>(2'500'000'000));
    EXPECT_EQ(link->duplex, Duplex::Full);
    EXPECT_TRUE(link->isNegotiated);
    driver.partner = {};
    driver.duplex = DUPLEX_HALF;
    driver.speed = 0xFFFFFFFF;
    link = linkSettings("eth0", driver.call());
    EXPECT_FALSE(link->possibleSpeed) << "the other end does not tell";
    EXPECT_EQ(link->duplex, Duplex::Half);
    EXPECT_EQ(link->speed, 0) << "not known";
    EXPECT_FALSE(linkSettings("eth1", driver.call()));
}

TEST(ReceiveSettings, areThoseOfTheDriver) {
    const EthtoolCall driver = [](const std::string& adapter, void* command) {
        const std::uint32_t number = *static_cast<std::uint32_t*>(command);
        if (number == ETHTOOL_GRINGPARAM) {
            static_cast<ethtool_ringparam*>(command)->rx_pending = 256;
            static_cast<ethtool_ringparam*>(command)->rx_max_pending = adapter == "eth0" ? 4096 : 0;
        } else if (number == ETHTOOL_GCOALESCE) {
            static_cast<ethtool_coalesce*>(command)->rx_coalesce_usecs = 3;
            static_cast<ethtool_coalesce*>(command)->rx_max_coalesced_frames = 16;
            static_cast<ethtool_coalesce*>(command)->use_adaptive_rx_coalesce = 1;
        }
        return true;
    };
    const auto ring = receiveRing("eth0", driver);
    ASSERT_TRUE(ring);
    EXPECT_EQ(ring->packets, 256U);
    EXPECT_EQ(ring->mostPackets, 4096U);
    EXPECT_FALSE(receiveRing("eth1", driver)) << "a driver without a ring";
    const auto coalescing = interruptCoalescing("eth0", driver);
    ASSERT_TRUE(coalescing);
    EXPECT_EQ(coalescing->microseconds, 3U);
    EXPECT_EQ(coalescing->packets, 16U);
    EXPECT_TRUE(coalescing->isAdaptive);
    EXPECT_FALSE(interruptCoalescing("lo")) << "the loopback adapter has none";
}

TEST(KernelSettings, areReadFromTheirFiles) {
    const FileTree files;
    const std::string conf = "proc/sys/net/ipv4/conf/";
    files.write(conf + "all/rp_filter", "1\n");
    EXPECT_FALSE(reversePathFilter("eth0.5", files.root()));
    for (const char* own : {"0\n", "2\n"}) {
        files.write(conf + "eth0.5/rp_filter", own);
        EXPECT_EQ(reversePathFilter("eth0.5", files.root()),
                  std::optional<std::uint64_t>(*own == '0' ? 1 : 2));
    }
    EXPECT_TRUE(frequencyControls(files.root()).empty());
    const auto control = [&](const char* cpu, const char* driver, const char* governor) {
        const std::string folder = std::string("sys/devices/system/cpu/") + cpu + "/cpufreq/";
        files.write(folder + "scaling_driver", driver);
        files.write(folder + "scaling_governor", governor);
    };
    control("cpu0", "acpi-cpufreq\n", "powersave\n");
    control("cpu1", "acpi-cpufreq\n", "powersave\n");
    control("cpu2", "amd-pstate-epp\n", "powersave\n");
    const auto controls = frequencyControls(files.root());
    ASSERT_EQ(controls.size(), 2U);
    EXPECT_EQ(controls[0].processors, 2U);
    EXPECT_TRUE(controls[0].isSlowest());
    EXPECT_FALSE(controls[1].isSlowest());
}

} // namespace
