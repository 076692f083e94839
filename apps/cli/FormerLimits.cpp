// SPDX-License-Identifier: BSD-3-Clause
#include "cli/FormerLimits.h"

#include "cli/Failure.h"
#include "engine/CameraHandler.h"

namespace cli {

FormerLimits::FormerLimits(const CameraList& cameras) {
    for (const auto& camera : cameras) {
        if (camera->isOpened())
            m_limits.push_back({camera, SavedLimit(*camera)});
    }
}

FormerLimits::~FormerLimits() {
    putBack();
}

void FormerLimits::requireReadable() const {
    for (const auto& [camera, limit] : m_limits) {
        if (limit.isUnreadable() && !camera->isLocked())
            throw Failure(
                QStringLiteral("%1: Its bandwidth limit cannot be read, so that it could not be "
                               "put back. --lock leaves it as it is.")
                    .arg(QString::fromStdString(cameraDisplayText(camera->getCameraInfo()))));
    }
}

bool FormerLimits::putBack() {
    bool areBack = true;
    for (Former& former : m_limits)
        areBack = former.limit.putBack() && areBack;
    m_limits.clear();
    return areBack;
}

} // namespace cli
