// SPDX-License-Identifier: BSD-3-Clause
#include "cli/MetricsExporter.h"

#include "cli/Failure.h"
#include "cli/StreamMetrics.h"
#include "platform/Descriptor.h"

#include <QRegularExpression>
#include <prometheus/collectable.h>
#include <prometheus/exposer.h>

#include <cerrno>
#include <exception>
#include <mutex>
#include <system_error>

#include <netdb.h>
#include <sys/socket.h>

namespace cli {

namespace {

/// Scrapes that are answered at the same time, and how long a client may keep one of them, in
/// milliseconds.
constexpr const char* threads = "4";
constexpr const char* longestRequest = "5000";

/// The metrics of the last interval. Thread-safe.
class MetricsSnapshot final : public prometheus::Collectable {
public:
    using Families = std::vector<prometheus::MetricFamily>;

    void set(Families families) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_families = std::make_shared<const Families>(std::move(families));
    }

    Families Collect() const override { return *families(); }

private:
    std::shared_ptr<const Families> families() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_families;
    }

    mutable std::mutex m_mutex;
    std::shared_ptr<const Families> m_families = std::make_shared<const Families>();
};

struct Endpoint {
    /// Without brackets.
    QString address;
    QString port;

    bool isIpv6() const { return address.contains(QLatin1Char(':')); }

    QString text() const {
        return (isIpv6() ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2")).arg(address, port);
    }
};

using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

AddressList resolved(const Endpoint& endpoint) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    if (getaddrinfo(endpoint.address.toLatin1().constData(), endpoint.port.toLatin1().constData(),
                    &hints, &list) != 0)
        list = nullptr;
    return {list, freeaddrinfo};
}

/// Throws a Failure where the address cannot be listened on: the HTTP server does not say why.
void checkIsFree(const Endpoint& endpoint, const addrinfo& address) {
    const platform::Descriptor listener(
        socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol));
    const int on = 1;
    if (listener.isOpen() &&
        setsockopt(listener.handle(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == 0 &&
        bind(listener.handle(), address.ai_addr, address.ai_addrlen) == 0 &&
        listen(listener.handle(), 1) == 0)
        return;
    const int error = errno;
    throw Failure(QStringLiteral("Metrics cannot be served at %1: %2.")
                      .arg(endpoint.text(),
                           error == EADDRNOTAVAIL
                               ? QStringLiteral("no adapter of this host has this address")
                               : QString::fromStdString(std::generic_category().message(error))));
}

Endpoint usableEndpoint(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^(?:(?:\\[([0-9A-Fa-f:.]*:[0-9A-Fa-f:.]*)\\]|"
                       "([0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+)):)?([1-9][0-9]{0,4})$"));
    const QRegularExpressionMatch match = form.match(text);
    Endpoint endpoint{match.captured(1) + match.captured(2), match.captured(3)};
    if (endpoint.address.isEmpty())
        endpoint.address = QStringLiteral("127.0.0.1");
    const AddressList address(match.hasMatch() && endpoint.port.toInt() <= 65535
                                  ? resolved(endpoint)
                                  : AddressList(nullptr, freeaddrinfo));
    if (!address)
        throw Failure(QStringLiteral("--prometheus: \"%1\" is no address and port, such as "
                                     "127.0.0.1:9952 or [::1]:9952.")
                          .arg(text),
                      ExitCode::WrongUse);
    checkIsFree(endpoint, *address);
    return endpoint;
}

std::unique_ptr<prometheus::Exposer> startedServer(const Endpoint& endpoint) {
    try {
        return std::make_unique<prometheus::Exposer>(
            std::vector<std::string>{"listening_ports", endpoint.text().toStdString(),
                                     "num_threads", threads, "request_timeout_ms", longestRequest});
    } catch (const std::exception& error) {
        // Debian's civetweb is one of those.
        throw Failure(
            QStringLiteral("Metrics cannot be served at %1: %2.")
                .arg(endpoint.text(), endpoint.isIpv6()
                                          ? QStringLiteral("the HTTP server of this system's "
                                                           "prometheus-cpp, civetweb, has no IPv6")
                                          : QString::fromUtf8(error.what())));
    }
}

} // namespace

struct MetricsExporter::State {
    State(const QString& text, StreamMetrics::AdapterOf adapterOf)
        : metrics(std::move(adapterOf)), endpoint(usableEndpoint(text)),
          server(startedServer(endpoint)) {
        server->RegisterCollectable(snapshot);
    }

    StreamMetrics metrics;
    const Endpoint endpoint;
    const std::shared_ptr<MetricsSnapshot> snapshot = std::make_shared<MetricsSnapshot>();
    const std::unique_ptr<prometheus::Exposer> server;
};

MetricsExporter::MetricsExporter(const QString& address,
                                 std::function<std::string(const QString&)> adapterOf)
    : m_state(std::make_unique<State>(address, std::move(adapterOf))) {}

MetricsExporter::~MetricsExporter() = default;

void MetricsExporter::update(const QJsonObject& interval) {
    m_state->snapshot->set(m_state->metrics.after(interval));
}

QString MetricsExporter::url() const {
    return QStringLiteral("http://%1/metrics").arg(m_state->endpoint.text());
}

} // namespace cli
