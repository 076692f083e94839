// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/MemoryTransportLayer.h"

#include "orvcpp/core/ArrayOutput.h"

#include <utility>

namespace orv {

MemoryTransportLayer::MemoryTransportLayer(std::shared_ptr<FeatureModule> module,
                                           TransportLayerData data)
    : MemoryContainer(std::move(module)), m_data(std::move(data)) {}

OrvErrorType MemoryTransportLayer::GetInterfaces(std::shared_ptr<OrvCPP::Interface>* array,
                                                 std::uint32_t& count) const {
    const OrvErrorType error = enter();
    return error != OrvErrorSuccess ? error : writeArray(interfaces(), array, count);
}

OrvErrorType MemoryTransportLayer::GetCameras(std::shared_ptr<OrvCPP::Camera>* array,
                                              std::uint32_t& count) const {
    const OrvErrorType error = enter();
    return error != OrvErrorSuccess ? error : writeArray(cameras(), array, count);
}

OrvErrorType MemoryTransportLayer::GetID(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.id, buffer, length);
}

OrvErrorType MemoryTransportLayer::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.name, buffer, length);
}

OrvErrorType MemoryTransportLayer::GetModelName(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.model, buffer, length);
}

OrvErrorType MemoryTransportLayer::GetVendor(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.vendor, buffer, length);
}

OrvErrorType MemoryTransportLayer::GetVersion(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.version, buffer, length);
}

OrvErrorType MemoryTransportLayer::GetPath(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.path, buffer, length);
}

OrvErrorType MemoryTransportLayer::GetType(OrvTransportLayerType& type) const {
    return answer(type, m_data.type);
}

} // namespace orv
