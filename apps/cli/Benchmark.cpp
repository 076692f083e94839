// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Benchmark.h"

#include "cli/Command.h"
#include "cli/Table.h"
#include "engine/CameraHandler.h"
#include "features/FeatureController.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <vector>

namespace cli {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr QLatin1String secondsOption("seconds");
constexpr QLatin1String packetSizeOption("adjust-packet-size");

/// The number of frames that each camera of an interface has received at a point in time.
struct FrameCounts {
    steady_clock::time_point time;
    std::vector<std::uint64_t> received;
};

double secondsBetween(const FrameCounts& since, const FrameCounts& until) {
    const auto passed = std::chrono::duration_cast<milliseconds>(until.time - since.time);
    return static_cast<double>(passed.count()) / 1000;
}

/// Average frames per second of the camera with that index.
double frameRate(const FrameCounts& since, const FrameCounts& until, std::size_t camera) {
    const double seconds = secondsBetween(since, until);
    const auto frames = static_cast<double>(until.received[camera] - since.received[camera]);
    return seconds > 0 ? frames / seconds : 0;
}

void addFigures(QJsonObject& row, const FrameStatistics& statistics, double framesPerSecond) {
    const auto number = [](auto value) {
        return static_cast<qint64>(value);
    };
    row[QStringLiteral("framesPerSecond")] = framesPerSecond;
    row[QStringLiteral("payloadBytes")] = number(statistics.payloadBytes);
    row[QStringLiteral("receivedFrames")] = number(statistics.receivedFrames);
    row[QStringLiteral("sentFrames")] = number(statistics.lastFrameId);
    row[QStringLiteral("lostFrames")] = number(statistics.lostFrames);
    row[QStringLiteral("incompleteFrames")] = number(statistics.incompleteFrames);
}

/// Whether a camera can be reached: every camera has the feature Width.
bool answers(const CameraHandler& camera) {
    return camera.getFeatureController()->readFeatureValue("Camera", "Width").has_value();
}

/// Streams from the cameras of an interface until it is destroyed.
class StreamingCameras {
public:
    StreamingCameras(SystemController& controller, const HostInterface& interface,
                     bool adjustsPacketSize)
        : m_controller(controller), m_interface(interface) {
        m_controller.startBenchmark(interface.index, adjustsPacketSize);
        for (const auto& camera : interface.cameras) {
            if (camera->isAcquiring())
                m_started.insert(camera);
        }
    }
    ~StreamingCameras() { stop(); }

    StreamingCameras(const StreamingCameras&) = delete;
    StreamingCameras& operator=(const StreamingCameras&) = delete;

    bool isEmpty() const { return m_started.empty(); }

    void stop() {
        if (m_isStopped)
            return;
        m_isStopped = true;
        m_controller.stopBenchmark(m_interface.index);
    }

    /// Removes cameras that were disconnected while they streamed; stopping does not report that.
    void removeDisconnected() {
        for (auto camera = m_started.begin(); camera != m_started.end();)
            camera = answers(**camera) ? std::next(camera) : m_started.erase(camera);
    }

    FrameCounts counts() const {
        FrameCounts now;
        for (const auto& camera : m_interface.cameras)
            now.received.push_back(camera->getFrameStatistics().receivedFrames);
        now.time = steady_clock::now();
        return now;
    }

    /// The cameras' figures; their frame rates are averages between the two counts.
    QJsonArray cameras(const FrameCounts& since, const FrameCounts& until) const {
        QJsonArray rows;
        for (std::size_t i = 0; i < m_interface.cameras.size(); ++i) {
            const auto& camera = m_interface.cameras[i];
            const bool isMeasured = m_started.count(camera) > 0;
            QJsonObject row = cameraIdentity(*camera);
            row[QStringLiteral("measured")] = isMeasured;
            if (isMeasured)
                addFigures(row, camera->getFrameStatistics(), frameRate(since, until, i));
            rows.append(row);
        }
        return rows;
    }

private:
    SystemController& m_controller;
    const HostInterface& m_interface;
    std::set<std::shared_ptr<CameraHandler>> m_started;
    bool m_isStopped = false;
};

/// Waits until the time is up and calls \p onInterval at each interval. Returns true when it was
/// ended early: by an interruption, or since \p onInterval returned false.
bool awaitEnd(const BenchmarkPlan& plan, Interruption& interruption,
              const std::function<bool()>& onInterval) {
    const auto start = steady_clock::now();
    const auto end = start + milliseconds(std::llround(plan.seconds * 1000));
    for (auto next = start + plan.interval;; next += plan.interval) {
        const auto until = plan.seconds > 0 ? std::min(next, end) : next;
        const auto left = std::chrono::ceil<milliseconds>(until - steady_clock::now());
        if (interruption.wait(std::max(left, milliseconds(0))))
            return true;
        if (plan.seconds > 0 && until == end)
            return false;
        if (!onInterval())
            return true;
    }
}

} // namespace

