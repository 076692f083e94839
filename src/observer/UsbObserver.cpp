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
    for (auto& [key, stream] : m_streams)
        stream.noteMissed(missed.since, missed.until);
    const bool joins = missed.since - m_lastMiss.until < longestWaiting;
    m_lastMiss = {missed.events, joins ? std::min(m_lastMiss.since, missed.since) : missed.since,
                  missed.until};
}

void UsbObserver::take(const UsbTransfer& transfer) {
    const Key key(transfer.bus, transfer.device, transfer.endpoint);
    auto known = m_streams.find(key);
    if (known == m_streams.end()) {
        if (!UsbStream::isLeader(transfer) ||
            (m_streams.size() >= mostUsbStreams && !forgetSilent(transfer.arrival)))
            return;
        known = m_streams.try_emplace(key).first;
        if (m_lastMiss.events > 0)
            known->second.noteMissed(m_lastMiss.since, m_lastMiss.until);
    }
    known->second.take(transfer);
}

bool UsbObserver::forgetSilent(UsbStream::Time now) {
    const auto oldest =
        std::min_element(m_streams.begin(), m_streams.end(), [](const auto& a, const auto& b) {
            return a.second.latest() < b.second.latest();
        });
    if (now - oldest->second.latest() < shortestUsbSilence)
        return false;
    m_streams.erase(oldest);
    return true;
}

UsbReading UsbObserver::read() {
    const std::lock_guard lock(m_mutex);
    UsbReading reading;
    reading.missedEvents = m_missedEvents;
    const UsbStream::Time now = m_monitor->now();
    for (auto& [key, stream] : m_streams) {
        if (!stream.isKnown())
            continue;
        UsbStreamReading each;
        std::tie(each.bus, each.device, each.endpoint) = key;
        each.figures = stream.figures();
        each.timing = stream.takeTiming();
        each.silence = std::max(now - stream.latest(), UsbStream::Time::zero());
        reading.streams.push_back(each);
    }
    return reading;
}

} // namespace observer
