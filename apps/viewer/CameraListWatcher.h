// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Camera.h"

#include <QObject>

#include <atomic>

namespace viewer {

/// Carries the SDK's news of its camera list to the GUI thread, several of them as one.
/// Thread-safe.
class CameraListWatcher : public QObject, public OrvCPP::ICameraListObserver {
    Q_OBJECT

public:
    void CameraListChanged(const std::shared_ptr<OrvCPP::Camera>& camera,
                           OrvUpdateTriggerType reason) override;

    /// To be called when the list is about to be read: changes from then on are announced anew.
    void acknowledge();

signals:
    /// Emitted on the SDK's thread; connect it queued.
    void changed();

private:
    std::atomic<bool> m_isAnnounced{false};
};

} // namespace viewer
