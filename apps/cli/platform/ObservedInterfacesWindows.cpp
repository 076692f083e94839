// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedInterfaces.h"

#include "cli/Failure.h"

namespace cli {

struct ObservedInterfaces::State {};

ObservedInterfaces::ObservedInterfaces(const QStringList&, const std::optional<QString>&,
                                       std::size_t) {
    throw Failure(QStringLiteral("\"observe\" needs Linux."), ExitCode::WrongUse);
}

ObservedInterfaces::~ObservedInterfaces() = default;

QStringList ObservedInterfaces::takeNotices() {
    return {};
}

QJsonObject ObservedInterfaces::interval() {
    return {};
}

QJsonObject ObservedInterfaces::result(bool) {
    return {};
}

} // namespace cli
