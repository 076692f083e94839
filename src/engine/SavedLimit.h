// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/BandwidthLimit.h"
#include "features/FeatureValue.h"

#include <cstdint>
#include <optional>
#include <string>

class CameraHandler;

/// Bandwidth limit of an open camera (bytes per second) as it was at construction, and whether it
/// was switched on, to be put back. A failed call is repeated, since a busy camera may refuse one.
/// Nothing throws; failures are logged. Bound to the GUI thread.
class SavedLimit {
public:
    /// \p camera must be open.
    explicit SavedLimit(const CameraHandler& camera);
    /// Nothing for a camera that has no limit, or of which the limit, or whether it is on, could
    /// not be read. Such a limit must not be changed: it could not be put back.
    std::optional<std::int64_t> value() const { return m_value; }
    /// Whether the camera has a limit, of which one of the two could not be read.
    bool isUnreadable() const { return !m_limit.name().empty() && !m_value; }
    /// Whether the camera has a limit that is switched off at present.
    bool isOff() const { return !m_limit.name().empty() && m_limit.isOff(); }
    /// The limit at present; nothing when it cannot be read.
    std::optional<std::int64_t> present() const;

    /// Switches the limit on where it was read to be off.
    void switchOn();
    /// Writes another limit, which must be one that the camera takes. Returns whether the camera
    /// then reports it.
    bool write(std::int64_t bytesPerSecond);
    /// Returns whether the camera has its former limit again.
    bool putBack();

private:
    bool putValueBack();
    bool putSwitchBack();

    const std::string m_camera;
    BandwidthLimit m_limit;
    std::optional<std::int64_t> m_value;
    /// Nothing where the camera has no switch.
    std::optional<FeatureValue> m_switch;
};
