// SPDX-License-Identifier: BSD-3-Clause
#include "cli/StreamingCameras.h"

#include "cli/LossFindings.h"
#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "session/StreamingLimits.h"

#include <algorithm>
#include <utility>

namespace cli {

namespace {

using std::chrono::milliseconds;

/// A camera without frames for so long is asked whether it is still there.
constexpr milliseconds silence{500};
/// A camera has stopped when it has sent no frame for so long, and for so many times its usual time
/// between two frames.
constexpr double longestSilentSeconds = 2;
constexpr double longestSilentPeriods = 3;
/// After so much time, further cameras are asked the next time.
constexpr milliseconds questionTime{100};

double secondsBetween(std::chrono::steady_clock::time_point since,
                      std::chrono::steady_clock::time_point until) {
    return static_cast<double>(std::chrono::duration_cast<milliseconds>(until - since).count()) /
           1000;
}

/// Whether a camera can be reached: every camera has the feature Width.
bool answers(const CameraHandler& camera) {
    return camera.getFeatureController()->readFeatureValue(cameraModule, "Width").has_value();
}

/// Reads a statistic of a camera's stream. Leaves the value where it cannot be read.
void readStatistic(const CameraHandler& camera, const char* feature,
                   std::optional<std::int64_t>& value) {
    const auto controller = camera.getFeatureController();
    if (!controller->hasFeature(firstStreamModule, feature))
        return;
    if (const auto read = controller->readFeatureValue(firstStreamModule, feature))
        value = integerOf(*read);
}

std::vector<ObservedCamera> observed(const CameraList& cameras) {
    std::vector<ObservedCamera> result;
    for (const auto& camera : cameras) {
        const CameraInfo info = camera->getCameraInfo();
        result.push_back({info.cameraId, info.transportLayerType == OrvTransportLayerTypeU3V,
                          camera->getFeatureController(),
                          [camera] {
                              return camera->isAcquiring()
                                         ? std::optional(camera->getFrameStatistics())
                                         : std::nullopt;
                          },
                          [camera] {
                              return camera->isTriggered();
                          }});
    }
    return result;
}

} // namespace

StreamingCameras::StreamingCameras(SystemController& controller, const HostInterface& interface,
                                   bool adjustsPacketSize, bool areSimulated)
    : m_controller(controller), m_interface(interface),
      m_bitsPerSecond(
          static_cast<double>(controller.getInterfaceSpeed(interface.name.toStdString()))),
      m_evidence((interface.id.isEmpty() ? interface.name : interface.id).toStdString(),
                 observed(interface.cameras), areSimulated) {
    m_controller.startBenchmark(interface.index, adjustsPacketSize);
    for (const auto& camera : interface.cameras) {
        Stream stream;
        stream.camera = camera;
        stream.isStarted = camera->isAcquiring();
        stream.lastSign = stream.lastFrame = Clock::now();
        m_streams.push_back(std::move(stream));
    }
    m_first = m_last = count();
    m_evidence.noteStart();
}

StreamingCameras::~StreamingCameras() {
    if (!m_isStopped)
        m_controller.stopBenchmark(m_interface.index);
}

bool StreamingCameras::isEmpty() const {
    return std::none_of(m_streams.begin(), m_streams.end(),
                        [](const Stream& stream) { return stream.isStarted; });
}

void StreamingCameras::noteFrames(Clock::time_point now) {
    for (Stream& stream : m_streams) {
        if (!stream.isStarted)
            continue;
        const std::uint64_t frames = stream.camera->getFrameStatistics().receivedFrames;
        if (frames == std::exchange(stream.frames, frames))
            continue;
        stream.lastSign = stream.lastFrame = now;
        stream.disconnectedAfterSeconds.reset();
    }
}

void StreamingCameras::ask(Stream& stream, Clock::time_point now) {
    if (answers(*stream.camera))
        stream.lastSign = now;
    else
        // The last sign may be older than the first count.
        stream.disconnectedAfterSeconds =
            std::max(secondsBetween(m_first.time, stream.lastSign), 0.0);
}

void StreamingCameras::findDisconnected() {
    const auto now = Clock::now();
    noteFrames(now);
    const std::size_t first = m_nextAsked;
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        const std::size_t index = (first + i) % m_streams.size();
        Stream& stream = m_streams[index];
        if (!stream.isStarted || stream.disconnectedAfterSeconds || now - stream.lastSign < silence)
            continue;
        ask(stream, now);
        m_nextAsked = index + 1;
        if (Clock::now() - now > questionTime)
            return;
    }
}

