// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/Link.h"

#include "orvcpp/core/SdkThread.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace orv::simulated {

namespace {

using Seconds = std::chrono::duration<double>;

/// Frames that are late by more than this are lost.
constexpr std::chrono::seconds longestLag{1};

Clock::duration periodOf(double rate) {
    return std::chrono::duration_cast<Clock::duration>(Seconds(1.0 / rate));
}

} // namespace

Link::Link(std::uint64_t bytesPerSecond)
    : m_bytesPerSecond(static_cast<double>(bytesPerSecond)), m_available(m_bytesPerSecond) {}

Link::~Link() {
    stop();
}

void Link::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void Link::addTraffic(double bytesPerSecond) {
    const std::lock_guard lock(m_mutex);
    m_traffic += bytesPerSecond;
    share();
}

void Link::attach(const std::shared_ptr<FrameSource>& source, const Demand& demand) {
    const std::lock_guard lock(m_mutex);
    Entry entry;
    entry.source = source;
    entry.demand = demand;
    const auto now = Clock::now();
    if (demand.framesPerSecond > 0)
        entry.due = now + periodOf(demand.framesPerSecond);
    m_entries.push_back(entry);
    share();
    m_entries.back().credit = 1 - m_carriedShare;
    if (!m_thread.joinable())
        m_thread = std::thread(&Link::run, this);
    m_wake.notify_all();
}

void Link::change(const FrameSource& source, const Demand& demand) {
    const std::lock_guard lock(m_mutex);
    Entry* entry = find(source);
    if (!entry)
        return;
    const bool sameRate = entry->demand.framesPerSecond == demand.framesPerSecond;
    entry->demand = demand;
    share();
    if (sameRate)
        return;
    const auto now = Clock::now();
    entry->due = Clock::time_point::max();
    if (demand.framesPerSecond > 0)
        entry->due =
            std::max(now, std::max(entry->last, m_start) + periodOf(demand.framesPerSecond));
    m_wake.notify_all();
}

void Link::trigger(const FrameSource& source) {
    const std::lock_guard lock(m_mutex);
    Entry* entry = find(source);
    if (!entry || entry->due != Clock::time_point::max() || !(entry->demand.maximumRate > 0))
        return;
    entry->due = std::max(Clock::now(),
                          std::max(entry->last, m_start) + periodOf(entry->demand.maximumRate));
    m_wake.notify_all();
}

void Link::drop(const FrameSource& source) {
    const std::lock_guard lock(m_mutex);
    removeEntry(source);
}

void Link::detach(const FrameSource& source) {
    std::unique_lock lock(m_mutex);
    removeEntry(source);
    m_idle.wait(lock, [&] { return m_serving != &source; });
}

Link::Entry* Link::find(const FrameSource& source) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return entry.source.get() == &source;
    });
    return found == m_entries.end() ? nullptr : &*found;
}

void Link::removeEntry(const FrameSource& source) {
    m_entries.erase(
        std::remove_if(m_entries.begin(), m_entries.end(),
                       [&](const Entry& entry) { return entry.source.get() == &source; }),
        m_entries.end());
    share();
}

void Link::share() {
    double asked = m_traffic;
    double onePerCamera = 0;
    double longestPeriod = 0;
    double largest = 0;
    for (const Entry& entry : m_entries) {
        asked += entry.demand.framesPerSecond * entry.demand.payload;
        onePerCamera += entry.demand.payload;
        largest = std::max<double>(largest, entry.demand.payload);
        if (entry.demand.framesPerSecond > 0)
            longestPeriod = std::max(longestPeriod, 1 / entry.demand.framesPerSecond);
    }
    m_carriedShare = asked > m_bytesPerSecond ? m_bytesPerSecond / asked : 1;
    m_available = m_bytesPerSecond - m_traffic * m_carriedShare;
    // Cameras that send at the same moment must not lose frames while their average is below the
    // link's speed, so the bytes of their longest period may come at once.
    const double limit = m_available * std::min(longestPeriod, 1.0) + onePerCamera + largest;
    m_allowance = std::min(m_allowance + std::max(0.0, limit - m_allowanceLimit), limit);
    m_allowanceLimit = limit;
}

Link::Entry* Link::next() {
    const auto first =
        std::min_element(m_entries.begin(), m_entries.end(),
                         [](const Entry& a, const Entry& b) { return a.due < b.due; });
    return first == m_entries.end() || first->due == Clock::time_point::max() ? nullptr : &*first;
}

void Link::run() {
    setCurrentSdkThread(SdkThread::Frames);
    std::unique_lock lock(m_mutex);
    while (!m_quit) {
        Entry* entry = next();
        if (!entry)
            m_wake.wait(lock);
        else if (const auto due = entry->due; due > Clock::now())
            m_wake.wait_until(lock, due);
        else
            sendFrame(*entry, lock);
    }
}

std::int64_t Link::skipMissed(Entry& entry, Clock::time_point now) {
    if (now - entry.due < longestLag || !(entry.demand.framesPerSecond > 0))
        return 0;
    const auto period = periodOf(entry.demand.framesPerSecond);
    const std::int64_t missed = (now - entry.due) / period;
    entry.due += missed * period;
    return missed;
}

void Link::sendFrame(Entry& entry, std::unique_lock<std::mutex>& lock) {
    const std::int64_t missed = skipMissed(entry, Clock::now());
    const Transmission transmission = carry(entry);
    const auto time = entry.due;
    entry.last = time;
    entry.due = entry.demand.framesPerSecond > 0 ? time + periodOf(entry.demand.framesPerSecond)
                                                 : Clock::time_point::max();
    // The entry may be removed while the lock is released.
    std::shared_ptr<FrameSource> source = entry.source;
    m_serving = source.get();
    lock.unlock();
    if (missed > 0)
        source->skip(missed);
    source->send(transmission,
                 static_cast<std::uint64_t>(std::chrono::nanoseconds(time - m_start).count()));
    lock.lock();
    m_serving = nullptr;
    m_idle.notify_all();
    // Without the lock: this may be the last reference, and it owns an observer of the user.
    lock.unlock();
    source.reset();
    lock.lock();
}

Transmission Link::carry(Entry& entry) {
    const double earned = Seconds(entry.due - m_filled).count() * m_available;
    m_allowance = std::min(m_allowance + std::max(0.0, earned), m_allowanceLimit);
    m_filled = std::max(m_filled, entry.due);
    if (entry.demand.framesPerSecond > 0) {
        entry.credit += m_carriedShare;
        // Rounding must not lose a frame while the link can carry all.
        if (entry.credit < 1 - 1e-9)
            return Transmission::Lost;
        entry.credit -= 1;
    }
    if (m_allowance < entry.demand.payload)
        return Transmission::Lost;
    m_allowance -= entry.demand.payload;
    entry.damage += (1 - m_carriedShare) * entry.demand.overloadDamage;
    if (entry.damage < 1)
        return Transmission::Whole;
    entry.damage -= 1;
    return Transmission::Damaged;
}

} // namespace orv::simulated
