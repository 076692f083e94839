// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/GvcpCommand.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace gige {

/// What a GigE Vision camera answers to a request.
struct GvcpAnswer {
    /// GigE Vision's status, 0 for success.
    std::uint16_t status = 0;
    std::vector<std::uint8_t> data;
};

/// By what an answer is recognised: the command and the ID of its request.
struct GvcpRequestId {
    GvcpCommand command;
    std::uint16_t id;
};

/// The meaning of a received packet for a request; neither is set for a packet that does not belong
/// to it.
struct GvcpReply {
    std::optional<GvcpAnswer> answer;
    /// The camera needs this time more.
    std::optional<std::chrono::milliseconds> pending;
};

/// Reads the packet in \p bytes, which may hold anything. Reentrant.
GvcpReply parseReply(const std::uint8_t* bytes, std::size_t size, const GvcpRequestId& request);

} // namespace gige
