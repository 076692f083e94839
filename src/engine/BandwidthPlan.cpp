// SPDX-License-Identifier: BSD-3-Clause
#include "engine/BandwidthPlan.h"

#include "engine/Truncation.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace {

std::int64_t lowestOf(const BandwidthClaim& claim) {
    return claim.range.minimum();
}

std::int64_t floorOf(const BandwidthClaim& claim) {
    return claim.wished > 0 ? claim.range.atOrAbove(claim.wished) : lowestOf(claim);
}

double sumOf(const std::vector<BandwidthClaim>& claims,
             std::int64_t (*limitOf)(const BandwidthClaim&)) {
    return std::accumulate(claims.begin(), claims.end(), 0.0, [&](double sum, const auto& claim) {
        return sum + static_cast<double>(limitOf(claim));
    });
}

/// Raises cameras from their floors until nothing is left for a further step.
class Division {
public:
    /// The floors must fit in \p available.
    Division(std::int64_t available, const std::vector<BandwidthClaim>& claims)
        : m_available(available) {
        for (const BandwidthClaim& claim : claims) {
            const std::int64_t floor = floorOf(claim);
            const std::int64_t wanted = std::min(claim.wanted, available);
            m_cameras.push_back({&claim, floor, std::max(claim.range.atOrBelow(wanted), floor)});
        }
    }

    std::vector<std::int64_t> run() {
        // Each pass stops at least one camera.
        while (!fits(highestLevel()))
            pass();
        std::vector<std::int64_t> limits;
        for (const Camera& camera : m_cameras)
            limits.push_back(camera.most);
        return limits;
    }

private:
    struct Camera {
        const BandwidthClaim* claim;
        std::int64_t limit;
        /// The camera has stopped when it has that.
        std::int64_t most;

        std::int64_t limitAt(double level) const {
            const std::int64_t share = truncated(level * claim->weight);
            return share >= most ? most : std::max(claim->range.atOrBelow(share), limit);
        }
    };

    /// All cameras have what they want there.
    double highestLevel() const {
        double level = 0;
        for (const Camera& camera : m_cameras)
            level = std::max(level, (static_cast<double>(camera.most) + 1) / camera.claim->weight);
        return level;
    }

    bool fits(double level) const {
        std::int64_t left = m_available;
        for (const Camera& camera : m_cameras) {
            const std::int64_t limit = camera.limitAt(level);
            if (limit > left)
                return false;
            left -= limit;
        }
        return true;
    }

    /// Raises all cameras to the highest level that fits, and stops those whose next step does not.
    void pass() {
        double low = 0;
        double high = highestLevel();
        for (double middle = high / 2; middle > low && middle < high;
             middle = low + (high - low) / 2)
            (fits(middle) ? low : high) = middle;
        std::int64_t left = m_available;
        for (Camera& camera : m_cameras) {
            camera.limit = camera.limitAt(low);
            left -= camera.limit;
        }
        for (Camera* camera : steppingAt(high)) {
            const std::int64_t step = camera->limitAt(high) - camera->limit;
            if (step <= left) {
                camera->limit += step;
                left -= step;
            } else {
                camera->most = camera->limit;
            }
        }
    }

    /// The cameras that take a step at \p level, in an order of their own.
    std::vector<Camera*> steppingAt(double level) {
        std::vector<Camera*> found;
        for (Camera& camera : m_cameras) {
            if (camera.limitAt(level) > camera.limit)
                found.push_back(&camera);
        }
        std::sort(found.begin(), found.end(),
                  [](const Camera* a, const Camera* b) { return a->claim->id < b->claim->id; });
        return found;
    }

    const std::int64_t m_available;
    std::vector<Camera> m_cameras;
};

} // namespace

BandwidthPlan divideBandwidth(std::int64_t available, const std::vector<BandwidthClaim>& claims) {
    const auto usable = static_cast<double>(available);
    BandwidthPlan plan;
    plan.minima = sumOf(claims, lowestOf);
    plan.floors = sumOf(claims, floorOf);
    if (plan.floors <= usable) {
        plan.limits = Division(available, claims).run();
        return plan;
    }
    plan.outcome = plan.minima <= usable ? BandwidthPlan::Outcome::WishesDoNotFit
                                         : BandwidthPlan::Outcome::MinimaDoNotFit;
    for (const BandwidthClaim& claim : claims)
        plan.limits.push_back(lowestOf(claim));
    return plan;
}
