// SPDX-License-Identifier: BSD-3-Clause
#include "observer/ObservedStream.h"

#include <algorithm>
#include <utility>

namespace observer {

namespace {

/// A stream that pauses within a frame for this long has ended. Below the time after which the
/// assembly delivers a frame that gets no more packets.
constexpr std::chrono::milliseconds shortestEnd{150};
/// A larger step of the frames' numbers is another acquisition.
constexpr std::int64_t mostLostAtOnce = 1024;

/// Takes what the assembly finds out about one frame after the other.
class FrameVerdict final : public gvsp::FrameBuffer {
public:
    void store(std::size_t, const std::uint8_t*, std::size_t) override {}
    void setContents(const gvsp::FrameContents& contents) override { m_contents = contents; }
    const gvsp::FrameContents& contents() const { return m_contents; }

private:
    gvsp::FrameContents m_contents;
};

} // namespace

ObservedStream::ObservedStream() : m_frame(std::make_shared<FrameVerdict>()) {}

void ObservedStream::packet(const gvsp::StreamDatagram& datagram, Time arrival) {
    const auto packet = gvsp::readPacket(datagram.data, datagram.captured, datagram.size);
    if (!packet)
        return;
    ++m_figures.packets;
    m_latest = arrival;
    if (arrival >= m_due)
        advance(arrival);
    time(*packet, arrival);
    const auto sizes = m_learning.note(*packet);
    if (m_assembly) {
        const bool isInOrder = packet->number == m_nextNumber && packet->block == m_arriving.block;
        if (sizes && isNews(*sizes))
            learn(*sizes, *packet);
        m_assembly->packet(*packet, arrival);
        if (!isInOrder)
            advance(arrival);
    } else if (sizes) {
        learn(*sizes, *packet);
    }
    m_nextNumber = packet->number + 1;
}

void ObservedStream::advance(Time now) {
    if (!m_assembly)
        return;
    m_now = now;
    m_assembly->advance(now);
    m_due = m_assembly->due().value_or(Time::max());
    judgeLost();
}

void ObservedStream::time(const gvsp::Packet& packet, Time arrival) {
    if (packet.format == gvsp::Format::Data || packet.format == gvsp::Format::MultiPartData)
        m_figures.dataBytes += packet.size;
    if (packet.block == m_arriving.block) {
        m_arriving.largestGap =
            std::max<std::chrono::nanoseconds>(m_arriving.largestGap, arrival - m_arriving.last);
        m_arriving.last = arrival;
        m_arriving.bytes += packet.size;
    } else if (packet.block != m_previousBlock) {
        judgeCut(packet);
        m_previousEnd = m_arriving.last;
        finishFrame();
        m_previousBlock = m_arriving.block;
        m_arriving = {packet.block, arrival, arrival, {}, packet.size, false};
    }
    if (packet.block == m_arriving.block && packet.format == gvsp::Format::Trailer)
        m_arriving.hasTrailer = true;
}

bool ObservedStream::isCut(const gvsp::FrameContents& frame) const {
    return frame.id == m_assembly->newestNumber() && !m_arriving.hasTrailer &&
           m_now - m_latest > shortestEnd;
}

void ObservedStream::judgeCut(const gvsp::Packet& next) {
    if (!m_cut)
        return;
    // IDs of 16 bits wrap; a camera that begins anew has a low one.
    auto step = static_cast<std::int64_t>(next.block - m_arriving.block);
    if (!next.hasExtendedIds && step < 0)
        step += 0xFFFF;
    if (step > 0 && step < mostLostAtOnce) {
        --m_figures.framesUnjudged;
        ++m_figures.framesIncomplete;
        m_figures.packetsMissing += *m_cut;
    }
    m_cut.reset();
}

void ObservedStream::finishFrame() {
    const std::chrono::nanoseconds duration = m_arriving.last - m_arriving.first;
    if (m_arriving.block == 0 || duration.count() <= 0)
        return;
    const double seconds = std::chrono::duration<double>(duration).count();
    m_timing.add({1, duration, duration, m_arriving.largestGap,
                  static_cast<double>(m_arriving.bytes) / seconds});
}

bool ObservedStream::isNews(const StreamSizes::Sizes& sizes) const {
    if (!sizes.isExact)
        return !m_sizes.isExact && sizes.payload != m_sizes.payload;
    return sizes.payload != m_sizes.payload || sizes.packetSize != m_sizes.packetSize;
}

void ObservedStream::learn(const StreamSizes::Sizes& sizes, const gvsp::Packet& trailer) {
    const StreamSizes::Sizes before = std::exchange(m_sizes, sizes);
    if (m_assembly) {
        m_assembly->setSizes(sizes.payload, sizes.packetSize);
        if (sizes.packetSize != before.packetSize || sizes.payload > before.payload)
            m_resized = m_assembly->newestNumber();
        return;
    }
    gvsp::FrameAssembly::Settings settings;
    settings.payload = sizes.payload;
    settings.packetSize = sizes.packetSize;
    settings.previousId = trailer.block;
    settings.isWatching = true;
    gvsp::FrameAssembly::Output& output = *this;
    m_assembly.emplace(settings, output, m_counters);
}

std::shared_ptr<gvsp::FrameBuffer> ObservedStream::takeFrame() {
    return m_frame;
}

void ObservedStream::deliver(std::shared_ptr<gvsp::FrameBuffer> frame) {
    const gvsp::FrameContents& contents = static_cast<const FrameVerdict&>(*frame).contents();
    const std::uint64_t missing = m_counters.packetsMissing - m_missingBefore;
    m_missingBefore = m_counters.packetsMissing;
    judgeLost();
    if (contents.isWhole) {
        ++m_figures.framesComplete;
        return;
    }
    const bool isUnjudged = contents.id == m_resized || m_latest < m_blindUntil;
    if (!isUnjudged && isCut(contents))
        m_cut = missing;
    if (isUnjudged || m_cut) {
        ++m_figures.framesUnjudged;
    } else {
        ++m_figures.framesIncomplete;
        m_figures.packetsMissing += missing;
    }
}

void ObservedStream::judgeLost() {
    const std::uint64_t lost = m_counters.framesLost - m_lostBefore;
    m_lostBefore = m_counters.framesLost;
    const bool isBlind = std::min(m_previousEnd, m_latest) < m_blindUntil;
    (isBlind ? m_figures.framesUnjudged : m_figures.framesLost) += lost;
}

void ObservedStream::request(const gvsp::ResendRequest&) {}

StreamFigures ObservedStream::figures() const {
    StreamFigures figures = m_figures;
    figures.packetsResent = m_counters.packetsResent;
    figures.packetsDuplicate = m_counters.packetsDuplicate;
    figures.framesHollow = m_counters.framesHollow;
    figures.gaps = m_counters.gaps;
    return figures;
}

FrameTiming ObservedStream::takeTiming() {
    return std::exchange(m_timing, {});
}

} // namespace observer
