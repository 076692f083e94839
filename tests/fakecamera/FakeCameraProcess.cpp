// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/FakeCameraProcess.h"

#include "tests/fakecamera/Protocol.h"
#include "tests/fakecamera/UdpSocket.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace fakecamera {

using namespace std::chrono_literals;

FakeCameraProcess::FakeCameraProcess(const std::string& address,
                                     const std::vector<std::string>& options,
                                     const std::string& networkNamespace)
    : m_address(address) {
    if (!networkNamespace.empty()) {
        m_command = {"ip", "netns", "exec", networkNamespace};
    }
    m_command.insert(m_command.end(), {FAKE_CAMERA_PROGRAM, "--address", address});
    m_command.insert(m_command.end(), options.begin(), options.end());
    start();
}

FakeCameraProcess::~FakeCameraProcess() {
    kill();
}

void FakeCameraProcess::kill() {
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_process = -1;
    }
}

void FakeCameraProcess::restart() {
    kill();
    start();
}

void FakeCameraProcess::pause() {
    ::kill(m_process, SIGSTOP);
}

void FakeCameraProcess::resume() {
    ::kill(m_process, SIGCONT);
}

void FakeCameraProcess::start() {
    std::vector<char*> arguments;
    for (std::string& argument : m_command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    if (answers(20ms)) {
        throw std::runtime_error("there is a camera already on " + m_address);
    }
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    try {
        waitForAnswer();
    } catch (...) {
        kill();
        throw;
    }
}

void FakeCameraProcess::waitForAnswer() const {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!answers(20ms)) {
        siginfo_t ended{};
        waitid(P_PID, static_cast<id_t>(m_process), &ended, WEXITED | WNOHANG | WNOWAIT);
        if (ended.si_pid != 0 || std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("the fake camera does not answer on " + m_address);
        }
    }
}

bool FakeCameraProcess::answers(std::chrono::milliseconds patience) const {
    const UdpSocket socket;
    const auto camera = socketAddress(parseAddress(m_address), protocol::controlPort);
    std::uint8_t packet[protocol::controlHeaderSize] = {protocol::commandKey,
                                                        protocol::flagAcknowledge};
    protocol::put16(packet + 2, protocol::Discovery);
    protocol::put16(packet + 6, 1);
    sendto(socket.descriptor(), packet, sizeof packet, 0,
           reinterpret_cast<const sockaddr*>(&camera), sizeof camera);
    pollfd readable{socket.descriptor(), POLLIN, 0};
    return poll(&readable, 1, static_cast<int>(patience.count())) == 1;
}

} // namespace fakecamera
