// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Calibration.h"

#include "cli/Benchmark.h"
#include "cli/Failure.h"
#include "cli/PlannedLink.h"
#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "features/OptionalFeatures.h"
#include "logging/Log.h"

#include <algorithm>

namespace cli {

namespace {

/// For cameras that do not report what they send, at least.
constexpr double needSeconds = 1;
/// More packets than this share sent again count as a loss: the link is too slow, although no frame
/// is lost yet. A cable may lose fewer.
constexpr double tolerableResends = 0.002;
/// Fewer frames than this may be missing because the time was too short for them.
constexpr double expectedFrames = 3;
/// Bytes of the headers in a packet's size: IP, UDP and the larger one of GVSP.
constexpr double headerBytes = 48;

/// The image bytes of a packet of a camera's stream; 0 for one without packets.
double packetPayload(const CameraHandler& camera) {
    const auto size =
        readIfPresent(*camera.getFeatureController(), firstStreamModule, "GVSPPacketSize");
    const double bytes = size ? static_cast<double>(integerOf(*size).value_or(0)) : 0;
    return std::max(bytes - headerBytes, 0.0);
}

/// Figures of one camera of a benchmark, in bytes of the images' data.
struct Delivery {
    double sent = 0;
    double arrived = 0;
    double packets = 0;
    double resent = 0;
    double lostFrames = 0;
    double perFrame = 0;
};

Delivery deliveryOf(const QJsonObject& figures, const PlannedCamera& camera, double seconds) {
    const auto number = [&](const char* key) {
        return figures[QLatin1String(key)].toDouble();
    };
    Delivery delivery;
    const double received = number("receivedFrames");
    delivery.lostFrames = number("lostFrames") + number("incompleteFrames");
    if (received <= 0) {
        // Its packets are lost, unless the time was too short.
        const double frames = camera.framesAt(camera.limitPlanned) * seconds;
        delivery.lostFrames += frames >= expectedFrames ? frames : 0;
        delivery.sent = delivery.lostFrames > 0 ? camera.bytesAt(camera.limitPlanned) * seconds : 0;
        return delivery;
    }
    const double perPacket = packetPayload(*camera.handler);
    const double payload = number("payloadBytes");
    delivery.perFrame = payload / received;
    delivery.sent = delivery.perFrame * number("sentFrames");
    delivery.arrived = std::max(payload - number("packetsMissing") * perPacket, 0.0);
    delivery.packets = perPacket > 0 ? payload / perPacket : 0;
    delivery.resent = number("packetsResent");
    // Cameras send these within their limit.
    delivery.sent += delivery.resent * perPacket;
    return delivery;
}

/// Triggered cameras that sent less than two frames while their need was measured are counted with
/// nothing.
void setWaitingAside(LinkPlan& plan) {
    for (PlannedCamera& camera : plan.cameras()) {
        if (camera.role == PlanRole::NotOpened || camera.source == NeedSource::Measurement ||
            !camera.handler->isTriggered())
            continue;
        camera.role = PlanRole::Fixed;
        camera.source = NeedSource::Unknown;
        camera.needBytes = camera.needFrames = 0;
        logWarning(camera.handler->getCameraInfo().cameraId +
                   ": It waits for triggers and sends nothing; it is not counted.");
    }
}

/// Runs the steps of a calibration as benchmarks.
class Measurements {
public:
    Measurements(Cameras& cameras, const ChosenInterfaces& link, const LinkPlan& plan,
                 double seconds, Interruption& interruption)
        : m_cameras(cameras), m_link(link), m_plan(plan), m_interruption(interruption) {
        m_benchmark.seconds = seconds;
    }

    std::optional<LinkCalibration::Measurement> step() {
        const QJsonObject result = runBenchmark(m_cameras, m_link, m_benchmark, m_interruption);
        if (result[QStringLiteral("interrupted")].toBool())
            return std::nullopt;
        // Its limit counts in the load of the step.
        requireMeasuredAll(result);
        CalibrationStep step;
        const auto measurement = judge(result, step);
        m_steps.push_back(step);
        m_findings.push_back(findingsOf(result));
        return measurement;
    }

