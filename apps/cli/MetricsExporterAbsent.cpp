// SPDX-License-Identifier: BSD-3-Clause
// Where there is no prometheus-cpp.
#include "cli/MetricsExporter.h"

#include "cli/Failure.h"

namespace cli {

struct MetricsExporter::State {};

MetricsExporter::MetricsExporter(const QString&, std::function<std::string(const QString&)>) {
    throw Failure(
        QStringLiteral("This program was built without prometheus-cpp, which --prometheus needs."),
        ExitCode::WrongUse);
}

MetricsExporter::~MetricsExporter() = default;

void MetricsExporter::update(const QJsonObject&) {}

QString MetricsExporter::url() const {
    return {};
}

} // namespace cli
