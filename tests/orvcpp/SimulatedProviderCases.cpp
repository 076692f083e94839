// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ProviderCase.h"
#include "tests/orvcpp/SdkFixture.h"

namespace {

class SimulatedCase final : public ProvidedCamera {
public:
    explicit SimulatedCase(const std::string& camera) : m_run(sdk::scenario(camera)) {}
    void unplug() override { EXPECT_TRUE(sdk::simulation().SetCameraPlugged("A", false)); }
    void plug() override { EXPECT_TRUE(sdk::simulation().SetCameraPlugged("A", true)); }

private:
    const sdk::Running m_run;
};

} // namespace

std::vector<ProviderCase> providerCases() {
    return {
        {"SimulatedGigE", 1, 10,
         [] {
             return std::make_unique<SimulatedCase>(sdk::gige("A", sdk::sensor(200)));
         }},
        {"SimulatedUsb", 0, 10,
         [] {
             return std::make_unique<SimulatedCase>(sdk::usb("A", 1, sdk::sensor(200)));
         }},
    };
}
