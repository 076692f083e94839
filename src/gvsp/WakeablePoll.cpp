// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/WakeablePoll.h"

#include <algorithm>
#include <cstdint>
#include <ctime>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace gvsp {

namespace {

timespec timeSpan(std::chrono::microseconds span) {
    using namespace std::chrono;
    const auto seconds = duration_cast<std::chrono::seconds>(span);
    timespec result{};
    result.tv_sec = static_cast<std::time_t>(seconds.count());
    result.tv_nsec = static_cast<long>(nanoseconds(span - seconds).count());
    return result;
}

} // namespace

WakeablePoll::WakeablePoll() : m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

short WakeablePoll::wait(int handle, std::chrono::microseconds limit) const {
    pollfd polled[] = {{handle, POLLIN, 0}, {m_wake.handle(), POLLIN, 0}};
    const timespec span = timeSpan(std::max(limit, std::chrono::microseconds(0)));
    if (ppoll(polled, 2, &span, nullptr) <= 0)
        return 0;
    if (polled[1].revents != 0) {
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t size = ::read(m_wake.handle(), &count, sizeof count);
    }
    return polled[0].revents;
}

void WakeablePoll::wake() const {
    constexpr std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t size = ::write(m_wake.handle(), &one, sizeof one);
}

} // namespace gvsp
