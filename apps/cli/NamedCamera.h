// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "session/SdkSession.h"

#include <QString>

#include <memory>

class CameraHandler;
class FeatureController;

namespace cli {

/// Starts the camera SDK and opens one camera. The others stay closed: each takes time to open, and
/// another program may be about to use it. Throws a Failure when the SDK cannot be started, the
/// name is unknown or the camera cannot be opened. Bound to one thread.
class NamedCamera {
public:
    /// \p wanted is an ID, or a user-defined name or serial number that is unique.
    NamedCamera(const session::CameraSource& source, const QString& wanted);

    QString id() const;
    FeatureController& features() const;
    bool isSimulated() const { return m_session.isSimulated(); }

private:
    /// Declared first, so that it is destroyed last.
    session::SdkSession m_session;
    std::shared_ptr<CameraHandler> m_camera;
};

} // namespace cli
