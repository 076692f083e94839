// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DeviceThread.h"

#include "orvcpp/aravis/device/DetachableThreads.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace orv::aravis {

namespace {

/// A camera's description may ask for more memory than there is.
OrvErrorType resultOf(const DeviceThread::Work& work) {
    try {
        return work();
    } catch (const std::exception&) {
        return OrvErrorResources;
    }
}

} // namespace

std::shared_ptr<DeviceThread> DeviceThread::begin(DetachableThreads& threads,
                                                  std::chrono::milliseconds patience) {
    auto made = std::make_shared<DeviceThread>(patience);
    threads.start([made] { made->run(); });
    return made;
}

OrvErrorType DeviceThread::call(Work work, std::chrono::milliseconds limit) {
    const auto job = std::make_shared<Job>();
    job->work = std::move(work);
    std::unique_lock lock(m_mutex);
    if (m_lost)
        return OrvErrorNotFound;
    if (m_quit)
        return OrvErrorDeviceNotOpen;
    if (isStuck())
        return OrvErrorTimeout;
    m_jobs.push_back(job);
    m_posted.notify_one();
    m_awaited.push_back(job);
    m_finished.wait_for(lock, limit, [&] { return job->isDone || job->isInterrupted || m_lost; });
    m_awaited.erase(std::find(m_awaited.begin(), m_awaited.end(), job));
    if (job->isDone)
        return job->result;
    job->isAbandoned = true;
    return m_lost ? OrvErrorNotFound : OrvErrorTimeout;
}

void DeviceThread::post(Work work) {
    const auto job = std::make_shared<Job>();
    job->work = std::move(work);
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(job);
    m_posted.notify_one();
}

bool DeviceThread::lose() {
    const std::lock_guard lock(m_mutex);
    if (m_lost)
        return false;
    m_lost = true;
    m_finished.notify_all();
    return true;
}

void DeviceThread::interrupt() {
    const std::lock_guard lock(m_mutex);
    for (const auto& job : m_awaited)
        job->isInterrupted = true;
    m_finished.notify_all();
}

bool DeviceThread::isLost() const {
    const std::lock_guard lock(m_mutex);
    return m_lost;
}

bool DeviceThread::isBusy() const {
    const std::lock_guard lock(m_mutex);
    return !m_awaited.empty();
}

bool DeviceThread::isStuck() const {
    return m_running && m_running->isAbandoned &&
           std::chrono::steady_clock::now() - m_running->begun >= m_patience;
}

void DeviceThread::quit() {
    const std::lock_guard lock(m_mutex);
    m_quit = true;
    m_posted.notify_one();
}

void DeviceThread::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_posted.wait(lock, [this] { return m_quit || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const std::shared_ptr<Job> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        if (job->isAbandoned)
            continue;
        m_running = job;
        job->begun = std::chrono::steady_clock::now();
        Work work = std::move(job->work);
        lock.unlock();
        const OrvErrorType result = resultOf(work);
        // Destroys what the work owns on this thread, without the lock.
        work = nullptr;
        lock.lock();
        job->result = result;
        job->isDone = true;
        m_running.reset();
        m_finished.notify_all();
    }
}

} // namespace orv::aravis
