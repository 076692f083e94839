// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/FakeCameraProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

namespace fakecamera {

namespace {

constexpr int secondsToStart = 10;

/// The two ends of a pipe, closed with the object. Throws std::runtime_error.
class Pipe {
public:
    Pipe() {
        if (pipe2(m_ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }
    ~Pipe() {
        close(m_ends[0]);
        closeWriter();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int writer() const { return m_ends[1]; }
    void closeWriter() { close(std::exchange(m_ends[1], -1)); }
    /// False when the other end closes or writes nothing for \p seconds.
    bool hears(int seconds) const {
        pollfd readable{m_ends[0], POLLIN, 0};
        char word = 0;
        return poll(&readable, 1, seconds * 1000) == 1 && read(m_ends[0], &word, 1) == 1;
    }

private:
    int m_ends[2];
};

} // namespace

FakeCameraProcess::FakeCameraProcess(const std::string& address,
                                     const std::vector<std::string>& options,
                                     const std::string& networkNamespace)
    : m_address(address) {
    if (!networkNamespace.empty())
        m_command = {"ip", "netns", "exec", networkNamespace};
    m_command.insert(m_command.end(), {FAKE_CAMERA_PROGRAM, "--address", address});
    m_command.insert(m_command.end(), options.begin(), options.end());
    start();
}

FakeCameraProcess::~FakeCameraProcess() {
    kill();
}

void FakeCameraProcess::kill() {
    if (m_process > 0) {
        send(SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_process = -1;
    }
}

void FakeCameraProcess::restart() {
    kill();
    start();
}

void FakeCameraProcess::pause() {
    send(SIGSTOP);
}

void FakeCameraProcess::resume() {
    send(SIGCONT);
}

void FakeCameraProcess::send(int signal) const {
    // kill(-1) would reach all processes.
    if (m_process > 0)
        ::kill(m_process, signal);
}

void FakeCameraProcess::start() {
    std::vector<char*> arguments;
    for (std::string& argument : m_command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    Pipe ready;
    const pid_t test = getpid();
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const bool testIsThere = getppid() == test;
        if (testIsThere && dup2(ready.writer(), STDOUT_FILENO) >= 0)
            execvp(arguments[0], arguments.data());
        _exit(127);
    }
    ready.closeWriter();
    if (!ready.hears(secondsToStart)) {
        kill();
        throw std::runtime_error("the fake camera does not start on " + m_address);
    }
}

} // namespace fakecamera
