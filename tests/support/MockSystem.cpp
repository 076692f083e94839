// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/MockSdk.h"

// Apart from MockSdk.cpp, since it needs OrvSystemWrapper, which is archived with the engine.

OrvCPP::OrvSystem& unusedOrvSystem() {
    static testing::NiceMock<MockOrvSystem> system;
    return system;
}

MockSystem::MockSystem() : OrvSystemWrapper(unusedOrvSystem()) {}

template class testing::NiceMock<MockSystem>;
