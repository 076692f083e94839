// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QString>
#include <prometheus/metric_family.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// The figures of streams as metrics of Prometheus: counters in base units, with the camera and the
/// interface as labels (https://prometheus.io/docs/practices/naming/). Counters never fall while a
/// camera has its series. Bound to one thread.
class StreamMetrics {
public:
    using Clock = std::chrono::steady_clock;
    /// Name of the network adapter of an interface; empty where there is none.
    using AdapterOf = std::function<std::string(const QString& interface)>;

    /// A camera that has been silent for so long has no series any more.
    static constexpr std::chrono::hours retention{24};

    /// \p root is the folder above /sys.
    explicit StreamMetrics(AdapterOf adapterOf, std::filesystem::path root = "/");

    /// The metrics of a document of runBenchmark() or ObservedInterfaces, read at \p now. Cameras
    /// and interfaces that it does not contain have no series any more.
    std::vector<prometheus::MetricFamily> after(const QJsonObject& interval,
                                                Clock::time_point now = Clock::now());

private:
    class Families;
    struct CameraReading;
    /// A count of frames, packets or bytes as it was exported.
    struct Total {
        double value = 0;
        /// The highest that was read since the stream's counts began.
        double highest = 0;
    };
    struct Stream {
        /// By their members of the document.
        std::map<std::string, Total> totals;
        /// When data came; the epoch while none has come.
        Clock::time_point latest{};
    };
    /// Interface and camera.
    using SeriesKey = std::pair<std::string, std::string>;

    void addInterface(Families& families, const QJsonObject& interface) const;
    void addCamera(Families& families, const SeriesKey& key, const CameraReading& reading,
                   Clock::time_point now);

    const AdapterOf m_adapterOf;
    const std::filesystem::path m_root;
    std::map<SeriesKey, Stream> m_streams;
};

} // namespace cli
