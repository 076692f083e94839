// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "session/CameraSource.h"

#include <QString>

namespace OrvCPP {
class OrvSystem;
}

namespace session {

/// Starts the camera SDK, and shuts it down with the object. Bound to the GUI thread.
class SdkSession {
public:
    explicit SdkSession(const CameraSource& cameras);
    ~SdkSession();

    SdkSession(const SdkSession&) = delete;
    SdkSession& operator=(const SdkSession&) = delete;

    bool isStarted() const { return m_isStarted; }
    /// Why the SDK did not start, for a person; empty when it did.
    const QString& error() const { return m_error; }
    /// The SDK's one system object.
    OrvCPP::OrvSystem& system() const;
    /// Whether all cameras of the SDK, which was started, are simulated.
    bool isSimulated() const;

private:
    bool m_isStarted = false;
    QString m_error;
};

} // namespace session
