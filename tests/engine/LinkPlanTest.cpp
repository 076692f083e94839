// SPDX-License-Identifier: BSD-3-Clause
#include "engine/LinkPlan.h"
#include "OrvCPP/OrvSystem.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "tests/support/CapturedLog.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <thread>

namespace {

using std::chrono::steady_clock;

constexpr double bytesPerFrame = 80'000;
constexpr double interfaceMargin = 0.1;
constexpr double cameraMargin = 0.05;

/// A simulated camera with frames of 80,000 bytes. All in megabytes per second.
struct Member {
    /// What it sends at its highest frame rate.
    double most;
    /// Members of its JSON object, each followed by a comma.
    QString json;
    /// What it sends on its triggers; 0: it is not triggered by a line.
    double triggered = 0;
    double minimum = 1;
    /// 0: as much as the link.
    double maximum = 0;
    /// The limit of a locked camera, or what a camera without a limit sends; 0 for others.
    double fixed = 0;

    double wanted() const { return triggered > 0 ? triggered : most; }
};

struct Link {
    const char* name;
    std::vector<Member> members;
    double megabits = 1000;

    double usable() const { return megabits / 8 * (1 - interfaceMargin); }
};

Member camera(double most) {
    return {most, {}};
}

Member triggered(double most, double rate) {
    return {most,
            QStringLiteral(R"("trigger": { "mode": "On", "source": "Line0", "rate": %1 },)")
                .arg(rate * 1e6 / bytesPerFrame),
            rate};
}

Member softwareTriggered(double most) {
    return {most, QStringLiteral(R"("trigger": { "mode": "On" },)")};
}

Member withRange(double most, double minimum, double maximum) {
    return {most, {}, 0, minimum, maximum};
}

/// Locked, at a limit.
Member locked(double most, double limit) {
    return {most, QStringLiteral(R"("name": "locked",)"), 0, 1, limit, limit};
}

Member unlimited(double most) {
    Member member{most, QStringLiteral(R"("bandwidth": { "feature": "none" },)")};
    member.fixed = most;
    return member;
}

/// With a limit that cannot be written.
Member readOnly(double most) {
    Member member{most, QStringLiteral(R"("faults": { "features": [
                      { "name": "DeviceLinkThroughputLimit", "on": "set" }] },)")};
    member.fixed = most;
    return member;
}

Member withoutRate(double most) {
    return {most, QStringLiteral(R"("frameRate": { "feature": "none" },)")};
}

std::vector<Member> smallBesideHungry() {
    std::vector<Member> members(24, camera(2.3));
    members.push_back(camera(1200));
    return members;
}

const std::vector<Link>& links() {
    static const std::vector<Link> all{
        {"threeSlowTriggeredBesideAHungry",
         {camera(82), triggered(40, 9), triggered(40, 10), triggered(40, 8)}},
        {"slowTriggeredOnlyByTheirSensors",
         {camera(85), softwareTriggered(8), softwareTriggered(9), softwareTriggered(7)}},
        {"staggeredNeeds", {camera(20), camera(43), camera(90)}},
        {"manyStaggeredNeeds", {camera(5), camera(12), camera(22), camera(40), camera(70)}},
        {"softwareTriggerBesideASlowOne", {softwareTriggered(32), camera(76)}},
        {"minimaAtTheEnd",
         {camera(80), camera(60), withRange(60, 40, 100), withRange(60, 45, 100)}},
        {"aCameraWithoutALimit", {unlimited(60), camera(70), camera(50)}},
        {"aLimitThatCannotBeWritten", {readOnly(40), camera(90), camera(90)}},
        {"aCameraWithoutAFrameRate", {withoutRate(25), camera(110), camera(60)}},
        {"aLockedCamera", {locked(100, 30), camera(90), camera(12), camera(90)}},
        {"lowHighestLimits", {withRange(90, 1, 20), withRange(90, 1, 25), camera(100)}},
        {"smallNeedsBesideAHungryOneOn10Gigabits", smallBesideHungry(), 10000},
        {"moreThanALinkOf10GigabitsCarries",
         {camera(400), camera(300), triggered(500, 30), camera(700), camera(20)},
         10000},
        {"onlyTriggeredOnes", {triggered(90, 20), triggered(90, 45), triggered(90, 60)}},
    };
    return all;
}

QString scenarioOf(const Link& link) {
    QStringList cameras;
    for (const Member& member : link.members) {
        const double maximum = member.maximum > 0 ? member.maximum : link.megabits / 8;
        const QString range = QStringLiteral(R"("bandwidth": { "minimum": %1, "maximum": %2 },)")
                                  .arg(member.minimum * 1e6, 0, 'f', 0)
                                  .arg(maximum * 1e6, 0, 'f', 0);
        cameras << QStringLiteral(R"({ "id": "camera %1", "model": "Any", "interface": "eth", %2 %3
                       "exposureTime": 10, "linkSpeedMbps": %4,
                       "sensor": { "width": 320, "height": 250, "frameRate": %5 } })")
                       .arg(cameras.size() + 1)
                       .arg(member.json)
                       .arg(member.json.contains(QLatin1String("\"none\"")) && member.fixed > 0
                                ? QString()
                                : range)
                       .arg(link.megabits)
                       .arg(member.most * 1e6 / bytesPerFrame, 0, 'f', 3);
    }
    return QStringLiteral(R"({
        "host": { "adapters": [{ "name": "eth", "address": "10.0.0.1", "speedMbps": %1 }] },
        "transportLayers": [{ "id": "GEV", "type": "GigEVision" }],
        "interfaces": [{ "id": "eth", "transportLayer": "GEV", "adapter": "eth" }],
        "cameras": [%2] })")
        .arg(link.megabits)
        .arg(cameras.join(QLatin1Char(',')));
}

