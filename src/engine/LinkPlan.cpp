// SPDX-License-Identifier: BSD-3-Clause
#include "engine/LinkPlan.h"

#include "engine/CameraHandler.h"
#include "engine/Truncation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

/// Locks cameras until its destruction.
class TemporaryLock {
public:
    ~TemporaryLock() {
        for (CameraHandler* camera : m_locked)
            camera->setLocked(false);
    }
    TemporaryLock() = default;
    TemporaryLock(const TemporaryLock&) = delete;
    TemporaryLock& operator=(const TemporaryLock&) = delete;

    void lock(CameraHandler& camera) {
        if (camera.isLocked())
            return;
        camera.setLocked(true);
        m_locked.push_back(&camera);
    }

private:
    std::vector<CameraHandler*> m_locked;
};

} // namespace

double PlannedCamera::framesAt(std::optional<std::int64_t> limit) const {
    const double most = std::max(needFrames, wishedFrames);
    if (!limit || role == PlanRole::Fixed || needBytes <= 0)
        return most;
    const double perFrame = needBytes / needFrames;
    return std::min(most, static_cast<double>(*limit) / perFrame);
}

double PlannedCamera::bytesAt(std::optional<std::int64_t> limit) const {
    // The need is not known: the camera may use all of its limit.
    if (limit && role != PlanRole::Fixed && needFrames <= 0)
        return static_cast<double>(*limit);
    return needFrames > 0 ? framesAt(limit) * needBytes / needFrames : 0;
}

LinkPlan::LinkPlan(const CameraList& cameras, double cameraSafetyMargin)
    : m_cameraSafetyMargin(cameraSafetyMargin) {
    for (const auto& handler : cameras) {
        PlannedCamera camera;
        camera.handler = handler;
        std::unique_ptr<SavedLimit> saved;
        if (handler->isOpened()) {
            saved = std::make_unique<SavedLimit>(*handler);
            // A locked camera whose limit is off keeps to none.
            if (!handler->isLocked() || !saved->isOff())
                camera.limitBefore = saved->value();
            camera.role =
                handler->isLocked() && camera.limitBefore ? PlanRole::Locked : PlanRole::Fixed;
        }
        m_cameras.push_back(camera);
        m_saved.push_back(std::move(saved));
    }
}

LinkPlan::~LinkPlan() {
    putBack();
}

void LinkPlan::findNeeds(const std::function<bool()>& isCancelled) {
    for (std::size_t i = 0; i < m_cameras.size() && !isCancelled(); ++i) {
        PlannedCamera& camera = m_cameras[i];
        if (camera.role == PlanRole::NotOpened)
            continue;
        const bool mayWrite = camera.limitBefore && !camera.handler->isLocked();
        if (mayWrite)
            m_saved[i]->switchOn();
        camera.reported =
            mayWrite ? camera.handler->findNeed(m_cameraSafetyMargin) : camera.handler->readNeed();
        if (camera.reported.range) {
            camera.role = PlanRole::Planned;
            m_saved[i]->write(camera.reported.range->last());
        }
        camera.needBytes = static_cast<double>(camera.reported.bytesPerSecond);
        camera.needFrames = camera.reported.framesPerSecond;
        if (camera.needBytes > 0)
            camera.source =
                camera.role == PlanRole::Planned ? NeedSource::Search : NeedSource::Report;
    }
}

bool LinkPlan::isToBeMeasured(const PlannedCamera& camera) const {
    if (camera.role == PlanRole::Fixed)
        return true;
    return camera.role == PlanRole::Planned &&
           (camera.needBytes <= 0 || camera.handler->isTriggered());
}

CameraList LinkPlan::camerasToMeasure() const {
    CameraList found;
    for (const PlannedCamera& camera : m_cameras) {
        if (isToBeMeasured(camera))
            found.push_back(camera.handler);
    }
    return found;
}

