// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraInfo.h"

#include <gtest/gtest.h>

namespace {

TEST(CameraInfo, DisplayTextNamesThePortOfUsbCamerasOnly) {
    CameraInfo info;
    info.modelName = "Model";
    info.serialNumber = "0001";
    info.cameraId = "DEV_1";
    info.transportLayerType = OrvTransportLayerTypeU3V;
    EXPECT_EQ(cameraDisplayText(info), "Model-0001 (DEV_1)");
    info.portPath = "Port 3";
    EXPECT_EQ(cameraDisplayText(info), "Port 3: Model-0001 (DEV_1)");
    info.transportLayerType = OrvTransportLayerTypeGEV;
    EXPECT_EQ(cameraDisplayText(info), "Model-0001 (DEV_1)");
}

} // namespace
