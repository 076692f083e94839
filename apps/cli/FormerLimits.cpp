// SPDX-License-Identifier: BSD-3-Clause
#include "cli/FormerLimits.h"

#include "engine/CameraHandler.h"

namespace cli {

FormerLimits::FormerLimits(const CameraList& cameras) {
    for (const auto& camera : cameras) {
        if (camera->isOpened())
            m_limits.emplace_back(*camera);
    }
}

FormerLimits::~FormerLimits() {
    putBack();
}

bool FormerLimits::putBack() {
    bool areBack = true;
    for (SavedLimit& limit : m_limits)
        areBack = limit.putBack() && areBack;
    m_limits.clear();
    return areBack;
}

} // namespace cli
