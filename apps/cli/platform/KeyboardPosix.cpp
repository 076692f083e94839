// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Keyboard.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <termios.h>
#include <unistd.h>

namespace cli {

namespace {

/// What is to be restored. Global, since a signal handler gets the signal only.
termios formerMode{};
volatile std::sig_atomic_t isModeChanged = 0;

/// Those of SIGINT, SIGTERM and SIGHUP end the program in order, which is the work of Interruption.
constexpr std::array<int, 7> abruptSignals{SIGQUIT, SIGABRT, SIGSEGV, SIGBUS,
                                           SIGFPE,  SIGILL,  SIGTSTP};
std::array<struct sigaction, abruptSignals.size()> actionsBefore{};

/// Changing the mode from the background would stop the program.
bool isForeground() {
    return tcgetpgrp(STDIN_FILENO) == getpgrp();
}

void restoreAndRaise(int signal);

void guardSignal(std::size_t index, struct sigaction* before) {
    struct sigaction action {};
    action.sa_handler = restoreAndRaise;
    sigemptyset(&action.sa_mask);
    // The signal that the handler raises is delivered at once.
    action.sa_flags = SA_RESTART | SA_NODEFER;
    sigaction(abruptSignals[index], &action, before);
}

void restoreAndRaise(int signal) {
    const int error = errno;
    restoreTerminalMode();
    for (std::size_t i = 0; i < abruptSignals.size(); ++i) {
        if (abruptSignals[i] != signal)
            continue;
        sigaction(signal, &actionsBefore[i], nullptr);
        raise(signal);
        // Continued after SIGTSTP; read() changes the mode again.
        guardSignal(i, nullptr);
    }
    errno = error;
}

/// Returns whether keys are read one by one now.
bool changeMode() {
    termios mode{};
    if (!isForeground() || tcgetattr(STDIN_FILENO, &mode) != 0)
        return false;
    if ((mode.c_lflag & ICANON) == 0)
        return true;
    mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    mode.c_cc[VMIN] = 0;
    mode.c_cc[VTIME] = 0;
    return tcsetattr(STDIN_FILENO, TCSANOW, &mode) == 0;
}

/// ECMA-48 sequences of terminals in normal and in application mode.
constexpr std::pair<const char*, Key> keys[] = {
    {"\x1b[A", Key::Up},   {"\x1bOA", Key::Up},      {"\x1b[B", Key::Down},
    {"\x1bOB", Key::Down}, {"\x1b[5~", Key::PageUp}, {"\x1b[6~", Key::PageDown},
    {"\x1b[H", Key::Home}, {"\x1bOH", Key::Home},    {"\x1b[1~", Key::Home},
    {"\x1b[F", Key::End},  {"\x1bOF", Key::End},     {"\x1b[4~", Key::End},
    {"q", Key::Quit},      {"Q", Key::Quit}};

} // namespace

void restoreTerminalMode() {
    if (isModeChanged != 0 && isForeground())
        tcsetattr(STDIN_FILENO, TCSANOW, &formerMode);
}

Keyboard::Keyboard() {
    if (isatty(STDIN_FILENO) == 0 || tcgetattr(STDIN_FILENO, &formerMode) != 0)
        return;
    // Before the mode is changed, so that no signal falls between the two.
    isModeChanged = 1;
    for (std::size_t i = 0; i < abruptSignals.size(); ++i)
        guardSignal(i, &actionsBefore[i]);
    m_isActive = true;
    changeMode();
}

Keyboard::~Keyboard() {
    if (!m_isActive)
        return;
    restoreTerminalMode();
    isModeChanged = 0;
    for (std::size_t i = 0; i < abruptSignals.size(); ++i)
        sigaction(abruptSignals[i], &actionsBefore[i], nullptr);
}

std::optional<Key> Keyboard::read() {
    if (!m_isActive || !changeMode())
        return std::nullopt;
    std::array<char, 64> bytes{};
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count > 0)
        m_pending.append(bytes.data(), static_cast<std::size_t>(count));
    while (!m_pending.empty()) {
        for (const auto& [sequence, key] : keys) {
            const std::string text(sequence);
            if (m_pending.compare(0, text.size(), text) != 0)
                continue;
            m_pending.erase(0, text.size());
            return key;
        }
        m_pending.erase(0, 1);
    }
    return std::nullopt;
}

} // namespace cli
