// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace fakecamera {

/// Address of a test's only camera.
constexpr const char* onlyAddress = "127.0.0.2";

/// Runs the program fake-camera from construction to destruction. The camera answers when the
/// constructor returns. It ends with the thread that made it, even when that is killed.
class FakeCameraProcess {
public:
    /// \p address is like "127.0.0.2"; \p options are of the program: "--serial", "A1", ...; \p
    /// networkNamespace is that of the camera when it is not that of the test. Throws
    /// std::runtime_error when the camera does not start, for example on an address in use.
    explicit FakeCameraProcess(const std::string& address,
                               const std::vector<std::string>& options = {},
                               const std::string& networkNamespace = {});
    ~FakeCameraProcess();
    FakeCameraProcess(const FakeCameraProcess&) = delete;
    FakeCameraProcess& operator=(const FakeCameraProcess&) = delete;

    /// Ends the camera at once, as a pulled cable does.
    void kill();
    /// Ends the camera and starts a new one. Throws as the constructor does.
    void restart();
    /// Keeps the camera from answering and sending until resume().
    void pause();
    void resume();

private:
    void start();
    void send(int signal) const;

    const std::string m_address;
    std::vector<std::string> m_command;
    pid_t m_process = -1;
};

} // namespace fakecamera
