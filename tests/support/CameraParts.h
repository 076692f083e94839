// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/support/MockSdk.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A mocked camera with all that it hangs on.
struct CameraParts {
    explicit CameraParts(OrvTransportLayerType type, const std::string& interfaceName = "Eth 1",
                         const MockIdentity& identity = {})
        : camera(makeCamera(identity)) {
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

    std::shared_ptr<testing::NiceMock<MockCamera>> camera;
    std::shared_ptr<testing::NiceMock<MockTransportLayer>> layer =
        std::make_shared<testing::NiceMock<MockTransportLayer>>();
    std::shared_ptr<testing::NiceMock<MockInterface>> interface =
        std::make_shared<testing::NiceMock<MockInterface>>();
    std::shared_ptr<testing::NiceMock<MockLocalDevice>> localDevice =
        std::make_shared<testing::NiceMock<MockLocalDevice>>();
    std::shared_ptr<testing::NiceMock<MockStream>> stream =
        std::make_shared<testing::NiceMock<MockStream>>();

private:
    template <class Wrapper, class Filling, class Making>
    static void handOut(std::shared_ptr<Wrapper> part, Filling&& filling, Making&& making) {
        filling.WillByDefault(answer(part));
        making.WillByDefault(testing::Return(std::pair(part, OrvErrorType{OrvErrorSuccess})));
    }
};
