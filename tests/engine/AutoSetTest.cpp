// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "tests/engine/GeneratedScenario.h"
#include "tests/support/CapturedLog.h"

#include <QTemporaryFile>

#include <gmock/gmock.h>

#include <chrono>
#include <numeric>
#include <thread>

namespace {

using std::chrono::steady_clock;

struct Interface {
    std::string id;
    CameraList cameras;
    /// Default margin, as a fraction, and the bytes per second that it leaves.
    double margin;
    double usable;

    template <typename Figure> std::int64_t sumOf(const Figure& figure) const {
        return std::accumulate(
            cameras.begin(), cameras.end(), std::int64_t{0},
            [&](std::int64_t sum, const auto& camera) { return sum + figure(*camera); });
    }
};

std::string nameOf(const CameraHandler& camera) {
    return camera.getCameraInfo().cameraName;
}

std::int64_t limitOf(const CameraHandler& camera) {
    return camera.getBandwidth();
}

/// Damaged frames included.
std::int64_t lostFrames(const CameraHandler& camera) {
    const FrameStatistics statistics = camera.getFrameStatistics();
    return statistics.lostFrames + static_cast<std::int64_t>(statistics.incompleteFrames);
}

/// What a simulated system has, from its start-up to its shutdown.
class Host {
public:
    /// Cameras the names of which contain "locked" are locked.
    explicit Host(const QString& scenario) {
        EXPECT_EQ(m_system.Startup(scenario.toStdWString().c_str()), OrvErrorSuccess);
        m_controller = makeSystemController(m_system);
        for (const CameraList& cameras : m_controller->enumerate()) {
            const CameraInfo info = cameras.front()->getCameraInfo();
            const double margin = info.transportLayerType == OrvTransportLayerTypeU3V ? 0.3 : 0.1;
            const auto bits =
                static_cast<double>(m_controller->getInterfaceSpeed(info.interfaceName));
            m_interfaces.push_back({info.interfaceName, cameras, margin, bits / 8 * (1 - margin)});
            for (const auto& camera : cameras)
                camera->setLocked(nameOf(*camera).find("locked") != std::string::npos);
        }
    }
    ~Host() {
        m_interfaces.clear();
        m_controller.reset();
        m_system.Shutdown();
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    const std::vector<Interface>& interfaces() const { return m_interfaces; }

    void autoSet() {
        int index = 0;
        for (const Interface& interface : m_interfaces)
            m_controller->autoSetInterface(interface.id, index++, false, interface.margin, 0.05);
    }

    /// All interfaces stream until every camera has delivered enough frames. The figures (frames
    /// lost and sent, limit, usable bytes per second) become properties of the test.
    void benchmark(const std::string& label) {
        const int count = static_cast<int>(m_interfaces.size());
        for (int index = 0; index < count; ++index)
            m_controller->startBenchmark(index, false);
        const auto end = steady_clock::now() + std::chrono::seconds(60);
        while (!hasDelivered() && steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_TRUE(hasDelivered());
        for (int index = 0; index < count; ++index)
            m_controller->stopBenchmark(index);
        for (const Interface& interface : m_interfaces) {
            for (const auto& camera : interface.cameras)
                testing::Test::RecordProperty(
                    label + "," + interface.id + "," + nameOf(*camera),
                    std::to_string(lostFrames(*camera)) + "," +
                        std::to_string(camera->getFrameStatistics().lastFrameId) + "," +
                        std::to_string(limitOf(*camera)) + "," + std::to_string(interface.usable));
        }
    }

private:
    bool hasDelivered() const {
        // More of them make the figures of the documentation steadier.
        const int frames = std::max(10, qEnvironmentVariableIntValue("SPANLET_BENCHMARK_FRAMES"));
        for (const Interface& interface : m_interfaces) {
            for (const auto& camera : interface.cameras) {
                if (camera->getFrameStatistics().receivedFrames < static_cast<unsigned>(frames))
                    return false;
            }
        }
        return true;
    }

    OrvCPP::OrvSystem& m_system = OrvCPP::OrvSystem::GetInstance();
    std::shared_ptr<SystemController> m_controller;
    std::vector<Interface> m_interfaces;
};

QString stored(QTemporaryFile& file, const QByteArray& json) {
    EXPECT_TRUE(file.open() && file.write(json) == json.size() && file.flush());
    return file.fileName();
}

/// By seed; 0 stands for the scenario that comes with Spanlet.
class AutoSet : public testing::TestWithParam<std::uint32_t> {};

/// On cameras that together ask for more than their interfaces carry, some of them locked.
TEST_P(AutoSet, endsTheLossOfFramesAndUsesTheInterface) {
    const CapturedLog log;
    QTemporaryFile file;
    Host host(GetParam() > 0 ? stored(file, generateScenario(GetParam()))
                             : QStringLiteral(":oversubscribed"));

    host.benchmark("before");
    std::map<std::string, std::int64_t> limitsBefore;
    for (const Interface& interface : host.interfaces()) {
        EXPECT_GT(interface.sumOf(lostFrames), 0) << interface.id;
        for (const auto& camera : interface.cameras)
            limitsBefore[nameOf(*camera)] = limitOf(*camera);
    }
    host.autoSet();
    host.benchmark("after");
    for (const Interface& interface : host.interfaces()) {
        SCOPED_TRACE(interface.id);
        EXPECT_EQ(interface.sumOf(lostFrames), 0);
        for (const auto& camera : interface.cameras) {
            if (camera->isLocked()) {
                EXPECT_EQ(limitOf(*camera), limitsBefore.at(nameOf(*camera)));
            }
        }
        const auto limits = static_cast<double>(interface.sumOf(limitOf));
        // The correction to an increment of 2 may give the last camera a byte more.
        EXPECT_LE(limits, interface.usable + 1);
        EXPECT_GE(limits, 0.85 * interface.usable);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, AutoSet, testing::Range(0U, 7U));

struct Camera {
    const char* name;
    int frameRate;
    /// Keys of the scenario.
    const char* bandwidth;
    const char* trigger;
};

struct Rule {
    const char* name;
    /// Images of 1 MB on an interface of which 112.5 MB/s can be used.
    std::vector<Camera> cameras;
    /// MB/s.
    std::vector<double> limits;
    bool losesFrames;
};

void PrintTo(const Rule& rule, std::ostream* stream) {
    *stream << rule.name;
}

class AutoSetRule : public testing::TestWithParam<Rule> {};

/// What the rules do not put right, or give away.
TEST_P(AutoSetRule, leavesLossOrWaste) {
    const CapturedLog log;
    QStringList cameras;
    for (const Camera& camera : GetParam().cameras)
        cameras << QStringLiteral(R"({ "id": "%1", "interface": "eth", "model": "One",
            "sensor": { "width": 1000, "height": 1000, "frameRate": %2 },
            "bandwidth": { %3 }, "trigger": { %4 } })")
                       .arg(QLatin1String(camera.name))
                       .arg(camera.frameRate)
                       .arg(QLatin1String(camera.bandwidth), QLatin1String(camera.trigger));
    QTemporaryFile file;
    Host host(stored(file, QStringLiteral(R"({
        "host": { "adapters": [{ "name": "eth", "address": "10.0.0.1" }] },
        "transportLayers": [{ "id": "GEV", "type": "GigEVision" }],
        "interfaces": [{ "id": "eth", "transportLayer": "GEV", "adapter": "eth" }],
        "cameras": [%1] })")
                               .arg(cameras.join(QLatin1Char(',')))
                               .toUtf8()));
    host.autoSet();
    host.benchmark("after");
    const Interface& interface = host.interfaces().front();
    std::vector<double> limits;
    for (const auto& camera : interface.cameras)
        limits.push_back(static_cast<double>(limitOf(*camera)) / 1e6);
    EXPECT_THAT(limits, testing::Pointwise(testing::DoubleNear(0.1), GetParam().limits));
    EXPECT_EQ(interface.sumOf(lostFrames) > 0, GetParam().losesFrames);
}

constexpr const char* triggers = R"("mode": "On", "source": "Line0", "rate": 20)";

INSTANTIATE_TEST_SUITE_P(
    Rules, AutoSetRule,
    testing::Values(
        Rule{"LockedCamerasBeyondTheLink",
             {{"locked 1", 70, R"("value": 70000000)", ""},
              {"locked 2", 70, R"("value": 70000000)", ""},
              {"free", 60, R"("minimum": 20000000)", ""}},
             {70, 70, 20},
             true},
        Rule{"MinimaAboveTheShares",
             {{"1", 60, R"("minimum": 50000000)", ""},
              {"2", 60, R"("minimum": 50000000)", ""},
              {"3", 60, R"("minimum": 50000000)", ""}},
             {50, 50, 50},
             true},
        Rule{"NoLimitToSet",
             {{"unlimited", 60, R"("feature": "none")", ""}, {"1", 60, "", ""}, {"2", 60, "", ""}},
             {0, 56.25, 56.25},
             true},
        Rule{"NoFrameRateToKeep",
             {{"1", 60, R"("value": 60000000 }, "frameRate": { "feature": "none")", ""},
              {"2", 60, "", ""},
              {"3", 60, "", ""}},
             {60, 56.25, 56.25},
             true},
        Rule{"StepsThatTheCorrectionMisses",
             {{"1", 130, R"("minimum": 16384000, "increment": 1024)", ""},
              {"2", 60, R"("minimum": 16384000, "increment": 1024)", ""}},
             {56.25, 56.25},
             false},
        Rule{"TriggeredLessOftenThanItsShare",
             {{"free", 100, "", ""}, {"triggered", 60, "", triggers}},
             {56.25, 56.25},
             false},
        Rule{"TriggeredWithALowMaximum",
             {{"free", 100, "", ""}, {"triggered", 60, R"("maximum": 20000000)", triggers}},
             {56.25, 20},
             false},
        Rule{"EqualShareAboveTheNeed",
             {{"1", 20, "", ""}, {"2", 43, "", ""}, {"3", 90, "", ""}},
             {21.2, 45.6, 45.6},
             false},
        Rule{"LockedAboveItsNeed",
             {{"locked", 20, R"("value": 80000000)", ""}, {"free", 60, "", ""}},
             {80, 32.5},
             false}),
    [](const auto& rule) { return std::string(rule.param.name); });

} // namespace
