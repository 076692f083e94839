// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/CameraNames.h"
#include "cli/RestoredCamera.h"

#include <chrono>
#include <functional>
#include <vector>

namespace cli {

/// Restores each saved camera when it appears, and again when it has returned. Bound to one thread.
class RestoreWatch {
public:
    /// Called after each attempt, and when a camera has disappeared (without its result).
    using Tell = std::function<void(const RestoredCamera&)>;

    /// \p present must outlive the object.
    RestoreWatch(const CameraNames& present, std::vector<settings::SavedCamera> saved, Tell tell);

    /// Takes other settings. Cameras that are restored already get theirs when they return.
    void replace(std::vector<settings::SavedCamera> saved);
    /// Looks once for cameras that have come or gone.
    void look(const std::function<bool()>& isCancelled);
    /// How many times a camera was restored completely.
    int countRestored() const { return m_restored; }

private:
    using Clock = std::chrono::steady_clock;
    struct Watched {
        settings::SavedCamera saved;
        bool isDone = false;
        bool isToldMissing = false;
        /// Attempts to restore it since it appeared, and when the next is due.
        int attempts = 0;
        Clock::time_point next{};
    };

    void tryOnce(Watched& camera, const std::function<bool()>& isCancelled);

    const CameraNames& m_present;
    const Tell m_tell;
    std::vector<Watched> m_cameras;
    int m_restored = 0;
};

} // namespace cli
