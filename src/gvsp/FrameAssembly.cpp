// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/FrameAssembly.h"

#include <algorithm>
#include <utility>

namespace gvsp {

namespace {

using std::chrono::milliseconds;

/// Packets that overtake each other come within this time; what is missing then is requested.
constexpr milliseconds reorderTime{1};
/// A request is repeated after one and a half times what answers have taken, within these limits.
constexpr milliseconds shortestRetry{3};
constexpr milliseconds longestRetry{30};
/// After a quicker answer, the expected time shrinks by one in so many parts of the difference.
constexpr int answerWeight = 8;
/// Longest pause of a camera within a block; after it, the rest of the block counts as missing.
constexpr milliseconds longestPause{40};
/// A block that gets no packet for this long is delivered as it is.
constexpr milliseconds retention{200};
/// At most one in requestShare of a block's packets is requested, plus leastRequests: where more
/// are missing, the link is too slow, and requests would make it worse.
constexpr std::size_t requestShare = 4;
constexpr std::size_t leastRequests = 16;
/// Requests for one block at one time; each is a packet to the camera.
constexpr std::size_t mostRanges = 128;
/// Blocks of which one packet has come; some of their IDs may be damaged.
constexpr std::size_t mostCandidates = 4;
/// Open blocks. Fewer are open when fewer frames are queued.
constexpr std::size_t mostBlocks = 64;
/// Packets of all open blocks of a stream that is watched, so that made-up sizes do not fill the
/// memory; and how many blocks may be open whatever their size.
constexpr std::size_t mostWatchedPackets = 1U << 20U;
constexpr std::size_t fewestBlocks = 4;

/// What comes of a frame whose full packets the path does not carry: leader, trailer, and the last
/// packet of data, which is shorter. Of a frame of few packets, this says nothing.
constexpr std::size_t shortPackets = 3;
constexpr std::uint32_t fewestPackets = 6;

bool isHollow(const Block& block) {
    const std::uint32_t expected = block.expected();
    return expected >= fewestPackets && block.leader() && block.hasTrailer() &&
           expected - block.missing(expected) <= shortPackets;
}

std::uint64_t nanosecondsOf(std::uint64_t ticks, std::uint64_t frequency) {
    constexpr std::uint64_t second = 1'000'000'000;
    if (frequency == 0)
        return 0;
    return ticks / frequency * second + ticks % frequency * second / frequency;
}

} // namespace

FrameAssembly::FrameAssembly(const Settings& settings, Output& output, StreamCounters& counters)
    : m_settings(settings), m_output(output),
      m_counters(counters), m_layout{settings.payload, settings.packetSize, false},
      m_numbers(settings.previousId) {}

void FrameAssembly::packet(const std::uint8_t* bytes, std::size_t captured, std::size_t size,
                           Time now) {
    m_counters.packets.add(1);
    m_counters.bytes.add(size);
    if (const auto read = readPacket(bytes, captured, size))
        packet(*read, now);
    else
        m_counters.packetsRefused.add(1);
}

void FrameAssembly::packet(const Packet& packet, Time now) {
    const bool isFirst = !m_numbers.newestId();
    if (!isFirst && packet.hasExtendedIds != m_layout.hasExtendedIds)
        m_counters.packetsRefused.add(1);
    else if (Open* const open = find(packet.block))
        take(*open, packet, now);
    else
        takeUnknown(packet, now);
}

void FrameAssembly::setSizes(std::size_t payload, std::size_t packetSize) {
    m_layout.payload = payload;
    m_layout.packetSize = packetSize;
}

FrameAssembly::Open* FrameAssembly::find(std::uint64_t id) {
    const auto found = std::find_if(m_open.rbegin(), m_open.rend(),
                                    [id](const Open& open) { return open.block.id() == id; });
    return found == m_open.rend() ? nullptr : &*found;
}

void FrameAssembly::take(Open& open, const Packet& packet, Time now) {
    if (packet.availability == Availability::Later)
        return;
    if (packet.availability != Availability::Present) {
        m_counters.packetsUnavailable.add(1);
        // Some cameras answer this for packets that they have not sent yet.
        if (packet.number < open.block.next() || !isNewest(open))
            open.block.giveUp(packet.number, packet.availability == Availability::GoneWithPrevious);
        endBlocks(now);
        return;
    }
    switch (open.block.take(packet, now)) {
    case Block::Taken::Requested:
        m_counters.packetsResent.add(1);
        noteAnswer(now - open.lastRequest);
        break;
    case Block::Taken::New:
        break;
    case Block::Taken::Duplicate:
        m_counters.packetsDuplicate.add(1);
        return;
    case Block::Taken::Refused:
        m_counters.packetsRefused.add(1);
        break;
    }
    if (packet.format == Format::Leader && isNewest(open) && open.block.leader())
        m_numbers.noteTimestamp(open.block.leader()->timestamp);
    if (open.block.isSettled())
        endBlocks(now);
}

void FrameAssembly::takeUnknown(const Packet& packet, Time now) {
    // IDs of 16 bits come round: an old packet must not get into a new block.
    while (!m_candidates.empty() && now - m_candidates.front().time > retention) {
        m_candidates.pop_front();
        m_counters.packetsRefused.add(1);
    }
    const auto candidate =
        std::find_if(m_candidates.begin(), m_candidates.end(), [&packet](const Candidate& each) {
            return each.packet.block == packet.block &&
                   each.packet.hasExtendedIds == packet.hasExtendedIds;
        });
    const bool isKnown = candidate != m_candidates.end();
    std::optional<std::uint64_t> timestamp;
    if (isKnown)
        timestamp = candidate->timestamp;
    if (const auto leader = packet.format == Format::Leader ? readLeader(packet) : std::nullopt)
        timestamp = leader->timestamp;
    const auto place = packet.availability == Availability::Present
                           ? m_numbers.place(packet.block, packet.hasExtendedIds, timestamp, now)
                           : std::nullopt;
    if (!place) {
        m_counters.packetsLate.add(1);
    } else if (!isKnown) {
        remember(packet, timestamp, now);
    } else if (candidate->packet.number == packet.number) {
        m_counters.packetsDuplicate.add(1);
    } else {
        Candidate first = std::move(*candidate);
        m_candidates.erase(candidate);
        first.packet.data = first.data.data();
        m_layout.hasExtendedIds = packet.hasExtendedIds;
        openBlock(packet.block, *place, now);
        for (const Packet* const each : {&std::as_const(first).packet, &packet}) {
            if (Open* const open = find(packet.block))
                take(*open, *each, now);
        }
    }
}

void FrameAssembly::remember(const Packet& packet, std::optional<std::uint64_t> timestamp,
                             Time now) {
    if (m_candidates.size() == mostCandidates) {
        m_candidates.pop_front();
        m_counters.packetsRefused.add(1);
    }
    m_candidates.push_back({packet, {packet.data, packet.data + packet.captured}, timestamp, now});
}

void FrameAssembly::openBlock(std::uint64_t id, const BlockNumbers::Place& place, Time now) {
    while (!m_open.empty() && (place.isRestart || m_open.size() >= mostOpen()))
        endFirst();
    if (place.isRestart)
        m_candidates.clear();
    // A later block may have been ended just now.
    if (place.number <= m_numbers.lastEnded())
        return;
    auto frame = takeFrame(place.number);
    const auto behind = std::find_if(m_open.begin(), m_open.end(), [&place](const Open& open) {
        return open.block.number() > place.number;
    });
    m_open.insert(behind, Open{Block(m_layout, id, place.number, std::move(frame)), {}, {}, false});
    m_numbers.open(id, place, now);
}

std::size_t FrameAssembly::mostOpen() const {
    if (!m_settings.isWatching)
        return mostBlocks;
    return std::clamp(mostWatchedPackets / m_layout.mostPackets(), fewestBlocks, mostBlocks);
}

/// For the block \p number. An earlier one that waits for packets gives way when no frame is free.
std::shared_ptr<FrameBuffer> FrameAssembly::takeFrame(std::uint64_t number) {
    auto frame = m_output.takeFrame();
    if (!frame && !m_open.empty() && m_open.front().block.number() < number) {
        endFirst();
        frame = m_output.takeFrame();
    }
    return frame;
}

bool FrameAssembly::isNewest(const Open& open) const {
    return open.block.number() == m_numbers.newest();
}

bool FrameAssembly::mayRequest(const Open& open) const {
    return m_settings.canRequest && open.block.frame() && !open.isHopeless;
}

FrameAssembly::Time FrameAssembly::end(const Open& open) const {
    const bool isSent = open.block.hasTrailer() || !isNewest(open);
    return open.block.latest() + (isSent && !mayRequest(open) ? reorderTime : retention);
}

void FrameAssembly::endBlocks(Time now) {
    while (!m_open.empty() && (m_open.front().block.isSettled() || now >= end(m_open.front())))
        endFirst();
}

void FrameAssembly::endFirst() {
    std::list<Open> first;
    first.splice(first.begin(), m_open, m_open.begin());
    const Block& block = first.front().block;
    const std::uint64_t lost = block.number() - m_numbers.lastEnded() - 1;
    m_counters.framesLost.add(lost);
    m_counters.gaps.add(lost > 0 ? 1 : 0);
    m_numbers.end(block.number());
    if (!block.frame()) {
        m_counters.framesWithoutBuffer.add(1);
        return;
    }
    FrameContents contents = block.contents();
    contents.timestamp = nanosecondsOf(contents.timestamp, m_settings.tickFrequency);
    const bool isComplete = contents.status == OrvFrameStatusComplete;
    (isComplete ? m_counters.framesComplete : m_counters.framesIncomplete).add(1);
    m_counters.framesHollow.add(isHollow(block) ? 1 : 0);
    m_counters.packetsMissing.add(block.missing(block.expected()));
    block.frame()->setContents(contents);
    m_output.deliver(block.frame());
}

FrameAssembly::Time FrameAssembly::tailDue(const Open& open) const {
    return open.block.latest() + (isNewest(open) ? longestPause : milliseconds(0));
}

void FrameAssembly::requestMissing(Open& open, Time now) {
    const Block& block = open.block;
    // Another program waits in its own way for the rest of a block that pauses.
    const bool isTailDue = now >= tailDue(open) && !(m_settings.isWatching && isNewest(open));
    const std::uint32_t end = isTailDue ? block.expected() : block.next();
    const std::size_t missing = block.missing(end);
    if (missing == 0) {
        open.nextRequest.reset();
        return;
    }
    if (!open.nextRequest)
        open.nextRequest = now + reorderTime;
    if (now < *open.nextRequest)
        return;
    const std::size_t share = m_layout.packets() / (m_settings.isWatching ? 1 : requestShare);
    if (block.requested() + missing > share + leastRequests) {
        // What another program has requested may still come.
        open.isHopeless = !m_settings.isWatching;
        open.nextRequest = m_settings.isWatching ? std::optional(Time::max()) : std::nullopt;
        return;
    }
    open.lastRequest = now;
    open.nextRequest =
        now + std::clamp<Time::duration>(m_answerTime * 3 / 2, shortestRetry, longestRetry);
    const std::size_t before = block.requested();
    for (const PacketRange& range : open.block.request(end, mostRanges))
        m_output.request({block.id(), m_layout.hasExtendedIds, range});
    m_counters.packetsRequested.add(block.requested() - before);
}

void FrameAssembly::noteAnswer(Time::duration time) {
    m_answerTime = time > m_answerTime ? time : m_answerTime - (m_answerTime - time) / answerWeight;
}

void FrameAssembly::advance(Time now) {
    for (Open& open : m_open) {
        if (mayRequest(open))
            requestMissing(open, now);
    }
    endBlocks(now);
}

std::optional<FrameAssembly::Time> FrameAssembly::due() const {
    std::optional<Time> due;
    const auto note = [&due](Time time) {
        due = std::min(due.value_or(time), time);
    };
    if (!m_open.empty())
        note(end(m_open.front()));
    for (const Open& open : m_open) {
        if (open.nextRequest)
            note(*open.nextRequest);
        else if (mayRequest(open) && open.block.missing(open.block.expected()) > 0)
            note(tailDue(open));
    }
    return due;
}

} // namespace gvsp