void LinkPlan::noteMeasurement(const SendingRates& rates) {
    std::size_t index = 0;
    for (const auto& handler : rates.cameras()) {
        const auto camera = std::find_if(m_cameras.begin(), m_cameras.end(),
                                         [&](const auto& it) { return it.handler == handler; });
        const auto rate = rates.rate(index++);
        if (camera == m_cameras.end() || !rate)
            continue;
        // What a limit allows is counted by the camera, in its own way.
        const double perFrame = camera->needBytes > 0 && camera->role == PlanRole::Planned
                                    ? camera->needBytes / camera->needFrames
                                    : rate->bytesPerSecond / rate->framesPerSecond;
        camera->needFrames = rate->framesPerSecond;
        camera->needBytes = rate->framesPerSecond * perFrame;
        camera->source = NeedSource::Measurement;
    }
}

void LinkPlan::compareWithAutoSet(const std::function<void()>& autoSet) {
    TemporaryLock lock;
    for (std::size_t i = 0; i < m_cameras.size(); ++i) {
        // What was not saved could not be put back.
        if (m_saved[i] && m_saved[i]->isUnreadable())
            lock.lock(*m_cameras[i].handler);
    }
    autoSet();
    for (std::size_t i = 0; i < m_cameras.size(); ++i)
        m_cameras[i].limitByAutoSet =
            m_cameras[i].limitBefore ? m_saved[i]->present() : std::nullopt;
}

double LinkPlan::fixedBytes() const {
    double sum = 0;
    for (const PlannedCamera& camera : m_cameras) {
        if (camera.role == PlanRole::Locked)
            sum += static_cast<double>(camera.limitBefore.value_or(0));
        else if (camera.role == PlanRole::Fixed)
            sum += camera.needBytes;
    }
    return sum;
}

BandwidthClaim LinkPlan::claimOf(const PlannedCamera& camera) const {
    const StepGrid& range = *camera.reported.range;
    const auto withMargin = [&](double bytes) {
        return std::min(truncated(std::ceil(bytes * (1 + m_cameraSafetyMargin))), range.last());
    };
    const double perFrame = camera.needFrames > 0 ? camera.needBytes / camera.needFrames : 0;
    // A camera of which nothing is known may need all.
    return {camera.handler->getCameraInfo().cameraId, range,
            camera.needBytes > 0 ? withMargin(camera.needBytes) : range.last(),
            camera.wishedFrames > 0 ? withMargin(camera.wishedFrames * perFrame) : 0,
            camera.weight};
}

BandwidthPlan LinkPlan::divide(double usableBytes) {
    std::vector<BandwidthClaim> claims;
    for (const PlannedCamera& camera : m_cameras) {
        if (camera.role == PlanRole::Planned)
            claims.push_back(claimOf(camera));
    }
    BandwidthPlan plan = divideBandwidth(truncated(usableBytes - fixedBytes()), claims);
    std::size_t next = 0;
    for (PlannedCamera& camera : m_cameras)
        camera.limitPlanned =
            camera.role == PlanRole::Planned ? plan.limits[next++] : camera.limitBefore;
    return plan;
}

bool LinkPlan::apply() {
    m_isApplied = tryOut();
    return m_isApplied;
}

bool LinkPlan::tryOut() {
    m_isApplied = false;
    for (std::size_t i = 0; i < m_cameras.size(); ++i) {
        if (m_cameras[i].role != PlanRole::Planned)
            continue;
        // putBack() may have switched it off again.
        m_saved[i]->switchOn();
        if (!m_saved[i]->write(*m_cameras[i].limitPlanned)) {
            putBack();
            return false;
        }
    }
    return true;
}

bool LinkPlan::putBack() {
    bool areBack = true;
    for (std::size_t i = 0; i < m_cameras.size(); ++i) {
        const bool stays = m_isApplied && m_cameras[i].role == PlanRole::Planned;
        if (m_saved[i] && !stays)
            areBack = m_saved[i]->putBack() && areBack;
    }
    return areBack;
}
