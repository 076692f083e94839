// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/support/MockSdk.h"

#include <memory>
#include <string>

inline constexpr auto gige = OrvTransportLayerTypeGEV;
inline constexpr auto usb = OrvTransportLayerTypeU3V;

/// A mocked camera with its transport layer, interface, local device and stream.
struct CameraParts {
    explicit CameraParts(OrvTransportLayerType type, const std::string& interfaceName = "Eth 1",
                         const std::string& id = "DEV_1");

    template <class Mock> using Nice = testing::NiceMock<Mock>;

    std::shared_ptr<Nice<MockCamera>> camera;
    std::shared_ptr<Nice<MockTransportLayer>> layer = std::make_shared<Nice<MockTransportLayer>>();
    std::shared_ptr<Nice<MockInterface>> interface = std::make_shared<Nice<MockInterface>>();
    std::shared_ptr<Nice<MockLocalDevice>> localDevice = std::make_shared<Nice<MockLocalDevice>>();
    std::shared_ptr<Nice<MockStream>> stream = std::make_shared<Nice<MockStream>>();
};
