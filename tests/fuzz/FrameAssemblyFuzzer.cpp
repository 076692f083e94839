// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/FrameAssembly.h"
#include "tests/gvsp/ReceivedFrame.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using namespace gvsp;

constexpr std::size_t payload = 100;
constexpr std::size_t packetSize = 60;

/// Takes frames as a user does, and checks that their numbers rise.
class Frames : public FrameAssembly::Output {
public:
    /// Every fourth time, there is none.
    std::shared_ptr<FrameBuffer> takeFrame() override {
        if (++m_calls % 4 == 0)
            return nullptr;
        return std::make_shared<ReceivedFrame>(payload);
    }
    void deliver(std::shared_ptr<FrameBuffer> frame) override {
        const std::uint64_t id = static_cast<const ReceivedFrame&>(*frame).contents.id.value_or(0);
        if (id <= m_last)
            std::abort();
        m_last = id;
    }
    void request(const ResendRequest& request) override {
        if (request.packets.first > request.packets.last)
            std::abort();
    }

private:
    unsigned m_calls = 0;
    std::uint64_t m_last = 0;
};

} // namespace

/// Packets of a stream. Each follows a byte with the milliseconds since the one before and a byte
/// with its length.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Frames frames;
    StreamCounters counters;
    FrameAssembly assembly({payload, packetSize, 1'000'000'000, true, {}, false}, frames, counters);
    FrameAssembly::Time now{std::chrono::hours(1)};
    while (size >= 2) {
        now += std::chrono::milliseconds(data[0]);
        const std::size_t length = std::min<std::size_t>(data[1], size - 2);
        // Of its own size, so that reading beyond its end is found.
        const std::vector<std::uint8_t> packet(data + 2, data + 2 + length);
        assembly.packet(packet.data(), packet.size(), packet.size(), now);
        if (data[0] != 0) {
            assembly.advance(now);
            if (assembly.due() && *assembly.due() <= now)
                std::abort();
        }
        data += 2 + length;
        size -= 2 + length;
    }
    // All that is open ends in time.
    for (int i = 0; i < 2; ++i) {
        now += std::chrono::seconds(1);
        assembly.advance(now);
    }
    if (assembly.due())
        std::abort();
    return 0;
}