/// What each camera sends in the fair optimum: water filling by bisection.
std::vector<double> fairOptimum(const Link& link) {
    double usable = link.usable();
    for (const Member& member : link.members)
        usable -= member.fixed;
    const auto limitsAt = [&](double level) {
        std::vector<double> limits;
        for (const Member& member : link.members) {
            const double most = member.maximum > 0 ? member.maximum : link.megabits / 8;
            const double wanted = std::min(member.wanted() * (1 + cameraMargin), most);
            limits.push_back(member.fixed > 0 ? 0
                                              : std::clamp(level, member.minimum,
                                                           std::max(wanted, member.minimum)));
        }
        return limits;
    };
    double low = 0;
    double high = link.megabits;
    for (int i = 0; i < 100; ++i) {
        const double level = (low + high) / 2;
        double sum = 0;
        for (const double limit : limitsAt(level))
            sum += limit;
        (sum <= usable ? low : high) = level;
    }
    std::vector<double> sent = limitsAt(low);
    for (std::size_t i = 0; i < sent.size(); ++i) {
        const Member& member = link.members[i];
        sent[i] = std::min(member.wanted(), member.fixed > 0 ? member.fixed : sent[i]);
    }
    return sent;
}

class PlannedLink : public testing::TestWithParam<Link> {
protected:
    void SetUp() override {
        QTemporaryFile file;
        const QByteArray json = scenarioOf(GetParam()).toUtf8();
        ASSERT_TRUE(file.open() && file.write(json) == json.size() && file.flush());
        ASSERT_EQ(m_system.Startup(file.fileName().toStdWString().c_str()), OrvErrorSuccess)
            << json.toStdString();
        m_controller = makeSystemController(m_system);
        m_cameras = m_controller->enumerate().at(0);
        for (const auto& camera : m_cameras)
            camera->setLocked(camera->getCameraInfo().cameraName == "locked");
    }
    void TearDown() override {
        m_cameras.clear();
        m_controller.reset();
        m_system.Shutdown();
    }

    static void stream(SendingRates& rates) {
        const auto end = steady_clock::now() + std::chrono::milliseconds(400);
        while (steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            rates.sample();
        }
    }

    /// Megabytes per second that the cameras send with such limits.
    template <typename Limit> static double sentBytes(Limit limitOf) {
        double sum = 0;
        for (std::size_t i = 0; i < GetParam().members.size(); ++i) {
            const double wanted = GetParam().members[i].wanted();
            const std::optional<std::int64_t> limit = limitOf(i);
            sum += limit ? std::min(wanted, static_cast<double>(*limit) / 1e6) : wanted;
        }
        return sum;
    }

    /// Share of the optimum's frames that arrive.
    template <typename Limit> static double shareOfOptimum(Limit limitOf) {
        const auto optimum = fairOptimum(GetParam());
        return std::min(sentBytes(limitOf), GetParam().megabits / 8) /
               std::accumulate(optimum.begin(), optimum.end(), 0.0);
    }

    OrvCPP::OrvSystem& m_system = OrvCPP::OrvSystem::GetInstance();
    const CapturedLog m_log;
    std::shared_ptr<SystemController> m_controller;
    CameraList m_cameras;
};

TEST_P(PlannedLink, losesNothingAndReachesTheFairOptimum) {
    LinkPlan plan(m_cameras, cameraMargin);
    plan.findNeeds([] { return false; });
    {
        SendingRates rates(plan.camerasToMeasure());
        stream(rates);
        plan.noteMeasurement(rates);
    }
    plan.compareWithAutoSet(
        [this] { m_controller->autoSetInterface("", 0, false, interfaceMargin, cameraMargin); });
    EXPECT_EQ(plan.divide(GetParam().usable() * 1e6).outcome, BandwidthPlan::Outcome::Divided);
    ASSERT_TRUE(plan.apply()) << m_log.text();

    SendingRates rates(m_cameras);
    stream(rates);
    double sent = 0;
    double predicted = 0;
    for (std::size_t i = 0; i < m_cameras.size(); ++i) {
        const FrameStatistics statistics = m_cameras[i]->getFrameStatistics();
        EXPECT_EQ(statistics.lostFrames, 0);
        EXPECT_EQ(statistics.incompleteFrames, 0U);
        const PlannedCamera& camera = plan.cameras()[i];
        EXPECT_EQ(camera.handler->getBandwidth(), camera.limitPlanned.value_or(0));
        // A camera that waits for software triggers sends nothing.
        if (const auto rate = rates.rate(i)) {
            sent += rate->framesPerSecond;
            predicted += camera.framesAt(camera.limitPlanned);
        }
    }
    EXPECT_NEAR(sent, predicted, 0.02 * predicted);
    const auto planned = [&](std::size_t i) {
        return plan.cameras()[i].limitPlanned;
    };
    const auto byAutoSet = [&](std::size_t i) {
        return plan.cameras()[i].limitByAutoSet;
    };
    // What is measured may be off by the time between two samples.
    EXPECT_LE(sentBytes(planned), 1.005 * GetParam().usable());
    EXPECT_GE(shareOfOptimum(planned), 0.995);
    // For docs/plan.md.
    RecordProperty("plan", std::to_string(100 * shareOfOptimum(planned)));
    RecordProperty("autoSet", std::to_string(100 * shareOfOptimum(byAutoSet)));
    const double excess = GetParam().megabits / 8 / sentBytes(byAutoSet);
    RecordProperty("autoSetLoss", std::to_string(100 * (1 - std::min(1.0, excess))));
}

INSTANTIATE_TEST_SUITE_P(Links, PlannedLink, testing::ValuesIn(links()),
                         [](const auto& link) { return std::string(link.param.name); });

} // namespace
