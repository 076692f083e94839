// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/CameraParts.h"

#include <utility>
#include <vector>

namespace {

template <class Wrapper, class Filling, class Making>
void handOut(std::shared_ptr<Wrapper> part, Filling&& filling, Making&& making) {
    filling.WillByDefault(answer(part));
    making.WillByDefault(testing::Return(std::pair(part, OrvErrorType{OrvErrorSuccess})));
}

} // namespace

CameraParts::CameraParts(OrvTransportLayerType type, const std::string& interfaceName,
                         const std::string& id)
    : camera(makeCamera(id)) {
    ON_CALL(*layer, GetName).WillByDefault(answer(std::string("MRD Layer")));
    ON_CALL(*layer, GetID).WillByDefault(answer(std::string("TL_1")));
    ON_CALL(*layer, GetPath).WillByDefault(answer(std::string("/layer.cti")));
    ON_CALL(*layer, GetVendor).WillByDefault(answer(std::string("Meridane Technologies")));
    ON_CALL(*layer, GetType).WillByDefault(answer(type));
    ON_CALL(*interface, GetName).WillByDefault(answer(interfaceName));
    ON_CALL(*interface, GetID).WillByDefault(answer(std::string("IF_1")));
    ON_CALL(*interface, GetType).WillByDefault(answer(type));
    stream->addFeature("GVSPDriver", makeEnumFeature("Filter", {"Filter", "Socket"}));

    handOut<OrvTransportLayerWrapper>(layer, ON_CALL(*camera, GetTransportLayer(testing::_)),
                                      ON_CALL(*camera, GetTransportLayer()));
    handOut<OrvInterfaceWrapper>(interface, ON_CALL(*camera, GetInterface(testing::_)),
                                 ON_CALL(*camera, GetInterface()));
    handOut<OrvLocalDeviceWrapper>(localDevice, ON_CALL(*camera, GetLocalDevice(testing::_)),
                                   ON_CALL(*camera, GetLocalDevice()));
    ON_CALL(*camera, GetStreams)
        .WillByDefault(answer(std::vector<std::shared_ptr<OrvStreamWrapper>>{stream}));
}
