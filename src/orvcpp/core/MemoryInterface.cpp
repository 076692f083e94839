// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/MemoryInterface.h"

#include "orvcpp/core/ArrayOutput.h"

#include <utility>

namespace orv {

MemoryInterface::MemoryInterface(std::shared_ptr<FeatureModule> module, OrvTransportLayerType type,
                                 std::string id, std::string name,
                                 std::weak_ptr<OrvCPP::TransportLayer> layer)
    : MemoryContainer(std::move(module)), m_type(type), m_id(std::move(id)),
      m_name(std::move(name)), m_layer(std::move(layer)) {}

OrvErrorType MemoryInterface::GetID(char* buffer, std::uint32_t& length) const {
    return answerText(m_id, buffer, length);
}

OrvErrorType MemoryInterface::GetType(OrvTransportLayerType& type) const {
    return answer(type, m_type);
}

OrvErrorType MemoryInterface::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(m_name, buffer, length);
}

OrvErrorType
MemoryInterface::GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const {
    return answerKept(layer, m_layer);
}

OrvErrorType MemoryInterface::GetCameras(std::shared_ptr<OrvCPP::Camera>* array,
                                         std::uint32_t& count) const {
    const OrvErrorType error = enter();
    return error != OrvErrorSuccess ? error : writeArray(cameras(), array, count);
}

} // namespace orv
