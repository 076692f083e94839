// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ProviderCase.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

static ProvidedCamera startFakeCamera() {
    using fakecamera::FakeCameraProcess;
    const auto fake =
        std::make_shared<FakeCameraProcess>(fakecamera::onlyAddress, cameras::smallFrames);
    return {[fake](bool plugged) { plugged ? fake->restart() : fake->kill(); },
            std::make_shared<cameras::Started>()};
}

std::vector<ProviderCase> providerCases() {
    return {{"GenicamGigE", 1, 200, startFakeCamera}};
}
