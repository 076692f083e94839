// SPDX-License-Identifier: BSD-3-Clause
#include "engine/LinkPlan.h"
#include "OrvCPP/OrvSystem.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "features/FeatureController.h"
#include "tests/support/CapturedLog.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
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
    /// What it sends on its triggers; 0: it is not triggered by a line.
    double triggered;
    double minimum;
    double maximum;
    /// The limit of a locked camera, or what a camera without a limit sends; 0 for others.
    double fixed;
    /// What is special in its scenario.
    QJsonObject scenario;

    double wanted() const { return triggered > 0 ? triggered : most; }
};

struct Link {
    std::string name;
    double megabits;
    std::vector<Member> members;

    double carried() const { return megabits / 8; }
    double usable() const { return carried() * (1 - interfaceMargin); }
};

std::vector<Link> readLinks() {
    QFile file(QStringLiteral(LINK_PLANS_FILE));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<Link> links;
    for (const QJsonValue& each : QJsonDocument::fromJson(file.readAll()).array()) {
        Link link{each[QLatin1String("name")].toString().toStdString(),
                  each[QLatin1String("megabits")].toDouble(1000),
                  {}};
        for (const QJsonValue& camera : each[QLatin1String("cameras")].toArray())
            link.members.insert(link.members.end(),
                                static_cast<std::size_t>(camera[QLatin1String("count")].toInt(1)),
                                {camera[QLatin1String("most")].toDouble(),
                                 camera[QLatin1String("triggered")].toDouble(),
                                 camera[QLatin1String("minimum")].toDouble(1),
                                 camera[QLatin1String("maximum")].toDouble(link.carried()),
                                 camera[QLatin1String("fixed")].toDouble(),
                                 camera[QLatin1String("scenario")].toObject()});
        links.push_back(link);
    }
    return links;
}

/// Links of 1 to 10 Gbit/s with 2 to 11 cameras that ask for 0.5 to 2 times what it carries, some
/// of them triggered, some with a high lowest or a low highest limit. Each seed gives the same
/// anywhere.
Link randomLink(unsigned seed) {
    std::mt19937 bits(seed);
    const auto from = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(bits()) /
                         static_cast<double>(std::mt19937::max());
    };
    Link link{"random" + std::to_string(seed), 1000.0 * static_cast<int>(from(1, 11)), {}};
    const auto count = static_cast<std::size_t>(from(2, 12));
    const double fairShare = link.usable() / static_cast<double>(count);
    for (std::size_t i = 0; i < count; ++i) {
        Member member{fairShare * from(0.5, 2), 0, 1, link.carried(), 0, {}};
        if (from(0, 3) < 1)
            member.triggered = member.most * from(0.4, 0.9);
        else if (from(0, 3) < 1)
            member.minimum = std::ceil(fairShare * from(0.3, 0.9));
        else if (from(0, 3) < 1)
            member.maximum = std::ceil(fairShare * from(0.3, 1.5));
        link.members.push_back(member);
    }
    return link;
}

std::vector<Link> links() {
    std::vector<Link> links = readLinks();
    for (unsigned seed = 1; seed <= 10; ++seed)
        links.push_back(randomLink(seed));
    return links;
}

QString scenarioOf(const Link& link) {
    QJsonArray cameras;
    for (const Member& member : link.members) {
        QJsonObject camera{
            {QStringLiteral("id"), QStringLiteral("camera %1").arg(cameras.size())},
            {QStringLiteral("model"), QStringLiteral("Any")},
            {QStringLiteral("interface"), QStringLiteral("eth")},
            {QStringLiteral("exposureTime"), 10},
            {QStringLiteral("linkSpeedMbps"), link.megabits},
            {QStringLiteral("bandwidth"),
             QJsonObject{{QStringLiteral("minimum"), member.minimum * 1e6},
                         {QStringLiteral("maximum"), member.maximum * 1e6}}},
            {QStringLiteral("sensor"),
             QJsonObject{{QStringLiteral("width"), 320},
                         {QStringLiteral("height"), 250},
                         {QStringLiteral("frameRate"), member.most * 1e6 / bytesPerFrame}}}};
        if (member.triggered > 0)
            camera[QLatin1String("trigger")] =
                QJsonObject{{QStringLiteral("mode"), QStringLiteral("On")},
                            {QStringLiteral("source"), QStringLiteral("Line0")},
                            {QStringLiteral("rate"), member.triggered * 1e6 / bytesPerFrame}};
        for (auto special = member.scenario.begin(); special != member.scenario.end(); ++special)
            camera[special.key()] = special.value();
        cameras.append(camera);
    }
    return QStringLiteral(R"({
        "host": { "adapters": [{ "name": "eth", "address": "10.0.0.1", "speedMbps": %1 }] },
        "transportLayers": [{ "id": "GEV", "type": "GigEVision" }],
        "interfaces": [{ "id": "eth", "transportLayer": "GEV", "adapter": "eth" }],
        "cameras": %2 })")
        .arg(link.megabits)
        .arg(QString::fromUtf8(QJsonDocument(cameras).toJson()));
}

/// What each camera sends in the fair optimum: water filling by bisection.
std::vector<double> fairOptimum(const Link& link) {
    double usable = link.usable();
    for (const Member& member : link.members)
        usable -= member.fixed;
    const auto limitsAt = [&](double level) {
        std::vector<double> limits;
        for (const Member& member : link.members) {
            const double wanted = std::min(member.wanted() * (1 + cameraMargin), member.maximum);
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
        for (const auto& camera : m_cameras) {
            const std::string name = camera->getCameraInfo().cameraName;
            camera->setLocked(name.find("locked") == 0);
            const bool isOff = name == "locked, off";
            ASSERT_TRUE(!isOff ||
                        camera->getFeatureController()->setFeatureValue(
                            cameraModule, "DeviceLinkThroughputLimitMode", std::string("Off")));
        }
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
        return std::min(sentBytes(limitOf), GetParam().carried()) /
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
        EXPECT_TRUE(!camera.limitPlanned || camera.handler->getBandwidth() == *camera.limitPlanned);
        // A camera that waits for software triggers may need all that its sensor gives; one whose
        // limits end below that needs no more than they allow.
        const Member& member = GetParam().members[i];
        const double wanted = member.fixed > 0 ? std::min(member.wanted(), member.fixed)
                                               : std::min(member.wanted(), member.maximum);
        EXPECT_NEAR(camera.needFrames * bytesPerFrame / 1e6, wanted, 0.015 * wanted);
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
    const double excess = GetParam().carried() / sentBytes(byAutoSet);
    RecordProperty("autoSetLoss", std::to_string(100 * (1 - std::min(1.0, excess))));
}

INSTANTIATE_TEST_SUITE_P(Links, PlannedLink, testing::ValuesIn(links()),
                         [](const auto& link) { return link.param.name; });

} // namespace
