// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/StreamReceiver.h"
#include "orvcpp/core/SdkThread.h"
#include "tests/support/SdkFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace orv::aravis;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::ElementsAre;

struct ScriptedPacket {
    std::uint32_t sender;
    std::uint16_t port;
    std::uint8_t value;
};

class ScriptedSource : public gvsp::PacketSource {
public:
    explicit ScriptedSource(std::promise<void>& isDestroyed) : m_isDestroyed(isDestroyed) {}
    ~ScriptedSource() override { m_isDestroyed.set_value(); }

    /// All packets of one call come in one round.
    void push(const std::vector<ScriptedPacket>& added) {
        const std::lock_guard lock(m_mutex);
        m_packets.insert(m_packets.end(), added.begin(), added.end());
        m_changed.notify_all();
    }
    std::vector<std::uint16_t> listenedPorts() {
        const std::lock_guard lock(m_mutex);
        return m_ports;
    }

    void receive(std::chrono::microseconds wait, const Handler& handler) override {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, wait, [this] { return m_isWoken || !m_packets.empty(); });
        m_isWoken = false;
        const auto packets = std::exchange(m_packets, {});
        lock.unlock();
        for (const ScriptedPacket& packet : packets) {
            gvsp::StreamDatagram datagram;
            datagram.sender = packet.sender;
            datagram.port = packet.port;
            datagram.data = &packet.value;
            datagram.captured = datagram.size = 1;
            handler(datagram);
        }
    }
    void wake() override {
        const std::lock_guard lock(m_mutex);
        m_isWoken = true;
        m_changed.notify_all();
    }
    void listen(const std::vector<gvsp::StreamEndpoint>& endpoints) override {
        const std::lock_guard lock(m_mutex);
        m_ports.clear();
        for (const gvsp::StreamEndpoint& endpoint : endpoints)
            m_ports.push_back(endpoint.port);
    }
    std::chrono::milliseconds latency() const override { return {}; }
    gvsp::SourceCounts counts() override { return {3, 4}; }

private:
    std::promise<void>& m_isDestroyed;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<ScriptedPacket> m_packets;
    std::vector<std::uint16_t> m_ports;
    bool m_isWoken = false;
};

/// Keeps what comes; a round's end is 255.
class Recorder : public PacketConsumer {
public:
    static constexpr std::uint8_t end = 255;

    explicit Recorder(std::function<void()> reaction = {}) : m_reaction(std::move(reaction)) {}

    void packet(const gvsp::StreamDatagram& datagram) override {
        EXPECT_TRUE(orv::isFrameThread());
        record(*datagram.data);
        if (m_reaction)
            m_reaction();
    }
    void caughtUp() override {
        if (dueIn)
            m_due = Clock::now() + *dueIn;
        record(end);
    }
    std::optional<Clock::time_point> due() const override { return m_due; }

    std::vector<std::uint8_t> values() {
        const std::lock_guard lock(m_mutex);
        return m_values;
    }
    bool waitFor(std::size_t count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, 20s, [&] { return m_values.size() >= count; });
    }

    /// Set before the consumer is added.
    std::optional<Clock::duration> dueIn;

private:
    void record(std::uint8_t value) {
        const std::lock_guard lock(m_mutex);
        m_values.push_back(value);
        m_changed.notify_all();
    }

    const std::function<void()> m_reaction;
    std::optional<Clock::time_point> m_due;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::uint8_t> m_values;
};

class StreamReceivers : public testing::Test {
protected:
    std::shared_ptr<Recorder> add(std::uint32_t camera, std::uint16_t port,
                                  std::function<void()> reaction = {}) {
        auto recorder = std::make_shared<Recorder>(std::move(reaction));
        m_receiver->add({camera, 9, port, false}, recorder);
        return recorder;
    }

    std::promise<void> m_isDestroyed;
    /// Owned by the receiver.
    ScriptedSource* const m_source = new ScriptedSource(m_isDestroyed);
    std::unique_ptr<StreamReceiver> m_receiver =
        std::make_unique<StreamReceiver>(std::unique_ptr<gvsp::PacketSource>(m_source));
};

TEST_F(StreamReceivers, handEachStreamItsPackets) {
    const auto first = add(7, 20);
    const auto second = add(7, 10);
    const auto third = add(0xC0A80001, 20);
    const auto idle = add(8, 10);
    EXPECT_THAT(m_source->listenedPorts(), testing::UnorderedElementsAre(20, 10, 20, 10));
    EXPECT_EQ(m_receiver->counts().dropped, 3U);
    m_source->push(
        {{7, 20, 1}, {7, 10, 3}, {8, 20, 4}, {7, 11, 5}, {0xC0A80001, 20, 6}, {7, 20, 7}});
    ASSERT_TRUE(first->waitFor(3) && second->waitFor(2) && third->waitFor(2));
    EXPECT_THAT(first->values(), ElementsAre(1, 7, Recorder::end));
    EXPECT_THAT(second->values(), ElementsAre(3, Recorder::end));
    EXPECT_THAT(third->values(), ElementsAre(6, Recorder::end));
    EXPECT_THAT(idle->values(), ElementsAre());
    m_receiver->remove(*third);
    EXPECT_THAT(m_source->listenedPorts(), testing::UnorderedElementsAre(20, 10, 10));
}

