// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/FakeCameraProcess.h"

#include "platform/Descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>

namespace fakecamera {

namespace {

constexpr int secondsToStart = 10;

/// False when the other end of a pipe closes or writes nothing for \p seconds.
bool hears(const platform::Descriptor& end, int seconds) {
    pollfd readable{end.handle(), POLLIN, 0};
    char word = 0;
    return poll(&readable, 1, seconds * 1000) == 1 && read(end.handle(), &word, 1) == 1;
}

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
    int pipe[2];
    if (pipe2(pipe, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const platform::Descriptor reader(pipe[0]);
    auto writer = std::make_unique<platform::Descriptor>(pipe[1]);
    const pid_t test = getpid();
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const bool testIsThere = getppid() == test;
        if (testIsThere && dup2(pipe[1], STDOUT_FILENO) >= 0)
            execvp(arguments[0], arguments.data());
        _exit(127);
    }
    writer.reset();
    if (!hears(reader, secondsToStart)) {
        kill();
        throw std::runtime_error("the fake camera does not start on " + m_address);
    }
}

} // namespace fakecamera
