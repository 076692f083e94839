// SPDX-License-Identifier: BSD-3-Clause
// What the observer of an adapter needs for a packet, by the number of streams whose packets come
// mixed.
#include "benchmarks/support/BenchmarkMain.h"
#include "benchmarks/support/Comparison.h"
#include "gvsp/Gvsp.h"
#include "gvsp/PacketSource.h"
#include "observer/AdapterObserver.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr double growthLimit = 1.3;
/// Packets of 1500 bytes, of frames of 1 MiB.
constexpr std::size_t dataSize = 1464;
constexpr std::uint32_t trailerNumber = 718;
constexpr int packetsPerRound = 8192;
constexpr int roundsPerTurn = 40;
constexpr int turns = 25;

/// Headers of the packets of several cameras, one packet of each in turn.
class GeneratedStreams final : public gvsp::PacketSource {
public:
    explicit GeneratedStreams(unsigned count) : m_heads(count) {}

    void receive(std::chrono::microseconds, const Handler& handler) override {
        for (int i = 0; i < packetsPerRound; ++i) {
            handOver(handler);
            if (++m_stream == m_heads.size()) {
                m_stream = 0;
                m_number = m_number == trailerNumber ? 0 : m_number + 1;
                m_block += m_number == 0 ? 1 : 0;
            }
        }
    }
    void wake() override {}
    void listen(const std::vector<gvsp::StreamEndpoint>&) override {}
    std::chrono::milliseconds latency() const override { return 0ms; }
    gvsp::SourceCounts counts() override { return {}; }

private:
    using Head = std::array<std::uint8_t, gvsp::extendedHeaderSize + 28>;

    void handOver(const Handler& handler) {
        const bool isLeader = m_number == 0;
        const bool isTrailer = m_number == trailerNumber;
        Head& head = m_heads[m_stream];
        head[4] = static_cast<std::uint8_t>(0x80U | (isLeader ? 1U : isTrailer ? 2U : 3U));
        write(head, 12, m_block);
        write(head, 16, m_number);
        // The timestamp of the leader.
        write(head, gvsp::extendedHeaderSize + 4, m_block);
        gvsp::StreamDatagram datagram;
        datagram.sender = 0x0A000002U + static_cast<std::uint32_t>(m_stream);
        datagram.destination = 0x0A000001;
        datagram.senderPort = 50000;
        datagram.port = static_cast<std::uint16_t>(40000 + m_stream);
        datagram.data = head.data();
        datagram.size = isTrailer ? 28 : isLeader ? head.size() : 20 + dataSize;
        datagram.captured = std::min(datagram.size, head.size());
        m_time += 1us;
        datagram.arrival = m_time;
        handler(datagram);
    }

    static void write(Head& head, std::size_t at, std::uint32_t number) {
        for (unsigned i = 0; i < 4; ++i)
            head[at + i] = static_cast<std::uint8_t>(number >> (24U - 8 * i));
    }

    std::vector<Head> m_heads;
    std::size_t m_stream = 0;
    std::uint32_t m_block = 1;
    std::uint32_t m_number = 0;
    /// All packets are of the past.
    std::chrono::nanoseconds m_time =
        std::chrono::system_clock::now().time_since_epoch() - std::chrono::seconds(20);
};

/// Nanoseconds, best of several turns.
struct Cost {
    /// Of a packet in the observer with its source, which stands for the ring.
    double perPacket = std::numeric_limits<double>::max();
    /// Of it in the source.
    double ofSource = std::numeric_limits<double>::max();
};

/// Fails where not every frame is seen complete.
Cost measure(benchmark::State& state, unsigned streams) {
    observer::AdapterObserver observer(std::make_unique<GeneratedStreams>(streams));
    GeneratedStreams alone(streams);
    Cost cost;
    std::uint64_t ignored = 0;
    const auto perPacket = [](const auto& round) {
        return nanosecondsPerCall(round, roundsPerTurn) / packetsPerRound;
    };
    for (int turn = 0; turn < turns; ++turn) {
        cost.perPacket =
            std::min(cost.perPacket, perPacket([&observer] { observer.receive(0us); }));
        cost.ofSource = std::min(
            cost.ofSource, perPacket([&alone, &ignored] {
                alone.receive(0us, [&ignored](const auto& datagram) { ignored += datagram.size; });
            }));
    }
    benchmark::DoNotOptimize(ignored);
    const observer::AdapterReading reading = observer.read();
    bool isWhole = reading.streams.size() == streams;
    for (const observer::StreamReading& stream : reading.streams)
        isWhole = isWhole && stream.figures.framesComplete > 0 &&
                  stream.figures.framesIncomplete + stream.figures.framesLost == 0;
    if (!isWhole)
        state.SkipWithError("not every frame was counted as complete");
    return cost;
}

void observedStreams(benchmark::State& state) {
    Cost cost;
    for (auto _ : state)
        cost = measure(state, static_cast<unsigned>(state.range(0)));
    state.counters["ns_per_packet"] = cost.perPacket;
    state.counters["ns_of_source"] = cost.ofSource;
}
BENCHMARK(observedStreams)->Arg(1)->Arg(4)->Arg(16)->Arg(64)->Iterations(1);

void packetOf64StreamsBesideOne(benchmark::State& state) {
    double ratio = 0;
    for (auto _ : state)
        ratio = measure(state, 64).perPacket / measure(state, 1).perPacket;
    state.counters["ratio"] = ratio;
    judge(state, "ratio 1.3", ratio <= growthLimit);
}
BENCHMARK(packetOf64StreamsBesideOne)->Iterations(1);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv);
}
