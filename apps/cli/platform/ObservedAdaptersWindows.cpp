// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedAdapters.h"

#include "cli/Failure.h"

namespace cli {

struct ObservedAdapters::State {};

ObservedAdapters::ObservedAdapters(const QStringList&, const std::optional<QString>&) {
    throw Failure(QStringLiteral("\"observe\" needs Linux."), ExitCode::WrongUse);
}

ObservedAdapters::~ObservedAdapters() = default;

QJsonObject ObservedAdapters::interval() {
    return {};
}

QJsonObject ObservedAdapters::result(bool) {
    return {};
}

} // namespace cli
