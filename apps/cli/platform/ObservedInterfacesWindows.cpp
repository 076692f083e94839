// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedInterfaces.h"

#include "cli/Failure.h"

namespace cli {

struct ObservedInterfaces::State {
    QStringList notices;
};

ObservedInterfaces::ObservedInterfaces(const QStringList&, const std::optional<QString>&) {
    throw Failure(QStringLiteral("\"observe\" needs Linux."), ExitCode::WrongUse);
}

ObservedInterfaces::~ObservedInterfaces() = default;

const QStringList& ObservedInterfaces::notices() const {
    return m_state->notices;
}

QJsonObject ObservedInterfaces::interval() {
    return {};
}

QJsonObject ObservedInterfaces::result(bool) {
    return {};
}

} // namespace cli
