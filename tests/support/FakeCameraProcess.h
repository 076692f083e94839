// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace fakecamera {

/// A fake camera that runs as a process of its own, from construction to destruction. It answers
/// when the constructor is done. Dies with the thread that made it, even when that is killed.
class FakeCameraProcess {
public:
    /// @param address the camera's, e.g. "127.0.0.2"
    /// @param options of the program fake-camera: "--serial", "A1", ...
    /// @param networkNamespace where the camera lives, if not where the test does
    /// Throws std::runtime_error when the camera cannot be, for one on an address that is taken.
    explicit FakeCameraProcess(const std::string& address,
                               const std::vector<std::string>& options = {},
                               const std::string& networkNamespace = {});
    ~FakeCameraProcess();
    FakeCameraProcess(const FakeCameraProcess&) = delete;
    FakeCameraProcess& operator=(const FakeCameraProcess&) = delete;

    /// Ends the camera at once, as a pulled cable does.
    void kill();
    /// Starts it again, as new. Throws as the constructor does.
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
