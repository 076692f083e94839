// SPDX-License-Identifier: BSD-3-Clause
#include "cli/RestoreWatch.h"

#include "settings/CameraSearch.h"

#include <algorithm>
#include <utility>

namespace cli {

namespace {

/// A camera that has just started may be busy, or in use for a moment. One that another program
/// keeps has got its settings from there.
constexpr int mostAttempts = 6;
constexpr std::chrono::seconds betweenAttempts{5};

} // namespace

RestoreWatch::RestoreWatch(const CameraNames& present, std::vector<settings::SavedCamera> saved,
                           Tell tell)
    : m_present(present), m_tell(std::move(tell)) {
    replace(std::move(saved));
}

void RestoreWatch::replace(std::vector<settings::SavedCamera> saved) {
    std::vector<Watched> cameras;
    for (settings::SavedCamera& camera : saved) {
        const auto known =
            std::find_if(m_cameras.begin(), m_cameras.end(), [&](const Watched& each) {
                return each.saved.id == camera.id && each.saved.serialNumber == camera.serialNumber;
            });
        cameras.push_back(known == m_cameras.end() ? Watched() : *known);
        cameras.back().saved = std::move(camera);
    }
    m_cameras = std::move(cameras);
}

void RestoreWatch::look(const std::function<bool()>& isCancelled) {
    const std::vector<CameraInfo> present = m_present.cameras();
    for (Watched& camera : m_cameras) {
        if (isCancelled())
            return;
        const settings::FoundCamera found = settings::findSavedCamera(camera.saved, present);
        if (!found.index && !std::exchange(camera.isToldMissing, true))
            m_tell({camera.saved, {}, found.reason, std::nullopt});
        if (!found.index) {
            camera.isDone = false;
            camera.attempts = 0;
            camera.next = {};
        } else if (!camera.isDone && Clock::now() >= camera.next) {
            tryOnce(camera, isCancelled);
        }
    }
}

void RestoreWatch::tryOnce(Watched& camera, const std::function<bool()>& isCancelled) {
    camera.isToldMissing = false;
    const RestoredCamera restored = restoreCamera(m_present, camera.saved, false, isCancelled);
    m_restored += restored.isComplete() ? 1 : 0;
    ++camera.attempts;
    const bool isSettled = restored.result && restored.result->problems.empty();
    camera.isDone = isSettled || camera.attempts >= mostAttempts;
    camera.next = Clock::now() + betweenAttempts;
    m_tell(restored);
}

} // namespace cli
