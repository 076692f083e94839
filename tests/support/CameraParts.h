// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/support/MockSdk.h"

#include <memory>
#include <string>

/// A mocked camera with all that it hangs on.
struct CameraParts {
    explicit CameraParts(OrvTransportLayerType type, const std::string& interfaceName = "Eth 1",
                         const MockIdentity& identity = {});

    std::shared_ptr<testing::NiceMock<MockCamera>> camera;
    std::shared_ptr<testing::NiceMock<MockTransportLayer>> layer =
        std::make_shared<testing::NiceMock<MockTransportLayer>>();
    std::shared_ptr<testing::NiceMock<MockInterface>> interface =
        std::make_shared<testing::NiceMock<MockInterface>>();
    std::shared_ptr<testing::NiceMock<MockLocalDevice>> localDevice =
        std::make_shared<testing::NiceMock<MockLocalDevice>>();
    std::shared_ptr<testing::NiceMock<MockStream>> stream =
        std::make_shared<testing::NiceMock<MockStream>>();
};
