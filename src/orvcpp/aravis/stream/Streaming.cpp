// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/Streaming.h"

#include <algorithm>
#include <utility>

namespace orv::aravis {

Streaming::Streaming(std::shared_ptr<DeviceSession> device, StreamPath path)
    : m_device(std::move(device)), m_path(path) {}

void Streaming::prepare() {
    std::shared_ptr<Acquisition> preparing;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_path.usesPacketSocket || m_isClosed || m_acquisition || m_prepared ||
            m_device->admits(true))
            return;
        preparing = std::make_shared<Acquisition>(m_device, m_path);
        m_prepared = preparing;
    }
    preparing->prepare();
}

void Streaming::discard() {
    std::shared_ptr<Acquisition> discarded;
    {
        const std::lock_guard lock(m_mutex);
        discarded.swap(m_prepared);
    }
    if (discarded)
        discarded->stop();
}

void Streaming::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
    }
    discard();
}

std::shared_ptr<Acquisition> Streaming::begin() {
    const std::lock_guard lock(m_mutex);
    m_acquisition = m_prepared ? std::exchange(m_prepared, nullptr)
                               : std::make_shared<Acquisition>(m_device, m_path);
    return m_acquisition;
}

std::shared_ptr<Acquisition> Streaming::end() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_acquisition, nullptr);
}

void Streaming::keep(const Acquisition& stopped) {
    const std::lock_guard lock(m_mutex);
    m_counts = stopped.counts();
    m_previousId = stopped.lastIdOfCamera();
}

std::shared_ptr<Acquisition> Streaming::acquisition() const {
    const std::lock_guard lock(m_mutex);
    return m_acquisition;
}

std::int64_t Streaming::count(const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    const std::vector<StreamCount> counts = m_acquisition ? m_acquisition->counts() : m_counts;
    const auto found = std::find_if(counts.begin(), counts.end(),
                                    [&](const StreamCount& count) { return count.name == name; });
    return found == counts.end() ? 0 : found->value;
}

std::optional<std::uint64_t> Streaming::previousId() const {
    const std::lock_guard lock(m_mutex);
    return m_previousId;
}

StreamPath Streaming::path() const {
    const auto running = acquisition();
    return running ? running->path() : m_path;
}

std::string Streaming::adapter() const {
    const CameraRecord& record = m_device->record();
    return record.adapter ? record.adapter->name : std::string();
}

} // namespace orv::aravis
