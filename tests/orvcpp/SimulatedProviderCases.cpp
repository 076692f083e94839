// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ProviderCase.h"
#include "tests/support/SdkFixture.h"

static ProvidedCamera start(const std::string& camera) {
    const auto plug = [](bool plugged) {
        EXPECT_TRUE(sdk::simulation().SetCameraPlugged("A", plugged));
    };
    return {plug, std::make_shared<sdk::Running>(sdk::scenario(camera))};
}

std::vector<ProviderCase> providerCases() {
    const std::string sensor = sdk::sensor(200);
    return {{"SimulatedGigE", 1, 10,
             [=] {
                 return start(sdk::gige("A", sensor));
             }},
            {"SimulatedUsb", 0, 10, [=] {
                 return start(sdk::usb("A", 1, sensor));
             }}};
}
