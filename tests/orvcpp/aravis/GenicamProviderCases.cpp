// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ProviderCase.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

namespace {

class FakeCase final : public ProvidedCamera {
public:
    void unplug() override { m_fake.kill(); }
    void plug() override { m_fake.restart(); }

private:
    fakecamera::FakeCameraProcess m_fake{cameras::address, cameras::smallFrames};
    const cameras::Started m_started;
};

} // namespace

std::vector<ProviderCase> providerCases() {
    return {{"GenicamGigE", 1, 200, [] {
                 return std::make_unique<FakeCase>();
             }}};
}
