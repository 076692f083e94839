// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/BandwidthPlan.h"
#include "engine/CameraList.h"
#include "engine/CameraNeed.h"
#include "engine/SavedLimit.h"
#include "engine/SendingRates.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// How a camera takes part in a plan.
enum class PlanRole {
    /// Gets a limit.
    Planned,
    /// Keeps its limit, which is counted.
    Locked,
    /// Has no limit that can be written, or is locked with its limit switched off: what it sends is
    /// counted.
    Fixed,
    /// Could not be opened: not counted.
    NotOpened
};

/// How the need of a camera was found.
enum class NeedSource {
    Unknown,
    /// By the frame rates that it reported at several limits.
    Search,
    /// By the frame rate that it reported at its limit.
    Report,
    /// By what it sent.
    Measurement
};

/// A camera in a plan. All in bytes per second and frames per second.
struct PlannedCamera {
    std::shared_ptr<CameraHandler> handler;
    PlanRole role = PlanRole::NotOpened;
    NeedSource source = NeedSource::Unknown;
    /// What it reported at its limits.
    CameraNeed reported;
    /// What it needs, and the rate at which it then sends; of a fixed camera, what it sends.
    /// 0 when unknown.
    double needBytes = 0;
    double needFrames = 0;
    /// Limits; nothing for a camera that has none, or is locked with it switched off. The one of
    /// Auto Set is empty until noted.
    std::optional<std::int64_t> limitBefore;
    std::optional<std::int64_t> limitByAutoSet;
    std::optional<std::int64_t> limitPlanned;
    double weight = 1;
    /// Frames per second that it shall have at least; 0 for none.
    double wishedFrames = 0;

    /// What the camera would send with a limit, or without one.
    double framesAt(std::optional<std::int64_t> limit) const;
    double bytesAt(std::optional<std::int64_t> limit) const;
    /// Most frames per second that its limits allow; 0 when unknown.
    double mostFrames() const { return reported.framesPerSecond; }
};

/// A division of one link, beside Auto Set: finds what its cameras need, divides the link by
/// divideBandwidth() and writes the limits. Limits that it changed and did not apply are put back
/// by the destructor, so that a plan alone leaves no trace, whatever fails. The cameras must not
/// stream meanwhile. Nothing throws; failures are logged. Bound to the GUI thread.
class LinkPlan {
public:
    /// The cameras that stream over the link, on one interface or several. \p cameraSafetyMargin is
    /// a fraction of a camera's need that is added to it.
    LinkPlan(const CameraList& cameras, double cameraSafetyMargin);
    ~LinkPlan();

    LinkPlan(const LinkPlan&) = delete;
    LinkPlan& operator=(const LinkPlan&) = delete;

    /// Finds the needs, and leaves the limits at the highest. Ends early when \p isCancelled.
    void findNeeds(const std::function<bool()>& isCancelled);
    /// Cameras that do not report what they will send: those without a limit or without a frame
    /// rate, and triggered ones.
    CameraList camerasToMeasure() const;
    /// Takes what camerasToMeasure() sent over in place of what was reported. A camera of which too
    /// few frames came keeps that.
    void noteMeasurement(const SendingRates& rates);
    /// Calls \p autoSet, which shall run Auto Set on the cameras, and notes the limits.
    void compareWithAutoSet(const std::function<void()>& autoSet);

    /// Weights and wishes may be changed before divide().
    std::vector<PlannedCamera>& cameras() { return m_cameras; }
    const std::vector<PlannedCamera>& cameras() const { return m_cameras; }
    /// Sum of what locked and fixed cameras take.
    double fixedBytes() const;
    /// Divides \p usableBytes among all cameras of the link and sets the planned limits.
    BandwidthPlan divide(double usableBytes);

    /// Writes the planned limits, which then stay. Returns false when a camera does not take its
    /// limit; all limits are then put back.
    bool apply();
    /// The same, but the limits are put back by putBack() and the destructor.
    bool tryOut();
    /// Puts back the limits that were not applied. Returns whether every camera has its own again.
    bool putBack();

private:
    bool isToBeMeasured(const PlannedCamera& camera) const;
    BandwidthClaim claimOf(const PlannedCamera& camera) const;

    const double m_cameraSafetyMargin;
    std::vector<PlannedCamera> m_cameras;
    /// Of each camera; null for one that is not open.
    std::vector<std::unique_ptr<SavedLimit>> m_saved;
    bool m_isApplied = false;
};
