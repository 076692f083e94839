// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>

namespace viewer {

/// Keeps the camera SDK started for as long as it lives. Bound to the GUI thread.
class SdkSession {
public:
    /// \p configuration is the file that names the providers to start, or the scenario to
    /// simulate; empty starts what the SDK has built in.
    explicit SdkSession(const QString& configuration);
    ~SdkSession();

    SdkSession(const SdkSession&) = delete;
    SdkSession& operator=(const SdkSession&) = delete;

    bool isStarted() const;
    /// Why the SDK did not start, for a person to read; empty when it did.
    QString error() const;

private:
    bool m_isStarted = false;
    QString m_error;
};

} // namespace viewer