QJsonObject runBenchmark(Cameras& cameras, const HostInterface& interface,
                         const BenchmarkPlan& plan, Interruption& interruption,
                         const BenchmarkProgress& progress) {
    cameras.warnOfLimits();
    StreamingCameras streaming(cameras.controller(), interface, plan.adjustsPacketSize);
    if (streaming.isEmpty())
        throw Failure(QStringLiteral("No camera of %1 streams.").arg(interface.name));
    const FrameCounts first = streaming.counts();
    FrameCounts last = first;
    const bool isInterrupted = awaitEnd(plan, interruption, [&] {
        if (!progress)
            return true;
        const FrameCounts now = streaming.counts();
        const QJsonArray rows = streaming.cameras(last, now);
        last = now;
        return progress(secondsBetween(first, now), rows);
    });
    const FrameCounts end = streaming.counts();
    streaming.stop();
    streaming.removeDisconnected();
    return {
        {QStringLiteral("interface"), interface.name},
        {QStringLiteral("seconds"), secondsBetween(first, end)},
        {QStringLiteral("interrupted"), isInterrupted},
        {QStringLiteral("cameras"), streaming.cameras(first, end)},
    };
}

bool hasMeasuredAll(const QJsonObject& benchmark) {
    const QJsonArray rows = benchmark[QStringLiteral("cameras")].toArray();
    return std::all_of(rows.begin(), rows.end(), [](const QJsonValue& row) {
        return row[QStringLiteral("measured")].toBool() || !row[QStringLiteral("opened")].toBool();
    });
}

bool hasLoss(const QJsonObject& benchmark) {
    const QJsonArray rows = benchmark[QStringLiteral("cameras")].toArray();
    return std::any_of(rows.begin(), rows.end(), [](const QJsonValue& row) {
        return row[QStringLiteral("lostFrames")].toDouble() > 0 ||
               row[QStringLiteral("incompleteFrames")].toDouble() > 0;
    });
}

QStringList benchmarkLines(const QJsonArray& cameras, int width) {
    constexpr double mega = 1e6;
    QVector<Column> columns{{QStringLiteral("Camera"), QStringLiteral("id")},
                            {QStringLiteral("Name"), QStringLiteral("name")},
                            {QStringLiteral("Frames/s"), QStringLiteral("framesPerSecond"), 1, 2},
                            {QStringLiteral("Payload MB"), QStringLiteral("payloadBytes"), mega, 2},
                            {QStringLiteral("Received"), QStringLiteral("receivedFrames")},
                            {QStringLiteral("Sent"), QStringLiteral("sentFrames")},
                            {QStringLiteral("Lost"), QStringLiteral("lostFrames")},
                            {QStringLiteral("Incomplete"), QStringLiteral("incompleteFrames")}};
    QStringList lines = tableLines(columns, cameras);
    // Keeps the ID and the losses. The second line is the rule below the headings, as wide as the
    // table.
    for (const char* key : {"name", "payloadBytes", "sentFrames", "receivedFrames"}) {
        if (lines[1].size() <= width)
            break;
        columns.erase(std::find_if(columns.begin(), columns.end(), [&](const Column& column) {
            return column.key == QLatin1String(key);
        }));
        lines = tableLines(columns, cameras);
    }
    return lines;
}

QString benchmarkText(const QJsonObject& benchmark) {
    const QString time = QStringLiteral("%1, %2 s%3\n")
                             .arg(benchmark[QStringLiteral("interface")].toString())
                             .arg(benchmark[QStringLiteral("seconds")].toDouble(), 0, 'f', 1)
                             .arg(benchmark[QStringLiteral("interrupted")].toBool()
                                      ? QStringLiteral(" (interrupted)")
                                      : QString());
    return time + joined(benchmarkLines(benchmark[QStringLiteral("cameras")].toArray()));
}

QList<QCommandLineOption> benchmarkOptions(const QString& absentSeconds) {
    return {
        {QStringLiteral("interface"),
         QStringLiteral("Name or ID of the interface; may be left out where there is only one."),
         QStringLiteral("interface")},
        {secondsOption, QStringLiteral("How long it takes, %1 by default.").arg(absentSeconds),
         QStringLiteral("number")},
        {packetSizeOption,
         QStringLiteral("Let GigE cameras negotiate their largest packet size before.")},
    };
}

BenchmarkPlan benchmarkPlan(const Arguments& arguments, double absentSeconds) {
    BenchmarkPlan plan;
    plan.seconds = benchmarkSeconds(arguments, secondsOption, absentSeconds);
    plan.adjustsPacketSize = arguments.has(packetSizeOption);
    return plan;
}

double benchmarkSeconds(const Arguments& arguments, const QString& option, double absent) {
    return arguments.number(option, {0.1, 99999, absent});
}

const HostInterface& chosenInterface(const Cameras& cameras, const Arguments& arguments) {
    const QString option = QStringLiteral("interface");
    const auto& interfaces = cameras.interfaces();
    if (arguments.has(option))
        return cameras.findInterface(arguments.value(option));
    if (interfaces.empty())
        throw Failure(QStringLiteral("There is no camera."));
    if (interfaces.size() == 1)
        return interfaces.front();
    QStringList names;
    for (const HostInterface& interface : interfaces)
        names.append(interface.name);
    throw Failure(
        QStringLiteral("Choose one with --interface: %1.").arg(names.join(QStringLiteral(", "))),
        ExitCode::WrongUse);
}

} // namespace cli
