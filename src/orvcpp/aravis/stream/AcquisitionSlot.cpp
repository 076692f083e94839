// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/AcquisitionSlot.h"

#include <utility>

namespace orv::aravis {

AcquisitionSlot::AcquisitionSlot(std::shared_ptr<DeviceConnection> device,
                                 StreamTransport transport,
                                 std::shared_ptr<AdapterReceivers> receivers)
    : m_device(std::move(device)) {
    m_next.transport = transport;
    m_next.receivers = std::move(receivers);
}

std::shared_ptr<Acquisition> AcquisitionSlot::begin() {
    const std::lock_guard lock(m_mutex);
    m_acquisition = std::make_shared<Acquisition>(m_device, m_next);
    return m_acquisition;
}

std::shared_ptr<Acquisition> AcquisitionSlot::end() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_acquisition, nullptr);
}

void AcquisitionSlot::keep(const Acquisition& stopped) {
    const std::lock_guard lock(m_mutex);
    m_counts = stopped.counts();
    m_next.previousId = stopped.lastIdOfCamera();
}

std::shared_ptr<Acquisition> AcquisitionSlot::acquisition() const {
    const std::lock_guard lock(m_mutex);
    return m_acquisition;
}

gvsp::StreamCounts AcquisitionSlot::counts() const {
    const std::lock_guard lock(m_mutex);
    return m_acquisition ? m_acquisition->counts() : m_counts;
}

StreamTransport AcquisitionSlot::transport() const {
    const std::lock_guard lock(m_mutex);
    return m_acquisition ? m_acquisition->transport() : m_next.transport;
}

bool AcquisitionSlot::headersOnly() const {
    const std::lock_guard lock(m_mutex);
    return m_next.headersOnly;
}

void AcquisitionSlot::setHeadersOnly(bool headersOnly) {
    const std::lock_guard lock(m_mutex);
    m_next.headersOnly = headersOnly;
}

} // namespace orv::aravis
