// SPDX-License-Identifier: BSD-3-Clause
#include "cli/StreamMetrics.h"

#include "cli/Benchmark.h"
#include "platform/NetworkCounters.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <optional>

namespace cli {

namespace {

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;
using Labels = std::vector<ClientMetric::Label>;

/// A stream is up while its last data are not older. Longer than the time between two frames of
/// most cameras.
constexpr std::chrono::seconds longestPause{5};

struct Metric {
    const char* name;
    const char* help;
    MetricType type = MetricType::Counter;
};

struct CameraCount {
    /// Member of a camera in the document.
    const char* member;
    Metric metric;
    /// Whether it is corrected downwards, since a frame that was taken for lost or that belonged to
    /// no count came late. Another count that falls has begun anew, alone or with its stream.
    bool mayFall = false;
};

constexpr const char* dataMember = "payloadBytes";

constexpr std::array<CameraCount, 9> cameraCounts{{
    {"receivedFrames",
     {"spanlet_frames_received_total", "Frames of which packets arrived, with incomplete ones."}},
    {"incompleteFrames",
     {"spanlet_frames_incomplete_total", "Frames that lack some of their packets."}},
    {"lostFrames",
     {"spanlet_frames_lost_total", "Frames of which nothing arrived, by their numbers."},
     true},
    {"unjudgedFrames",
     {"spanlet_frames_unjudged_total",
      "Frames in no other count, as the observer had missed packets or the stream was cut."},
     true},
    {dataMember, {"spanlet_payload_bytes_total", "Data of images that arrived."}},
    {"packetsResent",
     {"spanlet_packets_resent_total", "Packets that the camera has sent again on request."}},
    {"packetsMissing",
     {"spanlet_packets_missing_total",
      "Packets that never arrived, of frames of which others did."}},
    {"packetsDuplicate",
     {"spanlet_packets_duplicate_total", "Packets that arrived more than once."}},
    {"receiverDrops",
     {"spanlet_receiver_dropped_packets_total",
      "Packets that the kernel discarded at the socket of the receiving program."}},
}};

constexpr Metric streamUp{"spanlet_stream_up", "Whether data of the camera arrived just now.",
                          MetricType::Gauge};
constexpr Metric latestData{"spanlet_stream_last_data_timestamp_seconds",
                            "When data of the camera arrived last.", MetricType::Gauge};
constexpr Metric cameraInfo{"spanlet_camera_info",
                            "Name, model, serial number and address of a camera; always 1.",
                            MetricType::Gauge};
constexpr Metric linkSpeed{"spanlet_interface_speed_bytes",
                           "Speed of the interface in bytes per second.", MetricType::Gauge};
constexpr Metric adapterBytes{"spanlet_interface_received_bytes_total",
                              "Bytes of all packets that the network adapter received."};
constexpr Metric adapterPackets{"spanlet_interface_received_packets_total",
                                "Packets that the network adapter received."};
constexpr Metric adapterErrors{
    "spanlet_interface_receive_errors_total",
    "Packets that the network adapter dropped or found damaged, by the system's counter."};
constexpr Metric carrierChanges{"spanlet_interface_carrier_changes_total",
                                "How often the adapter's link went up or down."};
constexpr Metric observerMissed{"spanlet_observer_missed_packets_total",
                                "Packets that the observer itself did not see."};
constexpr Metric readingTime{"spanlet_reading_timestamp_seconds", "When these figures were read.",
                             MetricType::Gauge};
constexpr Metric buildInfo{"spanlet_build_info", "Version of the program; always 1.",
                           MetricType::Gauge};

constexpr platform::NetworkCount errorCounts[]{
    platform::NetworkCount::AdapterMissed,      platform::NetworkCount::AdapterFifoErrors,
    platform::NetworkCount::AdapterOverruns,    platform::NetworkCount::AdapterChecksumErrors,
    platform::NetworkCount::AdapterFrameErrors, platform::NetworkCount::AdapterLengthErrors,
    platform::NetworkCount::AdapterDropped,
};

std::string textOf(const QJsonObject& object, const char* member) {
    return object.value(QLatin1String(member)).toString().toStdString();
}

std::optional<double> numberOf(const QJsonObject& object, const char* member) {
    const QJsonValue value = object.value(QLatin1String(member));
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

/// Unix time, \p age ago.
double timestamp(StreamMetrics::Clock::duration age) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now - age).count();
}

Labels interfaceLabels(const std::string& interface) {
    return {{"interface", interface}};
}

Labels cameraLabels(const std::string& interface, const std::string& camera) {
    return {{"interface", interface}, {"camera", camera}};
}

} // namespace

/// Metrics by their names.
class StreamMetrics::Families {
public:
    void add(const Metric& metric, Labels labels, double value) {
        MetricFamily& family = m_families[metric.name];
        family.name = metric.name;
        family.help = metric.help;
        family.type = metric.type;
        ClientMetric sample;
        sample.label = std::move(labels);
        if (metric.type == MetricType::Counter)
            sample.counter.value = value;
        else
            sample.gauge.value = value;
        family.metric.push_back(std::move(sample));
    }

    std::vector<MetricFamily> take() {
        std::vector<MetricFamily> all;
        for (auto& [name, family] : m_families)
            all.push_back(std::move(family));
        return all;
    }

private:
    std::map<std::string, MetricFamily> m_families;
};

