// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceAutoSet.h"

#include "engine/CameraHandler.h"
#include "sdk/OrvCameraWrapper.h"
#include "tests/support/CapturedLog.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// A camera as the distribution sees it, with what is to be expected of it.
struct Plan {
    std::string name;
    std::int64_t need = 0;
    std::string kind = {}; ///< "", "locked", "triggered" or "closed"
    std::int64_t locked = 0;
    std::int64_t minimum = 1'000'000;
    std::int64_t maximum = 200'000'000;
};

/// Records in which order cameras were set to what: "A=30000000/30000000" is A, value, requested.
class ScriptedCamera : public CameraHandler {
public:
    ScriptedCamera(Plan plan, std::vector<std::string>& record)
        : CameraHandler(std::make_shared<OrvCameraWrapper>()), m_plan(std::move(plan)),
          m_record(record) {}

    CameraInfo getCameraInfo() const override {
        CameraInfo info;
        info.modelName = m_plan.name;
        return info;
    }
    bool isOpened() const override { return m_plan.kind != "closed"; }
    bool isLocked() const override { return m_plan.kind == "locked"; }
    bool isTriggered() const override { return m_plan.kind == "triggered"; }
    std::int64_t getBandwidth() const override { return m_plan.locked; }
    std::int64_t autoSet(double) override { return m_plan.need; }
    bool adjustPacketSize(bool enabled) override {
        adjusted = enabled;
        return enabled;
    }
    std::int64_t setBandwidth(std::uint64_t value, std::uint64_t requested) override {
        m_record.push_back(m_plan.name + "=" + std::to_string(value) + "/" +
                           std::to_string(requested));
        const auto wanted = static_cast<std::int64_t>(value);
        m_reached = std::clamp(wanted, m_plan.minimum, m_plan.maximum);
        return m_reached;
    }
    AutosetStatus getAutosetStatus() const override {
        return m_reached == m_plan.maximum ? AutosetStatus::ClampedToMaximum
                                           : AutosetStatus::RequestedReached;
    }

    bool adjusted = false;

private:
    const Plan m_plan;
    std::vector<std::string>& m_record;
    std::int64_t m_reached = 0;
};

class InterfaceAutoSetTest : public testing::Test {
protected:
    /// Answers in which order cameras were set to what.
    std::vector<std::string> distribute(std::int64_t available, const std::vector<Plan>& plans,
                                        double margin = 0.0) {
        std::vector<std::string> record;
        CameraList cameras;
        for (const Plan& plan : plans)
            cameras.push_back(std::make_shared<ScriptedCamera>(plan, record));
        m_log.clear();
        InterfaceAutoSet("eth0", available, margin).run(cameras, true);
        for (const auto& camera : cameras) {
            const bool isFree = camera->isOpened() && !camera->isLocked();
            EXPECT_EQ(static_cast<const ScriptedCamera&>(*camera).adjusted, isFree);
        }
        return record;
    }

    CapturedLog m_log;
};

TEST_F(InterfaceAutoSetTest, GivesWhatIsNeededAndTheRestToTheOthers) {
    EXPECT_THAT(distribute(112'500'000, {{"B", 90'000'000}, {"A", 30'000'000}}),
                ElementsAre("A=30000000/30000000", "B=82500000/90000000"));
    EXPECT_THAT(
        m_log.lines(),
        ElementsAre(
            "Info:eth0: Interface bandwidth left after applying safety margin: 112.500000 MB",
            "Info:eth0: Default bandwidth for single camera: 56.250000 MB",
            "Info:B- (): Bandwidth (with safety margin) needed: 90.000000 MB",
            "Info:B- (): Bandwidth needed (90.000000 MB) is more than default bandwidth: "
            "56.250000 MB.",
            "Info:A- (): Bandwidth (with safety margin) needed: 30.000000 MB",
            "Info:A- (): Enough bandwidth (30.000000 MB) allocated.",
            "Info:eth0: new default bandwidth for single camera: 82.500000 MB"));
}

TEST_F(InterfaceAutoSetTest, SharesByTheRules) {
    struct Case {
        const char* what;
        std::int64_t available;
        double margin;
        std::vector<Plan> plans;
        std::vector<std::string> expected;
    };
    const std::vector<Case> cases = {
        {"a need equal to the share waits",
         100'000'000,
         0.0,
         {{"A", 50'000'000}, {"B", 20'000'000}},
         {"B=20000000/20000000", "A=80000000/50000000"}},
        {"the margin is added and truncated",
         100'000'000,
         0.05,
         {{"A", 10'000'001}},
         {"A=10500001/10500001"}},
        {"triggered cameras come last, and are counted before",
         90'000'000,
         0.0,
         {{"T", 1'000'000, "triggered"}, {"A", 80'000'000}, {"B", 80'000'000}},
         {"A=30000000/80000000", "B=30000000/80000000", "T=30000000/1000000"}},
        {"locked cameras keep theirs, closed ones count nowhere",
         100'000'000,
         0.0,
         {{"L", 0, "locked", 40'000'000}, {"C", 1, "closed"}, {"A", 90'000'000}},
         {"A=60000000/90000000"}},
        {"what a camera does not take goes on to the next",
         100'000'000,
         0.0,
         {{"A", 60'000'000, "", 0, 0, 20'000'000}, {"B", 60'000'000}},
         {"A=50000000/60000000", "B=80000000/60000000"}},
        {"beyond the limit everybody gets the minimum",
         100'000'000,
         0.0,
         {{"L", 0, "locked", 120'000'000}, {"A", 5'000'000}, {"T", 5'000'000, "triggered"}},
         {"A=0/5000000", "T=0/5000000"}},
        {"without a free camera nothing is divided",
         100'000'000,
         0.0,
         {{"L", 0, "locked", 40'000'000}, {"C", 1, "closed"}},
         {}},
    };
    for (const Case& example : cases) {
        EXPECT_EQ(distribute(example.available, example.plans, example.margin), example.expected)
            << example.what;
    }
}

TEST_F(InterfaceAutoSetTest, TellsWhenNothingIsLeft) {
    distribute(10'000'000, {{"L", 0, "locked", 12'000'000}, {"T", 5'000'000, "triggered"}});
    EXPECT_THAT(
        m_log.lines(),
        ElementsAre(
            "Info:eth0: Interface bandwidth left after applying safety margin: 10.000000 MB",
            "Info:eth0: No bandwidth left on the interface - all used by locked camera(s).",
            "Info:eth0: Default bandwidth for single camera: 0.000000 MB",
            "Info:eth0: new default bandwidth for single camera: 0.000000 MB",
            "Warning:eth0: No bandwidth left. Minimum neededBandwidthWithMargin set for camera: "
            "T- ()"));
}

TEST_F(InterfaceAutoSetTest, ClampedCameraIsNotToldToHaveEnough) {
    distribute(100'000'000, {{"A", 30'000'000, "", 0, 0, 20'000'000}});
    EXPECT_THAT(m_log.text(), Not(HasSubstr("Enough bandwidth")));
}

} // namespace
