// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceAutoSet.h"

#include "engine/CameraHandler.h"
#include "sdk/OrvCameraWrapper.h"
#include "tests/support/CapturedLog.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

using Limits = std::numeric_limits<std::int64_t>;
using testing::ElementsAre;

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
    std::int64_t autoSet(double safetyMargin) override {
        EXPECT_EQ(adjusted.size(), 1U) << "before the packet size";
        margin = safetyMargin;
        return m_plan.need;
    }
    bool adjustPacketSize(bool enabled) override {
        adjusted.push_back(enabled);
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

    std::vector<bool> adjusted;
    double margin = -1.0;

private:
    const Plan m_plan;
    std::vector<std::string>& m_record;
    std::int64_t m_reached = 0;
};

class InterfaceAutoSetTest : public testing::Test {
protected:
    /// Answers in which order cameras were set to what.
    std::vector<std::string> distribute(std::int64_t available, const std::vector<Plan>& plans,
                                        double margin = 0.0, bool adjustPacketSize = true) {
        std::vector<std::string> record;
        CameraList cameras;
        for (const Plan& plan : plans)
            cameras.push_back(std::make_shared<ScriptedCamera>(plan, record));
        m_log.clear();
        InterfaceAutoSet("eth0", available, margin).run(cameras, adjustPacketSize);
        for (const auto& camera : cameras) {
            const auto& scripted = static_cast<const ScriptedCamera&>(*camera);
            const bool isFree = camera->isOpened() && !camera->isLocked();
            EXPECT_EQ(scripted.margin, isFree ? margin : -1.0);
            EXPECT_EQ(scripted.adjusted, std::vector<bool>(isFree ? 1 : 0, adjustPacketSize));
        }
        return record;
    }

    CapturedLog m_log;
};

TEST_F(InterfaceAutoSetTest, givesWhatIsNeededAndTheRestToTheOthers) {
    EXPECT_THAT(distribute(112'500'000, {{"B", 90'000'000}, {"A", 30'000'000}}),
                ElementsAre("A=30000000/30000000", "B=82500000/90000000"));
    EXPECT_EQ(m_log.text(),
              "Info:eth0: Interface bandwidth left after applying safety margin: 112.500000 MB\n"
              "Info:eth0: Default bandwidth for single camera: 56.250000 MB\n"
              "Info:B- (): Bandwidth (with safety margin) needed: 90.000000 MB\n"
              "Info:B- (): Bandwidth needed (90.000000 MB) is more than default bandwidth: "
              "56.250000 MB.\n"
              "Info:A- (): Bandwidth (with safety margin) needed: 30.000000 MB\n"
              "Info:A- (): Enough bandwidth (30.000000 MB) allocated.\n"
              "Info:eth0: new default bandwidth for single camera: 82.500000 MB\n");
}

