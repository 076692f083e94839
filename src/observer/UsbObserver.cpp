// SPDX-License-Identifier: BSD-3-Clause
#include "observer/UsbObserver.h"

#include <algorithm>
#include <utility>

namespace observer {

namespace {

/// Streams of a bus; more are not followed, so that made-up leaders do not fill the memory.
constexpr std::size_t mostUsbStreams = 64;
/// Where there are too many, a stream that was silent for this long makes room.
constexpr std::chrono::seconds shortestUsbSilence{10};
/// Events wait in the kernel's ring for less.
constexpr std::chrono::seconds longestWaiting{1};

} // namespace

UsbObserver::UsbObserver(std::unique_ptr<UsbMonitor> monitor)
    : m_monitor(std::move(monitor)), m_capture(*m_monitor) {}

bool UsbObserver::receive(std::chrono::milliseconds longest) {
    const bool goesOn = m_capture.receive(longest);
    const std::lock_guard lock(m_mutex);
    if (m_capture.missed().events > 0)
        noteMissed(m_capture.missed());
    for (std::size_t i = 0; i < m_capture.size(); ++i)
        take(m_capture.at(i));
    return goesOn;
}

void UsbObserver::noteMissed(const UsbMiss& missed) {
    m_missedEvents += missed.events;
    for (auto& [key, entry] : m_streams)
        entry.stream.noteMissed(missed.since, missed.until);
    const bool joins = missed.since - m_lastMiss.until < longestWaiting;
    m_lastMiss = {missed.events, joins ? std::min(m_lastMiss.since, missed.since) : missed.since,
                  missed.until};
}

void UsbObserver::take(const UsbTransfer& transfer) {
    const UsbStreamKey key(transfer.bus, transfer.device, transfer.endpoint);
    auto known = m_streams.find(key);
    if (known == m_streams.end()) {
        if (!UsbStream::isLeader(transfer) ||
            (m_streams.size() >= mostUsbStreams && !forgetSilent(transfer.arrival)))
            return;
        known = m_streams.try_emplace(key).first;
        if (m_lastMiss.events > 0)
            known->second.stream.noteMissed(m_lastMiss.since, m_lastMiss.until);
    }
    known->second.stream.take(transfer);
}

bool UsbObserver::forgetSilent(UsbStream::Time now) {
    const auto oldest =
        std::min_element(m_streams.begin(), m_streams.end(), [](const auto& a, const auto& b) {
            return a.second.stream.latest() < b.second.stream.latest();
        });
    if (now - oldest->second.stream.latest() < shortestUsbSilence)
        return false;
    m_streams.erase(oldest);
    return true;
}

UsbReading UsbObserver::read() {
    const std::lock_guard lock(m_mutex);
    UsbReading reading;
    reading.missedEvents = m_missedEvents;
    const UsbStream::Time now = m_monitor->now();
    for (auto& [key, entry] : m_streams) {
        if (!entry.stream.isKnown())
            continue;
        UsbStreamReading each;
        each.figures = entry.before;
        each.figures.add(entry.stream.figures());
        each.known = std::exchange(entry.known, each.figures);
        each.timing = std::exchange(entry.timingBefore, {});
        each.timing.add(entry.stream.takeTiming());
        entry.allTiming.add(each.timing);
        each.allTiming = entry.allTiming;
        each.silence = std::max(now - entry.stream.latest(), UsbStream::Time::zero());
        reading.streams[key] = each;
    }
    return reading;
}

std::vector<UsbStreamKey> UsbObserver::streams() {
    const std::lock_guard lock(m_mutex);
    std::vector<UsbStreamKey> keys;
    for (const auto& [key, entry] : m_streams)
        if (entry.stream.isKnown())
            keys.push_back(key);
    return keys;
}

void UsbObserver::join(const UsbStreamKey& ended, const UsbStreamKey& later) {
    const std::lock_guard lock(m_mutex);
    const auto from = m_streams.find(ended);
    const auto to = m_streams.find(later);
    if (from == m_streams.end() || to == m_streams.end() || from == to)
        return;
    Entry& entry = to->second;
    entry.before.add(from->second.before);
    entry.before.add(from->second.stream.figures());
    entry.known.add(from->second.known);
    entry.allTiming.add(from->second.allTiming);
    entry.timingBefore.add(from->second.timingBefore);
    entry.timingBefore.add(from->second.stream.takeTiming());
    m_streams.erase(from);
}

} // namespace observer
