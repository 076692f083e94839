// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/FrameAssembly.h"
#include "gvsp/PacketSource.h"
#include "observer/StreamFigures.h"
#include "observer/StreamSizes.h"

#include <memory>
#include <optional>

namespace observer {

/// A stream that another program receives, seen from its packets' headers. Nothing is requested.
/// Its frames are judged after one has told their size. Not thread-safe.
class ObservedStream final : private gvsp::FrameAssembly::Output {
public:
    using Time = gvsp::FrameAssembly::Time;

    ObservedStream();

    void packet(const gvsp::StreamDatagram& datagram, Time arrival);
    /// Ends frames that have waited too long for their packets. Call it after each batch of
    /// packets.
    void advance(Time now);
    /// The observer has missed packets: until \p end, frames that are not whole are not judged.
    void noteMissed(Time end) { m_blindUntil = end; }

    /// Whether frames are judged.
    bool isKnown() const { return m_assembly.has_value(); }
    /// When the last packet came.
    Time latest() const { return m_latest; }
    StreamFigures figures() const;
    /// Of the frames since the last call.
    FrameTiming takeTiming();

private:
    /// The frame whose packets come now.
    struct Arriving {
        std::uint64_t block = 0;
        Time first;
        Time last;
        std::chrono::nanoseconds largestGap{0};
        std::size_t bytes = 0;
        bool hasTrailer = false;
    };

    std::shared_ptr<gvsp::FrameBuffer> takeFrame() override;
    void deliver(std::shared_ptr<gvsp::FrameBuffer> frame) override;
    void request(const gvsp::ResendRequest& request) override;

    void time(const gvsp::Packet& packet, Time arrival);
    void finishFrame();
    /// The stream has paused before the frame ended, as it does when a program stops the camera.
    bool isCut(const gvsp::FrameContents& frame) const;
    /// The stream goes on with this block: a frame that was cut before was not the last one.
    void judgeCut(const gvsp::Packet& next);
    bool isNews(const StreamSizes::Sizes& sizes) const;
    void learn(const StreamSizes::Sizes& sizes, const gvsp::Packet& trailer);
    /// What the assembly has counted as lost since the last call.
    void judgeLost();

    StreamSizes m_learning;
    StreamSizes::Sizes m_sizes;
    gvsp::StreamCounters m_counters;
    std::optional<gvsp::FrameAssembly> m_assembly;
    std::shared_ptr<gvsp::FrameBuffer> m_frame;
    StreamFigures m_figures;
    FrameTiming m_timing;
    Arriving m_arriving;
    std::uint64_t m_previousBlock = 0;
    Time m_latest{};
    /// Of the last advance().
    Time m_now{};
    Time m_blindUntil{};
    /// When the assembly is to look for what is missing.
    Time m_due = Time::max();
    std::uint32_t m_nextNumber = 0;
    std::uint64_t m_lostBefore = 0;
    std::uint64_t m_missingBefore = 0;
    /// Number of the frame that told new sizes: it was begun with the old ones.
    std::optional<std::uint64_t> m_resized;
    /// Packets missing of a frame that was cut; among the unjudged ones until the stream goes on.
    std::optional<std::uint64_t> m_cut;
    /// When the last packet before the present frame came.
    Time m_previousEnd{};
};

} // namespace observer
