// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraList.h"
#include "engine/FramePeriod.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// Streams from cameras until its destruction and measures what they send, lost frames included:
/// the numbers of the frames that arrive tell how many were sent. Bound to the GUI thread.
class SendingRates {
public:
    struct Rate {
        double framesPerSecond;
        double bytesPerSecond;
    };

    explicit SendingRates(CameraList cameras);
    ~SendingRates();

    SendingRates(const SendingRates&) = delete;
    SendingRates& operator=(const SendingRates&) = delete;

    const CameraList& cameras() const { return m_cameras; }
    /// Looks for new frames. The time between two calls limits the precision.
    void sample();
    /// Of a camera, by its index; nothing before its second frame was noticed.
    std::optional<Rate> rate(std::size_t camera) const;

private:
    struct Stream {
        FramePeriod period;
        std::int64_t lastFrameId = 0;
        double bytesPerFrame = 0;
    };

    const CameraList m_cameras;
    std::vector<Stream> m_streams;
};
