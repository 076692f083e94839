// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/genicam/GenicamProvider.h"
#include "orvcpp/system/ProviderKind.h"

namespace orv {

namespace {

std::shared_ptr<Provider> readGenicam(ObjectReader& reader, const Surroundings& surroundings) {
    genicam::GenicamSettings settings;
    settings.packetSocket = reader.boolean("packetSocket", true) ? genicam::PacketSocket::Automatic
                                                                 : genicam::PacketSocket::Never;
    return genicam::makeGenicamProvider(settings, surroundings.host, surroundings.gate);
}

} // namespace

std::optional<ProviderKind> genicamKind() {
    return ProviderKind{"genicam", readGenicam};
}

} // namespace orv
