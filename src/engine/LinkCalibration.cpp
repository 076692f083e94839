// SPDX-License-Identifier: BSD-3-Clause
#include "engine/LinkCalibration.h"

#include <algorithm>

namespace {

/// More than any link carries, in bytes per second.
constexpr double everything = 1e15;

} // namespace

std::string LinkCalibration::obstacle(const LinkPlan& plan) {
    const auto& cameras = plan.cameras();
    const auto has = [&](PlanRole role) {
        return std::any_of(cameras.begin(), cameras.end(),
                           [role](const PlannedCamera& camera) { return camera.role == role; });
    };
    if (has(PlanRole::Planned))
        return {};
    return has(PlanRole::Fixed) ? "No camera has a bandwidth limit that can be written."
                                : "No camera could be opened.";
}

double LinkCalibration::plannedLoad() const {
    double sum = m_plan.fixedBytes();
    for (const PlannedCamera& camera : m_plan.cameras()) {
        if (camera.role == PlanRole::Planned)
            sum += static_cast<double>(*camera.limitPlanned);
    }
    return sum;
}

LinkCalibration::Outcome LinkCalibration::run(const Measure& measure) {
    m_plan.divide(everything);
    const double most = plannedLoad();
    m_plan.divide(0);
    const double least = plannedLoad();
    CapacitySearch capacity(least, most);
    const auto failure = search(capacity, measure);
    m_lossless = capacity.lossless();
    m_lossy = capacity.lossy();
    m_isPrecise = capacity.isPrecise();
    if (!m_plan.putBack())
        return Outcome::Refused;
    if (failure)
        return *failure;
    if (!m_lossless)
        return capacity.knows(least) ? Outcome::AlwaysLossy : Outcome::StepsUsedUp;
    return m_lossy ? Outcome::Measured : Outcome::NotFilled;
}

std::optional<LinkCalibration::Outcome> LinkCalibration::search(CapacitySearch& search,
                                                                const Measure& measure) {
    while (const auto load = search.next()) {
        m_plan.divide(*load);
        if (search.knows(plannedLoad())) {
            // Cameras take steps only: the next one below the loss, if there is one.
            m_plan.divide(*search.lossy() - 1);
            if (search.knows(plannedLoad()))
                return std::nullopt;
        }
        if (!m_plan.tryOut())
            return Outcome::Refused;
        const auto found = measure();
        if (!found)
            return Outcome::Cancelled;
        m_steps.push_back({plannedLoad(), *found});
        search.note(m_steps.back().load, found->hasLoss, found->carriedShare);
    }
    return std::nullopt;
}
