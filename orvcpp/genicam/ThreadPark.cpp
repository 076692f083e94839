// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/genicam/ThreadPark.h"

#include <algorithm>
#include <utility>

namespace orv::genicam {

void ThreadPark::start(std::function<void()> body) {
    auto finished = std::make_shared<std::atomic<bool>>(false);
    const std::lock_guard lock(m_mutex);
    const auto done =
        std::stable_partition(m_threads.begin(), m_threads.end(),
                              [](const Parked& parked) { return !parked.finished->load(); });
    std::for_each(done, m_threads.end(), [](Parked& parked) { parked.thread.join(); });
    m_threads.erase(done, m_threads.end());
    m_threads.push_back({finished, std::thread([body = std::move(body), finished]() mutable {
                             body();
                             body = nullptr;
                             finished->store(true);
                         })});
}

void ThreadPark::join() {
    std::vector<Parked> ending;
    {
        const std::lock_guard lock(m_mutex);
        ending.swap(m_threads);
    }
    for (Parked& parked : ending)
        parked.thread.join();
}

} // namespace orv::genicam
