// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/AdapterStreams.h"

#include <algorithm>
#include <future>

namespace orv::aravis {

namespace {

bool mayAnyReceive(const std::vector<std::shared_ptr<AcquisitionSlot>>& cameras) {
    return std::any_of(cameras.begin(), cameras.end(),
                       [](const auto& camera) { return camera->mayReceive(); });
}

} // namespace

void AdapterStreams::add(const std::shared_ptr<AcquisitionSlot>& camera) {
    const std::lock_guard lock(m_mutex);
    m_cameras.erase(std::remove_if(m_cameras.begin(), m_cameras.end(),
                                   [](const auto& known) { return known.expired(); }),
                    m_cameras.end());
    m_cameras.push_back(camera);
}

void AdapterStreams::aboutToStart(const AcquisitionSlot& starting) {
    const std::lock_guard lock(m_mutex);
    const auto cameras = camerasOf(starting.adapter());
    // A single camera opens its stream when it starts.
    if (cameras.size() < 2 || mayAnyReceive(cameras))
        return;
    std::vector<std::future<void>> opening;
    for (const auto& camera : cameras)
        opening.push_back(std::async(std::launch::async, [camera] { camera->prepare(); }));
    for (const auto& opened : opening)
        opened.wait();
}

void AdapterStreams::stopped(const AcquisitionSlot& camera) {
    const std::lock_guard lock(m_mutex);
    const auto cameras = camerasOf(camera.adapter());
    if (mayAnyReceive(cameras))
        return;
    for (const auto& idle : cameras)
        idle->discard();
}

std::vector<std::shared_ptr<AcquisitionSlot>>
AdapterStreams::camerasOf(const std::string& adapter) const {
    std::vector<std::shared_ptr<AcquisitionSlot>> cameras;
    if (adapter.empty())
        return cameras;
    for (const auto& known : m_cameras) {
        const auto camera = known.lock();
        if (camera && camera->adapter() == adapter)
            cameras.push_back(camera);
    }
    return cameras;
}

} // namespace orv::aravis
