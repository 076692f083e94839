// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "features/StepGrid.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class FeatureController;

/// The feature that limits the bandwidth of one camera, in bytes per second: finds it, switches the
/// limit on, and writes values that the camera accepts. Nothing throws. Bound to the GUI thread.
class BandwidthLimit {
public:
    /// Features that can limit a bandwidth; the first one that the camera has counts.
    static constexpr std::array names{"DeviceLinkThroughputLimit", "StreamBytesPerSecond"};

    /// Whether a feature is one of these, or switches one of them.
    static bool hasPart(const std::string& feature);

    /// \p features must not be empty.
    explicit BandwidthLimit(std::shared_ptr<FeatureController> features);

    /// Looks for the feature. False, without a log line, when the camera has none.
    bool find();
    /// Name of the feature; empty while none is found. The operations below require one.
    const std::string& name() const { return m_name; }

    /// Switches the limit on, where the camera has a feature for that, and logs the result.
    void switchOn();
    /// Whether the camera has a feature for that.
    bool hasSwitch() const;
    /// The value of the feature that switches the limit; nothing where the camera has none, or it
    /// cannot be read.
    std::optional<FeatureValue> readSwitch() const;
    /// Writes that feature. Returns whether the camera took it.
    bool writeSwitch(const FeatureValue& value);
    /// Whether it is switched off, so that it limits nothing.
    bool isOff() const;
    /// Logs a warning when the limit is off. \p isWritable: whether the limit can be written now.
    void warnWhenOff(bool isWritable) const;

    /// Reads the description of the feature. write() keeps to the range and the increment read.
    FeatureInfo read();
    /// The values that the camera takes, as read() found them.
    const StepGrid& steps() const { return m_steps; }
    /// The limit in effect; 0 when it cannot be read.
    std::int64_t value() const;
    /// The same; nothing when it cannot be read.
    std::optional<std::int64_t> readValue() const;

    /// Writes \p value. If the camera refuses it, because it accepts steps from its minimum only,
    /// writes the highest step at or below \p atMost. Returns what was written; nothing when the
    /// camera refused both.
    std::optional<std::int64_t> write(std::int64_t value, std::int64_t atMost);
    std::optional<std::int64_t> write(std::int64_t value) { return write(value, value); }

private:
    bool set(std::int64_t value);

    std::shared_ptr<FeatureController> m_features;
    std::string m_name;
    StepGrid m_steps{0, 0, 0};
    /// The camera has refused a value for not being a step.
    bool m_takesStepsOnly = false;
};
