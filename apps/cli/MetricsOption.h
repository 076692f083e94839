// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Benchmark.h"
#include "cli/MetricsExporter.h"

#include <QCommandLineOption>

#include <functional>
#include <memory>
#include <string>

namespace cli {

class Context;

/// The option --prometheus.
QCommandLineOption metricsOption();

/// What --prometheus asks for, and null without it. \p adapterOf is as of MetricsExporter, which
/// throws a Failure for a wrong address. Tells the user where the metrics are.
std::unique_ptr<MetricsExporter>
metricsExporter(Context& context, std::function<std::string(const QString& interface)> adapterOf);

/// As makeLiveProgress(). With an \p exporter, intervals are shown on a terminal and with --json
/// only: a service prints none. The exporter may be null; it is not updated by this.
BenchmarkProgress makeExportedProgress(Context& context, const MetricsExporter* exporter,
                                       double seconds);

} // namespace cli
