// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/PacketSource.h"

#include <cstdint>
#include <vector>

#include <linux/filter.h>

/// Programs for the kernel's classic packet filter, on packets that begin with the IPv4 header.
/// They refuse all but UDP, and fragments. Pure functions, reentrant.
namespace orv::aravis {

/// Bytes of UDP payload that headersOnly leaves of a packet that carries payload: the extended
/// header of 20 bytes and the 8 bytes that multi-part payload adds (GigE Vision 2.2, GVSP).
constexpr std::uint32_t keptOfPayload = 28;

/// Whether a packet carries payload, by byte 4 of GVSP's header, whose lower half is the packet's
/// format (GigE Vision 2.2, GVSP): generic, H.264, multi-zone, multi-part or GenDC payload.
/// Others are short (leader, trailer) or hold all of a frame (all-in).
constexpr bool carriesPayload(std::uint8_t formatByte) {
    const unsigned format = formatByte & 0xFU;
    return format == 3 || (format >= 5 && format <= 8);
}

/// Accepts packets to one of \p endpoints: whole, or for headersOnly those that carry payload up to
/// keptOfPayload. Of two endpoints that differ only in headersOnly, the whole one holds. Takes
/// about 5 instructions each; the kernel accepts 4096.
std::vector<sock_filter> streamFilter(std::vector<StreamEndpoint> endpoints);

/// Accepts every UDP datagram whole.
std::vector<sock_filter> unselectiveFilter();

} // namespace orv::aravis
