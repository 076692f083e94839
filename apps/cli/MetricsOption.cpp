// SPDX-License-Identifier: BSD-3-Clause
#include "cli/MetricsOption.h"

#include "cli/Context.h"
#include "cli/LiveFigures.h"
#include "cli/Terminal.h"

#include <utility>

namespace cli {

namespace {

const QLatin1String prometheusOption("prometheus");

} // namespace

QCommandLineOption metricsOption() {
    return {prometheusOption,
            QStringLiteral("Serve the figures to Prometheus at http://ADDRESS:PORT/metrics, there "
                           "only; at 127.0.0.1 without an address. Without a terminal, intervals "
                           "are then printed with --json only."),
            QStringLiteral("address:port")};
}

std::unique_ptr<MetricsExporter>
metricsExporter(Context& context, std::function<std::string(const QString&)> adapterOf) {
    if (!context.arguments.has(prometheusOption))
        return nullptr;
    auto exporter = std::make_unique<MetricsExporter>(context.arguments.value(prometheusOption),
                                                      std::move(adapterOf));
    context.terminal.message(QStringLiteral("Metrics are served at %1.").arg(exporter->url()));
    return exporter;
}

BenchmarkProgress makeExportedProgress(Context& context, const MetricsExporter* exporter,
                                       double seconds) {
    if (exporter && !context.wantsJson && !context.terminal.isInteractive())
        return [](const QJsonObject&) {
            return true;
        };
    return makeLiveProgress(context.terminal, seconds, context.wantsJson);
}

} // namespace cli
