// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Interruption.h"

#include "cli/platform/Keyboard.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace cli {

namespace {

/// The pipe that the signal handler writes to. Global, since a handler gets the signal only.
std::array<int, 2> wakeUp{-1, -1};

/// SIGPIPE is ignored: the failed write reports that the reader is gone.
constexpr std::array<int, 4> handledSignals{SIGINT, SIGTERM, SIGHUP, SIGPIPE};
/// Actions that the destructor restores.
std::array<struct sigaction, handledSignals.size()> formerActions{};

volatile std::sig_atomic_t wasInterrupted = 0;

/// Only a second SIGINT ends the program. The other signals may come twice by themselves: both the
/// shell and the kernel send SIGHUP when a terminal closes.
void onSignal(int signal) {
    const int error = errno;
    if (signal == SIGINT && wasInterrupted != 0) {
        restoreTerminalMode();
        std::signal(SIGINT, SIG_DFL);
        // Delivered when this handler returns.
        raise(SIGINT);
    }
    wasInterrupted = signal == SIGINT ? 1 : wasInterrupted;
    constexpr char byte = 0;
    // A full pipe contains an earlier signal.
    [[maybe_unused]] const ssize_t written = ::write(wakeUp[1], &byte, 1);
    errno = error;
}

} // namespace

Interruption::Interruption() {
    if (pipe2(wakeUp.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    wasInterrupted = 0;
    for (std::size_t i = 0; i < handledSignals.size(); ++i) {
        sigaction(handledSignals[i], nullptr, &formerActions[i]);
        // Leaves SIGHUP ignored, as nohup sets it. Handles SIGINT even where it is ignored, as in
        // background programs of a script: these get one only on purpose.
        if (handledSignals[i] == SIGHUP && formerActions[i].sa_handler == SIG_IGN)
            continue;
        struct sigaction action {};
        action.sa_handler = handledSignals[i] == SIGPIPE ? SIG_IGN : onSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        sigaction(handledSignals[i], &action, nullptr);
    }
}

Interruption::~Interruption() {
    if (wakeUp[0] < 0)
        return;
    for (std::size_t i = 0; i < handledSignals.size(); ++i)
        sigaction(handledSignals[i], &formerActions[i], nullptr);
    for (int& end : wakeUp) {
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
