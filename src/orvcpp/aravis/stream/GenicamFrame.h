// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/GObjects.h"

#include "OrvCPP/Frame.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace orv::aravis {

class Acquisition;

/// One of an acquisition's frames. Its fields are written by the thread that delivers while the
/// receiver does not own the frame, so the queries need no lock.
class GenicamFrame final : public OrvCPP::Frame, public std::enable_shared_from_this<GenicamFrame> {
public:
    GenicamFrame(std::weak_ptr<Acquisition> acquisition, std::size_t size);

    OrvErrorType GetReceiveStatus(OrvFrameStatusType& status) const override;
    OrvErrorType GetBufferSize(std::uint32_t& size) const override;
    /// OrvErrorNotAvailable for an incomplete frame whose number did not come.
    OrvErrorType GetFrameID(std::uint64_t& id) const override;
    OrvErrorType GetTimestamp(std::uint64_t& nanoseconds) const override;
    OrvErrorType GetImage(const std::uint8_t*& image) const override;
    /// This and the next two: OrvErrorNotAvailable without a complete image.
    OrvErrorType GetPixelFormat(OrvPixelFormatType& format) const override;
    OrvErrorType GetWidth(std::uint32_t& width) const override;
    OrvErrorType GetHeight(std::uint32_t& height) const override;

    std::shared_ptr<Acquisition> acquisition() const { return m_acquisition.lock(); }

private:
    friend class Acquisition;

    struct Image {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        OrvPixelFormatType format{};
    };

    void readImage();

    const std::weak_ptr<Acquisition> m_acquisition;
    std::vector<std::uint8_t> m_memory;
    /// Describes what is in the memory.
    GObjectPtr<ArvBuffer> m_buffer;
    std::atomic<bool> m_isQueued{false};
    OrvFrameStatusType m_status = OrvFrameStatusInvalid;
    std::optional<std::uint64_t> m_id;
    std::uint64_t m_timestamp = 0;
    std::optional<Image> m_image;
};

} // namespace orv::aravis
