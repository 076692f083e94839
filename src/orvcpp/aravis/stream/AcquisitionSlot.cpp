// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/AcquisitionSlot.h"

#include <algorithm>
#include <utility>

namespace orv::aravis {

AcquisitionSlot::AcquisitionSlot(std::shared_ptr<DeviceConnection> device, StreamTransport path)
    : m_device(std::move(device)), m_path(path) {}

void AcquisitionSlot::prepare() {
    std::shared_ptr<Acquisition> preparing;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_path.usesPacketSocket || m_isClosed || m_acquisition || m_prepared ||
            m_device->admits(true) != OrvErrorSuccess)
            return;
        preparing = std::make_shared<Acquisition>(m_device, m_path);
        m_prepared = preparing;
    }
    preparing->prepare();
}

void AcquisitionSlot::discard() {
    std::shared_ptr<Acquisition> discarded;
    {
        const std::lock_guard lock(m_mutex);
        discarded.swap(m_prepared);
    }
    if (discarded)
        discarded->stop();
}

void AcquisitionSlot::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
    }
    discard();
}

std::shared_ptr<Acquisition> AcquisitionSlot::begin() {
    const std::lock_guard lock(m_mutex);
    m_acquisition = m_prepared ? std::exchange(m_prepared, nullptr)
                               : std::make_shared<Acquisition>(m_device, m_path);
    return m_acquisition;
}

std::shared_ptr<Acquisition> AcquisitionSlot::end() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_acquisition, nullptr);
}

void AcquisitionSlot::keep(const Acquisition& stopped) {
    const std::lock_guard lock(m_mutex);
    m_counts = stopped.counts();
    m_previousId = stopped.lastIdOfCamera();
}

std::shared_ptr<Acquisition> AcquisitionSlot::acquisition() const {
    const std::lock_guard lock(m_mutex);
    return m_acquisition;
}

std::int64_t AcquisitionSlot::count(const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    const std::vector<StreamCount> counts = m_acquisition ? m_acquisition->counts() : m_counts;
    const auto found = std::find_if(counts.begin(), counts.end(),
                                    [&](const StreamCount& count) { return count.name == name; });
    return found == counts.end() ? 0 : found->value;
}

std::optional<std::uint64_t> AcquisitionSlot::previousId() const {
    const std::lock_guard lock(m_mutex);
    return m_previousId;
}

StreamTransport AcquisitionSlot::path() const {
    const auto running = acquisition();
    return running ? running->path() : m_path;
}

std::string AcquisitionSlot::adapter() const {
    const CameraRecord& record = m_device->record();
    return record.adapter ? record.adapter->name : std::string();
}

} // namespace orv::aravis