    /// The steps with the loads of the calibration.
    std::vector<CalibrationStep> steps(const LinkCalibration& calibration) const {
        std::vector<CalibrationStep> steps = m_steps;
        for (std::size_t i = 0; i < steps.size() && i < calibration.steps().size(); ++i)
            steps[i].sentBytes = calibration.steps()[i].load;
        return steps;
    }

    QJsonArray findingsAt(const LinkCalibration& calibration) const {
        QJsonArray findings;
        for (std::size_t i = 0; i < calibration.steps().size(); ++i) {
            const auto& [load, measurement] = calibration.steps()[i];
            if (measurement.hasLoss && load == calibration.lossy())
                findings = m_findings[i];
        }
        return findings;
    }

private:
    LinkCalibration::Measurement judge(const QJsonObject& result, CalibrationStep& step) const {
        Delivery all;
        for (const QJsonValue& interface : interfacesOf(result)) {
            const QJsonObject total = interface[QStringLiteral("total")].toObject();
            step.carriedBytes += total[QStringLiteral("bytesPerSecond")].toDouble();
            if (total.contains(QStringLiteral("packetsResent")))
                step.packetsResent = step.packetsResent.value_or(0) +
                                     total[QStringLiteral("packetsResent")].toDouble();
            for (const QJsonValue& value : interface[QStringLiteral("cameras")].toArray())
                add(all, value.toObject());
        }
        step.lostFrames = all.lostFrames;
        step.cutBytes = 2 * all.perFrame / m_benchmark.seconds;
        step.hasLoss =
            all.lostFrames > 0 || (all.packets > 0 && all.resent > tolerableResends * all.packets);
        return {step.hasLoss, all.sent > 0 ? all.arrived / all.sent : 1};
    }

    /// What a camera sends must be counted, and what is counted must be sent: else a link seems to
    /// carry less or more than it does.
    void checkSending(const PlannedCamera& camera, const QJsonObject& figures) const {
        const QString id = cameraId(*camera.handler);
        const bool sends = figures[QStringLiteral("receivedFrames")].toDouble() > 0;
        const bool isCounted = camera.bytesAt(camera.limitPlanned) > 0;
        if (sends && !isCounted)
            throw Failure(QStringLiteral("%1: It sends now, but did not while its need was "
                                         "measured. Trigger it steadily, or not at all.")
                              .arg(id));
        const bool isFirst = m_steps.empty();
        if (!isFirst)
            requireSending(figures);
        if (sends || !isCounted)
            return;
        const double expected = camera.framesAt(camera.limitPlanned) * m_benchmark.seconds;
        // In the first step, an overloaded link may lose all frames of a camera that does send.
        if (isFirst ? camera.source != NeedSource::Measurement : expected >= expectedFrames)
            throw silentCamera(id, m_benchmark.seconds);
    }

    void add(Delivery& all, const QJsonObject& figures) const {
        const PlannedCamera* const camera =
            findPlanned(m_plan, figures[QStringLiteral("id")].toString());
        if (!camera || !figures[QStringLiteral("measured")].toBool())
            return;
        checkSending(*camera, figures);
        const Delivery one = deliveryOf(figures, *camera, m_benchmark.seconds);
        all.sent += one.sent;
        all.arrived += one.arrived;
        all.packets += one.packets;
        all.resent += one.resent;
        all.lostFrames += one.lostFrames;
        all.perFrame += one.perFrame;
    }

    static QJsonArray findingsOf(const QJsonObject& result) {
        QJsonArray all;
        for (const QJsonValue& interface : interfacesOf(result)) {
            for (const QJsonValue& finding : interface[QStringLiteral("findings")].toArray())
                all.append(finding);
        }
        return all;
    }