TEST_F(InterfaceAutoSetTest, sharesByTheRules) {
    struct Case {
        const char* what;
        std::vector<Plan> plans;
        std::vector<std::string> expected;
        std::int64_t available = 100'000'000;
        double margin = 0.0;
    };
    constexpr std::int64_t many = 50'000'000;
    const std::vector<Case> cases = {
        {"a need equal to the share waits",
         {{"A", 50'000'000}, {"B", 20'000'000}},
         {"B=20000000/20000000", "A=80000000/50000000"}},
        {"the margin is added and truncated",
         {{"A", 10'000'011}},
         {"A=10500011/10500011"},
         100'000'000,
         0.05},
        {"triggered cameras come last, and are counted before",
         {{"T", 900, "triggered"}, {"A", many}, {"U", 5, "triggered"}, {"B", many}},
         {"A=25000000/50000000", "B=25000000/50000000", "T=25000000/900", "U=25000000/5"}},
        {"locked cameras keep theirs, closed ones count nowhere",
         {{"L", 0, "locked", 40'000'000}, {"C", 1, "closed"}, {"A", 25'000'000}, {"B", many}},
         {"A=25000000/25000000", "B=35000000/50000000"}},
        {"what a camera does not take goes on to the next",
         {{"A", 60'000'000, "", 0, 0, 20'000'000}, {"B", 60'000'000}},
         {"A=50000000/60000000", "B=80000000/60000000"}},
        {"beyond the limit everybody gets the minimum",
         {{"K", 0, "locked", 70'000'000},
          {"L", 0, "locked", 70'000'000},
          {"A", 60'000'000},
          {"T", 5'000'000, "triggered"}},
         {"A=0/60000000", "T=0/5000000"},
         112'500'000},
        {"who takes more than the share leaves less, and the last the minimum",
         {{"A", many, "", 0, 6'000'000}, {"B", many, "", 0, 6'000'000}, {"C", many}},
         {"A=3333333/50000000", "B=2000000/50000000", "C=0/50000000"},
         10'000'000},
        {"no sum leaves the range",
         {{"L", 0, "locked", Limits::max()}, {"M", 0, "locked", Limits::max()}, {"A", many}},
         {"A=0/50000000"},
         -1},
        {"nobody uses less than nothing",
         {{"L", 0, "locked", Limits::min()}, {"A", 100'000'001}},
         {"A=100000000/100000001"}},
        {"a failed camera is asked for nothing",
         {{"A", -7}, {"B", Limits::max()}},
         {"A=0/0", "B=99000000/9223372036854775807"},
         100'000'000,
         0.05},
        {"without a free camera nothing is divided",
         {{"L", 0, "locked", 40'000'000}, {"C", 1, "closed"}},
         {}},
    };
    for (const Case& example : cases) {
        EXPECT_EQ(distribute(example.available, example.plans, example.margin), example.expected)
            << example.what;
    }
}

TEST_F(InterfaceAutoSetTest, tellsWhenNothingIsLeftAndWhatIsEnough) {
    const std::vector<Plan> plans{{"L", 0, "locked", 12'000'000},
                                  {"T", 5'000'000, "triggered"},
                                  {"U", 5'000'000, "triggered"}};
    const std::string share = "Info:eth0: new default bandwidth for single camera: 0.000000 MB\n";
    const std::string minimum =
        "Warning:eth0: No bandwidth left. Minimum neededBandwidthWithMargin set for camera: ";
    const std::string beyond =
        "Info:eth0: No bandwidth left on the interface - all used by locked camera(s).";
    distribute(10'000'000, plans);
    EXPECT_EQ(m_log.text(),
              "Info:eth0: Interface bandwidth left after applying safety margin: 10.000000 MB\n" +
                  beyond + "\nInfo:eth0: Default bandwidth for single camera: 0.000000 MB\n" +
                  share + minimum + "T- ()\n" + share + minimum + "U- ()\n");
    distribute(12'000'000, plans, 0.0, false);
    EXPECT_FALSE(m_log.has(beyond)) << "used up to the last byte";
    EXPECT_TRUE(m_log.has(minimum + "T- ()"));

    const std::string enough = "Info:A- (): Enough bandwidth (1.000000 MB) allocated.";
    distribute(100'000'000, {{"A", 500'000}});
    EXPECT_TRUE(m_log.has(enough));
    distribute(100'000'000, {{"A", 30'000'000, "", 0, 0, 1'000'000}});
    EXPECT_FALSE(m_log.has(enough)) << "clamped";
}

TEST_F(InterfaceAutoSetTest, oneCameraGetsItsNeedWithTheMarginWithinTheRange) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {10'000'011, "A=10500011/10000011"},
        {-7, "A=0/0"},
        {Limits::max(), "A=9223372036854775807/9223372036854775807"}};
    for (const auto& [need, expected] : cases) {
        std::vector<std::string> record;
        ScriptedCamera camera({"A", need}, record);
        camera.adjustPacketSize(true);
        autoSetCamera(camera, 0.05);
        EXPECT_THAT(record, ElementsAre(expected));
    }
}

} // namespace
