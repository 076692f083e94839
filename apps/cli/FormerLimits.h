// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraList.h"
#include "engine/SavedLimit.h"

#include <memory>
#include <vector>

namespace cli {

/// The bandwidth limits of cameras as they were at construction. The destructor puts them back,
/// whatever fails, unless they were put back or the new ones are to be kept. Bound to one thread.
class FormerLimits {
public:
    /// Cameras that are not open are left out.
    explicit FormerLimits(const CameraList& cameras);
    ~FormerLimits();

    FormerLimits(const FormerLimits&) = delete;
    FormerLimits& operator=(const FormerLimits&) = delete;

    /// Throws a Failure that names a camera whose limit may be changed, but could not be read and
    /// so not be put back. Locked cameras keep theirs.
    void requireReadable() const;
    /// Returns whether every camera has its former limit again; logs which one has not.
    bool putBack();
    /// Leaves the present limits.
    void forget() { m_limits.clear(); }

private:
    struct Former {
        std::shared_ptr<CameraHandler> camera;
        SavedLimit limit;
    };

    std::vector<Former> m_limits;
};

} // namespace cli
