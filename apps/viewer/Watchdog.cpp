// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/Watchdog.h"

#include <cstdio>
#include <cstdlib>

namespace viewer {

Watchdog::Watchdog()
    : m_deadline(std::chrono::steady_clock::time_point::max()), m_thread([this] { watch(); }) {}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void Watchdog::expect(const std::string& step, std::chrono::seconds limit) {
    {
        const std::lock_guard lock(m_mutex);
        m_step = step;
        m_deadline = std::chrono::steady_clock::now() + limit;
    }
    m_changed.notify_one();
}

void Watchdog::watch() {
    std::unique_lock lock(m_mutex);
    while (!m_isOver) {
        if (std::chrono::steady_clock::now() >= m_deadline) {
            // Not std::cerr, which Spanlet's dialog redirects while it is open.
            std::fprintf(stderr, "Gave up: %s took too long.\n", m_step.c_str());
            std::fflush(stderr);
            std::_Exit(exitCode);
        }
        if (m_deadline == std::chrono::steady_clock::time_point::max())
            m_changed.wait(lock);
        else
            m_changed.wait_until(lock, m_deadline);
    }
}

} // namespace viewer
