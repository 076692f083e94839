// SPDX-License-Identifier: BSD-3-Clause
#include "platform/EthernetSettings.h"

#include "platform/UdpSocket.h"

#include <algorithm>
#include <array>
#include <climits>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>

namespace platform {

namespace {

constexpr std::int64_t megabit = 1'000'000;
/// Unknown speed: -1, which drivers report as an unsigned number.
constexpr std::uint32_t noSpeed = 0xFFFFFFFF;
constexpr std::size_t bitsOfAWord = 32;

/// A link mode (ETHTOOL_LINK_MODE_..., linux/ethtool.h) and its Mbit/s.
struct Mode {
    std::uint32_t bit;
    std::int64_t megabits;
};

/// The modes that are negotiated: over copper, and over backplanes and direct cables.
constexpr Mode modes[] = {
    {ETHTOOL_LINK_MODE_10baseT_Half_BIT, 10},
    {ETHTOOL_LINK_MODE_10baseT_Full_BIT, 10},
    {ETHTOOL_LINK_MODE_100baseT_Half_BIT, 100},
    {ETHTOOL_LINK_MODE_100baseT_Full_BIT, 100},
    {ETHTOOL_LINK_MODE_1000baseT_Half_BIT, 1000},
    {ETHTOOL_LINK_MODE_1000baseT_Full_BIT, 1000},
    {ETHTOOL_LINK_MODE_1000baseKX_Full_BIT, 1000},
    {ETHTOOL_LINK_MODE_2500baseX_Full_BIT, 2500},
    {ETHTOOL_LINK_MODE_2500baseT_Full_BIT, 2500},
    {ETHTOOL_LINK_MODE_5000baseT_Full_BIT, 5000},
    {ETHTOOL_LINK_MODE_10000baseT_Full_BIT, 10'000},
    {ETHTOOL_LINK_MODE_10000baseKX4_Full_BIT, 10'000},
    {ETHTOOL_LINK_MODE_10000baseKR_Full_BIT, 10'000},
    {ETHTOOL_LINK_MODE_25000baseCR_Full_BIT, 25'000},
    {ETHTOOL_LINK_MODE_25000baseKR_Full_BIT, 25'000},
    {ETHTOOL_LINK_MODE_40000baseKR4_Full_BIT, 40'000},
    {ETHTOOL_LINK_MODE_40000baseCR4_Full_BIT, 40'000},
    {ETHTOOL_LINK_MODE_100000baseKR4_Full_BIT, 100'000},
    {ETHTOOL_LINK_MODE_100000baseCR4_Full_BIT, 100'000},
};

/// A query of the link with room for the three masks that follow the structure: supported modes,
/// advertised ones, and those of the other end. Each has at most SCHAR_MAX words, by the type of
/// its count.
class LinkQuery {
public:
    LinkQuery() { settings().cmd = ETHTOOL_GLINKSETTINGS; }

    ethtool_link_settings& settings() {
        return *reinterpret_cast<ethtool_link_settings*>(m_words.data());
    }

    bool run(const std::string& adapter, const EthtoolCall& ask) {
        // The first answer is only the size of the masks, as a negative number.
        if (!ask(adapter, &settings()) || settings().link_mode_masks_nwords >= 0)
            return false;
        settings().cmd = ETHTOOL_GLINKSETTINGS;
        settings().link_mode_masks_nwords = static_cast<__s8>(-settings().link_mode_masks_nwords);
        return ask(adapter, &settings()) && settings().link_mode_masks_nwords > 0;
    }

    /// Whether both ends have a mode.
    bool isShared(std::uint32_t bit) { return has(0, bit) && has(2, bit); }

private:
    bool has(std::size_t mask, std::uint32_t bit) {
        const auto words = static_cast<std::size_t>(settings().link_mode_masks_nwords);
        const std::size_t word = bit / bitsOfAWord;
        constexpr std::size_t head = sizeof(ethtool_link_settings) / sizeof(std::uint32_t);
        return word < words && (m_words[head + mask * words + word] >> bit % bitsOfAWord & 1U) != 0;
    }

    std::array<std::uint32_t, sizeof(ethtool_link_settings) / sizeof(std::uint32_t) + 3 * SCHAR_MAX>
        m_words{};
};

Duplex duplexOf(std::uint8_t code) {
    if (code == DUPLEX_HALF)
        return Duplex::Half;
    return code == DUPLEX_FULL ? Duplex::Full : Duplex::Unknown;
}

} // namespace

bool askDriver(const std::string& adapter, void* command) {
    ifreq request{};
    adapter.copy(request.ifr_name, IF_NAMESIZE - 1);
    request.ifr_data = static_cast<char*>(command);
    const UdpSocket socket;
    return ioctl(socket.handle(), SIOCETHTOOL, &request) == 0;
}

std::optional<LinkSettings> linkSettings(const std::string& adapter, const EthtoolCall& ask) {
    LinkQuery query;
    if (!query.run(adapter, ask))
        return std::nullopt;
    LinkSettings link;
    const std::uint32_t megabits = query.settings().speed;
    link.speed = megabits == noSpeed ? 0 : megabits * megabit;
    link.duplex = duplexOf(query.settings().duplex);
    link.isNegotiated = query.settings().autoneg == AUTONEG_ENABLE;
    for (const Mode& mode : modes)
        if (query.isShared(mode.bit))
            link.possibleSpeed = std::max(link.possibleSpeed.value_or(0), mode.megabits * megabit);
    return link;
}

std::optional<ReceiveRing> receiveRing(const std::string& adapter, const EthtoolCall& ask) {
    ethtool_ringparam ring{};
    ring.cmd = ETHTOOL_GRINGPARAM;
    if (!ask(adapter, &ring) || ring.rx_max_pending == 0)
        return std::nullopt;
    return ReceiveRing{ring.rx_pending, ring.rx_max_pending};
}

std::optional<InterruptCoalescing> interruptCoalescing(const std::string& adapter,
                                                       const EthtoolCall& ask) {
    ethtool_coalesce coalesce{};
    coalesce.cmd = ETHTOOL_GCOALESCE;
    if (!ask(adapter, &coalesce))
        return std::nullopt;
    return InterruptCoalescing{coalesce.rx_coalesce_usecs, coalesce.rx_max_coalesced_frames,
                               coalesce.use_adaptive_rx_coalesce != 0};
}

} // namespace platform
