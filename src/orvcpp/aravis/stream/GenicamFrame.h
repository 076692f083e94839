// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/FrameBuffer.h"

#include "OrvCPP/Frame.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace orv::aravis {

class Acquisition;

/// One of an acquisition's frames. Its contents are written by the thread that delivers while the
/// user does not own the frame, so the queries need no lock.
class GenicamFrame final : public OrvCPP::Frame,
                           public gvsp::FrameBuffer,
                           public std::enable_shared_from_this<GenicamFrame> {
public:
    /// \p size is that of the payload in bytes; \p hasMemory is false for a frame whose data are
    /// not stored.
    GenicamFrame(std::weak_ptr<Acquisition> acquisition, std::size_t size, bool hasMemory = true);

    OrvErrorType GetReceiveStatus(OrvFrameStatusType& status) const override;
    OrvErrorType GetBufferSize(std::uint32_t& size) const override;
    /// OrvErrorNotAvailable for an incomplete frame whose number did not come.
    OrvErrorType GetFrameID(std::uint64_t& id) const override;
    OrvErrorType GetTimestamp(std::uint64_t& nanoseconds) const override;
    /// OrvErrorNotAvailable for a frame without memory.
    OrvErrorType GetImage(const std::uint8_t*& image) const override;
    /// This and the next two: OrvErrorNotAvailable without a complete image.
    OrvErrorType GetPixelFormat(OrvPixelFormatType& format) const override;
    OrvErrorType GetWidth(std::uint32_t& width) const override;
    OrvErrorType GetHeight(std::uint32_t& height) const override;

    std::shared_ptr<Acquisition> acquisition() const { return m_acquisition.lock(); }
    /// Marks the frame as queued or not; answers whether it was.
    bool exchangeQueued(bool queued) { return m_isQueued.exchange(queued); }

    /// The memory; null without.
    std::uint8_t* memory() { return m_memory.empty() ? nullptr : m_memory.data(); }
    std::size_t size() const { return m_size; }
    /// Copies data into the memory, if there is some.
    void store(std::size_t offset, const std::uint8_t* data, std::size_t size) override;
    void setContents(const gvsp::FrameContents& contents) override { m_contents = contents; }

private:
    const std::weak_ptr<Acquisition> m_acquisition;
    const std::size_t m_size;
    std::vector<std::uint8_t> m_memory;
    std::atomic<bool> m_isQueued{false};
    gvsp::FrameContents m_contents;
};

} // namespace orv::aravis
