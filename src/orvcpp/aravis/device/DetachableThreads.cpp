// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DetachableThreads.h"

#include <algorithm>
#include <utility>

namespace orv::aravis {

namespace {
using Clock = std::chrono::steady_clock;
}

bool DetachableThreads::Flag::wait(Clock::time_point end) {
    std::unique_lock lock(mutex);
    return changed.wait_until(lock, end, [this] { return isSet; });
}

DetachableThreads::~DetachableThreads() {
    join(std::chrono::milliseconds(0));
}

void DetachableThreads::start(std::function<void()> body) {
    auto finished = std::make_shared<Flag>();
    const std::lock_guard lock(m_mutex);
    const auto done =
        std::stable_partition(m_threads.begin(), m_threads.end(), [](const Parked& parked) {
            return !parked.finished->wait(Clock::time_point());
        });
    std::for_each(done, m_threads.end(), [](Parked& parked) { parked.thread.join(); });
    m_threads.erase(done, m_threads.end());
    m_threads.push_back({finished, std::thread([body = std::move(body), finished]() mutable {
                             body();
                             body = nullptr;
                             const std::lock_guard set(finished->mutex);
                             finished->isSet = true;
                             finished->changed.notify_all();
                         })});
}

void DetachableThreads::join(std::chrono::milliseconds limit) {
    std::vector<Parked> ending;
    {
        const std::lock_guard lock(m_mutex);
        ending.swap(m_threads);
    }
    const auto end = Clock::now() + limit;
    for (Parked& parked : ending) {
        if (parked.finished->wait(end))
            parked.thread.join();
        else
            parked.thread.detach();
    }
}

} // namespace orv::aravis