    Cameras& m_cameras;
    const ChosenInterfaces& m_link;
    const LinkPlan& m_plan;
    Interruption& m_interruption;
    BenchmarkPlan m_benchmark;
    std::vector<CalibrationStep> m_steps;
    std::vector<QJsonArray> m_findings;
};

/// What cameras of the link are known to send to other applications.
double otherTraffic(const Cameras& cameras, const ChosenInterfaces& link) {
    double sum = 0;
    for (const HostInterface& interface : cameras.interfaces()) {
        const HostInterface& first = *link.interfaces.front();
        if (&interface == &first || first.sharing.contains(interface.name))
            sum += interface.otherTraffic;
    }
    return sum;
}

/// The share of the loads that cameras send: 1, or less where they send much less than their
/// limits. The best one of all steps without a loss, since a busy host may delay a camera.
double arrivedShare(const std::vector<CalibrationStep>& steps) {
    constexpr double muchLess = 0.8;
    double share = 0;
    for (const CalibrationStep& step : steps) {
        if (!step.hasLoss && step.sentBytes > 0)
            share = std::max(share, (step.carriedBytes + step.cutBytes) / step.sentBytes);
    }
    return share < muchLess ? share : 1;
}

QString errorOf(LinkCalibration::Outcome outcome, const LinkCalibration& calibration) {
    if (outcome == LinkCalibration::Outcome::StepsUsedUp)
        return QStringLiteral("Frames were lost in all eight steps, down to %1 MB/s.")
            .arg(*calibration.lossy() / 1e6, 0, 'f', 1);
    if (outcome == LinkCalibration::Outcome::AlwaysLossy)
        return QStringLiteral("Frames are lost with the lowest limits, too: the cause is another "
                              "one than the speed of the link.");
    return {};
}

} // namespace

QString linkKey(Cameras& cameras, const HostInterface& interface) {
    const std::string name = interface.name.toStdString();
    const SystemController& controller = cameras.controller();
    // The link of an adapter is named by its index, which another start of the host may change.
    if (controller.getInterfaceType(name) == OrvTransportLayerTypeGEV)
        return interface.id.isEmpty() ? interface.name : interface.id;
    const std::string link = controller.getInterfaceLink(name);
    return link.empty() ? interface.name : QString::fromStdString(link);
}

CalibratedLink calibrate(Cameras& cameras, const ChosenInterfaces& link,
                         const CalibrationSettings& settings, Interruption& interruption) {
    CalibratedLink result;
    result.interfaces = link;
    const std::string name = link.interfaces.front()->name.toStdString();
    result.bitsPerSecond = cameras.controller().getInterfaceSpeed(name);
    for (const auto& camera : link.cameras())
        camera->adjustPacketSize(settings.adjustsPacketSize && camera->isOpened());
    // Without a margin, so that no camera has a limit above what it sends.
    LinkPlan plan(link.cameras(), 0);
    for (const PlannedCamera& camera : plan.cameras()) {
        if (camera.role == PlanRole::NotOpened)
            result.notOpened.append(cameraId(*camera.handler));
    }
    findNeeds(plan, cameras, std::chrono::duration<double>(std::max(needSeconds, settings.seconds)),
              interruption);
    result.error = QString::fromStdString(LinkCalibration::obstacle(plan));
    if (!result.error.isEmpty())
        return result;
    setWaitingAside(plan);
    if (!LinkCalibration::obstacle(plan).empty()) {
        result.error = QStringLiteral("All cameras with a limit wait for triggers: trigger them.");
        return result;
    }
    LinkCalibration calibration(plan);
    Measurements measurements(cameras, link, plan, settings.seconds, interruption);
    const auto outcome = calibration.run([&] { return measurements.step(); });
    if (outcome == LinkCalibration::Outcome::Cancelled)
        throw Failure(QStringLiteral("Interrupted: the limits were put back."));
    if (outcome == LinkCalibration::Outcome::Refused)
        throw Failure(QStringLiteral("A limit could not be written or put back, see the messages "
                                     "above."));
    const double others = otherTraffic(cameras, link);
    result.error = errorOf(outcome, calibration);
    result.steps = measurements.steps(calibration);
    result.findings = measurements.findingsAt(calibration);
    result.isPrecise = calibration.isPrecise();
    double share = 1;
    if (calibration.lossless()) {
        share = arrivedShare(result.steps);
        result.capacity = share * *calibration.lossless() + others;
    }
    if (calibration.lossy())
        result.lossBegins = share * *calibration.lossy() + others;
    return result;
}

} // namespace cli
