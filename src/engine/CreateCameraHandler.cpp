// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvSystemWrapper.h"

#include "engine/CameraHandler.h"

std::shared_ptr<CameraHandler>
OrvSystemWrapper::CreateCameraHandler(const std::shared_ptr<OrvCameraWrapper>& camera) {
    return std::make_shared<CameraHandler>(camera);
}
