// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketSource.h"

#include <cstdint>
#include <vector>

#include <linux/filter.h>

/// Programs for the kernel's classic packet filter, on packets that begin with the IPv4 header.
/// They refuse all but UDP, and fragments except where said. Pure functions, reentrant.
namespace gvsp {

/// Bytes of UDP payload that headersOnly leaves of a packet that carries payload: the extended
/// header of 20 bytes and the 8 bytes that multi-part payload adds.
constexpr std::uint32_t keptOfPayload = 28;

/// Whether a packet carries payload. The lower half of byte 4 of its header is its format: generic
/// (3), H.264 (5), multi-zone (6), multi-part (7) and GenDC (8) carry payload. Leaders and trailers
/// are short; all-in packets hold a whole frame.
constexpr bool carriesPayload(std::uint8_t formatByte) {
    const unsigned format = formatByte & 0xFU;
    return format == 3 || (format >= 5 && format <= 8);
}

/// Accepts packets to one of \p endpoints: whole, or for headersOnly those that carry payload up to
/// keptOfPayload. If two endpoints differ only in headersOnly, packets are whole. Takes
/// about 5 instructions each; the kernel accepts 4096.
std::vector<sock_filter> streamFilter(std::vector<StreamEndpoint> endpoints);

/// Accepts packets to one of \p endpoints as for headersOnly, and whole: answers of cameras to
/// control commands, and what looks like the leader of any other stream. Of all fragments but a
/// datagram's first, which is filtered as a whole one, it accepts the IP header.
std::vector<sock_filter> observerFilter(std::vector<StreamEndpoint> endpoints);

/// Whether a datagram looks like the leader of a stream: of status 0, with packet number 0.
bool mayBeLeader(const gige::UdpDatagram& datagram);

/// Accepts every UDP datagram whole.
std::vector<sock_filter> unselectiveFilter();

} // namespace gvsp
