// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraHandler.h"
#include "tests/support/CameraParts.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeFeatureController.h"

#include <memory>
#include <string>

/// Action: returns an SDK error that the engine does not treat specially.
inline auto ioError() {
    return testing::Return(OrvErrorType{OrvErrorIO});
}

inline const std::string ioErrorText = " (Low level IO error in transport layer)";

/// A function that changes what one operation of CameraParts does.
#define DOES(part, Operation, action)                                                              \
    [](CameraParts& parts) {                                                                       \
        ON_CALL(*parts.part, Operation).WillByDefault(action);                                     \
    }

/// How messages about the camera of CameraParts begin, after the prefix.
inline const std::string cameraText = "Model-0001 (DEV_1)";
inline const std::string debugLine = "Debug:" + cameraText;
inline const std::string infoLine = "Info:" + cameraText;
inline const std::string warningLine = "Warning:" + cameraText;
inline const std::string errorLine = "Error:" + cameraText;

/// A handler over mocked parts and features in memory.
struct HandlerWithFakes {
    explicit HandlerWithFakes(OrvTransportLayerType type = OrvTransportLayerTypeGEV)
        : parts(type), handler(parts.camera, features) {
        log.clear();
    }

    CapturedLog log;
    CameraParts parts;
    std::shared_ptr<FakeFeatureController> features = std::make_shared<FakeFeatureController>();
    CameraHandler handler;
};
