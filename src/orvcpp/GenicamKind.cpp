// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/ProviderKind.h"
#include "orvcpp/aravis/GenicamProvider.h"

namespace orv {

namespace {

std::shared_ptr<Provider> readGenicam(ObjectReader& reader, const ProviderContext& context) {
    aravis::GenicamSettings settings;
    settings.packetSocket = reader.boolean("packetSocket", true) ? aravis::PacketSocket::Automatic
                                                                 : aravis::PacketSocket::Never;
    return aravis::makeGenicamProvider(settings, context.host, context.callCounter);
}

} // namespace

std::optional<ProviderKind> genicamKind() {
    return ProviderKind{"genicam", readGenicam};
}

} // namespace orv