/// All streams of a camera in one document: it may send to several hosts or ports.
struct StreamMetrics::CameraReading {
    /// Sums by member.
    std::map<std::string, double> counts;
    /// Seconds, of the stream that is silent for the shortest time; 0 where the document does not
    /// tell.
    double silence = std::numeric_limits<double>::infinity();
    QJsonObject identity;

    void add(const QJsonObject& row) {
        for (const CameraCount& count : cameraCounts)
            if (const auto value = numberOf(row, count.member))
                counts[count.member] += *value;
        silence = std::min(silence, numberOf(row, "silentSeconds").value_or(0));
        identity = row;
    }
};

StreamMetrics::StreamMetrics(AdapterOf adapterOf, std::filesystem::path root)
    : m_adapterOf(std::move(adapterOf)), m_root(std::move(root)) {}

std::vector<MetricFamily> StreamMetrics::after(const QJsonObject& interval, Clock::time_point now) {
    Families families;
    families.add(buildInfo, {{"version", QCoreApplication::applicationVersion().toStdString()}}, 1);
    families.add(readingTime, {}, timestamp(Clock::duration::zero()));
    std::map<SeriesKey, CameraReading> cameras;
    for (const QJsonValue& value : interfacesOf(interval)) {
        const QJsonObject interface = value.toObject();
        addInterface(families, interface);
        for (const QJsonValue& row : interface[QStringLiteral("cameras")].toArray())
            cameras[{textOf(interface, "interface"), textOf(row.toObject(), "id")}].add(
                row.toObject());
    }
    const double longest = std::chrono::duration<double>(retention).count();
    for (auto camera = cameras.begin(); camera != cameras.end();)
        camera = camera->second.silence > longest ? cameras.erase(camera) : std::next(camera);
    for (auto stream = m_streams.begin(); stream != m_streams.end();)
        stream = cameras.count(stream->first) ? std::next(stream) : m_streams.erase(stream);
    for (const auto& [key, reading] : cameras)
        addCamera(families, key, reading, now);
    return families.take();
}

void StreamMetrics::addInterface(Families& families, const QJsonObject& interface) const {
    const std::string name = textOf(interface, "interface");
    const Labels labels = interfaceLabels(name);
    if (const auto bits = numberOf(interface[QStringLiteral("total")].toObject(), "bitsPerSecond"))
        families.add(linkSpeed, labels, *bits / 8);
    if (const auto missed = numberOf(interface, "observerMissedPackets"))
        families.add(observerMissed, labels, *missed);
    const std::string adapter = m_adapterOf(QString::fromStdString(name));
    if (adapter.empty())
        return;
    const auto counters = platform::readAdapterCounters(adapter, m_root);
    const auto add = [&](const Metric& metric, const Labels& its,
                         platform::NetworkCounters::Value count) {
        if (count)
            families.add(metric, its, static_cast<double>(*count));
    };
    add(adapterBytes, labels, counters[platform::NetworkCount::AdapterReceivedBytes]);
    add(adapterPackets, labels, counters[platform::NetworkCount::AdapterReceived]);
    add(carrierChanges, labels, counters[platform::NetworkCount::AdapterCarrierChanges]);
    for (const platform::NetworkCount count : errorCounts)
        add(adapterErrors, {{"interface", name}, {"counter", platform::nameOf(count)}},
            counters[count]);
}

void StreamMetrics::addCamera(Families& families, const SeriesKey& key,
                              const CameraReading& reading, Clock::time_point now) {
    Stream& stream = m_streams[key];
    // A stream was forgotten.
    const auto data = reading.counts.find(dataMember);
    const bool isRestarted =
        data != reading.counts.end() && data->second < stream.totals[dataMember].highest;
    for (const CameraCount& count : cameraCounts) {
        const auto found = reading.counts.find(count.member);
        if (found == reading.counts.end())
            continue;
        Total& total = stream.totals[found->first];
        if (isRestarted || (!count.mayFall && found->second < total.highest))
            total.highest = found->second;
        if (found->second > total.highest) {
            total.value += found->second - total.highest;
            total.highest = found->second;
            if (found == data)
                stream.latest = now;
        }
        families.add(count.metric, cameraLabels(key.first, key.second), total.value);
    }
    if (reading.silence > 0)
        stream.latest = now - std::chrono::duration_cast<Clock::duration>(
                                  std::chrono::duration<double>(reading.silence));
    const bool hasData = stream.latest != Clock::time_point();
    families.add(streamUp, cameraLabels(key.first, key.second),
                 hasData && now - stream.latest <= longestPause ? 1 : 0);
    if (hasData)
        families.add(latestData, cameraLabels(key.first, key.second),
                     timestamp(now - stream.latest));
    Labels info = cameraLabels(key.first, key.second);
    for (const auto& [label, member] : {std::pair("name", "name"),
                                        {"model", "model"},
                                        {"serial_number", "serialNumber"},
                                        {"address", "address"}})
        if (std::string text = textOf(reading.identity, member); !text.empty())
            info.push_back({label, std::move(text)});
    families.add(cameraInfo, std::move(info), 1);
}

} // namespace cli
