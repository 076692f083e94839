// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Interruption.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace cli {

namespace {

/// A signal handler knows its signal only, so the pipe that it writes to has to be here.
std::array<int, 2> wakeUp{-1, -1};

/// A broken pipe is the reader of our output who has left.
constexpr std::array<int, 4> signals{SIGINT, SIGTERM, SIGHUP, SIGPIPE};

void onSignal(int) {
    const int error = errno;
    constexpr char byte = 0;
    // A full pipe tells of an earlier signal already.
    [[maybe_unused]] const ssize_t written = write(wakeUp[1], &byte, 1);
    errno = error;
}

} // namespace

Interruption::Interruption() {
    if (pipe2(wakeUp.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    for (const int signal : signals) {
        struct sigaction previous {};
        sigaction(signal, nullptr, &previous);
        // A program started by nohup outlives its terminal. A script's background programs ignore
        // SIGINT, too, but there it is sent on purpose.
        if (signal == SIGHUP && previous.sa_handler == SIG_IGN)
            continue;
        struct sigaction action {};
        action.sa_handler = onSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = signal == SIGPIPE ? SA_RESTART : SA_RESTART | SA_RESETHAND;
        sigaction(signal, &action, nullptr);
    }
}

Interruption::~Interruption() {
    for (const int signal : signals) {
        struct sigaction current {};
        sigaction(signal, nullptr, &current);
        if (current.sa_handler == onSignal)
            std::signal(signal, SIG_DFL);
    }
    for (int& end : wakeUp) {
        if (end >= 0)
            close(end);
        end = -1;
    }
}

bool Interruption::wait(std::chrono::milliseconds time) {
    using std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + time;
    pollfd reader{wakeUp[0], POLLIN, 0};
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            std::max(deadline - steady_clock::now(), steady_clock::duration::zero()));
        const int ready = poll(&reader, 1, static_cast<int>(left.count()));
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

} // namespace cli
