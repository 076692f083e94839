// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/EventThread.h"

#include "orvcpp/core/SdkThread.h"

#include <utility>

namespace orv {

EventThread::~EventThread() {
    stop();
}

void EventThread::post(Event event, Clock::time_point time) {
    const std::lock_guard lock(m_mutex);
    if (m_quit)
        return;
    m_events.emplace(time, std::move(event));
    if (!m_thread.joinable())
        m_thread = std::thread(&EventThread::run, this);
    m_wake.notify_all();
}

void EventThread::stop() {
    std::multimap<Clock::time_point, Event> forgotten;
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
        forgotten.swap(m_events);
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void EventThread::run() {
    setCurrentSdkThread(SdkThread::Events);
    std::unique_lock lock(m_mutex);
    while (!m_quit) {
        if (m_events.empty()) {
            m_wake.wait(lock);
            continue;
        }
        const auto first = m_events.begin();
        if (first->first > Clock::now()) {
            const auto time = first->first;
            m_wake.wait_until(lock, time);
            continue;
        }
        Event event = std::move(first->second);
        m_events.erase(first);
        lock.unlock();
        event();
        event = nullptr;
        lock.lock();
    }
}

} // namespace orv
