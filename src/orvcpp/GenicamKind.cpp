// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GenicamProvider.h"
#include "orvcpp/core/ProviderKind.h"

namespace orv {

namespace {

std::shared_ptr<Provider> readGenicam(ObjectReader& reader, const Surroundings& surroundings) {
    aravis::GenicamSettings settings;
    settings.packetSocket = reader.boolean("packetSocket", true) ? aravis::PacketSocket::Automatic
                                                                 : aravis::PacketSocket::Never;
    return aravis::makeGenicamProvider(settings, surroundings.host, surroundings.gate);
}

} // namespace

std::optional<ProviderKind> genicamKind() {
    return ProviderKind{"genicam", readGenicam};
}

} // namespace orv
