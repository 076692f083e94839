// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace cli {

/// Serves the figures of streams to Prometheus, at /metrics by HTTP. Threads of its own answer
/// with what update() was told last; they never keep update() waiting for a client. Bound to one
/// thread.
class MetricsExporter {
public:
    /// Serves at \p address only: "ADDRESS:PORT" with a numeric IPv4 address or an IPv6 address in
    /// brackets, or "PORT" at 127.0.0.1. \p adapterOf tells the network adapter of an interface,
    /// empty where there is none. Throws a Failure for a wrong address, one that cannot be used,
    /// and where the program was built without prometheus-cpp.
    MetricsExporter(const QString& address,
                    std::function<std::string(const QString& interface)> adapterOf);
    ~MetricsExporter();
    MetricsExporter(const MetricsExporter&) = delete;
    MetricsExporter& operator=(const MetricsExporter&) = delete;

    /// Takes a document of type "interval", see BenchmarkProgress.
    void update(const QJsonObject& interval);
    /// Where the metrics are: "http://127.0.0.1:9952/metrics".
    QString url() const;

private:
    struct State;

    const std::unique_ptr<State> m_state;
};

} // namespace cli
