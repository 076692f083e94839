// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Camera.h"

#include <QObject>

#include <atomic>

namespace viewer {

/// Forwards changes of the SDK's camera list to the GUI thread. Emits one signal for all changes
/// until acknowledge(). Thread-safe.
class CameraListWatcher : public QObject, public OrvCPP::ICameraListObserver {
    Q_OBJECT

public:
    void CameraListChanged(const std::shared_ptr<OrvCPP::Camera>& camera,
                           OrvUpdateTriggerType reason) override;

    /// Call before reading the list, so that later changes are announced again.
    void acknowledge();

signals:
    /// Emitted on the SDK's thread; connect it queued.
    void changed();

private:
    std::atomic<bool> m_isAnnounced{false};
};

} // namespace viewer