StreamingCameras::Counts StreamingCameras::count() {
    Counts now;
    for (Stream& stream : m_streams) {
        if (stream.isStarted)
            stream.counts.frames = stream.camera->getFrameStatistics();
        // A camera that has gone keeps its last statistics.
        if (stream.isStarted && !stream.disconnectedAfterSeconds) {
            readStatistic(*stream.camera, "GevStreamResendPacketCount",
                          stream.counts.packetsResent);
            readStatistic(*stream.camera, "GevStreamLostPacketCount", stream.counts.packetsMissing);
        }
        now.streams.push_back(stream.counts);
    }
    now.time = Clock::now();
    return now;
}

double StreamingCameras::seconds() const {
    return secondsBetween(m_first.time, m_last.time);
}

QJsonObject StreamingCameras::interval() {
    const Counts before = std::exchange(m_last, count());
    return figures(before, m_last);
}

void StreamingCameras::stop() {
    m_evidence.noteEnd();
    m_last = count();
    noteFrames(m_last.time);
    m_isStopped = true;
    m_controller.stopBenchmark(m_interface.index);
}

QJsonObject StreamingCameras::result() {
    for (Stream& stream : m_streams) {
        if (stream.isStarted && !stream.disconnectedAfterSeconds)
            ask(stream, m_last.time);
    }
    QJsonObject result = figures(m_first, m_last);
    result[QStringLiteral("cameras")] = withSilence(result[QStringLiteral("cameras")].toArray());
    InterfaceEvidence evidence = m_evidence.evidence();
    const auto usbCameras = static_cast<std::size_t>(
        std::count_if(evidence.cameras.begin(), evidence.cameras.end(),
                      [](const CameraEvidence& camera) { return camera.isUsb; }));
    evidence.usbMemoryNeeded = session::usbMegabytesFor(usbCameras);
    if (!evidence.isSimulated)
        evidence.usbMemory = session::streamingMemory().usbMegabytes;
    result[QStringLiteral("findings")] = lossFindings(evidence);
    return result;
}

double StreamingCameras::usualPeriod(const Stream& stream) const {
    if (stream.frames > 1)
        return secondsBetween(m_first.time, stream.lastFrame) / static_cast<double>(stream.frames);
    // One frame tells no time between two. A camera without a frame rate is never late.
    return 1 / stream.camera->readNeed().framesPerSecond;
}

std::optional<double> StreamingCameras::silentSeconds(const Stream& stream) const {
    if (!stream.isStarted || stream.disconnectedAfterSeconds || stream.frames == 0)
        return {};
    const double silent = secondsBetween(stream.lastFrame, m_last.time);
    if (silent <= longestSilentSeconds || stream.camera->isTriggered())
        return {};
    const bool isLong = silent > longestSilentPeriods * usualPeriod(stream);
    return isLong ? std::optional(silent) : std::nullopt;
}

QJsonArray StreamingCameras::withSilence(const QJsonArray& rows) const {
    QJsonArray result;
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        QJsonObject row = rows[static_cast<int>(i)].toObject();
        if (const auto seconds = silentSeconds(m_streams[i]))
            row[QStringLiteral("silentSeconds")] = *seconds;
        result.append(row);
    }
    return result;
}

QJsonObject StreamingCameras::figures(const Counts& since, const Counts& until) const {
    const double period = secondsBetween(since.time, until.time);
    QJsonArray rows;
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        const Stream& stream = m_streams[i];
        QJsonObject row = cameraIdentity(*stream.camera);
        row[QStringLiteral("measured")] = stream.isStarted && !stream.disconnectedAfterSeconds;
        if (stream.isStarted) {
            const auto counted = cameraFigures(since.streams[i], until.streams[i], period);
            for (auto figure = counted.begin(); figure != counted.end(); ++figure)
                row[figure.key()] = figure.value();
            addLinkShare(row, m_bitsPerSecond);
        }
        if (stream.disconnectedAfterSeconds)
            row[QStringLiteral("disconnectedAfterSeconds")] = *stream.disconnectedAfterSeconds;
        rows.append(row);
    }
    QJsonObject total = totalFigures(rows);
    if (m_bitsPerSecond > 0)
        total[QStringLiteral("bitsPerSecond")] = static_cast<qint64>(m_bitsPerSecond);
    addLinkShare(total, m_bitsPerSecond);
    QJsonObject document{{QStringLiteral("interface"), m_interface.name},
                         {QStringLiteral("cameras"), rows},
                         {QStringLiteral("total"), total}};
    addSharing(document, m_interface);
    return document;
}

} // namespace cli
