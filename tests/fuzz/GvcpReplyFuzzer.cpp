// SPDX-License-Identifier: BSD-3-Clause
#include "gige/Gvcp.h"
#include "orvcpp/aravis/device/GrantedAccess.h"

#include <cstdlib>
#include <vector>

/// A packet that a camera answers to a request.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace gige;
    // Of its own size, so that reading beyond its end is found.
    const std::vector<std::uint8_t> packet(data, data + size);
    for (const GvcpCommand command : {GvcpCommand::ReadRegister, GvcpCommand::ReadMemory}) {
        const GvcpReply reply = parseReply(packet.data(), packet.size(), {command, 1});
        if (reply.answer && reply.pending)
            std::abort();
        if (!reply.answer)
            continue;
        if (reply.answer->data.size() + 8 != size)
            std::abort();
        Gvcp::value(*reply.answer);
        if (Gvcp::text(*reply.answer).size() > size)
            std::abort();
        orv::aravis::grantedBy(*reply.answer);
    }
    return 0;
}