/// A ring hands over many packets per round: changes must not wait for its end.
TEST_F(StreamReceivers, heedChangesWithinARound) {
    const auto added = std::make_shared<Recorder>();
    std::shared_ptr<Recorder> replaced;
    replaced = add(1, 1, [&] {
        m_receiver->remove(*replaced);
        m_receiver->add({1, 9, 1, false}, added);
    });
    m_source->push({{1, 1, 1}, {1, 1, 2}, {1, 1, 3}});
    ASSERT_TRUE(added->waitFor(3));
    EXPECT_THAT(added->values(), ElementsAre(2, 3, Recorder::end));
    EXPECT_THAT(replaced->values(), ElementsAre(1));
}

TEST_F(StreamReceivers, doNotWaitForAnotherStreamsCall) {
    std::promise<void> entered;
    std::promise<void> goOn;
    const auto slow = add(1, 1, [&] {
        entered.set_value();
        EXPECT_EQ(goOn.get_future().wait_for(20s), std::future_status::ready);
    });
    const auto other = add(2, 2);
    m_source->push({{1, 1, 1}, {2, 2, 2}});
    entered.get_future().wait();
    m_receiver->remove(*other);
    const auto late = add(3, 3);
    m_receiver->remove(*slow);
    goOn.set_value();
    m_source->push({{1, 1, 3}, {2, 2, 4}, {3, 3, 5}});
    ASSERT_TRUE(late->waitFor(2));
    EXPECT_THAT(other->values(), ElementsAre());
    EXPECT_THAT(slow->values(), ElementsAre(1));
}

TEST_F(StreamReceivers, loseNothingWhileOthersComeAndGo) {
    constexpr std::size_t count = 20'000;
    const auto steady = add(1, 1);
    std::atomic<bool> isDone{false};
    const auto comeAndGo = [&](std::uint16_t port) {
        while (!isDone) {
            auto passing = add(2, port);
            m_source->push({{2, port, 1}});
            EXPECT_TRUE(passing->waitFor(1));
            m_receiver->remove(*passing);
            const std::weak_ptr<Recorder> released = std::exchange(passing, nullptr);
            EXPECT_TRUE(sdk::eventually([&] { return released.expired(); }));
        }
    };
    auto first = std::async(std::launch::async, comeAndGo, std::uint16_t{1});
    auto second = std::async(std::launch::async, comeAndGo, std::uint16_t{2});
    std::vector<std::uint8_t> expected(count);
    for (std::size_t i = 0; i < count; ++i) {
        expected[i] = static_cast<std::uint8_t>(i % 250);
        m_source->push({{1, 1, expected[i]}});
    }
    isDone = true;
    first.get();
    second.get();
    const auto last = add(3, 3);
    m_source->push({{3, 3, 3}});
    EXPECT_TRUE(last->waitFor(1));
    auto values = steady->values();
    values.erase(std::remove(values.begin(), values.end(), Recorder::end), values.end());
    EXPECT_EQ(values, expected);
}

TEST_F(StreamReceivers, callStreamsWhenTheyAreDue) {
    const auto idle = add(2, 2);
    m_source->push({{2, 2, 1}});
    ASSERT_TRUE(idle->waitFor(2));
    // The receiver begins to wait.
    std::this_thread::sleep_for(20ms);
    const auto begun = Clock::now();
    const auto punctual = std::make_shared<Recorder>();
    punctual->dueIn = 30ms;
    punctual->caughtUp();
    m_receiver->add({1, 9, 1, false}, punctual);
    ASSERT_TRUE(punctual->waitFor(3));
    EXPECT_GE(Clock::now() - begun, 60ms);
    EXPECT_LT(Clock::now() - begun, 8s);
    EXPECT_THAT(idle->values(), ElementsAre(1, Recorder::end));
}

TEST_F(StreamReceivers, mayEndOnTheirOwnThread) {
    const auto last = add(1, 1, [this] { m_receiver.reset(); });
    const auto other = add(2, 2);
    m_source->push({{1, 1, 1}, {1, 1, 2}, {2, 2, 3}});
    ASSERT_EQ(m_isDestroyed.get_future().wait_for(20s), std::future_status::ready);
    EXPECT_THAT(last->values(), ElementsAre(1));
    EXPECT_THAT(other->values(), ElementsAre());
}

} // namespace
